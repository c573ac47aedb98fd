#include "MBTilesTileSource.h"

#include <Logger.h>

namespace NativeMaps {

MBTilesTileSource::MBTilesTileSource(const QString& path, QObject* parent)
    : TileSource(parent), mPath(path), mThread(QStringLiteral("MBTilesTileSource"))
{
    QString error;
    // Metadata decides the zoom range before the first request, so open at once.
    mThread.call([&] {
        mValid = mFile.open(mPath, MBTilesFile::ReadOnly);
        if (mValid)
            mMetadata = mFile.allMetadata();
        else
            error = mFile.lastError();
    });
    mThread.setFinish([this] { mFile.close(); });
    if (!mValid) {
        Logger::error(QStringLiteral("Cannot read tiles: %1").arg(error));
        return;
    }
    bool ok = false;
    const int minZoom = mMetadata.value(QStringLiteral("minzoom")).toInt(&ok);
    if (ok)
        mMinZoom = qBound(0, minZoom, TileId::kMaxZoom);
    const int maxZoom = mMetadata.value(QStringLiteral("maxzoom")).toInt(&ok);
    if (ok)
        mMaxZoom = qBound(mMinZoom, maxZoom, TileId::kMaxZoom);
}

MBTilesTileSource::~MBTilesTileSource() = default;

void MBTilesTileSource::request(const TileId& tile)
{
    if (mPending.contains(tile))
        return;
    mPending.insert(tile);
    if (!mValid) {
        QMetaObject::invokeMethod(
            this,
            [this, tile] { deliver(tile, QByteArray(), QStringLiteral("No tile set at %1").arg(mPath)); },
            Qt::QueuedConnection);
        return;
    }
    mThread.post([this, tile] {
        const QByteArray data = mFile.readTile(tile);
        const QString error = data.isNull() ? QStringLiteral("Not in the tile set") : QString();
        QMetaObject::invokeMethod(
            this, [this, tile, data, error] { deliver(tile, data, error); }, Qt::QueuedConnection);
    });
}

void MBTilesTileSource::cancel(const TileId& tile)
{
    mPending.remove(tile);
}

void MBTilesTileSource::deliver(const TileId& tile, const QByteArray& data, const QString& error)
{
    if (!mPending.remove(tile))
        return;
    if (error.isEmpty())
        emit tileLoaded(this, tile, data);
    else
        emit tileFailed(this, tile, QStringLiteral("%1: %2").arg(tile.toString(), error));
}

} // namespace NativeMaps
