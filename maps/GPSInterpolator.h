#pragma once

#include "ElapsedTimer.h"
#include "LocationCoordinate.h"
#include "OrbisUIFrameworkExport.h"

#include <QtGlobal>

/// Smooths sparse position fixes into a per-frame position and heading: every
/// request blends from the older of the last two fixes towards the newer over the
/// interval that separated them, so the marker trails by one fix and never jumps.
class ORBIS_UI_EXPORT GPSInterpolator
{
public:
    /// A position and heading at a moment.
    struct Sample
    {
        LocationCoordinate mLocation;
        double mHeading = 0.0; // degrees, unwrapped: may lie outside [0, 360)
        qint64 mTime = 0;      // milliseconds since the interpolator started
    };

    GPSInterpolator(double latitude, double longitude, double heading);

    void addNewSample(double latitude, double longitude, double heading);
    Sample getInterpolatedLocationHeadingSample() const;

    /// 0 is the newest sample, 1 the one before it.
    const Sample& getSample(int i) const { return mSamples[(i + mIndex) % 2]; }

private:
    Sample& sample(int i) { return mSamples[(i + mIndex) % 2]; }

    Sample mSamples[2];
    int mIndex = 0;
    ElapsedTimer mTimer;
};
