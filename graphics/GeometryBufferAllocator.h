#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QSet>
#include <QVector>
#include <Singleton.h>
#include <memory>
#include <qopengl.h>

namespace gfx {

class VertexBuffer;

// Creates the vertex buffers of display lists and advances them all at the end of
// each frame. The GL buffers of lists that go away are kept for the next lists:
// a frame's lists then cost no buffer creation, only the upload.
class ORBIS_UI_INTERNAL_EXPORT GeometryBufferAllocator
{
public:
    static GeometryBufferAllocator* instance() { return Singleton<GeometryBufferAllocator>::instance(); }

    std::unique_ptr<VertexBuffer> create();
    void nextFrame();
    int liveBuffers() const { return mBuffers.size(); }
    int spareBuffers() const { return mSpare.size(); }
    // Deletes the kept GL buffers; for when their context goes away.
    void releaseSpareBuffers();

private:
    friend class Singleton<GeometryBufferAllocator>;
    friend class VertexBuffer;
    GeometryBufferAllocator() = default;

    void track(VertexBuffer* buffer) { mBuffers.insert(buffer); }
    void untrack(VertexBuffer* buffer) { mBuffers.remove(buffer); }
    GLuint takeSpareBuffer();
    void keepSpareBuffer(GLuint buffer);

    QSet<VertexBuffer*> mBuffers;
    QVector<GLuint> mSpare;
};

} // namespace gfx
