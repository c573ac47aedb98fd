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
        mTranslucentParts.append({visible, {}});
        return;
    }
    mTranslucentParts.append({{geometry->primitive(), 0, 0}, geometry->triangulate(true)});
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
    if (mCut) {
        // The uncut vertices go after the visible ones, which stay one range.
        for (TranslucentPart& part : mTranslucentParts) {
            if (!part.uncut.isEmpty())
                part.range = {part.range.primitive, mBuffer->append(part.uncut), int(part.uncut.size())};
            append(slice->translucentRanges, part.range);
        }
    }
    slice->translucentUsage = std::move(item->translucentUsage);
    mRanges.clear();
    mTranslucentParts.clear();
    mCut = false;
    delete item;
    return slice;
}

} // namespace gfx
