#include "maps/MapView.h"
#include "DataValueManager.h"
#include "DisplayDevice.h"
#include "ManualClock.h"
#include "input/touch/MouseTouchDriver.h"
#include "input/touch/TouchDevice.h"
#include "maps/MapTileRenderer.h"
#include "native/tiles/GeneratedTileSource.h"

#include <QSignalSpy>
#include <cmath>
#include <gtest/gtest.h>

namespace {

// A map filling an offscreen display, touched through the dispatcher's queue and
// run frame by frame on a manual clock.
class MapViewTest : public ::testing::Test
{
protected:
    ManualClock clock;
    bool settled = (DataValueManager::instance()->processPendingChanges(), true);
    DisplayDevice device{800, 480};
    TouchDevice* touch = TouchDevice::getInstance(&device);
    MapView* map = new MapView(device.views(), "map");

    void SetUp() override
    {
        map->resizeTo(800, 480);
        map->setCamera(MapCamera(LocationCoordinate(48.137, 11.575), 15.0));
    }
    void queue(int id, bool down, QPoint point)
    {
        touch->mouseDriver()->queueEvent(id, down, point.x(), point.y());
    }
    void frame() { device.doTick(); }
    void step(int id, bool down, QPoint point)
    {
        queue(id, down, point);
        frame();
    }
    static double distance(const QPointF& a, const QPointF& b)
    {
        return std::hypot(a.x() - b.x(), a.y() - b.y());
    }
};

} // namespace

TEST_F(MapViewTest, DraggedMapKeepsItsPointUnderTheFingerAlsoWhenTilted)
{
    for (double tilt : {0.0, 40.0}) {
        map->setTilt(tilt);
        const LocationCoordinate grabbed = map->latLngFromViewPoint(QPointF(400, 300));
        step(0, true, QPoint(400, 300));
        step(0, true, QPoint(380, 290));
        step(0, true, QPoint(300, 200));
        EXPECT_LT(distance(map->viewPointFromLatLng(grabbed), QPointF(300, 200)), 0.5) << tilt;
        step(0, false, QPoint(300, 200));
    }
}

TEST_F(MapViewTest, PinchZoomsAboutTheFingersAndTurningRotates)
{
    step(0, true, QPoint(300, 240));
    step(1, true, QPoint(500, 240));
    // One finger moves: the pair's midpoint (450, 240) keeps its place on the map.
    const LocationCoordinate anchor = map->latLngFromViewPoint(QPointF(450, 240));
    step(1, true, QPoint(600, 240));
    EXPECT_NEAR(map->camera().zoom, 15.0 + std::log2(300.0 / 200.0), 1e-9);
    EXPECT_LT(distance(map->viewPointFromLatLng(anchor), QPointF(450, 240)), 0.5);

    // A quarter turn of the fingers, clockwise on the screen, turns the map with them.
    step(1, true, QPoint(300, 540));
    EXPECT_NEAR(map->camera().rotation, 270.0, 1e-6);
    EXPECT_NEAR(map->camera().zoom, 15.0 + std::log2(300.0 / 200.0), 1e-9);
    step(0, false, QPoint(300, 240));
    step(1, false, QPoint(300, 540));
}

TEST_F(MapViewTest, TwoFingersSideBySideMovingUpTiltAndZoomStays)
{
    step(0, true, QPoint(300, 300));
    step(1, true, QPoint(500, 300));
    frame();
    queue(0, true, QPoint(300, 250));
    queue(1, true, QPoint(500, 250));
    frame();
    EXPECT_NEAR(map->camera().tilt, 15.0, 1e-9);
    EXPECT_NEAR(map->camera().zoom, 15.0, 1e-9);
    queue(0, true, QPoint(300, 0));
    queue(1, true, QPoint(500, 0));
    frame();
    EXPECT_EQ(map->camera().tilt, MapView::kMaxTilt);
}

