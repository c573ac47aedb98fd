#include "InterpolatedValue.h"
#include "BoundedDeclerateTransition.h"
#include "ContinuousInterpolatedValue.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "StandardTransition.h"
#include "support/QtPrinters.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>

using IV = InterpolatedValue;

TEST(Easing, CurvesAtTheirNamedPoints)
{
    const double b = 10, c = 20, d = 2;
    EXPECT_DOUBLE_EQ(Easing::delay(1, b, c, d), b);
    EXPECT_DOUBLE_EQ(Easing::linear(0.5, b, c, d), 15);
    EXPECT_DOUBLE_EQ(Easing::easeInQuad(1, b, c, d), 15);
    EXPECT_DOUBLE_EQ(Easing::easeOutQuad(1, b, c, d), 25);
    // The expo curves are pinned to their ends, not merely close to them.
    EXPECT_DOUBLE_EQ(Easing::easeInExpo(0, b, c, d), b);
    EXPECT_DOUBLE_EQ(Easing::easeOutExpo(d, b, c, d), b + c);
    EXPECT_DOUBLE_EQ(Easing::easeInOutExpo(0, b, c, d), b);
    EXPECT_DOUBLE_EQ(Easing::easeInOutExpo(d, b, c, d), b + c);
    EXPECT_DOUBLE_EQ(Easing::easeInOutExpo(1, b, c, d), b + c / 2);
    EXPECT_DOUBLE_EQ(Easing::easeOutExpo(1, b, c, d), b + c * (1 - std::pow(2.0, -5)));
    // Smoothstep, not the two-piece cubic: a quarter of the way is 5/32 of the change.
    EXPECT_DOUBLE_EQ(Easing::easeInOutCubic(1, b, c, d), b + c / 2);
    EXPECT_DOUBLE_EQ(Easing::easeInOutCubic(0.5, b, c, d), b + c * 5.0 / 32);
    EXPECT_DOUBLE_EQ(Easing::easeInOutCubic(3, b, c, d), b + c);
    EXPECT_DOUBLE_EQ(Easing::easeInOutCubic(0, b, c, 0), b + c);
    EXPECT_DOUBLE_EQ(Easing::easeInOutCubicDampened(1, b, c, d), b + c * std::sin(0.7853981625));
    EXPECT_DOUBLE_EQ(Easing::easeInOutCubicDampened(2, b, c, d), b + c);
    EXPECT_DOUBLE_EQ(Easing::easeInOutElastic(0, b, c, d), b);
    EXPECT_DOUBLE_EQ(Easing::easeInOutElastic(d, b, c, d), b + c);
    EXPECT_NEAR(Easing::easeInOutElastic(1, b, c, d), b + c / 2, 1e-6);
}

TEST(Easing, TableFollowsTheEnumAndRejectsUnknownTypes)
{
    EXPECT_EQ(IV::getEaseFunc(IV::Delay), &Easing::delay);
    EXPECT_EQ(IV::getEaseFunc(IV::EaseOutExpo), &Easing::easeOutExpo);
    EXPECT_EQ(IV::getEaseFunc(IV::EaseInOutCubicDampened), &Easing::easeInOutCubicDampened);
    EXPECT_EQ(IV::getEaseFunc(IV::EaseInQuad), &Easing::easeInQuad);

    LogCapture capture;
    EXPECT_EQ(IV::getEaseFunc(IV::EaseType(10)), nullptr);
    EXPECT_EQ(IV::getEaseFunc(IV::EaseType(-1)), nullptr);
    ASSERT_EQ(capture.assertions(), QStringList({"Unknown Type:10", "Unknown Type:-1"}));
    EXPECT_EQ(capture.records().first().file, "../../../gui/InterpolatedValue");

    IV value(3);
    value.ease(5, 1, 0, IV::EaseType(12));
    EXPECT_FALSE(value.active());
    EXPECT_EQ(value.value(), 3);
}

