#pragma once

#include "OrbisUIFrameworkExport.h"

#include "SharedTextureSlot.h"

#include <QString>
#include <QVector>
#include <Singleton.h>
#include <memory>
#include <qopengl.h>

namespace gfx {

class SharedTexturePage;

/// Atlas textures shared by many small images that come and go: map tiles,
/// antialiasing coverage masks. Images are grouped in named pools; a pool holds up
/// to a fixed number of pages (textures) of one size and format, and each image
/// takes a slot on a page, with a one-pixel border of its own edge pixels so that
/// filtering never reads a neighbour.
///
/// Use (GUI thread):
///
///     auto* shared = SharedTextureManager::instance();
///     const int tiles = shared->pool("map tiles", GL_RGBA, QSize(2048, 2048), 4);
///     SharedTextureSlot slot = shared->allocate(tiles, QSize(256, 256));
///     if (!slot.isNull() && shared->upload(slot, image))
///         builder.drawTexturedRect(target, slot.key(), blend, slot.insets());
///     ...
///     shared->release(slot);
///
/// Pixels go up to the GPU when the page is next bound (through TextureCache::bind
/// of a slot's key, or bind() here), so they may be given before a context is
/// current. Keys made from a slot keep it alive: a display list that still draws
/// it finds its pixels after the owner has released it. A slot's place is reused
/// only after its last reference is gone, at the end of that frame, when
/// destroyPendingTextures() runs; pages left empty are deleted then, except each
/// pool's last one. Slots never move, so a key stays valid for its whole life.
///
/// Keys of slots on one page compare equal, so that neighbouring items drawn from
/// one page with equal shader usages merge into one draw.
class ORBIS_UI_EXPORT SharedTextureManager
{
public:
    static SharedTextureManager* instance() { return Singleton<SharedTextureManager>::instance(); }
    ~SharedTextureManager();

    /// The pool of that name, created on first request: pages of `pageSize` in
    /// `format` (GL_ALPHA, GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB or GL_RGBA), at
    /// most `maxPages` of them. -1 (reported) for bad parameters or a name already
    /// used with other ones.
    int pool(const QString& name, GLenum format, const QSize& pageSize, int maxPages);

    /// A slot for an image of `size`, or a null slot when the pool has no room left
    /// or the image (with its border) is larger than a page.
    SharedTextureSlot allocate(int pool, const QSize& size);
    /// The slot's pixels (an image of the slot's size), uploaded at the page's next
    /// bind, converted to the pool's format. Colours are premultiplied.
    bool upload(const SharedTextureSlot& slot, const QImage& image);
    /// Drops the caller's reference and nulls the handle.
    void release(SharedTextureSlot& slot) { slot = SharedTextureSlot(); }
    /// Binds the slot's page on the current unit through the GL state cache.
    bool bind(const SharedTextureSlot& slot);

    /// The end of a frame: places whose last reference went are freed and empty
    /// pages deleted (their textures join the texture cache's expired ones).
    void destroyPendingTextures();

    /// The context that held the pages' textures is going (the last window closes):
    /// they are deleted. Places stay taken, but a slot kept beyond this must have
    /// its pixels uploaded again.
    void releaseTextures();

    int pageCount(int pool) const;
    /// GPU bytes of all pages bound so far.
    quint64 bytes() const;

private:
    friend class Singleton<SharedTextureManager>;
    SharedTextureManager() = default;

    struct Pool
    {
        QString name;
        GLenum format;
        QSize pageSize;
        int maxPages;
        QVector<std::shared_ptr<SharedTexturePage>> pages;
    };

    bool onGuiThread() const;
    bool validPool(int pool) const;

    QVector<Pool> mPools;
};

} // namespace gfx
