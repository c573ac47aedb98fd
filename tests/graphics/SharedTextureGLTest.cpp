#include <DisplayList.h>
#include <RenderItemBuilder.h>
#include <RenderState.h>
#include <SharedTextureManager.h>

#include <gtest/gtest.h>
#include <support/GLTestContext.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

const QRgb kRed = qRgba(255, 0, 0, 255);
const QRgb kBlue = qRgba(0, 0, 255, 255);

QImage filled(const QSize& size, QColor color)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

class SharedTextureGLTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mGL.isValid());
        mGL.clear(0, 0, 0, 1);
        mShared = SharedTextureManager::instance();
    }

    SharedTextureSlot slot(int pool, const QSize& size, const QColor& color)
    {
        SharedTextureSlot s = mShared->allocate(pool, size);
        EXPECT_TRUE(mShared->upload(s, filled(size, color)));
        return s;
    }
    // Pixels of `rect` that are not `expected` within the rasteriser's rounding.
    int wrongPixels(const QRect& rect, QRgb expected)
    {
        const QImage image = mGL.image();
        int wrong = 0;
        for (int y = rect.top(); y <= rect.bottom(); ++y)
            for (int x = rect.left(); x <= rect.right(); ++x)
                wrong += !colorsClose(image.pixel(x, y), expected);
        return wrong;
    }

    GLTestContext mGL{QSize(128, 64)};
    SharedTextureManager* mShared = nullptr;
};

TEST_F(SharedTextureGLTest, NeighboursOnOnePageNeverBleedWhenMagnified)
{
    const int pool = mShared->pool("bleed", GL_RGBA, QSize(16, 16), 1);
    SharedTextureSlot red = slot(pool, QSize(4, 4), Qt::red);
    SharedTextureSlot blue = slot(pool, QSize(4, 4), Qt::blue);
    ASSERT_EQ(red.rect().right() + 3, blue.rect().left());
    RenderItemBuilder builder;
    builder.drawTexturedRect(QRect(0, 0, 64, 64), red.key(), false, red.insets());
    builder.drawTexturedRect(QRect(64, 0, 64, 64), blue.key(), false, blue.insets());
    auto list = builder.createDisplayList(false);
    list->optimize();
    list->render(RenderState(mGL.size()));
    EXPECT_EQ(wrongPixels(QRect(0, 0, 64, 64), kRed), 0);
    EXPECT_EQ(wrongPixels(QRect(64, 0, 64, 64), kBlue), 0);
}

TEST_F(SharedTextureGLTest, MergedItemsKeepEverySlotTheyDraw)
{
    // A page with room for exactly two 6 x 6 images.
    const int pool = mShared->pool("pair", GL_RGBA, QSize(16, 8), 1);
    SharedTextureSlot red = slot(pool, QSize(6, 6), Qt::red);
    SharedTextureSlot blue = slot(pool, QSize(6, 6), Qt::blue);
    RenderItemBuilder builder;
    builder.drawTexturedRect(QRect(0, 0, 32, 32), red.key(), false, red.insets());
    builder.drawTexturedRect(QRect(64, 0, 32, 32), blue.key(), false, blue.insets());
    auto list = builder.createDisplayList(false);
    list->optimize();
    {
        ScopedGLRecorder driver(GLFunctions::current());
        list->render(RenderState(mGL.size()));
        EXPECT_EQ(driver.count("glDrawArrays"), 1);
    }
    // The owners let go; only the merged list refers to the two places now, so
    // new images find no room on the page and draw nothing over them.
    mShared->release(red);
    mShared->release(blue);
    mShared->destroyPendingTextures();
    QVector<SharedTextureSlot> intruders;
    for (int i = 0; i < 2; ++i) {
        intruders << mShared->allocate(pool, QSize(6, 6));
        if (!intruders.last().isNull())
            mShared->upload(intruders.last(), filled(QSize(6, 6), Qt::green));
        EXPECT_TRUE(intruders.last().isNull()) << "place " << i << " was given away";
    }
    mGL.clear(0, 0, 0, 1);
    list->render(RenderState(mGL.size()));
    EXPECT_EQ(wrongPixels(QRect(0, 0, 32, 32), kRed), 0);
    EXPECT_EQ(wrongPixels(QRect(64, 0, 32, 32), kBlue), 0);
}

} // namespace
