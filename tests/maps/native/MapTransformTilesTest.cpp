#include "LogCapture.h"
#include "ScopedConfigOverride.h"
#include "native/MapTransform.h"
#include "support/ScopedDefaultCRS.h"

#include <QRegion>
#include <algorithm>
#include <gtest/gtest.h>

using namespace NativeMaps;

namespace {

const QRect kViewport(0, 0, 1920, 1200);

MapTransform camera(const LocationCoordinate& reference, int zoom, double scale, double rotation, double tilt)
{
    return MapTransform(zoom, scale, rotation, MapProjection::forViewport(kViewport), reference,
                        QPointF(960, 600), QSize(256, 256))
        .changeTilt(tilt);
}

int sortKey(const QPoint& t, const QPoint& k)
{
    return std::min(std::abs(t.x() - k.x()), std::abs(t.y() - k.y()));
}

// The reference sits at world pixel (256100, 512050) at zoom 15, so the flat view
// covers world pixels [255140, 257060] x [511450, 512650]: tile columns 996 to
// 1004 and rows 1997 to 2002, none of them touching a view edge exactly.
class MapTransformTilesTest : public ::testing::Test
{
protected:
    MapTransform flatCamera(double rotation = 0, double tilt = 0) const
    {
        return camera(mCRS.crs()->latLngFromWorldPixels(QPointF(256100, 512050), 15), 15, 1, rotation, tilt);
    }

    static QVector<QPoint> scanOrder()
    {
        QVector<QPoint> tiles;
        for (int x = 996; x <= 1004; ++x)
            for (int y = 1997; y <= 2002; ++y)
                tiles.append(QPoint(x, y));
        return tiles;
    }

    ScopedDefaultCRS mCRS{new MapCRSEPSG3857()};
    QRectF mViewRect;
};

} // namespace

TEST_F(MapTransformTilesTest, ScanOrderIsColumnMajorWithoutACentre)
{
    const QVector<QPoint> tiles = flatCamera().tilePoints(100, QPointF(0, 0), QRegion(), mViewRect);
    EXPECT_EQ(tiles, scanOrder());
    EXPECT_EQ(mViewRect, QRectF(kViewport));
}

TEST_F(MapTransformTilesTest, CentreOutOrderUsesTheSmallerAxisDistance)
{
    const MapTransform t = flatCamera();
    // The centre (200, 600) lies in tile (997, 2000).
    const QVector<QPoint> tiles = t.tilePoints(100, QPointF(200, 600), QRegion(), mViewRect);
    QVector<QPoint> sorted = tiles;
    std::sort(sorted.begin(), sorted.end(), [](const QPoint& a, const QPoint& b) {
        return a.x() != b.x() ? a.x() < b.x() : a.y() < b.y();
    });
    EXPECT_EQ(sorted, scanOrder());

    const QPoint k(997, 2000);
    for (int i = 1; i < tiles.size(); ++i)
        EXPECT_LE(sortKey(tiles[i - 1], k), sortKey(tiles[i], k));
    // The whole centre row and column come first: 9 + 6 - 1 tiles with key 0.
    for (int i = 0; i < 14; ++i)
        EXPECT_TRUE(tiles[i].x() == 997 || tiles[i].y() == 2000) << i;
    // Five columns away in the centre row still beats the diagonal neighbour.
    EXPECT_LT(tiles.indexOf(QPoint(1002, 2000)), tiles.indexOf(QPoint(998, 2001)));
}

TEST_F(MapTransformTilesTest, OneTileOverTheLimitGivesNothing)
{
    const MapTransform t = flatCamera();
    LogCapture capture;
    EXPECT_EQ(t.tilePoints(54, QPointF(960, 600), QRegion(), mViewRect).size(), 54);
    EXPECT_TRUE(capture.records().isEmpty());
    EXPECT_TRUE(t.tilePoints(53, QPointF(960, 600), QRegion(), mViewRect).isEmpty());
    ASSERT_EQ(capture.assertions(), QStringList{"Exceeded max tiles 53 with 54 Bounds: 996,1997,1005,2003"});
    EXPECT_EQ(capture.records().first().file, "maps/native/MapTransform");
}

TEST_F(MapTransformTilesTest, RangesBeyondIntAreOutOfBounds)
{
    // At a magnification of 1e-5 the view spans 750000 x 468750 tiles.
    const MapTransform t = camera(LocationCoordinate(0, 0), 20, 1e-5, 0, 0);
    const QRectF b = t.tilePolygon(mViewRect).boundingRect();
    LogCapture capture;
    EXPECT_TRUE(t.tilePoints(1000, QPointF(0, 0), QRegion(), mViewRect).isEmpty());
    EXPECT_EQ(capture.assertions(), QStringList{QString("Out of bounds %1,%2,%3,%4")
                                                    .arg(std::floor(b.left()))
                                                    .arg(std::floor(b.top()))
                                                    .arg(std::ceil(b.right()))
                                                    .arg(std::ceil(b.bottom()))});
}

