#include <GLUtils.h>
#include <KtxFile.h>
#include <LogCapture.h>

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <support/KtxWriter.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

KtxWriter mipChain()
{
    KtxWriter w;
    w.width = 4;
    w.height = 2;
    w.keyValueData = QByteArray(8, 'k');
    w.levels = {{QByteArray(32, 'a')}, {QByteArray(8, 'b')}, {QByteArray(4, 'c')}};
    return w;
}

TEST(KtxFileTest, ReadsLevelsFacesAndEitherByteOrder)
{
    KtxFile ktx;
    ASSERT_TRUE(ktx.parse(mipChain().build())) << ktx.errorString().toStdString();
    EXPECT_EQ(ktx.width(), 4);
    EXPECT_EQ(ktx.height(), 2);
    ASSERT_EQ(ktx.levelCount(), 3);
    EXPECT_EQ(ktx.image(1, 0), QByteArray(8, 'b'));
    EXPECT_EQ(ktx.image(2, 0), QByteArray(4, 'c'));
    EXPECT_EQ(ktx.totalBytes(), 44u);
    EXPECT_FALSE(ktx.isCube());

    KtxWriter cube;
    cube.glType = 0x8363; // GL_UNSIGNED_SHORT_5_6_5: 16-bit pixels, written big-endian
    cube.glTypeSize = 2;
    cube.glFormat = cube.glInternalFormat = 0x1907; // GL_RGB
    cube.swapped = true;
    cube.levels = {QVector<QByteArray>(6, QByteArray("\x01\x02\x03\x04\x05\x06", 6))};
    ASSERT_TRUE(ktx.parse(cube.build())) << ktx.errorString().toStdString();
    EXPECT_TRUE(ktx.isCube());
    EXPECT_EQ(ktx.glType(), 0x8363u);
    // Each face padded to four bytes; components swapped to native order.
    EXPECT_EQ(ktx.image(0, 5), QByteArray("\x02\x01\x04\x03\x06\x05", 6));
}

TEST(KtxFileTest, RefusesBrokenFiles)
{
    KtxFile ktx;
    const QByteArray good = mipChain().build();
    EXPECT_FALSE(ktx.parse(good.left(good.size() - 1)));
    EXPECT_EQ(ktx.errorString(), "truncated at mip level 2");
    EXPECT_FALSE(ktx.parse(good.left(40)));
    EXPECT_EQ(ktx.errorString(), "truncated header");
    QByteArray png = good;
    png[1] = 'P';
    EXPECT_FALSE(ktx.parse(png));
    EXPECT_EQ(ktx.errorString(), "not a KTX 1.1 file");
    KtxWriter array = mipChain();
    array.arrayElements = 2;
    EXPECT_FALSE(ktx.parse(array.build()));
    EXPECT_EQ(ktx.errorString(), "array and 3D textures are not supported");

    // The driver would read a whole level whatever the file holds: rows of a 3x1
    // RGB level are padded to 12 bytes.
    KtxWriter rgb;
    rgb.glFormat = rgb.glInternalFormat = 0x1907;
    rgb.width = 3;
    rgb.height = 2;
    rgb.levels = {{QByteArray(23, 'a')}};
    EXPECT_FALSE(ktx.parse(rgb.build()));
    EXPECT_EQ(ktx.errorString(), "mip level 0 holds 23 bytes, not 24");
    rgb.levels = {{QByteArray(24, 'a')}};
    EXPECT_TRUE(ktx.parse(rgb.build())) << ktx.errorString().toStdString();
    KtxWriter desktopOnly = mipChain();
    desktopOnly.glFormat = 0x80E1; // GL_BGRA
    EXPECT_FALSE(ktx.parse(desktopOnly.build()));
    EXPECT_EQ(ktx.errorString(), "unsupported format 0x80e1 with type 0x1401");
}

TEST(KtxFileTest, CompressedFilesNeedTheDriversExtension)
{
    QTemporaryDir dir;
    KtxWriter w;
    w.glType = 0;
    w.glFormat = 0;
    w.glInternalFormat = 0x83F0;
    w.width = 4;
    w.height = 4;
    w.levels = {{QByteArray(8, 'x')}};
    const QString path = dir.filePath("dxt1.ktx");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(w.build());
    file.close();

    ScopedGLRecorder driver;
    GLuint id = 0;
    GLenum target = 0;
    int width = 0, height = 0;
    quint64 bytes = 0;
    LogCapture log;
    EXPECT_FALSE(GLUtils::uploadKtx(path, id, target, width, height, bytes, TextureFeature::None));
    EXPECT_EQ(id, 0u);
    EXPECT_EQ(log.messages(),
              QStringList(
                  {QString("Cannot load texture %1: compressed format 0x83f0 is not supported by the driver")
                       .arg(path)}));

    driver.setExtensions("GL_OES_rgb8_rgba8 GL_EXT_texture_compression_dxt1");
    EXPECT_TRUE(GLUtils::uploadKtx(path, id, target, width, height, bytes, TextureFeature::None));
    EXPECT_NE(id, 0u);
    EXPECT_EQ(driver.count("glCompressedTexImage2D"), 1);
    EXPECT_EQ(bytes, 8u);
    GLUtils::glDeleteTrackedTextures(1, &id);
}

} // namespace
