#include <DisplayList.h>
#include <GradientShaderUsage.h>
#include <GraphicsPaintDevice.h>

#include <QPainter>
#include <QPainterPath>
#include <QtMath>
#include <gtest/gtest.h>
#include <support/GLTestContext.h>
#include <support/PaintComparison.h>

using namespace gfx;

namespace {

// Both engines take a position's colour from a 1024-entry table of the stops. The
// raster engine steps along a row in fixed point where the shader computes each
// pixel afresh, so a pixel lying on the step between two entries may take the
// neighbour: two levels at most on these stops.
constexpr int kTolerance = 2;
// Slanted and curved edges without antialiasing: a pixel whose centre lies on
// the edge may be decided differently (counted, as in the path tests).
constexpr int kEdgePixels = 12;

QGradientStops stops(int alpha = 255)
{
    return {{0.0, QColor(255, 0, 0, alpha)},
            {0.3, QColor(0, 255, 0)},
            {0.7, QColor(0, 0, 255, alpha)},
            {1.0, QColor(255, 255, 0)}};
}

template <typename Gradient>
Gradient with(Gradient gradient, const QGradientStops& colours,
              QGradient::Spread spread = QGradient::PadSpread)
{
    gradient.setStops(colours);
    gradient.setSpread(spread);
    return gradient;
}

class GradientGLTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(mGL.isValid()); }

    ::testing::AssertionResult matchesRaster(const PaintComparison::Painting& paint, int allowedPixels = 0)
    {
        return mCompare.matches(paint, kTolerance, allowedPixels);
    }

    GLTestContext mGL{QSize(128, 128)};
    PaintComparison mCompare{mGL, qRgba(20, 40, 60, 255)};
};

TEST_F(GradientGLTest, EveryKindAndSpreadMatchesTheRasterEngine)
{
    for (const QGradient::Spread spread :
         {QGradient::PadSpread, QGradient::RepeatSpread, QGradient::ReflectSpread}) {
        const QLinearGradient linear =
            with(QLinearGradient(QPointF(30, 20), QPointF(60, 40)), stops(), spread);
        // The focal point off the centre, inside the circle.
        const QRadialGradient radial =
            with(QRadialGradient(QPointF(64, 64), 25, QPointF(55, 60)), stops(), spread);
        // Conical gradients always repeat.
        const QConicalGradient conical = with(QConicalGradient(QPointF(64, 64), 30), stops(), spread);
        for (const QGradient* g : std::initializer_list<const QGradient*>{&linear, &radial, &conical})
            EXPECT_TRUE(matchesRaster([&](QPainter& p) { p.fillRect(QRect(4, 4, 120, 120), *g); }))
                << "type " << g->type() << ", spread " << spread;
    }
}

TEST_F(GradientGLTest, TranslucentStopsAndOpacityShowWhatLiesBeneath)
{
    // The red beneath is also the last colour drawn before each gradient.
    const QLinearGradient translucent = with(QLinearGradient(QPointF(0, 0), QPointF(128, 0)), stops(90));
    const QRadialGradient opaque = with(QRadialGradient(QPointF(90, 90), 40), stops());
    EXPECT_TRUE(matchesRaster([&](QPainter& p) {
        p.fillRect(QRect(0, 0, 128, 128), Qt::red);
        p.fillRect(QRect(10, 10, 100, 50), translucent);
        p.setOpacity(0.6);
        p.fillRect(QRect(50, 50, 78, 78), opaque);
    }));
    // Colour interpolation mixes premultiplied colours, component interpolation
    // the components themselves.
    QLinearGradient component = translucent;
    component.setInterpolationMode(QGradient::ComponentInterpolation);
    EXPECT_TRUE(matchesRaster([&](QPainter& p) {
        p.fillRect(QRect(0, 0, 128, 128), Qt::red);
        p.fillRect(QRect(10, 10, 100, 50), component);
    }));
}

TEST_F(GradientGLTest, ExtendedRadialGradientsLeaveTheOutsideOfTheirCone)
{
    // A focal circle, and a focal point outside the outer circle (kept there only
    // with a focal radius): both cones leave part of the rectangle undrawn. A
    // painter hands such gradients to the engine as pictures drawn by the raster
    // engine, so they are given to the builder directly here.
    const QRadialGradient focalCircle =
        with(QRadialGradient(QPointF(64, 64), 50, QPointF(40, 50), 12), stops(), QGradient::ReflectSpread);
    const QRadialGradient outside = with(QRadialGradient(QPointF(70, 70), 20, QPointF(20, 20), 5), stops());
    for (const QRadialGradient* g : {&focalCircle, &outside}) {
        const QImage engine = mCompare.engine([&](QPainter& p) {
            p.fillRect(QRect(0, 0, 128, 128), Qt::white);
            GraphicsPaintEngine::of(p)->syncPainterState();
            GraphicsPaintEngine::of(p)->builder().fillShape(Shape(QRectF(0, 0, 128, 128)),
                                                            new GradientShaderUsage(*g, QTransform()));
        });
        const QImage raster = mCompare.raster([&](QPainter& p) {
            p.fillRect(QRect(0, 0, 128, 128), Qt::white);
            p.fillRect(QRect(0, 0, 128, 128), *g);
        });
        const PaintComparison::Difference d = PaintComparison::difference(engine, raster, kTolerance);
        EXPECT_EQ(d.pixels, 0) << "worst " << d.worst << " at " << d.worstAt.x() << "," << d.worstAt.y();
    }
}

