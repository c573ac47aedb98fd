#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ShaderUsage.h"

namespace gfx {

// Stands in on items that draw through something else (nested display lists): it
// only says whether the item blends. It has no program of its own.
class ORBIS_UI_INTERNAL_EXPORT IndirectShaderUsage : public ShaderUsage
{
public:
    explicit IndirectShaderUsage(bool blend) : ShaderUsage(ShaderCache::kColor), mBlend(blend) {}

    bool equals(const ShaderUsage*) const override { return false; }
    bool bind(const RenderState&) override { return false; }
    bool needsBlending() const override { return mBlend || opacity() < 1.0f || blendReadsDestination(); }
    ShaderProgram* shader(const RenderState& state) const override;

private:
    bool mBlend;
};

} // namespace gfx
