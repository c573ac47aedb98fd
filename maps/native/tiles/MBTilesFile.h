#pragma once

#include "TileId.h"

#include <QByteArray>
#include <QMap>
#include <QSqlDatabase>
#include <QString>

namespace NativeMaps {

// A tile set in one SQLite file: a `tiles` table keyed by zoom level, column and
// bottom-up row, and a `metadata` table of name/value pairs. Callers speak in
// TileId rows (top-down); the flip happens here. One connection, used only on the
// thread that opened it.
class MBTilesFile
{
public:
    enum OpenMode
    {
        ReadOnly,
        // Creates the file and its tables when they are missing.
        ReadWrite
    };

    MBTilesFile();
    ~MBTilesFile();
    MBTilesFile(const MBTilesFile&) = delete;
    MBTilesFile& operator=(const MBTilesFile&) = delete;

    // False with lastError() set when the file cannot be opened or is not a tile set.
    bool open(const QString& path, OpenMode mode);
    void close();
    bool isOpen() const;
    const QString& path() const { return mPath; }
    const QString& lastError() const { return mLastError; }
    QSqlDatabase database() const;

    // Null when the tile is not in the set (or on a read error, with lastError()).
    QByteArray readTile(const TileId& tile);
    bool writeTile(const TileId& tile, const QByteArray& data);
    bool removeTile(const TileId& tile);
    int tileCount();

    QString metadata(const QString& name);
    QMap<QString, QString> allMetadata();
    bool setMetadata(const QString& name, const QString& value);

    // Runs statements that return no rows; false at the first failure.
    bool exec(const QStringList& statements);
    bool transaction();
    bool commit();
    void rollback();

private:
    bool fail(const QString& what, const QString& error);

    QString mConnection;
    QString mPath;
    QString mLastError;
};

} // namespace NativeMaps
