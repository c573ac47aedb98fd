#pragma once

#include "OrbisUIFrameworkExport.h"
#include "RenderItemBuilder.h"
#include "Shape.h"
#include "TexCoordInsets.h"

#include <QBrush>
#include <QFlags>
#include <QMatrix4x4>
#include <QPaintEngine>
#include <QPen>
#include <QRegion>
#include <QTransform>
#include <TExplicitlySharedDataPointer.h>

class QPainter;

namespace gfx {

class DisplayList;
class GlyphRun;
class ICustomRenderer;

/// A QPaintEngine that turns painter calls into render items. Rectangles under a
/// translate or positive scale are placed on the processor; any other transform
/// is carried as a matrix too. Colours are premultiplied when drawn.
class ORBIS_UI_EXPORT GraphicsPaintEngine : public QPaintEngine
{
public:
    enum OptionFlag
    {
        NoOptions = 0x0,
        /// Lists made from this engine may fold solid fills under large translucent
        /// textures into their shader.
        AllowSubstitution = 0x1,
    };
    Q_DECLARE_FLAGS(OptionFlags, OptionFlag)

    /// Where the clip is null, nothing is clipped beyond the painter's own clip.
    explicit GraphicsPaintEngine(const QRegion& clip = QRegion(), OptionFlags flags = NoOptions);
    ~GraphicsPaintEngine() override;

    bool begin(QPaintDevice* device) override;
    bool end() override;
    void updateState(const QPaintEngineState& state) override;
    void drawRects(const QRect* rects, int count) override;
    void drawRects(const QRectF* rects, int count) override;
    void drawLines(const QLine* lines, int count) override;
    void drawLines(const QLineF* lines, int count) override;
    void drawEllipse(const QRectF& rect) override;
    void drawEllipse(const QRect& rect) override;
    /// Fills with the brush and strokes with the pen; solid pens only.
    void drawPath(const QPainterPath& path) override;
    void drawPoints(const QPoint* points, int count) override;
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override;
    void drawPolygon(const QPoint* points, int count, PolygonDrawMode mode) override;
    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) override;
    void drawTextItem(const QPointF& origin, const QTextItem& item) override;
    /// Stretches the whole pixmap over `target`: the offset is ignored and nothing tiles.
    void drawTiledPixmap(const QRectF& target, const QPixmap& pixmap, const QPointF& offset) override;
    void drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                   Qt::ImageConversionFlags flags = Qt::AutoColor) override;
    Type type() const override { return kType; }

    void drawRect(const QRect& rect);
    /// Text laid out without Qt's text engine: the face's own advances and kerning,
    /// `letterSpacing` pixels between glyphs, on the baseline at `origin`.
    void drawTextDirect(const QPointF& origin, const QFont& font, const QString& text, float letterSpacing,
                        const QColor& color);
    /// A run laid out beforehand (a label keeps its runs between frames), its pen
    /// positions taken from `origin` on the baseline.
    void drawGlyphRun(const QPointF& origin, const GlyphRun& run, const QColor& color);
    /// Rectangles under translate and scale only: other transforms place the
    /// slice in the rectangle's bounds.
    void drawImageSlice(const QRect& target, const ImageSlice& slice, QFlags<ImageSlice::Slice> parts);
    void drawDisplayList(const TExplicitlySharedDataPointer<DisplayList>& list, const QRect& target,
                         const QRect& source, bool blend);
    /// Through the engine behind `painter`; false when it is not this kind of engine.
    static bool drawDisplayList(QPainter& painter, const TExplicitlySharedDataPointer<DisplayList>& list,
                                const QRect& target, const QRect& source, bool blend);
    void drawWithCustomRenderer(ICustomRenderer* renderer, const QRect& target, const QRect& source,
                                bool opaque, const QMatrix4x4& matrix = QMatrix4x4());

    /// A rectangle cut to the clip and the texture insets that go with it.
    struct Clipped
    {
        QRectF rect;
        TexCoordInsets insets;
    };
    /// `rect` (device pixels) cut to the clip, with the insets moved in by as much.
    Clipped getClipped(const QRectF& rect, const TexCoordInsets& insets) const;

    /// The engine behind `painter`, or nullptr. Direct calls after this take the
    /// painter's current state.
    static GraphicsPaintEngine* of(QPainter& painter);

    RenderItemBuilder& builder() { return mBuilder; }
    /// Hands the items painted so far to a new display list.
    TExplicitlySharedDataPointer<DisplayList> createDisplayList();

    OptionFlags options() const { return mOptions; }
    qreal opacity() const { return mOpacity; }
    const QTransform& transform() const { return mTransform; }
    const QMatrix4x4& matrix() const { return mMatrix; }
    const Shape& clip() const { return mClip; }
    bool hasClip() const { return mHasPainterClip && mClipEnabled; }

    static constexpr Type kType = Type(User + 7);

    /// Hands the painter's current state to the engine, for calls that reach the
    /// engine or its builder without passing through the painter.
    void syncPainterState();

private:
    void setTransform(const QTransform& transform);
    void setCompositionMode(QPainter::CompositionMode mode);
    void updateClip(const QPaintEngineState& state);
    void applyClip();
    void appendGlyphs(const QPointF& origin, const GlyphRun& run, const QColor& color);
    void drawTexture(const QRectF& target, const QSize& size, const TextureKey& key, const QRectF& source,
                     bool blend);
    /// Fills a device-space outline with a brush, a colour or a gradient; `bounds`
    /// (logical) are the object's, for gradients relative to them.
    void fillOutline(const QPainterPath& outline, const QBrush& brush, const QRectF& bounds,
                     bool antialiased);
    /// A gradient brush's coordinates to the device's, for an object of logical
    /// `bounds`: the brush's own transform, then the brush origin, then the painter's.
    QTransform gradientToDevice(const QBrush& brush, const QRectF& bounds) const;

    RenderItemBuilder mBuilder;
    qreal mOpacity = 1.0;
    QTransform mTransform;
    QMatrix4x4 mMatrix;
    GLenum mBlendSource = GL_ONE;
    GLenum mBlendDestination = GL_ONE_MINUS_SRC_ALPHA;
    QBrush mBrush;
    QPointF mBrushOrigin;
    QPen mPen;
    Shape mClip;
    QRegion mClipRegion;
    bool mHasPainterClip = false;
    bool mClipEnabled = false;
    QRegion mBaseClip;
    bool mHasBaseClip;
    OptionFlags mOptions;
    QPainter::RenderHints mHints;
    /// The painter on this engine, for handing its state over before direct calls.
    QPainter* mPainter = nullptr;
};

} // namespace gfx

Q_DECLARE_OPERATORS_FOR_FLAGS(gfx::GraphicsPaintEngine::OptionFlags)
