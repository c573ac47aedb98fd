#include "MapRouteOverlay.h"

#include "native/MapCRS.h"

#include <QPainter>
#include <QPen>

namespace {

// Cuts the segment a-b to `box` (Liang-Barsky); false when nothing is left.
bool clipSegment(const QRectF& box, QPointF& a, QPointF& b)
{
    const QPointF d = b - a;
    double t0 = 0, t1 = 1;
    const double p[4] = {-d.x(), d.x(), -d.y(), d.y()};
    const double q[4] = {a.x() - box.left(), box.right() - a.x(), a.y() - box.top(), box.bottom() - a.y()};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0)
                return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0)
            t0 = qMax(t0, t);
        else
            t1 = qMin(t1, t);
        if (t0 > t1)
            return false;
    }
    const QPointF start = a;
    a = start + d * t0;
    b = start + d * t1;
    return true;
}

} // namespace

QPainterPath MapRouteOverlay::path(const NativeMaps::MapTransform& transform) const
{
    QPainterPath path;
    const NativeMaps::MapCRS* crs = NativeMaps::MapCRS::defaultCRS();
    if (isEmpty() || !crs)
        return path;
    // The visible ground in unprojected view pixels, a line's width beyond the edges.
    const QTransform& tilt = transform.projection().transform;
    const QRectF visible = transform.clippedProjectedRect(QRectF());
    const QRectF ground = transform.projection()
                              .inverse.map(QPolygonF(visible))
                              .boundingRect()
                              .adjusted(-mWidth, -mWidth, mWidth, mWidth);

    auto viewPoint = [&](const LocationCoordinate& c) {
        const QPointF relative =
            crs->worldPixelsFromLatLng(c, transform.zoomLevel()) - transform.referenceWorldPixels();
        return transform.worldToView().map(relative) + transform.referenceViewPoint();
    };
    QPointF previous = viewPoint(mPoints.first());
    bool open = false;
    for (int i = 1; i < mPoints.size(); ++i) {
        const QPointF next = viewPoint(mPoints[i]);
        QPointF a = previous, b = next;
        if (clipSegment(ground, a, b)) {
            if (!open || a != previous)
                path.moveTo(tilt.map(a));
            path.lineTo(tilt.map(b));
            open = b == next;
        } else {
            open = false;
        }
        previous = next;
    }
    return path;
}

void MapRouteOverlay::paint(QPainter& painter, const NativeMaps::MapTransform& transform) const
{
    const QPainterPath line = path(transform);
    if (line.isEmpty())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(mCasing, mWidth + 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(line);
    painter.setPen(QPen(mColor, mWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(line);
    painter.restore();
}
