#include "GLExtensions.h"

#include "GLFunctions.h"

#include <Logger.h>
#include <QOpenGLContext>
#include <QRegularExpression>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/GLExtensions";

QByteArray glString(GLFunctions* f, GLenum name)
{
    const GLubyte* text = f->glGetString(name);
    return text ? QByteArray(reinterpret_cast<const char*>(text)) : QByteArray();
}
} // namespace

void GLExtensions::load()
{
    GLFunctions* f = GLFunctions::current();
    mFunctions = f;
    mContext = QOpenGLContext::currentContext();
    mLoaded = true;
    mExtensions.clear();
    for (const QByteArray& name : glString(f, GL_EXTENSIONS).split(' '))
        if (!name.isEmpty())
            mExtensions.insert(name);
    // "OpenGL ES 3.2 Mesa ..." on ES, "4.5 (Compatibility Profile) Mesa ..." on desktop.
    const QString version = QString::fromLatin1(glString(f, GL_VERSION));
    mES = version.startsWith(QLatin1String("OpenGL ES"));
    const QRegularExpressionMatch match = QRegularExpression(QStringLiteral("(\\d+)\\.\\d+")).match(version);
    mMajorVersion = match.hasMatch() ? match.captured(1).toInt() : 0;
}

void GLExtensions::ensureLoaded()
{
    if (!mLoaded || mFunctions != GLFunctions::current() || mContext != QOpenGLContext::currentContext())
        load();
}

bool GLExtensions::has(const char* extension)
{
    ensureLoaded();
    return mExtensions.contains(QByteArray(extension));
}

int GLExtensions::majorVersion()
{
    ensureLoaded();
    return mMajorVersion;
}

bool GLExtensions::isES()
{
    ensureLoaded();
    return mES;
}

bool GLExtensions::hasTextureArrays()
{
    return majorVersion() >= 3 || has("GL_EXT_texture_array") || has("GL_NV_texture_array");
}

bool GLExtensions::requireTextureArrays()
{
    if (hasTextureArrays())
        return true;
    if (!mArraysReported) {
        mArraysReported = true;
        ORBIS_ERROR(
            QStringLiteral("Array textures need GL_TEXTURE_2D_ARRAY (0x8C1A), which this driver lacks "
                           "(no GL_EXT_texture_array, GL_NV_texture_array or version 3 context): "
                           "TextureArray2D is refused"));
    }
    return false;
}

void loadExtensions()
{
    GLExtensions::instance()->load();
}

} // namespace gfx
