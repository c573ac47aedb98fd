#include "GraphicsPaintEngine.h"

#include "DisplayList.h"
#include "GlyphRun.h"
#include "GradientShaderUsage.h"
#include "LineShaderUsage.h"
#include "TextureCache.h"

#include <Logger.h>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/GraphicsPaintEngine";

struct BlendFactors
{
    QPainter::CompositionMode mode;
    GLenum source;
    GLenum destination;
};

// Factors for premultiplied colours.
const BlendFactors kCompositionModes[] = {
    {QPainter::CompositionMode_SourceOver, GL_ONE, GL_ONE_MINUS_SRC_ALPHA},
    {QPainter::CompositionMode_DestinationOver, GL_ONE_MINUS_DST_ALPHA, GL_ONE},
    {QPainter::CompositionMode_Clear, GL_ZERO, GL_ZERO},
    {QPainter::CompositionMode_Source, GL_ONE, GL_ZERO},
    {QPainter::CompositionMode_Destination, GL_ZERO, GL_ONE},
    {QPainter::CompositionMode_SourceIn, GL_DST_ALPHA, GL_ZERO},
    {QPainter::CompositionMode_DestinationIn, GL_ZERO, GL_SRC_ALPHA},
    {QPainter::CompositionMode_SourceOut, GL_ONE_MINUS_DST_ALPHA, GL_ZERO},
    {QPainter::CompositionMode_DestinationOut, GL_ZERO, GL_ONE_MINUS_SRC_ALPHA},
    {QPainter::CompositionMode_SourceAtop, GL_DST_ALPHA, GL_ONE_MINUS_SRC_ALPHA},
    {QPainter::CompositionMode_DestinationAtop, GL_ONE_MINUS_DST_ALPHA, GL_SRC_ALPHA},
    {QPainter::CompositionMode_Xor, GL_ONE_MINUS_DST_ALPHA, GL_ONE_MINUS_SRC_ALPHA},
    {QPainter::CompositionMode_Plus, GL_ONE, GL_ONE},
};

void unsupported(const char* signature)
{
    ORBIS_FAIL(QStringLiteral("Unsupported %%1\n").arg(QLatin1String(signature)));
}

// Device pixels inside a shape's polygons.
QRegion regionOf(const Shape& shape)
{
    QRegion region;
    for (const QPolygonF& polygon : shape.polygons()) {
        if (shape.isRectilinear())
            region += polygon.boundingRect().toAlignedRect();
        else
            region += QRegion(polygon.toPolygon());
    }
    return region;
}

TexCoordInsets insetsOf(const QRectF& source, const QSize& size)
{
    if (source.isNull() || size.isEmpty())
        return TexCoordInsets();
    const qreal w = size.width();
    const qreal h = size.height();
    return {float(source.left() / w), float(source.top() / h), float((w - source.right()) / w),
            float((h - source.bottom()) / h)};
}
} // namespace

GraphicsPaintEngine::GraphicsPaintEngine(const QRegion& clip, OptionFlags flags)
    : QPaintEngine(AllFeatures), mBuilder(), mBaseClip(clip), mHasBaseClip(!clip.isNull()), mOptions(flags)
{
    applyClip();
}

GraphicsPaintEngine::~GraphicsPaintEngine() = default;

bool GraphicsPaintEngine::begin(QPaintDevice*)
{
    return true;
}

bool GraphicsPaintEngine::end()
{
    mPainter = nullptr;
    return true;
}

GraphicsPaintEngine* GraphicsPaintEngine::of(QPainter& painter)
{
    QPaintEngine* engine = painter.paintEngine();
    if (!engine || engine->type() != kType)
        return nullptr;
    auto* ours = static_cast<GraphicsPaintEngine*>(engine);
    ours->mPainter = &painter;
    return ours;
}

TExplicitlySharedDataPointer<DisplayList> GraphicsPaintEngine::createDisplayList()
{
    return mBuilder.createDisplayList(mOptions.testFlag(AllowSubstitution));
}

