#pragma once

#include "OrbisUIFrameworkExport.h"

#include <qopengl.h>

// The GL calls of the engine, one table. Each entry: return type, name, parameter
// list, argument list. Queries and object creation are listed apart because a
// recorder without a driver behind it has to answer them itself.
#define ORBIS_GL_COMMANDS(X)                                                                                 \
    X(void, glEnable, (GLenum cap), (cap))                                                                   \
    X(void, glDisable, (GLenum cap), (cap))                                                                  \
    X(void, glBlendFunc, (GLenum src, GLenum dst), (src, dst))                                               \
    X(void, glBlendEquation, (GLenum mode), (mode))                                                          \
    X(void, glUseProgram, (GLuint program), (program))                                                       \
    X(void, glBindTexture, (GLenum target, GLuint texture), (target, texture))                               \
    X(void, glActiveTexture, (GLenum unit), (unit))                                                          \
    X(void, glStencilOp, (GLenum fail, GLenum zfail, GLenum zpass), (fail, zfail, zpass))                    \
    X(void, glStencilFunc, (GLenum func, GLint ref, GLuint mask), (func, ref, mask))                         \
    X(void, glClearColor, (GLfloat r, GLfloat g, GLfloat b, GLfloat a), (r, g, b, a))                        \
    X(void, glClearStencil, (GLint s), (s))                                                                  \
    X(void, glClear, (GLbitfield mask), (mask))                                                              \
    X(void, glVertexAttribPointer,                                                                           \
      (GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride, const void* pointer),    \
      (index, size, type, normalized, stride, pointer))                                                      \
    X(void, glEnableVertexAttribArray, (GLuint index), (index))                                              \
    X(void, glDisableVertexAttribArray, (GLuint index), (index))                                             \
    X(void, glBindBuffer, (GLenum target, GLuint buffer), (target, buffer))                                  \
    X(void, glScissor, (GLint x, GLint y, GLsizei w, GLsizei h), (x, y, w, h))                               \
    X(void, glViewport, (GLint x, GLint y, GLsizei w, GLsizei h), (x, y, w, h))                              \
    X(void, glDeleteBuffers, (GLsizei n, const GLuint* buffers), (n, buffers))                               \
    X(void, glBufferData, (GLenum target, qopengl_GLsizeiptr size, const void* data, GLenum usage),          \
      (target, size, data, usage))                                                                           \
    X(void, glBufferSubData,                                                                                 \
      (GLenum target, qopengl_GLintptr offset, qopengl_GLsizeiptr size, const void* data),                   \
      (target, offset, size, data))                                                                          \
    X(void, glDrawArrays, (GLenum mode, GLint first, GLsizei count), (mode, first, count))                   \
    X(void, glShaderSource, (GLuint shader, GLsizei count, const char** string, const GLint* length),        \
      (shader, count, string, length))                                                                       \
    X(void, glCompileShader, (GLuint shader), (shader))                                                      \
    X(void, glGetShaderInfoLog, (GLuint shader, GLsizei size, GLsizei * length, char* log),                  \
      (shader, size, length, log))                                                                           \
    X(void, glAttachShader, (GLuint program, GLuint shader), (program, shader))                              \
    X(void, glBindAttribLocation, (GLuint program, GLuint index, const char* name), (program, index, name))  \
    X(void, glLinkProgram, (GLuint program), (program))                                                      \
    X(void, glGetProgramInfoLog, (GLuint program, GLsizei size, GLsizei * length, char* log),                \
      (program, size, length, log))                                                                          \
    X(void, glDeleteShader, (GLuint shader), (shader))                                                       \
    X(void, glDeleteProgram, (GLuint program), (program))                                                    \
    X(void, glUniform1i, (GLint location, GLint x), (location, x))                                           \
    X(void, glUniform1f, (GLint location, GLfloat x), (location, x))                                         \
    X(void, glUniform4f, (GLint location, GLfloat x, GLfloat y, GLfloat z, GLfloat w),                       \
      (location, x, y, z, w))                                                                                \
    X(void, glUniformMatrix4fv, (GLint location, GLsizei count, GLboolean transpose, const GLfloat* value),  \
      (location, count, transpose, value))                                                                   \
    X(void, glDeleteTextures, (GLsizei n, const GLuint* textures), (n, textures))                            \
    X(void, glTexImage2D,                                                                                    \
      (GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height, GLint border,        \
       GLenum format, GLenum type, const void* pixels),                                                      \
      (target, level, internalFormat, width, height, border, format, type, pixels))                          \
    X(void, glCompressedTexImage2D,                                                                          \
      (GLenum target, GLint level, GLenum internalFormat, GLsizei width, GLsizei height, GLint border,       \
       GLsizei imageSize, const void* data),                                                                 \
      (target, level, internalFormat, width, height, border, imageSize, data))                               \
    X(void, glTexSubImage2D,                                                                                 \
      (GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height, GLenum format,           \
       GLenum type, const void* pixels),                                                                     \
      (target, level, x, y, width, height, format, type, pixels))                                            \
    X(void, glTexParameteri, (GLenum target, GLenum pname, GLint param), (target, pname, param))             \
    X(void, glPixelStorei, (GLenum pname, GLint param), (pname, param))                                      \
    X(void, glGenerateMipmap, (GLenum target), (target))

