#pragma once

#include <QHashFunctions>
#include <QMetaType>
#include <QString>

namespace NativeMaps {

// One tile of the square tile pyramid: `zoom` levels of 2^zoom by 2^zoom tiles,
// x growing eastwards and y southwards (XYZ numbering).
struct TileId
{
    static constexpr int kMaxZoom = 24;

    int zoom = -1;
    int x = 0;
    int y = 0;

    TileId() = default;
    TileId(int zoomLevel, int column, int row) : zoom(zoomLevel), x(column), y(row) {}

    static int tilesPerSide(int zoom) { return 1 << zoom; }

    bool isValid() const
    {
        return zoom >= 0 && zoom <= kMaxZoom && x >= 0 && y >= 0 && x < tilesPerSide(zoom) &&
               y < tilesPerSide(zoom);
    }
    // The same place one world further east or west (views that wrap longitude ask
    // for columns outside the grid). Rows are not wrapped.
    TileId wrapped() const
    {
        if (zoom < 0 || zoom > kMaxZoom)
            return *this;
        const int n = tilesPerSide(zoom);
        return TileId(zoom, ((x % n) + n) % n, y);
    }
    // The tile `levels` zoom levels up that contains this one.
    TileId ancestor(int levels) const
    {
        if (levels <= 0)
            return *this;
        if (levels > zoom)
            return TileId();
        return TileId(zoom - levels, x >> levels, y >> levels);
    }
    // Row number of the bottom-up (TMS) numbering that tile set files use.
    int tmsRow() const { return tilesPerSide(zoom) - 1 - y; }

    QString toString() const { return QStringLiteral("%1/%2/%3").arg(zoom).arg(x).arg(y); }

    bool operator==(const TileId& o) const { return zoom == o.zoom && x == o.x && y == o.y; }
    bool operator!=(const TileId& o) const { return !(*this == o); }
};

inline uint qHash(const TileId& tile, uint seed = 0)
{
    return ::qHash(quint64(quint32(tile.x)) << 32 | quint32(tile.y), seed) ^ ::qHash(tile.zoom, seed);
}

} // namespace NativeMaps

Q_DECLARE_METATYPE(NativeMaps::TileId)
