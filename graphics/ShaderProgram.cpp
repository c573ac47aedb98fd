#include "ShaderProgram.h"

#include "GLFunctions.h"

#include <Logger.h>
#include <QColor>
#include <QMatrix4x4>
#include <QVector4D>

static const char* const kLogSource = "graphics/ShaderProgram";

namespace gfx {

namespace {
QString infoLog(GLFunctions* f, GLuint object, bool program)
{
    char log[1024] = {0};
    GLsizei length = 0;
    if (program)
        f->glGetProgramInfoLog(object, sizeof(log) - 1, &length, log);
    else
        f->glGetShaderInfoLog(object, sizeof(log) - 1, &length, log);
    return QString::fromLatin1(log, qBound(0, int(length), int(sizeof(log) - 1))).trimmed();
}
} // namespace

ShaderProgram::ShaderProgram(const QString& name, const QByteArray& vertexSource,
                             const QByteArray& fragmentSource)
    : mName(name)
{
    GLFunctions* f = GLFunctions::current();
    const GLuint vertex = compile(GL_VERTEX_SHADER, vertexSource);
    const GLuint fragment = compile(GL_FRAGMENT_SHADER, fragmentSource);
    if (!vertex || !fragment) {
        f->glDeleteShader(vertex);
        f->glDeleteShader(fragment);
        return;
    }
    GLuint program = f->glCreateProgram();
    f->glAttachShader(program, vertex);
    f->glAttachShader(program, fragment);
    f->glBindAttribLocation(program, 0, "aPosition");
    f->glBindAttribLocation(program, 1, "aTexCoord");
    f->glBindAttribLocation(program, 2, "aColor");
    f->glLinkProgram(program);
    f->glDeleteShader(vertex);
    f->glDeleteShader(fragment);
    GLint linked = GL_FALSE;
    f->glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (!linked) {
        ORBIS_ERROR(
            QStringLiteral("Shader program %1 failed to link: %2").arg(mName, infoLog(f, program, true)));
        f->glDeleteProgram(program);
        return;
    }
    mProgram = program;
}

void ShaderProgram::release()
{
    if (mProgram)
        GLFunctions::current()->glDeleteProgram(mProgram);
    mProgram = 0;
    mLocations.clear();
    mValues.clear();
}

GLuint ShaderProgram::compile(GLenum type, const QByteArray& source)
{
    GLFunctions* f = GLFunctions::current();
    const GLuint shader = f->glCreateShader(type);
    const char* text = source.constData();
    const GLint length = source.size();
    f->glShaderSource(shader, 1, &text, &length);
    f->glCompileShader(shader);
    GLint compiled = GL_FALSE;
    f->glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (!compiled) {
        ORBIS_ERROR(QStringLiteral("Shader %1 failed to compile: %2").arg(mName, infoLog(f, shader, false)));
        f->glDeleteShader(shader);
        return 0;
    }
    return shader;
}

GLint ShaderProgram::uniformLocation(const char* name)
{
    const QByteArray key = QByteArray::fromRawData(name, int(qstrlen(name)));
    auto it = mLocations.constFind(key);
    if (it != mLocations.constEnd())
        return *it;
    const GLint location = mProgram ? GLFunctions::current()->glGetUniformLocation(mProgram, name) : -1;
    mLocations.insert(QByteArray(name), location);
    return location;
}

bool ShaderProgram::changes(GLint location, const float* values, int count)
{
    if (location < 0)
        return false;
    QVector<float>& last = mValues[location];
    if (last.size() == count && std::equal(values, values + count, last.constBegin()))
        return false;
    last = QVector<float>(values, values + count);
    return true;
}

void ShaderProgram::setUniform(const char* name, int value)
{
    const GLint location = uniformLocation(name);
    const float v = float(value);
    if (changes(location, &v, 1))
        GLFunctions::current()->glUniform1i(location, value);
}

void ShaderProgram::setUniform(const char* name, float value)
{
    const GLint location = uniformLocation(name);
    if (changes(location, &value, 1))
        GLFunctions::current()->glUniform1f(location, value);
}

void ShaderProgram::setUniform(const char* name, const QColor& color, float opacity)
{
    const GLint location = uniformLocation(name);
    const float a = float(color.alphaF()) * opacity;
    const float v[4] = {float(color.redF()) * a, float(color.greenF()) * a, float(color.blueF()) * a, a};
    if (changes(location, v, 4))
        GLFunctions::current()->glUniform4f(location, v[0], v[1], v[2], v[3]);
}

void ShaderProgram::setUniform(const char* name, const QVector4D& value)
{
    const GLint location = uniformLocation(name);
    const float v[4] = {value.x(), value.y(), value.z(), value.w()};
    if (changes(location, v, 4))
        GLFunctions::current()->glUniform4f(location, v[0], v[1], v[2], v[3]);
}

void ShaderProgram::setUniform(const char* name, const QMatrix4x4& matrix)
{
    const GLint location = uniformLocation(name);
    if (changes(location, matrix.constData(), 16))
        GLFunctions::current()->glUniformMatrix4fv(location, 1, GL_FALSE, matrix.constData());
}

} // namespace gfx
