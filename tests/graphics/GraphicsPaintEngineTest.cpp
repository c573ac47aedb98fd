#include <DisplayList.h>
#include <GraphicsPaintDevice.h>
#include <RenderItem.h>
#include <TextureShaderUsage.h>

#include <LogCapture.h>
#include <QPainter>
#include <gtest/gtest.h>
#include <support/QtPrinters.h>

using namespace gfx;

namespace {

class GraphicsPaintEngineTest : public ::testing::Test
{
protected:
    GraphicsPaintEngine& engine() { return *mDevice.engine(); }
    const QVector<RenderItem*>& items() { return engine().builder().items(); }

    GraphicsPaintDevice mDevice{QSize(200, 100)};
};

TEST_F(GraphicsPaintEngineTest, UnsupportedOperationsNameTheirSignatureAndDrawNothing)
{
    LogCapture log;
    const QLine line(0, 0, 10, 10);
    const QLineF lineF(0, 0, 10, 10);
    const QPoint points[3] = {{0, 0}, {10, 0}, {0, 10}};
    const QPointF pointsF[3] = {{0, 0}, {10, 0}, {0, 10}};
    engine().drawLines(&line, 1);
    engine().drawLines(&lineF, 1);
    engine().drawEllipse(QRectF(0, 0, 10, 10));
    engine().drawEllipse(QRect(0, 0, 10, 10));
    engine().drawPolygon(pointsF, 3, QPaintEngine::OddEvenMode);
    engine().drawPolygon(points, 3, QPaintEngine::WindingMode);
    engine().drawPoints(points, 3);
    EXPECT_EQ(
        log.assertions(),
        QStringList({"Unsupported %virtual void gfx::GraphicsPaintEngine::drawLines(const QLine*, int)\n",
                     "Unsupported %virtual void gfx::GraphicsPaintEngine::drawLines(const QLineF*, int)\n",
                     "Unsupported %virtual void gfx::GraphicsPaintEngine::drawEllipse(const QRectF&)\n",
                     "Unsupported %virtual void gfx::GraphicsPaintEngine::drawEllipse(const QRect&)\n",
                     "Unsupported %virtual void gfx::GraphicsPaintEngine::drawPolygon(const QPointF*, int, "
                     "QPaintEngine::PolygonDrawMode)\n",
                     "Unsupported %virtual void gfx::GraphicsPaintEngine::drawPolygon(const QPoint*, int, "
                     "QPaintEngine::PolygonDrawMode)\n"}));
    EXPECT_EQ(log.records().first().condition, "false");
    EXPECT_EQ(log.records().first().file, "graphics/GraphicsPaintEngine");
    EXPECT_TRUE(items().isEmpty());
}

TEST_F(GraphicsPaintEngineTest, SimpleTransformsStayOnTheProcessorOthersBecomeMatrices)
{
    QPainter painter(&mDevice);
    const auto matrixAfter = [&](const QTransform& t) {
        painter.setTransform(t);
        painter.fillRect(QRect(0, 0, 1, 1), Qt::red);
        return engine().matrix();
    };
    EXPECT_TRUE(matrixAfter(QTransform::fromTranslate(5, 7)).isIdentity());
    EXPECT_TRUE(matrixAfter(QTransform::fromScale(2, 0.5)).isIdentity());
    EXPECT_EQ(engine().transform(), QTransform::fromScale(2, 0.5));
    EXPECT_EQ(matrixAfter(QTransform::fromScale(-1, 1)), QMatrix4x4(QTransform::fromScale(-1, 1)));
    EXPECT_EQ(matrixAfter(QTransform().rotate(90)), QMatrix4x4(QTransform().rotate(90)));
    EXPECT_FALSE(matrixAfter(QTransform::fromScale(1, -2)).isIdentity());
    // Whatever path, the rectangles land where the transform puts them.
    painter.end();
    EXPECT_EQ(items()[0]->bounds, QRect(5, 7, 1, 1));
    EXPECT_EQ(items()[1]->bounds, QRect(0, 0, 2, 1));
    EXPECT_EQ(items()[2]->bounds, QRect(-1, 0, 1, 1));
}

TEST_F(GraphicsPaintEngineTest, CompositionModesSetBlendFactorsUnknownOnesKeepThePrevious)
{
    LogCapture log;
    QPainter painter(&mDevice);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationAtop);
    painter.fillRect(QRect(0, 0, 10, 10), Qt::red);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    painter.fillRect(QRect(0, 0, 10, 10), Qt::red);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.fillRect(QRect(0, 0, 10, 10), Qt::red);
    painter.end();
    EXPECT_EQ(log.messages(), QStringList({"Unsupported composition mode"}));
    EXPECT_EQ(log.records().first().level, LogRecord::Warn);
    ASSERT_EQ(items().size(), 3);
    for (int i : {0, 1}) {
        EXPECT_EQ(items()[i]->shaderUsage->blendSource(), GLenum(GL_ONE_MINUS_DST_ALPHA));
        EXPECT_EQ(items()[i]->shaderUsage->blendDestination(), GLenum(GL_SRC_ALPHA));
        // An opaque colour still depends on what lies beneath.
        EXPECT_TRUE(items()[i]->shaderUsage->needsBlending());
    }
    EXPECT_EQ(items()[2]->shaderUsage->blendDestination(), GLenum(GL_ONE));
}

