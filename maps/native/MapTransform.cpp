#include "native/MapTransform.h"

#include "ConfigValue.h"
#include "Logger.h"
#include "MathUtils.h"
#include "RuntimeEnv.h"
#include "native/MapCRS.h"

#include <algorithm>
#include <cmath>
#include <limits>

static const char* const kLogSource = "maps/native/MapTransform";

namespace NativeMaps {

namespace {

ConfigRealValue gMinPerspectiveScaling("maps/minPerspectiveScaling", 0.5);

// Queued signals carry cameras between threads.
[[maybe_unused]] const int kMetaTypeId = qRegisterMetaType<MapTransform>();

// Where QTransform clips projected shapes: points nearer the eye than this are cut.
constexpr double kNearPlane = 0.000001;

// Tile and pixel indices stay far from int overflow whatever the camera holds.
constexpr double kIndexLimit = 1 << 30;

int toIndex(double value)
{
    if (std::isnan(value))
        return 0;
    return int(MathUtils::clamp(value, -kIndexLimit, kIndexLimit));
}

// How far [low, high] must move to lie inside [boundLow, boundHigh]; the low edge
// wins when it does not fit.
double edgeShift(double boundLow, double boundHigh, double low, double high)
{
    if (boundLow > low)
        return boundLow - low;
    if (high > boundHigh)
        return boundHigh - high;
    return 0.0;
}

bool isHiddenUnder(const QRectF& t, const QVector<QRect>& covered)
{
    for (const QRect& r : covered) {
        if (t.left() > r.left() && t.right() < r.right() && t.top() > r.top() && t.bottom() < r.bottom())
            return true;
    }
    return false;
}

bool takesTile(const QPolygonF& tilePolygon, const QRectF& viewRect, const QVector<QRect>& covered,
               bool instrumentCluster)
{
    if (instrumentCluster)
        return !QPolygonF(viewRect).intersected(tilePolygon).isEmpty();
    const QRectF t = tilePolygon.boundingRect();
    // Tiles wholly under an opaque overlay need neither loading nor drawing.
    if (!covered.isEmpty() && !t.size().isNull() && isHiddenUnder(t, covered))
        return false;
    return t.intersects(viewRect);
}

} // namespace

MapTransform::MapTransform(int zoomLevel, double scale, double rotation, const MapProjection& projection,
                           const LocationCoordinate& reference, const QPointF& referenceViewPoint,
                           const QSize& tileSize)
{
    reset(zoomLevel, scale, rotation, projection, reference, referenceViewPoint, tileSize);
}

void MapTransform::reset(int zoomLevel, double scale, double rotation, const MapProjection& projection,
                         const LocationCoordinate& reference, const QPointF& referenceViewPoint,
                         const QSize& tileSize)
{
    mZoomLevel = zoomLevel;
    mScale = scale;
    mRotation = rotation;
    mProjection = projection;
    mReference = reference;
    mReferenceViewPoint = referenceViewPoint;
    mTileSize = tileSize;

    const MapCRS* crs = MapCRS::requireDefaultCRS();
    mReferenceWorldPixels = crs ? crs->worldPixelsFromLatLng(reference, zoomLevel) : QPointF();

    mWorldToView = QTransform();
    mWorldToView.rotate(-rotation);
    mWorldToView.scale(scale, scale);
    mViewToWorld = mWorldToView.inverted();

    mReferenceTile =
        QPointF(mReferenceWorldPixels.x() / tileSize.width(), mReferenceWorldPixels.y() / tileSize.height());
    mViewToTile = QTransform();
    mViewToTile.scale(1.0 / tileSize.width(), 1.0 / tileSize.height());
    mViewToTile *= mViewToWorld;

    mWrapsLongitude = crs && crs->longitudeWrap().isSet();
    mWrapsLatitude = crs && crs->latitudeWrap().isSet();
}

MapTransform MapTransform::changedZoom(int zoomLevel, double scale) const
{
    return MapTransform(zoomLevel, scale, mRotation, mProjection, mReference, mReferenceViewPoint, mTileSize);
}

MapTransform MapTransform::changeRotation(double rotation) const
{
    return MapTransform(mZoomLevel, mScale, rotation, mProjection, mReference, mReferenceViewPoint,
                        mTileSize);
}

MapTransform MapTransform::changeReference(const LocationCoordinate& reference,
                                           const QPointF& referenceViewPoint) const
{
    return MapTransform(mZoomLevel, mScale, mRotation, mProjection, reference, referenceViewPoint, mTileSize);
}

MapTransform MapTransform::changeReferenceProjected(const LocationCoordinate& reference,
                                                    const QPointF& projectedViewPoint) const
{
    return changeReference(reference, mProjection.inverse.map(projectedViewPoint));
}

MapTransform MapTransform::changeProjection(const MapProjection& projection) const
{
    return MapTransform(mZoomLevel, mScale, mRotation, projection, mReference, mReferenceViewPoint,
                        mTileSize);
}

MapTransform MapTransform::changeTilt(double tilt) const
{
    MapProjection projection = mProjection;
    projection.tilt = tilt;
    if (tilt == 0.0) {
        projection.transform = QTransform();
        projection.inverse = projection.transform;
    } else {
        const int h2 = projection.viewport.height() / 2;
        QTransform t;
        t.translate(projection.pivotX, h2);
        t.rotate(tilt, Qt::XAxis);
        t.translate(-projection.pivotX, -h2);
        projection.transform = t;
        projection.inverse = t.inverted();
    }
    return changeProjection(projection);
}

QPointF MapTransform::projectedViewPixelsFromLatLng(const LocationCoordinate& coordinate) const
{
    const MapCRS* crs = MapCRS::requireDefaultCRS();
    if (!crs)
        return QPointF();
    const QPointF world = crs->worldPixelsFromLatLng(coordinate, mZoomLevel);
    return projectedViewPixelsFromRelativeWorldPixels(world - mReferenceWorldPixels);
}

LocationCoordinate MapTransform::latLngFromProjectedViewPixels(const QPointF& projectedViewPoint) const
{
    const MapCRS* crs = MapCRS::requireDefaultCRS();
    if (!crs)
        return LocationCoordinate();
    const QPointF world =
        relativeWorldPixelsFromViewPixels(mProjection.inverse.map(projectedViewPoint) - mReferenceViewPoint) +
        mReferenceWorldPixels;
    const LocationCoordinate ll = crs->latLngFromWorldPixels(world, mZoomLevel);
    // Whatever the CRS wraps, callers always get a valid geographic position.
    const double longitude = MathUtils::wrap<double>(ll.longitude(), -180.0, 180.0);
    const double latitude = ll.latitude() > 90.0 ? 90.0 : std::max(ll.latitude(), -90.0);
    return LocationCoordinate(latitude, longitude);
}

QPointF MapTransform::relativeWorldPixelsFromViewPixels(const QPointF& viewOffset) const
{
    return mViewToWorld.map(viewOffset);
}

QPointF MapTransform::projectedViewPixelsFromRelativeWorldPixels(const QPointF& relativeWorldPixels) const
{
    return mProjection.transform.map(mWorldToView.map(relativeWorldPixels) + mReferenceViewPoint);
}

QPointF MapTransform::relativeWorldPixelsFromTile(const QPoint& tile) const
{
    return QPointF(double(mTileSize.width() * tile.x()) - mReferenceWorldPixels.x(),
                   double(mTileSize.height() * tile.y()) - mReferenceWorldPixels.y());
}

QRectF MapTransform::relativeWorldPixelRectFromViewRect(const QRectF& viewRect) const
{
    return mViewToWorld.mapRect(viewRect.translated(-mReferenceViewPoint));
}

QPointF MapTransform::tilePointFromViewPixels(const QPointF& projectedViewPoint) const
{
    return mViewToTile.map(mProjection.inverse.map(projectedViewPoint) - mReferenceViewPoint) +
           mReferenceTile;
}

QRectF MapTransform::unboundedProjectedRectFromProjectedViewRect(const QRectF& projectedViewRect) const
{
    const QRectF view = mProjection.inverse.mapRect(projectedViewRect).translated(-mReferenceViewPoint);
    return mViewToWorld.mapRect(view).translated(mReferenceWorldPixels);
}

QRect MapTransform::boundedProjectedRectFromProjectedViewRect(const QRectF& projectedViewRect) const
{
    const MapCRS* crs = MapCRS::requireDefaultCRS();
    if (!crs)
        return QRect();
    const QRectF u = unboundedProjectedRectFromProjectedViewRect(projectedViewRect);
    const QRectF b = crs->getProjectedBounds(mZoomLevel);
    // Only the far edges are kept non-negative; the near edges stay unclamped.
    const int left = std::max(toIndex(std::floor(u.x())), toIndex(std::floor(b.x())));
    const int top = std::max(toIndex(std::floor(u.y())), toIndex(std::floor(b.y())));
    const int right =
        std::max(std::min(toIndex(std::ceil(u.x() + u.width())), toIndex(std::floor(b.x() + b.width()))), 0);
    const int bottom = std::max(
        std::min(toIndex(std::ceil(u.y() + u.height())), toIndex(std::floor(b.y() + b.height()))), 0);
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

bool MapTransform::isPerspective() const
{
    return mProjection.transform.type() != QTransform::TxNone;
}

QRectF MapTransform::clippedProjectedRect(const QRectF& projectedViewRect) const
{
    const QRectF viewport(mProjection.viewport);
    const bool wholeView = !(projectedViewRect.width() > 0.0 && projectedViewRect.height() > 0.0);
    if (isPerspective()) {
        // Near the horizon tiles shrink to slivers; leave that band out.
        const double maxHeight = viewport.height() / gMinPerspectiveScaling.value();
        const QRectF unprojected = mProjection.inverse.map(QPolygonF(viewport)).boundingRect();
        if (std::fabs(unprojected.height()) > maxHeight) {
            // The near (bottom) edge is the lowest one of the unprojected view.
            const double bottom = unprojected.bottom();
            const double yc = mProjection.transform.map(QPointF(0.0, bottom - maxHeight)).y();
            const QRectF cut(viewport.x(), viewport.y() + yc, viewport.width(), viewport.height() - yc);
            return wholeView ? cut : (cut & projectedViewRect);
        }
    }
    return wholeView ? viewport : projectedViewRect;
}

QPolygonF MapTransform::tilePolygon(QRectF& viewRectOut) const
{
    QPolygonF view;
    if (isPerspective()) {
        viewRectOut = clippedProjectedRect(QRectF());
        view = mProjection.inverse.map(QPolygonF(viewRectOut));
    } else {
        viewRectOut = QRectF(mProjection.viewport);
        view = QPolygonF(viewRectOut);
    }
    return mViewToTile.map(view.translated(-mReferenceViewPoint)).translated(mReferenceTile);
}

QPolygonF MapTransform::projectedViewPolygonFromTile(const QPoint& tile) const
{
    // A rotated tile is replaced by its bounding box, so the quad errs on the large side.
    const QRectF world(relativeWorldPixelsFromTile(tile), QSizeF(mTileSize));
    const QRectF view = mWorldToView.mapRect(world).translated(mReferenceViewPoint);
    const QTransform& t = mProjection.transform;
    // QTransform clips a polygon at the eye plane under perspective. Tiles that
    // reach far below a steeply tilted view have corners behind the eye; mapped
    // point by point, their quads would blow up over the whole view. That clipping
    // goes through a painter path, which is costly; a quad wholly in front of the eye
    // plane maps to the same points one by one.
    const auto inFront = [&t](double x, double y) {
        return t.m13() * x + t.m23() * y + t.m33() > kNearPlane;
    };
    if (t.type() == QTransform::TxProject &&
        !(inFront(view.left(), view.top()) && inFront(view.right(), view.top()) &&
          inFront(view.right(), view.bottom()) && inFront(view.left(), view.bottom())))
        return t.map(QPolygonF(view));
    const QPolygonF quad(view);
    QPolygonF mapped(quad.size());
    for (int i = 0; i < quad.size(); ++i)
        mapped[i] = t.map(quad[i]);
    return mapped;
}

QVector<QPoint> MapTransform::tilePoints(int maxTiles, const QPointF& center, const QRegion& covered,
                                         QRectF& viewRectOut) const
{
    const QRectF b = tilePolygon(viewRectOut).boundingRect();
    const int x0 = toIndex(std::floor(b.x()));
    const int x1 = toIndex(std::ceil(b.x() + b.width()));
    const int y0 = toIndex(std::floor(b.y()));
    const int y1 = toIndex(std::ceil(b.y() + b.height()));
    const qint64 examined = qint64(x1 - x0 + 1) * qint64(y1 - y0 + 1);
    if (x0 > x1 || y0 > y1 || examined > std::numeric_limits<int>::max()) {
        Logger::logAssert("false",
                          QStringLiteral("Out of bounds %1,%2,%3,%4").arg(x0).arg(y0).arg(x1).arg(y1),
                          kLogSource, __LINE__);
        return {};
    }

    const bool instrumentCluster = RuntimeEnv::isInstrumentCluster();
    const QVector<QRect> coveredRects(covered.begin(), covered.end());
    QVector<QPoint> tiles;
    for (int x = x0; x <= x1; ++x) {
        for (int y = y0; y <= y1; ++y) {
            const QPoint tile(x, y);
            if (takesTile(projectedViewPolygonFromTile(tile), viewRectOut, coveredRects, instrumentCluster))
                tiles.append(tile);
        }
    }

    if (tiles.size() > maxTiles) {
        Logger::logAssert("false",
                          QStringLiteral("Exceeded max tiles %1 with %2 Bounds: %3,%4,%5,%6")
                              .arg(maxTiles)
                              .arg(tiles.size())
                              .arg(x0)
                              .arg(y0)
                              .arg(x1)
                              .arg(y1),
                          kLogSource, __LINE__);
        return {};
    }

    if (center.x() != 0.0 || center.y() != 0.0) {
        const QPointF c = tilePointFromViewPixels(center);
        const QPoint k(toIndex(std::floor(c.x())), toIndex(std::floor(c.y())));
        // The smaller axis distance puts the whole centre row and column first.
        auto key = [&k](const QPoint& t) {
            return std::min(std::abs(t.x() - k.x()), std::abs(t.y() - k.y()));
        };
        std::sort(tiles.begin(), tiles.end(),
                  [&key](const QPoint& a, const QPoint& b) { return key(a) < key(b); });
    }
    return tiles;
}

QRectF MapTransform::viewFootprint() const
{
    return unboundedProjectedRectFromProjectedViewRect(clippedProjectedRect(QRectF()));
}

void MapTransform::clampToCRSBounds()
{
    const MapCRS* crs = MapCRS::requireDefaultCRS();
    if (!crs)
        return;
    const QRectF b = crs->getProjectedBounds(mZoomLevel);
    QRectF u = viewFootprint();
    if (b.left() <= u.left() && b.top() <= u.top() && u.right() <= b.right() && u.bottom() <= b.bottom())
        return;

    // The shift is worked out on the unrotated footprint even for a rotated camera.
    u = changeRotation(0.0).viewFootprint();
    const double dx = mWrapsLongitude ? 0.0 : edgeShift(b.left(), b.right(), u.left(), u.right());
    const double dy = mWrapsLatitude ? 0.0 : edgeShift(b.top(), b.bottom(), u.top(), u.bottom());
    const LocationCoordinate reference =
        crs->latLngFromWorldPixels(mReferenceWorldPixels + QPointF(dx, dy), mZoomLevel);
    reset(mZoomLevel, mScale, mRotation, mProjection, reference, mReferenceViewPoint, mTileSize);
}

} // namespace NativeMaps
