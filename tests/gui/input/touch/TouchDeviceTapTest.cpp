#include "ConfigValue.h"
#include "DataValueManager.h"
#include "DataValues.h"
#include "LogCapture.h"
#include "ScopedConfigOverride.h"
#include "support/QtPrinters.h"
#include "support/TouchFixture.h"

#include <QDateTime>
#include <QSignalSpy>

namespace {
struct Taps : TouchFixture
{
    int tapCount = 0;
    Taps()
    {
        QObject::connect(button, qOverload<DisplayView*>(&DisplayView::tapped),
                         [this](DisplayView*) { tapCount = touch->info(0)->tapCount; });
    }
};
} // namespace

TEST_F(Taps, ReleaseWithinTimeAndDistanceIsATap)
{
    QSignalSpy tapped(button, SIGNAL(tapped(DisplayView*)));
    press(0, QPoint(150, 150));
    clock.advanceMs(100);
    move(0, QPoint(160, 140)); // 20 px: still a tap
    release(0, QPoint(160, 140));
    EXPECT_EQ(take(),
              QStringList({"button:touched 0 150,150", "button:tapped 0 160,140", "button:released 0"}));
    EXPECT_EQ(tapped.count(), 1);
    EXPECT_EQ(tapCount, 1);
    EXPECT_EQ(button->touchCount(), 0);
    EXPECT_FALSE(touch->info(0)->isLive());
}

TEST_F(Taps, SecondPressCountsAsDoubleTapOnlyWhenQuickAndNear)
{
    press(0, QPoint(150, 150));
    release(0, QPoint(150, 150));
    clock.advanceMs(300);
    press(0, QPoint(180, 170)); // 50 px Manhattan, within twice the 30 px threshold
    release(0, QPoint(180, 170));
    EXPECT_EQ(tapCount, 2);

    clock.advanceMs(300);
    press(0, QPoint(241, 170)); // 61 px away: too far for a third tap
    release(0, QPoint(241, 170));
    EXPECT_EQ(tapCount, 1);

    clock.advanceMs(300);
    press(0, QPoint(241, 170));
    release(0, QPoint(241, 170));
    EXPECT_EQ(tapCount, 2);
    clock.advanceMs(400); // too late, however near
    press(0, QPoint(241, 170));
    release(0, QPoint(241, 170));
    EXPECT_EQ(tapCount, 1);
}

TEST_F(Taps, DragThresholdIsInclusiveManhattanDistance)
{
    press(0, QPoint(150, 150));
    move(0, QPoint(170, 160)); // exactly 30
    EXPECT_TRUE(touch->info(0)->isPending());
    EXPECT_EQ(touch->info(0)->currentPoint, QPoint(170, 160));
    move(0, QPoint(170, 161)); // 31: the whole movement since the press arrives at once
    EXPECT_EQ(touch->info(0)->state, TouchDragging);
    EXPECT_EQ(touch->info(0)->previousState, TouchPending);
    move(0, QPoint(175, 161));
    release(0, QPoint(175, 161));
    EXPECT_EQ(take(), QStringList({"button:touched 0 150,150", "button:dragged 0 20,11",
                                   "button:dragged 0 5,0", "button:released 0"}));
}

TEST_F(Taps, PressHeldPastTheTapThresholdIsNotATap)
{
    press(0, QPoint(150, 150));
    clock.advanceMs(801);
    release(0, QPoint(150, 150));
    EXPECT_EQ(take(), QStringList({"button:touched 0 150,150", "button:released 0"}));

    ScopedConfigOverride longer("ui/tap_threshold", 1000);
    clock.advanceMs(1000);
    press(0, QPoint(150, 150));
    clock.advanceMs(1000);
    release(0, QPoint(150, 150));
    EXPECT_TRUE(take().contains("button:tapped 0 150,150"));
}

TEST_F(Taps, ViewTunesThresholdsForItsTouch)
{
    press(0, QPoint(150, 150));
    touch->setDragDistanceThreshold(0, 5);
    touch->setTapTimeThreshold(0, 50);
    move(0, QPoint(156, 150));
    EXPECT_EQ(touch->info(0)->state, TouchDragging);
    release(0, QPoint(156, 150));
    // A quick second press keeps the tuned thresholds; a fresh one restores the defaults.
    clock.advanceMs(100);
    press(0, QPoint(158, 150));
    EXPECT_EQ(touch->info(0)->dragDistanceThreshold, 5);
    release(0, QPoint(158, 150));
    clock.advanceMs(1000);
    press(0, QPoint(158, 150));
    EXPECT_EQ(touch->info(0)->dragDistanceThreshold, 30);
    EXPECT_EQ(touch->info(0)->tapTimeThreshold, 800);
}