TEST_F(GraphicsPaintEngineTest, OnlyPicturesWithAlphaBlend)
{
    QImage opaque(8, 8, QImage::Format_RGB32);
    opaque.fill(Qt::red);
    QImage translucent(8, 8, QImage::Format_ARGB32_Premultiplied);
    translucent.fill(Qt::red);
    QPainter painter(&mDevice);
    painter.drawImage(QPoint(0, 0), opaque);
    painter.drawImage(QPoint(0, 0), translucent);
    painter.drawPixmap(QPoint(0, 0), QPixmap::fromImage(opaque));
    painter.setOpacity(0.5);
    painter.drawImage(QPoint(0, 0), opaque);
    painter.end();
    ASSERT_EQ(items().size(), 4);
    EXPECT_FALSE(items()[0]->shaderUsage->needsBlending());
    EXPECT_TRUE(items()[1]->shaderUsage->needsBlending());
    EXPECT_FALSE(items()[2]->shaderUsage->needsBlending());
    EXPECT_TRUE(items()[3]->shaderUsage->needsBlending());
    EXPECT_EQ(items()[0]->opaqueRect, QRect(0, 0, 8, 8));
}

TEST_F(GraphicsPaintEngineTest, ClipsCutItemsAndTextureInsets)
{
    GraphicsPaintDevice device(QSize(100, 100), QRegion(0, 0, 50, 100));
    QPainter painter(&device);
    painter.setClipRect(QRect(20, 0, 100, 40));
    painter.fillRect(QRect(0, 0, 100, 100), Qt::red);
    painter.fillRect(QRect(60, 0, 10, 10), Qt::red);
    const GraphicsPaintEngine::Clipped c =
        device.engine()->getClipped(QRectF(0, 0, 40, 40), TexCoordInsets{0, 0, 0.5f, 0});
    painter.end();
    const auto& clippedItems = device.engine()->builder().items();
    ASSERT_EQ(clippedItems.size(), 1);
    EXPECT_EQ(clippedItems[0]->bounds, QRect(20, 0, 30, 40));
    EXPECT_EQ(c.rect, QRectF(20, 0, 20, 40));
    // Half the rectangle is cut, and it showed half the texture: a quarter goes.
    EXPECT_FLOAT_EQ(c.insets.left, 0.25f);
    EXPECT_FLOAT_EQ(c.insets.right, 0.5f);
    EXPECT_FLOAT_EQ(c.insets.top, 0);
}

TEST_F(GraphicsPaintEngineTest, DisplayListsThroughAPainterTakeItsTransform)
{
    auto list = TExplicitlySharedDataPointer<DisplayList>(new DisplayList);
    QImage image(10, 10, QImage::Format_ARGB32);
    EXPECT_FALSE(GraphicsPaintEngine::drawDisplayList(*std::make_unique<QPainter>(&image), list,
                                                      QRect(0, 0, 10, 10), QRect(0, 0, 10, 10), false));
    QPainter painter(&mDevice);
    painter.translate(30, 40);
    EXPECT_TRUE(
        GraphicsPaintEngine::drawDisplayList(painter, list, QRect(0, 0, 10, 10), QRect(0, 0, 5, 5), true));
    painter.end();
    ASSERT_EQ(items().size(), 1);
    EXPECT_EQ(items()[0]->type, quint32(RenderItem::kDisplayList));
    EXPECT_EQ(items()[0]->bounds, QRect(30, 40, 10, 10));
}

TEST_F(GraphicsPaintEngineTest, OnlyGradientsOfOpaqueStopsPromiseAnOpaqueArea)
{
    QLinearGradient opaque(0, 0, 100, 0);
    opaque.setStops({{0, Qt::red}, {1, Qt::blue}});
    QLinearGradient translucent = opaque;
    translucent.setColorAt(0.5, QColor(0, 255, 0, 254));
    {
        QPainter painter(&mDevice);
        painter.fillRect(QRect(0, 0, 100, 50), opaque);
        painter.fillRect(QRect(0, 50, 100, 50), translucent);
        painter.setOpacity(0.99);
        painter.fillRect(QRect(100, 0, 100, 50), opaque);
    }
    ASSERT_EQ(items().size(), 3);
    EXPECT_EQ(items()[0]->opaqueRect, QRect(0, 0, 100, 50));
    EXPECT_FALSE(items()[0]->shaderUsage->needsBlending());
    EXPECT_TRUE(items()[1]->shaderUsage->needsBlending());
    EXPECT_TRUE(items()[2]->shaderUsage->needsBlending());
}

} // namespace
