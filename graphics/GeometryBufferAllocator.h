#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QSet>
#include <Singleton.h>
#include <memory>

namespace gfx {

class VertexBuffer;

// Creates the vertex buffers of display lists and advances them all at the end of
// each frame.
class ORBIS_UI_INTERNAL_EXPORT GeometryBufferAllocator
{
public:
    static GeometryBufferAllocator* instance() { return Singleton<GeometryBufferAllocator>::instance(); }

    std::unique_ptr<VertexBuffer> create();
    void nextFrame();
    int liveBuffers() const { return mBuffers.size(); }

private:
    friend class Singleton<GeometryBufferAllocator>;
    friend class VertexBuffer;
    GeometryBufferAllocator() = default;

    void track(VertexBuffer* buffer) { mBuffers.insert(buffer); }
    void untrack(VertexBuffer* buffer) { mBuffers.remove(buffer); }

    QSet<VertexBuffer*> mBuffers;
};

} // namespace gfx