#define ORBIS_GL_QUERIES(X)                                                                                  \
    X(void, glGetBooleanv, (GLenum pname, GLboolean * params), (pname, params))                              \
    X(void, glGetIntegerv, (GLenum pname, GLint * params), (pname, params))                                  \
    X(void, glGetVertexAttribiv, (GLuint index, GLenum pname, GLint * params), (index, pname, params))       \
    X(void, glGetVertexAttribPointerv, (GLuint index, GLenum pname, void** pointer),                         \
      (index, pname, pointer))                                                                               \
    X(const GLubyte*, glGetString, (GLenum name), (name))                                                    \
    X(void, glGenTextures, (GLsizei n, GLuint * textures), (n, textures))                                    \
    X(void, glGenBuffers, (GLsizei n, GLuint * buffers), (n, buffers))                                       \
    X(GLuint, glCreateShader, (GLenum type), (type))                                                         \
    X(GLuint, glCreateProgram, (), ())                                                                       \
    X(void, glGetShaderiv, (GLuint shader, GLenum pname, GLint * params), (shader, pname, params))           \
    X(void, glGetProgramiv, (GLuint program, GLenum pname, GLint * params), (program, pname, params))        \
    X(GLint, glGetUniformLocation, (GLuint program, const char* name), (program, name))

// Calls outside the ES 2 core: array textures, from GL_EXT_texture_array,
// GL_NV_texture_array or a version 3 context. Callers check GLExtensions first.
#define ORBIS_GL_EXTENSION_COMMANDS(X)                                                                       \
    X(void, glTexImage3D,                                                                                    \
      (GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height, GLsizei depth,       \
       GLint border, GLenum format, GLenum type, const void* pixels),                                        \
      (target, level, internalFormat, width, height, depth, border, format, type, pixels))                   \
    X(void, glTexSubImage3D,                                                                                 \
      (GLenum target, GLint level, GLint x, GLint y, GLint z, GLsizei width, GLsizei height, GLsizei depth,  \
       GLenum format, GLenum type, const void* pixels),                                                      \
      (target, level, x, y, z, width, height, depth, format, type, pixels))

namespace gfx {

/// The one road from the engine to the GL driver. The default implementation
/// forwards to the current context's QOpenGLFunctions; tests and benchmarks
/// install a recorder in front of it to see what reaches the driver.
class ORBIS_UI_EXPORT GLFunctions
{
public:
    virtual ~GLFunctions() = default;

#define ORBIS_GL_DECLARE(ret, name, params, args) virtual ret name params = 0;
    ORBIS_GL_COMMANDS(ORBIS_GL_DECLARE)
    ORBIS_GL_QUERIES(ORBIS_GL_DECLARE)
    ORBIS_GL_EXTENSION_COMMANDS(ORBIS_GL_DECLARE)
#undef ORBIS_GL_DECLARE

    /// The installed implementation (never null).
    static GLFunctions* current();
    /// Installs `functions` (not owned) and returns the previous one; nullptr
    /// restores the forwarding default.
    static GLFunctions* install(GLFunctions* functions);
};

} // namespace gfx
