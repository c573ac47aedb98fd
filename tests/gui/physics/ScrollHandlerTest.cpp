#include "physics/ScrollHandler.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"

#include <QVector>
#include <gtest/gtest.h>

namespace {

constexpr qint64 kFrameNs = 16666667; // 60 Hz

// Drags the handler from `from` with a few moves, lets go at `velocity` and runs
// frames until it rests. Returns the value of every frame after the release.
QVector<double> fling(ManualClock& clock, ScrollHandler& handler, float from, float velocity)
{
    handler.onTouchStart(from);
    for (int i = 0; i < 3; ++i) {
        clock.advanceNs(kFrameNs);
        handler.onTouchMove(velocity > 0 ? 10 : -10);
    }
    handler.onTouchEnd(velocity);
    QVector<double> frames;
    while (handler.active() && frames.size() < 600) {
        clock.advanceNs(kFrameNs);
        handler.update(false);
        frames.append(handler.value());
    }
    return frames;
}

} // namespace

TEST(ScrollHandlerFling, RunsPastTheEndWithoutReversingAndSettlesOnIt)
{
    ManualClock clock;
    struct Case
    {
        float from, velocity, edge;
    };
    for (const Case& c : {Case{-1500, 8000, 0}, Case{-500, -8000, -2000}}) {
        SCOPED_TRACE(c.velocity);
        ScrollHandler handler;
        handler.setExtent(2000);
        const QVector<double> frames = fling(clock, handler, c.from, c.velocity);
        ASSERT_FALSE(handler.active()) << "still moving after 10 s";
        const double direction = c.velocity > 0 ? 1 : -1;
        int i = 1;
        for (; i < frames.size() && (frames[i - 1] - c.edge) * direction <= 0; ++i)
            EXPECT_GE((frames[i] - frames[i - 1]) * direction, 0) << "frame " << i;
        ASSERT_LT(i, frames.size()) << "never reached the edge";
        EXPECT_GT((frames[i] - c.edge) * direction, ScrollHandler::kDoneThreshold);
        EXPECT_NEAR(frames.last(), c.edge, ScrollHandler::kDoneThreshold);
    }
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
    handler.update(false);
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

TEST(ScrollHandlerFling, RestsWhereTheFrictionTakesItAndOnlyAfterAMove)
{
    ManualClock clock;
    ScrollHandler handler;
    handler.setExtent(10000);
    handler.reconfigureConstants(0.1f, ScrollHandler::kScrollSpring, ScrollHandler::kScrollDamping);
    handler.onTouchStart(-5000);
    handler.onTouchEnd(1000); // a tap, not a fling
    clock.advanceMs(16);
    handler.update(false);
    EXPECT_EQ(handler.value(), -5000);
    EXPECT_FALSE(handler.active());
    handler.onTouchStart(-5010);
    handler.onTouchMove(10);
    handler.onTouchEnd(1000);
    clock.advanceMs(20000);
    handler.update(false);
    EXPECT_NEAR(handler.value(), -5000 + 434.29, 0.01);
}
