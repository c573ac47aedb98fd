#include <GraphicsPaintDevice.h>

#include <QPainter>
#include <gtest/gtest.h>
#include <support/GLTestContext.h>
#include <support/PaintComparison.h>

using namespace gfx;

namespace {

// Both engines rasterise with FreeType, but hint outlines a little differently: a
// stem may move by part of a pixel. So a text picture agrees when no more than
// 1.5% of its pixels differ by more than a quarter of the range and the ink
// (the sum of darkness) agrees within 2%.
constexpr int kGlyphTolerance = 64;
constexpr double kDifferingShare = 0.015;
constexpr double kInkShare = 0.02;

qint64 ink(const QImage& image)
{
    qint64 sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += 255 - qGray(image.pixel(x, y));
    return sum;
}

class TextGLTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(mGL.isValid()); }

    ::testing::AssertionResult agree(const QImage& engine, const QImage& raster)
    {
        const PaintComparison::Difference d = PaintComparison::difference(engine, raster, kGlyphTolerance);
        const qint64 engineInk = ink(engine);
        const qint64 rasterInk = ink(raster);
        if (rasterInk > 0 && d.pixels <= kDifferingShare * engine.width() * engine.height() &&
            qAbs(engineInk - rasterInk) <= kInkShare * rasterInk)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << d.pixels << " pixels differ (worst " << d.worst << " at " << d.worstAt.x() << ","
               << d.worstAt.y() << "), ink " << engineInk << " against " << rasterInk;
    }

    GLTestContext mGL{QSize(200, 80)};
    PaintComparison mCompare{mGL, qRgba(255, 255, 255, 255)};
};

TEST_F(TextGLTest, TwoFontsAndSizesMatchTheRasterEngine)
{
    const auto paint = [](QPainter& p) {
        p.setPen(QColor(20, 20, 120));
        p.setFont(QFont("DejaVu Sans", 12));
        p.drawText(QPointF(5, 20), "Hello, AVWay");
        p.setFont(QFont("DejaVu Serif", 20, QFont::Bold));
        p.drawText(QPointF(5, 60), "Tiny Kerning");
    };
    EXPECT_TRUE(agree(mCompare.engine(paint), mCompare.raster(paint)));
}

TEST_F(TextGLTest, TranslatedClippedAndTranslucentText)
{
    const auto paint = [](QPainter& p) {
        p.translate(30, 10);
        p.setClipRect(QRect(0, 0, 100, 30));
        p.setPen(QColor(200, 0, 0, 160));
        p.setFont(QFont("DejaVu Sans", 16));
        p.drawText(QPointF(-10, 28), "Clipped words");
    };
    const QImage engine = mCompare.engine(paint);
    EXPECT_TRUE(agree(engine, mCompare.raster(paint)));
    EXPECT_EQ(engine.pixel(20, 36), qRgba(255, 255, 255, 255));
}

TEST_F(TextGLTest, DirectTextKernsLikeQtsLayout)
{
    const QFont font("DejaVu Sans", 18);
    const QImage direct = mCompare.engine([&](QPainter& p) {
        GraphicsPaintEngine::of(p)->drawTextDirect(QPointF(5, 40), font, "AVAWAY To", 0, Qt::black);
    });
    const QImage raster = mCompare.raster([&](QPainter& p) {
        p.setFont(font);
        p.drawText(QPointF(5, 40), "AVAWAY To");
    });
    EXPECT_TRUE(agree(direct, raster));
}

} // namespace