TEST_F(MapTransformTilesTest, OnlyTilesStrictlyInsideACoveredRectAreSkipped)
{
    // Around (0, 0) every tile edge falls on a whole view pixel: tile (16384, 16384)
    // is drawn at [960, 1216] x [600, 856], tile (16385, 16386) at [1216, 1472] x
    // [1112, 1368]. The rects lie in separate bands so that the region keeps them.
    const MapTransform t = camera(LocationCoordinate(0, 0), 15, 1, 0, 0);
    QRegion covered;
    covered += QRect(0, 0, 100, 100);       // only part of a tile
    covered += QRect(959, 599, 259, 259);   // a tile with a pixel to spare
    covered += QRect(1216, 1111, 300, 300); // shares the tile's left edge
    ASSERT_EQ(covered.rectCount(), 3);
    QVector<QPoint> expected = t.tilePoints(100, QPointF(0, 0), QRegion(), mViewRect);
    ASSERT_TRUE(expected.removeOne(QPoint(16384, 16384)));
    EXPECT_EQ(t.tilePoints(100, QPointF(0, 0), covered, mViewRect), expected);
}

TEST_F(MapTransformTilesTest, TheInstrumentClusterTestsTheQuadsThemselves)
{
    const MapTransform t = flatCamera(45, 60);
    QRegion covered(QRect(-10000, -10000, 30000, 30000));
    const QVector<QPoint> centre = t.tilePoints(500, QPointF(0, 0), QRegion(), mViewRect);
    EXPECT_TRUE(t.tilePoints(500, QPointF(0, 0), covered, mViewRect).isEmpty());

    ScopedConfigOverride cluster("runtime/instrument_cluster", true);
    const QVector<QPoint> clusterTiles = t.tilePoints(500, QPointF(0, 0), covered, mViewRect);
    EXPECT_FALSE(clusterTiles.isEmpty()); // overlays do not hide tiles there
    EXPECT_LT(clusterTiles.size(), centre.size());
    for (const QPoint& tile : clusterTiles)
        EXPECT_TRUE(centre.contains(tile)) << tile.x() << "," << tile.y();
}

TEST_F(MapTransformTilesTest, BoundedRectClampsOnlyTheFarEdgesAtZero)
{
    // Around (0, 0) at zoom 15 the view's world pixels are whole numbers.
    EXPECT_EQ(
        camera(LocationCoordinate(0, 0), 15, 1, 0, 0)
            .boundedProjectedRectFromProjectedViewRect(QRectF(kViewport).adjusted(0.5, 0.5, -0.5, -0.5)),
        QRect(QPoint(4193344, 4193704), QPoint(4195264, 4194904)));

    // At zoom 2 the world is 1024 pixels square; longitude -180 is its west edge.
    const MapTransform base = camera(LocationCoordinate(0, -180), 2, 1, 0, 0);
    const MapTransform west = base.changeReference(base.reference(), QPointF(2500, 600));
    EXPECT_EQ(west.boundedProjectedRectFromProjectedViewRect(QRectF(kViewport)),
              QRect(QPoint(0, 0), QPoint(0, 1024)));
    // East of the world the left edge passes the right one: left is not clamped.
    const MapTransform east = base.changeReference(base.reference(), QPointF(-1500, 600));
    EXPECT_EQ(east.boundedProjectedRectFromProjectedViewRect(QRectF(kViewport)),
              QRect(QPoint(1500, 0), QPoint(1024, 1024)));
}

TEST_F(MapTransformTilesTest, ClampKeepsTheViewInsideTheExtent)
{
    MapTransform inside = flatCamera(30, 40);
    const LocationCoordinate before = inside.reference();
    inside.clampToCRSBounds();
    EXPECT_EQ(inside.reference(), before);

    // Over the north edge at zoom 2: moved down; never sideways, as longitude wraps.
    MapTransform north = camera(LocationCoordinate(80, 10), 2, 1, 0, 0);
    north.clampToCRSBounds();
    QRectF u = north.unboundedProjectedRectFromProjectedViewRect(QRectF(kViewport));
    EXPECT_NEAR(u.top(), 0.0, 1e-6);
    EXPECT_NEAR(north.reference().longitude(), 10.0, 1e-9);

    // Rotated: the shift is found on the unrotated footprint, the rotation stays.
    MapTransform rotated = camera(LocationCoordinate(80, 10), 2, 1, 30, 0);
    rotated.clampToCRSBounds();
    EXPECT_EQ(rotated.rotation(), 30.0);
    EXPECT_NEAR(
        rotated.changeRotation(0).unboundedProjectedRectFromProjectedViewRect(QRectF(kViewport)).top(), 0.0,
        1e-6);
    EXPECT_LT(rotated.unboundedProjectedRectFromProjectedViewRect(QRectF(kViewport)).top(), -100.0);
}

TEST_F(MapTransformTilesTest, ClampMovesSidewaysWhereNothingWraps)
{
    ScopedDefaultCRS utmk(new MapCRSEPSG5179());
    // The UTM-K grid is 3072 pixels square at zoom 2.
    MapTransform west = camera(utmk.crs()->latLngFromWorldPixels(QPointF(100, 1500), 2), 2, 1, 0, 0);
    EXPECT_FALSE(west.wrapsLongitude());
    west.clampToCRSBounds();
    const QRectF u = west.unboundedProjectedRectFromProjectedViewRect(QRectF(kViewport));
    EXPECT_NEAR(u.left(), 0.0, 1e-6);
    EXPECT_NEAR(u.top(), 900.0, 1e-6);

    // Larger than the whole grid at zoom 0 (768 pixels): the left and top edges win.
    MapTransform large = camera(utmk.crs()->latLngFromWorldPixels(QPointF(700, 300), 0), 0, 1, 0, 0);
    large.clampToCRSBounds();
    const QRectF v = large.unboundedProjectedRectFromProjectedViewRect(QRectF(kViewport));
    EXPECT_NEAR(v.left(), 0.0, 1e-6);
    EXPECT_NEAR(v.top(), 0.0, 1e-6);
}
