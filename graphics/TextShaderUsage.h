#pragma once

#include "ShaderUsage.h"

namespace gfx {

// Glyphs: a colour through the coverage of a glyph atlas page.
class TextShaderUsage : public ShaderUsage
{
public:
    TextShaderUsage(const TextureKey& glyphPage, const QColor& color)
        : ShaderUsage(ShaderCache::kAlphaTexture)
    {
        mTextures = {glyphPage};
        mColor = color;
    }
    bool needsBlending() const override { return true; }
};

} // namespace gfx
