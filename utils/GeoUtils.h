#pragma once

#include "LocationCoordinate.h"
#include "OrbisUtilsExport.h"
#include "TPoint.h"

namespace GeoUtils {

/// Spherical Mercator (EPSG:3857) on the sphere of radius 6,378,137 m. Latitudes
/// beyond +-85.0511287798066 degrees are clamped, so the world is the square of
/// +-20037508.342789244 m.
constexpr double kSphericalMercatorRadius = 6378137.0;
constexpr double kSphericalMercatorMaxLatitude = 85.0511287798066;
constexpr double kSphericalMercatorHalfWorld = 20037508.342789244;

ORBIS_UTILS_EXPORT TPoint<double> projectToSphericalMercator(const LocationCoordinate& coordinate);
ORBIS_UTILS_EXPORT LocationCoordinate unprojectFromSphericalMercator(const TPoint<double>& point);

/// Korean UTM-K (EPSG:5179): transverse Mercator on GRS80, latitude of origin
/// 38 N, central meridian 127.5 E, scale 0.9996, false easting 1,000,000 m and
/// false northing 2,000,000 m. x is easting, y is northing, in metres.
ORBIS_UTILS_EXPORT TPoint<double> WGStoUTMK(const LocationCoordinate& coordinate);
ORBIS_UTILS_EXPORT LocationCoordinate UTMKtoWGS(const TPoint<double>& point);

/// Great-circle distance in metres (haversine on the mean Earth radius).
ORBIS_UTILS_EXPORT double distanceBetweenTwoLocations(const LocationCoordinate& a,
                                                      const LocationCoordinate& b);

} // namespace GeoUtils
