#include "GlyphQuads.h"

#include "Geometry.h"
#include "GlyphCache.h"
#include "GlyphRun.h"
#include "Shape.h"

#include <QRegion>

namespace gfx {

namespace {
void appendQuad(Geometry& geometry, const QRect& area, const QRect& quad, const QRect& texels)
{
    const float scale = 1.0f / GlyphCache::kPageSize;
    const float u0 = (texels.x() + area.x() - quad.x()) * scale;
    const float v0 = (texels.y() + area.y() - quad.y()) * scale;
    const float u1 = u0 + area.width() * scale;
    const float v1 = v0 + area.height() * scale;
    const float x0 = area.x();
    const float y0 = area.y();
    const float x1 = x0 + area.width();
    const float y1 = y0 + area.height();
    geometry.vertices() << Vertex{x0, y0, u0, v0} << Vertex{x1, y0, u1, v0} << Vertex{x1, y1, u1, v1}
                        << Vertex{x0, y0, u0, v0} << Vertex{x1, y1, u1, v1} << Vertex{x0, y1, u0, v1};
    geometry.setRect(geometry.rect() | area);
}

// A turned quad, cut to the clip, as a triangle fan per polygon.
void appendShape(Geometry& geometry, const Shape& shape)
{
    for (const QPolygonF& polygon : shape.polygons()) {
        for (int i = 1; i + 1 < polygon.size(); ++i) {
            for (const QPointF& p : {polygon[0], polygon[i], polygon[i + 1]}) {
                const QPointF tex = shape.texCoordAt(p);
                geometry.vertices() << Vertex{float(p.x()), float(p.y()), float(tex.x()), float(tex.y())};
            }
        }
        geometry.setRect(geometry.rect() | polygon.boundingRect().toAlignedRect());
    }
}
} // namespace

QMap<unsigned int, Geometry*> GlyphQuads::build(const GlyphRun& run, const QVector<QPointF>& origins,
                                                const QTransform& orientation, const QRegion* clip)
{
    if (orientation.isIdentity())
        return build(run, origins, clip);
    QMap<unsigned int, Geometry*> pages;
    if (run.isEmpty())
        return pages;
    GlyphCache* cache = GlyphCache::instance();
    const int count = qMin(run.glyphs().size(), origins.size());
    constexpr float kPage = GlyphCache::kPageSize;
    for (int i = 0; i < count; ++i) {
        GlyphCache::Glyph glyph;
        if (!cache->glyph(run.face(), run.pixelSize(), run.glyphs()[i], glyph) || glyph.rect.isEmpty())
            continue;
        // Half a texel into the padding: the filter reaches that far, no further.
        const QRectF texels = QRectF(glyph.rect).adjusted(-0.5, -0.5, 0.5, 0.5);
        const TexCoordInsets insets{float(texels.x() / kPage), float(texels.y() / kPage),
                                    float((kPage - texels.right()) / kPage),
                                    float((kPage - texels.bottom()) / kPage)};
        // Turned glyphs are filtered anyway: keep their pens on the exact baseline
        // rather than rounding each one into a wobble.
        const QTransform place = orientation * QTransform::fromTranslate(origins[i].x(), origins[i].y());
        const Shape quad(QRectF(QPointF(glyph.offset) - QPointF(0.5, 0.5), texels.size()), place, insets);
        const Shape shown = clip ? quad.clipped(*clip) : quad;
        if (shown.deepIsEmpty())
            continue;
        Geometry*& geometry = pages[glyph.page];
        if (!geometry)
            geometry = new Geometry(Geometry::kTriangles);
        appendShape(*geometry, shown);
    }
    return pages;
}

QMap<unsigned int, Geometry*> GlyphQuads::build(const GlyphRun& run, const QVector<QPointF>& origins,
                                                const QRegion* clip)
{
    QMap<unsigned int, Geometry*> pages;
    if (run.isEmpty())
        return pages;
    GlyphCache* cache = GlyphCache::instance();
    const int count = qMin(run.glyphs().size(), origins.size());
    for (int i = 0; i < count; ++i) {
        GlyphCache::Glyph glyph;
        if (!cache->glyph(run.face(), run.pixelSize(), run.glyphs()[i], glyph) || glyph.rect.isEmpty())
            continue;
        const QPoint pen(qRound(origins[i].x()), qRound(origins[i].y()));
        const QRect quad(pen + glyph.offset, glyph.rect.size());
        if (clip && !clip->intersects(quad))
            continue;
        Geometry*& geometry = pages[glyph.page];
        if (!geometry)
            geometry = new Geometry(Geometry::kTriangles);
        if (!clip) {
            appendQuad(*geometry, quad, quad, glyph.rect);
            continue;
        }
        for (const QRect& area : QRegion(quad) & *clip)
            appendQuad(*geometry, area, quad, glyph.rect);
    }
    return pages;
}

} // namespace gfx
