#pragma once

#include "CustomShaderKey.h"
#include "Geometry.h"
#include "ImageSlice.h"
#include "OrbisUIFrameworkExport.h"
#include "Shape.h"
#include "TexCoordInsets.h"
#include "TextureKey.h"

#include <QColor>
#include <QGradient>
#include <QMatrix4x4>
#include <QPainterPath>
#include <QRegion>
#include <QVector2D>
#include <QVector>
#include <TExplicitlySharedDataPointer.h>
#include <functional>
#include <qopengl.h>

namespace gfx {

class DisplayList;
class GraphicsPathProcessor;
class GlyphRun;
class ICustomRenderer;
class RenderItem;
class ShaderUsage;

/// Appends render items, one per call, clipped to the builder's clip region. The
/// current opacity and blend factors go onto every item appended after they are
/// set. Items are owned until taken (or handed to a display list).
class ORBIS_UI_EXPORT RenderItemBuilder
{
public:
    RenderItemBuilder();
    explicit RenderItemBuilder(const QRegion& clip);
    ~RenderItemBuilder();
    RenderItemBuilder(const RenderItemBuilder&) = delete;
    RenderItemBuilder& operator=(const RenderItemBuilder&) = delete;

    void reserve(int count) { mItems.reserve(count); }
    const QVector<RenderItem*>& items() const { return mItems; }
    QVector<RenderItem*> takeItems();
    TExplicitlySharedDataPointer<DisplayList> createDisplayList(bool allowSubstitution);

    float opacity() const { return mOpacity; }
    void setOpacity(float opacity) { mOpacity = opacity; }
    void setBlendFunc(GLenum source, GLenum destination);
    bool hasClip() const { return mHasClip; }
    /// Replaces the clip for the items appended from now on; clearClip() lifts it.
    void setClip(const QRegion& clip)
    {
        mClip = clip;
        mHasClip = true;
    }
    void clearClip()
    {
        mClip = QRegion();
        mHasClip = false;
    }
    const QRegion& clip() const { return mClip; }

    void drawColoredShape(const Shape& shape, const QColor& color);
    void drawColoredRect(const QRect& rect, const QColor& color);
    void drawColoredRegion(const QRegion& region, const QColor& color);

    void drawTexturedRect(const QRect& rect, const TextureKey& key, bool blend,
                          const TexCoordInsets& insets = TexCoordInsets());
    void drawTexturedRect(const QRect& rect, const TextureKey& key, bool blend, const CustomShaderKey& shader,
                          const TexCoordInsets& insets = TexCoordInsets());
    void drawTexturedRect(const QRect& rect, const TextureKey& key, const TextureKey& second, bool blend,
                          const CustomShaderKey& shader, const TexCoordInsets& insets = TexCoordInsets());
    /// `source` in texture pixels.
    void drawTexturedRect(const QRect& target, const TextureKey& key, const QRect& source, bool blend);
    /// The texture spans `textureRect`; only the region's part of it is drawn.
    void drawTexturedRegion(const QRegion& region, const QRect& textureRect, const TextureKey& key,
                            bool blend);
    void drawTexturedShape(const Shape& shape, const TextureKey& key, const QMatrix4x4& matrix, bool blend,
                           const CustomShaderKey& shader = CustomShaderKey());
    void drawMultiTexturedShape(const Shape& shape, const TextureKey& first, const TextureKey& second,
                                float mix);
    /// `matrix` moves the shape on the GPU, as for drawTexturedShape.
    void drawMaskedTexturedShape(const Shape& shape, const TextureKey& key, const TextureKey& mask,
                                 const CustomShaderKey& shader, const QMatrix4x4& matrix = QMatrix4x4());
    void drawColorTexturedShape(const Shape& shape, const TextureKey& key, const QColor& color);

    /// Glyphs on the baseline at (`x`, `y`) in device pixels; a non-null `clip`
    /// cuts them besides the builder's clip. One item per glyph atlas page.
    void drawGlyphRun(const GlyphRun& run, float x, float y, const QColor& color,
                      const QRect& clip = QRect());
    /// Each glyph at its own baseline position (device pixels).
    void drawGlyphRun(const GlyphRun& run, const QVector<QPointF>& positions, const QColor& color,
                      const QRect& clip = QRect());
    /// ... with each glyph turned by `orientation` about its position (see GlyphQuads).
    void drawGlyphRun(const GlyphRun& run, const QVector<QPointF>& positions, const QTransform& orientation,
                      const QColor& color, const QRect& clip = QRect());

