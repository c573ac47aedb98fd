#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// A texture shown through the alpha of a mask texture.
class ORBIS_UI_INTERNAL_EXPORT MaskTextureShaderUsage : public ShaderUsage
{
public:
    MaskTextureShaderUsage(const TextureKey& texture, const TextureKey& mask)
        : ShaderUsage(ShaderCache::kMaskTexture, {texture, mask})
    {}
    bool needsBlending() const override { return true; }
};

} // namespace gfx
