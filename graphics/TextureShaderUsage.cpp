#include "TextureShaderUsage.h"

#include <Logger.h>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/TextureShaderUsage";
} // namespace

TextureShaderUsage::TextureShaderUsage(const TextureKey& texture, bool blend, const CustomShaderKey& custom,
                                       const TextureKey& second)
    : ShaderUsage(ShaderCache::kTexture,
                  second.isNull() ? QVector<TextureKey>{texture} : QVector<TextureKey>{texture, second}),
      mBlend(blend)
{
    setCustomShader(custom);
}

bool TextureShaderUsage::equals(const ShaderUsage* other) const
{
    if (!ShaderUsage::equals(other))
        return false;
    const auto* o = static_cast<const TextureShaderUsage*>(other);
    return o->mBlend == mBlend && o->mOpacified == mOpacified;
}

bool TextureShaderUsage::needsBlending() const
{
    if (blendReadsDestination() || opacity() < 1.0f)
        return true;
    return mBlend && !mOpacified;
}

ShaderUsage* TextureShaderUsage::opacify(const ShaderUsage* usage, const QColor& background)
{
    const auto* texture = dynamic_cast<const TextureShaderUsage*>(usage);
    if (!ORBIS_ASSERT(texture, QStringLiteral("Only texture usages can be opacified")))
        return nullptr;
    auto* result = new TextureShaderUsage(*texture);
    result->mOpacified = true;
    result->mBuiltin = ShaderCache::kOpacifiedTexture;
    result->mColor = background;
    return result;
}

} // namespace gfx
