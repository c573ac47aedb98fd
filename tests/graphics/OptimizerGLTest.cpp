#include <DisplayList.h>
#include <GraphicsPaintDevice.h>
#include <RenderItemBuilder.h>
#include <RenderState.h>
#include <ShaderCache.h>
#include <TextureCache.h>

#include <QPainter>
#include <gtest/gtest.h>
#include <support/GLTestContext.h>
#include <support/PaintComparison.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

// The optimiser may only leave out, merge or substitute what cannot change a pixel:
// every picture here is compared with the optimiser on and off.
class OptimizerGLTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mGL.isValid());
        mCompare.setEngineOptions(GraphicsPaintEngine::AllowSubstitution);
    }

    ::testing::AssertionResult unchangedByOptimizer(const PaintComparison::Painting& paint)
    {
        const PaintComparison::Difference d = PaintComparison::difference(
            mCompare.engine(paint), mCompare.unoptimized(paint), PaintComparison::kOptimizerTolerance);
        if (d.pixels == 0)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << d.pixels << " pixels differ, worst by " << d.worst << " at "
                                             << d.worstAt.x() << "," << d.worstAt.y();
    }

    static RenderItemBuilder& builderOf(QPainter& p)
    {
        GraphicsPaintEngine* engine = GraphicsPaintEngine::of(p);
        engine->syncPainterState();
        return engine->builder();
    }

    // Large enough to be worth opacifying, with alpha varying over it.
    static QImage translucentPicture()
    {
        QImage image(80, 80, QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qPremultiply(qRgba(x * 3, 255 - y * 3, 90, (x + y) * 3 / 2)));
        return image;
    }

    GLTestContext mGL{QSize(128, 128)};
    PaintComparison mCompare{mGL, qRgba(20, 40, 60, 255)};
};

TEST_F(OptimizerGLTest, TranslucentTexturesOverSolidFillsKeepTheirPixels)
{
    const QImage picture = translucentPicture();
    // The plain case that is worth substituting must stay as it was.
    EXPECT_TRUE(unchangedByOptimizer([&](QPainter& p) {
        p.fillRect(QRect(0, 0, 128, 128), Qt::white);
        p.drawImage(QPoint(20, 20), picture);
    }));

    SCOPED_TRACE("custom shader");
    const CustomShaderKey swizzle = ShaderCache::instance()->registerCustomShader(
        "uniform sampler2D uTexture;\nuniform float uOpacity;\n"
        "void main() { gl_FragColor = texture2D(uTexture, vTexCoord).bgra * uOpacity; }\n");
    EXPECT_TRUE(unchangedByOptimizer([&](QPainter& p) {
        p.fillRect(QRect(0, 0, 128, 128), Qt::white);
        builderOf(p).drawTexturedRect(QRect(20, 20, 80, 80), TextureCache::instance()->addOrLookup(picture),
                                      true, swizzle);
    }));
}

TEST_F(OptimizerGLTest, TexturesInOtherCompositionModesAreNotOpacified)
{
    const QImage picture = translucentPicture();
    for (const QPainter::CompositionMode mode :
         {QPainter::CompositionMode_Plus, QPainter::CompositionMode_Xor,
          QPainter::CompositionMode_DestinationOut, QPainter::CompositionMode_SourceAtop,
          QPainter::CompositionMode_DestinationOver}) {
        EXPECT_TRUE(unchangedByOptimizer([&](QPainter& p) {
            p.fillRect(QRect(0, 0, 128, 128), QColor(200, 100, 0));
            p.setCompositionMode(mode);
            p.drawImage(QPoint(20, 20), picture);
        })) << "mode "
            << mode;
    }
}

TEST_F(OptimizerGLTest, AFillWithAHoleDoesNotCoverItsBounds)
{
    const QImage picture = translucentPicture();
    EXPECT_TRUE(unchangedByOptimizer([&](QPainter& p) {
        builderOf(p).drawColoredRegion(QRegion(0, 0, 128, 128) - QRegion(40, 40, 30, 30), Qt::white);
        p.drawImage(QPoint(20, 20), picture);
    }));
}

