#include "ContextGLFunctions.h"

#include <Logger.h>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/ContextGLFunctions";

QOpenGLFunctions* contextFunctions(const char* call)
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!ORBIS_ASSERT(context,
                      QStringLiteral("%1 called without a current GL context").arg(QLatin1String(call))))
        return nullptr;
    return context->functions();
}

template <typename T> T zero()
{
    return T();
}
} // namespace

// Without a context a call does nothing and answers with a zero value.
#define ORBIS_GL_FORWARD(ret, name, params, args)                                                            \
    ret ContextGLFunctions::name params                                                                      \
    {                                                                                                        \
        QOpenGLFunctions* f = contextFunctions(#name);                                                       \
        if (!f)                                                                                              \
            return zero<ret>();                                                                              \
        return f->name args;                                                                                 \
    }
ORBIS_GL_COMMANDS(ORBIS_GL_FORWARD)
ORBIS_GL_QUERIES(ORBIS_GL_FORWARD)
#undef ORBIS_GL_FORWARD

} // namespace gfx