TEST(InterpolatedValue, QueueRunsDelayThenEaseAndLeavesTheActiveList)
{
    ManualClock clock;
    IV value(0);
    value.ease(100, 1.0, 0.5, IV::Linear);
    EXPECT_TRUE(value.active());
    EXPECT_TRUE(IV::activeValues().contains(&value));
    EXPECT_DOUBLE_EQ(value.finalTarget(), 100);

    clock.advanceMs(400);
    EXPECT_FALSE(value.update());
    EXPECT_EQ(value.value(), 0);
    clock.advanceMs(100); // the delay ends; the ease starts at this frame
    value.update();
    EXPECT_EQ(value.value(), 0);
    clock.advanceMs(250);
    EXPECT_TRUE(value.update());
    EXPECT_DOUBLE_EQ(value.value(), 25);
    EXPECT_NEAR(value.getVelocity(), 100, 1e-6);
    EXPECT_FALSE(value.nearTarget(70));
    EXPECT_TRUE(value.nearTarget(75));

    // A late frame lands exactly on the target instead of running past it.
    clock.advanceMs(2000);
    EXPECT_TRUE(value.update());
    EXPECT_EQ(value.value(), 100);
    EXPECT_FALSE(value.active());
    EXPECT_FALSE(IV::activeValues().contains(&value));
    EXPECT_EQ(value.getVelocity(), 0);
    EXPECT_TRUE(value.nearTarget(0));
}

TEST(InterpolatedValue, QueuedMovesChainFromEachOthersTargets)
{
    ManualClock clock;
    IV value(0);
    value.ease(10, 1, 0, IV::Linear);
    value.ease(30, 1, 0, IV::Linear);
    value.delay(1);
    EXPECT_DOUBLE_EQ(value.finalTarget(), 30);
    clock.advanceMs(1000);
    value.update();
    EXPECT_EQ(value.value(), 10);
    clock.advanceMs(500);
    value.update();
    EXPECT_DOUBLE_EQ(value.value(), 20);
    clock.advanceMs(500);
    value.update();
    EXPECT_EQ(value.value(), 30);
    EXPECT_TRUE(value.active()); // the trailing pause still holds it
    clock.advanceMs(1000);
    value.update();
    EXPECT_FALSE(value.active());

    // Zero-length moves finish on the next update.
    value.ease(-5, 0, 0, IV::EaseInOutCubic);
    EXPECT_TRUE(value.update());
    EXPECT_EQ(value.value(), -5);
    EXPECT_FALSE(value.active());
}

TEST(InterpolatedValue, ReplacingRetargetsFromThePresentPosition)
{
    ManualClock clock;
    IV value(0);
    value.ease(100, 1, 0, IV::Linear);
    value.ease(500, 1, 0, IV::Linear);
    clock.advanceMs(500); // no update in between: the replacement must not start from 0
    value.ease(0, 1, 0, IV::Linear, true);
    EXPECT_DOUBLE_EQ(value.value(), 50);
    EXPECT_DOUBLE_EQ(value.finalTarget(), 0);
    clock.advanceMs(500);
    value.update();
    EXPECT_DOUBLE_EQ(value.value(), 25);

    value.stopUpdating(true);
    EXPECT_EQ(value.value(), 0);
    EXPECT_FALSE(value.active());

    value.ease(40, 1, 0, IV::EaseOutExpo);
    EXPECT_TRUE(value.update(true));
    EXPECT_EQ(value.value(), 40);
    value.ease(80, 1, 0, IV::EaseOutExpo);
    value.setValue(7);
    EXPECT_FALSE(value.active());
    EXPECT_EQ(value.value(), 7);
}

TEST(InterpolatedValue, DestroyedValueLeavesTheActiveList)
{
    const int before = IV::activeValues().size();
    {
        IV value;
        value.delay(1, 4.0);
        EXPECT_EQ(IV::activeValues().size(), before + 1);
    }
    EXPECT_EQ(IV::activeValues().size(), before);
}

namespace {
// A transition whose value comes from outside until it declares itself done, the
// way a physics model drives a scroll.
class ExternalTransition : public IV::Transition
{
public:
    explicit ExternalTransition(std::function<double(double)> position, double until)
        : mPosition(std::move(position)), mUntil(until)
    {}
    double update(const ElapsedTimer& timer) override { return mPosition(timer.secondsElapsed()); }
    bool isDone(const ElapsedTimer& timer) override { return timer.secondsElapsed() >= mUntil; }

private:
    std::function<double(double)> mPosition;
    double mUntil;
};
} // namespace