    /// The chosen parts of a nine-patch in `target` (device pixels), cut to
    /// `clip` as well when the shape is not empty.
    void drawImageSlice(const QRect& target, const Shape& clip, const ImageSlice& slice,
                        QFlags<ImageSlice::Slice> parts);
    /// ... with `target` and its parts in local coordinates taken through
    /// `transform`, which may turn, mirror or shear them.
    void drawImageSlice(const QRect& target, const QTransform& transform, const Shape& clip,
                        const ImageSlice& slice, QFlags<ImageSlice::Slice> parts);

    /// Fills a path in device coordinates by its fill rule.
    void fillPath(const QPainterPath& path, const QColor& color);
    /// A polyline widened by `props`, in device coordinates.
    void stroke(const QVector<QVector2D>& points, const Geometry::StrokeProps& props, const QColor& color,
                const CustomShaderKey& shader = CustomShaderKey());
    /// Polylines `width` wide with flat ends, through `processor`'s transform when
    /// one is given, closed back to their first point when `closed`. A texture
    /// repeats over the screen under them, modulated by the colour.
    void drawLines(const QVector<QVector<QVector2D>>& lines, float width, const QColor& color,
                   const TextureKey& texture, bool closed, GraphicsPathProcessor* processor,
                   const CustomShaderKey& shader = CustomShaderKey());
    void drawLine(const QVector2D& from, const QVector2D& to, float width, const QColor& color);
    /// The area that `outline` (device coordinates) encloses, by its fill rule,
    /// drawn with `usage` (owned from here).
    void fillOutline(const QPainterPath& outline, ShaderUsage* usage);

    /// The same, antialiased: the area's coverage, rasterised into an alpha texture,
    /// tints `color`.
    void fillOutlineAntialiased(const QPainterPath& outline, const QColor& color);
    /// ... or shades a gradient, whose coordinates `gradientToDevice` maps.
    void fillOutlineAntialiased(const QPainterPath& outline, const QGradient& gradient,
                                const QTransform& gradientToDevice);
    /// A shape filled by a usage that shades by position (gradients), owned from here.
    void fillShape(const Shape& shape, ShaderUsage* usage);

    /// Takes ownership of both.
    void drawCustom(ShaderUsage* usage, Geometry* geometry, const CustomShaderKey& shader);

    /// Nested lists and custom renderers draw wherever their bounds reach: the clip
    /// confines them through their bounds (the scissor box), one item for each of
    /// its rectangles.
    void drawDisplayList(const TExplicitlySharedDataPointer<DisplayList>& list, const QRect& target,
                         const QRect& source, bool blend, const QMatrix4x4& matrix = QMatrix4x4());
    /// The list's (0, 0)-based content drawn into `viewport`, unscaled.
    void drawViewportDisplayList(const TExplicitlySharedDataPointer<DisplayList>& list, const QRect& viewport,
                                 bool blend);
    /// `opaque` promises that the renderer covers `target` with opaque pixels.
    void drawWithCustomRenderer(ICustomRenderer* renderer, const QRect& target, const QRect& source,
                                bool opaque);
    /// ... with `target` in item coordinates that `matrix` takes to the surface; the
    /// renderer finds `matrix` in the render state's matrix.
    void drawWithCustomRenderer(ICustomRenderer* renderer, const QRect& target, const QRect& source,
                                bool opaque, const QMatrix4x4& matrix);

private:
    Geometry* geometryFor(const Shape& shape, bool textured) const;
    QRegion visibleOf(const QRect& bounds, const Shape& clip) const;
    /// One item for the chosen parts of a nine-patch, each part's geometry made
    /// from its target area and texture insets (nullptr where nothing shows).
    void
    appendSlice(const ImageSlice& slice, const QRect& target, QFlags<ImageSlice::Slice> parts,
                const std::function<Geometry*(const QRect& area, const TexCoordInsets& insets)>& geometryOf);
    void appendGeometry(ShaderUsage* usage, Geometry* geometry, const QMatrix4x4& matrix = QMatrix4x4());
    void appendShape(ShaderUsage* usage, const Shape& shape, bool textured);
    void appendTransformedShape(ShaderUsage* usage, const Shape& shape, const QMatrix4x4& matrix);
    bool outsideClip(const QRect& rect) const;
    /// Appends the item that `make` builds, confined to each rectangle of the clip
    /// that its bounds meet; `make` runs again for every further rectangle.
    void appendConfined(const std::function<RenderItem*()>& make);
    void appendCoverage(const QPainterPath& outline,
                        const std::function<ShaderUsage*(const TextureKey& coverage)>& usageFor);

    QVector<RenderItem*> mItems;
    QRegion mClip;
    bool mHasClip = false;
    float mOpacity = 1.0f;
    GLenum mBlendSource = GL_ONE;
    GLenum mBlendDestination = GL_ONE_MINUS_SRC_ALPHA;
};

} // namespace gfx
