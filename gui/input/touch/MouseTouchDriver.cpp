#include "MouseTouchDriver.h"

#include "ConfigValue.h"

#include <QMouseEvent>

static ConfigIntValue gPinchAnchorX("ui/pinch_anchor_x", 250);
static ConfigIntValue gPinchAnchorY("ui/pinch_anchor_y", -250);

MouseTouchDriver::MouseTouchDriver(int touchId, int anchorId) : mTouchId(touchId), mAnchorId(anchorId) {}

void MouseTouchDriver::mouseEvent(QMouseEvent* event)
{
    const QPoint pos = event->pos();
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (event->button() != Qt::LeftButton || mPressed)
            return;
        mPressed = true;
        queueEvent(mTouchId, true, pos.x(), pos.y());
        if (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) {
            mPinching = true;
            mAnchor = pos + QPoint(gPinchAnchorX.value(), gPinchAnchorY.value());
            queueEvent(mAnchorId, true, mAnchor.x(), mAnchor.y());
        }
        break;
    case QEvent::MouseMove:
        // Mouse tracking reports hovering too; only a held button is a finger.
        if (mPressed)
            queueEvent(mTouchId, true, pos.x(), pos.y());
        break;
    case QEvent::MouseButtonRelease:
        if (event->button() != Qt::LeftButton || !mPressed)
            return;
        mPressed = false;
        queueEvent(mTouchId, false, pos.x(), pos.y());
        if (mPinching) {
            mPinching = false;
            queueEvent(mAnchorId, false, mAnchor.x(), mAnchor.y());
        }
        break;
    default:
        break;
    }
}
