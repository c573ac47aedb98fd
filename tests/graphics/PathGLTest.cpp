#include <GLFunctions.h>
#include <GraphicsPaintDevice.h>

#include <QPainter>
#include <QPainterPath>
#include <gtest/gtest.h>
#include <support/GLTestContext.h>
#include <support/PaintComparison.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

// Without antialiasing both engines fill the pixels whose centres lie inside; on
// slanted and curved edges the two may decide a centre lying almost on the edge
// differently, and curves are flattened into different segments. Those pixels
// are counted against an allowance; all others match within 3.
constexpr int kTolerance = 3;

class PathGLTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(mGL.isValid()); }

    ::testing::AssertionResult matches(const PaintComparison::Painting& paint, int allowedPixels)
    {
        return PaintComparison(mGL, qRgba(10, 20, 30, 255)).matches(paint, kTolerance, allowedPixels);
    }

    GLTestContext mGL{QSize(120, 120)};
};

TEST_F(PathGLTest, FilledPathsWithAHoleByEitherRule)
{
    for (Qt::FillRule rule : {Qt::OddEvenFill, Qt::WindingFill}) {
        EXPECT_TRUE(matches(
            [rule](QPainter& p) {
                QPainterPath path;
                path.setFillRule(rule);
                path.addRect(10, 10, 100, 60);
                path.addRect(30, 20, 40, 30);
                path.addEllipse(QRectF(20, 75, 80, 40));
                path.addEllipse(QRectF(40, 85, 40, 20));
                p.setPen(Qt::NoPen);
                p.setBrush(QColor(200, 120, 0));
                p.drawPath(path);
            },
            12))
            << "rule " << rule;
    }
}

TEST_F(PathGLTest, StrokesWithJoinsAndCaps)
{
    const Qt::PenJoinStyle joins[] = {Qt::MiterJoin, Qt::BevelJoin, Qt::RoundJoin};
    const Qt::PenCapStyle caps[] = {Qt::FlatCap, Qt::SquareCap, Qt::RoundCap};
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(matches(
            [&](QPainter& p) {
                QPen pen(QColor(255, 255, 255, 200), 9);
                pen.setJoinStyle(joins[i]);
                pen.setCapStyle(caps[i]);
                p.setPen(pen);
                QPainterPath path(QPointF(15, 100));
                path.lineTo(40, 20);
                path.lineTo(70, 90);
                path.cubicTo(80, 20, 100, 20, 105, 60);
                p.drawPath(path);
            },
            12))
            << "join " << joins[i] << " cap " << caps[i];
    }
}

TEST_F(PathGLTest, AntialiasedFillsAndStrokesCoverLikeTheRasterEngine)
{
    EXPECT_TRUE(matches(
        [](QPainter& p) {
            p.setRenderHint(QPainter::Antialiasing);
            p.setClipRect(QRect(0, 0, 100, 120));
            p.setBrush(QColor(0, 200, 100, 220));
            p.setPen(QPen(QColor(255, 255, 255), 3.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            QPainterPath path;
            path.addEllipse(QRectF(10.3, 15.7, 95, 60));
            path.moveTo(20, 110);
            path.lineTo(60, 85);
            path.lineTo(110, 112);
            p.drawPath(path);
        },
        0));
}

TEST_F(PathGLTest, BuilderLinesAndStrokesMatchAPen)
{
    EXPECT_TRUE(matches(
        [](QPainter& p) {
            if (GraphicsPaintEngine* engine = GraphicsPaintEngine::of(p)) {
                engine->builder().drawLine(QVector2D(10, 10), QVector2D(110, 40), 5, Qt::green);
                engine->builder().stroke({QVector2D(10, 60), QVector2D(60, 110), QVector2D(110, 60)},
                                         Geometry::StrokeProps{7, Qt::RoundJoin, Qt::RoundCap, 2}, Qt::red);
                return;
            }
            p.setPen(QPen(Qt::green, 5, Qt::SolidLine, Qt::FlatCap));
            p.drawLine(QPointF(10, 10), QPointF(110, 40));
            p.setPen(QPen(Qt::red, 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            p.drawPolyline(QPolygonF({QPointF(10, 60), QPointF(60, 110), QPointF(110, 60)}));
        },
        30));
}

// Pixel bytes that texture uploads in `log` sent to the driver.
qint64 uploadedBytes(const QStringList& log)
{
    qint64 bytes = 0;
    for (const QString& call : log) {
        const bool whole = call.startsWith("glTexImage2D(");
        if (!whole && !call.startsWith("glTexSubImage2D("))
            continue;
        const QStringList args = call.left(call.size() - 1).mid(call.indexOf('(') + 1).split(", ");
        if (args.value(8) == "0") // storage without pixels
            continue;
        // (target, level, internal format | x, w | y, h | w, border | h, format, type, pixels)
        const int w = args.value(whole ? 3 : 4).toInt();
        const int h = args.value(whole ? 4 : 5).toInt();
        const int format = args.value(6).toInt();
        bytes += qint64(w) * h * (format == 0x1906 ? 1 : 4); // GL_ALPHA or RGBA
    }
    return bytes;
}

TEST_F(PathGLTest, AntialiasedShapesDrawnAgainUploadNothingAndShareADraw)
{
    const PaintComparison compare(mGL, qRgba(10, 20, 30, 255));
    // Two equal circles a whole number of pixels apart, in one colour.
    const auto paint = [](QPainter& p) {
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 160, 255));
        for (const QPointF& at : {QPointF(5.5, 5.25), QPointF(60.5, 60.25)}) {
            QPainterPath circle;
            circle.addEllipse(QRectF(at, QSizeF(50, 50)));
            p.drawPath(circle);
        }
    };
    ScopedGLRecorder driver(GLFunctions::current());
    driver.setLogging(true);
    QImage first;
    for (int frame = 0; frame < 10; ++frame) {
        driver.reset();
        const QImage picture = compare.engine(paint);
        const qint64 bytes = uploadedBytes(driver.log());
        const int draws = driver.count("glDrawArrays") + driver.count("glDrawElements");
        if (frame == 0) {
            first = picture;
            // One mask of 51 x 51 pixels with its border, a byte a pixel.
            EXPECT_EQ(bytes, 53 * 53);
        } else {
            EXPECT_EQ(bytes, 0) << "frame " << frame;
            EXPECT_TRUE(picture == first) << "frame " << frame;
        }
        EXPECT_EQ(draws, 1) << "frame " << frame;
    }
    EXPECT_TRUE(PaintComparison::difference(first, compare.raster(paint), kTolerance).pixels == 0);
}

} // namespace