TEST_F(Taps, TapTimerDeliversOneTapWithTheFinalCount)
{
    press(0, QPoint(150, 150));
    touch->setUseTapTimer(0, true);
    release(0, QPoint(150, 150));
    EXPECT_EQ(tapCount, 0);
    EXPECT_TRUE(touch->info(0)->touchDelayTimerRunning);
    clock.advanceMs(200);
    press(0, QPoint(150, 150));
    touch->setUseTapTimer(0, true);
    release(0, QPoint(150, 150));
    EXPECT_EQ(tapCount, 0);
    touch->touchDelayTimerExpired(0);
    EXPECT_EQ(tapCount, 2);
    EXPECT_EQ(take().count("button:tapped 0 150,150"), 1);
    EXPECT_FALSE(touch->info(0)->touchDelayTimerRunning);
}

TEST_F(Taps, TapAnimationFollowsTheDataValue)
{
    const int overlays = device.overlays()->children().list().size();
    press(0, QPoint(150, 150));
    release(0, QPoint(150, 150));
    EXPECT_EQ(device.overlays()->children().list().size(), overlays);
    GUI_tapAnimation.setValue(true);
    clock.advanceMs(1000);
    press(0, QPoint(150, 150));
    release(0, QPoint(150, 150));
    GUI_tapAnimation.setValue(false);
    DataValueManager::instance()->processPendingChanges();
    ASSERT_EQ(device.overlays()->children().list().size(), overlays + 1);
    DisplayView* ring = device.overlays()->children().list().last();
    EXPECT_EQ(QRectF(ring->rect()).center(), QPointF(150, 150));
    EXPECT_FALSE(ring->touchable(0));
}

TEST_F(Taps, BlockedInputDropsTouchesAndCancelsLiveOnes)
{
    LogCapture capture;
    press(0, QPoint(150, 150));
    CD_displayState.setValue(int(DisplayState::UserAbsent));
    move(0, QPoint(250, 150));
    EXPECT_EQ(take(), QStringList({"button:touched 0 150,150", "button:canceled 0"}));
    EXPECT_EQ(button->touchCount(), 0);
    press(1, QPoint(150, 150));
    EXPECT_TRUE(take().isEmpty());
    EXPECT_EQ(capture.count("blocking touch because no user present"), 2);

    CD_displayState.setValue(int(DisplayState::On));
    GUI_softwareUpdateGatewayInProgress.setValue(true);
    release(1, QPoint(150, 150));
    press(2, QPoint(150, 150));
    EXPECT_TRUE(take().isEmpty());
    GUI_softwareUpdateGatewayInProgress.setValue(false);
    // The state change itself reaches the dispatcher with the frame; touches right after it
    // are still ignored.
    device.startFrame();
    press(3, QPoint(150, 150));
    release(3, QPoint(150, 150));
    EXPECT_TRUE(take().isEmpty());
    clock.advanceMs(30);
    press(3, QPoint(150, 150));
    EXPECT_EQ(take(), QStringList({"button:touched 3 150,150"}));
}

TEST_F(Taps, InvalidIdentifiersAreReportedAndIgnored)
{
    LogCapture capture;
    touch->doTouchEvent(TouchDevice::kMaxTouches, TouchTouched, QPoint(150, 150));
    touch->doTouchEvent(-1, TouchTouched, QPoint(150, 150));
    EXPECT_EQ(touch->info(99), nullptr);
    EXPECT_EQ(capture.count(QStringLiteral("invalid touch %1").arg(TouchDevice::kMaxTouches)), 1);
    EXPECT_TRUE(capture.contains("invalid touch -1"));
    EXPECT_TRUE(capture.contains("invalid touch 99"));
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Taps, TouchesStampTimeAndMakeTheUserPresent)
{
    QSignalSpy present(touch, SIGNAL(userPresent(bool)));
    GUI_lastTouchTime.setValue(0);
    press(0, QPoint(10, 10)); // on no view: still a touch
    EXPECT_NEAR(GUI_lastTouchTime.toReal(), QDateTime::currentSecsSinceEpoch(), 2);
    EXPECT_FALSE(device.cursorShown());
    release(0, QPoint(10, 10));
    clock.advanceMs(9999);
    device.startFrame();
    ASSERT_EQ(present.count(), 1);
    EXPECT_TRUE(present.at(0).at(0).toBool());
    clock.advanceMs(1);
    device.startFrame();
    ASSERT_EQ(present.count(), 2);
    EXPECT_FALSE(present.at(1).at(0).toBool());
    EXPECT_FALSE(touch->isUserPresent());
}
