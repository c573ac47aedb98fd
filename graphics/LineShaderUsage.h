#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// Lines and strokes: a colour, optionally modulated by a texture along the line.
class ORBIS_UI_INTERNAL_EXPORT LineShaderUsage : public ShaderUsage
{
public:
    LineShaderUsage(const QColor& color, const TextureKey& texture = TextureKey())
        : ShaderUsage(texture.isNull() ? ShaderCache::kColor : ShaderCache::kColorTexture,
                      texture.isNull() ? QVector<TextureKey>() : QVector<TextureKey>{texture}, color)
    {}
    // Edges are antialiased.
    bool needsBlending() const override { return true; }
};

} // namespace gfx
