#pragma once

#include "GeoBoundingBox.h"
#include "LocationCoordinate.h"
#include "OrbisUIFrameworkExport.h"
#include "native/MapCRSAffineTransform.h"
#include "native/MapCRSProjection.h"

#include <QPointF>
#include <QRect>
#include <QRectF>
#include <cmath>
#include <memory>

namespace NativeMaps {

/// A coordinate reference system: a projection, the affine map onto the unit
/// world square, and the ranges in which coordinates wrap. World pixels at zoom z
/// are normalised units times scale(z).
class ORBIS_UI_EXPORT MapCRS
{
public:
    /// A wrap range whose ends are NaN means the coordinate does not wrap.
    struct WrapRange
    {
        double minimum = NAN;
        double maximum = NAN;
        bool isSet() const { return !std::isnan(minimum) && !std::isnan(maximum); }
    };

    MapCRS();
    MapCRS(MapCRSProjection* projection, const MapCRSAffineTransform& affine);
    virtual ~MapCRS();
    MapCRS(const MapCRS&) = delete;
    MapCRS& operator=(const MapCRS&) = delete;

    /// The process-wide CRS of every map computation. Not owned; installed on the
    /// main thread while no worker reads it.
    static void setDefaultCRS(MapCRS* crs);
    static MapCRS* defaultCRS();
    /// defaultCRS(), reporting when none is installed.
    static const MapCRS* requireDefaultCRS();

    virtual double scale(double zoom) const;
    virtual double zoom(double scale) const;
    virtual LocationCoordinate wrapLatLng(const LocationCoordinate& coordinate) const;
    virtual double distance(const LocationCoordinate& a, const LocationCoordinate& b) const = 0;

    double metersPerPixel(double zoom) const;
    QRectF getProjectedBounds(double zoom) const;
    /// Works through the default CRS, whichever CRS it is called on.
    QRect boundingBoxToPixels(const GeoBoundingBox& box, double zoom) const;

    QPointF worldPixelsFromLatLng(const LocationCoordinate& coordinate, double zoom) const;
    /// The inverse of worldPixelsFromLatLng, without any wrapping or clamping.
    LocationCoordinate latLngFromWorldPixels(const QPointF& worldPixels, double zoom) const;

    const MapCRSProjection* projection() const { return mProjection.get(); }
    const MapCRSAffineTransform& affine() const { return mAffine; }
    bool unbounded() const { return mUnbounded; }
    void setUnbounded(bool unbounded) { mUnbounded = unbounded; }
    const WrapRange& latitudeWrap() const { return mLatitudeWrap; }
    const WrapRange& longitudeWrap() const { return mLongitudeWrap; }

protected:
    void setLatitudeWrap(const WrapRange& range) { mLatitudeWrap = range; }
    void setLongitudeWrap(const WrapRange& range) { mLongitudeWrap = range; }

private:
    bool hasProjection() const;

    std::unique_ptr<MapCRSProjection> mProjection;
    MapCRSAffineTransform mAffine;
    bool mUnbounded = false;
    WrapRange mLatitudeWrap;
    WrapRange mLongitudeWrap;
};

/// A CRS on the Earth: longitude wraps at the antimeridian, distances are great-circle metres.
class ORBIS_UI_EXPORT MapCRSEarth : public MapCRS
{
public:
    MapCRSEarth(MapCRSProjection* projection, const MapCRSAffineTransform& affine);

    double distance(const LocationCoordinate& a, const LocationCoordinate& b) const override;
};

/// Web Mercator: the whole world on the unit square, y growing southwards.
class ORBIS_UI_EXPORT MapCRSEPSG3857 : public MapCRSEarth
{
public:
    MapCRSEPSG3857();
};

/// Korean UTM-K on a 2^19 m grid whose south-west corner is at (171162, 1214781).
/// Nothing wraps: the grid covers only the peninsula.
class ORBIS_UI_EXPORT MapCRSEPSG5179 : public MapCRSEarth
{
public:
    MapCRSEPSG5179();
};

} // namespace NativeMaps
