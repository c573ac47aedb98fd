#pragma once

#include "OrbisUIFrameworkExport.h"

#include "InterpolatedValue.h"

// A fling that slows down by itself and never leaves [lower, upper].
//
// Motion law: inside the bounds the velocity decays exponentially,
//   v(t) = v0 * e^(-t / timeConstant),  x(t) = x0 + v0 * timeConstant * (1 - e^(-t / timeConstant)),
// so the value comes to rest at x0 + v0 * timeConstant; the transition ends once it is
// within half a unit of that point and lands on it. When that rest point lies beyond a
// bound, or the value starts outside the bounds, the transition instead approaches the
// nearest bound with easeOutExpo over approachDuration seconds, so the value lands
// softly on the edge rather than stopping dead against it.
//
// The start is the owner's value at the moment the transition begins to run, so the
// transition may be queued behind others.
class ORBIS_UI_INTERNAL_EXPORT InterpolatedValue::BoundedDeclerateTransition
    : public InterpolatedValue::Transition
{
public:
    BoundedDeclerateTransition(InterpolatedValue& owner, double start, double velocity, double lower,
                               double upper, double timeConstant, double approachDuration);

    void aboutToStart(const ElapsedTimer& timer) override;
    void start() override;
    double update(const ElapsedTimer& timer) override;
    bool isDone(const ElapsedTimer& timer) override;
    double velocity(const ElapsedTimer& timer) override;
    bool hasTarget() const override { return true; }
    double target() const override;

private:
    double restPoint() const;
    void plan();

    InterpolatedValue& mOwner;
    double mStart;
    double mVelocity;
    double mLower;
    double mUpper;
    double mTimeConstant;
    double mApproachDuration;
    bool mApproach = false;
    bool mDone = false;
};
