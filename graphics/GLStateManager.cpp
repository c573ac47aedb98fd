#include "GLStateManager.h"

#include "GLFunctions.h"

namespace gfx {

GLFunctions* GLStateManager::driver()
{
    ++mForwarded;
    return GLFunctions::current();
}

void GLStateManager::setCapability(GLenum cap, bool on)
{
    ++mRequests;
    GLCached<bool>* entry = mState.capability(cap);
    if (entry && entry->holds(on))
        return;
    if (on)
        driver()->glEnable(cap);
    else
        driver()->glDisable(cap);
    if (entry)
        entry->set(on);
}

void GLStateManager::glBlendFunc(GLenum src, GLenum dst)
{
    ++mRequests;
    if (mState.blendSrc.holds(src) && mState.blendDst.holds(dst))
        return;
    driver()->glBlendFunc(src, dst);
    mState.blendSrc.set(src);
    mState.blendDst.set(dst);
}

void GLStateManager::glBlendEquation(GLenum mode)
{
    ++mRequests;
    if (mState.blendEquation.holds(mode))
        return;
    driver()->glBlendEquation(mode);
    mState.blendEquation.set(mode);
}

void GLStateManager::glUseProgram(GLuint program)
{
    ++mRequests;
    if (mState.program.holds(program))
        return;
    driver()->glUseProgram(program);
    mState.program.set(program);
}

void GLStateManager::bindTexture(GLenum target, GLCached<GLuint>& entry, GLuint texture)
{
    ++mRequests;
    if (entry.holds(texture))
        return;
    driver()->glBindTexture(target, texture);
    entry.set(texture);
}

void GLStateManager::glActiveTexture(GLenum unit)
{
    ++mRequests;
    if (mState.activeTexture.holds(unit))
        return;
    driver()->glActiveTexture(unit);
    mState.activeTexture.set(unit);
}

void GLStateManager::glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean, GLsizei stride,
                                           const void* pointer)
{
    ++mRequests;
    const quint64 address = quint64(reinterpret_cast<quintptr>(pointer));
    if (index >= GLuint(GLState::kAttribCount)) {
        driver()->glVertexAttribPointer(index, size, type, GL_FALSE, stride, pointer);
        return;
    }
    GLAttribState& a = mState.attribs[index];
    if (a.size.holds(size) && a.type.holds(type) && a.stride.holds(stride) && a.pointer.holds(address))
        return;
    driver()->glVertexAttribPointer(index, size, type, GL_FALSE, stride, pointer);
    a.size.set(size);
    a.type.set(type);
    a.stride.set(stride);
    a.pointer.set(address);
}

void GLStateManager::setAttribEnabled(GLuint index, bool on)
{
    ++mRequests;
    const bool cached = index < GLuint(GLState::kAttribCount);
    if (cached && mState.attribs[index].enabled.holds(on))
        return;
    if (on)
        driver()->glEnableVertexAttribArray(index);
    else
        driver()->glDisableVertexAttribArray(index);
    if (cached)
        mState.attribs[index].enabled.set(on);
}

void GLStateManager::glBindBufferArray(GLuint buffer)
{
    ++mRequests;
    if (mState.arrayBuffer.holds(buffer))
        return;
    driver()->glBindBuffer(GL_ARRAY_BUFFER, buffer);
    mState.arrayBuffer.set(buffer);
}

void GLStateManager::glScissor(int x, int y, int width, int height)
{
    ++mRequests;
    const GLScissorBox box{x, y, x + width - 1, y + height - 1};
    if (mState.scissor.holds(box))
        return;
    driver()->glScissor(x, y, width, height);
    mState.scissor.set(box);
}

void GLStateManager::glClearColor(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha)
{
    ++mRequests;
    const std::array<GLfloat, 4> color{red, green, blue, alpha};
    if (mClearColor.holds(color))
        return;
    driver()->glClearColor(red, green, blue, alpha);
    mClearColor.set(color);
}

void GLStateManager::forgetTextureBindings()
{
    mState.texture2D.valid = false;
    mState.textureCubeMap.valid = false;
    mState.textureArray2D.valid = false;
}

} // namespace gfx
