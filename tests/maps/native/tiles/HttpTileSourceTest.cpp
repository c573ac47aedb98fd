#include "native/tiles/HttpTileSource.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"
#include "native/tiles/TileCache.h"
#include "native/tiles/TileLoader.h"
#include "support/TestTileServer.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace NativeMaps;

namespace {

// Answers of one source, in arrival order.
struct Answers
{
    explicit Answers(TileSource* source)
    {
        QObject::connect(source, &TileSource::tileLoaded, [this](TileSource*, TileId tile, QByteArray data) {
            loaded.append({tile, data});
        });
        QObject::connect(source, &TileSource::tileFailed, [this](TileSource*, TileId tile, QString error) {
            failed.append({tile, error});
        });
    }
    int count() const { return loaded.size() + failed.size(); }
    QList<QPair<TileId, QByteArray>> loaded;
    QList<QPair<TileId, QString>> failed;
};

class HttpTileSourceTest : public ::testing::Test
{
protected:
    ManualClock clock;
    TestTileServer server;
    ScopedConfigOverride retryDelay{"maps/tile_retry_delay_ms", 400};

    bool until(const std::function<bool()>& done) { return TestTileServer::processUntil(done); }
    // Lets a few rounds of events through, for checking that something does not happen.
    void settle()
    {
        TestTileServer::processUntil([] { return false; }, 20);
    }
};

} // namespace

TEST_F(HttpTileSourceTest, TilesArriveAreWrittenToTheCacheAndComeFromItNextTime)
{
    ASSERT_TRUE(server.isListening());
    QTemporaryDir dir;
    auto* source = new HttpTileSource(server.urlTemplate());
    TileCache cache(dir.filePath("cache.mbtiles"), 1 << 20);
    {
        TileLoader loader(source, &cache);
        loader.setWanted({TileId(3, 4, 2), TileId(3, 5, 2), TileId(2, 0, 3)});
        ASSERT_TRUE(until([&] { return loader.isIdle(); }));
        // Not images: the loader reports them, but the bytes were cached all the same.
        // Started in this order, but on parallel connections that may overtake each other.
        QStringList paths = server.requestedPaths();
        paths.sort();
        EXPECT_EQ(paths, QStringList({"/2/0/3.png", "/3/4/2.png", "/3/5/2.png"}));
        for (const TestTileServer::Request& r : server.requests())
            EXPECT_EQ(r.userAgent, QByteArray("OrbisUIFramework/" ORBIS_FRAMEWORK_VERSION));
        cache.flush();
        EXPECT_EQ(cache.tile(TileId(3, 5, 2)), TestTileServer::defaultBody("/3/5/2.png"));
        EXPECT_EQ(loader.stats().sourceLoads, 3);
    }
    TileLoader again(source, &cache);
    again.setWanted({TileId(3, 4, 2)});
    ASSERT_TRUE(until([&] { return again.isIdle(); }));
    EXPECT_EQ(again.stats().cacheHits, 1);
    EXPECT_EQ(server.requests().size(), 3);
    delete source;
}

TEST_F(HttpTileSourceTest, UrlTemplateSpreadsTilesOverSubdomainsTheSameWayEveryTime)
{
    HttpTileSource source("https://{s}.tiles.test/{z}/{x}/{y}@2x.png");
    source.setSubdomains({"a", "b", "c"});
    EXPECT_EQ(source.urlFor(TileId(5, 10, 12)), "https://b.tiles.test/5/10/12@2x.png");
    EXPECT_EQ(source.urlFor(TileId(5, 10, 13)), "https://c.tiles.test/5/10/13@2x.png");
    EXPECT_EQ(source.urlFor(TileId(5, 10, 12)), source.urlFor(TileId(5, 10, 12)));
}

