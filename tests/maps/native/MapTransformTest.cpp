#include "native/MapTransform.h"
#include "ConfigValue.h"
#include "LogCapture.h"
#include "ScopedConfigOverride.h"
#include "support/ScopedDefaultCRS.h"

#include <QVariant>
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

class MapTransformTest : public ::testing::Test
{
protected:
    ScopedDefaultCRS mCRS{new MapCRSEPSG3857()};
};

// Every space converts to every other and back to within a micro-pixel, for
// both systems and cameras that zoom, scale, rotate and tilt.
void checkRoundTrips(const LocationCoordinate& reference, const std::initializer_list<int>& zooms)
{
    for (int zoom : zooms) {
        for (double scale : {1.0, 1.37}) {
            for (double rotation : {0.0, 30.0, -135.0}) {
                for (double tilt : {0.0, 30.0, 55.0}) {
                    SCOPED_TRACE(QString("zoom %1 scale %2 rotation %3 tilt %4")
                                     .arg(zoom)
                                     .arg(scale)
                                     .arg(rotation)
                                     .arg(tilt)
                                     .toStdString());
                    const MapTransform t = camera(reference, zoom, scale, rotation, tilt);
                    const QRectF view = t.clippedProjectedRect(QRectF());
                    for (int i = 0; i <= 4; ++i) {
                        for (int j = 0; j <= 4; ++j) {
                            const QPointF p(view.left() + view.width() * i / 4.0,
                                            view.top() + view.height() * j / 4.0);
                            const LocationCoordinate ll = t.latLngFromProjectedViewPixels(p);
                            EXPECT_LT(distance(t.projectedViewPixelsFromLatLng(ll), p), 1e-6);

                            const QPointF viewOffset = t.projection().inverse.map(p) - t.referenceViewPoint();
                            const QPointF world = t.relativeWorldPixelsFromViewPixels(viewOffset);
                            EXPECT_LT(distance(t.projectedViewPixelsFromRelativeWorldPixels(world), p), 1e-6);

                            const QPointF tile = t.tilePointFromViewPixels(p);
                            const QPointF fromTile(tile.x() * 256 - t.referenceWorldPixels().x(),
                                                   tile.y() * 256 - t.referenceWorldPixels().y());
                            EXPECT_LT(distance(fromTile, world), 1e-6);
                        }
                    }
                    const QPoint corner(int(std::floor(t.referenceTile().x())) + 1,
                                        int(std::floor(t.referenceTile().y())) - 1);
                    const QPointF cornerView =
                        t.projectedViewPixelsFromRelativeWorldPixels(t.relativeWorldPixelsFromTile(corner));
                    EXPECT_LT(distance(t.tilePointFromViewPixels(cornerView), corner), 1e-9);

                    const LocationCoordinate nearby(reference.latitude() + 1e-3,
                                                    reference.longitude() - 2e-3);
                    const LocationCoordinate back =
                        t.latLngFromProjectedViewPixels(t.projectedViewPixelsFromLatLng(nearby));
                    EXPECT_NEAR(back.latitude(), nearby.latitude(), 1e-9);
                    EXPECT_NEAR(back.longitude(), nearby.longitude(), 1e-9);
                }
            }
        }
    }
}

} // namespace

TEST_F(MapTransformTest, RoundTripsBetweenEverySpace)
{
    checkRoundTrips(kSeoul, {8, 15, 19});
    checkRoundTrips(LocationCoordinate(-33.9, 151.2), {8, 15, 19});
    // The UTM-K series inverse is good to some ten nanometres, which zoom 19
    // (256 px/m) and 17 would magnify past a micro-pixel.
    ScopedDefaultCRS utmk(new MapCRSEPSG5179());
    checkRoundTrips(kSeoul, {8, 12, 15});
}

