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
        const double beyond =
            (*std::max_element(frames.begin(), frames.end(),
                               [&](double a, double b) { return a * direction < b * direction; }) -
             c.edge) *
            direction;
        EXPECT_GT(beyond, ScrollHandler::kDoneThreshold);
        EXPECT_LT(beyond, 200);
        EXPECT_NEAR(frames.last(), c.edge, ScrollHandler::kDoneThreshold);
        EXPECT_GT(frames.size(), 30);
    }
}

TEST(ScrollHandlerFling, AReleaseWithoutMovementDoesNotFling)
{
    ManualClock clock;
    ScrollHandler handler;
    handler.setExtent(1000);
    handler.onTouchStart(-300);
    handler.onTouchEnd(5000);
    clock.advanceMs(100);
    handler.update(false);
    EXPECT_EQ(handler.value(), -300);
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
    handler.onTouchStart(-500);
    handler.onTouchMove(-10);
    handler.onTouchEnd(-3000);
    clock.advanceMs(100);
    handler.update(false);
    const double stoppedAt = handler.value();
    handler.stopScrolling();
    clock.advanceMs(100);
    handler.update(false);
    EXPECT_EQ(handler.value(), stoppedAt);
    EXPECT_FALSE(handler.active());

    handler.scroll(-800, false); // content past the far end
    EXPECT_EQ(handler.value(), stoppedAt - 800);
    handler.resetToBounds(true);
    EXPECT_TRUE(handler.active());
    clock.advanceMs(2000);
    handler.update(false);
    EXPECT_EQ(handler.value(), -1000);

    handler.scroll(300, true);
    handler.scroll(200, true); // accumulates on the pending target
    clock.advanceMs(2000);
    handler.update(false);
    EXPECT_EQ(handler.value(), -500);
    handler.resetToStart(false);
    EXPECT_EQ(handler.value(), 0);
    handler.setExtent(-50); // shorter than the view
    handler.scroll(-40, false);
    handler.resetToBounds(false);
    EXPECT_EQ(handler.value(), 0);
}

TEST(ScrollHandlerControl, ReconfiguredConstantsApplyToTheNextFling)
{
    ManualClock clock;
    ScrollHandler stiff, soft;
    soft.reconfigureConstants(0.5f, ScrollHandler::kScrollSpring, ScrollHandler::kScrollDamping);
    for (ScrollHandler* h : {&stiff, &soft}) {
        h->setExtent(10000);
        h->onTouchStart(-5000);
        h->onTouchMove(10);
        h->onTouchEnd(1000);
    }
    clock.advanceMs(20000);
    stiff.update(false);
    soft.update(false);
    // Rest points: 1000 / ln 100 and 1000 / ln 2 past the release.
    EXPECT_NEAR(stiff.value(), -4990 + 217.1, 0.5);
    EXPECT_NEAR(soft.value(), -4990 + 1442.7, 0.5);
}
