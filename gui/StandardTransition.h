#pragma once

#include "InterpolatedValue.h"
#include "OrbisUIFrameworkExport.h"

/// Moves from a start to a target along an easing curve over a fixed duration.
class ORBIS_UI_EXPORT InterpolatedValue::StandardTransition : public InterpolatedValue::Transition
{
public:
    StandardTransition(EaseFunc func, double start, double target, double duration);

    double update(const ElapsedTimer& timer) override;
    bool isDone(const ElapsedTimer& timer) override;
    double velocity(const ElapsedTimer& timer) override;
    bool nearTarget(const ElapsedTimer& timer, double tolerance) override;
    bool hasTarget() const override { return true; }
    double target() const override { return mTarget; }

    double valueAt(double seconds) const;

private:
    EaseFunc mFunc;
    double mStart;
    double mTarget;
    double mDuration;
};