void GraphicsPaintEngine::updateState(const QPaintEngineState& state)
{
    const DirtyFlags dirty = state.state();
    if (dirty & DirtyTransform)
        setTransform(state.transform());
    if (dirty & DirtyOpacity) {
        mOpacity = state.opacity();
        mBuilder.setOpacity(float(mOpacity));
    }
    if (dirty & DirtyBrush)
        mBrush = state.brush();
    if (dirty & DirtyBrushOrigin)
        mBrushOrigin = state.brushOrigin();
    if (dirty & DirtyPen)
        mPen = state.pen();
    if (dirty & DirtyCompositionMode)
        setCompositionMode(state.compositionMode());
    if (dirty & (DirtyClipRegion | DirtyClipPath | DirtyClipEnabled))
        updateClip(state);
    if (dirty & DirtyHints)
        mHints = state.renderHints();
}

void GraphicsPaintEngine::setTransform(const QTransform& transform)
{
    mTransform = transform;
    // Rectangles stay rectangles under these: they are mapped on the processor.
    if (transform.type() < QTransform::TxRotate && transform.m11() > 0 && transform.m22() > 0)
        mMatrix = QMatrix4x4();
    else
        mMatrix = QMatrix4x4(transform);
}

void GraphicsPaintEngine::setCompositionMode(QPainter::CompositionMode mode)
{
    for (const BlendFactors& factors : kCompositionModes) {
        if (factors.mode == mode) {
            mBlendSource = factors.source;
            mBlendDestination = factors.destination;
            mBuilder.setBlendFunc(mBlendSource, mBlendDestination);
            return;
        }
    }
    ORBIS_WARN(QStringLiteral("Unsupported composition mode"));
}

void GraphicsPaintEngine::updateClip(const QPaintEngineState& state)
{
    const DirtyFlags dirty = state.state();
    if (dirty & DirtyClipEnabled)
        mClipEnabled = state.isClipEnabled();
    if (dirty & (DirtyClipRegion | DirtyClipPath)) {
        const Qt::ClipOperation operation = state.clipOperation();
        if (operation == Qt::NoClip) {
            mHasPainterClip = false;
            mClip = Shape();
            mClipRegion = QRegion();
        } else {
            QRegion region;
            if (dirty & DirtyClipRegion) {
                mClip = Shape(state.clipRegion(), mTransform);
                region = regionOf(mClip);
            } else {
                for (const QPolygonF& polygon : mTransform.map(state.clipPath()).toFillPolygons())
                    region += QRegion(polygon.toPolygon(), state.clipPath().fillRule());
            }
            if (operation == Qt::IntersectClip && mHasPainterClip)
                region &= mClipRegion;
            if (!(dirty & DirtyClipRegion) || operation == Qt::IntersectClip)
                mClip = Shape(region);
            mClipRegion = region;
            mHasPainterClip = true;
            mClipEnabled = true;
        }
    }
    applyClip();
}

void GraphicsPaintEngine::applyClip()
{
    if (hasClip())
        mBuilder.setClip(mHasBaseClip ? mClipRegion & mBaseClip : mClipRegion);
    else if (mHasBaseClip)
        mBuilder.setClip(mBaseClip);
    else
        mBuilder.clearClip();
}

void GraphicsPaintEngine::syncPainterState()
{
    // A painter hands its state over lazily, at its next own draw call; calls that
    // reach the engine directly take it first. The engine's own state pointer cannot
    // be trusted for that: after restore() it may still name the state the painter
    // popped. An empty rectangle through the painter (known from of()) hands over
    // the current state.
    if (!isActive())
        return;
    if (mPainter && mPainter->isActive()) {
        static const QRectF kNothing;
        mPainter->drawRects(&kNothing, 1);
    } else if (state) {
        syncState();
    }
}

