#include "DisplayDevice.h"
#include "DisplayDeviceWidget.h"
#include "ViewBuffer.h"
#include "maps/MapView.h"
#include "native/tiles/GeneratedTilePainter.h"
#include "native/tiles/TileLoader.h"
#include "native/tiles/TileSource.h"
#include "support/GLTestContext.h"
#include "support/PaintComparison.h"
#include "support/ScreenTest.h"
#include "support/TestTileServer.h"

#include <QBuffer>
#include <QGLFramebufferObject>
#include <QPainter>
#include <QSet>
#include <QTest>
#include <gtest/gtest.h>

using namespace NativeMaps;

namespace {

// Test-pattern tiles, answered on the next round of events; withheld tiles never are.
class PatternSource : public TileSource
{
public:
    QString name() const override { return "pattern"; }
    void request(const TileId& tile) override
    {
        if (withheld.contains(tile))
            return;
        QMetaObject::invokeMethod(
            this,
            [this, tile] {
                QByteArray png;
                QBuffer buffer(&png);
                buffer.open(QIODevice::WriteOnly);
                GeneratedTilePainter(GeneratedTilePainter::TestPattern).paint(tile).save(&buffer, "PNG");
                emit tileLoaded(this, tile, png);
            },
            Qt::QueuedConnection);
    }
    void cancel(const TileId&) override {}
    QSet<TileId> withheld;
};

QRgb opaque(QRgb c)
{
    return c | 0xff000000;
}

class MapViewGLTest : public ::testing::Test
{
protected:
    // Other GL tests may share the X server: the window keeps clear of the
    // bottom-right corner, where the pointer test clicks.
    void open(int size = 512)
    {
        device = std::make_unique<DisplayDevice>(size, size);
        device->timer()->stop();
        device->setPosition(ScreenTest::onScreen(QPoint(760, 420), QSize(size, size)));
        device->setVisible(true);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(device->widget()));
        map = new MapView(device->views(), "map");
        map->resizeTo(size, size);
        source = new PatternSource;
        map->setTileSource(source);
    }
    void TearDown() override
    {
        delete map;
        device.reset();
    }

    // Frames until every visible tile is drawn from its own texture, or as far as
    // the tiles that come allow.
    bool settle()
    {
        return TestTileServer::processUntil([this] {
            device->doTick();
            return map->tileLoader()->isIdle() && map->tileRenderer()->isComplete();
        });
    }
    QImage picture()
    {
        map->update();
        device->doTick();
        QImage i = device->layer()->framebuffer()->toImage();
        if (qEnvironmentVariableIsSet("MAPTEST_DUMP"))
            i.save(QStringLiteral("/tmp/maptest_%1.png")
                       .arg(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        return i;
    }

    std::unique_ptr<DisplayDevice> device;
    MapView* map = nullptr;
    PatternSource* source = nullptr;
};

} // namespace

TEST_F(MapViewGLTest, KnownCameraDrawsEachTileAtItsPlace)
{
    open();
    // Zoom 2 is 1024 pixels round; its centre is the view's centre.
    map->setCamera(MapCamera(LocationCoordinate(0, 0), 2.0));
    ASSERT_TRUE(settle());
    EXPECT_EQ(map->tileRenderer()->stats().visible, 4);
    const QImage image = picture();
    const QRgb border = opaque(GeneratedTilePainter::testPatternBorderColor().rgb());
    struct Expected
    {
        TileId tile;
        QPoint inside;
    };
    for (const Expected& e :
         {Expected{TileId(2, 1, 1), QPoint(64, 200)}, Expected{TileId(2, 2, 1), QPoint(448, 200)},
          Expected{TileId(2, 1, 2), QPoint(64, 300)}, Expected{TileId(2, 2, 2), QPoint(448, 300)}}) {
        const QRgb want = opaque(GeneratedTilePainter::testPatternColor(e.tile).rgb());
        EXPECT_TRUE(colorsClose(opaque(image.pixel(e.inside)), want, 3)) << e.tile.toString().toStdString();
    }
    // The borders meet at the centre: 4 pixels on each side of each seam.
    for (int x : {252, 255, 256, 259})
        EXPECT_TRUE(colorsClose(opaque(image.pixel(x, 100)), border, 3)) << x;
    for (int x : {251, 260})
        EXPECT_FALSE(colorsClose(opaque(image.pixel(x, 100)), border, 3)) << x;
    EXPECT_TRUE(colorsClose(opaque(image.pixel(0, 0)), border, 3));
}

TEST_F(MapViewGLTest, RotationTurnsTheTilesAboutTheFocus)
{
    open();
    // Heading east: east is up, so the tile east of the centre is above it.
    map->setCamera(MapCamera(LocationCoordinate(0, 0), 2.0, 90.0));
    ASSERT_TRUE(settle());
    const QImage image = picture();
    const QPoint topLeft(64, 200), topRight(448, 200), bottomLeft(64, 300), bottomRight(448, 300);
    EXPECT_TRUE(colorsClose(opaque(image.pixel(topLeft)),
                            opaque(GeneratedTilePainter::testPatternColor(TileId(2, 2, 1)).rgb()), 3));
    EXPECT_TRUE(colorsClose(opaque(image.pixel(topRight)),
                            opaque(GeneratedTilePainter::testPatternColor(TileId(2, 2, 2)).rgb()), 3));
    EXPECT_TRUE(colorsClose(opaque(image.pixel(bottomLeft)),
                            opaque(GeneratedTilePainter::testPatternColor(TileId(2, 1, 1)).rgb()), 3));
    EXPECT_TRUE(colorsClose(opaque(image.pixel(bottomRight)),
                            opaque(GeneratedTilePainter::testPatternColor(TileId(2, 1, 2)).rgb()), 3));
}

TEST_F(MapViewGLTest, MissingTileIsFilledFromItsParentScaled)
{
    open();
    map->setCamera(MapCamera(LocationCoordinate(0, 0), 1.0));
    ASSERT_TRUE(settle());
    source->withheld.insert(TileId(2, 1, 1));
    map->setZoom(2.0);
    ASSERT_TRUE(TestTileServer::processUntil([this] {
        device->doTick();
        return map->tileRenderer()->stats().exact == 3;
    }));
    const MapTileRenderer::FrameStats stats = map->tileRenderer()->stats();
    EXPECT_EQ(stats.visible, 4);
    EXPECT_EQ(stats.fallback, 1);
    EXPECT_EQ(stats.holes, 0);
    const QImage image = picture();
    // The lower right quarter of tile 1/0/0, twice its size: its own colour, then
    // its right border, now 8 pixels wide.
    const QRgb parent = opaque(GeneratedTilePainter::testPatternColor(TileId(1, 0, 0)).rgb());
    const QRgb border = opaque(GeneratedTilePainter::testPatternBorderColor().rgb());
    EXPECT_TRUE(colorsClose(opaque(image.pixel(100, 100)), parent, 3));
    EXPECT_TRUE(colorsClose(opaque(image.pixel(246, 100)), parent, 3));
    EXPECT_TRUE(colorsClose(opaque(image.pixel(249, 100)), border, 3));
    EXPECT_TRUE(colorsClose(opaque(image.pixel(100, 249)), border, 3));
    EXPECT_TRUE(colorsClose(opaque(image.pixel(300, 100)),
                            opaque(GeneratedTilePainter::testPatternColor(TileId(2, 2, 1)).rgb()), 3));
}

TEST_F(MapViewGLTest, TiltedMapMatchesThePainterPicture)
{
    open(256);
    map->setCamera(MapCamera(LocationCoordinate(20, 30), 5.8, 25.0, 45.0));
    ASSERT_TRUE(settle());
    const QImage gl = picture().convertToFormat(QImage::Format_ARGB32);
    QImage reference(256, 256, QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&reference);
        map->tileRenderer()->paint(painter, QRect(0, 0, 256, 256));
    }
    reference = reference.convertToFormat(QImage::Format_ARGB32);
    // Sampling differs along edges between the two rasterisers; the tiles must not move.
    const PaintComparison::Difference d = PaintComparison::difference(gl, reference, 24);
    EXPECT_LT(d.pixels, 256 * 256 / 40) << d.worst << " at " << d.worstAt.x() << "," << d.worstAt.y();
    // Tilted, the view reaches further than looking straight down.
    MapCamera flat = map->camera();
    flat.tilt = 0;
    QRectF viewRect;
    EXPECT_GT(map->tileRenderer()->stats().visible,
              map->transformFor(flat).tilePoints(400, QPointF(), QRegion(), viewRect).size());
}

