#include <GraphicsPaintDevice.h>
#include <ImageSlice.h>

#include <QPainter>
#include <gtest/gtest.h>
#include <qdrawutil.h>
#include <support/GLTestContext.h>
#include <support/PaintComparison.h>

using namespace gfx;

namespace {

// Every part one colour, so that stretching shows in the colours' extents.
QPixmap ninePatch()
{
    QImage image(12, 12, QImage::Format_ARGB32_Premultiplied);
    const QRgb colors[3][3] = {{qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255)},
                               {qRgb(255, 255, 0), qRgb(255, 255, 255), qRgb(0, 255, 255)},
                               {qRgb(255, 0, 255), qRgb(128, 128, 128), qRgb(0, 0, 0)}};
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 12; ++x)
            image.setPixel(x, y, colors[y / 4][x / 4]);
    return QPixmap::fromImage(image);
}

// Smooth colours, so that only the edges of parts and of the whole show differences.
QPixmap smoothPatch()
{
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 48; ++x)
            image.setPixel(x, y, qPremultiply(qRgba(x * 5, y * 5, 255 - x * 2, 255 - y * 3)));
    return QPixmap::fromImage(image);
}

class ImageSliceGLTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(mGL.isValid()); }

    GLTestContext mGL{QSize(96, 96)};
    PaintComparison mCompare{mGL, qRgba(30, 30, 30, 255)};
    const QPixmap mPixmap = ninePatch();
    const QMargins mCuts{4, 4, 4, 4};
};

TEST_F(ImageSliceGLTest, StretchedWideTallAndBothLikeABorderPixmap)
{
    const QPixmap pixmap = smoothPatch();
    const QMargins cuts(16, 12, 10, 14);
    const QRect targets[] = {QRect(2, 2, 90, 30), QRect(2, 34, 30, 60), QRect(36, 36, 58, 58)};
    const ImageSlice slice(pixmap, cuts);
    const QImage engine = mCompare.engine([&](QPainter& p) {
        for (const QRect& target : targets)
            GraphicsPaintEngine::of(p)->drawImageSlice(target, slice, ImageSlice::All);
    });
    const QImage raster = mCompare.raster([&](QPainter& p) {
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        for (const QRect& target : targets)
            qDrawBorderPixmap(&p, target, cuts, pixmap);
    });
    // Linear filtering blends a part's edge with its neighbour's where the raster
    // engine stops at the cut: a small step on a smooth picture.
    const PaintComparison::Difference d = PaintComparison::difference(engine, raster, 8);
    EXPECT_EQ(d.pixels, 0) << "worst " << d.worst << " at " << d.worstAt.x() << "," << d.worstAt.y();
}

TEST_F(ImageSliceGLTest, OnlyTheChosenPartsInsideTheClip)
{
    const ImageSlice slice(mPixmap, mCuts);
    const QImage engine = mCompare.engine([&](QPainter& p) {
        p.setClipRect(QRect(0, 0, 96, 40));
        p.translate(10, 10);
        GraphicsPaintEngine::of(p)->drawImageSlice(
            QRect(0, 0, 60, 60), slice, ImageSlice::Top | ImageSlice::Center | ImageSlice::BottomRight);
    });
    const QRgb background = qRgb(30, 30, 30);
    EXPECT_EQ(engine.pixel(11, 11), background);
    EXPECT_EQ(engine.pixel(40, 11), qRgb(0, 255, 0));
    EXPECT_EQ(engine.pixel(40, 30), qRgb(255, 255, 255));
    EXPECT_EQ(engine.pixel(40, 40), background);
    EXPECT_EQ(engine.pixel(67, 67), background);
}

TEST_F(ImageSliceGLTest, TurnedWithThePainter)
{
    const QPixmap pixmap = smoothPatch();
    const QMargins cuts(16, 12, 10, 14);
    const ImageSlice slice(pixmap, cuts);
    const QRect target(-36, -20, 72, 40);
    for (const qreal angle : {30.0, 90.0, -120.0}) {
        const QImage engine = mCompare.engine([&](QPainter& p) {
            p.translate(48, 48);
            p.rotate(angle);
            GraphicsPaintEngine::of(p)->drawImageSlice(target, slice, ImageSlice::All);
        });
        const QImage raster = mCompare.raster([&](QPainter& p) {
            p.translate(48, 48);
            p.rotate(angle);
            p.setRenderHint(QPainter::SmoothPixmapTransform);
            qDrawBorderPixmap(&p, target, cuts, pixmap);
        });
        // Only a few pixels on the turned outline, whose centres lie on an edge
        // within rounding, may fall to the other side.
        const PaintComparison::Difference d = PaintComparison::difference(engine, raster, 8);
        EXPECT_LE(d.pixels, 4) << "angle " << angle << ", worst " << d.worst << " at " << d.worstAt.x() << ","
                               << d.worstAt.y();
    }
}

} // namespace
