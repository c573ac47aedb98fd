#include "ControlBase.h"

#include "DisplayDevice.h"
#include "DisplayImage.h"
#include "input/touch/TouchDevice.h"

ControlBase::ControlBase(DisplayView* parent) : DisplayView(parent, nullptr)
{
    setTouchBehavior(KeepTouches, true);
    // Titles and icons sit where the control puts them, also in a flex row.
    setPlacesOwnChildren(true);
}

bool ControlBase::isValidState(ControlStates state)
{
    return (int(state) & ~(Pressed | Disabled | Selected)) == 0;
}

void ControlBase::updateState()
{
    ControlStates state;
    if (mSelected)
        state |= Selected;
    if (mPressed)
        state |= Pressed;
    if (!isEnabled())
        state |= Disabled;
    if (state == mState)
        return;
    mState = state;
    stateChanged();
    emit stateChanged(this);
}

void ControlBase::stateChanged()
{
    update();
}

void ControlBase::setSelected(bool selected)
{
    if (mInSetSelected || selected == mSelected)
        return;
    mInSetSelected = true;
    mSelected = selected;
    updateState();
    if (mSelected)
        emit this->selected(this);
    mInSetSelected = false;
}

// Touch

QPoint ControlBase::touchPoint(int touch) const
{
    if (DisplayDevice* display = device()) {
        if (TouchInfo* info = TouchDevice::getInstance(display)->info(touch); info && info->isLive())
            return info->currentPoint;
    }
    return mPressPoint;
}

QRect ControlBase::screenRect() const
{
    return relativePositionRect(nullptr);
}

QPoint ControlBase::mapFromScreen(QPoint point) const
{
    return point - screenRect().topLeft();
}

bool ControlBase::insideTouchArea(QPoint screenPoint) const
{
    const Padding pad = touchPadding();
    return screenRect().adjusted(-pad.left, -pad.top, pad.right, pad.bottom).contains(screenPoint);
}

void ControlBase::touched(int, QPoint point)
{
    mPressPoint = point;
    mTouchActive = true;
    mInside = true;
    mPressed = true;
    startHoldTimer();
    updateState();
    emit touched(this);
}

void ControlBase::dragged(int touch, QSize)
{
    const bool inside = mStayPressedWhenDraggedOut || insideTouchArea(touchPoint(touch));
    if (inside == mInside)
        return;
    mInside = inside;
    mPressed = inside;
    if (inside) {
        startHoldTimer();
        emit draggedIn(this);
    } else {
        invalidateHoldTimer();
        emit draggedOut(this);
    }
    updateState();
}

void ControlBase::released(int)
{
    mTouchActive = false;
    const bool wasPressed = mPressed;
    mInside = false;
    mPressed = false;
    invalidateHoldTimer();
    updateState();
    if (wasPressed)
        emit released(this);
}

void ControlBase::tapped(int, QPoint)
{
    emit tapped(this);
}

void ControlBase::endPress()
{
    mTouchActive = false;
    mInside = false;
    mPressed = false;
    invalidateHoldTimer();
    updateState();
}

void ControlBase::touchCanceled(int)
{
    endPress();
    emit cancelTouched(this);
}

// Holding

void ControlBase::startHoldTimer()
{
    if (mHoldTime < 1)
        return;
    mTimeHeld = -1;
    mHoldTimer.start();
}

void ControlBase::invalidateHoldTimer()
{
    if (!mHoldTimer.isValid())
        return;
    mTimeHeld = int(mHoldTimer.elapsed());
    mHoldTimer.invalidate();
    mHeld = false;
}

void ControlBase::holdTimerExpired() {}

void ControlBase::tick()
{
    DisplayView::tick();
    if (mHeld || !mHoldTimer.isValid())
        return;
    if (mHoldTimer.elapsed() > mHoldTime) {
        mHeld = true;
        holdTimerExpired();
        emit held(this);
    }
}

// Touch map

void ControlBase::setTouchMap(DisplayImage* map)
{
    mTouchMap = map ? map->image() : QImage();
}

bool ControlBase::touchMapContainsPoint(QPoint point)
{
    if (mTouchMap.isNull())
        return false;
    // The map covers the view; a point in the touch padding takes the nearest edge pixel.
    int x = point.x();
    int y = point.y();
    if (width() > 0 && height() > 0) {
        x = int(qint64(x) * mTouchMap.width() / width());
        y = int(qint64(y) * mTouchMap.height() / height());
    }
    x = qBound(0, x, mTouchMap.width() - 1);
    y = qBound(0, y, mTouchMap.height() - 1);
    return qAlpha(mTouchMap.pixel(x, y)) != 0;
}

DisplayView* ControlBase::viewAtPoint(QPoint point)
{
    DisplayView* hit = DisplayView::viewAtPoint(point);
    if (hit == this && !mTouchMap.isNull() && !mTouchActive && !touchMapContainsPoint(point))
        return nullptr;
    return hit;
}

// Enablement and the rest

void ControlBase::enabled()
{
    updateState();
}

void ControlBase::disabled()
{
    // A control disabled under a finger lets the finger go.
    if (mTouchActive) {
        if (DisplayDevice* display = device())
            TouchDevice::getInstance(display)->cancelTouchEvents(this);
    }
    updateState();
}

void ControlBase::resized()
{
    DisplayView::resized();
    update();
}

QVariantMap ControlBase::toVariantMap()
{
    QVariantMap map = DisplayView::toVariantMap();
    map.insert(QStringLiteral("state"), int(mState));
    map.insert(QStringLiteral("pressed"), mPressed);
    map.insert(QStringLiteral("selected"), mSelected);
    map.insert(QStringLiteral("holdTime"), mHoldTime);
    map.insert(QStringLiteral("held"), mHeld);
    return map;
}
