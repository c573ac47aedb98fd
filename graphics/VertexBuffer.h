#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Vertex.h"

#include <QVector>
#include <qopengl.h>

namespace gfx {

class GeometryBufferAllocator;

// The one GL array buffer of a display list. Vertices are appended on the
// processor and sent to GL when the buffer is bound. The first upload, and any
// upload after a frame has passed, gives the buffer a new store (so that the driver
// never waits for the GPU to finish the last frame) filled in the same call; later
// appends in the frame send only the new tail. Unchanged buffers are only bound.
class ORBIS_UI_INTERNAL_EXPORT VertexBuffer
{
public:
    explicit VertexBuffer(GeometryBufferAllocator* allocator = nullptr);
    ~VertexBuffer();
    VertexBuffer(const VertexBuffer&) = delete;
    VertexBuffer& operator=(const VertexBuffer&) = delete;

    // Returns the index of the first appended vertex.
    int append(const QVector<Vertex>& vertices);
    int vertexCount() const { return mVertices.size(); }

    // Uploads what is pending, binds the buffer and points attributes 0 (position)
    // and 1 (texture coordinates) into it.
    void bind();
    void nextFrame() { mRespecify = true; }

    // Deletes a GL buffer name and forgets what the state cache knew of it.
    static void deleteBuffer(GLuint buffer);

private:
    friend class GeometryBufferAllocator;

    GeometryBufferAllocator* mAllocator;
    QVector<Vertex> mVertices;
    GLuint mBuffer = 0;
    int mUploadedCount = 0;
    int mCapacity = 0; // vertices the GL store holds
    bool mRespecify = true;
};

} // namespace gfx
