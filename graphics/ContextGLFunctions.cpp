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

namespace {
// An entry point outside QOpenGLFunctions, by the names that a version 3 context
// and the array texture extensions give it.
template <typename Function> Function resolve(const char* call, std::initializer_list<const char*> names)
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!ORBIS_ASSERT(context,
                      QStringLiteral("%1 called without a current GL context").arg(QLatin1String(call))))
        return nullptr;
    for (const char* name : names)
        if (QFunctionPointer f = context->getProcAddress(name))
            return reinterpret_cast<Function>(f);
    ORBIS_FAIL(QStringLiteral("%1 is not available in this GL context").arg(QLatin1String(call)));
    return nullptr;
}
} // namespace

void ContextGLFunctions::glTexImage3D(GLenum target, GLint level, GLint internalFormat, GLsizei width,
                                      GLsizei height, GLsizei depth, GLint border, GLenum format, GLenum type,
                                      const void* pixels)
{
    using Call = void(QOPENGLF_APIENTRYP)(GLenum, GLint, GLint, GLsizei, GLsizei, GLsizei, GLint, GLenum,
                                          GLenum, const void*);
    if (Call call = resolve<Call>("glTexImage3D", {"glTexImage3D", "glTexImage3DEXT", "glTexImage3DNV"}))
        call(target, level, internalFormat, width, height, depth, border, format, type, pixels);
}

void ContextGLFunctions::glTexSubImage3D(GLenum target, GLint level, GLint x, GLint y, GLint z, GLsizei width,
                                         GLsizei height, GLsizei depth, GLenum format, GLenum type,
                                         const void* pixels)
{
    using Call = void(QOPENGLF_APIENTRYP)(GLenum, GLint, GLint, GLint, GLint, GLsizei, GLsizei, GLsizei,
                                          GLenum, GLenum, const void*);
    if (Call call =
            resolve<Call>("glTexSubImage3D", {"glTexSubImage3D", "glTexSubImage3DEXT", "glTexSubImage3DNV"}))
        call(target, level, x, y, z, width, height, depth, format, type, pixels);
}

} // namespace gfx
