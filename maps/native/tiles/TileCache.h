#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DatabaseThread.h"
#include "TileCacheDatabase.h"

#include <ConfigValue.h>
#include <QObject>

namespace NativeMaps {

extern ORBIS_UI_EXPORT ConfigStringValue TileCachePath;
extern ORBIS_UI_EXPORT ConfigIntValue TileCacheSizeMb;

/// The persistent tile cache, worked on a thread of its own so that disk access
/// never stalls a frame. Lookups answer through lookedUp on the owner's thread;
/// stores are fire-and-forget and keep their order.
class ORBIS_UI_EXPORT TileCache : public QObject
{
    Q_OBJECT

public:
    /// An empty path takes "maps/cache_path" (or, when that is empty too, a file in
    /// the user's cache folder); a negative size takes "maps/cache_size_mb".
    explicit TileCache(const QString& path = QString(), qint64 maxBytes = -1, QObject* parent = nullptr);
    ~TileCache() override;

    static QString defaultPath();

    const QString& path() const { return mPath; }
    bool isOpen();

    void lookup(const TileId& tile);
    void store(const TileId& tile, const QByteArray& data);

    /// Waiting forms, for tools and tests.
    QByteArray tile(const TileId& tile);
    bool contains(const TileId& tile);
    int tileCount();
    qint64 totalBytes();
    void setMaxBytes(qint64 maxBytes);
    /// Returns once everything stored so far is in the file.
    void flush();

signals:
    /// `data` is null when the tile is not cached.
    void lookedUp(NativeMaps::TileCache* cache, NativeMaps::TileId tile, QByteArray data);

private:
    QString mPath;
    TileCacheDatabase mDatabase; // used on mThread only
    DatabaseThread mThread;
};

} // namespace NativeMaps
