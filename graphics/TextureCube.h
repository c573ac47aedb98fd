#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Texture.h"

namespace gfx {

/// A cube map: six square faces of one size, in the order +X, -X, +Y, -Y, +Z, -Z.
class ORBIS_UI_EXPORT TextureCube : public Texture
{
public:
    static constexpr int kFaces = 6;

    TextureCube();

    /// Storage for six faces of `edge` x `edge` pixels.
    bool allocate(int edge, GLenum format, TextureFeatures features = TextureFeature::None);
    /// One face, the image the size of the allocated faces.
    bool uploadFace(int face, const QImage& image);

    bool bind() const override;
};

} // namespace gfx