TEST(InterpolatedValue, ExternalTransitionsDriveTheValueUntilDone)
{
    ManualClock clock;
    IV value(1);
    value.addTransition(new ExternalTransition([](double t) { return 1 + 4 * t; }, 2));
    EXPECT_DOUBLE_EQ(value.finalTarget(), 1); // nothing known in advance
    clock.advanceMs(1500);
    value.update();
    EXPECT_DOUBLE_EQ(value.value(), 7);
    EXPECT_FALSE(value.nearTarget(100)); // no target to be near
    clock.advanceMs(1000);
    value.update();
    EXPECT_DOUBLE_EQ(value.value(), 11); // the last reading stands when it has no target
    EXPECT_FALSE(value.active());

    LogCapture capture;
    value.addTransition(nullptr);
    EXPECT_EQ(capture.assertions(), QStringList("Null transition"));
    EXPECT_FALSE(value.active());
}

TEST(BoundedDeclerateTransition, DeceleratesToRestOrLandsOnTheBound)
{
    ManualClock clock;
    IV free(100);
    free.boundedDecelerate(200, 0, 1000, 0.5, 0.3);
    EXPECT_DOUBLE_EQ(free.finalTarget(), 200);
    clock.advanceMs(500);
    free.update();
    EXPECT_NEAR(free.value(), 100 + 100 * (1 - std::exp(-1.0)), 1e-9);
    EXPECT_NEAR(free.getVelocity(), 200 * std::exp(-1.0), 1e-9);
    clock.advanceMs(5000);
    free.update();
    EXPECT_EQ(free.value(), 200);
    EXPECT_FALSE(free.active());

    // A fling that would come to rest beyond the bound eases onto it instead.
    IV stopped(900);
    stopped.boundedDecelerate(1000, 0, 1000, 0.5, 0.3);
    EXPECT_DOUBLE_EQ(stopped.finalTarget(), 1000);
    clock.advanceMs(150);
    stopped.update();
    EXPECT_DOUBLE_EQ(stopped.value(), Easing::easeOutExpo(0.15, 900, 100, 0.3));
    clock.advanceMs(150);
    stopped.update();
    EXPECT_EQ(stopped.value(), 1000);

    // Queued behind a move, it starts from where the move left the value.
    IV queued(0);
    queued.ease(-50, 1, 0, IV::Linear);
    queued.boundedDecelerate(0, 0, 1000, 0.5, 0.2);
    clock.advanceMs(1000);
    queued.update();
    EXPECT_EQ(queued.value(), -50);
    clock.advanceMs(100);
    queued.update();
    EXPECT_DOUBLE_EQ(queued.value(), Easing::easeOutExpo(0.1, -50, 50, 0.2));
    clock.advanceMs(100);
    queued.update();
    EXPECT_EQ(queued.value(), 0);
}

TEST(ContinuousInterpolatedValue, GlidesAndKeepsItsVelocityWhenRetargeted)
{
    ContinuousInterpolatedValue value(0.0f, 1.0f);
    EXPECT_FALSE(value.isActive());
    EXPECT_FALSE(value.update(0.1f));
    EXPECT_EQ(value.value(), 0.0f);

    value.setTarget(10.0f);
    EXPECT_TRUE(value.update(0.5f));
    EXPECT_FLOAT_EQ(value.value(), 5.0f); // the cubic from rest to rest is symmetric
    const float speed = value.velocity();
    EXPECT_FLOAT_EQ(speed, 10.0f);

    // Retargeting keeps the speed: the first small step continues at about that rate.
    value.setTarget(20.0f, 2.0f);
    const float before = value.value();
    value.update(0.001f);
    EXPECT_NEAR((value.value() - before) / 0.001f, speed, 0.05f);

    value.update(2.0f);
    EXPECT_EQ(value.value(), 20.0f);
    EXPECT_EQ(value.velocity(), 0.0f);
    EXPECT_FALSE(value.update(0.1f));

    value.setDuration(0.5f);
    value.incTarget(-4.0f);
    EXPECT_EQ(value.target(), 16.0f);
    value.update(0.5f);
    EXPECT_EQ(value.value(), 16.0f);
    value.setValue(3.0f);
    EXPECT_FALSE(value.isActive());
    EXPECT_EQ(value.target(), 3.0f);
}
