#include "TextureArray2D.h"

#include "GLExtensions.h"
#include "GLFunctions.h"
#include "GLStateManager.h"

namespace gfx {

namespace {
const char* const kLogSource = "graphics/TextureArray2D";
} // namespace

TextureArray2D::TextureArray2D() : Texture(GL_TEXTURE_2D_ARRAY, kLogSource) {}

bool TextureArray2D::isSupported()
{
    return GLExtensions::instance()->requireTextureArrays();
}

bool TextureArray2D::bind() const
{
    if (!id() || !isSupported())
        return false;
    GLStateManager::instance()->glBindTextureArray2D(id());
    return true;
}

bool TextureArray2D::allocate(const QSize& size, int layers, GLenum format, TextureFeatures features)
{
    if (!isSupported() ||
        !ORBIS_ASSERT(!size.isEmpty() && layers > 0,
                      QStringLiteral("An array texture needs a size and layers")) ||
        !checkFormat(format) || !ensureCreated(withoutMipmaps(features)))
        return false;
    bind();
    GLFunctions::current()->glTexImage3D(GL_TEXTURE_2D_ARRAY, 0, GLint(format), size.width(), size.height(),
                                         layers, 0, format, GL_UNSIGNED_BYTE, nullptr);
    mLayers = layers;
    setStorage(size, format,
               quint64(size.width()) * quint64(size.height()) * quint64(bytesPerPixel(format)) *
                   quint64(layers));
    return true;
}

bool TextureArray2D::uploadLayer(int layer, const QImage& image, const QPoint& at)
{
    if (!isSupported() || !ORBIS_ASSERT(id(), QStringLiteral("Layer upload before the array has storage")) ||
        !ORBIS_ASSERT(layer >= 0 && layer < mLayers,
                      QStringLiteral("No layer %1 in an array of %2").arg(layer).arg(mLayers)) ||
        !fits(at, image, size()) || !onGuiThread())
        return false;
    const QByteArray data = pixels(image, format());
    bind();
    GLFunctions* f = GLFunctions::current();
    f->glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    f->glTexSubImage3D(GL_TEXTURE_2D_ARRAY, 0, at.x(), at.y(), layer, image.width(), image.height(), 1,
                       format(), GL_UNSIGNED_BYTE, data.constData());
    return true;
}

} // namespace gfx
