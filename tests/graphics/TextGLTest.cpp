#include <GraphicsPaintDevice.h>

#include <QPainter>
#include <gtest/gtest.h>
#include <support/GLTestContext.h>
#include <support/PaintComparison.h>

using namespace gfx;

namespace {

class TextGLTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(mGL.isValid()); }

    static ::testing::AssertionResult agree(const QImage& engine, const QImage& raster)
    {
        return PaintComparison::textAgrees(engine, raster);
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

TEST_F(TextGLTest, RotatedTextTurnsEveryGlyph)
{
    // A square surface, so that turned lines stay on it.
    GLTestContext gl(QSize(160, 160));
    const PaintComparison compare(gl, qRgba(255, 255, 255, 255));
    for (const qreal angle : {30.0, 90.0, -45.0, 180.0}) {
        const auto paint = [angle](QPainter& p) {
            p.translate(80, 80);
            p.rotate(angle);
            p.setPen(QColor(20, 20, 120));
            p.setFont(QFont("DejaVu Sans", 14));
            p.drawText(QPointF(-70, 0), "Rotated words");
            p.scale(1.5, 1.5);
            p.setFont(QFont("DejaVu Sans", 9));
            p.drawText(QPointF(-45, 20), "and scaled");
        };
        EXPECT_TRUE(PaintComparison::turnedTextAgrees(compare.engine(paint), compare.raster(paint)))
            << "angle " << angle;
    }
}

} // namespace
