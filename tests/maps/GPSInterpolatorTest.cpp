#include "GPSInterpolator.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"

#include <cmath>
#include <gtest/gtest.h>

TEST(GPSInterpolator, TrailsTheFixesByOneInterval)
{
    ManualClock clock;
    GPSInterpolator gps(10.0, 20.0, 350.0);
    clock.advanceMs(1);
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation, LocationCoordinate(10.0, 20.0));
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mHeading, 350.0);

    clock.advanceMs(999);
    gps.addNewSample(10.0, 20.0, 350.0);
    clock.advanceMs(1000);
    gps.addNewSample(12.0, 24.0, 10.0);
    EXPECT_EQ(gps.getSample(0).mHeading, 370.0);
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation, LocationCoordinate(10.0, 20.0));
    clock.advanceMs(500);
    const GPSInterpolator::Sample s = gps.getInterpolatedLocationHeadingSample();
    EXPECT_EQ(s.mLocation, LocationCoordinate(11.0, 22.0));
    EXPECT_DOUBLE_EQ(s.mHeading, 360.0); // the short way round, not through 180
    EXPECT_EQ(s.mTime, 2500);
    clock.advanceMs(1500);
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation, LocationCoordinate(12.0, 24.0));
    ScopedConfigOverride runOn("mbgl-ic/maxInterpolationTValue", 1.5);
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation, LocationCoordinate(13.0, 26.0));

    // The next fix first reduces the kept 370 to 10, then unwraps next to it.
    gps.addNewSample(0, 0, 20.0);
    EXPECT_EQ(gps.getSample(1).mHeading, 10.0);
    EXPECT_EQ(gps.getSample(0).mHeading, 20.0);
}

TEST(GPSInterpolator, HeadingsUnwrapNextToThePreviousOne)
{
    ManualClock clock;
    // {previous, new, stored}; exactly half a turn away, the value in [-180, 180) is kept.
    const double cases[][3] = {{10, 350, -10}, {170, -180, 180}, {-170, 180, -180}, {-350, 0, -360},
                               {0, 180, 180},  {10, 190, -170},  {90, NAN, 0},      {NAN, 90, 0}};
    for (const auto& c : cases) {
        GPSInterpolator gps(0, 0, c[0]);
        clock.advanceMs(10);
        gps.addNewSample(0, 0, c[1]);
        EXPECT_EQ(gps.getSample(0).mHeading, c[2]) << c[0] << " then " << c[1];
    }
}

TEST(GPSInterpolator, EqualTimesAndClockFaults)
{
    ManualClock clock(5000);
    GPSInterpolator gps(0, 0, 0);
    LogCapture capture;
    // Asked at 0 ms, before the first fix's time of 1 ms.
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation, LocationCoordinate(0, 0));
    EXPECT_EQ(capture.records().first().file, "maps/GPSInterpolator");

    clock.advanceMs(1000);
    gps.addNewSample(1.0, 1.0, 0);
    gps.addNewSample(3.0, 3.0, 0);
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation.latitude(), 1.0);
    clock.advanceMs(1); // equal times count as 1 ms apart
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation.latitude(), 3.0);

    clock.setMs(5400);
    gps.addNewSample(2.0, 2.0, 0);
    clock.setMs(5900);
    EXPECT_EQ(gps.getInterpolatedLocationHeadingSample().mLocation.latitude(), 2.0);
    EXPECT_EQ(capture.assertions(),
              QStringList({"requestedTime >= newSample.mTime", "newSample.mTime >= oldSample.mTime"}));
    EXPECT_EQ(capture.records().last().condition, "newSample.mTime >= oldSample.mTime");
}
