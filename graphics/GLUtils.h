#pragma once

#include "OrbisUIFrameworkExport.h"

#include "TextureFeature.h"

#include <QImage>
#include <QString>
#include <qopengl.h>

namespace gfx {

// Texture uploads and the tracked deletion of textures. Every upload leaves its
// texture bound on the current unit and adds its bytes to a live count that the
// frame statistics show. A failed upload logs an error naming the file and
// reports texture 0.
class ORBIS_UI_INTERNAL_EXPORT GLUtils
{
public:
    // Uploads `image` as premultiplied RGBA.
    static bool upload(const QImage& image, GLuint& id, quint64& bytes, TextureFeatures features);
    // Decodes a file with stb_image (Qt's readers for what it does not know).
    static bool uploadFromFile(const QString& fileName, GLuint& id, int& width, int& height, quint64& bytes,
                               TextureFeatures features);
    // The same for a file's contents; fileName only names it in messages.
    static bool uploadEncoded(const QByteArray& data, const QString& fileName, GLuint& id, int& width,
                              int& height, quint64& bytes, TextureFeatures features);
    // Uploads a KTX 1.1 file with its mip chain; a 6-face file becomes a cube map.
    static bool uploadKtx(const QString& fileName, GLuint& id, GLenum& target, int& width, int& height,
                          quint64& bytes, TextureFeatures features);
    static bool uploadKtxData(const QByteArray& data, const QString& fileName, GLuint& id, GLenum& target,
                              int& width, int& height, quint64& bytes, TextureFeatures features);
    static void glDeleteTrackedTextures(int count, const GLuint* names);

    // Counts `bytes` for texture `id`, replacing what was counted for it before.
    static void track(GLuint id, quint64 bytes);
    static quint64 trackedTextureBytes();
    static int trackedTextureCount();
    static bool hasExtension(const char* name);
    // GL_MAX_TEXTURE_SIZE of the driver.
    static int largestTextureSize();

private:
    static GLuint createTexture(GLenum target, TextureFeatures features, bool mipmapped);
    static bool uploadRgba(const uchar* pixels, int width, int height, GLuint& id, quint64& bytes,
                           TextureFeatures features);
};

} // namespace gfx
