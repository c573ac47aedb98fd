#include "IndirectShaderUsage.h"

#include <Logger.h>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/IndirectShaderUsage";
} // namespace

ShaderProgram* IndirectShaderUsage::shader(const RenderState&) const
{
    ORBIS_FAIL(QStringLiteral("IndirectShaderUsage::shader should never be called"));
    return nullptr;
}

} // namespace gfx
