#include "Shape.h"

#include <clipper.hpp>
#include <cmath>

namespace gfx {

namespace {
// Clipper works on integers; a 1/256 pixel grid keeps sub-pixel edges.
constexpr double kClipperScale = 256.0;

ClipperLib::Path toPath(const QPolygonF& polygon)
{
    ClipperLib::Path path;
    path.reserve(polygon.size());
    for (const QPointF& p : polygon)
        path.emplace_back(ClipperLib::cInt(std::llround(p.x() * kClipperScale)),
                          ClipperLib::cInt(std::llround(p.y() * kClipperScale)));
    return path;
}

QPolygonF fromPath(const ClipperLib::Path& path)
{
    QPolygonF polygon;
    polygon.reserve(int(path.size()));
    for (const ClipperLib::IntPoint& p : path)
        polygon << QPointF(p.X / kClipperScale, p.Y / kClipperScale);
    return polygon;
}

// QPolygonF(QRectF) repeats the first corner at the end; fans do not need it.
QPolygonF withoutClosingPoint(QPolygonF polygon)
{
    if (polygon.size() > 3 && polygon.first() == polygon.last())
        polygon.removeLast();
    return polygon;
}

double area(const QPolygonF& polygon)
{
    double sum = 0;
    for (int i = 0, n = polygon.size(); i < n; ++i) {
        const QPointF& a = polygon[i];
        const QPointF& b = polygon[(i + 1) % n];
        sum += a.x() * b.y() - b.x() * a.y();
    }
    return std::abs(sum) / 2;
}
} // namespace

Shape::Shape(const QRegion& region, const QTransform& transform, const TexCoordInsets& insets)
    : mTransform(transform), mInsets(insets), mSourceRect(region.boundingRect())
{
    QVector<QRectF> rects;
    for (const QRect& r : region)
        rects << QRectF(r);
    init(rects);
}

Shape::Shape(const QRectF& rect, const QTransform& transform, const TexCoordInsets& insets)
    : mTransform(transform), mInsets(insets), mSourceRect(rect)
{
    init({rect});
}

void Shape::init(const QVector<QRectF>& rects)
{
    mInverse = mTransform.inverted();
    for (const QRectF& r : rects) {
        if (!r.isEmpty())
            mPolygons << withoutClosingPoint(mTransform.map(QPolygonF(r)));
    }
}

QRect Shape::boundingRect() const
{
    QRectF bounds;
    for (const QPolygonF& p : mPolygons)
        bounds |= p.boundingRect();
    return bounds.toAlignedRect();
}

bool Shape::deepIsEmpty() const
{
    for (const QPolygonF& p : mPolygons) {
        if (p.size() >= 3 && area(p) > 0)
            return false;
    }
    return true;
}

Shape Shape::clipped(const QRegion& clip) const
{
    Shape result(*this);
    result.mPolygons.clear();
    for (const QPolygonF& polygon : mPolygons) {
        const QRectF bounds = polygon.boundingRect();
        for (const QRect& c : clip) {
            const QRectF clipRect(c);
            if (!clipRect.intersects(bounds))
                continue;
            if (isRectilinear()) {
                result.mPolygons << withoutClosingPoint(QPolygonF(bounds & clipRect));
                continue;
            }
            // A convex polygon cut by a rectangle stays convex: one path out.
            ClipperLib::Clipper clipper;
            clipper.AddPath(toPath(polygon), ClipperLib::ptSubject, true);
            clipper.AddPath(toPath(QPolygonF(clipRect)), ClipperLib::ptClip, true);
            ClipperLib::Paths out;
            clipper.Execute(ClipperLib::ctIntersection, out, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
            for (const ClipperLib::Path& path : out) {
                if (path.size() >= 3)
                    result.mPolygons << fromPath(path);
            }
        }
    }
    return result;
}

void Shape::removeHidden(const QRegion& covered)
{
    QVector<QPolygonF> kept;
    for (const QPolygonF& p : mPolygons) {
        if (!QRegion(p.boundingRect().toAlignedRect()).subtracted(covered).isEmpty())
            kept << p;
    }
    mPolygons = kept;
}

QPointF Shape::texCoordAt(const QPointF& device) const
{
    const QPointF local = mInverse.map(device);
    const double u = mSourceRect.width() > 0 ? (local.x() - mSourceRect.x()) / mSourceRect.width() : 0;
    const double v = mSourceRect.height() > 0 ? (local.y() - mSourceRect.y()) / mSourceRect.height() : 0;
    return QPointF(mInsets.left + u * (1 - mInsets.left - mInsets.right),
                   mInsets.top + v * (1 - mInsets.top - mInsets.bottom));
}

} // namespace gfx
