#include "physics/Spring.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

struct State
{
    double x;
    double v;
};

// Classical Runge-Kutta on m x'' + b x' + k x = 0, independent of the closed forms.
State integrate(double m, double k, double b, State s, double until)
{
    const double h = 1e-4;
    auto accel = [&](double x, double v) {
        return -(b * v + k * x) / m;
    };
    for (int i = 0, n = int(std::lround(until / h)); i < n; ++i) {
        const double k1x = s.v, k1v = accel(s.x, s.v);
        const double k2x = s.v + h / 2 * k1v, k2v = accel(s.x + h / 2 * k1x, s.v + h / 2 * k1v);
        const double k3x = s.v + h / 2 * k2v, k3v = accel(s.x + h / 2 * k2x, s.v + h / 2 * k2v);
        const double k4x = s.v + h * k3v, k4v = accel(s.x + h * k3x, s.v + h * k3v);
        s.x += h / 6 * (k1x + 2 * k2x + 2 * k3x + k4x);
        s.v += h / 6 * (k1v + 2 * k2v + 2 * k3v + k4v);
    }
    return s;
}

// A spring that animates (placed) and is at rest at `end` from time `ms`.
Spring restingSpring(float k, float damping, long long ms, float end)
{
    Spring s(1.0f, k, damping, Spring::AnimateToEnd);
    s.snapEnd(ms, end);
    return s;
}

} // namespace

TEST(SpringSolution, UnitMassSolutionsFollowTheEquationOfMotion)
{
    struct Case
    {
        float k, damping, p0, u0;
        Spring::SolutionType type;
    };
    const Case cases[] = {
        {90, 20, -50, 300, Spring::Overdamped},   // the scrolling bounce
        {100, 4, 30, -200, Spring::Underdamped},  // oscillates several times in 1.5 s
        {400, 0.5f, -5, 10, Spring::Underdamped}, // barely damped
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "k " << c.k << " b " << c.damping << " p0 " << c.p0);
        Spring s(1.0f, c.k, c.damping, Spring::AnimateToEnd);
        s.solve(c.p0, c.u0);
        EXPECT_EQ(s.springType(), c.type);
        const double scale = std::fabs(c.p0) + std::fabs(c.u0) / 10;
        State numeric{c.p0, c.u0};
        double at = 0;
        for (double t : {0.0, 0.02, 0.1, 0.25, 0.5, 0.8, 1.5}) {
            numeric = integrate(1.0, c.k, c.damping, numeric, t - at);
            at = t;
            EXPECT_NEAR(s.computeX(float(t)), numeric.x, 2e-4 * scale) << "t " << t;
            EXPECT_NEAR(s.computeDx(float(t)), numeric.v, 2e-3 * scale * std::sqrt(c.k)) << "t " << t;
        }
    }
}

TEST(SpringSolution, CriticalDampingKeepsItsOwnSecondCoefficient)
{
    Spring s(1.0f, 1.0f, 2.0f, Spring::AnimateToEnd);
    s.solve(10, 0);
    EXPECT_EQ(s.springType(), Spring::CriticallyDamped);
    for (float t : {0.0f, 0.5f, 1.0f, 3.0f}) {
        EXPECT_NEAR(s.computeX(t), 10 * std::exp(-t), 1e-4f) << t;
        EXPECT_NEAR(s.computeDx(t), -10 * std::exp(-t), 1e-4f) << t;
    }
    // u0 / (p0 r1) = -5 / -10: the start speed is not u0.
    s.solve(10, -5);
    EXPECT_NEAR(s.computeX(2.0f), 11 * std::exp(-2.0f), 1e-4f);
    EXPECT_NEAR(s.computeDx(0), -9.5f, 1e-5f);
    // Starting at the end leaves the coefficient undefined; the motion must stay finite.
    s.solve(0, 4);
    EXPECT_TRUE(std::isfinite(s.computeX(0.5f)));
    EXPECT_NEAR(s.computeDx(0), 4, 1e-5f);
}