void GraphicsPaintEngine::drawRects(const QRect* rects, int count)
{
    QVector<QRectF> converted(count);
    for (int i = 0; i < count; ++i)
        converted[i] = QRectF(rects[i]);
    drawRects(converted.constData(), count);
}

void GraphicsPaintEngine::drawRects(const QRectF* rects, int count)
{
    for (int i = 0; i < count; ++i)
        drawRect(rects[i].toRect());
}

void GraphicsPaintEngine::drawRect(const QRect& rect)
{
    const Qt::BrushStyle style = mBrush.style();
    if (style == Qt::NoBrush || rect.isEmpty())
        return;
    if (style == Qt::TexturePattern) {
        const QPixmap pattern = mBrush.texture();
        if (pattern.isNull())
            return;
        // The pattern repeats from the brush origin, as the raster engine lays it;
        // one tile per repeat, since repeating textures of any size are not
        // guaranteed on GL ES 2.
        const QSize size = pattern.size();
        const TextureKey key = TextureCache::instance()->addOrLookup(pattern);
        const QPoint origin = mBrushOrigin.toPoint();
        const int firstX =
            origin.x() + int(std::floor(double(rect.left() - origin.x()) / size.width())) * size.width();
        const int firstY =
            origin.y() + int(std::floor(double(rect.top() - origin.y()) / size.height())) * size.height();
        for (int y = firstY; y <= rect.bottom(); y += size.height()) {
            for (int x = firstX; x <= rect.right(); x += size.width()) {
                const QRect tile = QRect(QPoint(x, y), size) & rect;
                drawTexture(QRectF(tile), size, key, QRectF(tile.translated(-x, -y)),
                            pattern.hasAlphaChannel());
            }
        }
        return;
    }
    if (GradientShaderUsage::isGradient(mBrush)) {
        mBuilder.fillShape(
            Shape(QRectF(rect), mTransform),
            new GradientShaderUsage(*mBrush.gradient(), gradientToDevice(mBrush, QRectF(rect))));
        return;
    }
    mBuilder.drawColoredShape(Shape(QRectF(rect), mTransform), mBrush.color());
}

QTransform GraphicsPaintEngine::gradientToDevice(const QBrush& brush, const QRectF& bounds) const
{
    QTransform toLogical = brush.transform();
    // Relative to the object's bounds, its brush transform applies there (object
    // mode) or after (object bounding mode). Stretching to the device reaches the
    // engine as a logical gradient under a painter scaled to the device.
    const QTransform unitToBounds(bounds.width(), 0, 0, bounds.height(), bounds.x(), bounds.y());
    switch (brush.gradient()->coordinateMode()) {
    case QGradient::ObjectMode:
        toLogical = brush.transform() * unitToBounds;
        break;
    case QGradient::ObjectBoundingMode:
        toLogical = unitToBounds * brush.transform();
        break;
    default:
        break;
    }
    return toLogical * QTransform::fromTranslate(mBrushOrigin.x(), mBrushOrigin.y()) * mTransform;
}

void GraphicsPaintEngine::fillOutline(const QPainterPath& outline, const QBrush& brush, const QRectF& bounds,
                                      bool antialiased)
{
    if (GradientShaderUsage::isGradient(brush)) {
        const QTransform toDevice = gradientToDevice(brush, bounds);
        if (antialiased)
            mBuilder.fillOutlineAntialiased(outline, *brush.gradient(), toDevice);
        else
            mBuilder.fillOutline(outline, new GradientShaderUsage(*brush.gradient(), toDevice));
    } else if (antialiased) {
        mBuilder.fillOutlineAntialiased(outline, brush.color());
    } else {
        mBuilder.fillOutline(outline, new LineShaderUsage(brush.color()));
    }
}

void GraphicsPaintEngine::drawLines(const QLine*, int)
{
    unsupported(Q_FUNC_INFO);
}

void GraphicsPaintEngine::drawLines(const QLineF*, int)
{
    unsupported(Q_FUNC_INFO);
}

