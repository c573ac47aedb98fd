#include "SharedTextureManager.h"

#include "SharedTexturePage.h"
#include "Texture.h"

#include <Logger.h>
#include <QCoreApplication>
#include <QThread>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/SharedTextureManager";

// The image inside a border of its own edge pixels, one on every side.
QImage bordered(const QImage& image)
{
    const QImage source =
        image.depth() == 8 ? image : image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const int bpp = source.depth() / 8;
    const int w = source.width();
    const int h = source.height();
    QImage out(w + 2, h + 2, source.format());
    for (int y = 0; y < h + 2; ++y) {
        const uchar* from = source.constScanLine(qBound(0, y - 1, h - 1));
        uchar* to = out.scanLine(y);
        memcpy(to + bpp, from, size_t(w * bpp));
        memcpy(to, from, size_t(bpp));
        memcpy(to + (w + 1) * bpp, from + (w - 1) * bpp, size_t(bpp));
    }
    return out;
}
} // namespace

SharedTextureManager::~SharedTextureManager() = default;

bool SharedTextureManager::onGuiThread() const
{
    if (QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread())
        return true;
    return Logger::logAssert("QCoreApplication::instance() && QThread::currentThread() == "
                             "QCoreApplication::instance()->thread()",
                             QStringLiteral("Shared textures are used on the GUI thread only"), kLogSource,
                             __LINE__);
}

bool SharedTextureManager::validPool(int pool) const
{
    return ORBIS_ASSERT(pool >= 0 && pool < mPools.size(),
                        QStringLiteral("Unknown shared texture pool %1").arg(pool));
}

int SharedTextureManager::pool(const QString& name, GLenum format, const QSize& pageSize, int maxPages)
{
    for (int i = 0; i < mPools.size(); ++i) {
        const Pool& p = mPools[i];
        if (p.name != name)
            continue;
        if (p.format == format && p.pageSize == pageSize && p.maxPages == maxPages)
            return i;
        ORBIS_FAIL(QStringLiteral("Shared texture pool %1 exists with other parameters").arg(name));
        return -1;
    }
    if (!ORBIS_ASSERT(Texture::bytesPerPixel(format) > 0,
                      QStringLiteral("Unsupported texture format 0x%1").arg(format, 0, 16)) ||
        !ORBIS_ASSERT(!pageSize.isEmpty() && maxPages > 0,
                      QStringLiteral("Shared texture pool %1 needs a page size and pages").arg(name)))
        return -1;
    mPools.append({name, format, pageSize, maxPages, {}});
    return mPools.size() - 1;
}

SharedTextureSlot SharedTextureManager::allocate(int pool, const QSize& size)
{
    if (!onGuiThread() || !validPool(pool) ||
        !ORBIS_ASSERT(!size.isEmpty(), QStringLiteral("A shared texture slot needs a size")))
        return SharedTextureSlot();
    Pool& p = mPools[pool];
    QRect outer;
    for (const std::shared_ptr<SharedTexturePage>& page : qAsConst(p.pages))
        if (page->allocate(size, outer))
            return SharedTextureSlot(new SharedTextureSlot::Data(page, outer.adjusted(1, 1, -1, -1), outer));
    if (p.pages.size() >= p.maxPages)
        return SharedTextureSlot();
    auto page = std::make_shared<SharedTexturePage>(pool, p.pageSize, p.format);
    if (!page->allocate(size, outer))
        return SharedTextureSlot();
    p.pages.append(page);
    return SharedTextureSlot(new SharedTextureSlot::Data(page, outer.adjusted(1, 1, -1, -1), outer));
}

bool SharedTextureManager::upload(const SharedTextureSlot& slot, const QImage& image)
{
    if (!onGuiThread() ||
        !ORBIS_ASSERT(!slot.isNull(), QStringLiteral("Upload to a null shared texture slot")))
        return false;
    if (!ORBIS_ASSERT(image.size() == slot.rect().size(),
                      QStringLiteral("A %1 x %2 image does not fit a slot of %3 x %4")
                          .arg(image.width())
                          .arg(image.height())
                          .arg(slot.rect().width())
                          .arg(slot.rect().height())))
        return false;
    SharedTextureSlot::Data* data = slot.data();
    data->pending = bordered(image);
    data->page->queueUpload(data);
    return true;
}

bool SharedTextureManager::bind(const SharedTextureSlot& slot)
{
    if (slot.isNull() || !onGuiThread())
        return false;
    return slot.data()->page->bind();
}

void SharedTextureManager::destroyPendingTextures()
{
    if (!onGuiThread())
        return;
    for (Pool& p : mPools) {
        for (int i = p.pages.size() - 1; i >= 0; --i) {
            p.pages[i]->reclaim();
            if (p.pages[i]->isEmpty() && p.pages.size() > 1)
                p.pages.remove(i);
        }
    }
}

void SharedTextureManager::releaseTextures()
{
    for (Pool& p : mPools)
        for (const std::shared_ptr<SharedTexturePage>& page : qAsConst(p.pages))
            page->releaseTexture();
}

int SharedTextureManager::pageCount(int pool) const
{
    return pool >= 0 && pool < mPools.size() ? mPools[pool].pages.size() : 0;
}

quint64 SharedTextureManager::bytes() const
{
    quint64 total = 0;
    for (const Pool& p : mPools)
        for (const std::shared_ptr<SharedTexturePage>& page : p.pages)
            total += page->bytes();
    return total;
}

} // namespace gfx
