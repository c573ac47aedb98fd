#include "TileCache.h"

#include <QDir>
#include <QStandardPaths>

namespace NativeMaps {

ConfigStringValue TileCachePath("maps/cache_path");
ConfigIntValue TileCacheSizeMb("maps/cache_size_mb", 256);

namespace {
constexpr qint64 kMegabyte = 1048576;
} // namespace

TileCache::TileCache(const QString& path, qint64 maxBytes, QObject* parent)
    : QObject(parent), mPath(path.isEmpty() ? defaultPath() : path), mThread(QStringLiteral("TileCache"))
{
    const qint64 limit = maxBytes >= 0 ? maxBytes : qint64(qMax(0, TileCacheSizeMb.value())) * kMegabyte;
    mThread.post([this, limit] { mDatabase.open(mPath, limit); });
    mThread.setFinish([this] { mDatabase.close(); });
}

TileCache::~TileCache() = default;

QString TileCache::defaultPath()
{
    const QString configured = TileCachePath.value();
    if (!configured.isEmpty())
        return configured;
    return QDir(QStandardPaths::writableLocation(QStandardPaths::CacheLocation))
        .filePath(QStringLiteral("tiles.mbtiles"));
}

bool TileCache::isOpen()
{
    bool open = false;
    mThread.call([&] { open = mDatabase.isOpen(); });
    return open;
}

void TileCache::lookup(const TileId& tile)
{
    mThread.post([this, tile] {
        const QByteArray data = mDatabase.read(tile);
        QMetaObject::invokeMethod(
            this, [this, tile, data] { emit lookedUp(this, tile, data); }, Qt::QueuedConnection);
    });
}

void TileCache::store(const TileId& tile, const QByteArray& data)
{
    mThread.post([this, tile, data] { mDatabase.write(tile, data); });
}

QByteArray TileCache::tile(const TileId& tile)
{
    QByteArray data;
    mThread.call([&] { data = mDatabase.read(tile); });
    return data;
}

bool TileCache::contains(const TileId& tile)
{
    bool found = false;
    mThread.call([&] { found = mDatabase.contains(tile); });
    return found;
}

int TileCache::tileCount()
{
    int count = 0;
    mThread.call([&] { count = mDatabase.tileCount(); });
    return count;
}

qint64 TileCache::totalBytes()
{
    qint64 bytes = 0;
    mThread.call([&] { bytes = mDatabase.totalBytes(); });
    return bytes;
}

void TileCache::setMaxBytes(qint64 maxBytes)
{
    mThread.post([this, maxBytes] { mDatabase.setMaxBytes(maxBytes); });
}

void TileCache::flush()
{
    mThread.call([] {});
}

} // namespace NativeMaps
