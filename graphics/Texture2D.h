#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Texture.h"

namespace gfx {

/// A 2D texture: whole uploads, or storage allocated once and filled in parts.
class ORBIS_UI_EXPORT Texture2D : public Texture
{
public:
    Texture2D();

    /// Storage of `size` in `format`, its contents undefined until uploaded.
    bool allocate(const QSize& size, GLenum format, TextureFeatures features = TextureFeature::None);
    /// The image as the whole texture, storage resized to it.
    bool upload(const QImage& image, GLenum format = GL_RGBA,
                TextureFeatures features = TextureFeature::None);
    /// The image's pixels at `at` inside the allocated storage, in its format.
    bool uploadSubImage(const QPoint& at, const QImage& image);

    bool bind() const override;
};

} // namespace gfx
