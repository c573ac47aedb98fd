#include "ViewBufferManager.h"

#include "ViewBuffer.h"

#include <GLStateManager.h>
#include <QGLFramebufferObject>
#include <QGLWidget>
#include <memory>

void ViewBufferManager::beginDrawing()
{
    mWidget->makeCurrent();
    mDrawing = true;
}

void ViewBufferManager::endDrawing()
{
    if (mOffScreen)
        bindScreen();
    gfx::GLStateManager::instance()->clearToInvalid();
    mDrawing = false;
}

void ViewBufferManager::bindScreen()
{
    QGLFramebufferObject::bindDefault();
    mOffScreen = false;
}

void ViewBufferManager::bind(QGLFramebufferObject* framebuffer)
{
    framebuffer->bind();
    mOffScreen = true;
}

bool ViewBufferManager::prepare(ViewBuffer* buffer, const QSize& pixelSize)
{
    mOffScreen = true;
    const QGLFramebufferObject* existing = buffer->framebuffer();
    if (existing && existing->size() == pixelSize)
        return false;
    QGLFramebufferObjectFormat format;
    // Qt's painter clips with the stencil buffer.
    format.setAttachment(QGLFramebufferObject::CombinedDepthStencil);
    format.setInternalTextureFormat(buffer->backingType() == ViewBuffer::OpaqueBacking ? GL_RGB : GL_RGBA);
    buffer->setFramebuffer(std::make_unique<QGLFramebufferObject>(pixelSize, format));
    ++mCreated;
    return true;
}
