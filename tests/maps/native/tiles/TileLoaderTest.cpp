#include "native/tiles/TileLoader.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"
#include "native/tiles/GeneratedTilePainter.h"
#include "native/tiles/GeneratedTileSource.h"
#include "support/TestTileServer.h"

#include <QBuffer>
#include <gtest/gtest.h>

using namespace NativeMaps;

namespace {

// Answers only when told, and remembers what it was asked.
class ScriptedSource : public TileSource
{
public:
    QString name() const override { return "scripted"; }
    void request(const TileId& tile) override { requests.append(tile); }
    void cancel(const TileId& tile) override { cancels.append(tile); }

    void succeed(const TileId& tile)
    {
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(qRgb(tile.x * 10, tile.y * 10, tile.zoom * 10));
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        emit tileLoaded(this, tile, png);
    }
    void failWith(const TileId& tile, const QString& error) { emit tileFailed(this, tile, error); }

    QVector<TileId> requests;
    QVector<TileId> cancels;
};

bool until(const std::function<bool()>& done)
{
    return TestTileServer::processUntil(done);
}

QVector<TileId> row(int zoom, int y, int from, int to)
{
    QVector<TileId> tiles;
    for (int x = from; x <= to; ++x)
        tiles.append(TileId(zoom, x, y));
    return tiles;
}

} // namespace

TEST(TileLoaderTest, StartsTilesInTheWantedOrderBoundedAndOnceEach)
{
    ScopedConfigOverride bound("maps/tile_loads_in_flight", 3);
    ScriptedSource source;
    TileLoader loader(&source);
    loader.setWanted(row(4, 2, 0, 5) + QVector<TileId>{TileId(4, 16, 0), TileId(4, 1, 2)});
    EXPECT_EQ(source.requests, row(4, 2, 0, 2));
    EXPECT_EQ(loader.queuedCount(), 3);

    // Asked again (the next frame), nothing is asked twice; a new order is followed.
    loader.setWanted({TileId(4, 5, 2), TileId(4, 0, 2), TileId(4, 1, 2), TileId(4, 2, 2)});
    EXPECT_EQ(source.requests, row(4, 2, 0, 2));
    source.succeed(TileId(4, 1, 2));
    ASSERT_TRUE(until([&] { return loader.contains(TileId(4, 1, 2)); }));
    EXPECT_EQ(source.requests, row(4, 2, 0, 2) + QVector<TileId>{TileId(4, 5, 2)});
    EXPECT_EQ(loader.tile(TileId(4, 1, 2)).pixel(3, 3), qRgb(10, 20, 40));
    EXPECT_EQ(loader.tile(TileId(4, 1, 2)).format(), QImage::Format_RGBA8888_Premultiplied);
}

TEST(TileLoaderTest, TilesThatLeaveTheViewAreCancelledAndComeBackFromMemory)
{
    ScriptedSource source;
    TileLoader loader(&source);
    QVector<TileId> ready;
    QObject::connect(&loader, &TileLoader::tileReady, [&](TileLoader*, TileId t) { ready.append(t); });
    loader.setWanted(row(3, 0, 0, 2));
    source.succeed(TileId(3, 0, 0));
    ASSERT_TRUE(until([&] { return ready.size() == 1; }));

    loader.setWanted(row(3, 0, 2, 3));
    EXPECT_EQ(source.cancels, QVector<TileId>{TileId(3, 1, 0)});
    EXPECT_EQ(loader.stats().cancelled, 1);
    // A late answer for a cancelled tile is ignored.
    source.succeed(TileId(3, 1, 0));
    source.succeed(TileId(3, 3, 0));
    ASSERT_TRUE(until([&] { return ready.size() == 2; }));
    EXPECT_FALSE(loader.contains(TileId(3, 1, 0)));

    loader.setWanted(row(3, 0, 0, 0));
    EXPECT_EQ(loader.stats().memoryHits, 1);
    EXPECT_EQ(loader.stats().requested, 5);
    EXPECT_EQ(loader.stats().sourceLoads, 2);
}

