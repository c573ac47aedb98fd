#pragma once

#include "OrbisUIFrameworkExport.h"

#include "RenderItem.h"

#include <QVector>
#include <memory>
#include <qopengl.h>

namespace gfx {

class VertexBuffer;

// A part of a display list's vertex buffer drawn as one unit: the draws of one
// (possibly merged) geometry item, with neighbouring triangle ranges joined.
// Under an opacity below 1 nothing is opaque: the slice then draws what the
// optimiser had hidden beneath opaque items, and its usage as it was before
// substitution.
class ORBIS_UI_INTERNAL_EXPORT DisplayListSliceRenderItem : public RenderItem
{
public:
    struct Range
    {
        GLenum primitive;
        int first;
        int count;
    };

    DisplayListSliceRenderItem(ShaderUsage* usage, VertexBuffer* buffer)
        : RenderItem(kSlice, usage), buffer(buffer)
    {}

    const QVector<Range>& rangesFor(bool translucent) const
    {
        return translucent && hasTranslucentRanges ? translucentRanges : ranges;
    }
    ShaderUsage* usageFor(bool translucent) const
    {
        return translucent && translucentUsage ? translucentUsage.get() : shaderUsage.get();
    }

    VertexBuffer* buffer;
    QVector<Range> ranges;
    bool hasTranslucentRanges = false;
    QVector<Range> translucentRanges;
    std::unique_ptr<ShaderUsage> translucentUsage;
};

} // namespace gfx
