#include "Slider.h"

#include "ControlShapes.h"
#include "DisplayDevice.h"
#include "Skin.h"
#include "input/touch/TouchDevice.h"

#include <cmath>

namespace {
// A press this close to the knob's edge still takes the knob.
constexpr int kGrabSlop = 8;
constexpr int kNaturalLength = 240;
constexpr int kNaturalThickness = 48;
} // namespace

Slider::Slider(DisplayView* parent, const char* name, Qt::Orientation orientation)
    : ControlBase(parent), mOrientation(orientation)
{
    if (name)
        setViewName(QString::fromUtf8(name));
    // The value follows the finger along the whole axis, beyond the slider's ends.
    setStayPressedWhenDraggedOut(true);
}

void Slider::setOrientation(Qt::Orientation orientation)
{
    if (orientation == mOrientation)
        return;
    mOrientation = orientation;
    update();
    layoutPropertyChanged(SizeProperty);
}

void Slider::setRange(double minimum, double maximum)
{
    if (!(minimum < maximum)) {
        viewAssert("minimum < maximum",
                   QStringLiteral("Invalid slider range %1 to %2 View: %3").arg(minimum).arg(maximum),
                   __LINE__);
        return;
    }
    mMinimum = minimum;
    mMaximum = maximum;
    setValue(mValue);
    update();
}

void Slider::setStep(double step)
{
    if (!(step >= 0)) {
        viewAssert("step >= 0", QStringLiteral("Invalid slider step %1 View: %2").arg(step), __LINE__);
        return;
    }
    mStep = step;
    setValue(mValue);
}

double Slider::snapped(double value) const
{
    value = qBound(mMinimum, value, mMaximum);
    if (mStep <= 0)
        return value;
    double stepped = mMinimum + std::round((value - mMinimum) / mStep) * mStep;
    // The last whole step below the maximum, when the maximum is not on a step.
    if (stepped > mMaximum)
        stepped -= mStep;
    return stepped;
}

void Slider::setValue(double value)
{
    if (std::isnan(value))
        return;
    value = snapped(value);
    if (value == mValue)
        return;
    mValue = value;
    update();
    emit valueChanged(this, value);
}

// Geometry

int Slider::knobDiameter() const
{
    const int cross = mOrientation == Qt::Horizontal ? height() : width();
    return qMax(8, qMin(kKnobDiameter, cross));
}

double Slider::trackStart() const
{
    return knobDiameter() / 2.0;
}

double Slider::trackLength() const
{
    const int length = mOrientation == Qt::Horizontal ? width() : height();
    return qMax(0, length - knobDiameter());
}

double Slider::along(const QPointF& point) const
{
    return mOrientation == Qt::Horizontal ? point.x() : point.y();
}

double Slider::valueAt(double position) const
{
    const double length = trackLength();
    if (length <= 0)
        return mMinimum;
    double fraction = (position - trackStart()) / length;
    if (mOrientation == Qt::Vertical)
        fraction = 1.0 - fraction;
    return mMinimum + qBound(0.0, fraction, 1.0) * (mMaximum - mMinimum);
}

QPointF Slider::knobCenter(double value) const
{
    double fraction = (qBound(mMinimum, value, mMaximum) - mMinimum) / (mMaximum - mMinimum);
    if (mOrientation == Qt::Vertical)
        fraction = 1.0 - fraction;
    const double position = trackStart() + fraction * trackLength();
    if (mOrientation == Qt::Horizontal)
        return QPointF(position, height() / 2.0);
    return QPointF(width() / 2.0, position);
}

QSizeF Slider::naturalSize(double width)
{
    if (mOrientation == Qt::Horizontal)
        return QSizeF(width < 0 ? kNaturalLength : width, kNaturalThickness);
    return QSizeF(kNaturalThickness, kNaturalLength);
}

void Slider::setStyle(const Style& style)
{
    ControlBase::setStyle(style);
    double step = 0;
    if (style.doubleValue(Style::Precision, step))
        setStep(step);
}

void Slider::draw(QPainter& painter)
{
    ControlBase::draw(painter);
    const qreal opacity = painter.opacity();
    if (state() & Disabled)
        painter.setOpacity(opacity * kDisabledOpacity);
    const int diameter = knobDiameter();
    const int thickness = kTrackThickness;
    const QPointF knob = knobCenter(mValue);
    const int start = qRound(trackStart() - thickness / 2.0);
    const int length = qRound(trackLength()) + thickness;
    // Filled and empty parts meet under the knob; neither is drawn over the other,
    // so a translucent (disabled) slider shows each in its own colour.
    QRect filled;
    QRect empty;
    if (mOrientation == Qt::Horizontal) {
        const QRect track(start, (height() - thickness) / 2, length, thickness);
        const int split = qRound(knob.x());
        filled = QRect(track.topLeft(), QPoint(split - 1, track.bottom()));
        empty = QRect(QPoint(split, track.top()), track.bottomRight());
    } else {
        const QRect track((width() - thickness) / 2, start, thickness, length);
        const int split = qRound(knob.y());
        empty = QRect(track.topLeft(), QPoint(track.right(), split - 1));
        filled = QRect(QPoint(track.left(), split), track.bottomRight());
    }
    const int radius = thickness / 2;
    if (!empty.isEmpty())
        ControlShapes::roundedRect(radius, Skin::parseColor(QStringLiteral("sliderTrackColor")).color())
            .draw(painter, empty);
    if (!filled.isEmpty())
        ControlShapes::roundedRect(radius, Skin::parseColor(QStringLiteral("sliderFillColor")).color())
            .draw(painter, filled);
    ControlShapes::drawKnob(painter, knob, diameter, state() & Pressed);
    painter.setOpacity(opacity);
}

// Touch

void Slider::touched(int touch, QPoint point)
{
    ControlBase::touched(touch, point);
    if (DisplayDevice* display = device())
        TouchDevice::getInstance(display)->setDragDistanceThreshold(touch, kDragThreshold);
    mPressValue = mValue;
    const QPointF local = mapFromScreen(point);
    const QPointF knob = knobCenter(mValue);
    const QPointF offset = local - knob;
    mOnKnob = std::hypot(offset.x(), offset.y()) <= knobDiameter() / 2.0 + kGrabSlop;
    mGrab = mOnKnob ? along(local) - along(knob) : 0;
}

void Slider::dragged(int touch, QSize delta)
{
    ControlBase::dragged(touch, delta);
    setValue(valueAt(along(mapFromScreen(touchPoint(touch))) - mGrab));
}

void Slider::tapped(int touch, QPoint point)
{
    ControlBase::tapped(touch, point);
    if (!mOnKnob)
        setValue(valueAt(along(mapFromScreen(point))));
}

void Slider::released(int touch)
{
    ControlBase::released(touch);
    commit();
}

void Slider::touchCanceled(int touch)
{
    ControlBase::touchCanceled(touch);
    commit();
}

void Slider::commit()
{
    if (mValue == mPressValue)
        return;
    mPressValue = mValue;
    if (valueSource())
        setCurrentValue(mValue);
    emit valueCommitted(this, mValue);
}

void Slider::valueChanged(bool, double value)
{
    // The bound value moves the slider; a drag under way keeps the finger's value.
    if (!isTouchActive())
        setValue(value);
}

QVariantMap Slider::toVariantMap()
{
    QVariantMap map = ControlBase::toVariantMap();
    map.insert(QStringLiteral("value"), mValue);
    map.insert(QStringLiteral("minimum"), mMinimum);
    map.insert(QStringLiteral("maximum"), mMaximum);
    map.insert(QStringLiteral("step"), mStep);
    return map;
}
