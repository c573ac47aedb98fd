#include "Easing.h"

#include <cmath>

namespace Easing {

namespace {
constexpr double kTwoPi = 6.2831853;
}

double delay(double, double b, double, double)
{
    return b;
}

double linear(double t, double b, double change, double d)
{
    return change * t / d + b;
}

double easeInQuad(double t, double b, double change, double d)
{
    const double x = t / d;
    return change * x * x + b;
}

double easeOutQuad(double t, double b, double change, double d)
{
    const double x = t / d;
    return -change * x * (x - 2) + b;
}

double easeInExpo(double t, double b, double change, double d)
{
    if (t == 0)
        return b;
    return change * std::pow(2.0, 10 * (t / d - 1)) + b;
}

double easeOutExpo(double t, double b, double change, double d)
{
    if (t == d)
        return b + change;
    return change * (1 - std::pow(2.0, -10 * t / d)) + b;
}

double easeInOutExpo(double t, double b, double change, double d)
{
    if (t == 0)
        return b;
    if (t == d)
        return b + change;
    const double y = t / (d / 2);
    if (y < 1)
        return change / 2 * std::pow(2.0, 10 * (y - 1)) + b;
    return change / 2 * (2 - std::pow(2.0, -10 * (y - 1))) + b;
}

double easeInOutElastic(double t, double b, double change, double d)
{
    if (t == 0)
        return b;
    double y = t / (d / 2);
    if (y == 2)
        return b + change;
    const double p = d * 0.45;
    const double a = change;
    const double s = p / 4;
    y -= 1;
    const double wave = std::sin((y * d - s) * kTwoPi / p);
    if (y < 0)
        return -0.5 * (a * std::pow(2.0, 10 * y) * wave) + b;
    return a * std::pow(2.0, -10 * y) * wave * 0.5 + change + b;
}

double easeInOutCubic(double t, double b, double change, double d)
{
    if (d == 0 || t >= d)
        return b + change;
    const double x = t / d;
    return change * x * x * (3 - 2 * x) + b;
}

double easeInOutCubicDampened(double t, double b, double change, double d)
{
    if (d == 0 || t >= d)
        return b + change;
    const double x = t / d;
    return change * std::sin(x * x * (3 - 2 * x) * (kTwoPi / 4)) + b;
}

} // namespace Easing
