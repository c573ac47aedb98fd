#include <DisplayList.h>
#include <GLStateManager.h>
#include <ICustomRenderer.h>
#include <RenderItem.h>
#include <RenderItemBuilder.h>
#include <RenderState.h>
#include <TextureCache.h>

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <support/GLTestContext.h>
#include <support/KtxWriter.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

const QRgb kRed = qRgba(255, 0, 0, 255);
const QRgb kGreen = qRgba(0, 255, 0, 255);
const QRgb kBlue = qRgba(0, 0, 255, 255);
const QRgb kClear = qRgba(0, 0, 0, 255);

class RendererGLTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mGL.isValid());
        mGL.clear(0, 0, 0, 1);
    }

    void draw(RenderItemBuilder& builder, bool allowSubstitution = false, RenderState state = RenderState())
    {
        if (state.surfaceHeight == 0)
            state = RenderState(mGL.size());
        auto list = builder.createDisplayList(allowSubstitution);
        list->optimize();
        list->render(state);
    }
    ::testing::AssertionResult pixelIs(int x, int y, QRgb expected, int tolerance = 2)
    {
        const QRgb actual = mGL.pixel(x, y);
        if (colorsClose(actual, expected, tolerance))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << "pixel " << x << "," << y << " is " << std::hex << actual << ", expected " << expected;
    }
    TextureKey quadrants()
    {
        QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
        image.setPixel(0, 0, kRed);
        image.setPixel(1, 0, kGreen);
        image.setPixel(0, 1, kBlue);
        image.setPixel(1, 1, qRgba(255, 255, 255, 255));
        return TextureCache::instance()->addOrLookup(image);
    }

    GLTestContext mGL{QSize(64, 64)};
};

TEST_F(RendererGLTest, SolidRectsLandOnTheirPixelsTopDown)
{
    RenderItemBuilder builder;
    builder.drawColoredRect(QRect(8, 4, 16, 8), Qt::red);
    builder.drawColoredRegion(QRegion(40, 40, 4, 4) + QRegion(50, 50, 4, 4), Qt::green);
    draw(builder);
    EXPECT_TRUE(pixelIs(8, 4, kRed));
    EXPECT_TRUE(pixelIs(23, 11, kRed));
    EXPECT_TRUE(pixelIs(24, 11, kClear));
    EXPECT_TRUE(pixelIs(8, 12, kClear));
    EXPECT_TRUE(pixelIs(7, 4, kClear));
    EXPECT_TRUE(pixelIs(41, 41, kGreen));
    EXPECT_TRUE(pixelIs(51, 51, kGreen));
    EXPECT_TRUE(pixelIs(46, 46, kClear));
}

TEST_F(RendererGLTest, TexturesMapTheirCornersAndInsets)
{
    const TextureKey key = quadrants();
    RenderItemBuilder builder;
    builder.drawTexturedRect(QRect(0, 0, 32, 32), key, false);
    // Only the green texel, stretched.
    builder.drawTexturedRect(QRect(32, 32, 32, 32), key, QRect(1, 0, 1, 1), false);
    draw(builder);
    EXPECT_TRUE(pixelIs(2, 2, kRed));
    EXPECT_TRUE(pixelIs(29, 2, kGreen));
    EXPECT_TRUE(pixelIs(2, 29, kBlue));
    EXPECT_TRUE(pixelIs(29, 29, qRgba(255, 255, 255, 255)));
    // Linear filtering: the texel's own colour shows at its centre, the middle.
    EXPECT_TRUE(pixelIs(47, 47, kGreen, 12));
    EXPECT_TRUE(pixelIs(48, 48, kGreen, 12));
}

TEST_F(RendererGLTest, TranslucentItemsBlendPremultiplied)
{
    RenderItemBuilder builder;
    builder.drawColoredRect(QRect(0, 0, 64, 64), Qt::blue);
    builder.drawColoredRect(QRect(0, 0, 32, 64), QColor(255, 0, 0, 128));
    builder.setOpacity(0.5f);
    builder.drawColoredRect(QRect(32, 0, 32, 64), Qt::green);
    draw(builder);
    EXPECT_TRUE(pixelIs(10, 10, qRgba(128, 0, 127, 255)));
    EXPECT_TRUE(pixelIs(40, 10, qRgba(0, 128, 127, 255)));
}

