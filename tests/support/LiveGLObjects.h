#pragma once

#include "ScopedGLRecorder.h"

#include <QSet>

// Follows the textures and buffers the engine creates and deletes through the GL
// seam while it is installed, forwarding every call to the driver.
class LiveGLObjects : public ScopedGLRecorder
{
public:
    LiveGLObjects() : ScopedGLRecorder(gfx::GLFunctions::current()) {}

    void glGenTextures(GLsizei n, GLuint* textures) override;
    void glDeleteTextures(GLsizei n, const GLuint* textures) override;
    void glGenBuffers(GLsizei n, GLuint* buffers) override;
    void glDeleteBuffers(GLsizei n, const GLuint* buffers) override;

    int textures() const { return mTextures.size(); }
    int buffers() const { return mBuffers.size(); }

private:
    QSet<GLuint> mTextures;
    QSet<GLuint> mBuffers;
};
