#include "Texture.h"

#include "GLFunctions.h"
#include "GLStateManager.h"
#include "GLUtils.h"
#include "TextureCache.h"

#include <Logger.h>
#include <QCoreApplication>
#include <QOpenGLContext>
#include <QThread>

namespace gfx {

Texture::Texture(GLenum target, const char* logSource) : mLogSource(logSource), mTarget(target) {}

Texture::~Texture()
{
    if (!mId || Singleton<TextureCache>::isShutdown() || (mMadeInContext && !mGroup))
        return;
    // Off the GUI thread the name cannot be queued safely: it is reported and left
    // to the context.
    if (onGuiThread())
        TextureCache::instance()->deleteLater(mId);
}

bool Texture::onGuiThread() const
{
    if (QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread())
        return true;
    return Logger::logAssert("QCoreApplication::instance() && QThread::currentThread() == "
                             "QCoreApplication::instance()->thread()",
                             QStringLiteral("GL textures are made and deleted on the GUI thread only"),
                             mLogSource, __LINE__);
}

int Texture::bytesPerPixel(GLenum format)
{
    switch (format) {
    case GL_ALPHA:
    case GL_LUMINANCE:
        return 1;
    case GL_LUMINANCE_ALPHA:
        return 2;
    case GL_RGB:
        return 3;
    case GL_RGBA:
        return 4;
    default:
        return 0;
    }
}

bool Texture::checkFormat(GLenum format) const
{
    if (bytesPerPixel(format) > 0)
        return true;
    return Logger::logAssert("bytesPerPixel(format) > 0",
                             QStringLiteral("Unsupported texture format 0x%1").arg(format, 0, 16), mLogSource,
                             __LINE__);
}

QByteArray Texture::pixels(const QImage& image, GLenum format)
{
    const int bpp = bytesPerPixel(format);
    if (image.isNull() || bpp == 0)
        return QByteArray();
    QImage converted;
    switch (format) {
    case GL_ALPHA:
        converted = image.convertToFormat(QImage::Format_Alpha8);
        break;
    case GL_LUMINANCE:
        converted = image.convertToFormat(QImage::Format_Grayscale8);
        break;
    case GL_RGB:
        converted = image.convertToFormat(QImage::Format_RGB888);
        break;
    default:
        converted = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        break;
    }
    const int rowBytes = image.width() * bpp;
    QByteArray out(rowBytes * image.height(), Qt::Uninitialized);
    for (int y = 0; y < image.height(); ++y) {
        char* row = out.data() + y * rowBytes;
        if (format != GL_LUMINANCE_ALPHA) {
            memcpy(row, converted.constScanLine(y), size_t(rowBytes));
            continue;
        }
        const auto* rgba = reinterpret_cast<const uchar*>(converted.constScanLine(y));
        for (int x = 0; x < image.width(); ++x, rgba += 4) {
            row[2 * x] = char(qGray(rgba[0], rgba[1], rgba[2]));
            row[2 * x + 1] = char(rgba[3]);
        }
    }
    return out;
}

bool Texture::ensureCreated(TextureFeatures features)
{
    if (!onGuiThread())
        return false;
    if (mId)
        return true;
    GLFunctions* f = GLFunctions::current();
    f->glGenTextures(1, &mId);
    if (QOpenGLContext* context = QOpenGLContext::currentContext()) {
        mGroup = context->shareGroup();
        mMadeInContext = true;
    }
    bind();
    const bool mipmaps = features.testFlag(TextureFeature::Mipmaps);
    const GLint wrap = features.testFlag(TextureFeature::Repeat) ? GL_REPEAT : GL_CLAMP_TO_EDGE;
    f->glTexParameteri(mTarget, GL_TEXTURE_MIN_FILTER, mipmaps ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR);
    f->glTexParameteri(mTarget, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    f->glTexParameteri(mTarget, GL_TEXTURE_WRAP_S, wrap);
    f->glTexParameteri(mTarget, GL_TEXTURE_WRAP_T, wrap);
    return mId != 0;
}

void Texture::setStorage(const QSize& size, GLenum format, quint64 bytes)
{
    mSize = size;
    mFormat = format;
    mBytes = bytes;
    GLUtils::track(mId, bytes);
}

bool Texture::fits(const QPoint& at, const QImage& image, const QSize& area) const
{
    if (QRect(QPoint(), area).contains(QRect(at, image.size())) && !image.isNull())
        return true;
    return Logger::logAssert(
        "QRect(QPoint(), size()).contains(QRect(at, image.size()))",
        QStringLiteral("Sub-image of %1 x %2 at %3, %4 does not fit a texture of %5 x %6")
            .arg(image.width())
            .arg(image.height())
            .arg(at.x())
            .arg(at.y())
            .arg(area.width())
            .arg(area.height()),
        mLogSource, __LINE__);
}

} // namespace gfx