TEST_F(MapViewGLTest, RouteAndCarAreDrawnOverTheTiles)
{
    open();
    map->setCamera(MapCamera(LocationCoordinate(0, 0), 2.0));
    map->setRoute({LocationCoordinate(0, -100), LocationCoordinate(0, 100)});
    map->addGpsFix(-30, 0, 0);
    ASSERT_TRUE(settle());
    const QImage image = picture();
    // The equator is the view's middle row; the car sits a way south of it.
    EXPECT_TRUE(colorsClose(opaque(image.pixel(100, 256)), opaque(map->route().color().rgb()), 8));
    const QPointF car = map->viewPointFromLatLng(LocationCoordinate(-30, 0));
    EXPECT_EQ(qRound(car.x()), 256);
    EXPECT_GT(car.y(), 300);
    EXPECT_LT(qGray(image.pixel(car.toPoint())), 60);
}

TEST_F(MapViewGLTest, RouteAndCarStayWhenTheDamageHasSeveralRectangles)
{
    open();
    map->setCamera(MapCamera(LocationCoordinate(0, 0), 2.0, 20, 40));
    map->setRoute({LocationCoordinate(0, -100), LocationCoordinate(0, 100)});
    map->addGpsFix(-10, 0, 0);
    // Two small views at opposite corners: redrawn alone, the frame's damage is two
    // rectangles, and the map is drawn once for each.
    DisplayView* corners[2] = {new DisplayView(device->views(), "topLeft"),
                               new DisplayView(device->views(), "bottomRight")};
    for (DisplayView* corner : corners) {
        corner->setBackgroundColor(SkinColor(Qt::red));
        corner->resizeTo(16, 16);
    }
    corners[1]->moveTo(496, 496);
    ASSERT_TRUE(settle());
    const QImage before = picture();
    for (DisplayView* corner : corners)
        corner->update();
    device->doTick();
    const QImage after = device->layer()->framebuffer()->toImage();
    EXPECT_EQ(PaintComparison::difference(before, after, 0).pixels, 0);
    const QPointF car = map->viewPointFromLatLng(LocationCoordinate(-10, 0));
    EXPECT_LT(qGray(after.pixel(car.toPoint())), 60);
    EXPECT_EQ(opaque(after.pixel(8, 8)), opaque(QColor(Qt::red).rgb()));
    for (DisplayView* corner : corners)
        delete corner;
}
