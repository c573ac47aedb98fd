#include "GeneratedTileSource.h"

#include <ConfigValue.h>
#include <QBuffer>
#include <QPointer>
#include <QRunnable>

namespace NativeMaps {

ConfigIntValue TileWorkers("maps/tile_workers", 2);

GeneratedTileSource::GeneratedTileSource(GeneratedTilePainter::Style style, QObject* parent)
    : TileSource(parent), mPainter(style), mShared(std::make_shared<Shared>())
{
    mPool.setMaxThreadCount(qMax(1, TileWorkers.value()));
}

GeneratedTileSource::~GeneratedTileSource()
{
    {
        std::lock_guard<std::mutex> lock(mShared->mutex);
        mShared->wanted.clear();
    }
    mPool.clear();
    mPool.waitForDone();
}

QString GeneratedTileSource::name() const
{
    switch (mPainter.style()) {
    case GeneratedTilePainter::NightMap:
        return QStringLiteral("generated-night");
    case GeneratedTilePainter::TestPattern:
        return QStringLiteral("generated-test");
    case GeneratedTilePainter::Map:
        break;
    }
    return QStringLiteral("generated");
}

void GeneratedTileSource::request(const TileId& tile)
{
    {
        std::lock_guard<std::mutex> lock(mShared->mutex);
        if (mShared->wanted.contains(tile))
            return;
        mShared->wanted.insert(tile);
    }
    std::shared_ptr<Shared> shared = mShared;
    const GeneratedTilePainter painter = mPainter;
    QPointer<GeneratedTileSource> self(this);
    mPool.start(QRunnable::create([shared, painter, tile, self] {
        {
            std::lock_guard<std::mutex> lock(shared->mutex);
            if (!shared->wanted.contains(tile))
                return;
        }
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        // Fast compression: the tiles are drawn far more often than stored.
        painter.paint(tile).save(&buffer, "PNG", 80);
        if (self)
            QMetaObject::invokeMethod(
                self, [self, tile, data] { self->deliver(tile, data); }, Qt::QueuedConnection);
    }));
}

void GeneratedTileSource::cancel(const TileId& tile)
{
    std::lock_guard<std::mutex> lock(mShared->mutex);
    mShared->wanted.remove(tile);
}

void GeneratedTileSource::deliver(const TileId& tile, const QByteArray& data)
{
    {
        std::lock_guard<std::mutex> lock(mShared->mutex);
        if (!mShared->wanted.remove(tile))
            return;
    }
    emit tileLoaded(this, tile, data);
}

} // namespace NativeMaps
