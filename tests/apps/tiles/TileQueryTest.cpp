#include "TileQuery.h"
#include "LogCapture.h"
#include "native/MapCRS.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

QStringList args(const QString& line)
{
    return line.split(' ', Qt::SkipEmptyParts);
}

} // namespace

TEST(TileQuery, RejectsBadArgumentsWithAReason)
{
    const struct
    {
        const char* line;
        const char* error;
    } cases[] = {
        {"--lat 37.5", "--lat and --lon are required"},
        {"--lat 37.5 --lon", "--lon needs a value"},
        {"--lat 91 --lon 127", "Bad latitude 91"},
        {"--lat 37 --lon 127 --crs 4326", "Unknown CRS 4326 (3857 or 5179)"},
        {"--lat 37 --lon 127 --zoom 31", "Bad zoom 31 (0 to 30)"},
        {"--lat 37 --lon 127 --scale 0", "Bad scale 0"},
        {"--lat 37 --lon 127 --tilt 90", "Bad tilt 90 (0 to below 90)"},
        {"--lat 37 --lon 127 --viewport 1920x", "Bad viewport 1920x (WxH)"},
        {"--lat 37 --lon 127 --viewport 19.5x1200", "Bad viewport 19.5x1200 (WxH)"},
        {"--lat 37 --lon 127 --center 3", "Bad center 3 (X,Y)"},
        {"--lat 37 --lon 127 --max-tiles -1", "Bad tile limit -1"},
        {"--lat 37 --lon 127 --fast 1", "Unknown option --fast"},
        {"--lat 37 --lon 127 stray", "Unexpected argument stray"},
    };
    for (const auto& c : cases) {
        TileQuery q;
        EXPECT_FALSE(q.parse(args(c.line))) << c.line;
        EXPECT_EQ(q.error(), c.error);
    }
    TileQuery help;
    EXPECT_TRUE(help.parse(args("--help")));
    EXPECT_TRUE(help.helpRequested());
}

TEST(TileQuery, PrintsTheCentreRowAndColumnFirstAndRestoresTheDefaultCRS)
{
    NativeMaps::MapCRS* const before = NativeMaps::MapCRS::defaultCRS();
    // Longitude 0, latitude 0 is the corner of tiles 16383 and 16384 at zoom 15;
    // nudged south-east it lies in tile (16384, 16384).
    TileQuery q;
    ASSERT_TRUE(
        q.parse(args("--lat -0.001 --lon 0.001 --viewport 800x600 runtime/instrument_cluster=false")));
    EXPECT_EQ(q.configOverrides(), QStringList{"runtime/instrument_cluster=false"});
    QRectF viewRect;
    const QVector<QPoint> tiles = q.run(&viewRect);
    EXPECT_EQ(NativeMaps::MapCRS::defaultCRS(), before);
    EXPECT_EQ(viewRect, QRectF(0, 0, 800, 600));
    // 800x600 around a point 0.001 degrees (23.3 px) into its tile: 4 columns
    // (16382..16385) by 4 rows (16382..16385).
    ASSERT_EQ(tiles.size(), 16);
    // The centre tile's row and column come first, in no particular order.
    for (int i = 0; i < 7; ++i)
        EXPECT_TRUE(tiles[i].x() == 16384 || tiles[i].y() == 16384) << i;
    const QStringList lines = q.format(tiles, viewRect).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 16);
    EXPECT_EQ(lines.first(), QString("15/%1/%2").arg(tiles[0].x()).arg(tiles[0].y()));

    TileQuery scan;
    ASSERT_TRUE(scan.parse(args("--lat -0.001 --lon 0.001 --viewport 800x600 --center 0,0 --json")));
    const QVector<QPoint> scanned = scan.run(&viewRect);
    EXPECT_EQ(scanned.first(), QPoint(16382, 16382));
    const QJsonObject json = QJsonDocument::fromJson(scan.format(scanned, viewRect).toUtf8()).object();
    EXPECT_EQ(json["crs"].toString(), "EPSG:3857");
    EXPECT_EQ(json["zoom"].toInt(), 15);
    EXPECT_EQ(json["tiles"].toArray().size(), 16);
    EXPECT_EQ(json["tiles"].toArray().last().toArray(), (QJsonArray{16385, 16385}));
    EXPECT_EQ(json["viewRect"].toArray(), (QJsonArray{0, 0, 800, 600}));
}

TEST(TileQuery, TiltAndTheTileLimit)
{
    TileQuery tilted;
    ASSERT_TRUE(tilted.parse(args("--crs 5179 --lat 37.5665 --lon 126.978 --rotation 30 --tilt 55")));
    QRectF viewRect;
    const QVector<QPoint> tiles = tilted.run(&viewRect);
    EXPECT_GT(viewRect.top(), 0.0); // the horizon band is left out
    EXPECT_GT(tiles.size(), 54);

    TileQuery limited;
    ASSERT_TRUE(limited.parse(args(QString("--crs 5179 --lat 37.5665 --lon 126.978 --rotation 30 --tilt 55 "
                                           "--max-tiles %1")
                                       .arg(tiles.size() - 1))));
    LogCapture capture;
    EXPECT_TRUE(limited.run().isEmpty());
    ASSERT_EQ(capture.assertions().size(), 1);
    EXPECT_TRUE(capture.assertions().first().startsWith(
        QString("Exceeded max tiles %1 with %2 Bounds: ").arg(tiles.size() - 1).arg(tiles.size())));
}