void GraphicsPaintEngine::drawEllipse(const QRectF&)
{
    unsupported(Q_FUNC_INFO);
}

void GraphicsPaintEngine::drawEllipse(const QRect&)
{
    unsupported(Q_FUNC_INFO);
}

void GraphicsPaintEngine::drawPath(const QPainterPath& path)
{
    if (path.isEmpty())
        return;
    const bool antialiased = mHints.testFlag(QPainter::Antialiasing);
    if (mBrush.style() != Qt::NoBrush) {
        if (antialiased || GradientShaderUsage::isGradient(mBrush))
            fillOutline(mTransform.map(path), mBrush, path.controlPointRect(), antialiased);
        else
            mBuilder.fillPath(mTransform.map(path), mBrush.color());
    }
    switch (mPen.style()) {
    case Qt::NoPen:
        return;
    case Qt::SolidLine: {
        // Widened before the transform, so that the pen scales with the path.
        QPainterPathStroker stroker;
        stroker.setWidth(mPen.widthF() > 0 ? mPen.widthF() : 1);
        stroker.setJoinStyle(mPen.joinStyle());
        stroker.setCapStyle(mPen.capStyle());
        stroker.setMiterLimit(mPen.miterLimit());
        fillOutline(mTransform.map(stroker.createStroke(path)), mPen.brush(), path.controlPointRect(),
                    antialiased);
        return;
    }
    default:
        ORBIS_FAIL(QStringLiteral("Unsupported pen style: %1").arg(int(mPen.style())));
    }
}

void GraphicsPaintEngine::drawPoints(const QPoint*, int) {}

void GraphicsPaintEngine::drawPolygon(const QPointF*, int, PolygonDrawMode)
{
    unsupported(Q_FUNC_INFO);
}

void GraphicsPaintEngine::drawPolygon(const QPoint*, int, PolygonDrawMode)
{
    unsupported(Q_FUNC_INFO);
}

void GraphicsPaintEngine::drawTexture(const QRectF& target, const QSize& size, const TextureKey& key,
                                      const QRectF& source, bool blend)
{
    if (target.isEmpty() || key.isNull())
        return;
    mBuilder.drawTexturedShape(Shape(target, mTransform, insetsOf(source, size)), key, QMatrix4x4(), blend);
}

void GraphicsPaintEngine::drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source)
{
    if (pixmap.isNull())
        return;
    drawTexture(target, pixmap.size(), TextureCache::instance()->addOrLookup(pixmap), source,
                pixmap.hasAlphaChannel());
}

void GraphicsPaintEngine::drawTiledPixmap(const QRectF& target, const QPixmap& pixmap, const QPointF&)
{
    drawPixmap(target, pixmap, QRectF(0, 0, pixmap.width(), pixmap.height()));
}

void GraphicsPaintEngine::drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                                    Qt::ImageConversionFlags)
{
    if (image.isNull())
        return;
    drawTexture(target, image.size(), TextureCache::instance()->addOrLookup(image), source,
                image.hasAlphaChannel());
}

void GraphicsPaintEngine::drawTextItem(const QPointF& origin, const QTextItem& item)
{
    for (const GlyphRun& run : GlyphRun::fromTextItem(item, paintDevice()))
        appendGlyphs(origin, run, mPen.color());
}

void GraphicsPaintEngine::drawTextDirect(const QPointF& origin, const QFont& font, const QString& text,
                                         float letterSpacing, const QColor& color)
{
    syncPainterState();
    appendGlyphs(origin, GlyphRun::fromText(font, text, letterSpacing), color);
}

void GraphicsPaintEngine::drawGlyphRun(const QPointF& origin, const GlyphRun& run, const QColor& color)
{
    syncPainterState();
    appendGlyphs(origin, run, color);
}

