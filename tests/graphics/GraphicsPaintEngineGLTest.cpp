#include <DisplayList.h>
#include <GLFunctions.h>
#include <GLStateManager.h>
#include <GraphicsPaintDevice.h>
#include <ICustomRenderer.h>
#include <RenderItemBuilder.h>
#include <RenderState.h>

#include <QPainter>
#include <gtest/gtest.h>
#include <support/GLTestContext.h>
#include <support/PaintComparison.h>

using namespace gfx;

namespace {

// Axis-aligned edges land on the same pixels in both engines; blends round
// differently by a step or two.
constexpr int kTolerance = 3;
// Slanted edges: the two rasterisers may decide a pixel whose centre lies on the
// edge differently. Counted, not exempted from the tolerance.
constexpr int kSlantedEdgePixels = 40;

QImage pattern(int w, int h, bool alpha)
{
    QImage image(w, h, alpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(
                x, y, qPremultiply(qRgba(x * 255 / w, y * 255 / h, 128, alpha ? (x + y) * 4 % 256 : 255)));
    return image;
}

class GraphicsPaintEngineGLTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(mGL.isValid()); }

    ::testing::AssertionResult matches(const PaintComparison::Painting& paint, int allowedPixels = 0,
                                       QRgb background = qRgba(20, 40, 60, 255))
    {
        return PaintComparison(mGL, background).matches(paint, kTolerance, allowedPixels);
    }

    GLTestContext mGL{QSize(96, 96)};
};

TEST_F(GraphicsPaintEngineGLTest, RectanglesOpaqueAndTranslucent)
{
    EXPECT_TRUE(matches([](QPainter& p) {
        p.fillRect(QRect(4, 4, 40, 30), Qt::red);
        p.fillRect(QRectF(20.4, 10.6, 50, 50), QColor(0, 255, 0, 100));
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(255, 255, 0, 200));
        p.drawRects(QVector<QRect>{QRect(60, 60, 30, 30), QRect(0, 80, 10, 10)});
    }));
}

TEST_F(GraphicsPaintEngineGLTest, PixmapsAndImagesWithAndWithoutAlpha)
{
    const QImage opaque = pattern(32, 32, false);
    const QImage translucent = pattern(32, 32, true);
    EXPECT_TRUE(matches([&](QPainter& p) {
        p.drawImage(QPoint(0, 0), opaque);
        p.drawImage(QPoint(40, 0), translucent);
        p.drawPixmap(QPoint(0, 40), QPixmap::fromImage(translucent));
        p.drawPixmap(QPoint(40, 40), QPixmap::fromImage(opaque));
        // A part of the picture, one to one.
        p.drawImage(QRectF(72, 72, 16, 8), translucent, QRectF(8, 4, 16, 8));
    }));
}

TEST_F(GraphicsPaintEngineGLTest, TransformsTranslateScaleMirrorRotate)
{
    const QImage image = pattern(16, 16, false);
    EXPECT_TRUE(matches([&](QPainter& p) {
        p.translate(10, 5);
        p.fillRect(QRect(0, 0, 10, 10), Qt::blue);
        p.scale(2, 2);
        p.fillRect(QRect(10, 0, 8, 8), Qt::green);
    }));
    // Mirrored: the picture's left column lands on the right.
    EXPECT_TRUE(matches([&](QPainter& p) {
        p.translate(64, 0);
        p.scale(-1, 1);
        p.drawImage(QPoint(0, 0), image);
        p.fillRect(QRect(20, 20, 30, 10), Qt::red);
    }));
    EXPECT_TRUE(matches(
        [&](QPainter& p) {
            p.translate(48, 48);
            p.rotate(30);
            p.fillRect(QRect(-20, -20, 40, 40), Qt::yellow);
        },
        kSlantedEdgePixels));
}