TEST_F(GradientGLTest, CoordinateModesAndTransforms)
{
    QLinearGradient objectBounding = with(QLinearGradient(0, 0, 1, 1), stops());
    objectBounding.setCoordinateMode(QGradient::ObjectBoundingMode);
    QLinearGradient object = objectBounding;
    object.setCoordinateMode(QGradient::ObjectMode);
    QRadialGradient stretched = with(QRadialGradient(0.5, 0.5, 0.5), stops(), QGradient::RepeatSpread);
    stretched.setCoordinateMode(QGradient::StretchToDeviceMode);
    QBrush rotated(object);
    rotated.setTransform(QTransform().rotate(20));
    EXPECT_TRUE(matchesRaster([&](QPainter& p) {
        p.fillRect(QRect(4, 4, 60, 30), objectBounding);
        p.fillRect(QRect(70, 4, 50, 60), rotated);
        p.fillRect(QRect(4, 70, 120, 50), stretched);
    }));

    // Logical coordinates: the brush's transform, then the brush origin, then the
    // painter's transform.
    QBrush logical(with(QConicalGradient(QPointF(20, 20), 0), stops()));
    logical.setTransform(QTransform().scale(1.5, 1).rotate(15));
    EXPECT_TRUE(matchesRaster([&](QPainter& p) {
        p.translate(10, 12);
        p.scale(1.25, 1.25);
        p.setBrushOrigin(8, 4);
        p.fillRect(QRect(0, 0, 80, 80), logical);
    }));
    EXPECT_TRUE(matchesRaster(
        [&](QPainter& p) {
            p.translate(64, 64);
            p.rotate(30);
            p.fillRect(QRect(-40, -40, 80, 80), with(QLinearGradient(-40, 0, 40, 0), stops()));
        },
        kEdgePixels));
}

TEST_F(GradientGLTest, GradientsInNestedListsMoveWithTheirList)
{
    const QRadialGradient radial =
        with(QRadialGradient(QPointF(30, 30), 20, QPointF(24, 26)), stops(), QGradient::ReflectSpread);
    const QImage engine = mCompare.engine([&](QPainter& p) {
        GraphicsPaintDevice device(QSize(60, 60));
        {
            QPainter inner(&device);
            inner.fillRect(QRect(0, 0, 60, 60), radial);
        }
        auto list = device.engine()->createDisplayList();
        list->optimize();
        p.translate(10, 6);
        p.scale(1.5, 1.5);
        GraphicsPaintEngine::drawDisplayList(p, list, QRect(0, 0, 60, 60), QRect(0, 0, 60, 60), false);
    });
    const QImage raster = mCompare.raster([&](QPainter& p) {
        p.translate(10, 6);
        p.scale(1.5, 1.5);
        p.fillRect(QRect(0, 0, 60, 60), radial);
    });
    const PaintComparison::Difference d = PaintComparison::difference(engine, raster, kTolerance);
    EXPECT_EQ(d.pixels, 0) << "worst " << d.worst << " at " << d.worstAt.x() << "," << d.worstAt.y();
}

TEST_F(GradientGLTest, PathsAndPensFillWithGradients)
{
    QPainterPath star;
    star.moveTo(64, 4);
    for (int i = 1; i < 10; ++i) {
        const qreal angle = i * M_PI / 5;
        const qreal radius = i % 2 ? 25 : 60;
        star.lineTo(64 + radius * qSin(angle), 64 - radius * qCos(angle));
    }
    star.closeSubpath();
    const QRadialGradient fill = with(QRadialGradient(QPointF(64, 64), 60), stops(200));
    const QLinearGradient line =
        with(QLinearGradient(QPointF(0, 0), QPointF(20, 10)), stops(), QGradient::ReflectSpread);
    EXPECT_TRUE(matchesRaster(
        [&](QPainter& p) {
            p.setBrush(fill);
            p.setPen(QPen(QBrush(line), 6));
            p.drawPath(star);
        },
        kEdgePixels));
    // Antialiased: the coverage of the edges scales the gradient's colour.
    EXPECT_TRUE(matchesRaster(
        [&](QPainter& p) {
            p.setRenderHint(QPainter::Antialiasing);
            p.setBrush(fill);
            p.setPen(QPen(QBrush(line), 6));
            p.drawRoundedRect(QRectF(10.5, 10.5, 100, 90), 20, 20);
        },
        kEdgePixels));
}

} // namespace
