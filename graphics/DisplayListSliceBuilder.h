#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayListSliceRenderItem.h"

namespace gfx {

class Geometry;
class GeometryRenderItem;

// Writes geometries into a vertex buffer and collects their draw ranges.
class ORBIS_UI_INTERNAL_EXPORT DisplayListSliceBuilder
{
public:
    explicit DisplayListSliceBuilder(VertexBuffer* buffer) : mBuffer(buffer) {}

    void add(Geometry* geometry);
    // The slice for `item`, which hands over its usage and rectangles and is deleted.
    DisplayListSliceRenderItem* finish(GeometryRenderItem* item);

private:
    VertexBuffer* mBuffer;
    QVector<DisplayListSliceRenderItem::Range> mRanges;
    QVector<DisplayListSliceRenderItem::Range> mTranslucentRanges;
    bool mCut = false;
};

} // namespace gfx
