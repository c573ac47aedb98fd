#pragma once

#include "OrbisUIFrameworkExport.h"

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
ORBIS_UI_INTERNAL_EXPORT QRegion optimize(QVector<RenderItem*>& items, bool allowSubstitution,
                                          QVector<RenderItem*>* hidden = nullptr);

// Replays a list through the GL state cache, each item scissored to its bounds.
ORBIS_UI_INTERNAL_EXPORT void render(const RenderState& state, DisplayList* list);
ORBIS_UI_INTERNAL_EXPORT void render(const RenderState& state, GeometryRenderItem* item, DisplayList* list);
ORBIS_UI_INTERNAL_EXPORT void render(const RenderState& state, DisplayListSliceRenderItem* item);

} // namespace gfx
