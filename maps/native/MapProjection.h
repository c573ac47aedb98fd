#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QRect>
#include <QTransform>

namespace NativeMaps {

/// The perspective part of the camera: maps (unprojected) view pixels to projected
/// view pixels, tilting the map about a horizontal axis through (pivotX, half the
/// viewport height).
struct ORBIS_UI_EXPORT MapProjection
{
    QTransform transform;
    QTransform inverse;
    double tilt = 0.0; ///< degrees
    QRect viewport;
    double pivotX = 0.0;
    /// Vertical field of view of the 3D layers drawn over the tiles; the transform
    /// carries it along for them and never reads it.
    double fieldOfView = 0.0;

    /// An untilted projection for a viewport; tilting turns it about the horizontal
    /// centre line, with the vanishing point above the middle of the view.
    static MapProjection forViewport(const QRect& viewport)
    {
        MapProjection p;
        p.viewport = viewport;
        p.pivotX = viewport.x() + viewport.width() / 2.0;
        return p;
    }
};

} // namespace NativeMaps
