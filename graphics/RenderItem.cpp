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

void RenderItem::computeRects(const QRect& local, const QRect& opaqueArea)
{
    localBounds = local;
    const bool identity = !shaderUsage || shaderUsage->isIdentity();
    const QMatrix4x4 matrix = identity ? QMatrix4x4() : shaderUsage->matrix();
    bounds = identity ? local : matrix.mapRect(local);
    if (identity)
        opaqueRect = opaqueArea;
    else if (keepsRectangles(matrix))
        opaqueRect = opaqueArea.isNull() ? QRect() : matrix.mapRect(opaqueArea);
    else
        opaqueRect = QRect();
}

} // namespace gfx
