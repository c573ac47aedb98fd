#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayView.h"
#include "ElapsedTimer.h"
#include "ProgressValue.h"
#include "SkinColor.h"

/// A ring drawn with paths: a track circle (the style's StrokeColor) and an arc from
/// twelve o'clock clockwise (Color) whose length is the value's place in the range,
/// StrokeWidth thick with round ends. It shows a level (a battery, a timer), and
/// turned continuously (setTurnPeriod) it shows that something is under way. Turning
/// rotates the view, not the path, so a turning ring is not re-tessellated: give it a
/// layer to have the turn only recomposite the screen.
class ORBIS_UI_EXPORT ProgressRing : public DisplayView
{
    Q_OBJECT

public:
    explicit ProgressRing(DisplayView* parent, const char* name = nullptr,
                          const QString& styleText = QString());

    /// A minimum not below the maximum is reported and the range stays as it was.
    void setRange(double minimum, double maximum);
    double minimum() const { return mProgress.minimum(); }
    double maximum() const { return mProgress.maximum(); }
    /// Clamped to the range.
    void setValue(double value, bool animated = false);
    double value() const { return mProgress.value(); }
    /// The arc's sweep as a fraction of the circle, as drawn this frame.
    double shownFraction() const { return mProgress.shown(); }
    void setArcColor(const SkinColor& color);
    void setTrackColor(const SkinColor& color);
    void setThickness(int pixels);
    int thickness() const { return mThickness; }
    /// Seconds per turn; 0 stops the ring where it is. Negative periods turn it
    /// counter-clockwise.
    void setTurnPeriod(double seconds);
    double turnPeriod() const { return mTurnPeriod; }

    void setStyle(const Style& style) override;
    QSizeF naturalSize(double width) override;
    void draw(QPainter& painter) override;
    void tick() override;
    void resized() override;
    void valueChanged(bool animated, double value) override;

    static constexpr double kGlideSeconds = 0.6;

private:
    void applyTurn();

    ProgressValue mProgress;
    SkinColor mArcColor;
    SkinColor mTrackColor;
    int mThickness = 8;
    double mTurnPeriod = 0;
    double mTurnStart = 0;
    ElapsedTimer mTurnTimer;
};