TEST_F(MapTransformTest, ResetDerivesTheReferenceInEverySpace)
{
    const MapTransform t = camera(kSeoul, 15, 1.5, 30, 0);
    const QPointF world = mCRS.crs()->worldPixelsFromLatLng(kSeoul, 15);
    EXPECT_EQ(t.referenceWorldPixels(), world);
    EXPECT_DOUBLE_EQ(t.referenceTile().x(), world.x() / 256);
    EXPECT_DOUBLE_EQ(t.referenceTile().y(), world.y() / 256);
    EXPECT_LT(distance(t.projectedViewPixelsFromLatLng(kSeoul), QPointF(960, 600)), 1e-9);
    EXPECT_TRUE(t.wrapsLongitude());
    EXPECT_FALSE(t.wrapsLatitude());

    // Rotation turns the map against the heading and scale magnifies it: a point
    // one world pixel east of the reference, with the map turned 90 degrees, is
    // drawn 1.5 pixels above it.
    const MapTransform turned = camera(kSeoul, 15, 1.5, 90, 0);
    const QPointF east = turned.projectedViewPixelsFromRelativeWorldPixels(QPointF(1, 0));
    EXPECT_NEAR(east.x(), 960, 1e-9);
    EXPECT_NEAR(east.y(), 600 - 1.5, 1e-9);

    ScopedDefaultCRS utmk(new MapCRSEPSG5179());
    EXPECT_FALSE(camera(kSeoul, 15, 1, 0, 0).wrapsLongitude());
}

TEST_F(MapTransformTest, DerivedCopiesReplaceOnlyWhatTheyName)
{
    const MapTransform t = camera(kSeoul, 15, 1.25, 30, 40);
    const MapTransform zoomed = t.changedZoom(16, 1.5);
    EXPECT_EQ(zoomed.zoomLevel(), 16);
    EXPECT_EQ(zoomed.scale(), 1.5);
    EXPECT_EQ(zoomed.rotation(), 30);
    EXPECT_EQ(zoomed.projection().tilt, 40);
    EXPECT_NEAR(zoomed.referenceWorldPixels().x(), 2 * t.referenceWorldPixels().x(), 1e-6);

    const MapTransform turned = t.changeRotation(-10);
    EXPECT_EQ(turned.rotation(), -10);
    EXPECT_EQ(turned.projection().transform, t.projection().transform);

    const LocationCoordinate busan(35.1796, 129.0756);
    const MapTransform moved = t.changeReference(busan, QPointF(100, 900));
    EXPECT_EQ(moved.referenceViewPoint(), QPointF(100, 900));
    EXPECT_LT(
        distance(moved.projectedViewPixelsFromLatLng(busan), t.projection().transform.map(QPointF(100, 900))),
        1e-6);

    // The projected variant pins the reference where it is seen, not where it is before the tilt.
    const MapTransform pinned = t.changeReferenceProjected(busan, QPointF(100, 900));
    EXPECT_LT(distance(pinned.projectedViewPixelsFromLatLng(busan), QPointF(100, 900)), 1e-6);
    EXPECT_NE(pinned.referenceViewPoint(), QPointF(100, 900));

    MapProjection p = t.projection();
    p.fieldOfView = 0.6;
    const MapTransform other = t.changeProjection(p).changeTilt(20);
    EXPECT_EQ(other.projection().fieldOfView, 0.6);
    EXPECT_EQ(other.projection().viewport, kViewport);
    EXPECT_EQ(other.projection().pivotX, 960);
}

TEST_F(MapTransformTest, TiltIsIdentityOnlyAtExactlyZero)
{
    const MapTransform tilted = camera(kSeoul, 15, 1, 0, 30);
    EXPECT_EQ(tilted.projection().transform.type(), QTransform::TxProject);
    EXPECT_EQ(camera(kSeoul, 15, 1, 0, 0.001).projection().transform.type(), QTransform::TxProject);
    const MapTransform flat = tilted.changeTilt(0.0);
    EXPECT_EQ(flat.projection().transform.type(), QTransform::TxNone);
    EXPECT_EQ(flat.projection().inverse.type(), QTransform::TxNone);
    EXPECT_EQ(flat.projection().tilt, 0.0);

    QRectF viewRect;
    const QPolygonF flatFootprint = flat.tilePolygon(viewRect);
    EXPECT_EQ(viewRect, QRectF(kViewport));
    EXPECT_NEAR(distance(flatFootprint[0], flatFootprint[1]), distance(flatFootprint[2], flatFootprint[3]),
                1e-12);
    // Tilted, the far edge of the footprint is the wider one.
    const QPolygonF tiltedFootprint = tilted.tilePolygon(viewRect);
    EXPECT_EQ(viewRect, QRectF(kViewport));
    EXPECT_GT(distance(tiltedFootprint[0], tiltedFootprint[1]),
              distance(tiltedFootprint[2], tiltedFootprint[3]));

    // The tilt axis is the row at half the height, truncated for odd heights.
    const MapTransform odd = camera(kSeoul, 15, 1, 0, 45, QRect(0, 0, 800, 1201));
    EXPECT_LT(distance(odd.projection().transform.map(QPointF(17, 600)), QPointF(17, 600)), 1e-9);
    EXPECT_GT(distance(odd.projection().transform.map(QPointF(17, 1000)), QPointF(17, 1000)), 1.0);
    EXPECT_LT(
        distance(odd.projection().inverse.map(odd.projection().transform.map(QPointF(3, 4))), QPointF(3, 4)),
        1e-9);
}

