#include "ImageSlice.h"

#include "TextureCache.h"

#include <QPixmap>

namespace gfx {

namespace {
// The three spans of one axis: near cut, middle, far cut.
struct Spans
{
    int start[3];
    int length[3];
};

Spans spans(int origin, int length, int nearCut, int farCut)
{
    if (nearCut + farCut > length && nearCut + farCut > 0) {
        const int near = nearCut * length / (nearCut + farCut);
        nearCut = near;
        farCut = length - near;
    }
    return {{origin, origin + nearCut, origin + length - farCut},
            {nearCut, length - nearCut - farCut, farCut}};
}

// Column and row of a part, 0 to 2.
int column(ImageSlice::Slice slice)
{
    switch (slice) {
    case ImageSlice::TopLeft:
    case ImageSlice::Left:
    case ImageSlice::BottomLeft:
        return 0;
    case ImageSlice::Top:
    case ImageSlice::Center:
    case ImageSlice::Bottom:
        return 1;
    default:
        return 2;
    }
}

int row(ImageSlice::Slice slice)
{
    if (slice <= ImageSlice::TopRight)
        return 0;
    return slice <= ImageSlice::Right ? 1 : 2;
}

QRect part(const Spans& x, const Spans& y, ImageSlice::Slice slice)
{
    const int c = column(slice);
    const int r = row(slice);
    return QRect(x.start[c], y.start[r], x.length[c], y.length[r]);
}
} // namespace

ImageSlice::ImageSlice(const TextureKey& texture, const QSize& size, const QMargins& cuts, bool hasAlpha)
    : mTexture(texture), mSize(size), mCuts(cuts), mHasAlpha(hasAlpha)
{}

ImageSlice::ImageSlice(const QPixmap& pixmap, const QMargins& cuts)
    : ImageSlice(pixmap.isNull() ? TextureKey() : TextureCache::instance()->addOrLookup(pixmap),
                 pixmap.size(), cuts, pixmap.hasAlphaChannel())
{}

QRect ImageSlice::source(Slice slice) const
{
    return part(spans(0, mSize.width(), mCuts.left(), mCuts.right()),
                spans(0, mSize.height(), mCuts.top(), mCuts.bottom()), slice);
}

QRect ImageSlice::target(Slice slice, const QRect& target) const
{
    return part(spans(target.x(), target.width(), mCuts.left(), mCuts.right()),
                spans(target.y(), target.height(), mCuts.top(), mCuts.bottom()), slice);
}

} // namespace gfx
