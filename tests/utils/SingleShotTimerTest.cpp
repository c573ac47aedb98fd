#include "SingleShotTimer.h"
#include "ManualClock.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <memory>

TEST(SingleShotTimer, FiresOnceAtTheFirstCheckAtOrAfterItsDeadline)
{
    ManualClock clock;
    SingleShotTimer timer;
    int fired = 0;
    QObject::connect(&timer, &SingleShotTimer::timeout, [&] { ++fired; });
    timer.start(900);
    EXPECT_TRUE(timer.isActive());
    clock.advanceMs(899);
    SingleShotTimer::fireExpired();
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(timer.remainingTime(), 1);
    clock.advanceMs(1);
    SingleShotTimer::fireExpired();
    EXPECT_EQ(fired, 1);
    EXPECT_FALSE(timer.isActive());
    EXPECT_EQ(timer.remainingTime(), -1);
    clock.advanceMs(5000);
    SingleShotTimer::fireExpired();
    EXPECT_EQ(fired, 1);
}

TEST(SingleShotTimer, RestartingMovesTheDeadlineAndStoppingCancelsIt)
{
    ManualClock clock;
    SingleShotTimer timer;
    int fired = 0;
    QObject::connect(&timer, &SingleShotTimer::timeout, [&] { ++fired; });
    const int before = SingleShotTimer::activeCount();
    timer.start(100);
    clock.advanceMs(80);
    timer.start(100);
    EXPECT_EQ(SingleShotTimer::activeCount(), before + 1);
    clock.advanceMs(80);
    SingleShotTimer::fireExpired();
    EXPECT_EQ(fired, 0);
    timer.stop();
    clock.advanceMs(1000);
    SingleShotTimer::fireExpired();
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(SingleShotTimer::activeCount(), before);
    timer.start(-5); // due at once
    SingleShotTimer::fireExpired();
    EXPECT_EQ(fired, 1);
}

// A timeout may stop, restart or delete other timers that are due in the same check.
TEST(SingleShotTimer, ATimeoutMayChangeTheOtherTimers)
{
    ManualClock clock;
    QStringList log;
    auto first = std::make_unique<SingleShotTimer>();
    auto doomed = std::make_unique<SingleShotTimer>();
    SingleShotTimer again;
    QObject::connect(first.get(), &SingleShotTimer::timeout, [&] {
        log << "first";
        doomed.reset();
        again.start(50);
        first->start(10); // from its own timeout
    });
    QObject::connect(doomed.get(), &SingleShotTimer::timeout, [&] { log << "doomed"; });
    QObject::connect(&again, &SingleShotTimer::timeout, [&] { log << "again"; });
    first->start(10);
    doomed->start(10);
    again.start(10);
    clock.advanceMs(10);
    SingleShotTimer::fireExpired();
    EXPECT_EQ(log, QStringList{"first"});
    EXPECT_TRUE(again.isActive());
    EXPECT_TRUE(first->isActive());
    first.reset();
    clock.advanceMs(50);
    SingleShotTimer::fireExpired();
    EXPECT_EQ(log, (QStringList{"first", "again"}));
}
