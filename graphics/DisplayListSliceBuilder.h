#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayListSliceRenderItem.h"
#include "Vertex.h"

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
    // What a geometry draws under an opacity below 1: its visible range, or the
    // vertices from before the hidden-surface cut, written when the slice is done.
    struct TranslucentPart
    {
        DisplayListSliceRenderItem::Range range;
        QVector<Vertex> uncut;
    };

    VertexBuffer* mBuffer;
    QVector<DisplayListSliceRenderItem::Range> mRanges;
    QVector<TranslucentPart> mTranslucentParts;
    bool mCut = false;
};

} // namespace gfx
