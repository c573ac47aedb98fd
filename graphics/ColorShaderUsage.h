#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// Fills with one colour.
class ORBIS_UI_INTERNAL_EXPORT ColorShaderUsage : public ShaderUsage
{
public:
    explicit ColorShaderUsage(const QColor& color) : ShaderUsage(ShaderCache::kColor, {}, color) {}
    bool needsBlending() const override
    {
        return mColor.alpha() < 255 || opacity() < 1.0f || blendReadsDestination();
    }
};

} // namespace gfx
