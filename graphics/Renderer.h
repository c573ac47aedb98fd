#pragma once

#include <QRegion>
#include <QVector>

namespace gfx {

class DisplayList;
class DisplayListSliceRenderItem;
class GeometryRenderItem;
class RenderItem;
struct RenderState;

// Removes what opaque items hide, turns large translucent textures over a solid
// fill opaque, and merges like neighbours; returns the region that opaque items
// cover. Deleted and merged items leave empty slots.
//
// With `hidden`, wholly hidden items are moved there (at their index) instead of
// being deleted, and nothing merges across them, so that the list can still be
// drawn as built under an opacity below 1.
QRegion optimize(QVector<RenderItem*>& items, bool allowSubstitution, QVector<RenderItem*>* hidden = nullptr);

// Replays a list through the GL state cache, each item scissored to its bounds.
void render(const RenderState& state, DisplayList* list);
void render(const RenderState& state, GeometryRenderItem* item, DisplayList* list);
void render(const RenderState& state, DisplayListSliceRenderItem* item);

} // namespace gfx
