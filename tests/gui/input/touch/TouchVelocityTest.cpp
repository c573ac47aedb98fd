#include "input/touch/TouchVelocity.h"
#include "input/touch/PointUtils.h"

#include <gtest/gtest.h>

TEST(TouchVelocity, FitsALineThroughRecentSamplesOnly)
{
    TouchVelocity velocity;
    EXPECT_EQ(velocity.velocity(), QPointF());
    velocity.addSample(0, QPointF(0, 0));
    EXPECT_EQ(velocity.velocity(), QPointF()); // one sample: no direction
    velocity.addSample(0, QPointF(5, 5));
    EXPECT_EQ(velocity.velocity(), QPointF()); // no time passed
    // An early fast stroke that falls out of the window must not count.
    velocity.addSample(10, QPointF(500, 0));
    for (qint64 t = 200; t <= 300; t += 20)
        velocity.addSample(t, QPointF(1000 - 3.0 * (t - 200), 0.5 * t));
    EXPECT_EQ(velocity.sampleCount(), 6);
    EXPECT_NEAR(velocity.velocity().x(), -3.0, 1e-9);
    EXPECT_NEAR(velocity.velocity().y(), 0.5, 1e-9);
    // Uneven spacing: least squares weighs by time, not by sample.
    TouchVelocity uneven;
    for (qint64 t : {0, 1, 2, 3, 50})
        uneven.addSample(t, QPointF(double(t), 0));
    EXPECT_NEAR(uneven.velocity().x(), 1.0, 1e-9);
}

TEST(PointUtils, AnglesWrapTheShortWay)
{
    // Crossing the +-180 seam turns the short way.
    EXPECT_DOUBLE_EQ(PointUtils::angleDifference(170, -170), 20.0);
    EXPECT_DOUBLE_EQ(PointUtils::angleDifference(-170, 170), -20.0);
    EXPECT_DOUBLE_EQ(PointUtils::angleDifference(0, 180), -180.0);
}