TEST_F(RendererGLTest, OpacifiedTexturesMatchBlendedOnes)
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            image.setPixel(x, y, qPremultiply(qRgba(255, x * 4, 0, y * 4)));
    const TextureKey key = TextureCache::instance()->addOrLookup(image);
    QImage results[2];
    for (bool substitute : {false, true}) {
        mGL.clear(0, 0, 0, 1);
        RenderItemBuilder builder;
        builder.drawColoredRect(QRect(0, 0, 64, 64), QColor(30, 60, 90));
        builder.drawTexturedRect(QRect(0, 0, 64, 64), key, true);
        draw(builder, substitute);
        results[substitute] = mGL.image();
    }
    for (int y = 0; y < 64; y += 7)
        for (int x = 0; x < 64; x += 7)
            ASSERT_TRUE(colorsClose(results[0].pixel(x, y), results[1].pixel(x, y))) << x << "," << y;
}

TEST_F(RendererGLTest, ItemsAreScissoredToTheClip)
{
    RenderItemBuilder builder;
    builder.drawColoredRect(QRect(0, 0, 64, 64), Qt::red);
    RenderState state(mGL.size());
    state.clipRect = QRect(0, 0, 16, 64);
    draw(builder, false, state);
    EXPECT_TRUE(pixelIs(15, 60, kRed));
    EXPECT_TRUE(pixelIs(16, 60, kClear));

    RenderItemBuilder clipped(QRegion(40, 0, 8, 8));
    clipped.drawColoredRect(QRect(0, 0, 64, 64), Qt::green);
    draw(clipped);
    EXPECT_TRUE(pixelIs(40, 0, kGreen));
    EXPECT_TRUE(pixelIs(48, 0, kClear));
    EXPECT_TRUE(pixelIs(40, 8, kClear));
}

TEST_F(RendererGLTest, NestedListsDrawIntoTheirTargetScaled)
{
    RenderItemBuilder inner;
    inner.drawColoredRect(QRect(0, 0, 10, 10), Qt::green);
    inner.drawColoredRect(QRect(5, 5, 5, 5), Qt::red);
    auto nested = inner.createDisplayList(false);
    nested->optimize();
    RenderItemBuilder outer;
    outer.drawColoredRect(QRect(0, 0, 64, 64), Qt::blue);
    outer.drawDisplayList(nested, QRect(20, 20, 20, 20), QRect(0, 0, 10, 10), false);
    outer.drawViewportDisplayList(nested, QRect(50, 0, 10, 10), false);
    // An optimised opaque list promises to cover its target.
    ASSERT_EQ(outer.items()[1]->opaqueRect, QRect(20, 20, 20, 20));
    draw(outer);
    EXPECT_TRUE(pixelIs(21, 21, kGreen));
    EXPECT_TRUE(pixelIs(29, 29, kGreen));
    EXPECT_TRUE(pixelIs(31, 31, kRed));
    EXPECT_TRUE(pixelIs(39, 39, kRed));
    EXPECT_TRUE(pixelIs(40, 40, kBlue));
    EXPECT_TRUE(pixelIs(19, 19, kBlue));
    EXPECT_TRUE(pixelIs(51, 1, kGreen));
    EXPECT_TRUE(pixelIs(56, 6, kRed));
}

TEST_F(RendererGLTest, ShapesAndMultiTextureUsagesUseEveryUnitRight)
{
    QTransform rotation;
    rotation.translate(16, 16).rotate(45);
    QImage white(4, 4, QImage::Format_ARGB32_Premultiplied);
    white.fill(Qt::white);
    QImage mask(4, 4, QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 2; ++x)
            mask.setPixel(x, y, qRgba(255, 255, 255, 255));
    TextureCache* cache = TextureCache::instance();
    const TextureKey whiteKey = cache->addOrLookup(white);
    const TextureKey maskKey = cache->addOrLookup(mask);
    const TextureKey redKey = quadrants();
    RenderItemBuilder builder;
    builder.drawColoredShape(Shape(QRectF(-10, -10, 20, 20), rotation), Qt::red);
    builder.drawMaskedTexturedShape(Shape(QRectF(32, 0, 32, 32)), whiteKey, maskKey, CustomShaderKey());
    builder.drawMultiTexturedShape(Shape(QRectF(0, 32, 32, 32)), redKey, whiteKey, 1.0f);
    // Unit 1 now wants what unit 0 last held: the cache must not skip the bind.
    builder.drawMultiTexturedShape(Shape(QRectF(32, 32, 32, 32)), whiteKey, redKey, 1.0f);
    draw(builder);
    EXPECT_TRUE(pixelIs(16, 16, kRed));
    EXPECT_TRUE(pixelIs(16, 3, kRed));
    EXPECT_TRUE(pixelIs(3, 3, kClear));
    EXPECT_TRUE(pixelIs(36, 16, qRgba(255, 255, 255, 255)));
    EXPECT_TRUE(pixelIs(60, 16, kClear));
    EXPECT_TRUE(pixelIs(16, 48, qRgba(255, 255, 255, 255)));
    EXPECT_TRUE(pixelIs(36, 36, kRed));
    EXPECT_TRUE(pixelIs(60, 36, kGreen));
}

