#include "native/MapCRS.h"

#include "GeoUtils.h"
#include "Logger.h"
#include "MathUtils.h"

#include <QCoreApplication>
#include <QThread>
#include <atomic>

static const char* const kLogSource = "maps/native/MapCRS";

namespace NativeMaps {

namespace {
std::atomic<MapCRS*> gDefaultCRS{nullptr};
} // namespace

MapCRS::MapCRS() = default;

MapCRS::MapCRS(MapCRSProjection* projection, const MapCRSAffineTransform& affine)
    : mProjection(projection), mAffine(affine)
{}

MapCRS::~MapCRS() = default;

void MapCRS::setDefaultCRS(MapCRS* crs)
{
    ORBIS_ASSERT(QCoreApplication::instance() &&
                     QThread::currentThread() == QCoreApplication::instance()->thread(),
                 "QCoreApplication::instance() && QThread::currentThread() == "
                 "QCoreApplication::instance()->thread()");
    gDefaultCRS.store(crs, std::memory_order_release);
}

MapCRS* MapCRS::defaultCRS()
{
    return gDefaultCRS.load(std::memory_order_acquire);
}

const MapCRS* MapCRS::requireDefaultCRS()
{
    const MapCRS* crs = defaultCRS();
    ORBIS_ASSERT(crs, "No default CRS is installed");
    return crs;
}

double MapCRS::scale(double zoom) const
{
    return 256.0 * std::pow(2.0, zoom);
}

double MapCRS::zoom(double scale) const
{
    return std::log2(scale * 0.00390625);
}

LocationCoordinate MapCRS::wrapLatLng(const LocationCoordinate& coordinate) const
{
    double latitude = coordinate.latitude();
    double longitude = coordinate.longitude();
    if (mLatitudeWrap.isSet())
        latitude = MathUtils::wrap<double>(latitude, mLatitudeWrap.minimum, mLatitudeWrap.maximum);
    if (mLongitudeWrap.isSet())
        longitude = MathUtils::wrap<double>(longitude, mLongitudeWrap.minimum, mLongitudeWrap.maximum);
    return LocationCoordinate(latitude, longitude);
}

bool MapCRS::hasProjection() const
{
    return ORBIS_ASSERT(mProjection, "MapCRS has no projection");
}

double MapCRS::metersPerPixel(double zoom) const
{
    if (!hasProjection())
        return NAN;
    return mProjection->metersPerProjectedUnit() / (scale(zoom) * mAffine.scaleX);
}

QRectF MapCRS::getProjectedBounds(double zoom) const
{
    if (mUnbounded || !hasProjection())
        return QRectF(0, 0, 0, 0);
    const double s = scale(zoom);
    const TRect<double>& b = mProjection->bounds();
    const double x0 = s * (mAffine.scaleX * b.x + mAffine.offsetX);
    const double x1 = s * (mAffine.scaleX * (b.x + b.width) + mAffine.offsetX);
    const double y0 = s * (mAffine.scaleY * b.y + mAffine.offsetY);
    const double y1 = s * (mAffine.scaleY * (b.y + b.height) + mAffine.offsetY);
    return QRectF(std::min(x0, x1), std::min(y0, y1), std::fabs(x0 - x1), std::fabs(y0 - y1));
}

QRect MapCRS::boundingBoxToPixels(const GeoBoundingBox& box, double zoom) const
{
    const MapCRS* crs = requireDefaultCRS();
    if (!crs)
        return QRect();
    const QPointF nw = crs->worldPixelsFromLatLng(box.northWestLimit(), zoom);
    const QPointF se = crs->worldPixelsFromLatLng(box.southEastLimit(), zoom);
    return QRect(QPoint(qRound(nw.x()), qRound(nw.y())), QPoint(qRound(se.x()), qRound(se.y())));
}

QPointF MapCRS::worldPixelsFromLatLng(const LocationCoordinate& coordinate, double zoom) const
{
    if (!hasProjection())
        return QPointF(NAN, NAN);
    const TPoint<double> n = mAffine.map(mProjection->project(coordinate));
    const double s = scale(zoom);
    return QPointF(s * n.x, s * n.y);
}

LocationCoordinate MapCRS::latLngFromWorldPixels(const QPointF& worldPixels, double zoom) const
{
    if (!hasProjection())
        return LocationCoordinate();
    const double s = scale(zoom);
    return mProjection->unproject(mAffine.unmap(TPoint<double>(worldPixels.x() / s, worldPixels.y() / s)));
}

MapCRSEarth::MapCRSEarth(MapCRSProjection* projection, const MapCRSAffineTransform& affine)
    : MapCRS(projection, affine)
{
    setLongitudeWrap({-180.0, 180.0});
}

double MapCRSEarth::distance(const LocationCoordinate& a, const LocationCoordinate& b) const
{
    return GeoUtils::distanceBetweenTwoLocations(a, b);
}

MapCRSEPSG3857::MapCRSEPSG3857()
    : MapCRSEarth(new MapCRSProjectionSphericalMercator(),
                  MapCRSAffineTransform(2.495320233665337e-08, 0.5, -2.495320233665337e-08, 0.5))
{}

MapCRSEPSG5179::MapCRSEPSG5179()
    : MapCRSEarth(new MapCRSProjectionUTMK(TRect<double>(171162.0, 1214781.0, 1572864.0, 1572864.0)),
                  MapCRSAffineTransform(1.9073486328125e-06, -0.3264656066894531, -1.9073486328125e-06,
                                        5.317010879516602))
{
    setLongitudeWrap({NAN, NAN});
}

} // namespace NativeMaps