TEST_F(HttpTileSourceTest, ServerErrorIsRetriedAfterTheBackoffButNotBefore)
{
    server.plan("/1/0/1.png", 500);
    HttpTileSource source(server.urlTemplate());
    Answers answers(&source);
    source.request(TileId(1, 0, 1));
    ASSERT_TRUE(until([&] { return source.activeRequests() == 0; }));
    EXPECT_EQ(answers.count(), 0);

    clock.advanceMs(399);
    source.poll();
    EXPECT_EQ(source.activeRequests(), 0);
    clock.advanceMs(1);
    source.poll();
    EXPECT_EQ(source.activeRequests(), 1);
    ASSERT_TRUE(until([&] { return answers.count() == 1; }));
    ASSERT_EQ(answers.loaded.size(), 1);
    EXPECT_EQ(answers.loaded[0].second, TestTileServer::defaultBody("/1/0/1.png"));
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(HttpTileSourceTest, BackoffDoublesAndAttemptsRunOut)
{
    ScopedConfigOverride retries("maps/tile_retries", 2);
    for (int i = 0; i < 3; ++i)
        server.plan("/0/0/0.png", 503);
    HttpTileSource source(server.urlTemplate());
    Answers answers(&source);
    source.request(TileId(0, 0, 0));
    for (int expected : {1, 2}) {
        ASSERT_TRUE(
            until([&] { return server.requests().size() == expected && source.activeRequests() == 0; }));
        // 400 ms after the first failure, 800 after the second.
        clock.advanceMs(400 * expected - 1);
        source.poll();
        EXPECT_EQ(source.activeRequests(), 0);
        clock.advanceMs(1);
        source.poll();
    }
    ASSERT_TRUE(until([&] { return answers.count() == 1; }));
    ASSERT_EQ(answers.failed.size(), 1);
    EXPECT_EQ(answers.failed[0].second, server.urlTemplate().replace("{z}/{x}/{y}", "0/0/0") + ": HTTP 503");
    EXPECT_EQ(server.requests().size(), 3);
}

TEST_F(HttpTileSourceTest, MissingTileIsNotRetried)
{
    server.plan("/4/1/1.png", 404);
    HttpTileSource source(server.urlTemplate());
    Answers answers(&source);
    source.request(TileId(4, 1, 1));
    ASSERT_TRUE(until([&] { return answers.count() == 1; }));
    ASSERT_EQ(answers.failed.size(), 1);
    EXPECT_TRUE(answers.failed[0].second.endsWith("/4/1/1.png: HTTP 404"));
    clock.advanceMs(60000);
    source.poll();
    settle();
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(source.pendingRequests(), 0);
}

TEST_F(HttpTileSourceTest, SlowServerTimesOutAndIsRetriedThenGivenUp)
{
    ScopedConfigOverride timeout("maps/tile_timeout_ms", 2000);
    ScopedConfigOverride retries("maps/tile_retries", 1);
    server.holdAll(true);
    HttpTileSource source(server.urlTemplate());
    Answers answers(&source);
    source.request(TileId(2, 1, 2));
    ASSERT_TRUE(until([&] { return server.heldCount() == 1; }));
    clock.advanceMs(1999);
    source.poll();
    EXPECT_EQ(source.activeRequests(), 1);
    clock.advanceMs(1);
    source.poll();
    EXPECT_EQ(source.activeRequests(), 0);
    EXPECT_EQ(answers.count(), 0);

    clock.advanceMs(400);
    source.poll();
    ASSERT_TRUE(until([&] { return server.requests().size() == 2; }));
    clock.advanceMs(2000);
    source.poll();
    ASSERT_TRUE(until([&] { return answers.count() == 1; }));
    ASSERT_EQ(answers.failed.size(), 1);
    EXPECT_TRUE(answers.failed[0].second.endsWith("/2/1/2.png: Timed out"));
}

TEST_F(HttpTileSourceTest, ConcurrentRequestsStayWithinTheBoundAndStartInOrder)
{
    server.holdAll(true);
    HttpTileSource source(server.urlTemplate());
    source.setMaxRequests(2);
    Answers answers(&source);
    for (int x = 0; x < 6; ++x)
        source.request(TileId(3, x, 0));
    source.request(TileId(3, 1, 0)); // already on its way: merged
    ASSERT_TRUE(until([&] { return server.heldCount() == 2; }));
    settle();
    EXPECT_EQ(server.heldCount(), 2);
    EXPECT_EQ(source.activeRequests(), 2);

    for (int x = 0; x < 6; ++x) {
        ASSERT_TRUE(until([&] { return server.answer(QStringLiteral("/3/%1/0.png").arg(x)); })) << x;
        ASSERT_TRUE(until([&] { return answers.count() == x + 1; }));
        EXPECT_LE(server.heldCount(), 2);
    }
    // The first two went out together; each later one only when one before it ended.
    QStringList paths = server.requestedPaths();
    std::sort(paths.begin(), paths.begin() + 2);
    EXPECT_EQ(paths, QStringList({"/3/0/0.png", "/3/1/0.png", "/3/2/0.png", "/3/3/0.png", "/3/4/0.png",
                                  "/3/5/0.png"}));
}

TEST_F(HttpTileSourceTest, CancelledTilesAreNeitherAnsweredNorWritten)
{
    QTemporaryDir dir;
    server.holdAll(true);
    HttpTileSource source(server.urlTemplate());
    TileCache cache(dir.filePath("cache.mbtiles"), 1 << 20);
    TileLoader loader(&source, &cache);
    QSignalSpy failed(&loader, &TileLoader::tileFailed);
    loader.setWanted({TileId(5, 3, 3), TileId(5, 4, 3)});
    ASSERT_TRUE(until([&] { return server.heldCount() == 2; }));

    loader.setWanted({TileId(5, 4, 3)});
    EXPECT_EQ(loader.stats().cancelled, 1);
    EXPECT_FALSE(loader.isLoading(TileId(5, 3, 3)));
    server.answer("/5/3/3.png");
    ASSERT_TRUE(until([&] { return server.answer("/5/4/3.png"); }));
    ASSERT_TRUE(until([&] { return loader.isIdle(); }));
    cache.flush();
    EXPECT_FALSE(cache.contains(TileId(5, 3, 3)));
    EXPECT_TRUE(cache.contains(TileId(5, 4, 3)));
    // The kept tile is no image: reported as such, the cancelled one not at all.
    ASSERT_EQ(failed.size(), 1);
    EXPECT_EQ(failed[0][1].value<TileId>(), TileId(5, 4, 3));
}

TEST_F(HttpTileSourceTest, WithoutServerEveryRequestFailsAndOneWarningIsLogged)
{
    ScopedConfigOverride url("maps/tile_url", "");
    LogCapture log;
    HttpTileSource source;
    Answers answers(&source);
    source.request(TileId(1, 1, 1));
    source.request(TileId(1, 0, 1));
    ASSERT_TRUE(until([&] { return answers.count() == 2; }));
    EXPECT_EQ(answers.failed[0].second, "No tile server");
    EXPECT_EQ(log.count("No tile server configured (maps/tile_url)"), 1);

    source.request(TileId(2, 4, 0));
    EXPECT_EQ(log.assertions(), QStringList({"Invalid tile requested: 2/4/0"}));
}
