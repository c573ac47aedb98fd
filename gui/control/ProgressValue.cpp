#include "ProgressValue.h"

#include <cmath>

bool ProgressValue::setRange(double minimum, double maximum)
{
    if (!(minimum < maximum))
        return false;
    mMinimum = minimum;
    mMaximum = maximum;
    setValue(mValue, false, 0);
    return true;
}

void ProgressValue::setValue(double value, bool animated, double glideSeconds)
{
    mValue = std::isfinite(value) ? qBound(mMinimum, value, mMaximum) : mMinimum;
    const double target = (mValue - mMinimum) / (mMaximum - mMinimum);
    if (animated && target != mShown.value())
        mShown.ease(target, glideSeconds, 0, InterpolatedValue::EaseOutQuad, true);
    else
        mShown.setValue(target);
}

bool ProgressValue::advance()
{
    return mShown.active() && mShown.update();
}
