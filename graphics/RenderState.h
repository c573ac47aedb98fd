#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QMatrix4x4>
#include <QRect>

namespace gfx {

/// What a render pass draws into. Coordinates are surface pixels with the origin at
/// the top left; GL's bottom-left origin is derived from the surface height.
struct ORBIS_UI_EXPORT RenderState
{
    RenderState() = default;
    /// A pass that fills a whole surface of `size`.
    explicit RenderState(const QSize& size)
        : viewport(QPoint(0, 0), size), clipRect(viewport), surfaceHeight(size.height())
    {}

    /// Item space to surface pixels.
    QMatrix4x4 matrix;
    QRect viewport;
    QRect clipRect;
    float opacity = 1.0f;
    int surfaceHeight = 0;

    /// Surface pixels to clip space over the viewport.
    QMatrix4x4 projection() const
    {
        QMatrix4x4 m;
        m.ortho(viewport.left(), viewport.left() + viewport.width(), viewport.top() + viewport.height(),
                viewport.top(), -1, 1);
        return m;
    }
    /// A surface rectangle in GL window coordinates (bottom-left origin).
    QRect toWindow(const QRect& r) const
    {
        return QRect(r.x(), surfaceHeight - r.y() - r.height(), r.width(), r.height());
    }
};

} // namespace gfx
