#include "LogCapture.h"
#include "physics/Friction.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
constexpr double kEpsilon = 2.0;
}

TEST(ScrollFriction, ADragOfOneIsReportedAndStaysFinite)
{
    LogCapture capture;
    Scroll scroll(1.0f, 90, 20, 1000);
    ASSERT_EQ(capture.records().size(), 1);
    EXPECT_EQ(capture.records().first().condition, QStringLiteral("mDragLog != 0"));
    EXPECT_EQ(capture.records().first().message, QStringLiteral("mDragLog != 0"));
    EXPECT_EQ(capture.records().first().file, QStringLiteral("../../../gui/physics/Friction"));
    scroll.reset(0, -500, 100, 1000);
    EXPECT_TRUE(std::isfinite(scroll.x(1000, kEpsilon)));

    LogCapture quiet;
    Scroll fine(0.01f, 90, 20, 1000);
    EXPECT_TRUE(quiet.records().isEmpty());
}

TEST(ScrollFriction, FlingsComeToRestAtTheAnalyticDistance)
{
    Scroll scroll(0.1f, 90, 20, 10000);
    // Towards the start and towards the far end: 1000 / ln 0.1 = 434.29 either way.
    for (float u0 : {1000.0f, -1000.0f}) {
        scroll.reset(0, -5000, u0, 10000);
        EXPECT_FALSE(scroll.inSpringMode());
        EXPECT_FALSE(scroll.done(0, kEpsilon));
        EXPECT_NEAR(scroll.dx(1000), u0 / 10, 1e-3f);
        EXPECT_NEAR(scroll.x(20000, kEpsilon), -5000 + std::copysign(434.294f, u0), 0.01f);
        EXPECT_TRUE(scroll.done(20000, kEpsilon));
        EXPECT_FALSE(scroll.inSpringMode());
    }
}

TEST(ScrollFriction, SlowOrBackwardMotionIsHeldInsideTheRange)
{
    Scroll scroll(0.01f, 90, 20, 1000);
    // Drifts to -1001.5: beyond the end but within epsilon, so it is clamped, not bounced.
    const float u0 = 2.5f * std::log(0.01f);
    scroll.reset(0, -999, u0, 1000);
    EXPECT_EQ(scroll.x(5000, kEpsilon), -1000.0f);
    EXPECT_FALSE(scroll.inSpringMode());
}

TEST(ScrollBounce, PastAnEndTheSpringReturnsWithoutTheIncomingVelocity)
{
    Scroll scroll(0.01f, 90, 20, 1000);
    struct Case
    {
        float x, v, end;
    };
    for (const Case& c : {Case{20, 5, 0}, Case{-1030, -400, -1000}}) {
        SCOPED_TRACE(c.x);
        scroll.reset(0, c.x, c.v, 1000);
        EXPECT_TRUE(scroll.inSpringMode());
        EXPECT_FLOAT_EQ(scroll.x(0, kEpsilon), c.x);
        EXPECT_NEAR(scroll.dx(0), 0.0f, 1e-3f);
        float previous = c.x;
        for (long long ms = 16; ms < 600; ms += 16) {
            const float x = scroll.x(ms, kEpsilon);
            EXPECT_LE(std::fabs(x - c.end), std::fabs(previous - c.end)) << ms;
            previous = x;
        }
        EXPECT_TRUE(scroll.done(600, kEpsilon));
        EXPECT_EQ(scroll.x(5000, kEpsilon), c.end);
    }
    // Moving back into the range is a plain fling.
    scroll.reset(0, 20, -5, 1000);
    EXPECT_FALSE(scroll.inSpringMode());
}

TEST(ScrollBounce, HandOverAtTheStartKeepsTheFlingSpeed)
{
    Scroll scroll(0.01f, 90, 20, 1000);
    scroll.reset(0, -100, 2000, 1000);
    long long ms = 0;
    float x = -100;
    while (!scroll.inSpringMode() && ms < 1000)
        x = scroll.x(ms += 16, kEpsilon);
    ASSERT_TRUE(scroll.inSpringMode());
    EXPECT_GT(x, kEpsilon);
    EXPECT_GT(scroll.dx(ms), 500.0f);
    float peak = x;
    for (; ms < 3000; ms += 16)
        peak = std::max(peak, scroll.x(ms, kEpsilon));
    EXPECT_GT(peak, x + 5);
    EXPECT_LT(peak, 100.0f);
    EXPECT_EQ(scroll.x(ms, kEpsilon), 0.0f);
}

TEST(ScrollBounce, HandOverAtTheFarEndDropsTheFlingSpeed)
{
    Scroll scroll(0.01f, 90, 20, 1000);
    scroll.reset(0, -900, -2000, 1000);
    long long ms = 0;
    float x = -900;
    while (!scroll.inSpringMode() && ms < 1000)
        x = scroll.x(ms += 16, kEpsilon);
    ASSERT_TRUE(scroll.inSpringMode());
    EXPECT_LT(x, -1000 - kEpsilon);
    EXPECT_FLOAT_EQ(scroll.dx(ms), 0.0f);
    EXPECT_GT(scroll.x(ms + 16, kEpsilon), x);
}
