#pragma once

#include "OrbisUIFrameworkExport.h"

class DisplayView;

/// What a display needs from its touch dispatcher: who holds which touch, and the
/// per-frame delivery of queued touches.
/// The dispatcher registers itself on the device (DisplayDevice::setTouchOwnership);
/// without one, views hold no touches.
class ORBIS_UI_EXPORT TouchOwnership
{
public:
    virtual ~TouchOwnership() = default;
    /// Whether a live touch is owned by the view (or, with descendants, by one of them).
    virtual bool viewHasTouch(DisplayView* view, bool descendants) = 0;
    virtual void cancelTouchEvents(DisplayView* view) = 0;
    virtual void transferTouch(int touch, DisplayView* to) = 0;
    /// Delivers the touches queued since the last frame (called by DisplayDevice::startFrame()).
    virtual void processEvents() = 0;
};
