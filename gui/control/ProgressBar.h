#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Panel.h"
#include "ProgressValue.h"

/// How far something has got: a rounded track (the panel's fill) filled from the
/// left, or from the bottom when vertical, in the style's Color up to the value's
/// place in the range. Animated changes glide for a quarter second; a bound data
/// value moves the bar.
class ORBIS_UI_EXPORT ProgressBar : public Panel
{
    Q_OBJECT

public:
    explicit ProgressBar(DisplayView* parent, const char* name = nullptr,
                         const QString& styleText = QString());

    /// A minimum not below the maximum is reported and the range stays as it was.
    void setRange(double minimum, double maximum);
    double minimum() const { return mProgress.minimum(); }
    double maximum() const { return mProgress.maximum(); }
    /// Clamped to the range.
    void setValue(double value, bool animated = false);
    double value() const { return mProgress.value(); }
    /// Where the fill ends as a fraction of the track, as drawn this frame.
    double shownFraction() const { return mProgress.shown(); }
    void setBarColor(const SkinColor& color);
    const SkinColor& barColor() const { return mBarColor; }

    void setStyle(const Style& style) override;
    QSizeF naturalSize(double width) override;
    void draw(QPainter& painter) override;
    void tick() override;
    void valueChanged(bool animated, double value) override;

    static constexpr double kGlideSeconds = 0.25;

private:
    ProgressValue mProgress;
    SkinColor mBarColor;
};
