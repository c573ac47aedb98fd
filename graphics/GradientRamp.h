#pragma once

#include "OrbisUIFrameworkExport.h"

#include "TextureKey.h"

#include <QGradient>
#include <QImage>

namespace gfx {

// The colours of a gradient's stops as a 1024 x 1 premultiplied texture, one
// entry per step along the gradient as in the raster engine's colour table, so
// that both give a position the same colour. Ramps are kept by stops and
// interpolation mode for the gradients drawn most recently. GUI thread only.
class ORBIS_UI_INTERNAL_EXPORT GradientRamp
{
public:
    static constexpr int kSize = 1024;

    // The texture for the gradient's stops (black to white when it has none).
    static TextureKey key(const QGradient& gradient);
    static QImage image(const QGradientStops& stops, QGradient::InterpolationMode mode);
    // Whether every stop is opaque.
    static bool isOpaque(const QGradientStops& stops);
};

} // namespace gfx
