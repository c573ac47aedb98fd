#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ControlBase.h"
#include "InterpolatedValue.h"

/// An on/off switch: a knob on a rounded track. A tap toggles it; the knob can be
/// dragged, and when the finger lifts the switch turns to the side the knob is on,
/// so a drag past the middle toggles it and a shorter one lets the knob slide back.
/// The knob slides with easeOutExpo. SwitchType picks the size it asks a layout
/// for; FlipValue:1 puts "on" at the left. A bound data value follows the switch
/// (1 on, 0 off) and moves it.
class ORBIS_UI_EXPORT Switch : public ControlBase
{
    Q_OBJECT

public:
    /// Values of the style's SwitchType.
    enum SwitchType
    {
        Small = 0,
        Toggle = 1,
        Medium = 2,
        Large = 3
    };

    explicit Switch(DisplayView* parent, const char* name = nullptr);

    /// Without animation the knob jumps. Emits toggled when the value changes.
    void setOn(bool on, bool animated = true);
    bool isOn() const { return mOn; }
    /// Where the knob is: 0 at the off end, 1 at the on end.
    double knobPosition() const { return mKnob.value(); }
    bool isSliding() const { return mKnob.active(); }

    void setStyle(const Style& style) override;
    QSizeF naturalSize(double width) override;
    void draw(QPainter& painter) override;
    void touched(int touch, QPoint point) override;
    void dragged(int touch, QSize delta) override;
    void released(int touch) override;
    void tapped(int touch, QPoint point) override;
    void touchCanceled(int touch) override;
    void tick() override;
    void valueChanged(bool animated, double value) override;
    QVariantMap toVariantMap() override;

    static constexpr double kSlideSeconds = 0.3;
    /// Fingers move the knob after this many pixels, so that short drags count.
    static constexpr int kDragThreshold = 6;

signals:
    void toggled(Switch* control, bool on);

private:
    int knobDiameter() const;
    int knobTravel() const;
    /// Turns to `on` and slides the knob there from wherever it is.
    void settle(bool on, bool animated);

    InterpolatedValue mKnob;
    int mGrabX = 0;
    double mGrabPosition = 0;
    quint8 mType = Toggle;
    bool mOn = false;
    bool mDragging = false;
    bool mFlip = false;
};
