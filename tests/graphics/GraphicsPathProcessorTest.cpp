#include <GraphicsPaintDevice.h>
#include <GraphicsPathProcessor.h>
#include <PathTessellator.h>

#include <LogCapture.h>
#include <QPainter>
#include <gtest/gtest.h>
#include <support/QtPrinters.h>

using namespace gfx;

namespace {

double area(const QVector<Vertex>& triangles)
{
    double sum = 0;
    for (int i = 0; i + 2 < triangles.size(); i += 3) {
        const Vertex& a = triangles[i];
        const Vertex& b = triangles[i + 1];
        const Vertex& c = triangles[i + 2];
        sum += std::abs((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y)) / 2;
    }
    return sum;
}

TEST(GraphicsPathProcessorTest, FlattensThroughTheTransformAndRefusesUnknownElements)
{
    QPainterPath path(QPointF(0, 0));
    path.lineTo(10, 0);
    path.cubicTo(20, 0, 20, 10, 10, 10);
    path.moveTo(50, 50);
    path.lineTo(60, 60);
    GraphicsPathProcessor processor(QTransform::fromTranslate(100, 0));
    ASSERT_TRUE(processor.process(path));
    ASSERT_EQ(processor.polylines().size(), 2);
    const auto& first = processor.polylines()[0];
    EXPECT_EQ(first[1], QVector2D(110, 0));
    EXPECT_EQ(first.last(), QVector2D(110, 10));
    EXPECT_GT(first.size(), 4);
    EXPECT_EQ(processor.polylines()[1], (GraphicsPathProcessor::Polyline{{150, 50}, {160, 60}}));

    LogCapture log;
    // A curve's data element on its own: only a curve may carry it.
    QPainterPath::Element strayData{1, 2, QPainterPath::CurveToDataElement};
    EXPECT_FALSE(processor.add(strayData));
    QPainterPath::Element lonelyCurve{1, 2, QPainterPath::CurveToElement};
    EXPECT_FALSE(GraphicsPathProcessor().add(lonelyCurve));
    EXPECT_EQ(log.assertions(), QStringList({"Unsupported path element: 3", "Unsupported path element: 2"}));
    EXPECT_EQ(log.records().first().file, "graphics/GraphicsPaintEngine");
}

TEST(GraphicsPathProcessorTest, FillRulesDecideTheHole)
{
    const QVector<QVector<QVector2D>> nested = {{{0, 0}, {10, 0}, {10, 10}, {0, 10}},
                                                {{2, 2}, {8, 2}, {8, 8}, {2, 8}}};
    EXPECT_DOUBLE_EQ(area(PathTessellator::fill(nested, PathTessellator::kOddEven)), 64);
    EXPECT_DOUBLE_EQ(area(PathTessellator::fill(nested, PathTessellator::kWinding)), 100);
    // A bow tie crosses itself: the tessellator adds the crossing.
    EXPECT_DOUBLE_EQ(
        area(PathTessellator::fill({{{0, 0}, {10, 10}, {10, 0}, {0, 10}}}, PathTessellator::kWinding)), 50);
    EXPECT_TRUE(PathTessellator::fill({{{0, 0}, {1, 1}}}, PathTessellator::kWinding).isEmpty());
}

TEST(GraphicsPathProcessorTest, PenStylesOtherThanSolidAreRefused)
{
    GraphicsPaintDevice device(QSize(50, 50));
    LogCapture log;
    QPainter painter(&device);
    QPainterPath path(QPointF(0, 0));
    path.lineTo(40, 40);
    painter.setPen(QPen(Qt::red, 2, Qt::DashLine));
    painter.drawPath(path);
    painter.setPen(QPen(Qt::red, 2, Qt::DotLine));
    painter.drawPath(path);
    painter.setPen(QPen(Qt::red, 2, Qt::SolidLine));
    painter.drawPath(path);
    painter.end();
    EXPECT_EQ(log.assertions(), QStringList({"Unsupported pen style: 2", "Unsupported pen style: 3"}));
    EXPECT_EQ(device.engine()->builder().items().size(), 1);
}

} // namespace
