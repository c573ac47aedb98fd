#include "GPSInterpolator.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

// The clock starts with the interpolator; fixes arrive at the times given.
class GPSInterpolatorTest : public ::testing::Test
{
protected:
    double headingAfter(double previous, double heading)
    {
        GPSInterpolator gps(0, 0, previous);
        mClock.advanceMs(10);
        gps.addNewSample(0, 0, heading);
        return gps.getSample(0).mHeading;
    }

    ManualClock mClock{5000};
};

} // namespace

TEST_F(GPSInterpolatorTest, StartsAtTheFirstFix)
{
    GPSInterpolator gps(37.5, 127.0, 45.0);
    EXPECT_EQ(gps.getSample(0).mTime, 1);
    EXPECT_EQ(gps.getSample(1).mTime, 0);
    mClock.advanceMs(1);
    LogCapture capture;
    const GPSInterpolator::Sample s = gps.getInterpolatedLocationHeadingSample();
    EXPECT_EQ(s.mLocation, LocationCoordinate(37.5, 127.0));
    EXPECT_EQ(s.mHeading, 45.0);
    EXPECT_EQ(s.mTime, 1);
    EXPECT_TRUE(capture.records().isEmpty());
}

TEST_F(GPSInterpolatorTest, BlendsOverTheIntervalBetweenFixes)
{
    GPSInterpolator gps(0, 0, 0);
    mClock.advanceMs(1000);
    gps.addNewSample(10.0, 20.0, 90.0);
    mClock.advanceMs(1000);
    gps.addNewSample(12.0, 24.0, 100.0);
    EXPECT_EQ(gps.getSample(0).mTime, 2000);
    EXPECT_EQ(gps.getSample(1).mTime, 1000);

    GPSInterpolator::Sample s = gps.getInterpolatedLocationHeadingSample();
    EXPECT_DOUBLE_EQ(s.mLocation.latitude(), 10.0); // the previous fix when one arrives
    mClock.advanceMs(500);
    s = gps.getInterpolatedLocationHeadingSample();
    EXPECT_DOUBLE_EQ(s.mLocation.latitude(), 11.0);
    EXPECT_DOUBLE_EQ(s.mLocation.longitude(), 22.0);
    EXPECT_DOUBLE_EQ(s.mHeading, 95.0);
    EXPECT_EQ(s.mTime, 2500);
    // It reaches the new fix one interval later and stays there.
    mClock.advanceMs(1500);
    s = gps.getInterpolatedLocationHeadingSample();
    EXPECT_DOUBLE_EQ(s.mLocation.latitude(), 12.0);
    EXPECT_DOUBLE_EQ(s.mHeading, 100.0);

    ScopedConfigOverride runOn("mbgl-ic/maxInterpolationTValue", 1.5);
    s = gps.getInterpolatedLocationHeadingSample();
    EXPECT_DOUBLE_EQ(s.mLocation.latitude(), 13.0);
    EXPECT_DOUBLE_EQ(s.mLocation.longitude(), 26.0);
}

TEST_F(GPSInterpolatorTest, HeadingsTurnTheShortWayRound)
{
    GPSInterpolator gps(0, 0, 350.0);
    mClock.advanceMs(1000);
    gps.addNewSample(0, 0, 350.0);
    mClock.advanceMs(1000);
    gps.addNewSample(0, 0, 10.0);
    EXPECT_DOUBLE_EQ(gps.getSample(0).mHeading, 370.0);
    mClock.advanceMs(500);
    EXPECT_DOUBLE_EQ(gps.getInterpolatedLocationHeadingSample().mHeading, 360.0);

    // The next fix first reduces the kept heading, then unwraps next to it.
    mClock.advanceMs(500);
    gps.addNewSample(0, 0, 20.0);
    EXPECT_DOUBLE_EQ(gps.getSample(1).mHeading, 10.0);
    EXPECT_DOUBLE_EQ(gps.getSample(0).mHeading, 20.0);

    EXPECT_DOUBLE_EQ(headingAfter(10.0, 350.0), -10.0);
    EXPECT_DOUBLE_EQ(headingAfter(170.0, -180.0), 180.0);
    EXPECT_DOUBLE_EQ(headingAfter(-170.0, 180.0), -180.0);
    EXPECT_DOUBLE_EQ(headingAfter(720.0 + 90.0, 100.0), 100.0);
    EXPECT_DOUBLE_EQ(headingAfter(-350.0, 0.0), -360.0); // the remainder keeps the sign of -350
    // Exactly half a turn away either way, the value in [-180, 180) is kept.
    EXPECT_DOUBLE_EQ(headingAfter(0.0, 180.0), 180.0);
    EXPECT_DOUBLE_EQ(headingAfter(10.0, 190.0), -170.0);
}

TEST_F(GPSInterpolatorTest, NotANumberHeadingsResetToZero)
{
    EXPECT_EQ(headingAfter(90.0, NAN), 0.0);
    EXPECT_EQ(headingAfter(NAN, 90.0), 0.0);

    GPSInterpolator gps(0, 0, NAN);
    mClock.advanceMs(100);
    gps.addNewSample(0, 0, 30.0);
    mClock.advanceMs(100);
    gps.addNewSample(0, 0, 50.0);
    mClock.advanceMs(50);
    // The reset heading blends like any other.
    EXPECT_DOUBLE_EQ(gps.getInterpolatedLocationHeadingSample().mHeading, 25.0);
}

TEST_F(GPSInterpolatorTest, EqualTimesCountAsOneMillisecond)
{
    GPSInterpolator gps(0, 0, 0);
    mClock.advanceMs(1000);
    gps.addNewSample(1.0, 1.0, 0);
    gps.addNewSample(3.0, 3.0, 0);
    EXPECT_DOUBLE_EQ(gps.getInterpolatedLocationHeadingSample().mLocation.latitude(), 1.0);
    mClock.advanceMs(1);
    EXPECT_DOUBLE_EQ(gps.getInterpolatedLocationHeadingSample().mLocation.latitude(), 3.0);
}

TEST_F(GPSInterpolatorTest, ClockFaultsAreReportedAndTheBlendGoesOn)
{
    GPSInterpolator gps(0, 0, 0);
    LogCapture capture;
    // Asked before its own first fix's time.
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation, LocationCoordinate(0, 0));
    EXPECT_EQ(capture.assertions(), QStringList{"requestedTime >= newSample.mTime"});
    EXPECT_EQ(capture.records().first().condition, "requestedTime >= newSample.mTime");
    EXPECT_EQ(capture.records().first().file, "maps/GPSInterpolator");

    capture.clear();
    mClock.advanceMs(1000);
    gps.addNewSample(1.0, 1.0, 0);
    mClock.setMs(5000 + 400);
    gps.addNewSample(2.0, 2.0, 0);
    mClock.setMs(5000 + 900);
    // Fixes out of order: span 1 and t clamped at 1, so the newest wins.
    EXPECT_DOUBLE_EQ(gps.getInterpolatedLocationHeadingSample().mLocation.latitude(), 2.0);
    EXPECT_EQ(capture.assertions(), QStringList{"newSample.mTime >= oldSample.mTime"});
}
