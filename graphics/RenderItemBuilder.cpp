#include "RenderItemBuilder.h"

#include "CoverageMaskCache.h"

#include "AlphaTextureShaderUsage.h"
#include "ColorShaderUsage.h"
#include "ColorTextureShaderUsage.h"
#include "CommandRenderItem.h"
#include "DisplayList.h"
#include "DisplayListRenderItem.h"
#include "Geometry.h"
#include "GeometryRenderItem.h"
#include "GlyphQuads.h"
#include "GlyphRun.h"
#include "GradientShaderUsage.h"
#include "GraphicsPathProcessor.h"
#include "LineShaderUsage.h"
#include "MaskTextureShaderUsage.h"
#include "MultiTextureShaderUsage.h"
#include "PathTessellator.h"
#include "TextShaderUsage.h"
#include "TextureCache.h"
#include "TextureShaderUsage.h"

#include <QPainter>

namespace gfx {

namespace {
// The largest whole-pixel rectangle of a rect geometry: what it promises to cover.
QRect opaqueArea(const Geometry* head)
{
    QRect best;
    for (const Geometry* g = head; g; g = g->next()) {
        if (!g->isRectMode())
            continue;
        for (const QRect& r : g->region())
            if (qint64(r.width()) * r.height() > qint64(best.width()) * best.height())
                best = r;
    }
    return best;
}

TexCoordInsets insetsOf(const QRect& source, const QSize& size)
{
    if (size.isEmpty())
        return TexCoordInsets();
    const float w = size.width();
    const float h = size.height();
    return {source.x() / w, source.y() / h, (w - source.x() - source.width()) / w,
            (h - source.y() - source.height()) / h};
}
} // namespace

RenderItemBuilder::RenderItemBuilder() = default;

RenderItemBuilder::RenderItemBuilder(const QRegion& clip) : mClip(clip), mHasClip(true) {}

RenderItemBuilder::~RenderItemBuilder()
{
    qDeleteAll(mItems);
}

QVector<RenderItem*> RenderItemBuilder::takeItems()
{
    QVector<RenderItem*> items;
    items.swap(mItems);
    return items;
}

TExplicitlySharedDataPointer<DisplayList> RenderItemBuilder::createDisplayList(bool allowSubstitution)
{
    QVector<RenderItem*> items = takeItems();
    return TExplicitlySharedDataPointer<DisplayList>(new DisplayList(items, allowSubstitution));
}

void RenderItemBuilder::setBlendFunc(GLenum source, GLenum destination)
{
    mBlendSource = source;
    mBlendDestination = destination;
}

bool RenderItemBuilder::outsideClip(const QRect& rect) const
{
    return mHasClip && !mClip.intersects(rect);
}

Geometry* RenderItemBuilder::geometryFor(const Shape& shape, bool textured) const
{
    const Shape clipped = mHasClip ? shape.clipped(mClip) : shape;
    if (clipped.deepIsEmpty())
        return nullptr;
    Geometry* g;
    if (clipped.isRectilinear()) {
        g = new Geometry(textured ? Geometry::kTextureRects : Geometry::kColorRects);
        for (const QPolygonF& p : clipped.polygons())
            g->addRect(p.boundingRect());
        if (textured)
            g->setTextureMapping(shape.transform().mapRect(shape.sourceRect()), shape.insets());
    } else {
        g = new Geometry(textured ? Geometry::kTextureShape : Geometry::kColorShape);
        g->setShape(clipped);
    }
    return g;
}

void RenderItemBuilder::appendGeometry(ShaderUsage* usage, Geometry* geometry, const QMatrix4x4& matrix)
{
    if (!geometry) {
        delete usage;
        return;
    }
    if (!matrix.isIdentity())
        usage->setMatrix(matrix);
    usage->setOpacity(usage->opacity() * mOpacity);
    usage->setBlendFunc(mBlendSource, mBlendDestination);
    auto* item = new GeometryRenderItem(usage, geometry);
    QRect local;
    for (const Geometry* g = geometry; g; g = g->next())
        local |= g->rect();
    const QRect opaque = opaqueArea(geometry);
    item->setLocalOpaque(opaque);
    item->computeRects(local, opaque);
    mItems.append(item);
}

void RenderItemBuilder::appendShape(ShaderUsage* usage, const Shape& shape, bool textured)
{
    appendGeometry(usage, geometryFor(shape, textured));
}

void RenderItemBuilder::drawColoredShape(const Shape& shape, const QColor& color)
{
    appendShape(new ColorShaderUsage(color), shape, false);
}

void RenderItemBuilder::drawColoredRect(const QRect& rect, const QColor& color)
{
    drawColoredRegion(QRegion(rect), color);
}

void RenderItemBuilder::drawColoredRegion(const QRegion& region, const QColor& color)
{
    const QRegion visible = mHasClip ? region & mClip : region;
    if (visible.isEmpty())
        return;
    auto* g = new Geometry(Geometry::kColorRects);
    g->setRegion(visible);
    appendGeometry(new ColorShaderUsage(color), g);
}

void RenderItemBuilder::drawTexturedRect(const QRect& rect, const TextureKey& key, bool blend,
                                         const TexCoordInsets& insets)
{
    drawTexturedRect(rect, key, blend, CustomShaderKey(), insets);
}

void RenderItemBuilder::drawTexturedRect(const QRect& rect, const TextureKey& key, bool blend,
                                         const CustomShaderKey& shader, const TexCoordInsets& insets)
{
    drawTexturedRect(rect, key, TextureKey(), blend, shader, insets);
}

void RenderItemBuilder::drawTexturedRect(const QRect& rect, const TextureKey& key, const TextureKey& second,
                                         bool blend, const CustomShaderKey& shader,
                                         const TexCoordInsets& insets)
{
    appendShape(new TextureShaderUsage(key, blend, shader, second), Shape(QRectF(rect), QTransform(), insets),
                true);
}

void RenderItemBuilder::drawTexturedRect(const QRect& target, const TextureKey& key, const QRect& source,
                                         bool blend)
{
    drawTexturedRect(target, key, blend, insetsOf(source, key.size()));
}

void RenderItemBuilder::drawTexturedRegion(const QRegion& region, const QRect& textureRect,
                                           const TextureKey& key, bool blend)
{
    const QRegion visible = mHasClip ? region & mClip : region;
    if (visible.isEmpty())
        return;
    auto* g = new Geometry(Geometry::kTextureRects);
    g->setRegion(visible);
    g->setTextureMapping(textureRect, TexCoordInsets());
    appendGeometry(new TextureShaderUsage(key, blend), g);
}

void RenderItemBuilder::drawTexturedShape(const Shape& shape, const TextureKey& key, const QMatrix4x4& matrix,
                                          bool blend, const CustomShaderKey& shader)
{
    appendTransformedShape(new TextureShaderUsage(key, blend, shader), shape, matrix);
}

void RenderItemBuilder::appendTransformedShape(ShaderUsage* usage, const Shape& shape,
                                               const QMatrix4x4& matrix)
{
    if (matrix.isIdentity()) {
        appendShape(usage, shape, true);
        return;
    }
    // The matrix moves the shape on the GPU: the device clip cannot cut it here.
    if (outsideClip(matrix.mapRect(shape.boundingRect()))) {
        delete usage;
        return;
    }
    auto* g = new Geometry(Geometry::kTextureShape);
    g->setShape(shape);
    appendGeometry(usage, g, matrix);
}

void RenderItemBuilder::drawMultiTexturedShape(const Shape& shape, const TextureKey& first,
                                               const TextureKey& second, float mix)
{
    appendShape(new MultiTextureShaderUsage(first, second, mix), shape, true);
}

void RenderItemBuilder::drawMaskedTexturedShape(const Shape& shape, const TextureKey& key,
                                                const TextureKey& mask, const CustomShaderKey& shader,
                                                const QMatrix4x4& matrix)
{
    auto* usage = new MaskTextureShaderUsage(key, mask);
    usage->setCustomShader(shader);
    appendTransformedShape(usage, shape, matrix);
}

void RenderItemBuilder::drawColorTexturedShape(const Shape& shape, const TextureKey& key, const QColor& color)
{
    appendShape(new ColorTextureShaderUsage(key, color), shape, true);
}

void RenderItemBuilder::drawGlyphRun(const GlyphRun& run, float x, float y, const QColor& color,
                                     const QRect& clip)
{
    QVector<QPointF> positions = run.positions();
    for (QPointF& p : positions)
        p += QPointF(x, y);
    drawGlyphRun(run, positions, color, clip);
}

void RenderItemBuilder::drawGlyphRun(const GlyphRun& run, const QVector<QPointF>& positions,
                                     const QColor& color, const QRect& clip)
{
    drawGlyphRun(run, positions, QTransform(), color, clip);
}

void RenderItemBuilder::drawGlyphRun(const GlyphRun& run, const QVector<QPointF>& positions,
                                     const QTransform& orientation, const QColor& color, const QRect& clip)
{
    QRegion region = mClip;
    if (!clip.isNull())
        region = mHasClip ? region & clip : QRegion(clip);
    const bool clipped = mHasClip || !clip.isNull();
    const QMap<unsigned int, Geometry*> pages =
        GlyphQuads::build(run, positions, orientation, clipped ? &region : nullptr);
    for (auto it = pages.constBegin(); it != pages.constEnd(); ++it) {
        if (it.value()->vertices().isEmpty()) {
            delete it.value();
            continue;
        }
        appendGeometry(new TextShaderUsage(TextureCache::instance()->glyphCachePage(it.key()), color),
                       it.value());
    }
}

void RenderItemBuilder::drawImageSlice(const QRect& target, const Shape& clip, const ImageSlice& slice,
                                       QFlags<ImageSlice::Slice> parts)
{
    if (slice.isNull() || target.isEmpty())
        return;
    const QRegion visible = visibleOf(target, clip);
    appendSlice(slice, target, parts, [&](const QRect& area, const TexCoordInsets& insets) -> Geometry* {
        const QRegion shown = visible & area;
        if (shown.isEmpty())
            return nullptr;
        auto* g = new Geometry(Geometry::kTextureRects);
        g->setRegion(shown);
        g->setTextureMapping(area, insets);
        return g;
    });
}

void RenderItemBuilder::drawImageSlice(const QRect& target, const QTransform& transform, const Shape& clip,
                                       const ImageSlice& slice, QFlags<ImageSlice::Slice> parts)
{
    if (transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0) {
        drawImageSlice(transform.mapRect(target), clip, slice, parts);
        return;
    }
    if (slice.isNull() || target.isEmpty())
        return;
    const QRegion visible = visibleOf(transform.mapRect(QRectF(target)).toAlignedRect(), clip);
    appendSlice(slice, target, parts, [&](const QRect& area, const TexCoordInsets& insets) -> Geometry* {
        const Shape shape = Shape(QRectF(area), transform, insets).clipped(visible);
        if (shape.deepIsEmpty())
            return nullptr;
        auto* g = new Geometry(Geometry::kTextureShape);
        g->setShape(shape);
        return g;
    });
}

void RenderItemBuilder::appendSlice(
    const ImageSlice& slice, const QRect& target, QFlags<ImageSlice::Slice> parts,
    const std::function<Geometry*(const QRect& area, const TexCoordInsets& insets)>& geometryOf)
{
    Geometry* head = nullptr;
    Geometry* tail = nullptr;
    for (int bit = ImageSlice::TopLeft; bit <= ImageSlice::BottomRight; bit <<= 1) {
        const auto part = ImageSlice::Slice(bit);
        const QRect area = slice.target(part, target);
        if (!parts.testFlag(part) || area.isEmpty())
            continue;
        Geometry* g = geometryOf(area, insetsOf(slice.source(part), slice.size()));
        if (!g)
            continue;
        if (tail)
            tail->setNext(g);
        else
            head = g;
        tail = g;
    }
    if (head)
        appendGeometry(new TextureShaderUsage(slice.texture(), slice.hasAlpha()), head);
}

QRegion RenderItemBuilder::visibleOf(const QRect& bounds, const Shape& clip) const
{
    QRegion visible(bounds);
    if (mHasClip)
        visible &= mClip;
    for (const QPolygonF& polygon : clip.polygons())
        visible &= QRegion(polygon.toPolygon());
    return visible;
}

void RenderItemBuilder::fillPath(const QPainterPath& path, const QColor& color)
{
    fillOutline(path, new ColorShaderUsage(color));
}

void RenderItemBuilder::fillOutline(const QPainterPath& outline, ShaderUsage* usage)
{
    QPainterPath area = outline;
    if (mHasClip) {
        QPainterPath clip;
        clip.addRegion(mClip);
        area = area.intersected(clip);
    }
    GraphicsPathProcessor processor;
    if (area.isEmpty() || !processor.process(area)) {
        delete usage;
        return;
    }
    const auto rule =
        area.fillRule() == Qt::OddEvenFill ? PathTessellator::kOddEven : PathTessellator::kWinding;
    QVector<Vertex> triangles = PathTessellator::fill(processor.polylines(), rule);
    if (triangles.isEmpty()) {
        delete usage;
        return;
    }
    const TextureKey texture = usage->textures().value(0);
    const QSize size = texture.size();
    if (!size.isEmpty()) {
        for (Vertex& v : triangles) {
            v.u = v.x / size.width();
            v.v = v.y / size.height();
        }
    }
    auto* g = new Geometry(Geometry::kTriangles);
    g->vertices() = triangles;
    g->setRect(area.boundingRect().toAlignedRect());
    appendGeometry(usage, g);
}

void RenderItemBuilder::fillOutlineAntialiased(const QPainterPath& outline, const QColor& color)
{
    appendCoverage(outline,
                   [&](const TextureKey& coverage) { return new AlphaTextureShaderUsage(coverage, color); });
}

void RenderItemBuilder::fillOutlineAntialiased(const QPainterPath& outline, const QGradient& gradient,
                                               const QTransform& gradientToDevice)
{
    appendCoverage(outline, [&](const TextureKey& coverage) {
        return new GradientShaderUsage(gradient, gradientToDevice, coverage);
    });
}

void RenderItemBuilder::fillShape(const Shape& shape, ShaderUsage* usage)
{
    appendShape(usage, shape, false);
}

void RenderItemBuilder::appendCoverage(
    const QPainterPath& outline, const std::function<ShaderUsage*(const TextureKey& coverage)>& usageFor)
{
    const QRect bounds = outline.boundingRect().toAlignedRect();
    if (bounds.isEmpty() || outsideClip(bounds))
        return;
    const CoverageMaskCache::Mask mask = CoverageMaskCache::instance()->mask(outline, bounds);
    appendShape(usageFor(mask.key), Shape(QRectF(bounds), QTransform(), mask.insets), true);
}

void RenderItemBuilder::stroke(const QVector<QVector2D>& points, const Geometry::StrokeProps& props,
                               const QColor& color, const CustomShaderKey& shader)
{
    if (points.size() < 2)
        return;
    QPainterPath line(points.first().toPointF());
    for (int i = 1; i < points.size(); ++i)
        line.lineTo(points[i].toPointF());
    QPainterPathStroker stroker;
    stroker.setWidth(props.width);
    stroker.setJoinStyle(props.join);
    stroker.setCapStyle(props.cap);
    stroker.setMiterLimit(props.miterLimit);
    if (props.antialiased && shader.isNull()) {
        fillOutlineAntialiased(stroker.createStroke(line), color);
        return;
    }
    auto* usage = new LineShaderUsage(color);
    usage->setCustomShader(shader);
    fillOutline(stroker.createStroke(line), usage);
}

void RenderItemBuilder::drawLines(const QVector<QVector<QVector2D>>& lines, float width, const QColor& color,
                                  const TextureKey& texture, bool closed, GraphicsPathProcessor* processor,
                                  const CustomShaderKey& shader)
{
    QPainterPath path;
    for (const QVector<QVector2D>& line : lines) {
        const QVector<QVector2D> points = processor ? processor->map(line) : line;
        if (points.size() < 2)
            continue;
        path.moveTo(points.first().toPointF());
        for (int i = 1; i < points.size(); ++i)
            path.lineTo(points[i].toPointF());
        if (closed)
            path.closeSubpath();
    }
    if (path.isEmpty())
        return;
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    auto* usage = new LineShaderUsage(color, texture);
    usage->setCustomShader(shader);
    fillOutline(stroker.createStroke(path), usage);
}

void RenderItemBuilder::drawLine(const QVector2D& from, const QVector2D& to, float width, const QColor& color)
{
    drawLines({{from, to}}, width, color, TextureKey(), false, nullptr);
}

void RenderItemBuilder::drawCustom(ShaderUsage* usage, Geometry* geometry, const CustomShaderKey& shader)
{
    if (!usage || !geometry) {
        delete usage;
        delete geometry;
        return;
    }
    if (!shader.isNull())
        usage->setCustomShader(shader);
    if (mHasClip && geometry->isRectMode() && usage->isIdentity())
        for (Geometry* g = geometry; g; g = g->next())
            g->setRegion(g->region() & mClip);
    appendGeometry(usage, geometry);
}

void RenderItemBuilder::drawDisplayList(const TExplicitlySharedDataPointer<DisplayList>& list,
                                        const QRect& target, const QRect& source, bool blend,
                                        const QMatrix4x4& matrix)
{
    if (!list || target.isEmpty() || source.isEmpty())
        return;
    // An optimised, opaque list that fills its source hides what lies beneath.
    const bool opaque =
        !blend && list->isOptimized() && QRegion(source).subtracted(list->coveredRegion()).isEmpty();
    appendConfined([&] {
        auto* item = new DisplayListRenderItem(list, target, source, blend);
        if (!matrix.isIdentity())
            item->shaderUsage->setMatrix(matrix);
        item->shaderUsage->setOpacity(mOpacity);
        item->computeRects(target, opaque ? target : QRect());
        return item;
    });
}

void RenderItemBuilder::drawViewportDisplayList(const TExplicitlySharedDataPointer<DisplayList>& list,
                                                const QRect& viewport, bool blend)
{
    drawDisplayList(list, viewport, QRect(QPoint(0, 0), viewport.size()), blend);
}

void RenderItemBuilder::drawWithCustomRenderer(ICustomRenderer* renderer, const QRect& target,
                                               const QRect& source, bool opaque)
{
    drawWithCustomRenderer(renderer, target, source, opaque, QMatrix4x4());
}

void RenderItemBuilder::drawWithCustomRenderer(ICustomRenderer* renderer, const QRect& target,
                                               const QRect& source, bool opaque, const QMatrix4x4& matrix)
{
    if (!renderer)
        return;
    appendConfined([&] {
        auto* item = new CommandRenderItem(renderer, target, source, matrix);
        item->computeRects(target, opaque ? target : QRect(), matrix);
        return item;
    });
}

void RenderItemBuilder::appendConfined(const std::function<RenderItem*()>& make)
{
    RenderItem* item = make();
    if (!mHasClip) {
        mItems.append(item);
        return;
    }
    const QRegion confined = mClip & item->bounds;
    if (confined.isEmpty()) {
        delete item;
        return;
    }
    for (const QRect& rect : confined) {
        if (!item)
            item = make();
        item->bounds &= rect;
        item->opaqueRect &= rect;
        mItems.append(item);
        item = nullptr;
    }
}

} // namespace gfx
