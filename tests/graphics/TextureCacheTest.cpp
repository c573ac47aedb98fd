#include <GLUtils.h>
#include <IGlyphPageSource.h>
#include <LogCapture.h>
#include <ScopedConfigOverride.h>
#include <TLRUCache.h>
#include <TextureCache.h>
#include <TextureKeyDataCached.h>

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <random>
#include <support/KtxWriter.h>
#include <support/ScopedGLRecorder.h>
#include <thread>

using namespace gfx;

namespace {

constexpr quint64 kMB = 1048576;

// An image of exactly `bytes` as RGBA (bytes divisible by 4 * 256).
TextureKey keyOfBytes(quint64 bytes)
{
    QImage image(256, int(bytes / 1024), QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    return TextureCache::instance()->addOrLookup(image);
}

bool stored(const TextureKey& key)
{
    auto* data = static_cast<TextureKeyDataCached*>(key.data());
    return data->entry() != nullptr;
}

class TextureCacheTest : public ::testing::Test
{
protected:
    void SetUp() override { Singleton<TextureCache>::reset(); }
    void TearDown() override { Singleton<TextureCache>::reset(); }

    TextureCache* cache() { return TextureCache::instance(); }
    ScopedGLRecorder mDriver;
};

TEST_F(TextureCacheTest, EvictsInBurstsBetweenBudgetAndElasticity)
{
    EXPECT_EQ(cache()->maxSize(), 24 * kMB);
    EXPECT_EQ(cache()->elasticity(), 4 * kMB);
    QVector<TextureKey> keys;
    for (int i = 0; i < 27; ++i) {
        keys << keyOfBytes(kMB);
        cache()->bind(keys.last());
    }
    keys << keyOfBytes(kMB / 2);
    cache()->bind(keys.last());
    EXPECT_EQ(cache()->currentSize(), 27 * kMB + kMB / 2);
    EXPECT_EQ(cache()->entryCount(), 28u);

    Singleton<TextureCache>::reset();
    keys.clear();
    for (int i = 0; i < 27; ++i) {
        keys << keyOfBytes(kMB);
        cache()->bind(keys.last());
    }
    keys << keyOfBytes(921600); // 27.88 MB in all
    cache()->bind(keys.last());
    EXPECT_EQ(cache()->entryCount(), 28u);
    // Touching the oldest makes the second oldest the first to go.
    cache()->bind(keys[0]);
    keys << keyOfBytes(209920); // 0.2 MB reaches 28 MB
    cache()->bind(keys.last());
    EXPECT_LE(cache()->currentSize(), 24 * kMB);
    EXPECT_EQ(cache()->currentSize(), 22 * kMB + 921600 + 209920);
    EXPECT_EQ(cache()->entryCount(), 24u);
    // Evicted entries stay with their keys until released, and stay live.
    EXPECT_TRUE(cache()->expiredTextures().isEmpty());
    EXPECT_EQ(cache()->liveTextureCount(), 29);
    EXPECT_EQ(cache()->liveBytes(), 27 * kMB + 921600 + 209920);
    keys[1] = TextureKey();
    EXPECT_EQ(cache()->expiredTextures().size(), 1);
    EXPECT_EQ(cache()->liveTextureCount(), 28);
    EXPECT_EQ(cache()->liveBytes(), 26 * kMB + 921600 + 209920);
}

TEST_F(TextureCacheTest, ZeroBudgetNeverEvictsAndTheBudgetCanChange)
{
    ScopedConfigOverride size("gfx/texture_cache_size_mb", 0);
    Singleton<TextureCache>::reset();
    QVector<TextureKey> keys;
    for (int i = 0; i < 40; ++i) {
        keys << keyOfBytes(kMB);
        cache()->bind(keys.last());
    }
    EXPECT_EQ(cache()->entryCount(), 40u);
    cache()->setMaxSizeMb(10);
    EXPECT_EQ(cache()->currentSize(), 10 * kMB);
    EXPECT_FALSE(cache()->expiredTextures().size());
    keys.clear();
    EXPECT_EQ(cache()->expiredTextures().size(), 30);
}

TEST_F(TextureCacheTest, ASecondBindIsAHitAndDeletionWaitsForTheLastReference)
{
    mDriver.setLogging(true);
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    TextureKey first = cache()->addOrLookup(image);
    TextureKey same = cache()->addOrLookup(image);
    EXPECT_TRUE(cache()->bind(first));
    EXPECT_TRUE(cache()->bind(same));
    EXPECT_TRUE(cache()->bind(first));
    EXPECT_EQ(mDriver.count("glTexImage2D"), 1);
    EXPECT_EQ(cache()->currentSize(), 64u);

    const GLuint name = static_cast<TextureKeyDataCached*>(first.data())->entry()->mTextureID;
    cache()->setMaxSizeMb(0);
    cache()->clear();
    EXPECT_TRUE(cache()->bind(first)); // evicted, still held: no new upload
    EXPECT_EQ(mDriver.count("glTexImage2D"), 1);
    EXPECT_EQ(cache()->currentSize(), 64u);
    cache()->clear();
    cache()->destroyExpiredTextures();
    EXPECT_EQ(mDriver.count("glDeleteTextures"), 0);
    first = TextureKey();
    EXPECT_TRUE(cache()->expiredTextures().isEmpty());
    same = TextureKey();
    EXPECT_EQ(cache()->expiredTextures(), QVector<GLuint>{name});
    const quint64 before = GLUtils::trackedTextureBytes();
    mDriver.reset();
    cache()->destroyExpiredTextures();
    EXPECT_EQ(mDriver.log(), QStringList({"glBindTexture(3553, 0)", mDriver.log().value(1)}));
    EXPECT_TRUE(mDriver.log().value(1).startsWith("glDeleteTextures(1, "));
    EXPECT_EQ(GLUtils::trackedTextureBytes(), before - 64);
    EXPECT_TRUE(cache()->expiredTextures().isEmpty());
}

TEST_F(TextureCacheTest, FilesLoadByExtensionAndFailuresDrawNothing)
{
    QTemporaryDir dir;
    KtxWriter ktx;
    ktx.glFormat = ktx.glInternalFormat = 0x1907; // GL_RGB
    ktx.width = 2;
    ktx.height = 2;
    // Rows padded to four bytes, as the container has them.
    ktx.levels = {{QByteArray(16, '\x7f')}, {QByteArray(4, '\x7f')}};
    const QString ktxPath = dir.filePath("road.KTX");
    QFile file(ktxPath);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(ktx.build());
    file.close();
    QImage png(3, 5, QImage::Format_ARGB32);
    png.fill(QColor(255, 0, 0, 128));
    const QString pngPath = dir.filePath("icon.png");
    ASSERT_TRUE(png.save(pngPath));

    mDriver.setLogging(true);
    LogCapture log;
    EXPECT_TRUE(cache()->bind(cache()->addOrLookup(ktxPath)));
    // The second mip level of the file went up as it is: not through stb_image.
    EXPECT_EQ(mDriver.log().filter("glTexImage2D(3553, 1, 6407, 1, 1, 0, 6407, 5121, ").size(), 1);
    EXPECT_EQ(cache()->currentSize(), 15u);
    EXPECT_EQ(cache()->addOrLookup(ktxPath).size(), QSize(2, 2));
    EXPECT_TRUE(cache()->bind(cache()->addOrLookup(pngPath)));
    EXPECT_EQ(cache()->currentSize(), 15u + 60u);
    EXPECT_TRUE(log.records().isEmpty());

    const QString missing = dir.filePath("missing.png");
    TextureKey broken = cache()->addOrLookup(missing);
    EXPECT_FALSE(cache()->bind(broken));
    EXPECT_FALSE(cache()->bind(broken));
    ASSERT_EQ(log.records().size(), 2);
    EXPECT_TRUE(log.records()[0].message.startsWith("Cannot load texture " + missing + ": "));
    EXPECT_EQ(log.records()[1].condition, "e->mTextureID");
    EXPECT_EQ(log.records()[1].file, "graphics/TextureCache");

    log.clear();
    const QString notImage = dir.filePath("notes.png");
    QFile text(notImage);
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("not an image");
    text.close();
    EXPECT_FALSE(cache()->bind(cache()->addOrLookup(notImage)));
    EXPECT_TRUE(log.messages().value(0).startsWith("Cannot load texture " + notImage + ": "));

    // Damaged headers of the rarer formats: no pixels at all, and 16-bit grey
    // samples declared for far more bytes than follow.
    log.clear();
    mDriver.reset();
    for (const QByteArray& damaged : {QByteArray("P6\n0 0\n255\n"), QByteArray("P5558\n7\n874\0\0\0", 14)}) {
        GLuint id = 7;
        int width = -1, height = -1;
        quint64 bytes = 1;
        EXPECT_FALSE(
            GLUtils::uploadEncoded(damaged, "damaged.pgm", id, width, height, bytes, TextureFeatures()));
        EXPECT_EQ(id, 0u);
        EXPECT_EQ(bytes, 0u);
    }
    ASSERT_EQ(log.messages().size(), 2);
    EXPECT_TRUE(log.messages()[1].startsWith("Cannot load texture damaged.pgm: "))
        << log.messages()[1].toStdString();
    EXPECT_EQ(mDriver.count("glGenTextures"), 0);
}

TEST_F(TextureCacheTest, EvictedTexturesDrawnAgainCountAgainstTheBudget)
{
    ScopedConfigOverride size("gfx/texture_cache_size_mb", 4);
    ScopedConfigOverride elasticity("gfx/texture_cache_elasticity_mb", 0);
    Singleton<TextureCache>::reset();
    // A list keeps drawing four textures; four passing ones are drawn once and
    // dropped by their owners.
    QVector<TextureKey> kept;
    for (int i = 0; i < 4; ++i) {
        kept << keyOfBytes(kMB);
        cache()->bind(kept.last());
    }
    for (int i = 0; i < 4; ++i)
        cache()->bind(keyOfBytes(kMB));
    for (const TextureKey& key : kept)
        EXPECT_TRUE(cache()->bind(key));
    // The kept ones are what is alive; the passing ones make room for them.
    EXPECT_EQ(cache()->currentSize(), 4 * kMB);
    EXPECT_EQ(cache()->entryCount(), 4u);
    EXPECT_EQ(cache()->expiredTextures().size(), 4);
}

TEST_F(TextureCacheTest, AFailedLoadDoesNotBlockALaterOne)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("late.png");
    LogCapture log;
    TextureKey early = cache()->addOrLookup(path);
    EXPECT_FALSE(cache()->bind(early));
    EXPECT_EQ(cache()->entryCount(), 0u);
    QImage png(2, 2, QImage::Format_ARGB32);
    png.fill(Qt::blue);
    ASSERT_TRUE(png.save(path));
    EXPECT_TRUE(cache()->bind(cache()->addOrLookup(path)));
    EXPECT_EQ(cache()->currentSize(), 16u);
    // The failed key is not tried again.
    log.clear();
    EXPECT_FALSE(cache()->bind(early));
    EXPECT_TRUE(log.records().isEmpty());
}

TEST_F(TextureCacheTest, OtherThreadsAreRefused)
{
    TextureKey key = keyOfBytes(1024);
    LogCapture log;
    bool bound = true;
    std::thread([&] { bound = cache()->bind(key); }).join();
    EXPECT_FALSE(bound);
    EXPECT_FALSE(stored(key));
    ASSERT_EQ(log.records().size(), 1);
    EXPECT_EQ(
        log.records()[0].condition,
        "QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread()");
}

class FakeGlyphPages : public IGlyphPageSource
{
public:
    PageInfo page(unsigned int page) const override { return {QSize(256, 128 * int(page + 1)), 1}; }
    GLuint activePageTexture(unsigned int page) override
    {
        ++activations;
        return 100 + page;
    }
    int activations = 0;
};

TEST_F(TextureCacheTest, GlyphPagesBindThroughTheGlyphCache)
{
    LogCapture log;
    EXPECT_TRUE(cache()->glyphCachePage(0).isNull());
    EXPECT_EQ(log.assertions(), QStringList({"No glyph cache to describe glyph page 0"}));

    FakeGlyphPages pages;
    cache()->setGlyphPageSource(&pages);
    const TextureKey page1 = cache()->glyphCachePage(1);
    EXPECT_EQ(page1.size(), QSize(256, 256));
    EXPECT_TRUE(cache()->glyphCachePage(1) == page1);
    EXPECT_FALSE(cache()->glyphCachePage(2) == page1);
    mDriver.setLogging(true);
    EXPECT_TRUE(cache()->bind(page1));
    EXPECT_EQ(pages.activations, 1);
    EXPECT_EQ(mDriver.log(), QStringList({"glBindTexture(3553, 101)"}));
    EXPECT_EQ(cache()->entryCount(), 0u);
    cache()->setGlyphPageSource(nullptr);
}

TEST(TLRUCacheTest, FindsThroughTheSortedIndexAndEvictsTheLeastRecentlyUsed)
{
    TLRUCache<unsigned long, int> lru;
    std::vector<unsigned long> keys(500);
    std::mt19937 random(7);
    for (size_t i = 0; i < keys.size(); ++i) {
        keys[i] = random();
        lru.insert(keys[i], int(i));
    }
    for (size_t i = 0; i < keys.size(); i += 2)
        ASSERT_EQ(*lru.find(keys[i]), int(i));
    EXPECT_EQ(lru.find(12345u), nullptr);
    lru.insert(keys[1], -1); // replaces and moves to the front
    EXPECT_EQ(lru.size(), 500u);
    std::pair<unsigned long, int> out;
    ASSERT_TRUE(lru.takeLast(out));
    EXPECT_EQ(out.first, keys[3]); // odd keys were never touched again, oldest first
    EXPECT_FALSE(lru.contains(keys[3]));
    EXPECT_TRUE(lru.contains(keys[1]));
    lru.clear();
    EXPECT_FALSE(lru.takeLast(out));
}

} // namespace
