#include "DisplayList.h"

#include "DisplayListSliceBuilder.h"
#include "GeometryBufferAllocator.h"
#include "GeometryRenderItem.h"
#include "Renderer.h"
#include "VertexBuffer.h"

#include <Logger.h>

static const char* const kLogSource = "graphics/DisplayList";

namespace gfx {

ConfigBoolValue OptimizeDisplayLists("gfx/optimize_display_lists", true);

DisplayList::DisplayList() = default;

DisplayList::DisplayList(QVector<RenderItem*>& items, bool allowSubstitution)
    : mAllowSubstitution(allowSubstitution)
{
    mItems.swap(items); // takes the items and leaves the caller's vector empty
}

DisplayList::~DisplayList()
{
    qDeleteAll(mItems);
    qDeleteAll(mHidden);
}

void DisplayList::optimize()
{
    if (mOptimized)
        return;
    QRegion covered;
    if (OptimizeDisplayLists.value())
        covered = gfx::optimize(mItems, mAllowSubstitution, &mHidden);
    generateGeometry(covered);
    mOptimized = true;
}

void DisplayList::render(const RenderState& state)
{
    if (!mOptimized)
        ORBIS_ERROR(QStringLiteral("Attempting to render unoptimized DisplayList"));
    gfx::render(state, this);
}

void DisplayList::generateGeometry(const QRegion& covered)
{
    mCovered = covered;
    VertexBuffer* buffer = initOrGetVertexBuffer();
    DisplayListSliceBuilder builder(buffer);
    for (QVector<RenderItem*>* items : {&mItems, &mHidden}) {
        for (RenderItem*& item : *items) {
            if (!item || item->type != RenderItem::kGeometry)
                continue;
            auto* geometryItem = static_cast<GeometryRenderItem*>(item);
            for (Geometry* g = geometryItem->mGeometry; g; g = g->next())
                builder.add(g);
            item = builder.finish(geometryItem);
        }
    }
}

VertexBuffer* DisplayList::initOrGetVertexBuffer()
{
    if (!mVertexBuffer)
        mVertexBuffer = GeometryBufferAllocator::instance()->create();
    return mVertexBuffer.get();
}

} // namespace gfx
