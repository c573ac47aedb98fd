#include "TileCacheDatabase.h"

#include <Logger.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace NativeMaps {

namespace {
const char* const kLogSource = "maps/native/tiles/TileCacheDatabase";

// Use is counted, not timed: the order of uses is all eviction needs, and it must
// survive restarts and clock changes.
const QStringList kAccessSchema = {
    QStringLiteral("CREATE TABLE IF NOT EXISTS tile_access (zoom_level INTEGER, tile_column INTEGER, "
                   "tile_row INTEGER, last_access INTEGER, size INTEGER, "
                   "PRIMARY KEY (zoom_level, tile_column, tile_row)) WITHOUT ROWID"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS tile_access_order ON tile_access (last_access)"),
};

const QString kKey = QStringLiteral("zoom_level = ? AND tile_column = ? AND tile_row = ?");

QVariantList keyOf(const TileId& tile)
{
    return {tile.zoom, tile.x, tile.tmsRow()};
}
} // namespace

bool TileCacheDatabase::open(const QString& path, qint64 maxBytes)
{
    close();
    mMaxBytes = maxBytes;
    if (!ORBIS_ASSERT(!path.isEmpty(), QStringLiteral("The tile cache needs a file name")))
        return false;
    QDir().mkpath(QFileInfo(path).absolutePath());
    QString reason;
    if (!openFile(path, &reason)) {
        if (!QFileInfo::exists(path) || !moveAside(path, reason) || !openFile(path, &reason)) {
            Logger::error(QStringLiteral("Cannot create the tile cache %1: %2").arg(path, reason));
            return false;
        }
    }
    evict();
    return true;
}

void TileCacheDatabase::close()
{
    mFile.close();
    mOpen = false;
    mTotalBytes = 0;
    mLastAccess = 0;
}

bool TileCacheDatabase::openFile(const QString& path, QString* reason)
{
    mOpen = false;
    if (!mFile.open(path, MBTilesFile::ReadWrite)) {
        *reason = mFile.lastError();
        return false;
    }
    QString failure;
    {
        // synchronous=NORMAL in WAL mode loses no committed transaction when the
        // process dies, only (at worst) the last ones on a power cut.
        QSqlQuery q(mFile.database());
        if (!q.exec(QStringLiteral("PRAGMA journal_mode = WAL")) || !q.next())
            failure = q.lastError().text();
        else if (q.value(0).toString().compare(QLatin1String("wal"), Qt::CaseInsensitive) != 0)
            failure = QStringLiteral("journal mode %1").arg(q.value(0).toString());
        else if (!q.exec(QStringLiteral("PRAGMA synchronous = NORMAL")) ||
                 !q.exec(QStringLiteral("PRAGMA busy_timeout = 5000")))
            failure = q.lastError().text();
        else if (!q.exec(QStringLiteral("PRAGMA quick_check")) || !q.next())
            failure = q.lastError().text();
        else if (q.value(0).toString() != QLatin1String("ok"))
            failure = q.value(0).toString();
        if (failure.isEmpty() && !mFile.exec(kAccessSchema))
            failure = mFile.lastError();
        if (failure.isEmpty()) {
            if (q.exec(QStringLiteral(
                    "SELECT COALESCE(SUM(size), 0), COALESCE(MAX(last_access), 0) FROM tile_access")) &&
                q.next()) {
                mTotalBytes = q.value(0).toLongLong();
                mLastAccess = q.value(1).toLongLong();
            } else {
                failure = q.lastError().text();
            }
        }
    }
    if (!failure.isEmpty()) {
        mFile.close();
        *reason = failure;
        return false;
    }
    if (mFile.metadata(QStringLiteral("name")).isEmpty()) {
        mFile.setMetadata(QStringLiteral("name"), QStringLiteral("tile cache"));
        mFile.setMetadata(QStringLiteral("type"), QStringLiteral("baselayer"));
    }
    mOpen = true;
    return true;
}

bool TileCacheDatabase::moveAside(const QString& path, const QString& reason)
{
    const QString aside = path + QStringLiteral(".corrupt");
    QFile::remove(aside);
    const bool moved = QFile::rename(path, aside);
    // The journal files belong to the broken database, not to the new one.
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    if (!moved) {
        Logger::error(
            QStringLiteral("The tile cache %1 is damaged (%2) and cannot be moved aside").arg(path, reason));
        return false;
    }
    Logger::error(QStringLiteral("The tile cache %1 is damaged (%2): moved to %3, starting an empty cache")
                      .arg(path, reason, aside));
    return true;
}

bool TileCacheDatabase::exec(const QString& statement, const QVariantList& values)
{
    QSqlQuery q(mFile.database());
    q.prepare(statement);
    for (const QVariant& v : values)
        q.addBindValue(v);
    if (q.exec())
        return true;
    Logger::warn(QStringLiteral("Tile cache %1: %2").arg(mFile.path(), q.lastError().text()));
    return false;
}

QByteArray TileCacheDatabase::read(const TileId& tile)
{
    if (!mOpen)
        return QByteArray();
    const QByteArray data = mFile.readTile(tile);
    if (!data.isNull())
        exec(QStringLiteral("UPDATE tile_access SET last_access = ? WHERE ") + kKey,
             QVariantList{++mLastAccess} + keyOf(tile));
    return data;
}

bool TileCacheDatabase::contains(const TileId& tile)
{
    if (!mOpen)
        return false;
    QSqlQuery q(mFile.database());
    q.prepare(QStringLiteral("SELECT 1 FROM tiles WHERE ") + kKey);
    for (const QVariant& v : keyOf(tile))
        q.addBindValue(v);
    return q.exec() && q.next();
}

bool TileCacheDatabase::write(const TileId& tile, const QByteArray& data)
{
    if (!mOpen || !ORBIS_ASSERT(tile.isValid(), QStringLiteral("Cannot cache tile %1").arg(tile.toString())))
        return false;
    qint64 previous = 0;
    {
        QSqlQuery q(mFile.database());
        q.prepare(QStringLiteral("SELECT size FROM tile_access WHERE ") + kKey);
        for (const QVariant& v : keyOf(tile))
            q.addBindValue(v);
        if (q.exec() && q.next())
            previous = q.value(0).toLongLong();
    }
    if (!mFile.transaction())
        return false;
    if (!mFile.writeTile(tile, data) ||
        !exec(QStringLiteral("INSERT OR REPLACE INTO tile_access (zoom_level, tile_column, tile_row, "
                             "last_access, size) VALUES (?, ?, ?, ?, ?)"),
              keyOf(tile) + QVariantList{mLastAccess + 1, data.size()}) ||
        !mFile.commit()) {
        mFile.rollback();
        return false;
    }
    ++mLastAccess;
    mTotalBytes += data.size() - previous;
    evict();
    return true;
}

void TileCacheDatabase::setMaxBytes(qint64 maxBytes)
{
    mMaxBytes = maxBytes;
    evict();
}

void TileCacheDatabase::evict()
{
    if (!mOpen || mMaxBytes <= 0 || mTotalBytes <= mMaxBytes)
        return;
    struct Victim
    {
        QVariantList key;
        qint64 size;
    };
    QVector<Victim> victims;
    qint64 remaining = mTotalBytes;
    {
        QSqlQuery q(mFile.database());
        q.setForwardOnly(true);
        if (!q.exec(QStringLiteral("SELECT zoom_level, tile_column, tile_row, size FROM tile_access "
                                   "ORDER BY last_access ASC")))
            return;
        while (remaining > mMaxBytes && q.next()) {
            victims.append({{q.value(0), q.value(1), q.value(2)}, q.value(3).toLongLong()});
            remaining -= victims.last().size;
        }
    }
    if (!mFile.transaction())
        return;
    for (const Victim& v : victims) {
        if (!exec(QStringLiteral("DELETE FROM tiles WHERE ") + kKey, v.key) ||
            !exec(QStringLiteral("DELETE FROM tile_access WHERE ") + kKey, v.key)) {
            mFile.rollback();
            return;
        }
    }
    if (!mFile.commit()) {
        mFile.rollback();
        return;
    }
    mTotalBytes = remaining;
}

} // namespace NativeMaps
