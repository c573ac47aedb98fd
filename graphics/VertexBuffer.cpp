#include "VertexBuffer.h"

#include "GLFunctions.h"
#include "GLStateManager.h"
#include "GeometryBufferAllocator.h"

namespace gfx {

namespace {
// Attribute pointers are offsets into the buffer bound when they were set: after
// another buffer is bound the cached ones no longer describe the driver's.
void forgetPointers(GLState& state)
{
    for (int i = 0; i < 2; ++i)
        state.attribs[i].pointer.valid = false;
}
} // namespace

VertexBuffer::VertexBuffer(GeometryBufferAllocator* allocator) : mAllocator(allocator)
{
    if (mAllocator)
        mAllocator->track(this);
}

VertexBuffer::~VertexBuffer()
{
    if (mAllocator)
        mAllocator->untrack(this);
    if (mBuffer) {
        GLStateManager* state = GLStateManager::instance();
        if (state->state().arrayBuffer.holds(mBuffer)) {
            state->state().arrayBuffer.valid = false;
            forgetPointers(state->state());
        }
        GLFunctions::current()->glDeleteBuffers(1, &mBuffer);
    }
}

int VertexBuffer::append(const QVector<Vertex>& vertices)
{
    const int first = mVertices.size();
    mVertices += vertices;
    return first;
}

void VertexBuffer::bind()
{
    GLFunctions* f = GLFunctions::current();
    GLStateManager* state = GLStateManager::instance();
    if (!mBuffer)
        f->glGenBuffers(1, &mBuffer);
    if (!state->state().arrayBuffer.holds(mBuffer)) {
        state->glBindBufferArray(mBuffer);
        forgetPointers(state->state());
    }
    const int count = mVertices.size();
    if (count > mUploadedCount) {
        if (mRespecify || count > mCapacity) {
            // Room to grow, so that a few later appends do not respecify again.
            mCapacity = count + count / 2;
            f->glBufferData(GL_ARRAY_BUFFER, qopengl_GLsizeiptr(mCapacity * sizeof(Vertex)), nullptr,
                            GL_DYNAMIC_DRAW);
            mUploadedCount = 0;
        }
        f->glBufferSubData(GL_ARRAY_BUFFER, qopengl_GLintptr(mUploadedCount * sizeof(Vertex)),
                           qopengl_GLsizeiptr((count - mUploadedCount) * sizeof(Vertex)),
                           mVertices.constData() + mUploadedCount);
        mUploadedCount = count;
        mRespecify = false;
    }
    const GLsizei stride = sizeof(Vertex);
    state->glEnableVertexAttribArray(0);
    state->glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, stride, nullptr);
    state->glEnableVertexAttribArray(1);
    state->glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, stride,
                                 reinterpret_cast<const void*>(2 * sizeof(float)));
}

} // namespace gfx
