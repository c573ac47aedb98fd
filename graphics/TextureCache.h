#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TLRUCache.h"
#include "TextureFeature.h"
#include "TextureKey.h"

#include <ConfigValue.h>
#include <QHash>
#include <QPixmap>
#include <QVector>
#include <Singleton.h>
#include <memory>
#include <qopengl.h>

namespace gfx {

class IGlyphPageSource;
class TextureKeyDataCached;
class TextureKeyDataGlyph;

extern ORBIS_UI_EXPORT ConfigIntValue TextureCacheSize;
extern ORBIS_UI_EXPORT ConfigIntValue TextureCacheElasticity;

/// Owns every cached GL texture. Textures are uploaded on the first bind of their
/// key, kept in a least-recently-used store bounded by bytes, evicted in bursts
/// beyond the budget, and deleted in one batch between frames. GUI thread only.
class ORBIS_UI_EXPORT TextureCache
{
public:
    struct TextureEntry;
    using Store = TLRUCache<unsigned long, std::shared_ptr<TextureEntry>, NullLock, sorted_vector>;
    /// A texture uploaded for a cached key: its GL name, size and place in the store.
    struct TextureEntry
    {
        ~TextureEntry();
        GLuint mTextureID = 0;
        GLenum mTarget = GL_TEXTURE_2D;
        int mWidth = 0;
        int mHeight = 0;
        quint64 mSize = 0;
        /// Where the entry sits in the store while it is there: a key that already
        /// holds its entry is moved to the front without a search.
        bool mStored = false;
        Store::Handle mPosition;
        /// The cache whose live figures count this entry (0: none).
        quint64 mCounted = 0;
    };
    /// The key of one page of the glyph cache.
    struct GlyphEntry
    {
        TextureKey key;
    };

    static TextureCache* instance() { return Singleton<TextureCache>::instance(); }
    ~TextureCache();

    TextureKey addOrLookup(const QPixmap& pixmap, TextureFeatures features = TextureFeature::None);
    TextureKey addOrLookup(const QImage& image, TextureFeatures features = TextureFeature::None);
    TextureKey addOrLookup(QString fileName, TextureFeatures features = TextureFeature::None);

    /// Leaves the texture bound on the current unit. False when there is nothing to
    /// sample (a null key, or pixels that could not be uploaded).
    bool bind(const TextureKey& key);
    bool bind(TextureKeyDataCached* key);
    bool bind(TextureKeyDataGlyph* key);

    TextureKey glyphCachePage(unsigned int page);
    /// The glyph cache installs itself here (not owned); nullptr detaches it.
    void setGlyphPageSource(IGlyphPageSource* source);

    void destroyExpiredTextures();
    /// Queues a texture that something else owned for deletion with the expired ones.
    void deleteLater(GLuint texture);
    /// Drops every stored entry (their textures expire unless keys still hold them).
    void clear();

    /// Changes the budget at run time (0 = unbounded), evicting at once if the
    /// store is now over it.
    void setMaxSizeMb(int megabytes);
    quint64 maxSize() const { return mMaxSize; }
    quint64 elasticity() const { return mElasticity; }
    quint64 currentSize() const { return mCurrentSize; }
    size_t entryCount() const { return mStore.size(); }
    /// Textures this cache uploaded that are still alive: the stored ones and the
    /// evicted ones that keys still hold (a pool of map tiles, say), with their bytes.
    int liveTextureCount() const { return mLiveTextures; }
    quint64 liveBytes() const { return mLiveBytes; }
    const QVector<GLuint>& expiredTextures() const { return mExpired; }

private:
    friend class Singleton<TextureCache>;
    friend struct TextureEntry;
    TextureCache();

    bool onGuiThread() const;
    std::shared_ptr<TextureEntry> upload(TextureKeyDataCached* key);
    void store(unsigned long cacheKey, const std::shared_ptr<TextureEntry>& entry);
    void evict();
    bool bindEntry(const TextureEntry& entry);

    const quint64 mGeneration;
    Store mStore;
    quint64 mMaxSize;
    quint64 mElasticity;
    quint64 mCurrentSize = 0;
    int mLiveTextures = 0;
    quint64 mLiveBytes = 0;
    QHash<unsigned int, std::shared_ptr<GlyphEntry>> mGlyphEntries;
    IGlyphPageSource* mGlyphSource = nullptr;
    QVector<GLuint> mExpired;
};

} // namespace gfx
