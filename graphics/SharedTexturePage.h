#pragma once

#include "OrbisUIFrameworkExport.h"

#include "AtlasAllocator.h"
#include "SharedTextureSlot.h"
#include "Texture2D.h"

#include <QVector>
#include <memory>
#include <mutex>

namespace gfx {

// One atlas texture of a SharedTextureManager pool: the places taken on it, the
// pixels waiting for its next bind, and the places given back since the end of the
// last frame. Slots may be dropped on any thread; everything else runs on the GUI
// thread.
class ORBIS_UI_INTERNAL_EXPORT SharedTexturePage
{
public:
    SharedTexturePage(int pool, const QSize& size, GLenum format);

    // Unique for the process: what keys of this page compare by.
    quint64 uid() const { return mUid; }
    int pool() const { return mPool; }
    QSize size() const { return mAllocator.size(); }
    GLenum format() const { return mFormat; }
    // Storage on the GPU once first bound.
    quint64 bytes() const { return mTexture ? mTexture->bytes() : 0; }
    bool isEmpty() const { return mAllocator.isEmpty(); }

    // A place of `size` plus its border, or false when the page is full.
    bool allocate(const QSize& size, QRect& outer);
    void queueUpload(SharedTextureSlot::Data* slot);
    // Called by a slot's last reference, on whatever thread drops it.
    void slotGone(SharedTextureSlot::Data* slot);
    // Makes the places given back since the last call free again.
    void reclaim();
    // Creates the texture on first use, uploads what is waiting and binds it.
    bool bind();
    // Gives up the texture with the context it lives in; the next bind makes a new
    // one, holding only what is uploaded after.
    void releaseTexture() { mTexture.reset(); }

private:
    quint64 mUid;
    int mPool;
    GLenum mFormat;
    AtlasAllocator mAllocator;
    std::unique_ptr<Texture2D> mTexture;
    std::mutex mMutex;
    QVector<SharedTextureSlot::Data*> mPending;
    QVector<QRect> mFreed;
};

} // namespace gfx
