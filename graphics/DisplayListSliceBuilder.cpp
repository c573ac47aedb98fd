#include "DisplayListSliceBuilder.h"

#include "Geometry.h"
#include "GeometryRenderItem.h"
#include "VertexBuffer.h"

namespace gfx {

void DisplayListSliceBuilder::add(Geometry* geometry)
{
    if (!geometry->isUploaded()) {
        const QVector<Vertex> vertices = geometry->triangulate();
        geometry->setUploaded(mBuffer->append(vertices), vertices.size());
    }
    if (geometry->vertexCount() == 0)
        return;
    const GLenum primitive = geometry->primitive();
    if (primitive == GL_TRIANGLES && !mRanges.isEmpty()) {
        DisplayListSliceRenderItem::Range& last = mRanges.last();
        if (last.primitive == GL_TRIANGLES && last.first + last.count == geometry->firstVertex()) {
            last.count += geometry->vertexCount();
            return;
        }
    }
    mRanges.append({primitive, geometry->firstVertex(), geometry->vertexCount()});
}

DisplayListSliceRenderItem* DisplayListSliceBuilder::finish(GeometryRenderItem* item)
{
    auto* slice = new DisplayListSliceRenderItem(item->shaderUsage.release(), mBuffer);
    slice->opaqueRect = item->opaqueRect;
    slice->bounds = item->bounds;
    slice->localBounds = item->localBounds;
    slice->ranges = mRanges;
    mRanges.clear();
    delete item;
    return slice;
}

} // namespace gfx