TEST(TileLoaderTest, FailedTileIsNotAskedForAgainUntilItsPauseIsOver)
{
    ManualClock clock;
    ScopedConfigOverride pause("maps/tile_failure_retry_ms", 5000);
    ScriptedSource source;
    TileLoader loader(&source);
    QStringList errors;
    QObject::connect(&loader, &TileLoader::tileFailed, [&](TileLoader*, TileId, QString e) { errors << e; });
    loader.setWanted({TileId(2, 1, 1)});
    source.failWith(TileId(2, 1, 1), "gone");
    EXPECT_EQ(errors, QStringList{"gone"});
    loader.setWanted({});
    loader.setWanted({TileId(2, 1, 1)});
    EXPECT_EQ(source.requests.size(), 1);
    clock.advanceMs(5000);
    loader.setWanted({});
    loader.setWanted({TileId(2, 1, 1)});
    EXPECT_EQ(source.requests.size(), 2);
}

TEST(TileLoaderTest, MemoryKeepsWantedTilesAndDropsTheLeastRecentlyUsedOthers)
{
    ScriptedSource source;
    TileLoader loader(&source);
    const qint64 tileBytes = 8 * 8 * 4;
    loader.setMemoryLimit(3 * tileBytes);
    loader.setWanted(row(5, 0, 0, 3));
    for (const TileId& t : row(5, 0, 0, 3))
        source.succeed(t);
    ASSERT_TRUE(until([&] { return loader.isIdle(); }));
    // All four are wanted: none may go, even past the limit.
    EXPECT_EQ(loader.memoryCount(), 4);
    loader.tile(TileId(5, 0, 0));
    loader.setWanted({TileId(5, 3, 0)});
    EXPECT_EQ(loader.memoryCount(), 4);
    loader.setWanted({TileId(5, 3, 0), TileId(5, 9, 0)});
    source.succeed(TileId(5, 9, 0));
    ASSERT_TRUE(until([&] { return loader.contains(TileId(5, 9, 0)); }));
    // 1 and 2 were used longest ago.
    EXPECT_EQ(loader.memoryCount(), 3);
    EXPECT_TRUE(loader.contains(TileId(5, 0, 0)));
    EXPECT_FALSE(loader.contains(TileId(5, 1, 0)) || loader.contains(TileId(5, 2, 0)));
}

TEST(GeneratedTileTest, SameTileComesOutTheSameAndNeighboursJoin)
{
    const GeneratedTilePainter painter;
    const TileId tile(16, 56293, 25403);
    const QImage first = painter.paint(tile);
    EXPECT_EQ(first, painter.paint(tile));
    EXPECT_NE(first, painter.paint(TileId(16, 56294, 25403)));
    // Across the seam the picture goes on: the edge columns of two neighbours are
    // as alike as two adjacent columns inside one tile.
    auto columnDifference = [](const QImage& a, int ax, const QImage& b, int bx) {
        qint64 sum = 0;
        for (int y = 0; y < a.height(); ++y) {
            const QRgb p = a.pixel(ax, y), q = b.pixel(bx, y);
            sum += qAbs(qRed(p) - qRed(q)) + qAbs(qGreen(p) - qGreen(q)) + qAbs(qBlue(p) - qBlue(q));
        }
        return sum;
    };
    for (int zoom : {9, 13, 16}) {
        const TileId left(zoom, 3 << (zoom - 3), 3 << (zoom - 4)), right(zoom, left.x + 1, left.y);
        const QImage l = painter.paint(left), r = painter.paint(right);
        const qint64 seam = columnDifference(l, 255, r, 0);
        const qint64 inside = columnDifference(l, 254, l, 255) + columnDifference(r, 0, r, 1);
        EXPECT_LE(seam, inside + 256 * 12) << zoom;
    }
}

TEST(GeneratedTileTest, MapsShowLandWaterParksAndStreetsWithNamesOnlyClose)
{
    const GeneratedTilePainter painter;
    auto share = [](const QImage& image, QRgb colour) {
        int n = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb p = image.pixel(x, y);
                n += qAbs(qRed(p) - qRed(colour)) + qAbs(qGreen(p) - qGreen(colour)) +
                         qAbs(qBlue(p) - qBlue(colour)) <=
                     6;
            }
        }
        return double(n) / (image.width() * image.height());
    };
    const QRgb land = qRgb(242, 239, 233), water = qRgb(170, 211, 223), park = qRgb(205, 235, 176);
    double landShare = 0, waterShare = 0, parkShare = 0;
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            const QImage image = painter.paint(TileId(11, 100 + x * 450, 500 + y * 300));
            landShare += share(image, land) / 16;
            waterShare += share(image, water) / 16;
            parkShare += share(image, park) / 16;
        }
    }
    EXPECT_GT(landShare, 0.3) << waterShare << " " << parkShare;
    EXPECT_GT(waterShare, 0.05);
    EXPECT_GT(parkShare, 0.005);

    // Street names: dark label pixels appear from zoom 16 on, nowhere before.
    auto darkShare = [](const QImage& image) {
        int n = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                n += qGray(image.pixel(x, y)) < 110;
        return n;
    };
    EXPECT_EQ(darkShare(painter.paint(TileId(15, 5241, 12663))), 0);
    EXPECT_GT(darkShare(painter.paint(TileId(17, 20966, 50656))), 100);
}

