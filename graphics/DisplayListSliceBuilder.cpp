#include "DisplayListSliceBuilder.h"

#include "Geometry.h"
#include "GeometryRenderItem.h"
#include "VertexBuffer.h"

namespace gfx {

namespace {
using Range = DisplayListSliceRenderItem::Range;

void append(QVector<Range>& ranges, const Range& range)
{
    if (range.count == 0)
        return;
    if (range.primitive == GL_TRIANGLES && !ranges.isEmpty()) {
        Range& last = ranges.last();
        if (last.primitive == GL_TRIANGLES && last.first + last.count == range.first) {
            last.count += range.count;
            return;
        }
    }
    ranges.append(range);
}
} // namespace

void DisplayListSliceBuilder::add(Geometry* geometry)
{
    if (!geometry->isUploaded()) {
        const QVector<Vertex> vertices = geometry->triangulate();
        geometry->setUploaded(mBuffer->append(vertices), vertices.size());
    }
    const Range visible{geometry->primitive(), geometry->firstVertex(), geometry->vertexCount()};
    append(mRanges, visible);
    if (!geometry->isCut()) {
        append(mTranslucentRanges, visible);
        return;
    }
    const QVector<Vertex> uncut = geometry->triangulate(true);
    append(mTranslucentRanges, {geometry->primitive(), mBuffer->append(uncut), int(uncut.size())});
    mCut = true;
}

DisplayListSliceRenderItem* DisplayListSliceBuilder::finish(GeometryRenderItem* item)
{
    auto* slice = new DisplayListSliceRenderItem(item->shaderUsage.release(), mBuffer);
    slice->opaqueRect = item->opaqueRect;
    slice->bounds = item->bounds;
    slice->localBounds = item->localBounds;
    slice->ranges = mRanges;
    slice->hasTranslucentRanges = mCut;
    if (mCut)
        slice->translucentRanges = mTranslucentRanges;
    slice->translucentUsage = std::move(item->translucentUsage);
    mRanges.clear();
    mTranslucentRanges.clear();
    mCut = false;
    delete item;
    return slice;
}

} // namespace gfx
