#include "LiveGLObjects.h"

void LiveGLObjects::glGenTextures(GLsizei n, GLuint* textures)
{
    ScopedGLRecorder::glGenTextures(n, textures);
    for (GLsizei i = 0; i < n; ++i)
        mTextures.insert(textures[i]);
}

void LiveGLObjects::glDeleteTextures(GLsizei n, const GLuint* textures)
{
    for (GLsizei i = 0; i < n; ++i)
        mTextures.remove(textures[i]);
    ScopedGLRecorder::glDeleteTextures(n, textures);
}

void LiveGLObjects::glGenBuffers(GLsizei n, GLuint* buffers)
{
    ScopedGLRecorder::glGenBuffers(n, buffers);
    for (GLsizei i = 0; i < n; ++i)
        mBuffers.insert(buffers[i]);
}

void LiveGLObjects::glDeleteBuffers(GLsizei n, const GLuint* buffers)
{
    for (GLsizei i = 0; i < n; ++i)
        mBuffers.remove(buffers[i]);
    ScopedGLRecorder::glDeleteBuffers(n, buffers);
}
