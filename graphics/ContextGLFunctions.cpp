#include "ContextGLFunctions.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace gfx {

namespace {
QOpenGLFunctions* contextFunctions()
{
    return QOpenGLContext::currentContext()->functions();
}
} // namespace

#define ORBIS_GL_FORWARD(ret, name, params, args)                                                            \
    ret ContextGLFunctions::name params                                                                      \
    {                                                                                                        \
        return contextFunctions()->name args;                                                                \
    }
ORBIS_GL_COMMANDS(ORBIS_GL_FORWARD)
ORBIS_GL_QUERIES(ORBIS_GL_FORWARD)
#undef ORBIS_GL_FORWARD

} // namespace gfx
