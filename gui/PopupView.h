#pragma once

#include "DisplayView.h"
#include "OrbisUIFrameworkExport.h"

/// A view shown above the screen's views by DisplayDevice::showPopup: centred in the
/// "popups" container over a dimmed backdrop that takes the touches meant for what
/// lies beneath.
class ORBIS_UI_EXPORT PopupView : public DisplayView
{
    Q_OBJECT

public:
    explicit PopupView(DisplayView* parent = nullptr, const char* name = "popup") : DisplayView(parent, name)
    {}

    bool isShowing() const { return mShowing; }

private:
    friend class DisplayDevice;
    bool mShowing = false;
    bool mDismissing = false;
};
