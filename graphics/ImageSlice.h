#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TextureKey.h"

#include <QFlags>
#include <QMargins>
#include <QRect>

class QPixmap;

namespace gfx {

/// A nine-patch: a picture cut by two vertical and two horizontal lines. Drawn into
/// a rectangle, the corners keep their size, the edges stretch along their side
/// and the centre stretches both ways; corners shrink evenly when the rectangle is
/// smaller than the two of them.
class ORBIS_UI_EXPORT ImageSlice
{
public:
    enum Slice
    {
        TopLeft = 0x1,
        Top = 0x2,
        TopRight = 0x4,
        Left = 0x8,
        Center = 0x10,
        Right = 0x20,
        BottomLeft = 0x40,
        Bottom = 0x80,
        BottomRight = 0x100,
        All = 0x1ff,
    };
    Q_DECLARE_FLAGS(Slices, Slice)

    ImageSlice() = default;
    /// `cuts`: how far each cut line lies from its edge, in picture pixels.
    ImageSlice(const TextureKey& texture, const QSize& size, const QMargins& cuts, bool hasAlpha);
    /// Through the texture cache.
    ImageSlice(const QPixmap& pixmap, const QMargins& cuts);

    bool isNull() const { return mTexture.isNull() || mSize.isEmpty(); }
    const TextureKey& texture() const { return mTexture; }
    QSize size() const { return mSize; }
    const QMargins& cuts() const { return mCuts; }
    bool hasAlpha() const { return mHasAlpha; }

    /// The part's rectangle in the picture, and where it lands in `target`.
    QRect source(Slice slice) const;
    QRect target(Slice slice, const QRect& target) const;

private:
    TextureKey mTexture;
    QSize mSize;
    QMargins mCuts;
    bool mHasAlpha = false;
};

} // namespace gfx

Q_DECLARE_OPERATORS_FOR_FLAGS(gfx::ImageSlice::Slices)
