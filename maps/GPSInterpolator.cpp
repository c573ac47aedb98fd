#include "GPSInterpolator.h"

#include "ConfigValue.h"
#include "Logger.h"

#include <cmath>

static const char* const kLogSource = "maps/GPSInterpolator";

namespace {

ConfigRealValue gMaxInterpolationTValue("mbgl-ic/maxInterpolationTValue", 1.0);

// The heading equivalent to `heading` (mod 360) that lies nearest to `previous`,
// so that blending between the two never turns the long way round. Ties keep the
// value in [-180, 180).
double unwrapNear(double heading, double previous)
{
    if (std::isnan(heading) || std::isnan(previous))
        return 0.0;
    double a = std::fmod(std::fmod(180.0 + heading, 360.0) + 360.0, 360.0) - 180.0;
    if (a == -180.0)
        a = 180.0;
    double best = a;
    if (std::fabs(a - 360.0 - previous) < std::fabs(best - previous))
        best = a - 360.0;
    if (std::fabs(a + 360.0 - previous) < std::fabs(best - previous))
        best = a + 360.0;
    return best;
}

} // namespace

GPSInterpolator::GPSInterpolator(double latitude, double longitude, double heading)
{
    const LocationCoordinate location(latitude, longitude);
    // The newest sample starts 1 ms ahead so that the pair is never out of order.
    mSamples[0] = Sample{location, heading, 1};
    mSamples[1] = Sample{location, heading, 0};
    mTimer.start();
}

void GPSInterpolator::addNewSample(double latitude, double longitude, double heading)
{
    Sample& newest = sample(0);
    newest.mHeading = std::fmod(newest.mHeading, 360.0);
    const double previous = newest.mHeading;

    Sample& slot = sample(1);
    slot.mLocation = LocationCoordinate(latitude, longitude);
    slot.mTime = mTimer.elapsed();
    slot.mHeading = unwrapNear(heading, previous);
    mIndex = (mIndex + 1) % 2;
}

GPSInterpolator::Sample GPSInterpolator::getInterpolatedLocationHeadingSample() const
{
    const qint64 requestedTime = mTimer.elapsed();
    const Sample& newSample = getSample(0);
    const Sample& oldSample = getSample(1);
    ORBIS_ASSERT(requestedTime >= newSample.mTime, "requestedTime >= newSample.mTime");
    ORBIS_ASSERT(newSample.mTime >= oldSample.mTime, "newSample.mTime >= oldSample.mTime");

    const qint64 span = std::max<qint64>(newSample.mTime - oldSample.mTime, 1);
    double t = double(requestedTime - newSample.mTime) / double(span);
    t = std::min(std::max(t, 0.0), gMaxInterpolationTValue.value());
    const double u = 1.0 - t;

    Sample result;
    result.mLocation =
        LocationCoordinate(newSample.mLocation.latitude() * t + oldSample.mLocation.latitude() * u,
                           newSample.mLocation.longitude() * t + oldSample.mLocation.longitude() * u);
    result.mHeading = newSample.mHeading * t + oldSample.mHeading * u;
    result.mTime = requestedTime;
    return result;
}
