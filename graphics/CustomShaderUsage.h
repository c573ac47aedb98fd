#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// A registered custom fragment shader with up to two textures and a colour.
class ORBIS_UI_INTERNAL_EXPORT CustomShaderUsage : public ShaderUsage
{
public:
    CustomShaderUsage(const CustomShaderKey& key, const QVector<TextureKey>& textures, const QColor& color,
                      bool blend)
        : ShaderUsage(ShaderCache::kColor, textures, color), mBlend(blend)
    {
        setCustomShader(key);
    }
    bool needsBlending() const override { return mBlend || opacity() < 1.0f || blendReadsDestination(); }
    bool equals(const ShaderUsage* other) const override
    {
        return ShaderUsage::equals(other) && static_cast<const CustomShaderUsage*>(other)->mBlend == mBlend;
    }

private:
    bool mBlend;
};

} // namespace gfx
