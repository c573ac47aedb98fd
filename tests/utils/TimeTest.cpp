#include "ElapsedTimer.h"
#include "EventRecorder.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "PerfLogger.h"

#include <gtest/gtest.h>

TEST(ElapsedTimer, FollowsTheManualClock)
{
    ManualClock clock;
    ElapsedTimer t;
    EXPECT_FALSE(t.isValid());
    t.start();
    EXPECT_EQ(t.elapsed(), 0);
    clock.advanceMs(250);
    EXPECT_EQ(t.elapsed(), 250);
    clock.advanceNs(999999);
    EXPECT_EQ(t.elapsed(), 250);
    EXPECT_EQ(t.nsecsElapsed(), 250999999);
    EXPECT_TRUE(t.hasExpired(249));
    EXPECT_FALSE(t.hasExpired(250)); // expired means strictly longer than the timeout
    EXPECT_EQ(t.restart(), 250);
    EXPECT_EQ(t.elapsed(), 0);
    clock.advanceSeconds(1.5);
    EXPECT_DOUBLE_EQ(t.secondsElapsed(), 1.5);
}

TEST(ElapsedTimer, ReadingAnInvalidTimerAssertsAndReadsZero)
{
    ManualClock clock;
    LogCapture capture;
    ElapsedTimer t;
    EXPECT_EQ(t.elapsed(), 0);
    t.start();
    t.invalidate();
    EXPECT_EQ(t.nsecsElapsed(), 0);
    ASSERT_EQ(capture.records().size(), 2);
    EXPECT_EQ(capture.records().first().condition, QStringLiteral("isValid()"));
    EXPECT_EQ(capture.records().first().message, QStringLiteral("isValid()"));
}

TEST(ElapsedTimer, ManualClocksNestAndRestore)
{
    ManualClock outer(5000);
    {
        ManualClock inner(10);
        EXPECT_EQ(Clock::current()->nowMilliseconds(), 10);
    }
    EXPECT_EQ(Clock::current()->nowMilliseconds(), 5000);
}

TEST(PerfLogger, SpansCollectPerNameStatistics)
{
    ManualClock clock;
    PerfLogger::instance().reset();
    for (int ms : {4, 1, 7}) {
        PerfLogger::Span span(QStringLiteral("DisplayDevice-RenderViews"));
        clock.advanceMs(ms);
    }
    {
        PerfLogger::Span span(QStringLiteral("DisplayDevice-CompositeLayers"));
        clock.advanceMs(2);
    }
    const PerfLogger::Stats s = PerfLogger::instance().stats(QStringLiteral("DisplayDevice-RenderViews"));
    EXPECT_EQ(s.count, 3);
    EXPECT_EQ(s.minNs, 1000000);
    EXPECT_EQ(s.maxNs, 7000000);
    EXPECT_EQ(s.lastNs, 7000000);
    EXPECT_DOUBLE_EQ(s.meanMs(), 4.0);
    EXPECT_EQ(PerfLogger::instance().names(), (QStringList{QStringLiteral("DisplayDevice-CompositeLayers"),
                                                           QStringLiteral("DisplayDevice-RenderViews")}));
}

TEST(EventRecorder, KeepsTheNewestMarksInOrder)
{
    ManualClock clock;
    EventRecorder& r = EventRecorder::instance();
    r.setCapacity(3);
    r.mark(QStringLiteral("ignored while disabled"));
    EXPECT_TRUE(r.events().isEmpty());
    r.setEnabled(true);
    for (int i = 0; i < 5; ++i) {
        r.mark(QStringLiteral("tick"), i % 2 ? EventRecorder::End : EventRecorder::Begin);
        clock.advanceMs(1);
    }
    const QVector<EventRecorder::Event> events = r.events();
    ASSERT_EQ(events.size(), 3);
    EXPECT_EQ(events[0].phase, EventRecorder::Begin);
    EXPECT_LT(events[0].timeNs, events[1].timeNs);
    EXPECT_LT(events[1].timeNs, events[2].timeNs);
    EXPECT_EQ(events[2].timeNs, clock.nowNanoseconds() - 1000000);
    r.setEnabled(false);
    r.setCapacity(4096);
}