TEST_F(GraphicsPaintEngineGLTest, ClipsRectsRegionsAndSavedStates)
{
    EXPECT_TRUE(matches([](QPainter& p) {
        p.setClipRect(QRect(10, 10, 50, 50));
        p.fillRect(QRect(0, 0, 96, 96), Qt::red);
        p.save();
        p.setClipRegion(QRegion(0, 0, 30, 30) + QRegion(50, 50, 40, 40), Qt::IntersectClip);
        p.fillRect(QRect(0, 0, 96, 96), Qt::green);
        p.restore();
        // Back to the first clip only.
        p.fillRect(QRect(40, 0, 10, 96), Qt::blue);
        p.translate(20, 0);
        p.setClipRect(QRectF(60, 60, 10, 10));
        p.fillRect(QRect(0, 0, 96, 96), Qt::white);
        p.setClipping(false);
        p.fillRect(QRect(0, 90, 96, 6), Qt::cyan);
    }));
}

TEST_F(GraphicsPaintEngineGLTest, OpacityAppliesToFillsAndPictures)
{
    const QImage image = pattern(32, 32, true);
    EXPECT_TRUE(matches([&](QPainter& p) {
        p.setOpacity(0.5);
        p.fillRect(QRect(0, 0, 60, 60), Qt::white);
        p.setOpacity(0.25);
        p.drawImage(QPoint(30, 30), image);
    }));
}

TEST_F(GraphicsPaintEngineGLTest, CompositionModesOverATranslucentDestination)
{
    const QPainter::CompositionMode modes[] = {QPainter::CompositionMode_SourceOver,
                                               QPainter::CompositionMode_DestinationOver,
                                               QPainter::CompositionMode_Clear,
                                               QPainter::CompositionMode_Source,
                                               QPainter::CompositionMode_Destination,
                                               QPainter::CompositionMode_SourceIn,
                                               QPainter::CompositionMode_DestinationIn,
                                               QPainter::CompositionMode_SourceOut,
                                               QPainter::CompositionMode_DestinationOut,
                                               QPainter::CompositionMode_SourceAtop,
                                               QPainter::CompositionMode_DestinationAtop,
                                               QPainter::CompositionMode_Xor,
                                               QPainter::CompositionMode_Plus};
    for (QPainter::CompositionMode mode : modes) {
        EXPECT_TRUE(matches(
            [mode](QPainter& p) {
                p.fillRect(QRect(0, 0, 60, 60), QColor(0, 0, 255, 160));
                p.setCompositionMode(mode);
                p.fillRect(QRect(30, 30, 60, 60), QColor(255, 0, 0, 100));
                p.fillRect(QRect(10, 70, 20, 20), Qt::green);
            },
            0, qRgba(0, 0, 0, 0)))
            << "mode " << mode;
    }
}

TEST_F(GraphicsPaintEngineGLTest, TiledPixmapsStretchAndPatternBrushesRepeat)
{
    const QPixmap pixmap = QPixmap::fromImage(pattern(16, 16, false));
    const PaintComparison compare(mGL, qRgba(0, 0, 0, 255));
    const QImage tiled = compare.engine([&](QPainter& p) { p.drawTiledPixmap(QRect(0, 0, 64, 32), pixmap); });
    const QImage stretched = compare.raster([&](QPainter& p) {
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.drawPixmap(QRect(0, 0, 64, 32), pixmap);
    });
    // Linear filtering against the raster engine's smooth scaling.
    EXPECT_LE(PaintComparison::difference(tiled, stretched, 8).pixels, 0);
    EXPECT_TRUE(matches([&](QPainter& p) {
        p.setBrushOrigin(5, 3);
        p.fillRect(QRect(2, 2, 70, 50), QBrush(pixmap));
    }));
}

// Fills its target with a colour through the matrix of the pass it runs in, as a
// map renderer places its tiles.
class FillRenderer : public ICustomRenderer
{
public:
    void render(const RenderState& state, const QRect& target, const QRect&) override
    {
        RenderItemBuilder builder;
        builder.drawColoredRect(target, QColor(250, 180, 20));
        auto list = builder.createDisplayList(false);
        list->optimize();
        list->render(state);
    }
};

