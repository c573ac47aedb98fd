#pragma once

#include "ShaderUsage.h"

namespace gfx {

// Fills with one colour.
class ColorShaderUsage : public ShaderUsage
{
public:
    explicit ColorShaderUsage(const QColor& color) : ShaderUsage(ShaderCache::kColor, {}, color) {}
    bool needsBlending() const override
    {
        return mColor.alpha() < 255 || opacity() < 1.0f || blendReadsDestination();
    }
};

} // namespace gfx
