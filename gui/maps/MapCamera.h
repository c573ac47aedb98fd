#pragma once

#include "LocationCoordinate.h"
#include "OrbisUIFrameworkExport.h"

/// Where a map view looks: the centre, a fractional zoom level (tile pyramid level
/// plus magnification), the map's heading in degrees (the direction shown upwards)
/// and the tilt away from looking straight down, in degrees.
struct ORBIS_UI_EXPORT MapCamera
{
    LocationCoordinate center;
    double zoom = 15.0;
    double rotation = 0.0;
    double tilt = 0.0;

    MapCamera() = default;
    MapCamera(const LocationCoordinate& c, double z, double r = 0.0, double t = 0.0)
        : center(c), zoom(z), rotation(r), tilt(t)
    {}

    bool operator==(const MapCamera& o) const
    {
        return center == o.center && zoom == o.zoom && rotation == o.rotation && tilt == o.tilt;
    }
    bool operator!=(const MapCamera& o) const { return !(*this == o); }
};
