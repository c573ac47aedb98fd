#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TileId.h"

#include <QColor>
#include <QImage>

class QPainter;

namespace NativeMaps {

/// Draws map tiles for use without a tile server: land, lakes, coasts and rivers
/// from noise fields, parks, a street grid of highways, avenues and streets that
/// thickens with the zoom, and street names at close zooms. Everything is a
/// function of world coordinates, so neighbouring tiles and zoom levels agree and
/// the same tile always comes out the same. Safe to use on worker threads.
class ORBIS_UI_EXPORT GeneratedTilePainter
{
public:
    enum Style
    {
        Map,
        /// The same map in dark colours, for a display's night skin.
        NightMap,
        /// One flat colour per tile (testPatternColor) inside a border of
        /// kTestPatternBorderColor, kTestPatternBorder pixels wide: what a tile test
        /// can check pixel by pixel.
        TestPattern
    };

    /// The colours of a map style.
    struct Palette
    {
        QColor land;
        QColor water;
        QColor park;
        QColor street;
        QColor streetCasing;
        QColor avenue;
        QColor avenueCasing;
        QColor highway;
        QColor highwayCasing;
        QColor label;
        QColor labelHalo;
    };
    /// The map's colours for `style` (TestPattern has the day map's).
    static const Palette& palette(Style style);

    static constexpr int kTestPatternBorder = 4;
    static QColor testPatternColor(const TileId& tile);
    static QColor testPatternBorderColor() { return QColor(20, 20, 20); }

    explicit GeneratedTilePainter(Style style = Map, int tileSize = 256) : mStyle(style), mSize(tileSize) {}

    Style style() const { return mStyle; }
    QImage paint(const TileId& tile) const;

    /// Whether the land/water field puts water at a world position (0..1 both ways).
    static bool isWater(double u, double v, int zoom);

private:
    void paintTestPattern(QPainter& painter, const TileId& tile) const;
    void paintMap(QImage& image, const TileId& tile) const;

    Style mStyle;
    int mSize;
};

} // namespace NativeMaps
