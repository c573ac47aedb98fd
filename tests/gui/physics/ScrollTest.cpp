#include "LogCapture.h"
#include "physics/Friction.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
constexpr double kEpsilon = 2.0;
}

TEST(ScrollFriction, ADragOfOneIsReportedAndMovesUniformly)
{
    LogCapture capture;
    Scroll scroll(1.0f, 90, 20, 1000);
    ASSERT_EQ(capture.assertions(), QStringList{QStringLiteral("mDragLog != 0")});
    EXPECT_EQ(capture.records().first().condition, QStringLiteral("mDragLog != 0"));
    EXPECT_EQ(capture.records().first().file, QStringLiteral("../../../gui/physics/Friction"));
    scroll.reset(0, -500, 100, 1000);
    EXPECT_FLOAT_EQ(scroll.x(1000, kEpsilon), -400.0f);
}

TEST(ScrollFriction, FlingsRestAtTheAnalyticDistanceAndAreHeldAtTheEnd)
{
    Scroll scroll(0.1f, 90, 20, 10000);
    for (float u0 : {1000.0f, -1000.0f}) { // 1000 / ln 0.1 = -434.29
        scroll.reset(0, -5000, u0, 10000);
        EXPECT_NEAR(scroll.dx(1000), u0 / 10, 1e-3f);
        EXPECT_FALSE(scroll.done(1000, kEpsilon));
        EXPECT_NEAR(scroll.x(20000, kEpsilon), -5000 + std::copysign(434.294f, u0), 0.01f);
        EXPECT_TRUE(scroll.done(20000, kEpsilon));
    }
    // Drifts to -10001.5: past the end but within epsilon, so it is held there, not bounced.
    scroll.reset(0, -9999, 2.5f * std::log(0.1f), 10000);
    EXPECT_EQ(scroll.x(20000, kEpsilon), -10000.0f);
    EXPECT_FALSE(scroll.inSpringMode());
}

TEST(ScrollBounce, PastAnEndTheSpringReturnsWithoutTheIncomingVelocity)
{
    Scroll scroll(0.01f, 90, 20, 1000);
    for (float x : {20.0f, -1030.0f}) {
        const float end = x > 0 ? 0 : -1000;
        scroll.reset(0, x, x > 0 ? 5 : -400, 1000);
        ASSERT_TRUE(scroll.inSpringMode());
        EXPECT_FLOAT_EQ(scroll.x(0, kEpsilon), x);
        EXPECT_NEAR(scroll.dx(0), 0.0f, 1e-3f);
        EXPECT_LT(std::fabs(scroll.x(100, kEpsilon) - end), std::fabs(x - end));
        EXPECT_TRUE(scroll.done(600, kEpsilon));
        EXPECT_EQ(scroll.x(5000, kEpsilon), end);
    }
    scroll.reset(0, 20, -5, 1000); // heading back into the range: a plain fling
    EXPECT_FALSE(scroll.inSpringMode());
}

TEST(ScrollBounce, OnlyAFlingTowardsTheStartCarriesItsSpeedIntoTheSpring)
{
    Scroll scroll(0.01f, 90, 20, 1000);
    for (float v : {2000.0f, -2000.0f}) {
        scroll.reset(0, v > 0 ? -200 : -800, v, 1000);
        long long ms = 0;
        float x = 0;
        while (!scroll.inSpringMode() && ms < 1000)
            x = scroll.x(ms += 16, kEpsilon);
        ASSERT_TRUE(scroll.inSpringMode()) << v;
        EXPECT_TRUE(v > 0 ? x > kEpsilon : x < -1000 - kEpsilon) << x;
        if (v > 0)
            EXPECT_GT(scroll.dx(ms), 500.0f);
        else
            EXPECT_FLOAT_EQ(scroll.dx(ms), 0.0f);
    }
}
