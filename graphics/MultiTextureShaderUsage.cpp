#include "MultiTextureShaderUsage.h"

#include "ShaderProgram.h"

namespace gfx {

MultiTextureShaderUsage::MultiTextureShaderUsage(const TextureKey& first, const TextureKey& second, float mix)
    : ShaderUsage(ShaderCache::kMultiTexture, {first, second}), mMix(mix)
{}

bool MultiTextureShaderUsage::equals(const ShaderUsage* other) const
{
    return ShaderUsage::equals(other) && static_cast<const MultiTextureShaderUsage*>(other)->mMix == mMix;
}

bool MultiTextureShaderUsage::bind(const RenderState& state)
{
    if (!ShaderUsage::bind(state))
        return false;
    shader(state)->setUniform("uMix", mMix);
    return true;
}

} // namespace gfx
