#pragma once

#include "LocationCoordinate.h"
#include "OrbisUIFrameworkExport.h"
#include "native/MapProjection.h"

#include <QMetaType>
#include <QPoint>
#include <QPointF>
#include <QPolygonF>
#include <QRect>
#include <QRectF>
#include <QRegion>
#include <QSize>
#include <QTransform>
#include <QVector>

namespace NativeMaps {

/// One frame's camera, and every conversion between the spaces of the map:
/// latitude/longitude, world pixels at zoomLevel (relative to the reference),
/// view pixels (rotated and scaled), projected view pixels (tilted) and tile
/// coordinates. Immutable apart from reset and clampToCRSBounds: camera changes
/// build new values. All computations go through MapCRS::defaultCRS().
class ORBIS_UI_EXPORT MapTransform
{
public:
    MapTransform() = default;
    MapTransform(int zoomLevel, double scale, double rotation, const MapProjection& projection,
                 const LocationCoordinate& reference, const QPointF& referenceViewPoint,
                 const QSize& tileSize);

    void reset(int zoomLevel, double scale, double rotation, const MapProjection& projection,
               const LocationCoordinate& reference, const QPointF& referenceViewPoint, const QSize& tileSize);

    MapTransform changedZoom(int zoomLevel, double scale) const;
    MapTransform changeRotation(double rotation) const;
    MapTransform changeReference(const LocationCoordinate& reference,
                                 const QPointF& referenceViewPoint) const;
    MapTransform changeReferenceProjected(const LocationCoordinate& reference,
                                          const QPointF& projectedViewPoint) const;
    MapTransform changeProjection(const MapProjection& projection) const;
    MapTransform changeTilt(double tilt) const;

    QPointF projectedViewPixelsFromLatLng(const LocationCoordinate& coordinate) const;
    LocationCoordinate latLngFromProjectedViewPixels(const QPointF& projectedViewPoint) const;
    /// The argument is an offset from referenceViewPoint, not a view position.
    QPointF relativeWorldPixelsFromViewPixels(const QPointF& viewOffset) const;
    QPointF projectedViewPixelsFromRelativeWorldPixels(const QPointF& relativeWorldPixels) const;
    QPointF relativeWorldPixelsFromTile(const QPoint& tile) const;
    QRectF relativeWorldPixelRectFromViewRect(const QRectF& viewRect) const;
    QPointF tilePointFromViewPixels(const QPointF& projectedViewPoint) const;
    QRectF unboundedProjectedRectFromProjectedViewRect(const QRectF& projectedViewRect) const;
    QRect boundedProjectedRectFromProjectedViewRect(const QRectF& projectedViewRect) const;
    /// An empty rect stands for the whole viewport.
    QRectF clippedProjectedRect(const QRectF& projectedViewRect) const;
    QPolygonF tilePolygon(QRectF& viewRectOut) const;
    QPolygonF projectedViewPolygonFromTile(const QPoint& tile) const;
    /// Tiles that cover the view, centre-out around `center` (projected view pixels)
    /// unless it is (0, 0); empty when more than maxTiles would be needed.
    QVector<QPoint> tilePoints(int maxTiles, const QPointF& center, const QRegion& covered,
                               QRectF& viewRectOut) const;

    void clampToCRSBounds();

    int zoomLevel() const { return mZoomLevel; }
    double scale() const { return mScale; }
    double rotation() const { return mRotation; }
    const MapProjection& projection() const { return mProjection; }
    const LocationCoordinate& reference() const { return mReference; }
    const QPointF& referenceWorldPixels() const { return mReferenceWorldPixels; }
    const QPointF& referenceViewPoint() const { return mReferenceViewPoint; }
    const QPointF& referenceTile() const { return mReferenceTile; }
    const QTransform& worldToView() const { return mWorldToView; }
    const QTransform& viewToWorld() const { return mViewToWorld; }
    const QTransform& viewToTile() const { return mViewToTile; }
    bool wrapsLongitude() const { return mWrapsLongitude; }
    bool wrapsLatitude() const { return mWrapsLatitude; }
    const QSize& tileSize() const { return mTileSize; }

private:
    bool isPerspective() const;
    /// The world-pixel bounding box of the (clipped) view.
    QRectF viewFootprint() const;

    int mZoomLevel = 0;
    double mScale = 1.0;
    double mRotation = 0.0;
    MapProjection mProjection;
    LocationCoordinate mReference;
    QPointF mReferenceWorldPixels;
    QPointF mReferenceViewPoint;
    QPointF mReferenceTile;
    QTransform mWorldToView;
    QTransform mViewToWorld;
    QTransform mViewToTile;
    bool mWrapsLongitude = false;
    bool mWrapsLatitude = false;
    QSize mTileSize;
};

} // namespace NativeMaps

Q_DECLARE_METATYPE(NativeMaps::MapTransform)
