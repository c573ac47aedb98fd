#include "physics/ScrollHandler.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"

#include <QVector>
#include <gtest/gtest.h>

TEST(ScrollHandlerFling, RunsPastTheEndWithoutReversingAndSettlesOnIt)
{
    ManualClock clock;
    for (float velocity : {8000.0f, -8000.0f}) {
        const double direction = velocity > 0 ? 1 : -1, edge = velocity > 0 ? 0 : -2000;
        ScrollHandler handler;
        handler.setExtent(2000);
        handler.onTouchStart(-1000);
        handler.onTouchMove(float(10 * direction));
        handler.onTouchEnd(velocity);
        QVector<double> frames{handler.value()};
        while (handler.active() && frames.size() < 600) {
            clock.advanceNs(16666667); // 60 Hz
            handler.update(false);
            frames.append(handler.value());
        }
        ASSERT_FALSE(handler.active()) << velocity << " still moving after 10 s";
        int i = 1;
        for (; i < frames.size() && (frames[i - 1] - edge) * direction <= 0; ++i)
            EXPECT_GE((frames[i] - frames[i - 1]) * direction, 0) << velocity << " frame " << i;
        ASSERT_LT(i, frames.size()) << velocity << " never reached the edge";
        EXPECT_GT((frames[i - 1] - edge) * direction, ScrollHandler::kDoneThreshold);
        EXPECT_NEAR(frames.last(), edge, ScrollHandler::kDoneThreshold);
    }
}

TEST(ScrollHandlerFling, AReleaseWithoutAMoveDoesNotFling)
{
    ManualClock clock;
    ScrollHandler handler;
    handler.setExtent(1000);
    handler.onTouchStart(-500);
    handler.onTouchEnd(1000);
    clock.advanceMs(16);
    handler.update(false);
    EXPECT_EQ(handler.value(), -500);
    EXPECT_FALSE(handler.active());
}

TEST(ScrollHandlerTouch, PastEitherEndTheContentFollowsAFifthOfTheFinger)
{
    ScrollHandler handler;
    handler.setExtent(100);
    handler.onTouchStart(-20);
    handler.onTouchMove(70); // raw 50: 50 beyond the start
    EXPECT_DOUBLE_EQ(handler.value(), 10);
    handler.onTouchMove(-230); // raw -180: 80 beyond the far end
    EXPECT_DOUBLE_EQ(handler.value(), -116);
    ScopedConfigOverride tracking("gui/underscroll_tracking", 0.5);
    EXPECT_DOUBLE_EQ(handler.calculateUnderscrollPos(), -140);
}

TEST(ScrollHandlerControl, StopsResetsAndScrollsOnRequest)
{
    ManualClock clock;
    ScrollHandler handler;
    handler.setExtent(1000);
    handler.scroll(-300, true);
    clock.advanceMs(100);
    handler.stopScrolling();
    const double stoppedAt = handler.value();
    EXPECT_GT(stoppedAt, -300);
    EXPECT_LT(stoppedAt, 0);
    EXPECT_FALSE(handler.active());

    handler.scroll(-1200, false); // content past the far end
    EXPECT_EQ(handler.value(), stoppedAt - 1200);
    handler.resetToBounds(true);
    clock.advanceMs(2000);
    handler.update(false);
    EXPECT_EQ(handler.value(), -1000);
    handler.resetToStart(false);
    EXPECT_EQ(handler.value(), 0);
}
