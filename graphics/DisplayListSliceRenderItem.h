#pragma once

#include "RenderItem.h"

#include <QVector>
#include <qopengl.h>

namespace gfx {

class VertexBuffer;

// A part of a display list's vertex buffer drawn as one unit: the draws of one
// (possibly merged) geometry item, with neighbouring triangle ranges joined.
class DisplayListSliceRenderItem : public RenderItem
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

    VertexBuffer* buffer;
    QVector<Range> ranges;
};

} // namespace gfx
