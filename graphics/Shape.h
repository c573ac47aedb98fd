#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TexCoordInsets.h"

#include <QPolygonF>
#include <QRegion>
#include <QTransform>
#include <QVector>

namespace gfx {

/// An area to fill: rectangles in local coordinates taken through a transform, kept
/// as convex polygons in device coordinates so that clipping and triangulation stay
/// simple. Textured shapes map their source rectangle to the texture, inside the
/// given insets.
class ORBIS_UI_EXPORT Shape
{
public:
    Shape() = default;
    explicit Shape(const QRegion& region, const QTransform& transform = QTransform(),
                   const TexCoordInsets& insets = TexCoordInsets());
    explicit Shape(const QRectF& rect, const QTransform& transform = QTransform(),
                   const TexCoordInsets& insets = TexCoordInsets());

    const QVector<QPolygonF>& polygons() const { return mPolygons; }
    const QTransform& transform() const { return mTransform; }
    const TexCoordInsets& insets() const { return mInsets; }
    /// The textured area before the transform.
    const QRectF& sourceRect() const { return mSourceRect; }
    /// Whether every polygon is an axis-aligned rectangle with the texture upright
    /// (a mirroring scale does not count).
    bool isRectilinear() const
    {
        return mTransform.type() <= QTransform::TxScale && mTransform.m11() > 0 && mTransform.m22() > 0;
    }
    QRect boundingRect() const;

    /// True when no polygon encloses any area, whatever the rectangles given.
    bool deepIsEmpty() const;
    /// The part inside `clip`, each polygon cut by each rectangle of the clip.
    Shape clipped(const QRegion& clip) const;
    /// Drops the polygons that lie wholly inside `covered`.
    void removeHidden(const QRegion& covered);
    /// Texture coordinates of a device point.
    QPointF texCoordAt(const QPointF& device) const;

private:
    void init(const QVector<QRectF>& rects);

    QVector<QPolygonF> mPolygons;
    QTransform mTransform;
    QTransform mInverse;
    TexCoordInsets mInsets;
    QRectF mSourceRect;
};

} // namespace gfx
