// KTX texture files, parsed and uploaded through the engine's texture path to a
// stand-in driver that reads every byte a real one would.

#include "FuzzEnvironment.h"
#include "GLUtils.h"
#include "KtxFile.h"
#include "UploadCheckingGL.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzEnvironment::instance();
    const QByteArray input = FuzzEnvironment::bytes(data, size);

    gfx::KtxFile header;
    const bool headerOk = header.parseHeader(input.left(gfx::KtxFile::kHeaderSize));
    gfx::KtxFile ktx;
    const bool ok = ktx.parse(input);
    FuzzEnvironment::check(!ok || headerOk, "a file that parses has a header that parses");
    FuzzEnvironment::check(ok || !ktx.errorString().isEmpty(), "a refused file says why");
    if (ok) {
        FuzzEnvironment::check(ktx.levelCount() >= 1 && (ktx.faceCount() == 1 || ktx.faceCount() == 6),
                               "levels and faces");
        FuzzEnvironment::check(ktx.totalBytes() <= quint64(input.size()), "no more pixels than bytes");
    }

    UploadCheckingGL gl;
    GLuint id = 0;
    GLenum target = 0;
    int width = 0;
    int height = 0;
    quint64 bytes = 0;
    const bool uploaded = gfx::GLUtils::uploadKtxData(input, QStringLiteral("fuzz.ktx"), id, target, width,
                                                      height, bytes, gfx::TextureFeature::Mipmaps);
    FuzzEnvironment::check(!uploaded || ok, "only files that parse are uploaded");
    if (id)
        gfx::GLUtils::glDeleteTrackedTextures(1, &id);
    return 0;
}
