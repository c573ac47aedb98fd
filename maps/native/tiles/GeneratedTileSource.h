#pragma once

#include "GeneratedTilePainter.h"
#include "OrbisUIFrameworkExport.h"
#include "TileSource.h"

#include <QSet>
#include <QThreadPool>
#include <memory>
#include <mutex>

namespace NativeMaps {

/// Draws tiles instead of fetching them (GeneratedTilePainter), on worker threads,
/// and hands them out PNG-encoded like any server would.
class ORBIS_UI_EXPORT GeneratedTileSource : public TileSource
{
    Q_OBJECT

public:
    explicit GeneratedTileSource(GeneratedTilePainter::Style style = GeneratedTilePainter::Map,
                                 QObject* parent = nullptr);
    ~GeneratedTileSource() override;

    /// "generated", with "-night" or "-test" for the other styles: each style's tiles
    /// are kept apart in a cache.
    QString name() const override;
    void request(const TileId& tile) override;
    void cancel(const TileId& tile) override;
    int maxZoom() const override { return 20; }
    QColor background() const override { return GeneratedTilePainter::palette(mPainter.style()).land; }

    /// Waits for the tiles being drawn (their answers still arrive as events).
    void waitForDone() { mPool.waitForDone(); }

private:
    /// What the workers share with the source: the tiles still wanted, so that a
    /// worker skips one cancelled before it started.
    struct Shared
    {
        std::mutex mutex;
        QSet<TileId> wanted;
    };

    void deliver(const TileId& tile, const QByteArray& data);

    GeneratedTilePainter mPainter;
    std::shared_ptr<Shared> mShared;
    QThreadPool mPool;
};

} // namespace NativeMaps
