#include "UploadCheckingGL.h"

#include "FuzzEnvironment.h"

#ifndef GL_HALF_FLOAT_OES
#define GL_HALF_FLOAT_OES 0x8D61
#endif

UploadCheckingGL::UploadCheckingGL() : mPrevious(gfx::GLFunctions::install(this))
{
    setQueryResult(GL_MAX_TEXTURE_SIZE, {kMaxTextureSize});
}

UploadCheckingGL::~UploadCheckingGL()
{
    gfx::GLFunctions::install(mPrevious);
}

void UploadCheckingGL::glPixelStorei(GLenum pname, GLint param)
{
    GLCallRecorder::glPixelStorei(pname, param);
    if (pname == GL_UNPACK_ALIGNMENT && (param == 1 || param == 2 || param == 4 || param == 8))
        mUnpackAlignment = param;
}

int UploadCheckingGL::pixelBytes(GLenum format, GLenum type)
{
    int components = 0;
    switch (format) {
    case GL_ALPHA:
    case GL_LUMINANCE:
        components = 1;
        break;
    case GL_LUMINANCE_ALPHA:
        components = 2;
        break;
    case GL_RGB:
        components = 3;
        break;
    case GL_RGBA:
        components = 4;
        break;
    default:
        return 0;
    }
    switch (type) {
    case GL_UNSIGNED_BYTE:
        return components;
    case GL_UNSIGNED_SHORT_5_6_5:
        return format == GL_RGB ? 2 : 0;
    case GL_UNSIGNED_SHORT_4_4_4_4:
    case GL_UNSIGNED_SHORT_5_5_5_1:
        return format == GL_RGBA ? 2 : 0;
    case GL_HALF_FLOAT_OES:
        return 2 * components;
    case GL_FLOAT:
        return 4 * components;
    default:
        return 0;
    }
}

void UploadCheckingGL::touch(const void* data, qint64 size)
{
    if (size <= 0)
        return;
    FuzzEnvironment::check(data != nullptr, "texture upload without pixels");
    const auto* bytes = static_cast<const volatile unsigned char*>(data);
    unsigned char sum = 0;
    for (qint64 i = 0; i < size; ++i)
        sum ^= bytes[i];
    static volatile unsigned char sink;
    sink = sum;
}

void UploadCheckingGL::glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width,
                                    GLsizei height, GLint border, GLenum format, GLenum type,
                                    const void* pixels)
{
    GLCallRecorder::glTexImage2D(target, level, internalFormat, width, height, border, format, type, pixels);
    const int bytesPerPixel = pixelBytes(format, type);
    // What a driver refuses without reading: the engine must not depend on it.
    FuzzEnvironment::check(bytesPerPixel > 0 && GLenum(internalFormat) == format,
                           "texture format GL refuses");
    FuzzEnvironment::check(width >= 0 && height >= 0 && width <= kMaxTextureSize && height <= kMaxTextureSize,
                           "texture size GL refuses");
    if (!pixels || width == 0 || height == 0)
        return;
    const qint64 row = qint64(width) * bytesPerPixel;
    const qint64 stride = (row + mUnpackAlignment - 1) / mUnpackAlignment * mUnpackAlignment;
    touch(pixels, stride * (height - 1) + row);
}

void UploadCheckingGL::glCompressedTexImage2D(GLenum target, GLint level, GLenum internalFormat,
                                              GLsizei width, GLsizei height, GLint border, GLsizei imageSize,
                                              const void* data)
{
    GLCallRecorder::glCompressedTexImage2D(target, level, internalFormat, width, height, border, imageSize,
                                           data);
    touch(data, imageSize);
}
