#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// A colour whose coverage comes from the alpha of a texture (antialiased strokes).
class ORBIS_UI_INTERNAL_EXPORT AlphaTextureShaderUsage : public ShaderUsage
{
public:
    AlphaTextureShaderUsage(const TextureKey& texture, const QColor& color)
        : ShaderUsage(ShaderCache::kAlphaTexture, {texture}, color)
    {}
    bool needsBlending() const override { return true; }
};

} // namespace gfx
