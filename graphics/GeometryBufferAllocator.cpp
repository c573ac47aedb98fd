#include "GeometryBufferAllocator.h"

#include "VertexBuffer.h"

namespace gfx {

std::unique_ptr<VertexBuffer> GeometryBufferAllocator::create()
{
    return std::make_unique<VertexBuffer>(this);
}

void GeometryBufferAllocator::nextFrame()
{
    for (VertexBuffer* buffer : qAsConst(mBuffers))
        buffer->nextFrame();
}

} // namespace gfx
