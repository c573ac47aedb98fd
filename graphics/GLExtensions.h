#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QByteArray>
#include <QSet>
#include <Singleton.h>

class QOpenGLContext;

namespace gfx {

class GLFunctions;

// What the driver offers beyond the ES 2 core. The strings are read through the GL
// seam once, and again whenever the installed functions or the current context
// change. GUI thread only.
class ORBIS_UI_INTERNAL_EXPORT GLExtensions
{
public:
    static GLExtensions* instance() { return Singleton<GLExtensions>::instance(); }

    // Reads the extension and version strings of the current context again.
    void load();
    bool has(const char* extension);
    // Major version of the context (0 when unknown) and whether it is OpenGL ES.
    int majorVersion();
    bool isES();

    // GL_TEXTURE_2D_ARRAY (0x8C1A) with glTexImage3D: GL_EXT_texture_array,
    // GL_NV_texture_array, or a version 3 context. Core ES 2 has none of them.
    bool hasTextureArrays();
    // The same, logging the refusal clearly the first time it is met.
    bool requireTextureArrays();

private:
    friend class Singleton<GLExtensions>;
    GLExtensions() = default;

    void ensureLoaded();

    GLFunctions* mFunctions = nullptr;
    QOpenGLContext* mContext = nullptr;
    bool mLoaded = false;
    QSet<QByteArray> mExtensions;
    int mMajorVersion = 0;
    bool mES = false;
    bool mArraysReported = false;
};

// Reads the current context's extensions; the device calls it once its window's
// context exists.
void loadExtensions();

} // namespace gfx
