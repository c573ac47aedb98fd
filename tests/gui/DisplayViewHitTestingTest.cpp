#include "DisplayDevice.h"
#include "LogCapture.h"
#include "TouchOwnership.h"
#include "support/QtPrinters.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {
class FakeTouches : public TouchOwnership
{
public:
    bool viewHasTouch(DisplayView* view, bool) override { return owners.contains(view); }
    void cancelTouchEvents(DisplayView*) override {}
    void transferTouch(int touch, DisplayView* to) override { transfers.append({touch, to}); }
    void processEvents() override { ++frames; }
    QList<DisplayView*> owners;
    QList<QPair<int, DisplayView*>> transfers;
    int frames = 0;
};

struct HitTest : ::testing::Test
{
    DisplayDevice device{400, 300};
    FakeTouches touches;
    DisplayView* panel = make(device.views(), "panel", QRect(100, 100, 200, 100));
    DisplayView* left = make(panel, "left", QRect(0, 0, 120, 100));
    DisplayView* right = make(panel, "right", QRect(100, 0, 100, 100)); // overlaps left by 20

    HitTest() { device.setTouchOwnership(&touches); }
    ~HitTest() override { device.setTouchOwnership(nullptr); }
    static DisplayView* make(DisplayView* parent, const char* name, QRect rect)
    {
        DisplayView* view = new DisplayView(parent, name);
        view->moveTo(rect.x(), rect.y());
        view->resizeTo(rect.width(), rect.height());
        return view;
    }
};
} // namespace

TEST_F(HitTest, TopmostSiblingWinsAndEmptyScreenHitsNothing)
{
    EXPECT_EQ(device.viewAtPoint(QPoint(150, 150)), left);
    EXPECT_EQ(device.viewAtPoint(QPoint(210, 150)), right); // in the overlap
    left->raise();
    EXPECT_EQ(device.viewAtPoint(QPoint(210, 150)), left);
    EXPECT_EQ(device.viewAtPoint(QPoint(50, 50)), nullptr); // root and containers pass touches on
    EXPECT_EQ(device.viewAtPoint(QPoint(299, 199)), right);
    EXPECT_EQ(device.viewAtPoint(QPoint(300, 200)), nullptr);
}

TEST_F(HitTest, TouchPaddingDisabledAndHiddenViews)
{
    DisplayView* small = make(right, "small", QRect(40, 40, 20, 20));
    EXPECT_EQ(device.viewAtPoint(QPoint(236, 150)), right);
    small->setTouchPadding(Padding(0, 0, 0, 5));
    EXPECT_EQ(device.viewAtPoint(QPoint(236, 150)), small);
    EXPECT_EQ(device.viewAtPoint(QPoint(234, 150)), right);
    // The padding cannot reach beyond the parent, which is tested first.
    right->setTouchPadding(Padding(0, 0, 10, 0));
    EXPECT_EQ(device.viewAtPoint(QPoint(250, 205)), nullptr);
    delete small;

    right->disable();
    EXPECT_EQ(device.viewAtPoint(QPoint(210, 150)), left);
    EXPECT_EQ(device.viewAtPoint(QPoint(250, 150)), panel);
    right->setTouchBehavior(DisplayView::TouchWhileDisabled, true);
    EXPECT_EQ(device.viewAtPoint(QPoint(250, 150)), right);
    right->enable();

    right->hide();
    EXPECT_EQ(device.viewAtPoint(QPoint(250, 150)), panel);
    right->show();
    right->setTouchBehavior(DisplayView::IgnoreTouches, true);
    EXPECT_EQ(device.viewAtPoint(QPoint(210, 150)), left); // passes through to what lies below
    EXPECT_FALSE(right->touchable(0));
    EXPECT_TRUE(left->touchable(0));
    panel->hide();
    EXPECT_FALSE(left->touchable(0));
}

TEST_F(HitTest, ViewKeepingItsTouchHidesItsChildren)
{
    DisplayView* button = make(left, "button", QRect(10, 10, 50, 50));
    panel->setTouchBehavior(DisplayView::KeepTouches, true);
    EXPECT_EQ(device.viewAtPoint(QPoint(120, 120)), button);
    panel->incrementTouchCount();
    EXPECT_EQ(device.viewAtPoint(QPoint(120, 120)), button); // the dispatcher does not confirm
    touches.owners.append(panel);
    EXPECT_EQ(device.viewAtPoint(QPoint(120, 120)), panel);

    // A keeper that does not itself take touches hands the touch to its nearest ancestor that does.
    panel->setTouchBehavior(DisplayView::KeepTouches, false);
    left->setTouchBehavior(DisplayView::KeepTouches, true);
    left->setTouchBehavior(DisplayView::IgnoreTouches, true);
    left->incrementTouchCount();
    touches.owners.append(left);
    EXPECT_EQ(device.viewAtPoint(QPoint(120, 120)), panel);
}

TEST_F(HitTest, TouchCountAndTransfer)
{
    LogCapture capture;
    left->decrementTouchCount();
    EXPECT_EQ(capture.assertions(), QStringList("mTouchCount > 0"));
    EXPECT_EQ(capture.records().first().condition, "mTouchCount > 0");
    EXPECT_EQ(left->touchCount(), 0);
    left->incrementTouchCount();
    left->incrementTouchCount();
    left->decrementTouchCount();
    EXPECT_EQ(left->touchCount(), 1);

    left->transferTouch(3, right);
    ASSERT_EQ(touches.transfers.size(), 1);
    EXPECT_EQ(touches.transfers.first().second, right);
    device.startFrame();
    EXPECT_EQ(touches.frames, 1);
}

TEST_F(HitTest, KeyAndTouchFocus)
{
    left->getKeyFocus(); // not allowed to have it
    EXPECT_FALSE(left->hasKeyFocus());
    left->setCanHaveKeyFocus(true, false);
    left->getKeyFocus();
    EXPECT_TRUE(left->hasKeyFocus());
    left->hide();
    device.checkKeyFocus();
    EXPECT_EQ(device.keyFocus(), nullptr);

    QSignalSpy got(right, SIGNAL(gotTouchFocus(DisplayView*)));
    QSignalSpy lost(right, SIGNAL(lostTouchFocus(DisplayView*)));
    right->getTouchFocus();
    EXPECT_TRUE(right->hasTouchFocus());
    panel->getTouchFocus();
    EXPECT_EQ(got.count(), 1);
    EXPECT_EQ(lost.count(), 1);
    delete panel; // focus never outlives its view
    EXPECT_EQ(device.touchFocus(), nullptr);
}