TEST_F(MapTransformTest, LatLngIsAlwaysWrappedAndClamped)
{
    // Far east of the world at zoom 0: longitude 1406.25 comes back wrapped.
    const MapTransform world = camera(LocationCoordinate(0, 0), 0, 1, 0, 0);
    const LocationCoordinate east = world.latLngFromProjectedViewPixels(QPointF(960 + 1000, 600));
    EXPECT_NEAR(east.longitude(), -33.75, 1e-9);
    const LocationCoordinate edge = world.latLngFromProjectedViewPixels(QPointF(960 + 128, 600));
    EXPECT_NEAR(edge.longitude(), -180.0, 1e-9);

    // UTM-K does not wrap, yet positions leaving the view are still geographic.
    ScopedDefaultCRS utmk(new MapCRSEPSG5179());
    const MapTransform korea = camera(kSeoul, 0, 1, 0, 0);
    int rawOutside = 0;
    for (const QPointF& p :
         {QPointF(-4000, -9000), QPointF(9000, -9000), QPointF(5000, 9000), QPointF(-9000, 300)}) {
        const LocationCoordinate raw = utmk.crs()->latLngFromWorldPixels(
            korea.referenceWorldPixels() + korea.relativeWorldPixelsFromViewPixels(p - QPointF(960, 600)), 0);
        rawOutside += !raw.isValid();
        const LocationCoordinate ll = korea.latLngFromProjectedViewPixels(p);
        EXPECT_GE(ll.latitude(), -90.0);
        EXPECT_LE(ll.latitude(), 90.0);
        EXPECT_GE(ll.longitude(), -180.0);
        EXPECT_LT(ll.longitude(), 180.0);
    }
    EXPECT_GE(rawOutside, 2);
}

TEST_F(MapTransformTest, ClippedRectCutsTheHorizonOnlyWhenTilted)
{
    const QRectF wide(-50, -50, 5000, 5000);
    const MapTransform flat = camera(kSeoul, 15, 1, 0, 0);
    EXPECT_EQ(flat.clippedProjectedRect(QRectF()), QRectF(kViewport));
    EXPECT_EQ(flat.clippedProjectedRect(wide), wide); // not intersected with the view

    const MapTransform steep = camera(kSeoul, 15, 1, 20, 55);
    const QRectF cut = steep.clippedProjectedRect(QRectF());
    EXPECT_GT(cut.top(), 0.0);
    EXPECT_DOUBLE_EQ(cut.bottom(), 1200.0);
    EXPECT_DOUBLE_EQ(cut.width(), 1920.0);
    // What is left spans twice the view height on the ground (1 / 0.5).
    const QTransform& inverse = steep.projection().inverse;
    EXPECT_NEAR(inverse.map(QPointF(0, 1200)).y() - inverse.map(QPointF(0, cut.top())).y(), 2400.0, 1e-6);
    EXPECT_EQ(steep.clippedProjectedRect(QRectF(0, 0, 500, 1200)), cut & QRectF(0, 0, 500, 1200));

    {
        ScopedConfigOverride lenient("maps/minPerspectiveScaling", 0.05);
        EXPECT_EQ(steep.clippedProjectedRect(QRectF()), QRectF(kViewport));
        EXPECT_EQ(steep.clippedProjectedRect(wide), wide);
    }
    const MapTransform gentle = camera(kSeoul, 15, 1, 0, 10);
    EXPECT_EQ(gentle.clippedProjectedRect(QRectF()), QRectF(kViewport));
}

