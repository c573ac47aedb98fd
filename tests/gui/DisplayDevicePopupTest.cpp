#include "DisplayDevice.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "PopupView.h"
#include "support/QtPrinters.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// Notes the pop-up hooks in the order they run.
class RecordingDevice : public DisplayDevice
{
public:
    RecordingDevice() : DisplayDevice(400, 300) { timer()->stop(); }
    QStringList hooks;

protected:
    void popupWillBeShown(PopupView* p) override { hooks << "willBeShown:" + p->viewName(); }
    void popupShown(PopupView* p) override { hooks << "shown:" + p->viewName(); }
    void popupWillBeDismissed(PopupView* p) override { hooks << "willBeDismissed:" + p->viewName(); }
    void popupDismissed(PopupView* p) override { hooks << "dismissed:" + p->viewName(); }
};

QList<DisplayView*> stacking(DisplayView* container)
{
    const DisplayViewList::List list = container->children().list();
    return QList<DisplayView*>(list.begin(), list.end());
}

class DisplayDevicePopupTest : public ::testing::Test
{
protected:
    PopupView* popup(const char* name)
    {
        auto* view = new PopupView(device.hiddenViews(), name);
        view->resizeTo(100, 50);
        return view;
    }
    void runFor(int ms)
    {
        for (int t = 0; t < ms; t += 50) {
            clock.advanceMs(50);
            device.updateAnimations();
        }
    }

    ManualClock clock;
    RecordingDevice device;
};

TEST_F(DisplayDevicePopupTest, APopupIsCentredAboveADimmingBackdropThatTakesTouches)
{
    auto* below = new DisplayView(device.views(), "below");
    below->resizeTo(400, 300);
    PopupView* first = popup("first");
    QSignalSpy willShow(&device, SIGNAL(popupWillShow(PopupView*)));
    QSignalSpy area(&device, SIGNAL(disclosureAreaChanged(QRect)));

    device.showPopup(first, true);
    EXPECT_EQ(willShow.count(), 1);
    EXPECT_TRUE(first->isShowing());
    EXPECT_EQ(first->rect(), QRect(150, 125, 100, 50));
    EXPECT_EQ(device.disclosureArea(), QRect(150, 125, 100, 50));
    EXPECT_EQ(area.count(), 1);
    DisplayView* backdrop = device.popupBackdrop();
    EXPECT_EQ(stacking(device.popups()), QList<DisplayView*>({backdrop, first}));
    EXPECT_FLOAT_EQ(first->alpha(), 0.0f);

    runFor(250); // half of "gui/popup_brightness_animation_ms"
    EXPECT_GT(backdrop->alpha(), 0.0f);
    EXPECT_LT(backdrop->alpha(), 0.5f);
    runFor(300);
    EXPECT_FLOAT_EQ(backdrop->alpha(), 0.5f);
    EXPECT_FLOAT_EQ(first->alpha(), 1.0f);
    // The backdrop, not the view under it, is hit.
    EXPECT_EQ(device.viewAtPoint(QPoint(10, 10)), backdrop);
    EXPECT_EQ(device.viewAtPoint(QPoint(200, 150)), first);
    EXPECT_EQ(device.hooks, QStringList({"willBeShown:first", "shown:first"}));
}

TEST_F(DisplayDevicePopupTest, DismissingFadesOutAndReportsOnceTheFadeEnds)
{
    PopupView* first = popup("first");
    PopupView* second = popup("second");
    device.showPopup(first, false);
    device.showPopup(second, false);
    DisplayView* backdrop = device.popupBackdrop();
    EXPECT_EQ(stacking(device.popups()), QList<DisplayView*>({first, backdrop, second}));

    device.dismissPopup(second, true);
    EXPECT_FALSE(second->isShowing());
    EXPECT_EQ(device.popupList(), QList<PopupView*>{first});
    // The backdrop moves down under the pop-up that is left.
    EXPECT_EQ(stacking(device.popups()).mid(0, 2), QList<DisplayView*>({backdrop, first}));
    EXPECT_FALSE(device.hooks.contains("dismissed:second"));
    runFor(600);
    EXPECT_TRUE(device.hooks.contains("dismissed:second"));
    EXPECT_FALSE(second->visibleFlag());
    EXPECT_TRUE(backdrop->visibleFlag());

    device.dismissAllPopups();
    EXPECT_TRUE(device.popupList().isEmpty());
    EXPECT_FALSE(backdrop->visibleFlag());
    EXPECT_EQ(device.disclosureArea(), QRect());
    EXPECT_EQ(device.hooks.filter("dismissed:").size(), 2);
}

TEST_F(DisplayDevicePopupTest, MisuseIsReportedAndDeletedPopupsAreForgotten)
{
    PopupView* first = popup("first");
    LogCapture log;
    device.dismissPopup(first, false);
    device.showPopup(first, false);
    device.showPopup(first, false);
    device.showPopup(nullptr, false);
    EXPECT_EQ(log.assertions(),
              QStringList({"Popup is not shown", "Popup is already shown", "Popup is already shown"}));
    EXPECT_EQ(device.popupList().size(), 1);
    delete first;
    EXPECT_TRUE(device.popupList().isEmpty());
}

} // namespace
