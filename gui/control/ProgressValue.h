#pragma once

#include "OrbisUIFrameworkExport.h"

#include "InterpolatedValue.h"

/// The number a progress view shows: a value within a range, and the fraction of the
/// range that is drawn, which glides to a new value when asked to.
class ORBIS_UI_EXPORT ProgressValue
{
public:
    /// False, changing nothing, when the minimum is not below the maximum; the value
    /// is kept within a new range.
    bool setRange(double minimum, double maximum);
    double minimum() const { return mMinimum; }
    double maximum() const { return mMaximum; }
    /// Clamped to the range; a value that is not a number counts as the minimum.
    void setValue(double value, bool animated, double glideSeconds);
    double value() const { return mValue; }
    /// Where the drawing ends, as a fraction of the range, this frame.
    double shown() const { return mShown.value(); }
    /// Advances a glide to the clock; true when the shown fraction moved.
    bool advance();

private:
    double mMinimum = 0;
    double mMaximum = 1;
    double mValue = 0;
    InterpolatedValue mShown;
};