void GraphicsPaintEngine::appendGlyphs(const QPointF& origin, const GlyphRun& run, const QColor& color)
{
    if (run.isEmpty())
        return;
    QVector<QPointF> positions = run.positions();
    for (QPointF& p : positions)
        p = mTransform.map(origin + p);
    // Glyphs are rasterised at the size they appear. Under a translation or a
    // scale they stand upright on whole pixels; any other transform turns (or
    // mirrors, or shears) each glyph's bitmap with it.
    const bool upright =
        mTransform.type() <= QTransform::TxScale && mTransform.m11() > 0 && mTransform.m22() > 0;
    const qreal scale = upright ? mTransform.m22() : std::sqrt(qAbs(mTransform.determinant()));
    if (scale <= 0)
        return;
    const GlyphRun sized = qFuzzyCompare(scale, 1.0) ? run
                                                     : GlyphRun(run.face(), qRound(run.pixelSize() * scale),
                                                                run.glyphs(), run.positions());
    if (upright) {
        mBuilder.drawGlyphRun(sized, positions, color);
        return;
    }
    const QTransform orientation(mTransform.m11() / scale, mTransform.m12() / scale, mTransform.m21() / scale,
                                 mTransform.m22() / scale, 0, 0);
    mBuilder.drawGlyphRun(sized, positions, orientation, color);
}

void GraphicsPaintEngine::drawImageSlice(const QRect& target, const ImageSlice& slice,
                                         QFlags<ImageSlice::Slice> parts)
{
    syncPainterState();
    mBuilder.drawImageSlice(target, mTransform, hasClip() ? mClip : Shape(), slice, parts);
}

void GraphicsPaintEngine::drawDisplayList(const TExplicitlySharedDataPointer<DisplayList>& list,
                                          const QRect& target, const QRect& source, bool blend)
{
    syncPainterState();
    mBuilder.drawDisplayList(list, target, source, blend, QMatrix4x4(mTransform));
}

bool GraphicsPaintEngine::drawDisplayList(QPainter& painter,
                                          const TExplicitlySharedDataPointer<DisplayList>& list,
                                          const QRect& target, const QRect& source, bool blend)
{
    GraphicsPaintEngine* engine = of(painter);
    if (!engine)
        return false;
    engine->drawDisplayList(list, target, source, blend);
    return true;
}

void GraphicsPaintEngine::drawWithCustomRenderer(ICustomRenderer* renderer, const QRect& target,
                                                 const QRect& source, bool opaque, const QMatrix4x4& matrix)
{
    syncPainterState();
    const QTransform full = matrix.toTransform() * mTransform;
    if (full.type() <= QTransform::TxScale && full.m11() > 0 && full.m22() > 0 && matrix.isAffine()) {
        mBuilder.drawWithCustomRenderer(renderer, full.mapRect(target), source, opaque);
        return;
    }
    // Turned, mirrored or in perspective: the renderer draws `target` through the
    // whole matrix itself.
    mBuilder.drawWithCustomRenderer(renderer, target, source, opaque, QMatrix4x4(mTransform) * matrix);
}

GraphicsPaintEngine::Clipped GraphicsPaintEngine::getClipped(const QRectF& rect,
                                                             const TexCoordInsets& insets) const
{
    if (!mBuilder.hasClip() || rect.isEmpty())
        return {rect, insets};
    const QRectF clipped = rect & QRectF(mBuilder.clip().boundingRect());
    if (clipped.isEmpty())
        return {QRectF(), insets};
    // The insets share the texture's span between the rectangle's edges.
    const float spanX = 1 - insets.left - insets.right;
    const float spanY = 1 - insets.top - insets.bottom;
    TexCoordInsets moved = insets;
    moved.left += float((clipped.left() - rect.left()) / rect.width()) * spanX;
    moved.right += float((rect.right() - clipped.right()) / rect.width()) * spanX;
    moved.top += float((clipped.top() - rect.top()) / rect.height()) * spanY;
    moved.bottom += float((rect.bottom() - clipped.bottom()) / rect.height()) * spanY;
    return {clipped, moved};
}

} // namespace gfx