TEST_F(OptimizerGLTest, ShadersThatDiscardHideNothing)
{
    const CustomShaderKey stripes =
        ShaderCache::instance()->registerCustomShader("uniform sampler2D uTexture;\n"
                                                      "void main() {\n"
                                                      "    if (mod(gl_FragCoord.x, 4.0) < 2.0) discard;\n"
                                                      "    gl_FragColor = texture2D(uTexture, vTexCoord);\n"
                                                      "}\n");
    const QImage picture = translucentPicture();
    EXPECT_TRUE(unchangedByOptimizer([&](QPainter& p) {
        p.fillRect(QRect(0, 0, 128, 128), Qt::white);
        builderOf(p).drawTexturedRect(QRect(20, 20, 80, 80), TextureCache::instance()->addOrLookup(picture),
                                      false, stripes);
    }));
}

TEST_F(OptimizerGLTest, NestedListsAtFractionalScalesCutOnlyWhatTheyCover)
{
    RenderItemBuilder inner;
    inner.drawColoredRect(QRect(0, 0, 3, 3), Qt::green);
    auto list = inner.createDisplayList(false);
    list->optimize();
    for (const qreal scale : {1.5, 1.25, 0.75, 2.5}) {
        for (const qreal offset : {0.0, 10.25}) {
            EXPECT_TRUE(unchangedByOptimizer([&](QPainter& p) {
                p.fillRect(QRect(0, 0, 128, 128), Qt::red);
                p.translate(offset, 20);
                p.scale(scale, scale);
                GraphicsPaintEngine::drawDisplayList(p, list, QRect(0, 0, 3, 3), QRect(0, 0, 3, 3), false);
                p.translate(5, 0);
                GraphicsPaintEngine::drawDisplayList(p, list, QRect(0, 0, 10, 10), QRect(0, 0, 3, 3), false);
            })) << "scale "
                << scale << ", offset " << offset;
        }
    }
}

TEST_F(OptimizerGLTest, TranslucentNestedListsShowTheirOverlaps)
{
    // Unoptimised, each item of a list drawn at half opacity blends on its own, so
    // the blue shows under the green: hiding it would change the overlap.
    const auto paint = [](QPainter& p) {
        RenderItemBuilder inner;
        inner.drawColoredRect(QRect(0, 0, 40, 40), Qt::blue);
        inner.drawColoredRect(QRect(30, 30, 10, 10), Qt::red); // wholly hidden
        inner.drawColoredRect(QRect(20, 20, 40, 40), Qt::green);
        auto list = inner.createDisplayList(false);
        list->optimize();
        p.fillRect(QRect(0, 0, 128, 128), QColor(200, 60, 20));
        p.setOpacity(0.5);
        GraphicsPaintEngine::drawDisplayList(p, list, QRect(10, 10, 60, 60), QRect(0, 0, 60, 60), false);
        // Nested twice: the inner list's opacity comes from its parent's draw.
        RenderItemBuilder middle;
        middle.drawDisplayList(list, QRect(0, 0, 60, 60), QRect(0, 0, 60, 60), false);
        auto outer = middle.createDisplayList(false);
        outer->optimize();
        p.setOpacity(0.7);
        GraphicsPaintEngine::drawDisplayList(p, outer, QRect(60, 60, 60, 60), QRect(0, 0, 60, 60), false);
    };
    EXPECT_TRUE(unchangedByOptimizer(paint));
    // Not the group's opacity: the blue shows through the green (by 0.5 * 0.5).
    const QImage image = mCompare.engine(paint);
    EXPECT_TRUE(colorsClose(image.pixel(35, 35), qRgba(50, 142, 69, 255), 3))
        << std::hex << image.pixel(35, 35);
}

TEST_F(OptimizerGLTest, MergedItemsCutByTheOnesAboveStayOneDraw)
{
    // Each row hides the last pixel row of the one before and takes it over.
    const auto rows = [] {
        RenderItemBuilder builder;
        for (int i = 0; i < 6; ++i)
            builder.drawColoredRect(QRect(0, i * 20, 100, 21), QColor(30, 40, 50));
        auto list = builder.createDisplayList(false);
        list->optimize();
        return list;
    };
    {
        auto list = rows();
        ScopedGLRecorder driver(GLFunctions::current());
        list->render(RenderState(QSize(128, 128)));
        EXPECT_EQ(driver.count("glDrawArrays"), 1);
    }
    // Translucent, the rows draw as they were before the cut, overlaps included.
    EXPECT_TRUE(unchangedByOptimizer([&](QPainter& p) {
        p.fillRect(QRect(0, 0, 128, 128), QColor(200, 60, 20));
        p.setOpacity(0.5);
        GraphicsPaintEngine::drawDisplayList(p, rows(), QRect(0, 0, 100, 121), QRect(0, 0, 100, 121), false);
    }));
}

} // namespace