TEST(GeneratedTileTest, NightMapDrawsTheSameMapInItsOwnColours)
{
    const GeneratedTilePainter day, night(GeneratedTilePainter::NightMap);
    const GeneratedTilePainter::Palette& dayColours =
        GeneratedTilePainter::palette(GeneratedTilePainter::Map);
    const GeneratedTilePainter::Palette& nightColours =
        GeneratedTilePainter::palette(GeneratedTilePainter::NightMap);
    // Close enough for streets, parks and names.
    const TileId tile(17, 20966, 50656);
    const QImage d = day.paint(tile), n = night.paint(tile);
    int land = 0, landAtNight = 0;
    qint64 dayGray = 0, nightGray = 0;
    for (int y = 0; y < d.height(); ++y) {
        for (int x = 0; x < d.width(); ++x) {
            dayGray += qGray(d.pixel(x, y));
            nightGray += qGray(n.pixel(x, y));
            if (d.pixel(x, y) != dayColours.land.rgb())
                continue;
            ++land;
            landAtNight += n.pixel(x, y) == nightColours.land.rgb();
        }
    }
    EXPECT_GT(land, d.width() * d.height() / 5);
    // Edge pixels that a road barely touches round to the day's land, not the night's.
    EXPECT_GT(landAtNight, land * 0.99);
    EXPECT_LT(nightGray * 3, dayGray);

    // Each style keeps its tiles apart in a cache, and shows its land where none came.
    const GeneratedTileSource dayTiles, nightTiles(GeneratedTilePainter::NightMap),
        pattern(GeneratedTilePainter::TestPattern);
    EXPECT_EQ(dayTiles.name(), QStringLiteral("generated"));
    EXPECT_EQ(nightTiles.name(), QStringLiteral("generated-night"));
    EXPECT_EQ(pattern.name(), QStringLiteral("generated-test"));
    EXPECT_EQ(dayTiles.background(), dayColours.land);
    EXPECT_EQ(nightTiles.background(), nightColours.land);
}

TEST(GeneratedTileTest, TestPatternIsOneColourInsideABorder)
{
    const GeneratedTilePainter painter(GeneratedTilePainter::TestPattern, 64);
    const TileId tile(5, 7, 9);
    const QImage image = painter.paint(tile);
    EXPECT_EQ(image.pixel(0, 0), GeneratedTilePainter::testPatternBorderColor().rgb());
    EXPECT_EQ(image.pixel(63, 3), GeneratedTilePainter::testPatternBorderColor().rgb());
    EXPECT_EQ(image.pixel(5, 5), GeneratedTilePainter::testPatternColor(tile).rgb());
    EXPECT_NE(GeneratedTilePainter::testPatternColor(tile),
              GeneratedTilePainter::testPatternColor(TileId(5, 8, 9)));
}

TEST(GeneratedTileTest, SourceDeliversPngsAndSkipsCancelledTiles)
{
    GeneratedTileSource source(GeneratedTilePainter::TestPattern);
    QHash<TileId, QByteArray> loaded;
    QObject::connect(&source, &TileSource::tileLoaded,
                     [&](TileSource*, TileId t, QByteArray d) { loaded[t] = d; });
    source.request(TileId(3, 1, 1));
    source.request(TileId(3, 2, 1));
    source.cancel(TileId(3, 2, 1));
    ASSERT_TRUE(until([&] { return loaded.contains(TileId(3, 1, 1)); }));
    source.waitForDone();
    TestTileServer::processUntil([] { return false; }, 5);
    EXPECT_FALSE(loaded.contains(TileId(3, 2, 1)));
    const QImage decoded = QImage::fromData(loaded.value(TileId(3, 1, 1)), "PNG");
    EXPECT_EQ(decoded.pixel(128, 20), GeneratedTilePainter::testPatternColor(TileId(3, 1, 1)).rgb());
}
