#include "LogCapture.h"
#include "native/tiles/MBTilesFile.h"
#include "native/tiles/MBTilesTileSource.h"
#include "native/tiles/TileCacheDatabase.h"
#include "support/TestTileServer.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace NativeMaps;

namespace {

// A tile set written with plain SQL, so that the reader is checked against the
// file format rather than against its own writer.
void writeTileSet(const QString& path, const QList<QPair<QVector<int>, QByteArray>>& rows,
                  const QMap<QString, QString>& metadata)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "fixture");
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open());
        QSqlQuery q(db);
        ASSERT_TRUE(q.exec("CREATE TABLE metadata (name text, value text)"));
        ASSERT_TRUE(q.exec("CREATE TABLE tiles (zoom_level integer, tile_column integer, tile_row integer, "
                           "tile_data blob)"));
        for (const auto& row : rows) {
            q.prepare("INSERT INTO tiles VALUES (?, ?, ?, ?)");
            for (int v : row.first)
                q.addBindValue(v);
            q.addBindValue(row.second);
            ASSERT_TRUE(q.exec());
        }
        for (auto it = metadata.begin(); it != metadata.end(); ++it) {
            q.prepare("INSERT INTO metadata VALUES (?, ?)");
            q.addBindValue(it.key());
            q.addBindValue(it.value());
            ASSERT_TRUE(q.exec());
        }
    }
    QSqlDatabase::removeDatabase("fixture");
}

QByteArray bytes(int size, char fill)
{
    return QByteArray(size, fill);
}

} // namespace

TEST(MBTilesTest, RowsAreStoredBottomUpAndMetadataIsRead)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("set.mbtiles");
    // Zoom 3 has rows 0..7: the top row (y 0) is stored as row 7.
    writeTileSet(path, {{{3, 2, 7}, "top"}, {{3, 2, 0}, "bottom"}, {{0, 0, 0}, "world"}},
                 {{"name", "fixture"}, {"format", "png"}, {"minzoom", "0"}, {"maxzoom", "3"}});
    MBTilesTileSource source(path);
    ASSERT_TRUE(source.isValid());
    EXPECT_EQ(source.metadata().value("name"), "fixture");
    EXPECT_EQ(source.minZoom(), 0);
    EXPECT_EQ(source.maxZoom(), 3);
    EXPECT_FALSE(source.cachesTiles());

    QHash<TileId, QByteArray> loaded;
    QHash<TileId, QString> failed;
    QObject::connect(&source, &TileSource::tileLoaded,
                     [&](TileSource*, TileId t, QByteArray d) { loaded[t] = d; });
    QObject::connect(&source, &TileSource::tileFailed,
                     [&](TileSource*, TileId t, QString e) { failed[t] = e; });
    source.request(TileId(3, 2, 0));
    source.request(TileId(3, 2, 7));
    source.request(TileId(0, 0, 0));
    source.request(TileId(3, 3, 3));
    source.request(TileId(3, 2, 1));
    source.cancel(TileId(3, 2, 1));
    ASSERT_TRUE(TestTileServer::processUntil([&] { return loaded.size() + failed.size() == 4; }));
    EXPECT_EQ(loaded.value(TileId(3, 2, 0)), "top");
    EXPECT_EQ(loaded.value(TileId(3, 2, 7)), "bottom");
    EXPECT_EQ(loaded.value(TileId(0, 0, 0)), "world");
    EXPECT_EQ(failed.value(TileId(3, 3, 3)), "3/3/3: Not in the tile set");
    EXPECT_FALSE(loaded.contains(TileId(3, 2, 1)) || failed.contains(TileId(3, 2, 1)));

    // The writer flips the same way.
    MBTilesFile file;
    ASSERT_TRUE(file.open(dir.filePath("written.mbtiles"), MBTilesFile::ReadWrite));
    ASSERT_TRUE(file.writeTile(TileId(2, 1, 0), "x"));
    QSqlQuery q(file.database());
    ASSERT_TRUE(q.exec("SELECT tile_row FROM tiles WHERE zoom_level = 2 AND tile_column = 1") && q.next());
    EXPECT_EQ(q.value(0).toInt(), 3);
}

TEST(MBTilesTest, FileThatIsNoTileSetIsReportedAndAnswersWithFailures)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("notes.mbtiles");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("these are not tiles");
    file.close();
    LogCapture log;
    MBTilesTileSource source(path);
    EXPECT_FALSE(source.isValid());
    ASSERT_EQ(log.records().size(), 1);
    EXPECT_EQ(log.records()[0].level, LogRecord::Error);
    EXPECT_TRUE(log.records()[0].message.startsWith(
        QStringLiteral("Cannot read tiles: %1 is not a tile set").arg(path)));

    QString error;
    QObject::connect(&source, &TileSource::tileFailed, [&](TileSource*, TileId, QString e) { error = e; });
    source.request(TileId(1, 1, 1));
    ASSERT_TRUE(TestTileServer::processUntil([&] { return !error.isEmpty(); }));
    EXPECT_EQ(error, QStringLiteral("1/1/1: No tile set at %1").arg(path));
}

