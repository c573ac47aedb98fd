#pragma once

#include "InterpolatedValue.h"
#include "MapCamera.h"
#include "OrbisUIFrameworkExport.h"

#include <ElapsedTimer.h>

/// A camera move over time: the centre glides in world coordinates, the heading
/// turns the short way round, and when the centre travels far compared with what
/// the view shows, the zoom dips in the middle of the move so that the way is seen
/// from above rather than smeared across the screen.
class ORBIS_UI_EXPORT MapCameraAnimation
{
public:
    MapCameraAnimation(const MapCamera& from, const MapCamera& to, double seconds,
                       InterpolatedValue::EaseType ease, double viewSize);

    /// The camera at this moment of the framework clock.
    MapCamera current() const;
    MapCamera at(double progress) const;
    bool isFinished() const;
    const MapCamera& target() const { return mTo; }

private:
    MapCamera mFrom;
    MapCamera mTo;
    double mSeconds;
    InterpolatedValue::EaseType mEase;
    double mZoomDip = 0.0;
    ElapsedTimer mTimer;
};
