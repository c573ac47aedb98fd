#pragma once

#include "OrbisUIFrameworkExport.h"

#include <qopengl.h>

namespace gfx {

#ifndef GL_MULTISAMPLE_EXT
#define GL_MULTISAMPLE_EXT 0x809D
#endif
#ifndef GL_TEXTURE_2D_ARRAY
#define GL_TEXTURE_2D_ARRAY 0x8C1A
#endif
#ifndef GL_TEXTURE_BINDING_2D_ARRAY
#define GL_TEXTURE_BINDING_2D_ARRAY 0x8C1D
#endif

/// One cached piece of GL state; an invalid entry is never compared nor applied.
template <typename T> struct GLCached
{
    T value{};
    bool valid = false;

    bool holds(const T& v) const { return valid && value == v; }
    void set(const T& v)
    {
        value = v;
        valid = true;
    }
};

/// The cached state of one vertex attribute array.
struct ORBIS_UI_EXPORT GLAttribState
{
    GLCached<bool> enabled;
    GLCached<GLint> size;
    GLCached<GLenum> type;
    GLCached<GLsizei> stride;
    GLCached<quint64> pointer;
};

/// Scissor box as inclusive corners.
struct ORBIS_UI_EXPORT GLScissorBox
{
    int x1 = 0;
    int y1 = 0;
    int x2 = -1;
    int y2 = -1;
    bool operator==(const GLScissorBox& o) const
    {
        return x1 == o.x1 && y1 == o.y1 && x2 == o.x2 && y2 == o.y2;
    }
};

/// A record of the GL state that the engine caches, in a fixed order.
class ORBIS_UI_EXPORT GLState
{
public:
    static constexpr int kAttribCount = 5;

    GLState() = default;
    GLState(const GLState&) = default;
    GLState& operator=(const GLState&) = default;

    /// Fills the entries from the driver and marks them valid.
    void read();
    /// Pushes every valid entry to the driver.
    void apply() const;
    void clearToInvalid() { *this = GLState(); }

    /// The entry caching capability `cap`, or nullptr when it is not cached.
    GLCached<bool>* capability(GLenum cap);

    GLCached<bool> blend;
    GLCached<bool> scissorTest;
    GLCached<bool> stencilTest;
    GLCached<bool> depthTest;
    GLCached<bool> cullFace;
    GLCached<bool> multisample;
    GLCached<GLenum> blendSrc;
    GLCached<GLenum> blendDst;
    GLCached<GLenum> blendEquation;
    GLCached<GLuint> program;
    GLCached<GLuint> texture2D;
    GLCached<GLuint> textureCubeMap;
    GLCached<GLuint> textureArray2D;
    GLCached<GLenum> activeTexture;
    GLCached<GLenum> stencilFail;
    GLCached<GLenum> stencilDepthPass;
    GLCached<GLenum> stencilDepthFail;
    GLAttribState attribs[kAttribCount];
    GLCached<GLuint> arrayBuffer;
    GLCached<GLScissorBox> scissor;
};

} // namespace gfx
