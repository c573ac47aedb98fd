// Encoded images (PNG and JPEG above all, anything the decoders take) through the
// engine's texture upload, to a stand-in driver that reads every byte a real one
// would.

#include "FuzzEnvironment.h"
#include "GLUtils.h"
#include "UploadCheckingGL.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzEnvironment::instance();
    UploadCheckingGL gl;
    GLuint id = 0;
    int width = 0;
    int height = 0;
    quint64 bytes = 0;
    const bool uploaded =
        gfx::GLUtils::uploadEncoded(FuzzEnvironment::bytes(data, size), QStringLiteral("fuzz"), id, width,
                                    height, bytes, gfx::TextureFeatures());
    FuzzEnvironment::check(uploaded == (id != 0), "an upload reports its texture");
    FuzzEnvironment::check(!uploaded || (width > 0 && height > 0 && bytes == quint64(width) * height * 4),
                           "an uploaded image has a size");
    if (id)
        gfx::GLUtils::glDeleteTrackedTextures(1, &id);
    return 0;
}
