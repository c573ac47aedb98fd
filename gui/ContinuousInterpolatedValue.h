#pragma once

#include "OrbisUIFrameworkExport.h"

/// A float that glides toward a target that may move at any moment. Each glide is a
/// cubic that starts with the current velocity and arrives at rest, so retargeting in
/// mid-glide never jumps in speed. Advanced by explicit time steps, not by a clock.
class ORBIS_UI_EXPORT ContinuousInterpolatedValue
{
public:
    ContinuousInterpolatedValue(float value = 0.0f, float duration = 0.0f);

    void setTarget(float target);
    void setTarget(float target, float duration);
    void incTarget(float delta);
    /// Jumps to the value and rests there.
    void setValue(float value);
    float value() const { return mValue; }
    float target() const { return mTarget; }
    float velocity() const { return mVelocity; }
    bool isActive() const { return mValue != mTarget; }
    /// The duration of later glides.
    void setDuration(float duration);
    /// Advances by dt seconds; returns whether the value changed.
    bool update(float dt);

private:
    float mValue;
    float mTarget;
    float mDuration;
    float mDefaultDuration;
    float mElapsed = 0.0f;
    float mStartVelocity = 0.0f;
    float mStartValue = 0.0f;
    float mChange = 0.0f;
    float mVelocity = 0.0f;
};
