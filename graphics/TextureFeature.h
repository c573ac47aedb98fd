#pragma once

#include <QFlags>

namespace gfx {

/// How a texture is uploaded and sampled.
enum class TextureFeature
{
    None = 0x0,
    /// Build a mip chain (from the file's own levels where it has them).
    Mipmaps = 0x1,
    /// Wrap instead of clamping at the edges.
    Repeat = 0x2,
};
Q_DECLARE_FLAGS(TextureFeatures, TextureFeature)
Q_DECLARE_OPERATORS_FOR_FLAGS(TextureFeatures)

} // namespace gfx
