#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ControlBase.h"

/// A value between a minimum and a maximum, in steps or continuous, shown as a
/// filled track with a knob. The knob follows the finger: the value is where the
/// finger is (less where on the knob it was taken), not the sum of its moves. A tap
/// on the track jumps there. valueChanged reports every change, valueCommitted the
/// value a touch leaves behind. Vertical sliders have their minimum at the bottom.
/// Precision in the style gives the step. A bound data value follows committed
/// values and moves the slider.
class ORBIS_UI_EXPORT Slider : public ControlBase
{
    Q_OBJECT

public:
    explicit Slider(DisplayView* parent, const char* name = nullptr,
                    Qt::Orientation orientation = Qt::Horizontal);

    void setOrientation(Qt::Orientation orientation);
    Qt::Orientation orientation() const { return mOrientation; }
    /// A minimum not below the maximum is reported and the range stays as it was.
    void setRange(double minimum, double maximum);
    double minimum() const { return mMinimum; }
    double maximum() const { return mMaximum; }
    /// 0: continuous. A negative step is reported and ignored.
    void setStep(double step);
    double step() const { return mStep; }
    /// Clamped to the range and moved to the nearest step.
    void setValue(double value);
    double value() const { return mValue; }
    /// Where the knob's centre is for a value, in the view's coordinates.
    QPointF knobCenter(double value) const;

    void setStyle(const Style& style) override;
    QSizeF naturalSize(double width) override;
    void draw(QPainter& painter) override;
    void touched(int touch, QPoint point) override;
    void dragged(int touch, QSize delta) override;
    void tapped(int touch, QPoint point) override;
    void released(int touch) override;
    void touchCanceled(int touch) override;
    void valueChanged(bool animated, double value) override;
    QVariantMap toVariantMap() override;

    static constexpr int kTrackThickness = 6;
    static constexpr int kKnobDiameter = 28;
    static constexpr int kDragThreshold = 6;

signals:
    void valueChanged(Slider* slider, double value);
    void valueCommitted(Slider* slider, double value);

private:
    int knobDiameter() const;
    /// The track's two ends along the axis, in the view's coordinates.
    double trackStart() const;
    double trackLength() const;
    double along(const QPointF& point) const;
    double valueAt(double position) const;
    double snapped(double value) const;
    void commit();

    double mMinimum = 0;
    double mMaximum = 1;
    double mStep = 0;
    double mValue = 0;
    double mPressValue = 0;
    /// Where on the knob the finger took it, along the axis; 0 when it pressed the track.
    double mGrab = 0;
    Qt::Orientation mOrientation;
    bool mOnKnob = false;
};
