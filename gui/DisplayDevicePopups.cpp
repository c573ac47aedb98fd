// Pop-ups of a DisplayDevice: shown in the "popups" container, above a backdrop
// that dims the screen and swallows touches.
#include "DisplayDevice.h"

#include "PopupView.h"

#include <ConfigValue.h>
#include <Logger.h>

static const char* const kLogSource = "../../../gui/DisplayDevice";

static ConfigRealValue gPopupBrightnessAnimation("gui/popup_brightness_animation_ms", 0.5);

namespace {
// How far the screen behind pop-ups is darkened.
const float kBackdropAlpha = 0.5f;
} // namespace

DisplayView* DisplayDevice::popupBackdrop()
{
    if (!mPopupBackdrop) {
        mPopupBackdrop = new DisplayView(mPopups, "popupBackdrop");
        mPopupBackdrop->autoResizeToParent(QRectF(0, 0, 1, 1));
        mPopupBackdrop->setBackgroundColor(SkinColor(QColor(Qt::black)));
        mPopupBackdrop->setAlpha(0.0f);
        mPopupBackdrop->hide();
    }
    return mPopupBackdrop;
}

void DisplayDevice::showPopup(PopupView* popup, bool animated)
{
    if (!ORBIS_ASSERT(popup && !popup->mShowing, QStringLiteral("Popup is already shown")))
        return;
    emit popupWillShow(popup);
    popupWillBeShown(popup);
    DisplayView* backdrop = popupBackdrop();
    const double duration = animated ? gPopupBrightnessAnimation.value() : 0.0;
    backdrop->show();
    backdrop->raise();
    backdrop->setAlpha(kBackdropAlpha, duration);
    popup->mShowing = true;
    popup->mDismissing = false;
    popup->changeParent(mPopups);
    popup->raise();
    popup->moveCenter(width() / 2, height() / 2);
    mPopupList.append(popup);
    connect(popup, SIGNAL(animationComplete(DisplayView*)), this, SLOT(popupAnimationComplete(DisplayView*)),
            Qt::UniqueConnection);
    if (animated)
        popup->setAlpha(1.0f, duration, kDefaultEase, true, 0, false);
    else
        popup->setAlpha(1.0f, 0, kDefaultEase, true);
    setDisclosureArea(popup->rect());
    emit popupRectChanged();
    popupShown(popup);
}

void DisplayDevice::dismissPopup(PopupView* popup, bool animated)
{
    if (!ORBIS_ASSERT(popup && popup->mShowing, QStringLiteral("Popup is not shown")))
        return;
    emit popupWillHide(popup);
    popupWillBeDismissed(popup);
    popup->mShowing = false;
    mPopupList.removeOne(popup);
    if (mPopupList.isEmpty()) {
        popupBackdrop()->setAlpha(0.0f, animated ? gPopupBrightnessAnimation.value() : 0.0, kDefaultEase,
                                  true);
        setDisclosureArea(QRect());
    } else {
        // The backdrop stays just under the top pop-up.
        popupBackdrop()->lower(mPopupList.last());
        setDisclosureArea(mPopupList.last()->rect());
    }
    emit popupRectChanged();
    if (animated) {
        popup->mDismissing = true;
        popup->fadeOut(gPopupBrightnessAnimation.value());
    } else {
        popup->setAlpha(0.0f, 0, kDefaultEase, true);
        popupDidDismiss(popup);
    }
}

void DisplayDevice::dismissAllPopups()
{
    const QList<PopupView*> shown = mPopupList;
    for (auto it = shown.crbegin(); it != shown.crend(); ++it)
        dismissPopup(*it, false);
}

void DisplayDevice::popupAnimationComplete(DisplayView* view)
{
    auto* popup = static_cast<PopupView*>(view);
    if (popup->mDismissing) {
        popup->mDismissing = false;
        popupDidDismiss(popup);
    }
}

void DisplayDevice::popupDidDismiss(PopupView* popup)
{
    popup->hide();
    popupDismissed(popup);
}

void DisplayDevice::setDisclosureArea(const QRect& area)
{
    if (area == mDisclosureArea)
        return;
    mDisclosureArea = area;
    emit disclosureAreaChanged(area);
}

void DisplayDevice::popupWillBeShown(PopupView*) {}
void DisplayDevice::popupShown(PopupView*) {}
void DisplayDevice::popupWillBeDismissed(PopupView*) {}
void DisplayDevice::popupDismissed(PopupView*) {}