TEST_F(MapViewTest, FlyToArrivesOnTimeTurningTheShortWayAndRisingOnLongTrips)
{
    map->setCamera(MapCamera(LocationCoordinate(48.137, 11.575), 15.0, 350.0));
    const MapCamera target(LocationCoordinate(48.2, 11.7), 16.0, 10.0, 30.0);
    map->flyTo(target, 2.0, InterpolatedValue::Linear);
    clock.advanceMs(1000);
    frame();
    ASSERT_TRUE(map->isAnimating());
    EXPECT_NEAR(map->camera().rotation, 0.0, 1e-6);
    EXPECT_NEAR(map->camera().tilt, 15.0, 1e-6);
    // Some 11 km is more than the view shows at zoom 15: the camera rises on the way.
    EXPECT_LT(map->camera().zoom, 15.0);
    clock.advanceMs(1000);
    frame();
    EXPECT_FALSE(map->isAnimating());
    EXPECT_EQ(map->camera().center, target.center);
    EXPECT_EQ(map->camera().zoom, 16.0);

    // A finger on the map ends a move under way.
    map->flyTo(MapCamera(LocationCoordinate(0, 0), 3.0), 5.0);
    step(0, true, QPoint(400, 240));
    step(0, true, QPoint(300, 240));
    EXPECT_FALSE(map->isAnimating());
    step(0, false, QPoint(300, 240));
}

TEST_F(MapViewTest, CarFollowsSmoothedFixesAndTheCameraFollowsTheCarUntilDragged)
{
    QSignalSpy follow(map, &MapView::followCarChanged);
    map->addGpsFix(48.0990, 11.4980, 60.0);
    clock.advanceMs(1000);
    map->addGpsFix(48.1000, 11.5000, 80.0);
    clock.advanceMs(1000);
    map->addGpsFix(48.1010, 11.5020, 100.0);
    clock.advanceMs(500);
    map->setFollowCar(true);
    frame();
    // Half way from the first fix to the second.
    EXPECT_NEAR(map->carPosition().latitude(), 48.1005, 1e-9);
    EXPECT_NEAR(map->carPosition().longitude(), 11.5010, 1e-9);
    EXPECT_NEAR(map->carHeading(), 90.0, 1e-9);
    EXPECT_EQ(map->camera().center, map->carPosition());
    EXPECT_NEAR(map->camera().rotation, 90.0, 1e-9);
    const QPointF carOnScreen = map->viewPointFromLatLng(map->carPosition());
    EXPECT_LT(distance(carOnScreen, QPointF(400, 240)), 1e-6);

    step(0, true, QPoint(400, 240));
    step(0, true, QPoint(400, 100));
    EXPECT_FALSE(map->followsCar());
    ASSERT_EQ(follow.size(), 2);
    EXPECT_EQ(follow[1][1].toBool(), false);
    step(0, false, QPoint(400, 100));
    const LocationCoordinate kept = map->camera().center;
    clock.advanceMs(500);
    frame();
    EXPECT_EQ(map->camera().center, kept);
}

TEST_F(MapViewTest, CameraIsKeptWithinItsLimits)
{
    map->setCamera(MapCamera(LocationCoordinate(89.0, 190.0), 30.0, -90.0, 75.0));
    EXPECT_EQ(map->camera().zoom, MapView::kMaxZoom);
    EXPECT_EQ(map->camera().tilt, MapView::kMaxTilt);
    EXPECT_EQ(map->camera().rotation, 270.0);
    EXPECT_NEAR(map->camera().center.latitude(), 85.0511287798066, 1e-9);
    EXPECT_NEAR(map->camera().center.longitude(), -170.0, 1e-9);
    map->setTilt(-5);
    EXPECT_EQ(map->camera().tilt, 0.0);
}

TEST_F(MapViewTest, WhereNoTileCameTheSourcesLandShows)
{
    using NativeMaps::GeneratedTilePainter;
    map->setTileSource(new NativeMaps::GeneratedTileSource(GeneratedTilePainter::NightMap));
    EXPECT_EQ(map->tileRenderer()->background(),
              GeneratedTilePainter::palette(GeneratedTilePainter::NightMap).land);
    map->setTileSource(new NativeMaps::GeneratedTileSource);
    EXPECT_EQ(map->tileRenderer()->background(),
              GeneratedTilePainter::palette(GeneratedTilePainter::Map).land);
}
