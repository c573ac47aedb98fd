#include "physics/Spring.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

// Classical Runge-Kutta on x'' = -b x' - k x (unit mass), independent of the closed forms.
void integrate(double k, double b, double& x, double& v, double seconds)
{
    const double h = 1e-4;
    auto a = [&](double px, double pv) {
        return -b * pv - k * px;
    };
    for (long n = std::lround(seconds / h); n > 0; --n) {
        const double x1 = v, v1 = a(x, v);
        const double x2 = v + h / 2 * v1, v2 = a(x + h / 2 * x1, v + h / 2 * v1);
        const double x3 = v + h / 2 * v2, v3 = a(x + h / 2 * x2, v + h / 2 * v2);
        const double x4 = v + h * v3, v4 = a(x + h * x3, v + h * v3);
        x += h / 6 * (x1 + 2 * x2 + 2 * x3 + x4);
        v += h / 6 * (v1 + 2 * v2 + 2 * v3 + v4);
    }
}

Spring restingSpring(float k, float damping, long long ms, float end)
{
    Spring s(1.0f, k, damping, Spring::AnimateToEnd);
    s.snapEnd(ms, end);
    return s;
}

} // namespace

TEST(SpringSolution, UnitMassSolutionsFollowTheEquationOfMotion)
{
    // The scrolling bounce (overdamped) and a spring that oscillates several times.
    for (float k : {90.0f, 100.0f}) {
        const float b = k == 90 ? 20 : 4, p0 = -50, u0 = 300;
        Spring s(1.0f, k, b, Spring::AnimateToEnd);
        s.solve(p0, u0);
        EXPECT_EQ(s.springType(), k == 90 ? Spring::Overdamped : Spring::Underdamped);
        double x = p0, v = u0, at = 0;
        for (double t : {0.02, 0.1, 0.25, 0.5, 0.8, 1.5}) {
            integrate(k, b, x, v, t - at);
            at = t;
            EXPECT_NEAR(s.computeX(float(t)), x, 0.02) << "k " << k << " t " << t;
            EXPECT_NEAR(s.computeDx(float(t)), v, 0.2) << "k " << k << " t " << t;
        }
    }
}

TEST(SpringSolution, DeliberateCoefficientsOfCriticalAndHeavyUnderdampedSprings)
{
    Spring critical(1.0f, 1.0f, 2.0f, Spring::AnimateToEnd);
    critical.solve(10, 0);
    EXPECT_EQ(critical.springType(), Spring::CriticallyDamped);
    for (float t : {0.0f, 1.0f, 3.0f})
        EXPECT_NEAR(critical.computeX(t), 10 * std::exp(-t), 1e-4f) << t;
    critical.solve(10, -5); // c2 = u0 / (p0 r1) = 0.5, so the start speed is not u0
    EXPECT_NEAR(critical.computeDx(0), -9.5f, 1e-5f);

    // m 2, k 50, b 4: r1 = -m b / 2 = -4 (not -1), so each period shrinks by e^(-4 T).
    Spring heavy(2.0f, 50.0f, 4.0f, Spring::AnimateToEnd);
    heavy.solve(8, 3);
    ASSERT_EQ(heavy.springType(), Spring::Underdamped);
    const float period = float(2 * M_PI / (std::sqrt(384.0) / 4));
    EXPECT_NEAR(heavy.computeX(period), 8 * std::exp(-4 * period), 1e-4);
    EXPECT_NEAR(heavy.computeDx(0), 3, 1e-5);
}

TEST(SpringEnd, FirstEndSnapsOnlyForAnUnplacedSpring)
{
    Spring s(1.0f, 90.0f, 20.0f, Spring::SnapFirstEnd);
    s.setEnd(1000, 50, 0);
    EXPECT_EQ(s.springType(), Spring::Snapped);
    EXPECT_EQ(s.x(1000), 50.0f);
    s.setEnd(1000, 0, 0);
    EXPECT_FLOAT_EQ(s.x(1000), 50.0f);
    EXPECT_LT(s.x(1100), 50.0f);
}

TEST(SpringEnd, RetargetingIsContinuousAndIgnoresSubUnitChanges)
{
    Spring s = restingSpring(100, 4, 0, 100);
    s.setEnd(0, 0, 0);
    const float x = s.x(300), v = s.dx(300);
    s.setEnd(300, -60, 0); // zero velocity: carries on with the spring's own
    EXPECT_NEAR(s.x(300), x, 1e-3f);
    EXPECT_NEAR(s.dx(300), v, 1e-2f);
    s.setEnd(300, -60, 250);
    EXPECT_NEAR(s.dx(300), 250, 1e-2f);

    Spring rest = restingSpring(90, 20, 0, 0);
    rest.setEnd(0, 0, 0.9f); // same end, speed truncates to 0
    rest.setEnd(0, 0.5f, 0); // offset truncates to 0
    EXPECT_EQ(rest.springType(), Spring::Snapped);
    EXPECT_EQ(rest.end(), 0.0f);
}

TEST(SpringDone, NeedsPositionWithinToleranceAndSpeedBelowOneUnit)
{
    Spring s = restingSpring(90, 20, 0, 100);
    const std::pair<float, float> starts[] = {{0, 0.9f}, {0, -0.99f}, {0.0009f, 0}, {0, 1.2f}, {-0.002f, 0}};
    for (int i = 0; i < 5; ++i) {
        s.solve(starts[i].first, starts[i].second);
        EXPECT_EQ(s.done(0), i < 3) << i;
    }
}

TEST(SpringReconfigure, ResolvesFromTheCurrentMotionWithAStartDifference)
{
    Spring s = restingSpring(90, 20, 2000, 80);
    s.setEnd(2000, 0, 0);
    const float x = s.x(2500), v = s.dx(2500);
    s.reconfigure(2500, 1.0f, 100.0f, 4.0f);
    EXPECT_EQ(s.springType(), Spring::Underdamped);
    // The new solution starts at 2.5 s - 2.0 s, so its origin is at 500 ms.
    EXPECT_NEAR(s.x(500), x, 1e-3f);
    EXPECT_NEAR(s.dx(500), v, 1e-3f);
}
