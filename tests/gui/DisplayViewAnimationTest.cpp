#include "DisplayDevice.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "support/QtPrinters.h"

#include <QPointer>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {
struct Animation : ::testing::Test
{
    ManualClock clock;
    DisplayDevice device{800, 600};
    DisplayView* view = new DisplayView(device.views(), "view");

    Animation() { view->resizeTo(100, 50); }
    void frame(int ms)
    {
        clock.advanceMs(ms);
        device.updateAnimations();
    }
};

// Animates its parent as it goes: the parent is by then being destroyed.
class ParentFader : public DisplayView
{
public:
    using DisplayView::DisplayView;
    ~ParentFader() override { parentView()->fadeOut(1.0); }
};
} // namespace

TEST_F(Animation, MoveRunsOnTheDeviceClockAndReportsStartAndEnd)
{
    QSignalSpy started(view, SIGNAL(animationStarted(DisplayView*)));
    QSignalSpy completed(view, SIGNAL(animationComplete(DisplayView*)));
    view->moveTo(200, 100, 1.0, InterpolatedValue::Linear);
    EXPECT_EQ(started.count(), 1);
    EXPECT_EQ(view->position(), QPoint(0, 0)); // nothing moves before a frame
    frame(250);
    EXPECT_EQ(view->position(), QPoint(50, 25));
    view->resizeTo(300, 50, 1.0, InterpolatedValue::Linear); // joins the running animation
    EXPECT_EQ(started.count(), 1);
    frame(750);
    EXPECT_EQ(view->position(), QPoint(200, 100));
    EXPECT_EQ(completed.count(), 0); // the resize still runs
    frame(250);
    EXPECT_EQ(view->size(), QSize(300, 50));
    EXPECT_EQ(completed.count(), 1);
    EXPECT_EQ(device.animationCount(), 0);
}

TEST_F(Animation, RetargetingAndImmediateChangesOverrideTheFlight)
{
    view->moveTo(100, 0, 1.0, InterpolatedValue::Linear);
    frame(500);
    EXPECT_EQ(view->x(), 50);
    view->moveLeft(0, 1.0, InterpolatedValue::Linear); // back from where it is
    frame(500);
    EXPECT_EQ(view->x(), 25);
    view->moveTo(10, 20); // at once, ending the flight of both axes
    frame(500);
    EXPECT_EQ(view->position(), QPoint(10, 20));

    view->moveTo(100, 100, 1.0, InterpolatedValue::Linear, 0.5);
    frame(400);
    EXPECT_EQ(view->position(), QPoint(10, 20)); // still in its delay
    device.finishViewAnimation(view);
    EXPECT_EQ(view->position(), QPoint(100, 100));
    EXPECT_EQ(device.animationCount(), 0);

    // Edge moves aim at the size the view is heading for.
    view->resizeTo(40, 40, 1.0);
    view->moveRight(400);
    EXPECT_EQ(view->x(), 360);
}

TEST_F(Animation, FadesShowAndHideAndFlashReturns)
{
    view->fadeOut(0.5, InterpolatedValue::Linear);
    frame(250);
    EXPECT_FLOAT_EQ(view->alpha(), 0.5f);
    EXPECT_TRUE(view->visibleFlag());
    frame(250);
    EXPECT_FLOAT_EQ(view->alpha(), 0.0f);
    EXPECT_FALSE(view->visibleFlag());

    view->fadeIn(0.5, InterpolatedValue::Linear);
    EXPECT_TRUE(view->visibleFlag()); // shown first, then faded in
    frame(500);
    EXPECT_FLOAT_EQ(view->alpha(), 1.0f);

    view->setAlpha(0.0f, 0, InterpolatedValue::Linear, true);
    EXPECT_FALSE(view->visibleFlag());

    view->setBrightness(0.5f);
    view->flash(nullptr, 0.4);
    frame(200);
    EXPECT_FLOAT_EQ(view->brightness(), 1.0f);
    frame(200);
    EXPECT_FLOAT_EQ(view->brightness(), 0.5f);

    view->setScale(2.0f, 1.0, InterpolatedValue::Linear);
    frame(500);
    EXPECT_FLOAT_EQ(view->scale(), 1.5f);
    view->setAngle(90.0f, 0);
    EXPECT_FLOAT_EQ(view->angle(), 90.0f);
}

TEST_F(Animation, DeletionAfterTheAnimationAndOfADereferencedView)
{
    QPointer<DisplayView> doomed = view;
    view->moveTo(10, 10, 0.5);
    view->deleteAfterAnimation();
    frame(250);
    EXPECT_FALSE(doomed.isNull());
    frame(250);
    EXPECT_TRUE(doomed.isNull());

    // A view deleted mid-flight takes its animation with it.
    DisplayView* other = new DisplayView(device.views(), "other");
    other->moveTo(10, 10, 1.0);
    delete other;
    EXPECT_EQ(device.animationCount(), 0);
    frame(500);

    LogCapture capture;
    DisplayView* parent = new DisplayView(device.views(), "parent");
    new ParentFader(parent, "child");
    delete parent;
    // By then the parent has left its own parent, so its path is its name alone.
    EXPECT_EQ(capture.assertions(),
              QStringList("Creating an animation for a dereferenced view View: parent"));
    EXPECT_EQ(device.animationCount(), 0);
}

TEST_F(Animation, WithoutADeviceChangesApplyAtOnce)
{
    DisplayView loose(nullptr, "loose");
    loose.moveTo(30, 40, 1.0);
    loose.setAlpha(0.25f, 1.0);
    EXPECT_EQ(loose.position(), QPoint(30, 40));
    EXPECT_FLOAT_EQ(loose.alpha(), 0.25f);

    LogCapture capture;
    loose.moveTo(DisplayView::kMaxCoordinate + 1, 0);
    EXPECT_EQ(capture.assertions(), QStringList("moveTo out of bounds"));
    EXPECT_EQ(loose.position(), QPoint(30, 40));
}