TEST(SpringSolution, UnderdampedDecayRateScalesWithMass)
{
    // m 2, k 50, b 4: omega = sqrt(400 - 16) / 4, and r1 = -m b / 2 = -4 rather than -1.
    Spring s(2.0f, 50.0f, 4.0f, Spring::AnimateToEnd);
    s.solve(8, 3);
    ASSERT_EQ(s.springType(), Spring::Underdamped);
    const double omega = std::sqrt(384.0) / 4;
    const float period = float(2 * M_PI / omega);
    EXPECT_NEAR(s.computeX(period), 8 * std::exp(-4 * period), 1e-4);
    EXPECT_NEAR(s.computeX(2 * period), 8 * std::exp(-8 * period), 1e-4);
    EXPECT_NEAR(s.computeDx(0), 3, 1e-5);
}

TEST(SpringEnd, FirstEndSnapsOnlyForAnUnplacedSpring)
{
    Spring unplaced(1.0f, 90.0f, 20.0f, Spring::SnapFirstEnd);
    unplaced.setEnd(1000, 50, 0);
    EXPECT_EQ(unplaced.springType(), Spring::Snapped);
    EXPECT_EQ(unplaced.x(1000), 50.0f);
    unplaced.setEnd(1000, 0, 0);
    EXPECT_EQ(unplaced.springType(), Spring::Overdamped);
    EXPECT_FLOAT_EQ(unplaced.x(1000), 50.0f);
    EXPECT_LT(unplaced.x(1100), 50.0f);

    Spring placed = restingSpring(90, 20, 1000, 50);
    placed.setEnd(1000, 0, 0);
    EXPECT_EQ(placed.springType(), Spring::Overdamped);
    EXPECT_FLOAT_EQ(placed.x(1000), 50.0f);
    EXPECT_FLOAT_EQ(placed.dx(1000), 0.0f);
}

TEST(SpringEnd, RetargetingMidFlightIsContinuous)
{
    Spring s = restingSpring(100, 4, 0, 100);
    s.setEnd(0, 0, 0);
    const float x = s.x(300), v = s.dx(300);
    ASSERT_GT(std::fabs(v), 10.0f);
    s.setEnd(300, -60, 0); // zero velocity: carries on with the spring's own
    EXPECT_FLOAT_EQ(s.end(), -60.0f);
    EXPECT_NEAR(s.x(300), x, 1e-3f);
    EXPECT_NEAR(s.dx(300), v, 1e-2f);
    s.setEnd(300, -60, 250); // an explicit velocity replaces it, even for the same end
    EXPECT_NEAR(s.x(300), x, 1e-3f);
    EXPECT_NEAR(s.dx(300), 250, 1e-2f);
}

TEST(SpringEnd, SubUnitChangesAreIgnored)
{
    Spring s = restingSpring(90, 20, 0, 0);
    s.setEnd(0, 0, 0.9f); // same end, speed truncates to 0
    s.setEnd(0, 0.5f, 0); // offset truncates to 0
    EXPECT_EQ(s.springType(), Spring::Snapped);
    EXPECT_EQ(s.end(), 0.0f);
}

TEST(SpringDone, NeedsPositionWithinToleranceAndSpeedBelowOneUnit)
{
    Spring s = restingSpring(90, 20, 0, 100);
    s.solve(0, 0.9f);
    EXPECT_TRUE(s.done(0));
    s.solve(0, -0.99f);
    EXPECT_TRUE(s.done(0));
    s.solve(0, 1.2f);
    EXPECT_FALSE(s.done(0));
    s.solve(0.0009f, 0);
    EXPECT_TRUE(s.done(0));
    s.solve(-0.002f, 0);
    EXPECT_FALSE(s.done(0));
    // A released spring is done only once it has truly settled.
    s.setEnd(0, 0, 0);
    EXPECT_FALSE(s.done(500));
    EXPECT_TRUE(s.done(3000));
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

    Spring rest = restingSpring(90, 20, 0, 10);
    rest.reconfigure(100, 1.0f, 100.0f, 4.0f);
    EXPECT_EQ(rest.springType(), Spring::Snapped);
    // The constants still take effect for the next motion.
    rest.setEnd(100, 0, 0);
    EXPECT_EQ(rest.springType(), Spring::Underdamped);
}
