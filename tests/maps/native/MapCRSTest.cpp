#include "native/MapCRS.h"
#include "LogCapture.h"
#include "support/ScopedDefaultCRS.h"

#include <QThread>
#include <gtest/gtest.h>

using namespace NativeMaps;

namespace {

// Projected units are (longitude, latitude) themselves, so world pixels at zoom 0
// are 256 times the coordinates: exact halves are easy to reach.
class DegreeProjection : public MapCRSProjection
{
public:
    DegreeProjection() : MapCRSProjection(TRect<double>(-1, -1, 2, 2)) {}
    TPoint<double> project(const LocationCoordinate& c) const override
    {
        return TPoint<double>(c.longitude(), c.latitude());
    }
    LocationCoordinate unproject(const TPoint<double>& p) const override
    {
        return LocationCoordinate(p.y, p.x);
    }
    double metersPerProjectedUnit() const override { return 2.0; }
};

class DegreeCRS : public MapCRSEarth
{
public:
    DegreeCRS() : MapCRSEarth(new DegreeProjection(), MapCRSAffineTransform()) {}
};

void expectRect(const QRectF& r, double x, double y, double w, double h)
{
    EXPECT_NEAR(r.x(), x, 1e-9);
    EXPECT_NEAR(r.y(), y, 1e-9);
    EXPECT_NEAR(r.width(), w, 1e-9);
    EXPECT_NEAR(r.height(), h, 1e-9);
}

} // namespace

TEST(MapCRS, ScaleAndZoomAreInverses)
{
    MapCRSEPSG3857 crs;
    EXPECT_DOUBLE_EQ(crs.scale(0), 256.0);
    EXPECT_DOUBLE_EQ(crs.scale(15), 256.0 * 32768.0);
    EXPECT_DOUBLE_EQ(crs.zoom(256.0), 0.0);
    for (double z : {-2.5, 0.0, 3.25, 15.0, 21.7})
        EXPECT_NEAR(crs.zoom(crs.scale(z)), z, 1e-12);
    // One pixel at zoom 0 is the world's circumference over 256.
    EXPECT_NEAR(crs.metersPerPixel(0), 40075016.68557849 / 256.0, 1e-6);
    EXPECT_NEAR(crs.metersPerPixel(1), crs.metersPerPixel(0) / 2, 1e-9);
    EXPECT_NEAR(MapCRSEPSG5179().metersPerPixel(0), 524288.0 / 256.0, 1e-9);
}

TEST(MapCRS, ProjectedBoundsNormaliseTheSignOfTheExtent)
{
    MapCRSEPSG3857 mercator;
    expectRect(mercator.getProjectedBounds(0), 0, 0, 256, 256);
    expectRect(mercator.getProjectedBounds(3), 0, 0, 2048, 2048);
    // The UTM-K grid spans three units of 2^19 m each way; its extent is stored
    // with a positive height although y grows southwards.
    MapCRSEPSG5179 utmk;
    expectRect(utmk.getProjectedBounds(0), 0, 0, 768, 768);
    expectRect(utmk.getProjectedBounds(2), 0, 0, 3072, 3072);
    mercator.setUnbounded(true);
    EXPECT_EQ(mercator.getProjectedBounds(5), QRectF(0, 0, 0, 0));
}

TEST(MapCRS, WorldPixelsOfBothSystems)
{
    MapCRSEPSG3857 mercator;
    const QPointF origin = mercator.worldPixelsFromLatLng(LocationCoordinate(0, 0), 0);
    EXPECT_NEAR(origin.x(), 128.0, 1e-9);
    EXPECT_NEAR(origin.y(), 128.0, 1e-9);
    const QPointF northWest = mercator.worldPixelsFromLatLng(LocationCoordinate(85.0511287798066, -180), 1);
    EXPECT_NEAR(northWest.x(), 0.0, 1e-6);
    EXPECT_NEAR(northWest.y(), 0.0, 1e-6);

    // The UTM-K origin of the grid (easting 171162, northing 1214781 + 3 * 2^19) is
    // world pixel (0, 0); the false origin (1e6, 2e6) lies 829838 m east of it.
    MapCRSEPSG5179 utmk;
    const LocationCoordinate falseOrigin(38.0, 127.5);
    const QPointF p = utmk.worldPixelsFromLatLng(falseOrigin, 0);
    EXPECT_NEAR(p.x(), (1000000.0 - 171162.0) / 524288.0 * 256.0, 1e-6);
    EXPECT_NEAR(p.y(), (1214781.0 + 1572864.0 - 2000000.0) / 524288.0 * 256.0, 1e-6);
    const LocationCoordinate back = utmk.latLngFromWorldPixels(p, 0);
    EXPECT_NEAR(back.latitude(), 38.0, 1e-9);
    EXPECT_NEAR(back.longitude(), 127.5, 1e-9);
}

TEST(MapCRS, OnlyRangesWithBothEndsSetWrap)
{
    MapCRSEPSG3857 mercator;
    const LocationCoordinate w = mercator.wrapLatLng(LocationCoordinate(100.0, 190.0));
    EXPECT_DOUBLE_EQ(w.latitude(), 100.0);
    EXPECT_DOUBLE_EQ(w.longitude(), -170.0);
    EXPECT_DOUBLE_EQ(mercator.wrapLatLng(LocationCoordinate(0, 180.0)).longitude(), -180.0);
    EXPECT_DOUBLE_EQ(mercator.wrapLatLng(LocationCoordinate(0, -181.0)).longitude(), 179.0);

    MapCRSEPSG5179 utmk;
    EXPECT_FALSE(utmk.longitudeWrap().isSet());
    EXPECT_FALSE(utmk.latitudeWrap().isSet());
    const LocationCoordinate u = utmk.wrapLatLng(LocationCoordinate(100.0, 190.0));
    EXPECT_DOUBLE_EQ(u.latitude(), 100.0);
    EXPECT_DOUBLE_EQ(u.longitude(), 190.0);
}

TEST(MapCRS, BoundingBoxToPixelsGoesThroughTheDefaultCRSAndRoundsHalvesUp)
{
    ScopedDefaultCRS degrees(new DegreeCRS());
    // Called on a UTM-K instance, yet the default CRS does the work.
    MapCRSEPSG5179 utmk;
    const GeoBoundingBox box(LocationCoordinate(-2.5 / 256, -2.5 / 256),
                             LocationCoordinate(1.5 / 256, 3.5 / 256));
    const QRect r = utmk.boundingBoxToPixels(box, 0);
    EXPECT_EQ(r.topLeft(), QPoint(-2, -2));
    EXPECT_EQ(r.bottomRight(), QPoint(4, 2));
    EXPECT_DOUBLE_EQ(degrees.crs()->metersPerPixel(0), 2.0 / 256.0);
}

TEST(MapCRS, SettingTheDefaultOffTheMainThreadAssertsButStillStores)
{
    MapCRS* const before = MapCRS::defaultCRS();
    MapCRSEPSG3857 crs;
    LogCapture capture;
    QThread* worker = QThread::create([&crs] { MapCRS::setDefaultCRS(&crs); });
    worker->start();
    worker->wait();
    delete worker;
    EXPECT_EQ(MapCRS::defaultCRS(), &crs);
    ASSERT_EQ(capture.records().size(), 1);
    const LogRecord& r = capture.records().first();
    EXPECT_EQ(
        r.condition,
        "QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread()");
    EXPECT_EQ(r.file, "maps/native/MapCRS");

    MapCRS::setDefaultCRS(before);
    EXPECT_EQ(capture.records().size(), 1);
    EXPECT_EQ(MapCRS::defaultCRS(), before);
}
