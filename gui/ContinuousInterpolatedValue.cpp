#include "ContinuousInterpolatedValue.h"

ContinuousInterpolatedValue::ContinuousInterpolatedValue(float value, float duration)
    : mValue(value), mTarget(value), mDuration(duration), mDefaultDuration(duration)
{}

void ContinuousInterpolatedValue::setTarget(float target)
{
    if (target == mTarget)
        return;
    mTarget = target;
    mDuration = mDefaultDuration;
    mElapsed = 0.0f;
    mStartValue = mValue;
    mChange = target - mValue;
    mStartVelocity = mVelocity;
}

void ContinuousInterpolatedValue::setTarget(float target, float duration)
{
    setTarget(target);
    mDuration = duration;
}

void ContinuousInterpolatedValue::incTarget(float delta)
{
    setTarget(mTarget + delta);
}

void ContinuousInterpolatedValue::setValue(float value)
{
    mValue = value;
    mTarget = value;
    mElapsed = 0.0f;
    mStartValue = value;
    mChange = 0.0f;
    mStartVelocity = 0.0f;
    mVelocity = 0.0f;
}

void ContinuousInterpolatedValue::setDuration(float duration)
{
    mDefaultDuration = duration;
}

bool ContinuousInterpolatedValue::update(float dt)
{
    if (mValue == mTarget)
        return false;
    mElapsed += dt;
    const float t = mElapsed;
    const float d = mDuration;
    if (t >= d) {
        mVelocity = 0.0f;
        mValue = mTarget;
        return true;
    }
    const float u = mStartVelocity;
    const float change = mChange;
    const float old = mValue;
    mValue = mStartValue + u * t + (3.0f * change / (d * d) - 2.0f * u / d) * t * t +
             (u / (d * d) - 2.0f * change / (d * d * d)) * t * t * t;
    mVelocity = (mValue - old) / dt;
    return true;
}
