#include "GeometryBufferAllocator.h"

#include "GLFunctions.h"
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

GLuint GeometryBufferAllocator::takeSpareBuffer()
{
    if (mSpare.isEmpty())
        return 0;
    return mSpare.takeLast();
}

void GeometryBufferAllocator::keepSpareBuffer(GLuint buffer)
{
    // A frame builds a few lists at a time; more spares would only hold memory.
    constexpr int kMaxSpare = 8;
    if (mSpare.size() < kMaxSpare)
        mSpare.append(buffer);
    else
        VertexBuffer::deleteBuffer(buffer);
}

void GeometryBufferAllocator::releaseSpareBuffers()
{
    for (GLuint buffer : qAsConst(mSpare))
        VertexBuffer::deleteBuffer(buffer);
    mSpare.clear();
}

} // namespace gfx
