#include "GeoUtils.h"
#include "GeoBoundingBox.h"
#include "MathUtils.h"

#include <gtest/gtest.h>

// Reference coordinates below come from an independent geodesy library
// (EPSG:4326 to EPSG:5179 and EPSG:3857), not from this code.
struct UtmkReference
{
    double lat, lon, easting, northing;
};

static const UtmkReference kUtmkReferences[] = {
    {37.5665, 126.9780, 953901.1653, 1952032.0810},                                                   // Seoul
    {33.2500, 126.5600, 912436.0183, 1473581.3601},                                                   // Jeju
    {38.6100, 128.3500, 1074005.9397, 2068026.8609}, {35.1796, 129.0756, 1143467.3797, 1688281.9821}, // Busan
    {37.0000, 124.0000, 688529.9227, 1894786.6936},  // west of the peninsula
    {43.0000, 131.0000, 1285291.8532, 2560946.3875}, // far north-east
};

TEST(GeoUtils, UtmkMatchesReferenceCoordinatesToACentimetre)
{
    for (const UtmkReference& r : kUtmkReferences) {
        const TPoint<double> p = GeoUtils::WGStoUTMK(LocationCoordinate(r.lat, r.lon));
        EXPECT_NEAR(p.x, r.easting, 0.01) << r.lat << "," << r.lon;
        EXPECT_NEAR(p.y, r.northing, 0.01) << r.lat << "," << r.lon;
        const LocationCoordinate back = GeoUtils::UTMKtoWGS(TPoint<double>(r.easting, r.northing));
        // 1e-7 degrees is about a centimetre.
        EXPECT_NEAR(back.latitude(), r.lat, 1e-7);
        EXPECT_NEAR(back.longitude(), r.lon, 1e-7);
    }
    const TPoint<double> origin = GeoUtils::WGStoUTMK(LocationCoordinate(38.0, 127.5));
    EXPECT_NEAR(origin.x, 1000000.0, 1e-6);
    EXPECT_NEAR(origin.y, 2000000.0, 1e-6);
}

TEST(GeoUtils, ProjectionRoundTripsStayUnderAMillimetre)
{
    for (double lat = 32.0; lat <= 44.0; lat += 0.37) {
        for (double lon = 123.0; lon <= 133.0; lon += 0.41) {
            const LocationCoordinate c(lat, lon);
            const TPoint<double> u = GeoUtils::WGStoUTMK(c);
            const TPoint<double> u2 = GeoUtils::WGStoUTMK(GeoUtils::UTMKtoWGS(u));
            EXPECT_LT((u2 - u).length(), 1e-3);
            const TPoint<double> m = GeoUtils::projectToSphericalMercator(c);
            const TPoint<double> m2 =
                GeoUtils::projectToSphericalMercator(GeoUtils::unprojectFromSphericalMercator(m));
            EXPECT_LT((m2 - m).length(), 1e-3);
        }
    }
}

TEST(GeoUtils, SphericalMercatorReferenceValuesAndWorldEdges)
{
    TPoint<double> p = GeoUtils::projectToSphericalMercator(LocationCoordinate(37.5665, 126.9780));
    EXPECT_NEAR(p.x, 14135126.301948, 1e-5);
    EXPECT_NEAR(p.y, 4518366.509982, 1e-5);
    p = GeoUtils::projectToSphericalMercator(LocationCoordinate(-33.9, 151.2));
    EXPECT_NEAR(p.x, 16831507.007943, 1e-5);
    EXPECT_NEAR(p.y, -4015382.360073, 1e-5);
    p = GeoUtils::projectToSphericalMercator(LocationCoordinate(90.0, 180.0));
    EXPECT_NEAR(p.x, 20037508.342789244, 1e-6);
    EXPECT_NEAR(p.y, 20037508.342789244, 1e-2);
    EXPECT_TRUE(std::isfinite(GeoUtils::projectToSphericalMercator(LocationCoordinate(-90, 0)).y));
}

TEST(GeoUtils, DistanceBetweenLocations)
{
    EXPECT_NEAR(GeoUtils::distanceBetweenTwoLocations(LocationCoordinate(0, 0), LocationCoordinate(1, 0)),
                111195.08, 0.5);
    EXPECT_DOUBLE_EQ(
        GeoUtils::distanceBetweenTwoLocations(LocationCoordinate(37, 127), LocationCoordinate(37, 127)), 0.0);
    // Seoul to Busan is about 325 km.
    EXPECT_NEAR(GeoUtils::distanceBetweenTwoLocations(LocationCoordinate(37.5665, 126.9780),
                                                      LocationCoordinate(35.1796, 129.0756)),
                325000.0, 2000.0);
}

TEST(GeoBoundingBox, ContainsAcrossTheAntimeridian)
{
    const GeoBoundingBox box(LocationCoordinate(10, 170), LocationCoordinate(-10, -170));
    EXPECT_TRUE(box.crossesAntimeridian());
    EXPECT_TRUE(box.contains(LocationCoordinate(0, 179)));
    EXPECT_TRUE(box.contains(LocationCoordinate(0, -175)));
    EXPECT_FALSE(box.contains(LocationCoordinate(0, 0)));
    EXPECT_DOUBLE_EQ(box.center().longitude(), -180.0);
}

TEST(MathUtils, WrapAtItsBoundaries)
{
    EXPECT_DOUBLE_EQ(MathUtils::wrap<double>(180, -180, 180), -180);
    EXPECT_DOUBLE_EQ(MathUtils::wrap<double>(-180, -180, 180), -180);
    EXPECT_DOUBLE_EQ(MathUtils::wrap<double>(-181, -180, 180), 179);
    EXPECT_DOUBLE_EQ(MathUtils::wrap<double>(540, -180, 180), -180);
    EXPECT_DOUBLE_EQ(MathUtils::wrap<double>(-900.5, -180, 180), 179.5);
    EXPECT_DOUBLE_EQ(MathUtils::wrap<double>(359.999, 0, 360), 359.999);
    EXPECT_EQ(MathUtils::wrap<int>(360, 0, 360), 0);
    EXPECT_EQ(MathUtils::wrap<int>(-1, 0, 360), 359);
    EXPECT_EQ(MathUtils::wrap<int>(-360, 0, 360), 0);
    EXPECT_EQ(MathUtils::wrap<int>(725, 0, 360), 5);
    EXPECT_EQ(MathUtils::wrap<int>(7, 5, 8), 7);
    EXPECT_EQ(MathUtils::wrap<int>(8, 5, 8), 5);
    EXPECT_EQ(MathUtils::wrap<int>(4, 5, 8), 7);
}
