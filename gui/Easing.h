#pragma once

// Easing curves of animated values. Each takes (t, b, change, d): the time since
// the start, the start value, the change to reach the target and the duration,
// and returns the value at t.
namespace Easing {

using Function = double (*)(double t, double b, double change, double d);

double delay(double t, double b, double change, double d);
double linear(double t, double b, double change, double d);
double easeOutExpo(double t, double b, double change, double d);
double easeInExpo(double t, double b, double change, double d);
double easeInOutExpo(double t, double b, double change, double d);
double easeInOutElastic(double t, double b, double change, double d);
// Smoothstep rather than the two-piece cubic: one polynomial, no kink at the midpoint.
double easeInOutCubic(double t, double b, double change, double d);
// Smoothstep fed through a quarter sine whose constant stops just short of pi/2,
// so the curve lands softly without ever overshooting.
double easeInOutCubicDampened(double t, double b, double change, double d);
double easeOutQuad(double t, double b, double change, double d);
double easeInQuad(double t, double b, double change, double d);

} // namespace Easing
