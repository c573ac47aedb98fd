#include "Geometry.h"

namespace gfx {

Geometry::Geometry(Mode mode) : mMode(mode) {}

Geometry::~Geometry()
{
    // Chains can be long after merging: unlink iteratively instead of recursing.
    Geometry* g = mNext;
    while (g) {
        Geometry* following = g->mNext;
        g->mNext = nullptr;
        delete g;
        g = following;
    }
}

void Geometry::setRegion(const QRegion& region)
{
    mRegion = region;
    mRect |= region.boundingRect();
}

void Geometry::addRect(const QRectF& rect)
{
    if (rect.isEmpty())
        return;
    const QRect whole = rect.toRect();
    if (QRectF(whole) == rect)
        mRegion += whole;
    else
        mFractionalRects << rect;
    mRect |= rect.toAlignedRect();
}

void Geometry::setTextureMapping(const QRectF& target, const TexCoordInsets& insets)
{
    mTextureTarget = target;
    mInsets = insets;
}

void Geometry::setShape(const Shape& shape)
{
    mShape = std::make_unique<Shape>(shape);
    mRect |= shape.boundingRect();
}

void Geometry::setColor(QRgb color)
{
    mColor = color;
    mColored = true;
}

void Geometry::applyColor(QVector<Vertex>& vertices) const
{
    if (!mColored)
        return;
    const quint8 r = quint8(qRed(mColor));
    const quint8 g = quint8(qGreen(mColor));
    const quint8 b = quint8(qBlue(mColor));
    const quint8 a = quint8(qAlpha(mColor));
    for (Vertex& v : vertices) {
        v.r = r;
        v.g = g;
        v.b = b;
        v.a = a;
    }
}

Geometry* Geometry::last()
{
    Geometry* g = this;
    while (g->mNext)
        g = g->mNext;
    return g;
}

void Geometry::setUploaded(int firstVertex, int vertexCount)
{
    mUploaded = true;
    mFirstVertex = firstVertex;
    mVertexCount = vertexCount;
}

void Geometry::setHolesRegion(const QRegion& covered)
{
    if (covered.isEmpty() || !covered.intersects(mRect))
        return;
    auto before = std::make_unique<Area>();
    before->region = mRegion;
    before->fractionalRects = mFractionalRects;
    if (mShape)
        before->shape = std::make_unique<Shape>(*mShape);
    mRegion -= covered;
    QVector<QRectF> kept;
    for (const QRectF& r : qAsConst(mFractionalRects)) {
        if (!QRegion(r.toAlignedRect()).subtracted(covered).isEmpty())
            kept << r;
    }
    mFractionalRects = kept;
    if (mShape)
        mShape->removeHidden(covered);
    const bool changed = mRegion != before->region ||
                         mFractionalRects.size() != before->fractionalRects.size() ||
                         (mShape && mShape->polygons().size() != before->shape->polygons().size());
    if (changed && !mUncut)
        mUncut = std::move(before);
}

bool Geometry::hasNoArea() const
{
    return mRegion.isEmpty() && mFractionalRects.isEmpty() && (!mShape || mShape->deepIsEmpty());
}

QPointF Geometry::texCoordAt(const QPointF& p) const
{
    if (mShape)
        return mShape->texCoordAt(p);
    const QRectF& t = mTextureTarget;
    const double u = t.width() > 0 ? (p.x() - t.x()) / t.width() : 0;
    const double v = t.height() > 0 ? (p.y() - t.y()) / t.height() : 0;
    return QPointF(mInsets.left + u * (1 - mInsets.left - mInsets.right),
                   mInsets.top + v * (1 - mInsets.top - mInsets.bottom));
}

void Geometry::appendRect(QVector<Vertex>& out, const QRectF& r) const
{
    const QPointF corners[4] = {r.topLeft(), r.topRight(), r.bottomRight(), r.bottomLeft()};
    static const int kOrder[6] = {0, 1, 2, 0, 2, 3};
    for (int i : kOrder) {
        const QPointF tex = isTextured() ? texCoordAt(corners[i]) : QPointF();
        out.append({float(corners[i].x()), float(corners[i].y()), float(tex.x()), float(tex.y())});
    }
}

void Geometry::appendArea(QVector<Vertex>& out, const QRegion& region, const QVector<QRectF>& fractionalRects,
                          const Shape* shape) const
{
    out.reserve(out.size() + (region.rectCount() + fractionalRects.size()) * 6);
    for (const QRect& r : region)
        appendRect(out, QRectF(r));
    for (const QRectF& r : fractionalRects)
        appendRect(out, r);
    if (!shape)
        return;
    for (const QPolygonF& polygon : shape->polygons()) {
        // Convex: a fan from the first corner.
        for (int i = 1; i + 1 < polygon.size(); ++i) {
            for (const QPointF& p : {polygon[0], polygon[i], polygon[i + 1]}) {
                const QPointF tex = isTextured() ? shape->texCoordAt(p) : QPointF();
                out.append({float(p.x()), float(p.y()), float(tex.x()), float(tex.y())});
            }
        }
    }
}

QVector<Vertex> Geometry::triangulate(bool uncut) const
{
    QVector<Vertex> out;
    switch (mMode) {
    case kColorRects:
    case kTextureRects:
    case kColorShape:
    case kTextureShape:
        if (uncut && mUncut)
            appendArea(out, mUncut->region, mUncut->fractionalRects, mUncut->shape.get());
        else
            appendArea(out, mRegion, mFractionalRects, mShape.get());
        break;
    case kIndexedTriangles:
        out.reserve(mIndices.size());
        for (quint16 i : mIndices) {
            if (i < mVertices.size())
                out.append(mVertices[i]);
        }
        break;
    case kTriangles:
    case kTriangleStrip:
    case kLineStrip:
        out = mVertices;
        break;
    }
    applyColor(out);
    return out;
}

GLenum Geometry::primitive() const
{
    switch (mMode) {
    case kTriangleStrip:
        return GL_TRIANGLE_STRIP;
    case kLineStrip:
        return GL_LINE_STRIP;
    default:
        return GL_TRIANGLES;
    }
}

} // namespace gfx
