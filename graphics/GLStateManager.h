#pragma once

#include "GLState.h"
#include "OrbisUIFrameworkExport.h"

#include <Singleton.h>
#include <array>

namespace gfx {

class GLFunctions;

/// The process-wide mirror of what the driver holds. Every request is compared with
/// the cached entry and reaches the driver only when the entry is invalid or differs.
/// Code that calls GL behind its back must call clearToInvalid() afterwards.
class ORBIS_UI_EXPORT GLStateManager
{
public:
    static GLStateManager* instance() { return Singleton<GLStateManager>::instance(); }

    void glEnable(GLenum cap) { setCapability(cap, true); }
    void glDisable(GLenum cap) { setCapability(cap, false); }
    void glBlendFunc(GLenum src, GLenum dst);
    void glBlendEquation(GLenum mode);
    void glUseProgram(GLuint program);
    void glBindTexture2D(GLuint texture) { bindTexture(GL_TEXTURE_2D, mState.texture2D, texture); }
    void glBindTextureCubeMap(GLuint texture)
    {
        bindTexture(GL_TEXTURE_CUBE_MAP, mState.textureCubeMap, texture);
    }
    void glBindTextureArray2D(GLuint texture)
    {
        bindTexture(GL_TEXTURE_2D_ARRAY, mState.textureArray2D, texture);
    }
    void glActiveTexture(GLenum unit);
    /// Normalisation is always GL_FALSE: every attribute of the engine is float.
    void glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                               const void* pointer);
    void glEnableVertexAttribArray(GLuint index) { setAttribEnabled(index, true); }
    void glDisableVertexAttribArray(GLuint index) { setAttribEnabled(index, false); }
    void glBindBufferArray(GLuint buffer);
    void glScissor(int x, int y, int width, int height);
    void glClearColor(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha);

    /// Texture bindings are cached for one unit only; code that binds on another
    /// unit forgets them so that the next binding reaches the driver.
    void forgetTextureBindings();

    void clearToInvalid()
    {
        mState.clearToInvalid();
        mClearColor.valid = false;
    }

    /// Requests received and those passed to the driver, for frame statistics.
    quint64 requests() const { return mRequests; }
    quint64 forwarded() const { return mForwarded; }
    const GLState& state() const { return mState; }
    GLState& state() { return mState; }

private:
    friend class Singleton<GLStateManager>;
    GLStateManager() = default;

    void setCapability(GLenum cap, bool on);
    void bindTexture(GLenum target, GLCached<GLuint>& entry, GLuint texture);
    void setAttribEnabled(GLuint index, bool on);

    GLFunctions* driver();

    GLState mState;
    // Outside GLState: clearing belongs to the frame, not to what a renderer restores.
    GLCached<std::array<GLfloat, 4>> mClearColor;
    quint64 mRequests = 0;
    quint64 mForwarded = 0;
};

} // namespace gfx
