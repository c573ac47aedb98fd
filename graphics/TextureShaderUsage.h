#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// A texture, optionally with a second one for a custom shader. An opacified usage
// composites the texture over a constant colour and needs no blending.
class ORBIS_UI_INTERNAL_EXPORT TextureShaderUsage : public ShaderUsage
{
public:
    TextureShaderUsage(const TextureKey& texture, bool blend,
                       const CustomShaderKey& custom = CustomShaderKey(),
                       const TextureKey& second = TextureKey());

    bool equals(const ShaderUsage* other) const override;
    bool needsBlending() const override;

    bool isOpacified() const { return mOpacified; }
    // A copy of `usage` (a TextureShaderUsage) drawn over `background`; nullptr
    // for any other usage.
    static ShaderUsage* opacify(const ShaderUsage* usage, const QColor& background);

private:
    bool mBlend;
    bool mOpacified = false;
};

} // namespace gfx
