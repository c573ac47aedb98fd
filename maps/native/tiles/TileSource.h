#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TileId.h"

#include <QByteArray>
#include <QColor>
#include <QObject>
#include <QString>

namespace NativeMaps {

/// Where encoded tile images come from. A request is answered once, later, through
/// tileLoaded or tileFailed on the source's thread; a cancelled request is never
/// answered. Requests for a tile that is already on its way are merged.
class ORBIS_UI_EXPORT TileSource : public QObject
{
    Q_OBJECT

public:
    explicit TileSource(QObject* parent = nullptr) : QObject(parent) {}
    ~TileSource() override = default;

    virtual QString name() const = 0;
    virtual void request(const TileId& tile) = 0;
    virtual void cancel(const TileId& tile) = 0;
    /// Whether what this source delivers is worth keeping in the persistent cache (a
    /// tile set file on disk is not).
    virtual bool cachesTiles() const { return true; }
    virtual int minZoom() const { return 0; }
    virtual int maxZoom() const { return 19; }
    /// The colour a map shows where a tile has not come yet: the tiles' land.
    virtual QColor background() const { return QColor(242, 239, 233); }

signals:
    void tileLoaded(NativeMaps::TileSource* source, NativeMaps::TileId tile, QByteArray data);
    void tileFailed(NativeMaps::TileSource* source, NativeMaps::TileId tile, QString error);
};

} // namespace NativeMaps
