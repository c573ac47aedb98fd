#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QRegion>
#include <QSize>
#include <TextureKey.h>
#include <memory>

class DisplayView;
class QGLFramebufferObject;

/// The offscreen buffer of a view that uses a layer. It collects the rectangles that
/// must be re-rendered before the buffer is composited; the device renders a dirty
/// buffer and takes its region in one step. On a screen with GL the pixels live in a
/// framebuffer object (created by the ViewBufferManager), whose texture is what the
/// compositor draws.
class ORBIS_UI_EXPORT ViewBuffer
{
public:
    enum BackingType
    {
        DefaultBacking = 0,
        OpaqueBacking,       ///< no alpha channel needed
        MultisampledBacking, ///< smoothed edges for transformed layers
        QtPaintEngineBacking ///< painted by Qt's own GL paint engine
    };

    explicit ViewBuffer(DisplayView* view);
    ~ViewBuffer();
    ViewBuffer(const ViewBuffer&) = delete;
    ViewBuffer& operator=(const ViewBuffer&) = delete;

    DisplayView* view() const { return mView; }
    /// rect is in the view's coordinates.
    void update(const QRect& rect);
    bool isDirty() const { return !mDirty.isEmpty(); }
    const QRegion& dirtyRegion() const { return mDirty; }
    /// Returns the dirty region and marks the buffer clean.
    QRegion takeDirtyRegion();

    QSize size() const { return mSize; }
    void setSize(const QSize& size) { mSize = size; }
    BackingType backingType() const { return mBackingType; }
    void setBackingType(BackingType type);

    QGLFramebufferObject* framebuffer() const { return mFramebuffer.get(); }
    /// Takes ownership; the texture key follows the framebuffer's texture.
    void setFramebuffer(std::unique_ptr<QGLFramebufferObject> framebuffer);
    const gfx::TextureKey& texture() const { return mTexture; }

private:
    DisplayView* mView;
    QRegion mDirty;
    QSize mSize;
    BackingType mBackingType = DefaultBacking;
    std::unique_ptr<QGLFramebufferObject> mFramebuffer;
    gfx::TextureKey mTexture;
};
