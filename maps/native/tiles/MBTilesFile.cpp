#include "MBTilesFile.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace NativeMaps {

namespace {
QAtomicInt gConnections;

const QStringList kSchema = {
    QStringLiteral("CREATE TABLE IF NOT EXISTS metadata (name TEXT, value TEXT)"),
    QStringLiteral("CREATE UNIQUE INDEX IF NOT EXISTS metadata_name ON metadata (name)"),
    QStringLiteral("CREATE TABLE IF NOT EXISTS tiles (zoom_level INTEGER, tile_column INTEGER, "
                   "tile_row INTEGER, tile_data BLOB)"),
    QStringLiteral(
        "CREATE UNIQUE INDEX IF NOT EXISTS tile_index ON tiles (zoom_level, tile_column, tile_row)"),
};
} // namespace

MBTilesFile::MBTilesFile() : mConnection(QStringLiteral("mbtiles-%1").arg(gConnections.fetchAndAddRelaxed(1)))
{}

MBTilesFile::~MBTilesFile()
{
    close();
}

bool MBTilesFile::fail(const QString& what, const QString& error)
{
    mLastError = error.isEmpty() ? what : QStringLiteral("%1: %2").arg(what, error);
    return false;
}

bool MBTilesFile::open(const QString& path, OpenMode mode)
{
    close();
    mPath = path;
    mLastError.clear();
    if (mode == ReadOnly && !QFileInfo(path).isFile())
        return fail(QStringLiteral("No tile set at %1").arg(path), QString());
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mConnection);
        db.setDatabaseName(path);
        if (mode == ReadOnly)
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (!db.open()) {
            const QString error = db.lastError().text();
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(mConnection);
            return fail(QStringLiteral("Cannot open %1").arg(path), error);
        }
    }
    if (mode == ReadWrite && !exec(kSchema)) {
        const QString error = mLastError;
        close();
        mLastError = error;
        return false;
    }
    // A file that is not SQLite, or SQLite without tiles, fails here.
    QSqlQuery probe(database());
    if (!probe.exec(QStringLiteral("SELECT 1 FROM tiles LIMIT 1")) ||
        !probe.exec(QStringLiteral("SELECT 1 FROM metadata LIMIT 1"))) {
        const QString error = probe.lastError().text();
        probe = QSqlQuery();
        close();
        return fail(QStringLiteral("%1 is not a tile set").arg(path), error);
    }
    return true;
}

void MBTilesFile::close()
{
    if (!QSqlDatabase::contains(mConnection))
        return;
    {
        QSqlDatabase db = QSqlDatabase::database(mConnection, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(mConnection);
}

bool MBTilesFile::isOpen() const
{
    return QSqlDatabase::contains(mConnection) && database().isOpen();
}

QSqlDatabase MBTilesFile::database() const
{
    return QSqlDatabase::database(mConnection, false);
}

QByteArray MBTilesFile::readTile(const TileId& tile)
{
    QSqlQuery q(database());
    q.prepare(QStringLiteral(
        "SELECT tile_data FROM tiles WHERE zoom_level = ? AND tile_column = ? AND tile_row = ?"));
    q.addBindValue(tile.zoom);
    q.addBindValue(tile.x);
    q.addBindValue(tile.tmsRow());
    if (!q.exec()) {
        fail(QStringLiteral("Cannot read tile %1").arg(tile.toString()), q.lastError().text());
        return QByteArray();
    }
    return q.next() ? q.value(0).toByteArray() : QByteArray();
}

bool MBTilesFile::writeTile(const TileId& tile, const QByteArray& data)
{
    QSqlQuery q(database());
    q.prepare(QStringLiteral("INSERT OR REPLACE INTO tiles (zoom_level, tile_column, tile_row, tile_data) "
                             "VALUES (?, ?, ?, ?)"));
    q.addBindValue(tile.zoom);
    q.addBindValue(tile.x);
    q.addBindValue(tile.tmsRow());
    q.addBindValue(data);
    if (!q.exec())
        return fail(QStringLiteral("Cannot write tile %1").arg(tile.toString()), q.lastError().text());
    return true;
}

bool MBTilesFile::removeTile(const TileId& tile)
{
    QSqlQuery q(database());
    q.prepare(QStringLiteral("DELETE FROM tiles WHERE zoom_level = ? AND tile_column = ? AND tile_row = ?"));
    q.addBindValue(tile.zoom);
    q.addBindValue(tile.x);
    q.addBindValue(tile.tmsRow());
    if (!q.exec())
        return fail(QStringLiteral("Cannot remove tile %1").arg(tile.toString()), q.lastError().text());
    return true;
}

int MBTilesFile::tileCount()
{
    QSqlQuery q(database());
    if (!q.exec(QStringLiteral("SELECT COUNT(*) FROM tiles")) || !q.next())
        return 0;
    return q.value(0).toInt();
}

QString MBTilesFile::metadata(const QString& name)
{
    QSqlQuery q(database());
    q.prepare(QStringLiteral("SELECT value FROM metadata WHERE name = ?"));
    q.addBindValue(name);
    if (!q.exec() || !q.next())
        return QString();
    return q.value(0).toString();
}

QMap<QString, QString> MBTilesFile::allMetadata()
{
    QMap<QString, QString> result;
    QSqlQuery q(database());
    if (!q.exec(QStringLiteral("SELECT name, value FROM metadata")))
        return result;
    while (q.next())
        result.insert(q.value(0).toString(), q.value(1).toString());
    return result;
}

bool MBTilesFile::setMetadata(const QString& name, const QString& value)
{
    QSqlQuery q(database());
    q.prepare(QStringLiteral("INSERT OR REPLACE INTO metadata (name, value) VALUES (?, ?)"));
    q.addBindValue(name);
    q.addBindValue(value);
    if (!q.exec())
        return fail(QStringLiteral("Cannot write metadata %1").arg(name), q.lastError().text());
    return true;
}

bool MBTilesFile::exec(const QStringList& statements)
{
    QSqlQuery q(database());
    for (const QString& statement : statements) {
        if (!q.exec(statement))
            return fail(statement, q.lastError().text());
    }
    return true;
}

bool MBTilesFile::transaction()
{
    QSqlDatabase db = database();
    return db.transaction() || fail(QStringLiteral("BEGIN"), db.lastError().text());
}

bool MBTilesFile::commit()
{
    QSqlDatabase db = database();
    return db.commit() || fail(QStringLiteral("COMMIT"), db.lastError().text());
}

void MBTilesFile::rollback()
{
    database().rollback();
}

} // namespace NativeMaps
