#include "MapCRSProjection.h"

#include "GeoUtils.h"

namespace NativeMaps {

MapCRSProjectionSphericalMercator::MapCRSProjectionSphericalMercator()
    : MapCRSProjection(
          TRect<double>(-20037508.342789244, 20037508.342789244, 40075016.68557849, -40075016.68557849))
{}

TPoint<double> MapCRSProjectionSphericalMercator::project(const LocationCoordinate& coordinate) const
{
    return GeoUtils::projectToSphericalMercator(coordinate);
}

LocationCoordinate MapCRSProjectionSphericalMercator::unproject(const TPoint<double>& point) const
{
    return GeoUtils::unprojectFromSphericalMercator(point);
}

TPoint<double> MapCRSProjectionUTMK::project(const LocationCoordinate& coordinate) const
{
    return GeoUtils::WGStoUTMK(coordinate);
}

LocationCoordinate MapCRSProjectionUTMK::unproject(const TPoint<double>& point) const
{
    return GeoUtils::UTMKtoWGS(point);
}

} // namespace NativeMaps
