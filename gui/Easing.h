#pragma once

#include "OrbisUIFrameworkExport.h"

/// Easing curves of animated values. Each takes (t, b, change, d): the time since
/// the start, the start value, the change to reach the target and the duration,
/// and returns the value at t.
namespace Easing {

using Function = double (*)(double t, double b, double change, double d);

ORBIS_UI_EXPORT double delay(double t, double b, double change, double d);
ORBIS_UI_EXPORT double linear(double t, double b, double change, double d);
ORBIS_UI_EXPORT double easeOutExpo(double t, double b, double change, double d);
ORBIS_UI_EXPORT double easeInExpo(double t, double b, double change, double d);
ORBIS_UI_EXPORT double easeInOutExpo(double t, double b, double change, double d);
ORBIS_UI_EXPORT double easeInOutElastic(double t, double b, double change, double d);
/// Smoothstep rather than the two-piece cubic: one polynomial, no kink at the midpoint.
ORBIS_UI_EXPORT double easeInOutCubic(double t, double b, double change, double d);
/// Smoothstep fed through a quarter sine whose constant stops just short of pi/2,
/// so the curve lands softly without ever overshooting.
ORBIS_UI_EXPORT double easeInOutCubicDampened(double t, double b, double change, double d);
ORBIS_UI_EXPORT double easeOutQuad(double t, double b, double change, double d);
ORBIS_UI_EXPORT double easeInQuad(double t, double b, double change, double d);

} // namespace Easing
