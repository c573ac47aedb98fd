#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Vertex.h"

#include <QVector2D>
#include <QVector>

namespace gfx {

// Triangles that fill closed contours by a fill rule, through the GLU tessellator.
class ORBIS_UI_INTERNAL_EXPORT PathTessellator
{
public:
    enum FillRule
    {
        kOddEven,
        kWinding,
    };

    // Each contour is closed implicitly; contours of fewer than three points add
    // nothing. Texture coordinates are left at zero.
    static QVector<Vertex> fill(const QVector<QVector<QVector2D>>& contours, FillRule rule);
};

} // namespace gfx
