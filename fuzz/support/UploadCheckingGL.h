#pragma once

#include "GLCallRecorder.h"

// Stands in for the driver during texture uploads and reads every byte that a
// real driver would read from the pixels handed to it (rows padded to the unpack
// alignment), so that a buffer shorter than its width, height, format and type
// call for is caught by the address sanitizer instead of going unnoticed.
class UploadCheckingGL : public gfx::GLCallRecorder
{
public:
    // What an embedded GPU offers; larger images are refused before decoding.
    static constexpr int kMaxTextureSize = 4096;

    UploadCheckingGL();
    ~UploadCheckingGL() override;

    void glPixelStorei(GLenum pname, GLint param) override;
    void glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height,
                      GLint border, GLenum format, GLenum type, const void* pixels) override;
    void glCompressedTexImage2D(GLenum target, GLint level, GLenum internalFormat, GLsizei width,
                                GLsizei height, GLint border, GLsizei imageSize, const void* data) override;

    // Bytes of one pixel for a format and type, 0 for combinations GL refuses.
    static int pixelBytes(GLenum format, GLenum type);

private:
    static void touch(const void* data, qint64 size);

    gfx::GLFunctions* mPrevious;
    int mUnpackAlignment = 4;
};