TEST(MBTilesTest, CacheEvictsLeastRecentlyUsedTilesPastTheLimitAcrossRestarts)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("cache.mbtiles");
    const TileId a(4, 1, 1), b(4, 2, 1), c(4, 3, 1), d(4, 4, 1), e(4, 5, 1);
    {
        TileCacheDatabase cache;
        ASSERT_TRUE(cache.open(path, 3000));
        ASSERT_TRUE(cache.write(a, bytes(1000, 'a')));
        ASSERT_TRUE(cache.write(b, bytes(1000, 'b')));
        ASSERT_TRUE(cache.write(c, bytes(1000, 'c')));
        EXPECT_EQ(cache.totalBytes(), 3000);
        EXPECT_EQ(cache.read(a), bytes(1000, 'a')); // a is now the most recent
        ASSERT_TRUE(cache.write(d, bytes(1000, 'd')));
        EXPECT_FALSE(cache.contains(b));
        EXPECT_TRUE(cache.contains(a) && cache.contains(c) && cache.contains(d));
        EXPECT_EQ(cache.totalBytes(), 3000);
        // Replacing a tile counts its new size only.
        ASSERT_TRUE(cache.write(d, bytes(500, 'D')));
        EXPECT_EQ(cache.totalBytes(), 2500);
    }
    TileCacheDatabase cache;
    ASSERT_TRUE(cache.open(path, 3000));
    EXPECT_EQ(cache.totalBytes(), 2500);
    EXPECT_EQ(cache.tileCount(), 3);
    ASSERT_TRUE(cache.write(e, bytes(1000, 'e')));
    // c was used least recently before the restart.
    EXPECT_FALSE(cache.contains(c));
    EXPECT_TRUE(cache.contains(a) && cache.contains(d) && cache.contains(e));
    // A smaller limit evicts at once, oldest first.
    cache.setMaxBytes(1000);
    EXPECT_EQ(cache.tileCount(), 1);
    EXPECT_TRUE(cache.contains(e));
    // Still a tile set any reader understands.
    MBTilesTileSource reader(path);
    EXPECT_TRUE(reader.isValid());
    EXPECT_EQ(reader.metadata().value("name"), "tile cache");
}

TEST(MBTilesTest, CorruptCacheIsReportedOnceMovedAsideAndRecreated)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("cache.mbtiles");
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        // An SQLite header followed by garbage.
        file.write(QByteArray("SQLite format 3") + '\0' + QByteArray(8192, '\x5a'));
    }
    LogCapture log;
    {
        TileCacheDatabase cache;
        ASSERT_TRUE(cache.open(path, 1 << 20));
        ASSERT_EQ(log.records().size(), 1);
        const LogRecord report = log.records()[0];
        EXPECT_EQ(report.level, LogRecord::Error);
        EXPECT_TRUE(report.message.startsWith(QStringLiteral("The tile cache %1 is damaged (").arg(path)));
        EXPECT_TRUE(report.message.endsWith(
            QStringLiteral("): moved to %1.corrupt, starting an empty cache").arg(path)))
            << report.message.toStdString();
        EXPECT_TRUE(QFile::exists(path + ".corrupt"));
        EXPECT_EQ(cache.tileCount(), 0);
        ASSERT_TRUE(cache.write(TileId(1, 0, 0), "fresh"));
    }
    TileCacheDatabase reopened;
    ASSERT_TRUE(reopened.open(path, 1 << 20));
    EXPECT_EQ(reopened.read(TileId(1, 0, 0)), "fresh");
    EXPECT_EQ(log.records().size(), 1);
}

TEST(MBTilesTest, WriterKilledMidWriteLeavesAReadableCache)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("cache.mbtiles");
    int pipeFds[2];
    ASSERT_EQ(pipe(pipeFds), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // The writer: tile after tile, reporting each commit, until it is killed.
        close(pipeFds[0]);
        TileCacheDatabase cache;
        if (!cache.open(path, 0))
            _exit(2);
        for (int i = 0;; ++i) {
            if (!cache.write(TileId(12, i % 4096, i / 4096), bytes(3000 + i % 1000, char('a' + i % 26))))
                _exit(3);
            if (write(pipeFds[1], &i, sizeof i) != sizeof i)
                _exit(4);
        }
    }
    close(pipeFds[1]);
    int committed = -1;
    for (int reads = 0; reads < 100000 && committed < 200; ++reads) {
        int value;
        if (read(pipeFds[0], &value, sizeof value) != sizeof value)
            break;
        committed = value;
    }
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    close(pipeFds[0]);
    ASSERT_TRUE(WIFSIGNALED(status)) << "writer ended on its own with " << WEXITSTATUS(status);
    ASSERT_GE(committed, 200);

    LogCapture log;
    TileCacheDatabase cache;
    ASSERT_TRUE(cache.open(path, 0));
    EXPECT_TRUE(log.records().isEmpty()) << log.messages().join('\n').toStdString();
    EXPECT_GE(cache.tileCount(), committed + 1);
    for (int i : {0, committed / 2, committed})
        EXPECT_EQ(cache.read(TileId(12, i % 4096, i / 4096)), bytes(3000 + i % 1000, char('a' + i % 26)))
            << i;
    QSqlQuery check(cache.file().database());
    ASSERT_TRUE(check.exec("PRAGMA integrity_check") && check.next());
    EXPECT_EQ(check.value(0).toString(), "ok");
}
