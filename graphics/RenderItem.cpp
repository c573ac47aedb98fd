#include "RenderItem.h"

#include <cmath>

namespace gfx {

namespace {
bool keepsRectangles(const QMatrix4x4& m)
{
    const bool axisAligned = m(0, 1) == 0 && m(1, 0) == 0;
    const bool quarterTurn = std::abs(m(0, 0)) < 0.000001f && std::abs(m(1, 1)) < 0.000001f;
    const bool flat = m(0, 2) == 0 && m(1, 2) == 0 && m(2, 0) == 0 && m(2, 1) == 0;
    const bool affine = m(3, 0) == 0 && m(3, 1) == 0 && m(3, 2) == 0 && m(3, 3) == 1;
    return (axisAligned || quarterTurn) && flat && affine;
}
} // namespace

QRect RenderItem::mappedBounds(const QMatrix4x4& matrix, const QRect& rect)
{
    if (rect.isNull())
        return QRect();
    return matrix.mapRect(QRectF(rect)).toAlignedRect();
}

QRect RenderItem::mappedInterior(const QMatrix4x4& matrix, const QRect& rect)
{
    if (rect.isEmpty())
        return QRect();
    // A pixel is drawn when its centre is covered: one whose area misses only a
    // sliver, within rounding of the matrix, is still wholly covered.
    constexpr double kSliver = 1.0 / 64;
    const QRectF mapped = matrix.mapRect(QRectF(rect));
    const QPoint topLeft(int(std::ceil(mapped.left() - kSliver)), int(std::ceil(mapped.top() - kSliver)));
    const QPoint bottomRight(int(std::floor(mapped.right() + kSliver)),
                             int(std::floor(mapped.bottom() + kSliver)));
    const QRect interior(topLeft, bottomRight - QPoint(1, 1));
    return interior.isEmpty() ? QRect() : interior;
}

void RenderItem::computeRects(const QRect& local, const QRect& opaqueArea)
{
    const bool identity = !shaderUsage || shaderUsage->isIdentity();
    computeRects(local, opaqueArea, identity ? QMatrix4x4() : shaderUsage->matrix());
}

void RenderItem::computeRects(const QRect& local, const QRect& opaqueArea, const QMatrix4x4& matrix)
{
    localBounds = local;
    const bool identity = matrix.isIdentity();
    bounds = identity ? local : mappedBounds(matrix, local);
    if (identity)
        opaqueRect = opaqueArea;
    else if (keepsRectangles(matrix))
        opaqueRect = mappedInterior(matrix, opaqueArea);
    else
        opaqueRect = QRect();
}

} // namespace gfx
