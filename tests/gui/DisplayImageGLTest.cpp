#include "DisplayImage.h"
#include "support/ColorView.h"
#include "support/GLTestContext.h"
#include "support/PaintComparison.h"
#include "support/ScreenTest.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace {

// A picture with soft edges and a plain middle, like the ones controls are made of.
QImage badge(const QColor& fill = QColor(30, 110, 230), const QColor& outline = QColor())
{
    QImage image(24, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(outline.isValid() ? QPen(outline, 2) : QPen(Qt::NoPen));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(1, 1, 22, 18), 6, 6);
    return image;
}

} // namespace

// The engine draws pictures as textures; the raster engine draws the decoded pixels
// by the same geometry. Both must agree, up to the software rasteriser's rounding
// and its filtering of the stretched middles (6 levels). The cuts hold whole
// corners, as they must for pictures meant to stretch.
TEST(DisplayImageGLTest, EveryFillLooksTheSameOnTheEngineAndOnTheRasterEngine)
{
    GLTestContext gl(QSize(96, 64));
    ASSERT_TRUE(gl.isValid());
    PaintComparison comparison(gl, qRgb(240, 240, 240));
    {
        DisplayImage stretched(badge());
        stretched.setCuts(QMargins(8, 8, 8, 8));
        EXPECT_TRUE(comparison.matches([&](QPainter& p) { stretched.draw(p, QRect(3, 5, 90, 40)); }, 6, 0));

        DisplayImage tiled(badge());
        tiled.setFill(DisplayImage::Tile);
        EXPECT_TRUE(comparison.matches([&](QPainter& p) { tiled.draw(p, QRect(2, 2, 70, 50)); }, 2, 0));

        DisplayImage centred(badge());
        centred.setFill(DisplayImage::Center);
        EXPECT_TRUE(comparison.matches(
            [&](QPainter& p) {
                p.setOpacity(0.5);
                centred.draw(p, QRect(0, 0, 96, 64));
            },
            2, 0));

        DisplayImage pill(badge(QColor(200, 40, 40), QColor(20, 20, 20)));
        pill.setCuts(QMargins(8, 8, 8, 8));
        EXPECT_TRUE(comparison.matches([&](QPainter& p) { pill.draw(p, QRect(4, 4, 80, 30)); }, 6, 0));
    }
}

// A state the painter restored must be the one direct engine calls draw with.
TEST(DisplayImageGLTest, PicturesDrawWithThePainterStateAfterRestore)
{
    GLTestContext gl(QSize(32, 16));
    ASSERT_TRUE(gl.isValid());
    PaintComparison comparison(gl, qRgb(255, 255, 255));
    QImage blue(4, 4, QImage::Format_ARGB32_Premultiplied);
    blue.fill(QColor(0, 0, 200));
    const DisplayImage square(blue);
    const QImage out = comparison.engine([&](QPainter& p) {
        p.save();
        p.setOpacity(0.25);
        p.translate(16, 0);
        square.draw(p, QRect(0, 0, 16, 16));
        p.restore();
        square.draw(p, QRect(0, 0, 16, 16));
    });
    EXPECT_TRUE(colorsClose(out.pixel(8, 8), qRgb(0, 0, 200)));
    EXPECT_TRUE(colorsClose(out.pixel(24, 8), qRgb(191, 191, 241), 3));
}

class LayerMaskGLTest : public ScreenTest
{
};

TEST_F(LayerMaskGLTest, ALayerShowsThroughItsMasksAlpha)
{
    DisplayDevice& device = open(64, 32, QPoint(700, 0));
    auto* backdrop = new ColorView(device.views(), "backdrop", Qt::blue);
    backdrop->resizeTo(64, 32);
    auto* masked = new ColorView(device.views(), "masked", Qt::red);
    masked->moveTo(8, 4);
    masked->resizeTo(40, 20);
    masked->setUseLayer(true);

    // Opaque at the top left, clear on the right, a half-transparent band between;
    // the mask is half the layer's size and is stretched over it.
    QImage mask(20, 10, QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 8 && y < 5; ++x)
            mask.setPixel(x, y, qRgba(0, 0, 0, 255));
        for (int x = 8; x < 12; ++x)
            mask.setPixel(x, y, qRgba(0, 0, 0, 128));
    }
    masked->setLayerMask(DisplayImage(mask));

    const QImage image = frame();
    EXPECT_EQ(at(image, 10, 6), qRgb(255, 0, 0));
    EXPECT_EQ(at(image, 10, 22), qRgb(0, 0, 255)); // the mask is not upside down
    EXPECT_TRUE(colorsClose(at(image, 28, 14), qRgb(128, 0, 127), 3));
    EXPECT_EQ(at(image, 44, 14), qRgb(0, 0, 255));
    EXPECT_EQ(at(image, 4, 14), qRgb(0, 0, 255));

    masked->setLayerMask(DisplayImage());
    const QImage unmasked = frame();
    EXPECT_EQ(at(unmasked, 44, 14), qRgb(255, 0, 0));
    EXPECT_EQ(at(unmasked, 10, 22), qRgb(255, 0, 0));
}
