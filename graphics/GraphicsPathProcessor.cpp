#include "GraphicsPathProcessor.h"

#include <Logger.h>
#include <cmath>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/GraphicsPaintEngine";
// Curve segments of about this many device pixels keep the flattening invisible.
constexpr float kSegmentLength = 3;
constexpr int kMaxSegments = 64;
} // namespace

GraphicsPathProcessor::GraphicsPathProcessor(const QTransform& transform) : mTransform(transform) {}

QVector2D GraphicsPathProcessor::mapped(qreal x, qreal y) const
{
    return QVector2D(mTransform.map(QPointF(x, y)));
}

GraphicsPathProcessor::Polyline GraphicsPathProcessor::map(const Polyline& line) const
{
    Polyline out;
    out.reserve(line.size());
    for (const QVector2D& p : line)
        out << mapped(p.x(), p.y());
    return out;
}

bool GraphicsPathProcessor::process(const QPainterPath& path)
{
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        if (e.type == QPainterPath::CurveToElement && i + 2 < path.elementCount()) {
            const QPainterPath::Element control1 = path.elementAt(i + 1);
            const QPainterPath::Element control2 = path.elementAt(i + 2);
            if (!add(e, &control1, &control2))
                return false;
            i += 2;
        } else if (!add(e)) {
            return false;
        }
    }
    return true;
}

bool GraphicsPathProcessor::add(const QPainterPath::Element& element, const QPainterPath::Element* control1,
                                const QPainterPath::Element* control2)
{
    switch (element.type) {
    case QPainterPath::MoveToElement:
        mPolylines << Polyline{mapped(element.x, element.y)};
        return true;
    case QPainterPath::LineToElement:
        if (mPolylines.isEmpty())
            mPolylines << Polyline();
        mPolylines.last() << mapped(element.x, element.y);
        return true;
    case QPainterPath::CurveToElement: {
        if (mPolylines.isEmpty() || mPolylines.last().isEmpty() || !control1 || !control2)
            return ORBIS_FAIL(QStringLiteral("Unsupported path element: %1").arg(int(element.type)));
        // The element holds the first control point; the end point comes last.
        const QVector2D p0 = mPolylines.last().last();
        const QVector2D p1 = mapped(element.x, element.y);
        const QVector2D p2 = mapped(control1->x, control1->y);
        const QVector2D p3 = mapped(control2->x, control2->y);
        const float length = (p1 - p0).length() + (p2 - p1).length() + (p3 - p2).length();
        const int segments = qBound(2, int(std::ceil(length / kSegmentLength)), kMaxSegments);
        for (int s = 1; s <= segments; ++s) {
            const float t = float(s) / segments;
            const float u = 1 - t;
            mPolylines.last() << p0 * (u * u * u) + p1 * (3 * u * u * t) + p2 * (3 * u * t * t) +
                                     p3 * (t * t * t);
        }
        return true;
    }
    default:
        return ORBIS_FAIL(QStringLiteral("Unsupported path element: %1").arg(int(element.type)));
    }
}

} // namespace gfx
