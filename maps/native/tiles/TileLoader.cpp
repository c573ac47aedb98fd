#include "TileLoader.h"

#include "TileCache.h"
#include "TileSource.h"

#include <Clock.h>
#include <ConfigValue.h>
#include <ElapsedTimer.h>
#include <QPointer>
#include <QRunnable>

namespace NativeMaps {

ConfigIntValue TileLoadsInFlight("maps/tile_loads_in_flight", 12);
ConfigIntValue TileMemoryMb("maps/tile_memory_mb", 64);
ConfigIntValue TileFailureRetryMs("maps/tile_failure_retry_ms", 30000);
extern ConfigIntValue TileWorkers;

namespace {
constexpr qint64 kMegabyte = 1048576;

qint64 nowMs()
{
    return Clock::current()->nowMilliseconds();
}
} // namespace

TileLoader::TileLoader(TileSource* source, TileCache* cache, QObject* parent)
    : QObject(parent), mSource(source), mCache(cache),
      mMemoryLimit(qint64(qMax(1, TileMemoryMb.value())) * kMegabyte)
{
    mPool.setMaxThreadCount(qMax(1, TileWorkers.value()));
    connect(mSource, &TileSource::tileLoaded, this, &TileLoader::sourceLoaded);
    connect(mSource, &TileSource::tileFailed, this, &TileLoader::sourceFailed);
    if (mCache)
        connect(mCache, &TileCache::lookedUp, this, &TileLoader::cacheLookedUp);
}

TileLoader::~TileLoader()
{
    for (auto it = mLoading.constBegin(); it != mLoading.constEnd(); ++it)
        if (it.value() == Fetch)
            mSource->cancel(it.key());
    mPool.waitForDone();
}

bool TileLoader::recentlyFailed(const TileId& tile)
{
    auto it = mFailedAt.find(tile);
    if (it == mFailedAt.end())
        return false;
    if (nowMs() - it.value() < TileFailureRetryMs.value())
        return true;
    mFailedAt.erase(it);
    return false;
}

void TileLoader::setWanted(const QVector<TileId>& tiles)
{
    QSet<TileId> wanted;
    wanted.reserve(tiles.size());
    mQueue.clear();
    for (const TileId& tile : tiles) {
        if (!tile.isValid() || wanted.contains(tile))
            continue;
        wanted.insert(tile);
        const bool known = mWanted.contains(tile);
        if (!known)
            ++mStats.requested;
        auto found = mMemory.find(tile);
        if (found != mMemory.end()) {
            found->lastUse = ++mUse;
            if (!known)
                ++mStats.memoryHits;
            continue;
        }
        if (!mLoading.contains(tile) && !recentlyFailed(tile))
            mQueue.append(tile);
    }
    for (auto it = mLoading.begin(); it != mLoading.end();) {
        if (wanted.contains(it.key())) {
            ++it;
            continue;
        }
        // A decode under way finishes and is kept: the work is done already.
        if (it.value() == Decode) {
            ++it;
            continue;
        }
        if (it.value() == Fetch)
            mSource->cancel(it.key());
        ++mStats.cancelled;
        it = mLoading.erase(it);
    }
    mWanted = wanted;
    pump();
}

void TileLoader::pump()
{
    const int limit = qMax(1, TileLoadsInFlight.value());
    while (mLoading.size() < limit && !mQueue.isEmpty()) {
        const TileId tile = mQueue.takeFirst();
        if (mMemory.contains(tile) || mLoading.contains(tile))
            continue;
        if (mCache) {
            mLoading.insert(tile, Lookup);
            mCache->lookup(tile);
        } else {
            fetch(tile);
        }
    }
}

void TileLoader::fetch(const TileId& tile)
{
    mLoading.insert(tile, Fetch);
    mSource->request(tile);
}

void TileLoader::cacheLookedUp(TileCache*, TileId tile, QByteArray data)
{
    auto it = mLoading.find(tile);
    if (it == mLoading.end() || it.value() != Lookup)
        return;
    if (data.isNull()) {
        fetch(tile);
        return;
    }
    ++mStats.cacheHits;
    decode(tile, data);
}

void TileLoader::sourceLoaded(TileSource* source, TileId tile, QByteArray data)
{
    auto it = mLoading.find(tile);
    if (it == mLoading.end() || it.value() != Fetch)
        return;
    ++mStats.sourceLoads;
    if (mCache && source->cachesTiles())
        mCache->store(tile, data);
    decode(tile, data);
}

void TileLoader::sourceFailed(TileSource*, TileId tile, QString error)
{
    auto it = mLoading.find(tile);
    if (it == mLoading.end() || it.value() != Fetch)
        return;
    fail(tile, error);
}

void TileLoader::fail(const TileId& tile, const QString& error)
{
    mLoading.remove(tile);
    mFailedAt.insert(tile, nowMs());
    ++mStats.failures;
    emit tileFailed(this, tile, error);
    pump();
}

void TileLoader::decode(const TileId& tile, const QByteArray& data)
{
    mLoading.insert(tile, Decode);
    QPointer<TileLoader> self(this);
    mPool.start(QRunnable::create([self, tile, data] {
        ElapsedTimer timer;
        timer.start();
        QImage image = QImage::fromData(data);
        // The format the texture upload takes as it is.
        if (!image.isNull())
            image = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        const qint64 ns = timer.nsecsElapsed();
        QMetaObject::invokeMethod(
            self, [self, tile, image, ns] { self->decoded(tile, image, ns); }, Qt::QueuedConnection);
    }));
}

void TileLoader::decoded(const TileId& tile, const QImage& image, qint64 ns)
{
    ++mStats.decoded;
    mStats.decodeNs += ns;
    const auto found = mLoading.constFind(tile);
    const bool loading = found != mLoading.constEnd() && found.value() == Decode;
    if (image.isNull()) {
        if (loading)
            fail(tile, QStringLiteral("%1: not an image").arg(tile.toString()));
        return;
    }
    if (loading)
        mLoading.remove(tile);
    insert(tile, image);
    emit tileReady(this, tile);
    pump();
}

QImage TileLoader::tile(const TileId& tile)
{
    auto it = mMemory.find(tile);
    if (it == mMemory.end())
        return QImage();
    it->lastUse = ++mUse;
    return it->image;
}

void TileLoader::insert(const TileId& tile, const QImage& image)
{
    auto it = mMemory.find(tile);
    if (it != mMemory.end())
        mMemoryBytes -= it->image.sizeInBytes();
    mMemory.insert(tile, Entry{image, ++mUse});
    mMemoryBytes += image.sizeInBytes();
    evict();
}

void TileLoader::setMemoryLimit(qint64 bytes)
{
    mMemoryLimit = qMax<qint64>(0, bytes);
    evict();
}

void TileLoader::clearMemory()
{
    mMemory.clear();
    mMemoryBytes = 0;
}

void TileLoader::evict()
{
    // Least recently used first, never a tile the view wants now.
    while (mMemoryBytes > mMemoryLimit) {
        auto victim = mMemory.end();
        for (auto it = mMemory.begin(); it != mMemory.end(); ++it) {
            if (!mWanted.contains(it.key()) && (victim == mMemory.end() || it->lastUse < victim->lastUse))
                victim = it;
        }
        if (victim == mMemory.end())
            return;
        mMemoryBytes -= victim->image.sizeInBytes();
        mMemory.erase(victim);
    }
}

} // namespace NativeMaps
