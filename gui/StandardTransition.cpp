#include "StandardTransition.h"

#include <algorithm>
#include <cmath>

namespace {
// Half-width of the window over which the velocity is differenced.
constexpr double kVelocityStep = 0.001;
} // namespace

InterpolatedValue::StandardTransition::StandardTransition(EaseFunc func, double start, double target,
                                                          double duration)
    : mFunc(func), mStart(start), mTarget(target), mDuration(duration)
{}

double InterpolatedValue::StandardTransition::valueAt(double seconds) const
{
    // Curves are not all exact at their ends (linear overshoots past d, 0/0 at d == 0).
    if (mDuration <= 0 || seconds >= mDuration)
        return mTarget;
    return mFunc(std::max(0.0, seconds), mStart, mTarget - mStart, mDuration);
}

double InterpolatedValue::StandardTransition::update(const ElapsedTimer& timer)
{
    return valueAt(timer.secondsElapsed());
}

bool InterpolatedValue::StandardTransition::isDone(const ElapsedTimer& timer)
{
    return timer.secondsElapsed() >= mDuration;
}

double InterpolatedValue::StandardTransition::velocity(const ElapsedTimer& timer)
{
    const double t = timer.secondsElapsed();
    if (t >= mDuration)
        return 0;
    const double from = std::max(0.0, t - kVelocityStep);
    const double to = std::min(mDuration, t + kVelocityStep);
    return (valueAt(to) - valueAt(from)) / (to - from);
}

bool InterpolatedValue::StandardTransition::nearTarget(const ElapsedTimer& timer, double tolerance)
{
    return std::abs(mTarget - update(timer)) <= tolerance;
}
