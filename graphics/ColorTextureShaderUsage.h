#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// A texture tinted by a colour.
class ORBIS_UI_INTERNAL_EXPORT ColorTextureShaderUsage : public ShaderUsage
{
public:
    ColorTextureShaderUsage(const TextureKey& texture, const QColor& color)
        : ShaderUsage(ShaderCache::kColorTexture, {texture}, color)
    {}
    bool needsBlending() const override { return true; }
};

} // namespace gfx
