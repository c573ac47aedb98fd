#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Texture.h"

namespace gfx {

/// Layers of 2D images of one size in one texture, bound to GL_TEXTURE_2D_ARRAY
/// (0x8C1A). Core ES 2 has no array textures: without the driver's support every
/// operation is refused without effect (reported once, see GLExtensions).
class ORBIS_UI_EXPORT TextureArray2D : public Texture
{
public:
    TextureArray2D();

    static bool isSupported();

    bool allocate(const QSize& size, int layers, GLenum format,
                  TextureFeatures features = TextureFeature::None);
    /// The image's pixels at `at` in `layer`.
    bool uploadLayer(int layer, const QImage& image, const QPoint& at = QPoint());
    int layers() const { return mLayers; }

    bool bind() const override;

private:
    int mLayers = 0;
};

} // namespace gfx
