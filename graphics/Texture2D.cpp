#include "Texture2D.h"

#include "GLFunctions.h"
#include "GLStateManager.h"

namespace gfx {

namespace {
const char* const kLogSource = "graphics/Texture2D";
} // namespace

Texture2D::Texture2D() : Texture(GL_TEXTURE_2D, kLogSource) {}

bool Texture2D::bind() const
{
    if (!id())
        return false;
    GLStateManager::instance()->glBindTexture2D(id());
    return true;
}

bool Texture2D::allocate(const QSize& size, GLenum format, TextureFeatures features)
{
    if (!ORBIS_ASSERT(!size.isEmpty(), QStringLiteral("A texture needs a size")) || !checkFormat(format) ||
        !ensureCreated(withoutMipmaps(features)))
        return false;
    bind();
    GLFunctions::current()->glTexImage2D(GL_TEXTURE_2D, 0, GLint(format), size.width(), size.height(), 0,
                                         format, GL_UNSIGNED_BYTE, nullptr);
    setStorage(size, format, quint64(size.width()) * quint64(size.height()) * quint64(bytesPerPixel(format)));
    return true;
}

bool Texture2D::upload(const QImage& image, GLenum format, TextureFeatures features)
{
    if (!ORBIS_ASSERT(!image.isNull(), QStringLiteral("Uploading a null image")) || !checkFormat(format) ||
        !ensureCreated(features))
        return false;
    const QByteArray data = pixels(image, format);
    bind();
    GLFunctions* f = GLFunctions::current();
    f->glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    f->glTexImage2D(GL_TEXTURE_2D, 0, GLint(format), image.width(), image.height(), 0, format,
                    GL_UNSIGNED_BYTE, data.constData());
    quint64 bytes = quint64(data.size());
    if (features.testFlag(TextureFeature::Mipmaps)) {
        f->glGenerateMipmap(GL_TEXTURE_2D);
        bytes += bytes / 3;
    }
    setStorage(image.size(), format, bytes);
    return true;
}

bool Texture2D::uploadSubImage(const QPoint& at, const QImage& image)
{
    if (!ORBIS_ASSERT(id(), QStringLiteral("Sub-image upload before the texture has storage")) ||
        !fits(at, image, size()) || !onGuiThread())
        return false;
    const QByteArray data = pixels(image, format());
    bind();
    GLFunctions* f = GLFunctions::current();
    f->glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    f->glTexSubImage2D(GL_TEXTURE_2D, 0, at.x(), at.y(), image.width(), image.height(), format(),
                       GL_UNSIGNED_BYTE, data.constData());
    return true;
}

} // namespace gfx
