#include "GLCallRecorder.h"

#include <type_traits>

namespace gfx {

namespace {
template <typename T> QString argText(T value)
{
    if constexpr (std::is_same_v<T, const char*>)
        return QString::fromLatin1(value);
    else if constexpr (std::is_pointer_v<T>)
        return QString::number(reinterpret_cast<quintptr>(value));
    else if constexpr (std::is_floating_point_v<T>)
        return QString::number(value);
    else
        return QString::number(qint64(value));
}

QString joined()
{
    return QString();
}
template <typename First, typename... Rest> QString joined(First first, Rest... rest)
{
    const QString tail = joined(rest...);
    return tail.isEmpty() ? argText(first) : argText(first) + QStringLiteral(", ") + tail;
}
} // namespace

template <typename... Args> void GLCallRecorder::note(const char* name, Args... args)
{
    ++mTotal;
    ++mCounts[QByteArray::fromRawData(name, int(qstrlen(name)))];
    if (mLogging)
        mLog << QString::fromLatin1(name) + QLatin1Char('(') + joined(args...) + QLatin1Char(')');
}

void GLCallRecorder::reset()
{
    mLog.clear();
    mTotal = 0;
    mCounts.clear();
}

void GLCallRecorder::fill(GLenum pname, qint64* out, int count) const
{
    const QVector<qint64> values = mQueries.value(pname);
    for (int i = 0; i < count; ++i)
        out[i] = i < values.size() ? values[i] : 0;
}

// `note args` expands to note(__func__, arg, ...): the call's own name first.
#define ORBIS_GL_RECORD(ret, name, params, args)                                                             \
    ret GLCallRecorder::name params                                                                          \
    {                                                                                                        \
        note args;                                                                                           \
        if (mTarget)                                                                                         \
            return mTarget->name args;                                                                       \
        return ret();                                                                                        \
    }
#define note(...) note(__func__, ##__VA_ARGS__)
ORBIS_GL_COMMANDS(ORBIS_GL_RECORD)
ORBIS_GL_EXTENSION_COMMANDS(ORBIS_GL_RECORD)
#undef note
#undef ORBIS_GL_RECORD

void GLCallRecorder::glGetBooleanv(GLenum pname, GLboolean* params)
{
    note("glGetBooleanv", pname);
    if (mTarget)
        return mTarget->glGetBooleanv(pname, params);
    qint64 v = 0;
    fill(pname, &v, 1);
    *params = v ? GL_TRUE : GL_FALSE;
}

void GLCallRecorder::glGetIntegerv(GLenum pname, GLint* params)
{
    note("glGetIntegerv", pname);
    if (mTarget)
        return mTarget->glGetIntegerv(pname, params);
    qint64 v[4];
    const int count = pname == GL_SCISSOR_BOX || pname == GL_VIEWPORT ? 4 : 1;
    fill(pname, v, count);
    for (int i = 0; i < count; ++i)
        params[i] = GLint(v[i]);
}

void GLCallRecorder::glGetVertexAttribiv(GLuint index, GLenum pname, GLint* params)
{
    note("glGetVertexAttribiv", index, pname);
    if (mTarget)
        return mTarget->glGetVertexAttribiv(index, pname, params);
    qint64 v = 0;
    fill(attribQuery(index, pname), &v, 1);
    *params = GLint(v);
}

void GLCallRecorder::glGetVertexAttribPointerv(GLuint index, GLenum pname, void** pointer)
{
    note("glGetVertexAttribPointerv", index, pname);
    if (mTarget)
        return mTarget->glGetVertexAttribPointerv(index, pname, pointer);
    qint64 v = 0;
    fill(attribQuery(index, pname), &v, 1);
    *pointer = reinterpret_cast<void*>(v);
}

const GLubyte* GLCallRecorder::glGetString(GLenum name)
{
    note("glGetString", name);
    if (mTarget)
        return mTarget->glGetString(name);
    if (name == GL_EXTENSIONS)
        return reinterpret_cast<const GLubyte*>(mExtensions.constData());
    if (name == GL_VERSION && !mVersion.isEmpty())
        return reinterpret_cast<const GLubyte*>(mVersion.constData());
    return nullptr;
}

void GLCallRecorder::glGenTextures(GLsizei n, GLuint* textures)
{
    note("glGenTextures", n);
    if (mTarget)
        return mTarget->glGenTextures(n, textures);
    for (GLsizei i = 0; i < n; ++i)
        textures[i] = mNextName++;
}

void GLCallRecorder::glGenBuffers(GLsizei n, GLuint* buffers)
{
    note("glGenBuffers", n);
    if (mTarget)
        return mTarget->glGenBuffers(n, buffers);
    for (GLsizei i = 0; i < n; ++i)
        buffers[i] = mNextName++;
}

GLuint GLCallRecorder::glCreateShader(GLenum type)
{
    note("glCreateShader", type);
    return mTarget ? mTarget->glCreateShader(type) : mNextName++;
}

GLuint GLCallRecorder::glCreateProgram()
{
    note("glCreateProgram");
    return mTarget ? mTarget->glCreateProgram() : mNextName++;
}

void GLCallRecorder::glGetShaderiv(GLuint shader, GLenum pname, GLint* params)
{
    note("glGetShaderiv", shader, pname);
    if (mTarget)
        return mTarget->glGetShaderiv(shader, pname, params);
    *params = pname == GL_COMPILE_STATUS ? GL_TRUE : 0;
}

void GLCallRecorder::glGetProgramiv(GLuint program, GLenum pname, GLint* params)
{
    note("glGetProgramiv", program, pname);
    if (mTarget)
        return mTarget->glGetProgramiv(program, pname, params);
    *params = pname == GL_LINK_STATUS ? GL_TRUE : 0;
}

GLint GLCallRecorder::glGetUniformLocation(GLuint program, const char* name)
{
    note("glGetUniformLocation", program, name);
    if (mTarget)
        return mTarget->glGetUniformLocation(program, name);
    return GLint(qHash(QByteArray(name)) & 0x7fff);
}

} // namespace gfx
