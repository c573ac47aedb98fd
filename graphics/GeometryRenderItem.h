#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Geometry.h"
#include "RenderItem.h"

namespace gfx {

// A draw of a chain of geometries with one shader usage.
class ORBIS_UI_INTERNAL_EXPORT GeometryRenderItem : public RenderItem
{
public:
    static constexpr quint32 kMaxMerges = 51;

    // The geometry takes the usage's colour into its vertices, for the programs
    // that colour per vertex.
    GeometryRenderItem(ShaderUsage* usage, Geometry* geometry);
    ~GeometryRenderItem() override { delete mGeometry; }

    // Takes over `earlier` (an item earlier in the list with an equal usage and the
    // same kind of geometry): its chain is drawn first, then this item's; `earlier`
    // is deleted. False, with nothing changed, when the kinds differ.
    bool merge(GeometryRenderItem* earlier);
    // The opaque area before the matrix, kept for recomputing after merges.
    void setLocalOpaque(const QRect& area) { mLocalOpaque = area; }

    Geometry* mGeometry;
    quint32 mergeCount = 0;
    // The usage that substitution replaced, for drawing under an opacity below 1.
    std::unique_ptr<ShaderUsage> translucentUsage;

private:
    QRect mLocalOpaque;
};

} // namespace gfx
