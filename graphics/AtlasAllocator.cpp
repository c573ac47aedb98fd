#include "AtlasAllocator.h"

#include <algorithm>

namespace gfx {

namespace {
// Shelf heights are multiples of this, so that similar heights share shelves.
constexpr int kShelfStep = 8;

int shelfHeight(int height)
{
    return (height + kShelfStep - 1) / kShelfStep * kShelfStep;
}
} // namespace

AtlasAllocator::AtlasAllocator(const QSize& size) : mSize(size)
{
    if (!size.isEmpty())
        mFreeBands.append({0, size.height()});
}

void AtlasAllocator::insertSpan(QVector<Span>& spans, Span span)
{
    auto it = std::lower_bound(spans.begin(), spans.end(), span.start,
                               [](const Span& s, int start) { return s.start < start; });
    int index = int(it - spans.begin());
    spans.insert(index, span);
    if (index + 1 < spans.size() && spans[index].start + spans[index].length == spans[index + 1].start) {
        spans[index].length += spans[index + 1].length;
        spans.remove(index + 1);
    }
    if (index > 0 && spans[index - 1].start + spans[index - 1].length == spans[index].start) {
        spans[index - 1].length += spans[index].length;
        spans.remove(index);
    }
}

bool AtlasAllocator::takeSpan(QVector<Span>& spans, int length, int& start)
{
    for (int i = 0; i < spans.size(); ++i) {
        if (spans[i].length < length)
            continue;
        start = spans[i].start;
        spans[i].start += length;
        spans[i].length -= length;
        if (spans[i].length == 0)
            spans.remove(i);
        return true;
    }
    return false;
}

bool AtlasAllocator::placeOn(Shelf& shelf, const QSize& size, QRect& out)
{
    int x = 0;
    if (!takeSpan(shelf.free, size.width(), x))
        return false;
    out = QRect(QPoint(x, shelf.y), size);
    mUsedArea += qint64(size.width()) * size.height();
    return true;
}

bool AtlasAllocator::allocate(const QSize& size, QRect& out)
{
    if (size.isEmpty() || size.width() > mSize.width() || size.height() > mSize.height())
        return false;
    const int wanted = shelfHeight(size.height());
    const int waste = std::max(kShelfStep, size.height() / 2);
    for (Shelf& shelf : mShelves)
        if (shelf.height >= size.height() && shelf.height - size.height() <= waste &&
            placeOn(shelf, size, out))
            return true;
    // A new shelf, or one of the exact height when the rounded one is not free.
    int y = 0;
    int height = wanted;
    bool opened = takeSpan(mFreeBands, height, y);
    if (!opened && wanted != size.height()) {
        height = size.height();
        opened = takeSpan(mFreeBands, height, y);
    }
    if (opened) {
        auto it = std::lower_bound(mShelves.begin(), mShelves.end(), y,
                                   [](const Shelf& s, int top) { return s.y < top; });
        it = mShelves.insert(it, Shelf{y, height, {{0, mSize.width()}}});
        return placeOn(*it, size, out);
    }
    // Crowded: any shelf tall enough, whatever the waste.
    for (Shelf& shelf : mShelves)
        if (shelf.height >= size.height() && placeOn(shelf, size, out))
            return true;
    return false;
}

void AtlasAllocator::release(const QRect& rect)
{
    auto it = std::lower_bound(mShelves.begin(), mShelves.end(), rect.y(),
                               [](const Shelf& s, int top) { return s.y < top; });
    if (it == mShelves.end() || it->y != rect.y())
        return;
    insertSpan(it->free, {rect.x(), rect.width()});
    mUsedArea -= qint64(rect.width()) * rect.height();
    if (it->free.size() == 1 && it->free.first().length == mSize.width()) {
        insertSpan(mFreeBands, {it->y, it->height});
        mShelves.erase(it);
    }
}

} // namespace gfx
