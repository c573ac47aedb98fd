#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// Two textures mixed by an amount (0 shows the first, 1 the second).
class ORBIS_UI_INTERNAL_EXPORT MultiTextureShaderUsage : public ShaderUsage
{
public:
    MultiTextureShaderUsage(const TextureKey& first, const TextureKey& second, float mix);

    bool equals(const ShaderUsage* other) const override;
    bool bind(const RenderState& state) override;
    bool needsBlending() const override { return true; }
    float mix() const { return mMix; }

private:
    float mMix;
};

} // namespace gfx