// Clears with GL itself, as the map renderer lays its background: only the scissor
// box keeps it in place.
class ClearRenderer : public ICustomRenderer
{
public:
    void render(const RenderState&, const QRect&, const QRect&) override
    {
        GLStateManager::instance()->glClearColor(250 / 255.0f, 180 / 255.0f, 20 / 255.0f, 1.0f);
        GLFunctions::current()->glClear(GL_COLOR_BUFFER_BIT);
    }
};

TEST_F(GraphicsPaintEngineGLTest, CustomRenderersDrawOnlyInsideTheClip)
{
    FillRenderer fill;
    ClearRenderer clear;
    const QRect target(0, 0, 96, 96);
    // Two rectangles, as a frame's damage often is, and the edge of a turned painter.
    const QRegion clip = QRegion(8, 8, 30, 70) + QRegion(50, 20, 40, 30);
    const PaintComparison compare(mGL, qRgba(20, 40, 60, 255));
    const auto paint = [&](QPainter& p, qreal angle, const std::function<void(QPainter&)>& draw) {
        p.fillRect(target, Qt::blue);
        p.setClipRegion(clip);
        p.translate(48, 48);
        p.rotate(angle);
        p.translate(-48, -48);
        draw(p);
        p.setClipping(false);
        p.resetTransform();
        p.fillRect(QRect(30, 30, 36, 36), QColor(0, 160, 0));
    };
    const QImage raster = compare.raster(
        [&](QPainter& p) { paint(p, 0, [&](QPainter& q) { q.fillRect(target, QColor(250, 180, 20)); }); });
    for (ICustomRenderer* renderer :
         {static_cast<ICustomRenderer*>(&fill), static_cast<ICustomRenderer*>(&clear)}) {
        const QImage engine = compare.engine([&](QPainter& p) {
            paint(p, 0, [&](QPainter& q) {
                GraphicsPaintEngine::of(q)->drawWithCustomRenderer(renderer, target, target, true);
            });
        });
        EXPECT_EQ(PaintComparison::difference(engine, raster, kTolerance).pixels, 0)
            << (renderer == &fill ? "through a list" : "through GL");
    }
    const QRect inner(28, 28, 40, 40);
    const QImage turnedEngine = compare.engine([&](QPainter& p) {
        paint(p, 30, [&](QPainter& q) {
            GraphicsPaintEngine::of(q)->drawWithCustomRenderer(&fill, inner, inner, true);
        });
    });
    const QImage turnedRaster = compare.raster(
        [&](QPainter& p) { paint(p, 30, [&](QPainter& q) { q.fillRect(inner, QColor(250, 180, 20)); }); });
    EXPECT_LE(PaintComparison::difference(turnedEngine, turnedRaster, kTolerance).pixels, kSlantedEdgePixels);
}

TEST_F(GraphicsPaintEngineGLTest, CustomRenderersTurnWithThePainter)
{
    FillRenderer renderer;
    const QRect target(-30, -15, 60, 30);
    const PaintComparison compare(mGL, qRgba(20, 40, 60, 255));
    for (const qreal angle : {30.0, 90.0, 200.0}) {
        const QImage engine = compare.engine([&](QPainter& p) {
            p.fillRect(QRect(0, 0, 96, 96), Qt::blue);
            p.translate(48, 48);
            p.rotate(angle);
            GraphicsPaintEngine::of(p)->drawWithCustomRenderer(&renderer, target, target, true);
        });
        const QImage raster = compare.raster([&](QPainter& p) {
            p.fillRect(QRect(0, 0, 96, 96), Qt::blue);
            p.translate(48, 48);
            p.rotate(angle);
            p.fillRect(target, QColor(250, 180, 20));
        });
        // A turned renderer promises no opaque area: the blue beneath its corners stays.
        const PaintComparison::Difference d = PaintComparison::difference(engine, raster, kTolerance);
        EXPECT_LE(d.pixels, kSlantedEdgePixels) << "angle " << angle;
    }
}

} // namespace
