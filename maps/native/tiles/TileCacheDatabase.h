#pragma once

#include "OrbisUIFrameworkExport.h"

#include "MBTilesFile.h"

namespace NativeMaps {

/// The persistent tile cache: a tile set file (readable by any tile set reader)
/// plus a table of when each tile was last used and how big it is, so that the
/// least recently used tiles go first once the size limit is passed. Written in
/// WAL mode, one transaction per tile, so a process killed mid-write leaves a
/// readable file; a file that does not read back as a sound database is reported
/// once, moved aside and replaced by an empty cache. Used on one thread.
class ORBIS_UI_EXPORT TileCacheDatabase
{
public:
    TileCacheDatabase() = default;
    ~TileCacheDatabase() { close(); }

    /// False when no cache could be created at `path` (the cache then stays empty).
    bool open(const QString& path, qint64 maxBytes);
    void close();
    bool isOpen() const { return mOpen; }

    /// Null when absent; a hit counts as a use.
    QByteArray read(const TileId& tile);
    bool contains(const TileId& tile);
    bool write(const TileId& tile, const QByteArray& data);

    void setMaxBytes(qint64 maxBytes);
    qint64 maxBytes() const { return mMaxBytes; }
    /// Bytes of tile data held (the file itself is somewhat larger).
    qint64 totalBytes() const { return mTotalBytes; }
    int tileCount() { return mOpen ? mFile.tileCount() : 0; }
    MBTilesFile& file() { return mFile; }

private:
    /// False with the reason when the file is missing its tables or unsound.
    bool openFile(const QString& path, QString* reason);
    bool moveAside(const QString& path, const QString& reason);
    void evict();
    bool exec(const QString& statement, const QVariantList& values);

    MBTilesFile mFile;
    bool mOpen = false;
    qint64 mMaxBytes = 0;
    qint64 mTotalBytes = 0;
    qint64 mLastAccess = 0;
};

} // namespace NativeMaps
