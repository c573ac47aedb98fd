#include "TileQuery.h"
#include "native/MapCRS.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

static QStringList args(const QString& line)
{
    return line.split(' ', Qt::SkipEmptyParts);
}

TEST(TileQuery, RejectsBadArgumentsWithAReason)
{
    const char* const cases[][2] = {
        {"--lat 37.5", "--lat and --lon are required"},
        {"--lat 91 --lon 127", "Bad latitude 91"},
        {"--lat 37 --lon 127 --crs 4326", "Unknown CRS 4326 (3857 or 5179)"},
        {"--lat 37 --lon 127 --viewport 19.5x1200", "Bad viewport 19.5x1200 (WxH)"},
        {"--lat 37 --lon 127 stray", "Unexpected argument stray"},
        {"--lat 37 --lon 127 --set verbose", "Bad override verbose (key=value)"},
    };
    for (const auto& c : cases) {
        TileQuery q;
        EXPECT_FALSE(q.parse(args(c[0]))) << c[0];
        EXPECT_EQ(q.error(), c[1]);
    }
}

TEST(TileQuery, PrintsTheTilesAndRestoresTheDefaultCRS)
{
    NativeMaps::MapCRS* const before = NativeMaps::MapCRS::defaultCRS();
    // Nudged south-east of (0, 0), the centre lies in tile (16384, 16384) at zoom
    // 15; the 800x600 view covers columns and rows 16382 to 16385.
    TileQuery q;
    ASSERT_TRUE(
        q.parse(args("--lat -0.001 --lon 0.001 --viewport 800x600 --set runtime/instrument_cluster=false")));
    EXPECT_EQ(q.configOverrides(), QStringList{"runtime/instrument_cluster=false"});
    QRectF viewRect;
    const QVector<QPoint> tiles = q.run(&viewRect);
    EXPECT_EQ(NativeMaps::MapCRS::defaultCRS(), before);
    ASSERT_EQ(tiles.size(), 16);
    EXPECT_TRUE(
        q.format(tiles, viewRect).startsWith(QString("15/%1/%2\n").arg(tiles[0].x()).arg(tiles[0].y())));

    TileQuery scan;
    ASSERT_TRUE(
        scan.parse(args("--crs 3857 --lat -0.001 --lon 0.001 --viewport 800x600 --center 0,0 --json")));
    const QJsonObject json =
        QJsonDocument::fromJson(scan.format(scan.run(&viewRect), viewRect).toUtf8()).object();
    EXPECT_EQ(json["crs"].toString(), "EPSG:3857");
    EXPECT_EQ(json["tiles"].toArray().first().toArray(), (QJsonArray{16382, 16382}));
    EXPECT_EQ(json["tiles"].toArray().last().toArray(), (QJsonArray{16385, 16385}));
}
