#include "GLUtils.h"

#include "GLFunctions.h"
#include "GLStateManager.h"
#include "KtxFile.h"

#include <Logger.h>
#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QImageReader>
#include <stb_image.h>

static const char* const kLogSource = "graphics/GLUtils";

namespace gfx {

namespace {
QHash<GLuint, quint64> gTracked;
quint64 gTrackedBytes = 0;

// stb_image decodes the pictures applications ship, PNG and JPEG, fastest. Its
// readers of the rarer formats trust their headers (a 16-bit grey PNM reads past
// its data), so those, and whatever it lacks, go through Qt's readers.
bool decodedByStb(const QByteArray& data)
{
    return data.startsWith("\x89PNG\r\n\x1a\n") || data.startsWith("\xff\xd8\xff");
}

bool failed(const QString& fileName, const QString& reason)
{
    ORBIS_ERROR(QStringLiteral("Cannot load texture %1: %2").arg(fileName, reason));
    return false;
}

QString requiredExtension(quint32 internalFormat)
{
    switch (internalFormat) {
    case 0x83F0: // RGB DXT1
    case 0x83F1: // RGBA DXT1
        return QStringLiteral("GL_EXT_texture_compression_dxt1");
    case 0x83F2: // DXT3
    case 0x83F3: // DXT5
        return QStringLiteral("GL_EXT_texture_compression_s3tc");
    case 0x8D64:
        return QStringLiteral("GL_OES_compressed_ETC1_RGB8_texture");
    default:
        return QString();
    }
}
} // namespace

int GLUtils::largestTextureSize()
{
    GLint size = 0;
    GLFunctions::current()->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    // A driver that does not say is held to what the texture files may declare.
    return size > 0 ? size : 16384;
}

bool GLUtils::hasExtension(const char* name)
{
    const GLubyte* list = GLFunctions::current()->glGetString(GL_EXTENSIONS);
    if (!list)
        return false;
    const QByteArray extensions = QByteArray(reinterpret_cast<const char*>(list));
    return extensions.split(' ').contains(QByteArray(name));
}

GLuint GLUtils::createTexture(GLenum target, TextureFeatures features, bool mipmapped)
{
    GLFunctions* f = GLFunctions::current();
    GLStateManager* state = GLStateManager::instance();
    GLuint id = 0;
    f->glGenTextures(1, &id);
    if (target == GL_TEXTURE_CUBE_MAP)
        state->glBindTextureCubeMap(id);
    else
        state->glBindTexture2D(id);
    const GLint wrap = features.testFlag(TextureFeature::Repeat) ? GL_REPEAT : GL_CLAMP_TO_EDGE;
    f->glTexParameteri(target, GL_TEXTURE_MIN_FILTER, mipmapped ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR);
    f->glTexParameteri(target, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    f->glTexParameteri(target, GL_TEXTURE_WRAP_S, wrap);
    f->glTexParameteri(target, GL_TEXTURE_WRAP_T, wrap);
    f->glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    return id;
}

void GLUtils::track(GLuint id, quint64 bytes)
{
    gTrackedBytes += bytes - gTracked.value(id);
    gTracked.insert(id, bytes);
}

bool GLUtils::uploadRgba(const uchar* pixels, int width, int height, GLuint& id, quint64& bytes,
                         TextureFeatures features)
{
    const bool mipmaps = features.testFlag(TextureFeature::Mipmaps);
    id = createTexture(GL_TEXTURE_2D, features, mipmaps);
    GLFunctions* f = GLFunctions::current();
    f->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    bytes = quint64(width) * quint64(height) * 4;
    if (mipmaps) {
        f->glGenerateMipmap(GL_TEXTURE_2D);
        bytes += bytes / 3;
    }
    track(id, bytes);
    return true;
}

bool GLUtils::upload(const QImage& image, GLuint& id, quint64& bytes, TextureFeatures features)
{
    id = 0;
    bytes = 0;
    if (image.isNull()) {
        ORBIS_ERROR(QStringLiteral("Cannot upload a null image"));
        return false;
    }
    const QImage rgba = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    return uploadRgba(rgba.constBits(), rgba.width(), rgba.height(), id, bytes, features);
}

bool GLUtils::uploadFromFile(const QString& fileName, GLuint& id, int& width, int& height, quint64& bytes,
                             TextureFeatures features)
{
    id = 0;
    bytes = 0;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return failed(fileName, file.errorString());
    return uploadEncoded(file.readAll(), fileName, id, width, height, bytes, features);
}

bool GLUtils::uploadEncoded(const QByteArray& data, const QString& fileName, GLuint& id, int& width,
                            int& height, quint64& bytes, TextureFeatures features)
{
    id = 0;
    bytes = 0;
    const auto* encoded = reinterpret_cast<const stbi_uc*>(data.constData());
    const bool withStb = decodedByStb(data);
    int channels = 0;
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    // A few damaged header bytes can claim a picture of gigabytes: what no texture
    // can hold is refused before it is decoded.
    QSize declared;
    if (withStb && stbi_info_from_memory(encoded, data.size(), &width, &height, &channels))
        declared = QSize(width, height);
    else
        declared = reader.size();
    const int largest = largestTextureSize();
    if (declared.width() > largest || declared.height() > largest)
        return failed(fileName, QStringLiteral("%1x%2 pixels exceed the largest texture, %3x%3")
                                    .arg(declared.width())
                                    .arg(declared.height())
                                    .arg(largest));
    stbi_uc* pixels =
        withStb ? stbi_load_from_memory(encoded, data.size(), &width, &height, &channels, 4) : nullptr;
    if (!pixels) {
        const QImage image = reader.read();
        if (image.isNull())
            return failed(fileName,
                          withStb ? QString::fromLatin1(stbi_failure_reason()) : reader.errorString());
        width = image.width();
        height = image.height();
        return upload(image, id, bytes, features);
    }
    // stb_image gives straight alpha; the engine blends premultiplied colours.
    for (int i = 0, n = width * height * 4; i < n; i += 4) {
        const unsigned a = pixels[i + 3];
        for (int c = 0; c < 3; ++c)
            pixels[i + c] = stbi_uc((pixels[i + c] * a + 127) / 255);
    }
    uploadRgba(pixels, width, height, id, bytes, features);
    stbi_image_free(pixels);
    return true;
}

bool GLUtils::uploadKtx(const QString& fileName, GLuint& id, GLenum& target, int& width, int& height,
                        quint64& bytes, TextureFeatures features)
{
    id = 0;
    bytes = 0;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return failed(fileName, file.errorString());
    return uploadKtxData(file.readAll(), fileName, id, target, width, height, bytes, features);
}

bool GLUtils::uploadKtxData(const QByteArray& data, const QString& fileName, GLuint& id, GLenum& target,
                            int& width, int& height, quint64& bytes, TextureFeatures features)
{
    id = 0;
    bytes = 0;
    KtxFile ktx;
    if (!ktx.parse(data))
        return failed(fileName, ktx.errorString());
    if (ktx.isCompressed()) {
        const QString extension = requiredExtension(ktx.glInternalFormat());
        if (extension.isEmpty() || !hasExtension(extension.toLatin1().constData()))
            return failed(fileName, QStringLiteral("compressed format 0x%1 is not supported by the driver")
                                        .arg(ktx.glInternalFormat(), 0, 16));
    }
    target = ktx.isCube() ? GL_TEXTURE_CUBE_MAP : GL_TEXTURE_2D;
    width = ktx.width();
    height = ktx.height();
    const bool generate =
        features.testFlag(TextureFeature::Mipmaps) && ktx.levelCount() == 1 && !ktx.isCompressed();
    id = createTexture(target, features, ktx.levelCount() > 1 || generate);
    GLFunctions* f = GLFunctions::current();
    // The container pads every row to four bytes.
    f->glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    for (int level = 0; level < ktx.levelCount(); ++level) {
        const int w = qMax(1, width >> level);
        const int h = qMax(1, height >> level);
        for (int face = 0; face < ktx.faceCount(); ++face) {
            const GLenum faceTarget =
                ktx.isCube() ? GLenum(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face) : GLenum(GL_TEXTURE_2D);
            const QByteArray& pixels = ktx.image(level, face);
            // What the texture holds, without the file's row padding.
            bytes += ktx.isCompressed() ? quint64(pixels.size())
                                        : quint64(w) * quint64(h) *
                                              quint64(KtxFile::pixelBytes(ktx.glFormat(), ktx.glType()));
            if (ktx.isCompressed())
                f->glCompressedTexImage2D(faceTarget, level, ktx.glInternalFormat(), w, h, 0, pixels.size(),
                                          pixels.constData());
            else
                f->glTexImage2D(faceTarget, level, GLint(ktx.glFormat()), w, h, 0, ktx.glFormat(),
                                ktx.glType(), pixels.constData());
        }
    }
    if (generate) {
        f->glGenerateMipmap(target);
        bytes += bytes / 3;
    }
    track(id, bytes);
    return true;
}

void GLUtils::glDeleteTrackedTextures(int count, const GLuint* names)
{
    if (count <= 0)
        return;
    for (int i = 0; i < count; ++i)
        gTrackedBytes -= gTracked.take(names[i]);
    GLFunctions::current()->glDeleteTextures(count, names);
}

quint64 GLUtils::trackedTextureBytes()
{
    return gTrackedBytes;
}

int GLUtils::trackedTextureCount()
{
    return gTracked.size();
}

} // namespace gfx
