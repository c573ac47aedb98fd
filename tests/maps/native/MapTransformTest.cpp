#include "native/MapTransform.h"
#include "LogCapture.h"
#include "ScopedConfigOverride.h"
#include "support/ScopedDefaultCRS.h"

#include <QVariant>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

using namespace NativeMaps;

namespace {

const LocationCoordinate kSeoul(37.5665, 126.9780);
const QRect kViewport(0, 0, 1920, 1200);

MapTransform camera(const LocationCoordinate& reference, int zoom, double scale, double rotation, double tilt,
                    const QRect& viewport = kViewport)
{
    return MapTransform(zoom, scale, rotation, MapProjection::forViewport(viewport), reference,
                        QRectF(viewport).center(), QSize(256, 256))
        .changeTilt(tilt);
}

double distance(const QPointF& a, const QPointF& b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

// Every space converts to every other and back to within a micro-pixel.
void checkRoundTrips(const LocationCoordinate& reference, const std::initializer_list<int>& zooms)
{
    for (int zoom : zooms)
        for (double scale : {1.0, 1.37})
            for (double rotation : {0.0, 30.0, -135.0})
                for (double tilt : {0.0, 30.0, 55.0}) {
                    SCOPED_TRACE(testing::Message()
                                 << zoom << " " << scale << " " << rotation << " " << tilt);
                    const MapTransform t = camera(reference, zoom, scale, rotation, tilt);
                    const QRectF view = t.clippedProjectedRect(QRectF());
                    for (int i = 0; i <= 16; ++i) {
                        const QPointF p(view.left() + view.width() * (i % 4) / 3,
                                        view.top() + view.height() * i / 16);
                        const LocationCoordinate ll = t.latLngFromProjectedViewPixels(p);
                        EXPECT_LT(distance(t.projectedViewPixelsFromLatLng(ll), p), 1e-6);
                        const QPointF world = t.relativeWorldPixelsFromViewPixels(
                            t.projection().inverse.map(p) - t.referenceViewPoint());
                        EXPECT_LT(distance(t.projectedViewPixelsFromRelativeWorldPixels(world), p), 1e-6);
                        const QPointF tile = t.tilePointFromViewPixels(p) * 256 - t.referenceWorldPixels();
                        EXPECT_LT(distance(tile, world), 1e-6);
                    }
                }
}

int sortKey(const QPoint& t, const QPoint& k)
{
    return std::min(std::abs(t.x() - k.x()), std::abs(t.y() - k.y()));
}

class MapTransformTest : public ::testing::Test
{
protected:
    // The reference at world pixel (256100, 512050) at zoom 15 puts the flat view
    // over world pixels [255140, 257060] x [511450, 512650]: tile columns 996 to
    // 1004 and rows 1997 to 2002, none touching a view edge.
    MapTransform offGrid(double rotation = 0, double tilt = 0) const
    {
        return camera(mCRS.crs()->latLngFromWorldPixels(QPointF(256100, 512050), 15), 15, 1, rotation, tilt);
    }

    ScopedDefaultCRS mCRS{new MapCRSEPSG3857()};
    QRectF mViewRect;
};

} // namespace

TEST_F(MapTransformTest, RoundTripsBetweenEverySpace)
{
    checkRoundTrips(kSeoul, {8, 15, 19});
    checkRoundTrips(LocationCoordinate(-33.9, 151.2), {8, 19});
    // The UTM-K series inverse is good to some ten nanometres, which zoom 17 and
    // above (64 px/m) would magnify past a micro-pixel.
    ScopedDefaultCRS utmk(new MapCRSEPSG5179());
    checkRoundTrips(kSeoul, {8, 15});
}

TEST_F(MapTransformTest, CameraChangesAndTilt)
{
    // The map turns against the heading: one world pixel east, with the map turned
    // 90 degrees and magnified 1.5 times, is drawn 1.5 pixels above the reference.
    const MapTransform t = camera(kSeoul, 15, 1.5, 90, 40);
    const QPointF east = t.changeTilt(0.0).projectedViewPixelsFromRelativeWorldPixels(QPointF(1, 0));
    EXPECT_LT(distance(east, QPointF(960, 600 - 1.5)), 1e-9);
    const LocationCoordinate busan(35.18, 129.08);
    const MapTransform pinned = t.changeReferenceProjected(busan, QPointF(100, 900));
    EXPECT_LT(distance(pinned.projectedViewPixelsFromLatLng(busan), QPointF(100, 900)), 1e-6);
    EXPECT_EQ(QVariant::fromValue(pinned).value<MapTransform>().referenceViewPoint(),
              pinned.referenceViewPoint());

    EXPECT_EQ(t.projection().transform.type(), QTransform::TxProject);
    EXPECT_EQ(t.changeTilt(0.001).projection().transform.type(), QTransform::TxProject);
    EXPECT_EQ(t.changeTilt(0.0).projection().transform.type(), QTransform::TxNone);
    // Tilted, the far edge of the footprint is the wider one.
    const QPolygonF footprint = t.tilePolygon(mViewRect);
    EXPECT_GT(distance(footprint[0], footprint[1]), distance(footprint[2], footprint[3]) + 1);
    // The tilt axis is the row at half the height, truncated for odd heights.
    const QTransform odd = camera(kSeoul, 15, 1, 0, 45, QRect(0, 0, 800, 1201)).projection().transform;
    EXPECT_LT(distance(odd.map(QPointF(17, 600)), QPointF(17, 600)), 1e-9);
}

TEST_F(MapTransformTest, LatLngIsAlwaysWrappedAndClamped)
{
    // Far east of the world at zoom 0: longitude 1406.25 comes back wrapped.
    const MapTransform world = camera(LocationCoordinate(0, 0), 0, 1, 0, 0);
    EXPECT_NEAR(world.latLngFromProjectedViewPixels(QPointF(960 + 1000, 600)).longitude(), -33.75, 1e-9);
    EXPECT_NEAR(world.latLngFromProjectedViewPixels(QPointF(960 + 128, 600)).longitude(), -180.0, 1e-9);

    // UTM-K wraps nothing, and its inverse leaves the globe this far out; the result does not.
    ScopedDefaultCRS utmk(new MapCRSEPSG5179());
    const MapTransform korea = camera(kSeoul, 0, 1, 0, 0);
    for (const QPointF& p :
         {QPointF(-4000, -9000), QPointF(9000, -9000), QPointF(5000, 9000), QPointF(-9000, 300)}) {
        const LocationCoordinate ll = korea.latLngFromProjectedViewPixels(p);
        EXPECT_TRUE(ll.latitude() >= -90.0 && ll.latitude() <= 90.0) << ll.latitude();
        EXPECT_TRUE(ll.longitude() >= -180.0 && ll.longitude() < 180.0) << ll.longitude();
    }
}

TEST_F(MapTransformTest, ClippedRectCutsTheHorizonOnlyWhenTilted)
{
    const QRectF wide(-50, -50, 5000, 5000);
    EXPECT_EQ(offGrid().clippedProjectedRect(QRectF()), QRectF(kViewport));
    EXPECT_EQ(offGrid().clippedProjectedRect(wide), wide); // not intersected with the view

    const MapTransform steep = offGrid(20, 55);
    const QRectF cut = steep.clippedProjectedRect(QRectF());
    EXPECT_GT(cut.top(), 0.0);
    EXPECT_EQ(cut.bottom(), 1200.0);
    // What is left spans twice the view height on the ground (1 / 0.5).
    const QTransform& inverse = steep.projection().inverse;
    EXPECT_NEAR(inverse.map(QPointF(0, 1200)).y() - inverse.map(QPointF(0, cut.top())).y(), 2400.0, 1e-6);
    EXPECT_EQ(steep.clippedProjectedRect(QRectF(0, 0, 500, 1200)), cut & QRectF(0, 0, 500, 1200));
    ScopedConfigOverride lenient("maps/minPerspectiveScaling", 0.05);
    EXPECT_EQ(steep.clippedProjectedRect(QRectF()), QRectF(kViewport));
}

TEST_F(MapTransformTest, TileQuadsAreBoundingBoxesAndVanishBehindTheEye)
{
    const MapTransform t = camera(kSeoul, 15, 1, 45, 0);
    const QPoint tile(int(t.referenceTile().x()), int(t.referenceTile().y()));
    const QPolygonF quad = t.projectedViewPolygonFromTile(tile);
    ASSERT_EQ(quad.size(), 5);
    EXPECT_NEAR(quad.boundingRect().width(), 256 * std::sqrt(2.0), 1e-9);

    // Tilted by 55 degrees, ground more than 1024 / sin(55) = 1250 pixels below the
    // axis lies behind the eye: such a tile has no area rather than a huge quad.
    const MapTransform steep = camera(kSeoul, 15, 1, 0, 55);
    const QPoint below(int(steep.referenceTile().x()), int(steep.referenceTile().y()) + 6);
    EXPECT_TRUE(steep.projectedViewPolygonFromTile(below).boundingRect().isEmpty());
    EXPECT_EQ(steep.projectedViewPolygonFromTile(below - QPoint(0, 4)).size(), 5);
}

TEST_F(MapTransformTest, TilesComeInScanOrderOrCentreRowAndColumnFirst)
{
    QVector<QPoint> scan;
    for (int x = 996; x <= 1004; ++x)
        for (int y = 1997; y <= 2002; ++y)
            scan.append(QPoint(x, y));
    EXPECT_EQ(offGrid().tilePoints(100, QPointF(0, 0), QRegion(), mViewRect), scan);
    EXPECT_EQ(mViewRect, QRectF(kViewport));

    // The centre (200, 600) lies in tile (997, 2000).
    const QVector<QPoint> tiles = offGrid().tilePoints(100, QPointF(200, 600), QRegion(), mViewRect);
    ASSERT_EQ(tiles.size(), scan.size());
    for (int i = 1; i < tiles.size(); ++i)
        EXPECT_LE(sortKey(tiles[i - 1], QPoint(997, 2000)), sortKey(tiles[i], QPoint(997, 2000)));
    EXPECT_TRUE(std::is_permutation(tiles.begin(), tiles.end(), scan.begin()));
    // Five columns away in the centre row still beats the diagonal neighbour.
    EXPECT_LT(tiles.indexOf(QPoint(1002, 2000)), tiles.indexOf(QPoint(998, 2001)));
}

TEST_F(MapTransformTest, TooManyTilesOrAnAbsurdRangeGiveNothing)
{
    LogCapture capture;
    EXPECT_EQ(offGrid().tilePoints(54, QPointF(960, 600), QRegion(), mViewRect).size(), 54);
    EXPECT_TRUE(offGrid().tilePoints(53, QPointF(960, 600), QRegion(), mViewRect).isEmpty());
    // At a magnification of 1e-5 the view spans 750000 x 468750 tiles.
    const MapTransform huge = camera(LocationCoordinate(0, 0), 20, 1e-5, 0, 0);
    const QRectF b = huge.tilePolygon(mViewRect).boundingRect();
    EXPECT_TRUE(huge.tilePoints(1000, QPointF(0, 0), QRegion(), mViewRect).isEmpty());
    EXPECT_EQ(capture.assertions(), QStringList({"Exceeded max tiles 53 with 54 Bounds: 996,1997,1005,2003",
                                                 QString("Out of bounds %1,%2,%3,%4")
                                                     .arg(std::floor(b.left()))
                                                     .arg(std::floor(b.top()))
                                                     .arg(std::ceil(b.right()))
                                                     .arg(std::ceil(b.bottom()))}));
    EXPECT_EQ(capture.records().first().file, "maps/native/MapTransform");
}

TEST_F(MapTransformTest, CoveredTilesAndTheInstrumentCluster)
{
    // Around (0, 0) tile edges fall on whole view pixels: tile (16384, 16384) is
    // drawn at [960, 1216] x [600, 856], tile (16385, 16386) at [1216, 1472] x
    // [1112, 1368]. The rects lie in separate bands so that the region keeps them.
    const MapTransform t = camera(LocationCoordinate(0, 0), 15, 1, 0, 0);
    QRegion covered = QRegion(0, 0, 100, 100) + QRegion(959, 599, 259, 259) + QRegion(1216, 1111, 300, 300);
    ASSERT_EQ(covered.rectCount(), 3);
    QVector<QPoint> expected = t.tilePoints(100, QPointF(0, 0), QRegion(), mViewRect);
    ASSERT_TRUE(expected.removeOne(QPoint(16384, 16384)));
    EXPECT_EQ(t.tilePoints(100, QPointF(0, 0), covered, mViewRect), expected);

    // The cluster intersects the quads themselves and ignores overlays.
    const MapTransform steep = offGrid(45, 60);
    covered = QRegion(-10000, -10000, 30000, 30000);
    const QVector<QPoint> display = steep.tilePoints(500, QPointF(0, 0), QRegion(), mViewRect);
    EXPECT_TRUE(steep.tilePoints(500, QPointF(0, 0), covered, mViewRect).isEmpty());
    ScopedConfigOverride cluster("runtime/instrument_cluster", true);
    const QVector<QPoint> clusterTiles = steep.tilePoints(500, QPointF(0, 0), covered, mViewRect);
    EXPECT_LT(clusterTiles.size(), display.size());
    EXPECT_FALSE(clusterTiles.isEmpty());
    for (const QPoint& tile : clusterTiles)
        EXPECT_TRUE(display.contains(tile));
}

TEST_F(MapTransformTest, TiltedTileQuadsMatchThePerspectiveClip)
{
    // Quads in front of the eye are mapped corner by corner; those reaching behind it
    // are clipped at the eye plane. Either way the quad is the one that mapping the
    // whole polygon through the projection gives.
    const MapTransform steep = offGrid(30, 60);
    const QTransform& projection = steep.projection().transform;
    const QPoint centre = steep.tilePointFromViewPixels(QPointF(960, 600)).toPoint();
    int behindTheEye = 0;
    for (int dx = -12; dx <= 12; ++dx) {
        for (int dy = -40; dy <= 40; ++dy) {
            const QPoint tile = centre + QPoint(dx, dy);
            const QRectF world(steep.relativeWorldPixelsFromTile(tile), QSizeF(steep.tileSize()));
            const QRectF view = steep.worldToView().mapRect(world).translated(steep.referenceViewPoint());
            const QPolygonF exact = projection.map(QPolygonF(view));
            for (const QPointF& corner : QPolygonF(view))
                behindTheEye +=
                    projection.m13() * corner.x() + projection.m23() * corner.y() + projection.m33() <= 0;
            EXPECT_EQ(steep.projectedViewPolygonFromTile(tile), exact) << dx << "," << dy;
        }
    }
    EXPECT_GT(behindTheEye, 0); // the grid reaches behind the eye
}

TEST_F(MapTransformTest, BoundedRectClampsOnlyTheFarEdgesAtZero)
{
    EXPECT_EQ(
        camera(LocationCoordinate(0, 0), 15, 1, 0, 0)
            .boundedProjectedRectFromProjectedViewRect(QRectF(kViewport).adjusted(0.5, 0.5, -0.5, -0.5)),
        QRect(QPoint(4193344, 4193704), QPoint(4195264, 4194904)));
    // At zoom 2 the world is 1024 pixels square; longitude -180 is its west edge.
    const MapTransform base = camera(LocationCoordinate(0, -180), 2, 1, 0, 0);
    EXPECT_EQ(base.changeReference(base.reference(), QPointF(2500, 600))
                  .boundedProjectedRectFromProjectedViewRect(QRectF(kViewport)),
              QRect(QPoint(0, 0), QPoint(0, 1024)));
    // East of the world the left edge passes the right one: left is not clamped.
    EXPECT_EQ(base.changeReference(base.reference(), QPointF(-1500, 600))
                  .boundedProjectedRectFromProjectedViewRect(QRectF(kViewport)),
              QRect(QPoint(1500, 0), QPoint(1024, 1024)));
}

TEST_F(MapTransformTest, ClampKeepsTheViewInsideTheExtent)
{
    auto footprint = [](const MapTransform& t) {
        return t.unboundedProjectedRectFromProjectedViewRect(QRectF(kViewport));
    };
    MapTransform inside = offGrid(30, 40);
    inside.clampToCRSBounds();
    EXPECT_EQ(inside.reference(), offGrid().reference());

    // Over the north edge at zoom 2 and rotated: moved down by what the unrotated
    // footprint needs, never sideways (longitude wraps), and still rotated.
    MapTransform north = camera(LocationCoordinate(80, 10), 2, 1, 30, 0);
    north.clampToCRSBounds();
    EXPECT_NEAR(footprint(north.changeRotation(0)).top(), 0.0, 1e-6);
    EXPECT_LT(footprint(north).top(), -100.0);
    EXPECT_NEAR(north.reference().longitude(), 10.0, 1e-9);
    EXPECT_EQ(north.rotation(), 30.0);

    // UTM-K wraps nothing; a view larger than its grid (768 px at zoom 0) keeps
    // its left and top edges on the grid's.
    ScopedDefaultCRS utmk(new MapCRSEPSG5179());
    MapTransform west = camera(utmk.crs()->latLngFromWorldPixels(QPointF(100, 1500), 2), 2, 1, 0, 0);
    west.clampToCRSBounds();
    EXPECT_LT(distance(footprint(west).topLeft(), QPointF(0, 900)), 1e-6);
    MapTransform large = camera(utmk.crs()->latLngFromWorldPixels(QPointF(700, 300), 0), 0, 1, 0, 0);
    large.clampToCRSBounds();
    EXPECT_LT(distance(footprint(large).topLeft(), QPointF(0, 0)), 1e-6);
}
