#pragma once

#include "OrbisUIFrameworkExport.h"

#include "AlphaTextureShaderUsage.h"

namespace gfx {

// Glyphs: a colour through the coverage of a glyph atlas page.
class ORBIS_UI_INTERNAL_EXPORT TextShaderUsage : public AlphaTextureShaderUsage
{
public:
    TextShaderUsage(const TextureKey& glyphPage, const QColor& color)
        : AlphaTextureShaderUsage(glyphPage, color)
    {}
};

} // namespace gfx
