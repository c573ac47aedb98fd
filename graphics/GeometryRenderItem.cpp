#include "GeometryRenderItem.h"

#include "ShaderUsage.h"

#include <Logger.h>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/GeometryRenderItem";
} // namespace

GeometryRenderItem::GeometryRenderItem(ShaderUsage* usage, Geometry* geometry)
    : RenderItem(kGeometry, usage), mGeometry(geometry)
{
    if (!usage || !usage->color().isValid())
        return;
    for (Geometry* g = geometry; g; g = g->next())
        g->setColor(usage->color().rgba());
}

bool GeometryRenderItem::merge(GeometryRenderItem* earlier)
{
    if (!ORBIS_ASSERT(mGeometry, QStringLiteral("Merging into an item without geometry")) || !earlier ||
        !earlier->mGeometry)
        return false;
    if (earlier->mGeometry->mode() != mGeometry->mode())
        return false;
    const QRect appended = mGeometry->rect();
    Geometry* g = earlier->mGeometry;
    for (;; g = g->next()) {
        g->setRect(g->rect() | appended);
        g->clearUploaded();
        if (!g->next())
            break;
    }
    g->setNext(mGeometry);
    mGeometry = earlier->mGeometry;
    earlier->mGeometry = nullptr;
    const QRect local = localBounds | earlier->localBounds;
    shaderUsage->retainTexturesOf(*earlier->shaderUsage);
    delete earlier;
    computeRects(local, mLocalOpaque);
    ++mergeCount;
    return true;
}

} // namespace gfx
