#include "Switch.h"

#include "ControlShapes.h"
#include "DisplayDevice.h"
#include "Skin.h"
#include "input/touch/TouchDevice.h"

namespace {
constexpr int kKnobInset = 4;

QSize sizeFor(int type)
{
    switch (type) {
    case Switch::Small:
        return QSize(64, 36);
    case Switch::Medium:
        return QSize(96, 52);
    case Switch::Large:
        return QSize(112, 60);
    default:
        return QSize(80, 44);
    }
}
} // namespace

Switch::Switch(DisplayView* parent, const char* name) : ControlBase(parent)
{
    if (name)
        setViewName(QString::fromUtf8(name));
    // The knob goes where the finger goes, even past the switch's ends.
    setStayPressedWhenDraggedOut(true);
}

void Switch::setOn(bool on, bool animated)
{
    if (on == mOn)
        return;
    settle(on, animated);
}

void Switch::settle(bool on, bool animated)
{
    const bool changed = on != mOn;
    mOn = on;
    const double target = on ? 1.0 : 0.0;
    if (animated && mKnob.value() != target)
        mKnob.ease(target, kSlideSeconds, 0, InterpolatedValue::EaseOutExpo, true);
    else
        mKnob.setValue(target);
    update();
    if (!changed)
        return;
    if (valueSource())
        setCurrentValue(on ? 1 : 0);
    emit toggled(this, on);
}

void Switch::setStyle(const Style& style)
{
    ControlBase::setStyle(style);
    int type = 0;
    if (style.enumValue(Style::SwitchType, type))
        mType = quint8(type);
    bool flip = false;
    if (style.boolValue(Style::FlipValue, flip) && flip != mFlip) {
        mFlip = flip;
        update();
    }
}

QSizeF Switch::naturalSize(double)
{
    return sizeFor(mType);
}

int Switch::knobDiameter() const
{
    return qMax(1, height() - 2 * kKnobInset);
}

int Switch::knobTravel() const
{
    return qMax(0, width() - height());
}

void Switch::draw(QPainter& painter)
{
    ControlBase::draw(painter);
    const qreal opacity = painter.opacity();
    if (state() & Disabled)
        painter.setOpacity(opacity * kDisabledOpacity);
    const QRect track(0, 0, width(), height());
    const int radius = height() / 2;
    const double position = qBound(0.0, mKnob.value(), 1.0);
    // The on colour fades in over the off one as the knob travels, without a picture
    // per shade.
    if (position < 1)
        ControlShapes::roundedRect(radius, Skin::parseColor(QStringLiteral("switchTrackColor")).color())
            .draw(painter, track);
    if (position > 0) {
        const qreal base = painter.opacity();
        painter.setOpacity(base * position);
        ControlShapes::roundedRect(radius, Skin::parseColor(QStringLiteral("switchTrackOnColor")).color())
            .draw(painter, track);
        painter.setOpacity(base);
    }
    const double along = mFlip ? 1.0 - position : position;
    const QPointF center(height() / 2.0 + along * knobTravel(), height() / 2.0);
    ControlShapes::drawKnob(painter, center, knobDiameter(), state() & Pressed);
    painter.setOpacity(opacity);
}

void Switch::touched(int touch, QPoint point)
{
    ControlBase::touched(touch, point);
    if (DisplayDevice* display = device())
        TouchDevice::getInstance(display)->setDragDistanceThreshold(touch, kDragThreshold);
    mKnob.stopUpdating();
    mGrabX = point.x();
    mGrabPosition = mKnob.value();
    mDragging = false;
}

void Switch::dragged(int touch, QSize delta)
{
    ControlBase::dragged(touch, delta);
    const int travel = knobTravel();
    if (travel <= 0)
        return;
    const double moved = double(touchPoint(touch).x() - mGrabX) / travel;
    mKnob.setValue(qBound(0.0, mGrabPosition + (mFlip ? -moved : moved), 1.0));
    mDragging = true;
    update();
}

void Switch::tapped(int touch, QPoint point)
{
    ControlBase::tapped(touch, point);
    settle(!mOn, true);
}

void Switch::released(int touch)
{
    ControlBase::released(touch);
    if (mDragging)
        settle(mKnob.value() > 0.5, true);
    mDragging = false;
}

void Switch::touchCanceled(int touch)
{
    ControlBase::touchCanceled(touch);
    if (mDragging)
        settle(mOn, true);
    mDragging = false;
}

void Switch::tick()
{
    ControlBase::tick();
    if (mKnob.active() && mKnob.update())
        update();
}

void Switch::valueChanged(bool animated, double value)
{
    setOn(value != 0, animated);
}

QVariantMap Switch::toVariantMap()
{
    QVariantMap map = ControlBase::toVariantMap();
    map.insert(QStringLiteral("on"), mOn);
    return map;
}
