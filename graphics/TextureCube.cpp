#include "TextureCube.h"

#include "GLFunctions.h"
#include "GLStateManager.h"

namespace gfx {

namespace {
const char* const kLogSource = "graphics/TextureCube";
} // namespace

TextureCube::TextureCube() : Texture(GL_TEXTURE_CUBE_MAP, kLogSource) {}

bool TextureCube::bind() const
{
    if (!id())
        return false;
    GLStateManager::instance()->glBindTextureCubeMap(id());
    return true;
}

bool TextureCube::allocate(int edge, GLenum format, TextureFeatures features)
{
    if (!ORBIS_ASSERT(edge > 0, QStringLiteral("A cube map needs faces of at least one pixel")) ||
        !checkFormat(format) || !ensureCreated(withoutMipmaps(features)))
        return false;
    bind();
    GLFunctions* f = GLFunctions::current();
    for (int face = 0; face < kFaces; ++face)
        f->glTexImage2D(GLenum(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face), 0, GLint(format), edge, edge, 0,
                        format, GL_UNSIGNED_BYTE, nullptr);
    setStorage(QSize(edge, edge), format,
               quint64(edge) * quint64(edge) * quint64(bytesPerPixel(format)) * kFaces);
    return true;
}

bool TextureCube::uploadFace(int face, const QImage& image)
{
    if (!ORBIS_ASSERT(face >= 0 && face < kFaces, QStringLiteral("No cube map face %1").arg(face)) ||
        !ORBIS_ASSERT(id(), QStringLiteral("Face upload before the cube map has storage")) ||
        !ORBIS_ASSERT(image.size() == size(), QStringLiteral("A %1 x %2 image cannot be a face of %3 x %4")
                                                  .arg(image.width())
                                                  .arg(image.height())
                                                  .arg(size().width())
                                                  .arg(size().height())) ||
        !onGuiThread())
        return false;
    const QByteArray data = pixels(image, format());
    bind();
    GLFunctions* f = GLFunctions::current();
    f->glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    f->glTexSubImage2D(GLenum(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face), 0, 0, 0, image.width(), image.height(),
                       format(), GL_UNSIGNED_BYTE, data.constData());
    return true;
}

} // namespace gfx
