#include "ViewBuffer.h"

#include <QGLFramebufferObject>
#include <TextureKeyDataTarget.h>

ViewBuffer::ViewBuffer(DisplayView* view) : mView(view) {}

ViewBuffer::~ViewBuffer() = default;

void ViewBuffer::update(const QRect& rect)
{
    if (!rect.isEmpty())
        mDirty += rect;
}

QRegion ViewBuffer::takeDirtyRegion()
{
    QRegion taken;
    taken.swap(mDirty);
    return taken;
}

void ViewBuffer::setBackingType(BackingType type)
{
    if (type == mBackingType)
        return;
    mBackingType = type;
    // The pixel format changes: the next render starts a new framebuffer.
    setFramebuffer(nullptr);
}

void ViewBuffer::setFramebuffer(std::unique_ptr<QGLFramebufferObject> framebuffer)
{
    mFramebuffer = std::move(framebuffer);
    mTexture =
        mFramebuffer
            ? gfx::TextureKey(new gfx::TextureKeyDataTarget(mFramebuffer->texture(), mFramebuffer->size()))
            : gfx::TextureKey();
}