class ProgramThief : public ICustomRenderer
{
public:
    void render(const RenderState&, const QRect&, const QRect&) override
    {
        QOpenGLFunctions* f = QOpenGLContext::currentContext()->functions();
        f->glUseProgram(0);
        f->glDisable(GL_SCISSOR_TEST);
        ++runs;
    }
    int runs = 0;
};

TEST_F(RendererGLTest, CustomRenderersRunAndTheCacheForgetsWhatTheyTouched)
{
    ProgramThief thief;
    RenderItemBuilder builder;
    builder.drawColoredRect(QRect(0, 0, 8, 8), Qt::red);
    builder.drawWithCustomRenderer(&thief, QRect(0, 0, 64, 64), QRect(0, 0, 64, 64), false);
    builder.drawColoredRect(QRect(0, 8, 8, 8), Qt::red);
    draw(builder);
    EXPECT_EQ(thief.runs, 1);
    EXPECT_TRUE(pixelIs(4, 12, kRed));
}

TEST_F(RendererGLTest, EvictedTexturesKeepDrawingUntilReleased)
{
    ScopedGLRecorder driver(GLFunctions::current());
    TextureCache* cache = TextureCache::instance();
    cache->setMaxSizeMb(0);
    QImage green(8, 8, QImage::Format_ARGB32_Premultiplied);
    green.fill(Qt::green);
    RenderItemBuilder builder;
    builder.drawTexturedRect(QRect(0, 0, 64, 64), cache->addOrLookup(green), false);
    auto list = builder.createDisplayList(false);
    list->optimize();
    list->render(RenderState(mGL.size()));
    cache->clear();
    mGL.clear(0, 0, 0, 1);
    list->render(RenderState(mGL.size()));
    EXPECT_TRUE(pixelIs(30, 30, kGreen));
    // Drawn again, it was stored again: evicted once more, it stays with the list.
    cache->clear();
    cache->destroyExpiredTextures();
    EXPECT_EQ(driver.count("glDeleteTextures"), 0);
    list.reset();
    EXPECT_EQ(driver.count("glDeleteTextures"), 0);
    cache->destroyExpiredTextures();
    EXPECT_EQ(driver.count("glDeleteTextures"), 1);
    EXPECT_EQ(driver.count("glTexImage2D"), 1);
}

TEST_F(RendererGLTest, FilesDecodePremultipliedAndBrokenOnesDrawNothing)
{
    QTemporaryDir dir;
    QImage png(4, 4, QImage::Format_ARGB32);
    png.fill(QColor(255, 0, 0, 128));
    ASSERT_TRUE(png.save(dir.filePath("half.png")));
    KtxWriter ktx;
    ktx.width = 1;
    ktx.height = 1;
    ktx.levels = {{QByteArray("\x00\x00\xff\xff", 4)}};
    QFile file(dir.filePath("blue.ktx"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(ktx.build());
    file.close();

    TextureCache* cache = TextureCache::instance();
    RenderItemBuilder builder;
    builder.drawTexturedRect(QRect(0, 0, 32, 32), cache->addOrLookup(dir.filePath("half.png")), true);
    builder.drawTexturedRect(QRect(32, 0, 32, 32), cache->addOrLookup(dir.filePath("blue.ktx")), false);
    builder.drawTexturedRect(QRect(0, 32, 32, 32), cache->addOrLookup(dir.filePath("gone.png")), false);
    draw(builder);
    EXPECT_TRUE(pixelIs(10, 10, qRgba(128, 0, 0, 255)));
    EXPECT_TRUE(pixelIs(40, 10, kBlue));
    EXPECT_TRUE(pixelIs(10, 40, kClear));
}

} // namespace
