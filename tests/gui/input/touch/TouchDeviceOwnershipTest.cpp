#include "LogCapture.h"
#include "support/QtPrinters.h"
#include "support/TouchFixture.h"

namespace {
struct Ownership : TouchFixture
{
    TouchRecorderView* list = new TouchRecorderView(device.views(), "list", QRect(400, 0, 400, 480), &log);
    TouchRecorderView* item = new TouchRecorderView(list, "item", QRect(0, 100, 400, 80), &log);
};
} // namespace

TEST_F(Ownership, HidingTheOwnerCancelsItsTouches)
{
    press(0, QPoint(150, 150));
    press(1, QPoint(450, 150));
    EXPECT_TRUE(touch->viewHasTouch(button, false));
    EXPECT_TRUE(touch->viewHasTouch(list, true));
    EXPECT_FALSE(touch->viewHasTouch(list, false));
    take();
    button->show(false);
    EXPECT_EQ(take(), QStringList({"button:canceled 0"}));
    EXPECT_EQ(button->touchCount(), 0);
    EXPECT_FALSE(touch->info(0)->isLive());
    // The finger's later events belong to nobody.
    move(0, QPoint(250, 150));
    release(0, QPoint(250, 150));
    EXPECT_TRUE(take().isEmpty());
    EXPECT_TRUE(touch->viewHasTouch(item, false));
}

TEST_F(Ownership, TransferToAnUntouchableViewStillDelivers)
{
    LogCapture capture;
    button->enable(false);
    press(1, QPoint(450, 150));
    touch->transferTouch(1, button);
    EXPECT_TRUE(capture.contains("Transfering touch to untouchable view: " + button->viewPath()));
    EXPECT_EQ(take(), QStringList({"item:touched 1 450,150", "item:canceled 1", "button:touched 1 450,150"}));
    EXPECT_EQ(item->touchCount(), 0);
    EXPECT_EQ(button->touchCount(), 1);
    move(1, QPoint(500, 150));
    release(1, QPoint(500, 150));
    EXPECT_EQ(take(), QStringList({"button:dragged 1 50,0", "button:released 1"}));
    EXPECT_EQ(button->touchCount(), 0);
}

TEST_F(Ownership, SettingTheSameOwnerAgainIsRefused)
{
    LogCapture capture;
    press(0, QPoint(150, 150));
    touch->transferTouch(0, button);
    EXPECT_TRUE(capture.contains("Attempting to set touch on a view that already received it: " +
                                 button->viewPath()));
    EXPECT_EQ(button->touchCount(), 1);
    EXPECT_EQ(take(), QStringList({"button:touched 0 150,150"}));
}

TEST_F(Ownership, DragDelegateTakesOverTheFingerUnlessTheViewDrags)
{
    item->setDragGestureDelegate(list);
    press(0, QPoint(450, 150));
    move(0, QPoint(450, 190));
    move(0, QPoint(450, 200));
    release(0, QPoint(450, 200));
    EXPECT_EQ(take(), QStringList({"item:touched 0 450,150", "item:canceled 0", "list:touched 0 450,190",
                                   "list:dragged 0 0,40", "list:dragged 0 0,10", "list:released 0"}));

    item->setTouchGesture(DisplayView::DragGesture, true);
    clock.advanceMs(1000);
    press(0, QPoint(450, 150));
    move(0, QPoint(450, 190));
    EXPECT_EQ(take(), QStringList({"item:touched 0 450,150", "item:dragged 0 0,40"}));
}

// A drag that starts on a view which neither drags nor names a delegate goes to the
// nearest ancestor that requires drags, and from there on through delegates.
TEST_F(Ownership, DragsGoToTheNearestAncestorThatRequiresThem)
{
    auto* inner = new TouchRecorderView(item, "inner", QRect(0, 0, 400, 80), &log);
    list->setRequiredTouchGesture(DisplayView::DragGesture, true);
    press(0, QPoint(450, 150));
    move(0, QPoint(450, 190));
    release(0, QPoint(450, 190));
    EXPECT_EQ(take(), QStringList({"inner:touched 0 450,150", "inner:canceled 0", "list:touched 0 450,190",
                                   "list:dragged 0 0,40", "list:released 0"}));

    item->setRequiredTouchGesture(DisplayView::DragGesture, true);
    clock.advanceMs(1000);
    press(0, QPoint(450, 150));
    move(0, QPoint(450, 190));
    release(0, QPoint(450, 190));
    EXPECT_EQ(take(), QStringList({"inner:touched 0 450,150", "inner:canceled 0", "item:touched 0 450,190",
                                   "item:dragged 0 0,40", "item:released 0"}));

    // Delegates naming each other hand the finger round a bounded number of times.
    item->setDragGestureDelegate(inner);
    inner->setDragGestureDelegate(item);
    clock.advanceMs(1000);
    press(0, QPoint(450, 150));
    move(0, QPoint(450, 190));
    EXPECT_EQ(take(), QStringList({"inner:touched 0 450,150", "inner:dragged 0 0,40"}));
    release(0, QPoint(450, 190));
}

TEST_F(Ownership, DeletedOwnerIsForgottenAndDestroyingViewIsRefused)
{
    press(0, QPoint(150, 150));
    delete button;
    EXPECT_FALSE(touch->info(0)->isLive());
    move(0, QPoint(250, 150));
    release(0, QPoint(250, 150));
    EXPECT_EQ(log, QStringList({"button:touched 0 150,150"}));

    // A child whose destructor moves its parent's finger while the parent is being torn down.
    struct Dying : DisplayView
    {
        Dying(DisplayView* parent, TouchDevice* touch) : DisplayView(parent, "dying"), touch(touch) {}
        ~Dying() override { touch->doTouchEvent(1, TouchMoved, QPoint(700, 400)); }
        TouchDevice* touch;
    };
    new Dying(list, touch);
    press(1, QPoint(450, 10));
    EXPECT_EQ(touch->info(1)->view, list);
    LogCapture capture;
    delete list;
    ASSERT_EQ(capture.assertions().size(), 1);
    EXPECT_EQ(capture.assertions().at(0), "Touch Event on a dereferenced view View: list");
    EXPECT_FALSE(touch->info(1)->isLive());
}

TEST_F(Ownership, IterateVisitsLiveTouchesOfTheViewAndItsDescendants)
{
    press(2, QPoint(450, 150));
    press(3, QPoint(460, 10));
    press(4, QPoint(150, 150));
    move(2, QPoint(500, 150));
    QStringList seen;
    touch->iterateTouchesForView(list, true, [&seen](int id, TouchState state, const QPoint& point) {
        seen << QStringLiteral("%1 %2 %3,%4").arg(id).arg(int(state)).arg(point.x()).arg(point.y());
    });
    EXPECT_EQ(seen, QStringList({"2 5 500,150", "3 4 460,10"}));
    touch->cancelTouchEvents(list);
    EXPECT_TRUE(touch->viewHasTouch(item, false));
    EXPECT_FALSE(touch->viewHasTouch(list, false));
    touch->clearView(item);
    EXPECT_FALSE(touch->viewHasTouch(list, true));
    EXPECT_EQ(item->touchCount(), 0);
    EXPECT_EQ(list->touchCount(), 0);
}
