#pragma once

#include "InterpolatedValue.h"
#include "Panel.h"

// How far something has got: a rounded track (the panel's fill) filled from the
// left, or from the bottom when vertical, in the style's Color up to the value's
// place in the range. Animated changes glide for a quarter second; a bound data
// value moves the bar.
class ProgressBar : public Panel
{
    Q_OBJECT

public:
    explicit ProgressBar(DisplayView* parent, const char* name = nullptr,
                         const QString& styleText = QString());

    // A minimum not below the maximum is reported and the range stays as it was.
    void setRange(double minimum, double maximum);
    double minimum() const { return mMinimum; }
    double maximum() const { return mMaximum; }
    // Clamped to the range.
    void setValue(double value, bool animated = false);
    double value() const { return mValue; }
    // Where the fill ends as a fraction of the track, as drawn this frame.
    double shownFraction() const { return mShown.value(); }
    void setBarColor(const SkinColor& color);
    const SkinColor& barColor() const { return mBarColor; }

    void setStyle(const Style& style) override;
    QSizeF naturalSize(double width) override;
    void draw(QPainter& painter) override;
    void tick() override;
    void valueChanged(bool animated, double value) override;

    static constexpr double kGlideSeconds = 0.25;

private:
    double fraction(double value) const;

    double mMinimum = 0;
    double mMaximum = 1;
    double mValue = 0;
    InterpolatedValue mShown;
    SkinColor mBarColor;
};
