#include "SharedTexturePage.h"

#include <atomic>

namespace gfx {

namespace {
std::atomic<quint64> gNextUid{1};
} // namespace

SharedTexturePage::SharedTexturePage(int pool, const QSize& size, GLenum format)
    : mUid(gNextUid++), mPool(pool), mFormat(format), mAllocator(size)
{}

bool SharedTexturePage::allocate(const QSize& size, QRect& outer)
{
    return mAllocator.allocate(size + QSize(2, 2), outer);
}

void SharedTexturePage::queueUpload(SharedTextureSlot::Data* slot)
{
    std::lock_guard<std::mutex> lock(mMutex);
    if (!mPending.contains(slot))
        mPending.append(slot);
}

void SharedTexturePage::slotGone(SharedTextureSlot::Data* slot)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mPending.removeOne(slot);
    mFreed.append(slot->outer);
}

void SharedTexturePage::reclaim()
{
    QVector<QRect> freed;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        freed.swap(mFreed);
    }
    for (const QRect& rect : qAsConst(freed))
        mAllocator.release(rect);
}

bool SharedTexturePage::bind()
{
    if (!mTexture) {
        auto texture = std::make_unique<Texture2D>();
        if (!texture->allocate(mAllocator.size(), mFormat))
            return false;
        mTexture = std::move(texture);
    }
    {
        // Held through the uploads: a slot dropped meanwhile on another thread
        // must not go while its pixels are read.
        std::lock_guard<std::mutex> lock(mMutex);
        for (SharedTextureSlot::Data* slot : qAsConst(mPending)) {
            mTexture->uploadSubImage(slot->outer.topLeft(), slot->pending);
            slot->pending = QImage();
        }
        mPending.clear();
    }
    return mTexture->bind();
}

} // namespace gfx