TEST_F(MapTransformTest, TilePolygonAndTileQuads)
{
    QRectF viewRect;
    const MapTransform flat = camera(kSeoul, 15, 1, 0, 0);
    const QRectF footprint = flat.tilePolygon(viewRect).boundingRect();
    EXPECT_NEAR(footprint.left(), flat.referenceTile().x() - 960.0 / 256, 1e-9);
    EXPECT_NEAR(footprint.top(), flat.referenceTile().y() - 600.0 / 256, 1e-9);
    EXPECT_NEAR(footprint.width(), 7.5, 1e-9);
    EXPECT_NEAR(footprint.height(), 4.6875, 1e-9);

    // Rotated and magnified, the footprint keeps its side lengths in tile units.
    const QPolygonF turned = camera(kSeoul, 15, 2, 45, 0).tilePolygon(viewRect);
    ASSERT_EQ(turned.size(), 5);
    EXPECT_NEAR(distance(turned[0], turned[1]), 1920.0 / 512, 1e-9);
    EXPECT_NEAR(distance(turned[1], turned[2]), 1200.0 / 512, 1e-9);

    // A rotated tile is drawn over by its axis-aligned bounding box.
    const MapTransform t = camera(kSeoul, 15, 1, 45, 0);
    const QPoint tile(int(t.referenceTile().x()), int(t.referenceTile().y()));
    const QPolygonF quad = t.projectedViewPolygonFromTile(tile);
    ASSERT_EQ(quad.size(), 5);
    EXPECT_EQ(quad.first(), quad.last());
    EXPECT_NEAR(quad.boundingRect().width(), 256 * std::sqrt(2.0), 1e-9);
    for (const QPoint& c : {tile, tile + QPoint(1, 0), tile + QPoint(0, 1), tile + QPoint(1, 1)}) {
        const QPointF corner = t.projectedViewPixelsFromRelativeWorldPixels(t.relativeWorldPixelsFromTile(c));
        EXPECT_TRUE(quad.boundingRect().adjusted(-1e-9, -1e-9, 1e-9, 1e-9).contains(corner));
    }

    // Tilted by 55 degrees, ground more than 1024 / sin(55) = 1250 pixels below the
    // axis lies behind the eye: such a tile has no area rather than a huge quad.
    const MapTransform steep = camera(kSeoul, 15, 1, 0, 55);
    const QPoint below(int(steep.referenceTile().x()), int(steep.referenceTile().y()) + 6);
    EXPECT_TRUE(steep.projectedViewPolygonFromTile(below).boundingRect().isEmpty());
    EXPECT_EQ(steep.projectedViewPolygonFromTile(below - QPoint(0, 4)).size(), 5);
}

TEST_F(MapTransformTest, TravelsThroughQVariant)
{
    const MapTransform t = camera(kSeoul, 12, 1.5, 30, 20);
    EXPECT_NE(QMetaType::type("NativeMaps::MapTransform"), int(QMetaType::UnknownType));
    const MapTransform copy = QVariant::fromValue(t).value<MapTransform>();
    EXPECT_EQ(copy.zoomLevel(), 12);
    EXPECT_EQ(copy.projection().transform, t.projection().transform);
    EXPECT_EQ(copy.referenceWorldPixels(), t.referenceWorldPixels());
}

TEST(MapTransformWithoutCRS, ReportsTheMissingDefault)
{
    MapCRS* const before = MapCRS::defaultCRS();
    MapCRS::setDefaultCRS(nullptr);
    LogCapture capture;
    const MapTransform t(15, 1, 0, MapProjection::forViewport(kViewport), kSeoul, QPointF(960, 600),
                         QSize(256, 256));
    EXPECT_EQ(t.referenceWorldPixels(), QPointF());
    EXPECT_EQ(t.projectedViewPixelsFromLatLng(kSeoul), QPointF());
    EXPECT_EQ(capture.count("No default CRS is installed"), 2);
    MapCRS::setDefaultCRS(before);
}
