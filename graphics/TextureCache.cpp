#include "TextureCache.h"

#include "GLStateManager.h"
#include "GLUtils.h"
#include "IGlyphPageSource.h"
#include "SharedTextureManager.h"
#include "TextureKeyDataFile.h"
#include "TextureKeyDataGlyph.h"
#include "TextureKeyDataQImage.h"
#include "TextureKeyDataQPixmap.h"
#include "TextureKeyDataShared.h"
#include "TextureKeyDataTarget.h"

#include <Logger.h>
#include <QCoreApplication>
#include <QThread>

namespace gfx {

ConfigIntValue TextureCacheSize("gfx/texture_cache_size_mb", 24);
ConfigIntValue TextureCacheElasticity("gfx/texture_cache_elasticity_mb", 4);

namespace {
const char* const kLogSource = "graphics/TextureCache";
constexpr quint64 kMegabyte = 1048576;
// Entries can outlive the cache that made them (a cache replaced while keys still
// hold its textures); only their own cache counts them out.
quint64 sGenerations = 0;
} // namespace

TextureCache::TextureEntry::~TextureEntry()
{
    if (mTextureID && Singleton<TextureCache>::exists()) {
        TextureCache* cache = TextureCache::instance();
        cache->mExpired.append(mTextureID);
        if (mCounted == cache->mGeneration) {
            --cache->mLiveTextures;
            cache->mLiveBytes -= mSize;
        }
    }
}

TextureCache::TextureCache()
    : mGeneration(++sGenerations), mMaxSize(quint64(qMax(0, TextureCacheSize.value())) * kMegabyte),
      mElasticity(quint64(qMax(0, TextureCacheElasticity.value())) * kMegabyte)
{}

TextureCache::~TextureCache()
{
    // Entries still referenced by keys outlive the cache; their names cannot be
    // queued any more and go with the context.
    clear();
}

TextureKey TextureCache::addOrLookup(const QPixmap& pixmap, TextureFeatures features)
{
    return TextureKey(new TextureKeyDataQPixmap(pixmap, features));
}

TextureKey TextureCache::addOrLookup(const QImage& image, TextureFeatures features)
{
    return TextureKey(new TextureKeyDataQImage(image, features));
}

TextureKey TextureCache::addOrLookup(QString fileName, TextureFeatures features)
{
    return TextureKey(new TextureKeyDataFile(fileName, features));
}

bool TextureCache::onGuiThread() const
{
    if (QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread())
        return true;
    return Logger::logAssert("QCoreApplication::instance() && QThread::currentThread() == "
                             "QCoreApplication::instance()->thread()",
                             QStringLiteral("TextureCache used off the GUI thread"), kLogSource, __LINE__);
}

bool TextureCache::bind(const TextureKey& key)
{
    // Null pixels are found out by the upload (once: the failed entry is kept).
    TextureKeyData* data = key.data();
    if (!data)
        return false;
    if (data->type() == TextureKeyData::kGlyph)
        return bind(static_cast<TextureKeyDataGlyph*>(data));
    if (data->type() == TextureKeyData::kShared)
        return SharedTextureManager::instance()->bind(static_cast<TextureKeyDataShared*>(data)->slot());
    if (data->type() == TextureKeyData::kTarget) {
        const GLuint texture = static_cast<TextureKeyDataTarget*>(data)->texture();
        GLStateManager::instance()->glBindTexture2D(texture);
        return texture != 0;
    }
    return bind(static_cast<TextureKeyDataCached*>(data));
}

bool TextureCache::bindEntry(const TextureEntry& entry)
{
    GLStateManager* state = GLStateManager::instance();
    if (entry.mTarget == GL_TEXTURE_CUBE_MAP)
        state->glBindTextureCubeMap(entry.mTextureID);
    else
        state->glBindTexture2D(entry.mTextureID);
    return entry.mTextureID != 0;
}

bool TextureCache::bind(TextureKeyDataCached* key)
{
    if (!onGuiThread())
        return false;
    const unsigned long cacheKey = key->cacheKey();
    if (const std::shared_ptr<TextureEntry> held = key->entry()) {
        // No search for a key that holds its entry: a stored one moves to the front.
        // An evicted one is still alive: it draws without a second upload and
        // returns to the store, so that the budget counts it again (unless another
        // key has meanwhile stored the same pixels: that copy serves both).
        if (held->mStored) {
            mStore.touch(held->mPosition);
        } else if (held->mTextureID) {
            if (std::shared_ptr<TextureEntry>* hit = mStore.find(cacheKey)) {
                key->setEntry(*hit);
                return bindEntry(**hit);
            }
            store(cacheKey, held);
        }
        return bindEntry(*held);
    }
    if (std::shared_ptr<TextureEntry>* hit = mStore.find(cacheKey)) {
        key->setEntry(*hit);
        return bindEntry(**hit);
    }
    std::shared_ptr<TextureEntry> e = upload(key);
    key->setEntry(e);
    // A failed upload stays with its key, so that it is not tried again every
    // frame, but out of the store: a later key for the same source loads afresh.
    if (ORBIS_ASSERT(e->mTextureID, QStringLiteral("Texture upload produced no texture name")))
        store(cacheKey, e);
    return bindEntry(*e);
}

void TextureCache::store(unsigned long cacheKey, const std::shared_ptr<TextureEntry>& entry)
{
    entry->mPosition = mStore.insert(cacheKey, entry);
    entry->mStored = true;
    mCurrentSize += entry->mSize;
    evict();
}

std::shared_ptr<TextureCache::TextureEntry> TextureCache::upload(TextureKeyDataCached* key)
{
    auto entry = std::make_shared<TextureEntry>();
    TextureEntry& e = *entry;
    if (key->type() == TextureKeyData::kFile) {
        auto* file = static_cast<TextureKeyDataFile*>(key);
        if (file->isKtx())
            GLUtils::uploadKtx(file->filename(), e.mTextureID, e.mTarget, e.mWidth, e.mHeight, e.mSize,
                               key->features());
        else
            GLUtils::uploadFromFile(file->filename(), e.mTextureID, e.mWidth, e.mHeight, e.mSize,
                                    key->features());
    } else {
        const QImage image = key->image();
        GLUtils::upload(image, e.mTextureID, e.mSize, key->features());
        e.mWidth = image.width();
        e.mHeight = image.height();
    }
    if (e.mTextureID) {
        e.mCounted = mGeneration;
        ++mLiveTextures;
        mLiveBytes += e.mSize;
    }
    return entry;
}

void TextureCache::evict()
{
    if (mMaxSize == 0 || mCurrentSize < mMaxSize + mElasticity)
        return;
    std::pair<unsigned long, std::shared_ptr<TextureEntry>> victim;
    while (mCurrentSize > mMaxSize && mStore.takeLast(victim)) {
        mCurrentSize -= victim.second->mSize;
        victim.second->mStored = false;
    }
}

bool TextureCache::bind(TextureKeyDataGlyph* key)
{
    if (!onGuiThread())
        return false;
    if (!ORBIS_ASSERT(mGlyphSource, QStringLiteral("No glyph cache to bind glyph page %1").arg(key->page())))
        return false;
    const GLuint texture = mGlyphSource->activePageTexture(key->page());
    GLStateManager::instance()->glBindTexture2D(texture);
    return texture != 0;
}

TextureKey TextureCache::glyphCachePage(unsigned int page)
{
    auto it = mGlyphEntries.constFind(page);
    if (it != mGlyphEntries.constEnd())
        return (*it)->key;
    if (!ORBIS_ASSERT(mGlyphSource, QStringLiteral("No glyph cache to describe glyph page %1").arg(page)))
        return TextureKey();
    const IGlyphPageSource::PageInfo info = mGlyphSource->page(page);
    auto entry = std::make_shared<GlyphEntry>();
    entry->key = TextureKey(new TextureKeyDataGlyph(page, info.size, info.depth));
    mGlyphEntries.insert(page, entry);
    return entry->key;
}

void TextureCache::setGlyphPageSource(IGlyphPageSource* source)
{
    mGlyphSource = source;
    mGlyphEntries.clear();
}

void TextureCache::destroyExpiredTextures()
{
    if (!onGuiThread() || mExpired.isEmpty())
        return;
    GLStateManager::instance()->glBindTexture2D(0);
    GLUtils::glDeleteTrackedTextures(mExpired.size(), mExpired.constData());
    mExpired.clear();
}

void TextureCache::deleteLater(GLuint texture)
{
    if (texture && onGuiThread())
        mExpired.append(texture);
}

void TextureCache::clear()
{
    std::pair<unsigned long, std::shared_ptr<TextureEntry>> entry;
    while (mStore.takeLast(entry))
        entry.second->mStored = false;
    mCurrentSize = 0;
}

void TextureCache::setMaxSizeMb(int megabytes)
{
    mMaxSize = quint64(qMax(0, megabytes)) * kMegabyte;
    evict();
}

} // namespace gfx
