#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TouchDriver.h"

class QMouseEvent;

/// Touches from a mouse, for development machines and a controller that failed. The
/// left button is one finger; pressing it with Shift or Control adds a second, fixed
/// finger at ("ui/pinch_anchor_x", "ui/pinch_anchor_y") from the press, so that
/// dragging pinches and rotates around it.
class ORBIS_UI_EXPORT MouseTouchDriver : public TouchDriver
{
public:
    MouseTouchDriver(int touchId, int anchorId);

    void mouseEvent(QMouseEvent* event);
    bool isPinching() const { return mPinching; }

private:
    int mTouchId;
    int mAnchorId;
    bool mPressed = false;
    bool mPinching = false;
    QPoint mAnchor;
};
