#include "BoundedDeclerateTransition.h"

#include <algorithm>
#include <cmath>

namespace {
// Distance from the rest point at which a glide counts as arrived.
constexpr double kSettleDistance = 0.5;
} // namespace

InterpolatedValue::BoundedDeclerateTransition::BoundedDeclerateTransition(InterpolatedValue& owner,
                                                                          double start, double velocity,
                                                                          double lower, double upper,
                                                                          double timeConstant,
                                                                          double approachDuration)
    : mOwner(owner), mStart(start), mVelocity(velocity), mLower(std::min(lower, upper)),
      mUpper(std::max(lower, upper)), mTimeConstant(timeConstant), mApproachDuration(approachDuration)
{
    plan();
}

void InterpolatedValue::BoundedDeclerateTransition::aboutToStart(const ElapsedTimer&)
{
    mStart = mOwner.value();
    plan();
}

void InterpolatedValue::BoundedDeclerateTransition::start()
{
    mDone = false;
}

double InterpolatedValue::BoundedDeclerateTransition::restPoint() const
{
    return mTimeConstant > 0 ? mStart + mVelocity * mTimeConstant : mStart;
}

void InterpolatedValue::BoundedDeclerateTransition::plan()
{
    const double rest = restPoint();
    mApproach = mStart < mLower || mStart > mUpper || rest < mLower || rest > mUpper;
}

double InterpolatedValue::BoundedDeclerateTransition::target() const
{
    return std::clamp(mApproach ? (mStart < mLower || restPoint() < mLower ? mLower : mUpper) : restPoint(),
                      mLower, mUpper);
}

double InterpolatedValue::BoundedDeclerateTransition::update(const ElapsedTimer& timer)
{
    const double t = timer.secondsElapsed();
    const double end = target();
    if (mApproach) {
        if (mApproachDuration <= 0 || t >= mApproachDuration) {
            mDone = true;
            return end;
        }
        return Easing::easeOutExpo(t, mStart, end - mStart, mApproachDuration);
    }
    if (mTimeConstant <= 0) {
        mDone = true;
        return end;
    }
    const double x = mStart + mVelocity * mTimeConstant * (1 - std::exp(-t / mTimeConstant));
    if (std::abs(end - x) <= kSettleDistance) {
        mDone = true;
        return end;
    }
    return x;
}

bool InterpolatedValue::BoundedDeclerateTransition::isDone(const ElapsedTimer&)
{
    return mDone;
}

double InterpolatedValue::BoundedDeclerateTransition::velocity(const ElapsedTimer& timer)
{
    if (mDone)
        return 0;
    const double t = timer.secondsElapsed();
    if (mApproach) {
        if (mApproachDuration <= 0 || t >= mApproachDuration)
            return 0;
        const double rate = 10 * std::log(2.0) / mApproachDuration;
        return (target() - mStart) * rate * std::pow(2.0, -10 * t / mApproachDuration);
    }
    return mTimeConstant > 0 ? mVelocity * std::exp(-t / mTimeConstant) : 0;
}
