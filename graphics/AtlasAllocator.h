#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QRect>
#include <QVector>

namespace gfx {

// Places rectangles in an area and takes them back, for atlas textures whose
// contents come and go (map tiles, coverage masks). Rectangles sit on shelves,
// horizontal bands opened at the height of their first rectangle rounded up; a
// rectangle goes to the lowest shelf that fits it without wasting more than half
// its height. Space freed on a shelf joins its neighbours, and an empty shelf gives
// its band back. A placed rectangle never moves.
class ORBIS_UI_INTERNAL_EXPORT AtlasAllocator
{
public:
    explicit AtlasAllocator(const QSize& size);

    QSize size() const { return mSize; }
    // False, with `out` untouched, when there is no room.
    bool allocate(const QSize& size, QRect& out);
    // `rect` must be one that allocate() gave and not yet released.
    void release(const QRect& rect);
    bool isEmpty() const { return mShelves.isEmpty(); }
    qint64 usedArea() const { return mUsedArea; }

private:
    struct Span
    {
        int start;
        int length;
    };
    struct Shelf
    {
        int y;
        int height;
        QVector<Span> free;
    };

    static void insertSpan(QVector<Span>& spans, Span span);
    static bool takeSpan(QVector<Span>& spans, int length, int& start);
    bool placeOn(Shelf& shelf, const QSize& size, QRect& out);

    QSize mSize;
    QVector<Shelf> mShelves;
    QVector<Span> mFreeBands;
    qint64 mUsedArea = 0;
};

} // namespace gfx
