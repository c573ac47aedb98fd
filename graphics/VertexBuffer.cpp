#include "VertexBuffer.h"

#include "GLFunctions.h"
#include "GLStateManager.h"
#include "GeometryBufferAllocator.h"

#include <cstddef>

namespace gfx {

namespace {
// Attribute pointers are offsets into the buffer bound when they were set: after
// another buffer is bound the cached ones no longer describe the driver's.
void forgetPointers(GLState& state)
{
    for (int i = 0; i < 3; ++i)
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
    if (!mBuffer)
        return;
    if (mAllocator)
        mAllocator->keepSpareBuffer(mBuffer);
    else
        deleteBuffer(mBuffer);
}

void VertexBuffer::deleteBuffer(GLuint buffer)
{
    GLStateManager* state = GLStateManager::instance();
    if (state->state().arrayBuffer.holds(buffer)) {
        state->state().arrayBuffer.valid = false;
        forgetPointers(state->state());
    }
    GLFunctions::current()->glDeleteBuffers(1, &buffer);
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
    if (!mBuffer && mAllocator)
        mBuffer = mAllocator->takeSpareBuffer();
    if (!mBuffer)
        f->glGenBuffers(1, &mBuffer);
    if (!state->state().arrayBuffer.holds(mBuffer)) {
        state->glBindBufferArray(mBuffer);
        forgetPointers(state->state());
    }
    const int count = mVertices.size();
    if (count > mUploadedCount) {
        const qopengl_GLsizeiptr vertexSize = sizeof(Vertex);
        if (mRespecify || mUploadedCount == 0) {
            // A list is normally written once: a new store filled in the same call.
            f->glBufferData(GL_ARRAY_BUFFER, count * vertexSize, mVertices.constData(), GL_DYNAMIC_DRAW);
            mCapacity = count;
        } else {
            if (count > mCapacity) {
                // Grown after a draw: room for a few more appends.
                mCapacity = count + count / 2;
                f->glBufferData(GL_ARRAY_BUFFER, mCapacity * vertexSize, nullptr, GL_DYNAMIC_DRAW);
                mUploadedCount = 0;
            }
            f->glBufferSubData(GL_ARRAY_BUFFER, qopengl_GLintptr(mUploadedCount * vertexSize),
                               (count - mUploadedCount) * vertexSize, mVertices.constData() + mUploadedCount);
        }
        mUploadedCount = count;
        mRespecify = false;
    }
    const GLsizei stride = sizeof(Vertex);
    state->glEnableVertexAttribArray(0);
    state->glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, stride, nullptr);
    state->glEnableVertexAttribArray(1);
    state->glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, stride,
                                 reinterpret_cast<const void*>(offsetof(Vertex, u)));
    state->glEnableVertexAttribArray(2);
    state->glVertexAttribPointer(2, 4, GL_UNSIGNED_BYTE, GL_FALSE, stride,
                                 reinterpret_cast<const void*>(offsetof(Vertex, r)));
}

} // namespace gfx
