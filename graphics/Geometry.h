#pragma once

#include "OrbisUIFrameworkExport.h"
#include "Shape.h"
#include "TexCoordInsets.h"
#include "Vertex.h"

#include <QColor>
#include <QRect>
#include <QRegion>
#include <QVector>
#include <memory>
#include <qopengl.h>

namespace gfx {

/// What one draw covers, in item coordinates. Geometries of one item form a chain
/// through `next` and are drawn with the same shader usage.
///
/// Modes below 2 are rectangles (a region, plus rectangles with fractional edges),
/// which the optimiser may cut and merge; shape modes hold convex polygons; the
/// vertex modes carry their own vertices; 5, 6 and 7 are never culled.
class ORBIS_UI_EXPORT Geometry
{
public:
    enum Mode
    {
        kColorRects = 0,
        kTextureRects = 1,
        kColorShape = 2,
        kTextureShape = 3,
        kIndexedTriangles = 4,
        kTriangles = 5,
        kTriangleStrip = 6,
        kLineStrip = 7,
    };

    /// How a line is widened into an area.
    struct StrokeProps
    {
        float width = 1;
        Qt::PenJoinStyle join = Qt::MiterJoin;
        Qt::PenCapStyle cap = Qt::FlatCap;
        float miterLimit = 2;
        /// Edges get their coverage from an alpha texture instead of whole pixels.
        bool antialiased = false;
    };

    explicit Geometry(Mode mode);
    ~Geometry();
    Geometry(const Geometry&) = delete;
    Geometry& operator=(const Geometry&) = delete;

    Mode mode() const { return mMode; }
    bool isRectMode() const { return mMode < 2; }
    bool isTextured() const { return mMode == kTextureRects || mMode == kTextureShape; }

    /// The bounding rectangle; grows when geometries are merged behind it.
    const QRect& rect() const { return mRect; }
    void setRect(const QRect& rect) { mRect = rect; }

    /// Rect modes: whole-pixel rectangles and those with fractional edges.
    const QRegion& region() const { return mRegion; }
    void setRegion(const QRegion& region);
    const QVector<QRectF>& fractionalRects() const { return mFractionalRects; }
    void addRect(const QRectF& rect);
    /// Texture rect modes: `target` (item coordinates) shows the texture inside `insets`.
    void setTextureMapping(const QRectF& target, const TexCoordInsets& insets);

    /// Shape modes.
    const Shape* shape() const { return mShape.get(); }
    void setShape(const Shape& shape);

    /// Vertex modes.
    QVector<Vertex>& vertices() { return mVertices; }
    const QVector<Vertex>& vertices() const { return mVertices; }
    const QVector<quint16>& indices() const { return mIndices; }
    void setIndices(const QVector<quint16>& indices) { mIndices = indices; }
    bool hasIndexList() const { return !mIndices.isEmpty(); }

    /// Drops what `covered` hides (whole pixels of the region, whole fractional
    /// rectangles and whole polygons). What was there before stays known: a list
    /// drawn translucently shows what lies beneath its opaque items.
    void setHolesRegion(const QRegion& covered);
    /// Whether setHolesRegion took anything away.
    bool isCut() const { return mUncut != nullptr; }
    /// Whether no rectangle or polygon area is left (vertex lists are not looked at).
    bool hasNoArea() const;

    /// The vertices to draw as primitive(): rectangles and polygons become triangles,
    /// index lists are expanded. `uncut`: as before setHolesRegion.
    QVector<Vertex> triangulate(bool uncut = false) const;
    GLenum primitive() const;

    /// The colour written into every vertex that triangulate() returns; vertex
    /// lists keep their own colours while none is set.
    void setColor(QRgb color);

    Geometry* next() const { return mNext; }
    void setNext(Geometry* next) { mNext = next; }
    Geometry* last();

    /// Where the vertices lie in the list's vertex buffer once written there.
    bool isUploaded() const { return mUploaded; }
    void setUploaded(int firstVertex, int vertexCount);
    void clearUploaded() { mUploaded = false; }
    int firstVertex() const { return mFirstVertex; }
    int vertexCount() const { return mVertexCount; }

private:
    struct Area
    {
        QRegion region;
        QVector<QRectF> fractionalRects;
        std::unique_ptr<Shape> shape;
    };

    void appendRect(QVector<Vertex>& out, const QRectF& r) const;
    void appendArea(QVector<Vertex>& out, const QRegion& region, const QVector<QRectF>& fractionalRects,
                    const Shape* shape) const;
    QPointF texCoordAt(const QPointF& p) const;
    void applyColor(QVector<Vertex>& vertices) const;

    Mode mMode;
    QRect mRect;
    QRegion mRegion;
    QVector<QRectF> mFractionalRects;
    QRectF mTextureTarget;
    TexCoordInsets mInsets;
    std::unique_ptr<Shape> mShape;
    std::unique_ptr<Area> mUncut;
    QVector<Vertex> mVertices;
    QVector<quint16> mIndices;
    Geometry* mNext = nullptr;
    QRgb mColor = 0;
    bool mColored = false;
    bool mUploaded = false;
    int mFirstVertex = 0;
    int mVertexCount = 0;
};

} // namespace gfx
