#include "native/MapCRS.h"
#include "LogCapture.h"
#include "support/ScopedDefaultCRS.h"

#include <gtest/gtest.h>
#include <thread>

using namespace NativeMaps;

namespace {

// Projected units are (longitude, latitude), so world pixels at zoom 0 are 256
// times the degrees and exact halves are easy to reach.
class DegreeProjection : public MapCRSProjection
{
public:
    DegreeProjection() : MapCRSProjection(TRect<double>(-1, -1, 2, 2)) {}
    TPoint<double> project(const LocationCoordinate& c) const override
    {
        return {c.longitude(), c.latitude()};
    }
    LocationCoordinate unproject(const TPoint<double>& p) const override { return {p.y, p.x}; }
    double metersPerProjectedUnit() const override { return 2.0; }
};

} // namespace

TEST(MapCRS, ScalesBoundsAndWrapsOfBothSystems)
{
    MapCRSEPSG3857 mercator;
    MapCRSEPSG5179 utmk;
    EXPECT_DOUBLE_EQ(mercator.scale(0), 256.0);
    EXPECT_DOUBLE_EQ(mercator.zoom(256.0), 0.0);
    for (double z : {-2.5, 3.25, 21.7})
        EXPECT_NEAR(mercator.zoom(mercator.scale(z)), z, 1e-12);
    EXPECT_NEAR(mercator.metersPerPixel(1), 40075016.68557849 / 512.0, 1e-6);
    EXPECT_NEAR(utmk.metersPerPixel(0), 524288.0 / 256.0, 1e-9);

    // Both extents come out with a positive height although y grows southwards;
    // the UTM-K grid spans three units of 2^19 m each way.
    EXPECT_EQ(mercator.getProjectedBounds(3).toAlignedRect(), QRect(0, 0, 2048, 2048));
    EXPECT_EQ(utmk.getProjectedBounds(0).toAlignedRect(), QRect(0, 0, 768, 768));
    const QPointF falseOrigin = utmk.worldPixelsFromLatLng(LocationCoordinate(38.0, 127.5), 0);
    EXPECT_NEAR(falseOrigin.y(), (1214781.0 + 1572864.0 - 2000000.0) / 2048.0, 1e-6);
    mercator.setUnbounded(true);
    EXPECT_EQ(mercator.getProjectedBounds(5), QRectF(0, 0, 0, 0));

    const LocationCoordinate w = mercator.wrapLatLng(LocationCoordinate(100.0, 180.0));
    EXPECT_EQ(w, LocationCoordinate(100.0, -180.0));
    EXPECT_DOUBLE_EQ(mercator.wrapLatLng(LocationCoordinate(0, -181.0)).longitude(), 179.0);
    EXPECT_EQ(utmk.wrapLatLng(LocationCoordinate(100.0, 190.0)), LocationCoordinate(100.0, 190.0));
}

TEST(MapCRS, BoundingBoxToPixelsGoesThroughTheDefaultCRSAndRoundsHalvesUp)
{
    ScopedDefaultCRS degrees(new MapCRSEarth(new DegreeProjection(), MapCRSAffineTransform()));
    const GeoBoundingBox box(LocationCoordinate(-2.5 / 256, -2.5 / 256),
                             LocationCoordinate(1.5 / 256, 3.5 / 256));
    const QRect r = MapCRSEPSG5179().boundingBoxToPixels(box, 0);
    EXPECT_EQ(r.topLeft(), QPoint(-2, -2));
    EXPECT_EQ(r.bottomRight(), QPoint(4, 2));
}

TEST(MapCRS, SettingTheDefaultOffTheMainThreadAssertsButStillStores)
{
    MapCRS* const before = MapCRS::defaultCRS();
    MapCRSEPSG3857 crs;
    LogCapture capture;
    std::thread([&crs] { MapCRS::setDefaultCRS(&crs); }).join();
    EXPECT_EQ(MapCRS::defaultCRS(), &crs);
    ASSERT_EQ(capture.records().size(), 1);
    EXPECT_EQ(
        capture.records().first().condition,
        "QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread()");
    EXPECT_EQ(capture.records().first().file, "maps/native/MapCRS");
    MapCRS::setDefaultCRS(before);
}
