#pragma once

#include "OrbisUIFrameworkExport.h"

#include "GLFunctions.h"

namespace gfx {

// Forwards every call to QOpenGLContext::currentContext()->functions().
class ORBIS_UI_INTERNAL_EXPORT ContextGLFunctions : public GLFunctions
{
public:
#define ORBIS_GL_DECLARE(ret, name, params, args) ret name params override;
    ORBIS_GL_COMMANDS(ORBIS_GL_DECLARE)
    ORBIS_GL_QUERIES(ORBIS_GL_DECLARE)
    ORBIS_GL_EXTENSION_COMMANDS(ORBIS_GL_DECLARE)
#undef ORBIS_GL_DECLARE
};

} // namespace gfx
