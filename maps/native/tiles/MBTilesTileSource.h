#pragma once

#include "DatabaseThread.h"
#include "MBTilesFile.h"
#include "OrbisUIFrameworkExport.h"
#include "TileSource.h"

#include <QMap>
#include <QSet>

namespace NativeMaps {

/// Tiles from a tile set file, read on a thread of its own in the order asked for.
/// A tile the set does not hold fails with "Not in the tile set".
class ORBIS_UI_EXPORT MBTilesTileSource : public TileSource
{
    Q_OBJECT

public:
    explicit MBTilesTileSource(const QString& path, QObject* parent = nullptr);
    ~MBTilesTileSource() override;

    QString name() const override { return QStringLiteral("mbtiles"); }
    void request(const TileId& tile) override;
    void cancel(const TileId& tile) override;
    bool cachesTiles() const override { return false; }
    int minZoom() const override { return mMinZoom; }
    int maxZoom() const override { return mMaxZoom; }

    /// False (with the reason logged) when the file is not a readable tile set.
    bool isValid() const { return mValid; }
    const QMap<QString, QString>& metadata() const { return mMetadata; }

private:
    void deliver(const TileId& tile, const QByteArray& data, const QString& error);

    QString mPath;
    MBTilesFile mFile; ///< used on mThread only
    DatabaseThread mThread;
    QSet<TileId> mPending;
    QMap<QString, QString> mMetadata;
    bool mValid = false;
    int mMinZoom = 0;
    int mMaxZoom = 19;
};

} // namespace NativeMaps
