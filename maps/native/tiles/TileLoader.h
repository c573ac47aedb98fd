#pragma once

#include "OrbisUIFrameworkExport.h"

#include "TileId.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <QVector>

namespace NativeMaps {

class TileCache;
class TileSource;

// Brings the tiles a view wants into memory, decoded: first from the memory cache,
// then from the persistent cache, then from the source (whose answers are written
// through to the persistent cache when the source says they are worth keeping).
// Tiles start loading in the order the view listed them, a bounded number at a
// time; each tile is loaded at most once at a time, and tiles the view no longer
// wants are cancelled. Decoding runs on worker threads; everything else on the
// loader's thread.
class ORBIS_UI_INTERNAL_EXPORT TileLoader : public QObject
{
    Q_OBJECT

public:
    struct Stats
    {
        int requested = 0;   // tiles that became wanted
        int memoryHits = 0;  // ... and were already decoded in memory
        int cacheHits = 0;   // ... or came from the persistent cache
        int sourceLoads = 0; // ... or from the source
        int failures = 0;
        int cancelled = 0;
        int decoded = 0;
        qint64 decodeNs = 0; // worker time spent decoding
    };

    TileLoader(TileSource* source, TileCache* cache = nullptr, QObject* parent = nullptr);
    ~TileLoader() override;

    TileSource* source() const { return mSource; }
    TileCache* cache() const { return mCache; }

    // The tiles wanted now, most important first. Invalid tiles are ignored; a tile
    // that failed is not asked for again for "maps/tile_failure_retry_ms".
    void setWanted(const QVector<TileId>& tiles);
    const QSet<TileId>& wanted() const { return mWanted; }

    // The decoded tile (premultiplied RGBA), or a null image.
    QImage tile(const TileId& tile);
    bool contains(const TileId& tile) const { return mMemory.contains(tile); }
    bool isLoading(const TileId& tile) const { return mLoading.contains(tile); }
    int loadingCount() const { return mLoading.size(); }
    int queuedCount() const { return mQueue.size(); }
    bool isIdle() const { return mLoading.isEmpty() && mQueue.isEmpty(); }

    qint64 memoryBytes() const { return mMemoryBytes; }
    int memoryCount() const { return mMemory.size(); }
    void setMemoryLimit(qint64 bytes);
    void clearMemory();

    const Stats& stats() const { return mStats; }
    void resetStats() { mStats = Stats(); }

    // Waits for the decoding under way (its results still arrive as events).
    void waitForDecodes() { mPool.waitForDone(); }

signals:
    void tileReady(NativeMaps::TileLoader* loader, NativeMaps::TileId tile);
    void tileFailed(NativeMaps::TileLoader* loader, NativeMaps::TileId tile, QString error);

private slots:
    void cacheLookedUp(NativeMaps::TileCache* cache, NativeMaps::TileId tile, QByteArray data);
    void sourceLoaded(NativeMaps::TileSource* source, NativeMaps::TileId tile, QByteArray data);
    void sourceFailed(NativeMaps::TileSource* source, NativeMaps::TileId tile, QString error);

private:
    enum Stage
    {
        Lookup,
        Fetch,
        Decode
    };
    struct Entry
    {
        QImage image;
        quint64 lastUse = 0;
    };

    void pump();
    void fetch(const TileId& tile);
    void decode(const TileId& tile, const QByteArray& data);
    void decoded(const TileId& tile, const QImage& image, qint64 ns);
    void fail(const TileId& tile, const QString& error);
    void insert(const TileId& tile, const QImage& image);
    void evict();
    bool recentlyFailed(const TileId& tile);

    TileSource* mSource;
    TileCache* mCache;
    QSet<TileId> mWanted;
    QVector<TileId> mQueue;
    QHash<TileId, Stage> mLoading;
    QHash<TileId, Entry> mMemory;
    QHash<TileId, qint64> mFailedAt;
    qint64 mMemoryBytes = 0;
    qint64 mMemoryLimit;
    quint64 mUse = 0;
    Stats mStats;
    QThreadPool mPool;
};

} // namespace NativeMaps
