#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

#include <QBrush>
#include <QTransform>
#include <QVector4D>

namespace gfx {

// Fills with a linear, radial or conical gradient. Each position is taken into the
// gradient's own coordinates, where the colour is looked up in the ramp of its
// stops (GradientRamp) by the gradient's spread, as the raster engine does it.
// With a mask, the mask's alpha is the coverage (antialiased edges). Blends
// unless every stop is opaque and every position gets a colour.
class ORBIS_UI_INTERNAL_EXPORT GradientShaderUsage : public ShaderUsage
{
public:
    // `toItem` maps the gradient's coordinates to the item's.
    GradientShaderUsage(const QGradient& gradient, const QTransform& toItem,
                        const TextureKey& mask = TextureKey());

    static bool isGradient(const QBrush& brush)
    {
        return brush.style() >= Qt::LinearGradientPattern && brush.style() <= Qt::ConicalGradientPattern &&
               brush.gradient();
    }

    bool equals(const ShaderUsage* other) const override;
    bool bind(const RenderState& state) override;
    bool needsBlending() const override;

private:
    void setRadial(const QRadialGradient& radial);

    float mSpread = 0;
    QVector4D mGradient;
    QVector4D mRadial;
    QMatrix4x4 mToGradient;
    bool mCoversAll = true;
    bool mOpaque = false;
};

} // namespace gfx
