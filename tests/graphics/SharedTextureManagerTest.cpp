#include <GLExtensions.h>
#include <LogCapture.h>
#include <SharedTextureManager.h>
#include <TextureArray2D.h>
#include <TextureCache.h>
#include <TextureCube.h>

#include <QRegularExpression>
#include <gtest/gtest.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

QImage filled(const QSize& size, QColor color)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

class SharedTextureManagerTest : public ::testing::Test
{
protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }
    static void reset()
    {
        Singleton<SharedTextureManager>::reset();
        Singleton<TextureCache>::reset();
        Singleton<GLExtensions>::reset();
    }

    SharedTextureManager* shared() { return SharedTextureManager::instance(); }
    ScopedGLRecorder mDriver;
};

TEST_F(SharedTextureManagerTest, PoolsAreFoundByNameAndBadOnesRefused)
{
    LogCapture log;
    const int tiles = shared()->pool("tiles", GL_RGBA, QSize(256, 256), 2);
    EXPECT_EQ(tiles, 0);
    EXPECT_EQ(shared()->pool("tiles", GL_RGBA, QSize(256, 256), 2), tiles);
    EXPECT_EQ(shared()->pool("tiles", GL_ALPHA, QSize(256, 256), 2), -1);
    EXPECT_EQ(shared()->pool("depth", GL_DEPTH_COMPONENT, QSize(256, 256), 2), -1);
    EXPECT_EQ(shared()->pool("none", GL_ALPHA, QSize(256, 256), 0), -1);
    EXPECT_TRUE(shared()->allocate(7, QSize(4, 4)).isNull());
    EXPECT_EQ(log.assertions(), QStringList({"Shared texture pool tiles exists with other parameters",
                                             "Unsupported texture format 0x1902",
                                             "Shared texture pool none needs a page size and pages",
                                             "Unknown shared texture pool 7"}));
}

TEST_F(SharedTextureManagerTest, PixelsGoUpWithABorderAtTheFirstBind)
{
    const int pool = shared()->pool("icons", GL_RGBA, QSize(64, 64), 1);
    const SharedTextureSlot slot = shared()->allocate(pool, QSize(10, 6));
    ASSERT_FALSE(slot.isNull());
    EXPECT_EQ(slot.rect(), QRect(1, 1, 10, 6));
    const TexCoordInsets insets = slot.insets();
    EXPECT_FLOAT_EQ(insets.left, 1 / 64.0f);
    EXPECT_FLOAT_EQ(insets.right, 53 / 64.0f);
    EXPECT_FLOAT_EQ(insets.bottom, 57 / 64.0f);

    LogCapture log;
    EXPECT_FALSE(shared()->upload(slot, filled(QSize(6, 10), Qt::red)));
    EXPECT_EQ(log.assertions(), QStringList({"A 6 x 10 image does not fit a slot of 10 x 6"}));
    mDriver.setLogging(true);
    EXPECT_TRUE(shared()->upload(slot, filled(QSize(10, 6), Qt::red)));
    EXPECT_EQ(mDriver.totalCalls(), 0);
    EXPECT_TRUE(TextureCache::instance()->bind(slot.key()));
    EXPECT_EQ(mDriver.log().filter("glTexImage2D").value(0),
              "glTexImage2D(3553, 0, 6408, 64, 64, 0, 6408, 5121, 0)");
    const QStringList sub = mDriver.log().filter("glTexSubImage2D");
    ASSERT_EQ(sub.size(), 1);
    EXPECT_TRUE(sub[0].startsWith("glTexSubImage2D(3553, 0, 0, 0, 12, 8, 6408, 5121, "))
        << sub[0].toStdString();
    // Bound again: nothing left to upload, and the state cache holds the binding.
    mDriver.reset();
    EXPECT_TRUE(shared()->bind(slot));
    EXPECT_EQ(mDriver.totalCalls(), 0);
    EXPECT_EQ(shared()->bytes(), 64u * 64u * 4u);
}

TEST_F(SharedTextureManagerTest, KeysOfOnePageCompareEqualAndKeepTheirSlot)
{
    const int pool = shared()->pool("tiles", GL_RGBA, QSize(32, 32), 2);
    // Two 14-pixel tiles (16 with their border) fill a row; a page holds four.
    QVector<SharedTextureSlot> taken;
    for (int i = 0; i < 8; ++i)
        taken << shared()->allocate(pool, QSize(14, 14));
    EXPECT_EQ(shared()->pageCount(pool), 2);
    EXPECT_TRUE(shared()->allocate(pool, QSize(14, 14)).isNull());
    EXPECT_TRUE(taken[0].key() == taken[3].key());
    EXPECT_FALSE(taken[0].key() == taken[4].key());

    // A display list still draws slot 1 after its owner let it go: its place
    // stays taken until the key goes, and is free only after the frame's end.
    const QRect place = taken[1].rect();
    TextureKey drawn = taken[1].key();
    shared()->release(taken[1]);
    EXPECT_TRUE(taken[1].isNull());
    shared()->destroyPendingTextures();
    EXPECT_TRUE(shared()->allocate(pool, QSize(14, 14)).isNull());
    drawn = TextureKey();
    EXPECT_TRUE(shared()->allocate(pool, QSize(14, 14)).isNull());
    shared()->destroyPendingTextures();
    const SharedTextureSlot again = shared()->allocate(pool, QSize(14, 14));
    EXPECT_EQ(again.rect(), place);
}

