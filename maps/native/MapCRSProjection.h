#pragma once

#include "LocationCoordinate.h"
#include "OrbisUIFrameworkExport.h"
#include "TPoint.h"
#include "TRect.h"

namespace NativeMaps {

/// Maps latitude/longitude to the projected units of a coordinate reference system
/// and back. `bounds` is the projection's extent; a negative height means the
/// projected y axis points north.
class ORBIS_UI_EXPORT MapCRSProjection
{
public:
    explicit MapCRSProjection(const TRect<double>& bounds) : mBounds(bounds) {}
    virtual ~MapCRSProjection() = default;

    virtual TPoint<double> project(const LocationCoordinate& coordinate) const = 0;
    virtual LocationCoordinate unproject(const TPoint<double>& point) const = 0;
    virtual double metersPerProjectedUnit() const = 0;

    const TRect<double>& bounds() const { return mBounds; }

private:
    TRect<double> mBounds;
};

/// Spherical Mercator: the whole world square, top edge first (hence the negative height).
class ORBIS_UI_EXPORT MapCRSProjectionSphericalMercator : public MapCRSProjection
{
public:
    MapCRSProjectionSphericalMercator();

    TPoint<double> project(const LocationCoordinate& coordinate) const override;
    LocationCoordinate unproject(const TPoint<double>& point) const override;
    double metersPerProjectedUnit() const override { return 1.0; }
};

/// Korean UTM-K; the extent belongs to the tile grid, so the caller gives it.
class ORBIS_UI_EXPORT MapCRSProjectionUTMK : public MapCRSProjection
{
public:
    explicit MapCRSProjectionUTMK(const TRect<double>& bounds) : MapCRSProjection(bounds) {}

    TPoint<double> project(const LocationCoordinate& coordinate) const override;
    LocationCoordinate unproject(const TPoint<double>& point) const override;
    double metersPerProjectedUnit() const override { return 1.0; }
};

} // namespace NativeMaps