TEST_F(SharedTextureManagerTest, EmptyPagesAreDeletedAtTheFrameEndButTheLastOneStays)
{
    const int pool = shared()->pool("masks", GL_ALPHA, QSize(16, 16), 3);
    QVector<SharedTextureSlot> taken;
    for (int i = 0; i < 3; ++i) {
        taken << shared()->allocate(pool, QSize(14, 14));
        shared()->upload(taken.last(), filled(QSize(14, 14), Qt::black));
        shared()->bind(taken.last());
    }
    EXPECT_EQ(shared()->pageCount(pool), 3);
    EXPECT_EQ(shared()->bytes(), 3u * 16u * 16u);
    taken.clear();
    EXPECT_EQ(shared()->pageCount(pool), 3);
    shared()->destroyPendingTextures();
    EXPECT_EQ(shared()->pageCount(pool), 1);
    EXPECT_EQ(TextureCache::instance()->expiredTextures().size(), 2);
    mDriver.setLogging(true);
    TextureCache::instance()->destroyExpiredTextures();
    EXPECT_EQ(mDriver.count("glDeleteTextures"), 1);
}

TEST_F(SharedTextureManagerTest, TextureArraysAreRefusedOnceWithoutTheExtension)
{
    LogCapture log;
    mDriver.setLogging(true);
    TextureArray2D array;
    EXPECT_FALSE(array.allocate(QSize(8, 8), 4, GL_RGBA));
    EXPECT_FALSE(array.uploadLayer(0, filled(QSize(8, 8), Qt::red)));
    EXPECT_FALSE(array.bind());
    EXPECT_EQ(mDriver.log().filter(QRegularExpression("^gl(?!GetString)")), QStringList());
    ASSERT_EQ(log.messages().size(), 1);
    EXPECT_EQ(log.records()[0].level, LogRecord::Error);
    EXPECT_TRUE(log.messages()[0].startsWith("Array textures need GL_TEXTURE_2D_ARRAY (0x8C1A)"));
    EXPECT_FALSE(array.isCreated());
}

TEST_F(SharedTextureManagerTest, TextureArraysWithTheExtensionBindTheArrayTarget)
{
    mDriver.setExtensions("GL_OES_texture_npot GL_EXT_texture_array");
    mDriver.setLogging(true);
    LogCapture log;
    {
        TextureArray2D array;
        ASSERT_TRUE(array.allocate(QSize(8, 4), 3, GL_ALPHA));
        EXPECT_EQ(array.bytes(), 8u * 4u * 3u);
        EXPECT_FALSE(array.uploadLayer(3, filled(QSize(8, 4), Qt::red)));
        EXPECT_TRUE(array.uploadLayer(2, filled(QSize(4, 4), Qt::red), QPoint(4, 0)));
        EXPECT_EQ(mDriver.log().filter("glBindTexture"), QStringList({"glBindTexture(35866, 1)"}));
        EXPECT_EQ(mDriver.log().filter("glTexImage3D"),
                  QStringList({"glTexImage3D(35866, 0, 6406, 8, 4, 3, 0, 6406, 5121, 0)"}));
        EXPECT_TRUE(mDriver.log()
                        .filter("glTexSubImage3D")
                        .value(0)
                        .startsWith("glTexSubImage3D(35866, 0, 4, 0, 2, 4, 4, 1, 6406, 5121, "));
        EXPECT_EQ(log.assertions(), QStringList({"No layer 3 in an array of 3"}));
    }
    // Deleted with the other expired textures, at the end of the frame.
    EXPECT_EQ(TextureCache::instance()->expiredTextures(), QVector<GLuint>{1});
    EXPECT_EQ(mDriver.count("glDeleteTextures"), 0);
}

TEST_F(SharedTextureManagerTest, CubeFacesMustMatchTheAllocatedSize)
{
    LogCapture log;
    mDriver.setLogging(true);
    TextureCube cube;
    EXPECT_FALSE(cube.uploadFace(0, filled(QSize(4, 4), Qt::red)));
    ASSERT_TRUE(cube.allocate(4, GL_RGB));
    EXPECT_EQ(mDriver.count("glTexImage2D"), 6);
    EXPECT_FALSE(cube.uploadFace(6, filled(QSize(4, 4), Qt::red)));
    EXPECT_FALSE(cube.uploadFace(1, filled(QSize(4, 5), Qt::red)));
    EXPECT_TRUE(cube.uploadFace(5, filled(QSize(4, 4), Qt::red)));
    EXPECT_TRUE(mDriver.log()
                    .filter("glTexSubImage2D")
                    .value(0)
                    .startsWith("glTexSubImage2D(34074, 0, 0, 0, 4, 4, "));
    EXPECT_EQ(mDriver.log().filter("glBindTexture").value(0), "glBindTexture(34067, 1)");
    EXPECT_EQ(log.assertions(),
              QStringList({"Face upload before the cube map has storage", "No cube map face 6",
                           "A 4 x 5 image cannot be a face of 4 x 4"}));
    EXPECT_EQ(cube.bytes(), 4u * 4u * 3u * 6u);
}

} // namespace
