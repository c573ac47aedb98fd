#include "GeneratedTilePainter.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QVector>
#include <cmath>

namespace NativeMaps {

namespace {

constexpr double kEarthCircumference = 40075016.68557849; // metres

const GeneratedTilePainter::Palette kDayPalette{
    QColor(242, 239, 233), QColor(170, 211, 223), QColor(205, 235, 176),     QColor(255, 255, 255),
    QColor(214, 208, 199), QColor(252, 246, 196), QColor(214, 196, 150),     QColor(249, 178, 107),
    QColor(206, 128, 62),  QColor(60, 60, 60),    QColor(255, 255, 255, 220)};
// Dark land and water with roads a little lighter, so that the map does not glare at
// night; labels turn light on a dark halo.
const GeneratedTilePainter::Palette kNightPalette{
    QColor(38, 42, 50), QColor(24, 43, 64),    QColor(36, 56, 44),     QColor(74, 80, 92),
    QColor(30, 33, 40), QColor(102, 96, 72),   QColor(44, 42, 34),     QColor(156, 104, 58),
    QColor(74, 48, 28), QColor(196, 202, 212), QColor(20, 22, 28, 220)};

// Grid spacings as powers of two of the world: streets every 2^-18 of the world
// (about 150 m at the equator), avenues every 8th street, highways every 8th avenue.
constexpr int kStreetShift = 18;
constexpr int kAvenueShift = 15;
constexpr int kHighwayShift = 12;

quint32 mix(quint64 h)
{
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    h *= 0xc4ceb9fe1a85ec53ULL;
    h ^= h >> 33;
    return quint32(h);
}

quint32 hash2(qint64 a, qint64 b, quint32 seed)
{
    return mix(quint64(a) * 0x9E3779B97F4A7C15ULL ^
               (quint64(b) + 0x632BE59BD9B4E019ULL) * 0xBF58476D1CE4E5B9ULL ^ seed);
}

double unit(quint32 h)
{
    return h / 4294967296.0;
}

double smooth(double t)
{
    return t * t * (3 - 2 * t);
}

// Value noise in [-1, 1].
double noise(double x, double y, quint32 seed)
{
    const double fx = std::floor(x), fy = std::floor(y);
    const qint64 ix = qint64(fx), iy = qint64(fy);
    const double tx = smooth(x - fx), ty = smooth(y - fy);
    auto at = [&](qint64 dx, qint64 dy) {
        return unit(hash2(ix + dx, iy + dy, seed)) * 2 - 1;
    };
    const double top = at(0, 0) + (at(1, 0) - at(0, 0)) * tx;
    const double bottom = at(0, 1) + (at(1, 1) - at(0, 1)) * tx;
    return top + (bottom - top) * ty;
}

// A noise field over the world square, summed from `baseFrequency` (cycles per
// world) up to `topFrequency`, leaving out what the zoom cannot show.
struct Field
{
    quint32 seed;
    double baseFrequency;
    double topFrequency;
    double offset;

    double value(double u, double v, double worldPixels) const
    {
        const double limit = std::min(topFrequency, worldPixels / 16);
        double sum = 0, norm = 0, amplitude = 1;
        for (double f = baseFrequency; f <= limit || norm == 0; f *= 2, amplitude *= 0.5) {
            sum += amplitude * noise(u * f, v * f, seed + quint32(f));
            norm += amplitude;
        }
        return sum / norm + offset;
    }
};

// Negative means water (sea and lakes), park positive.
const Field kSea{11, 64, 16384, 0.12};
const Field kLake{23, 1024, 32768, 0.5};
const Field kRiver{37, 256, 8192, 0.0};
const Field kParkField{41, 4096, 32768, -0.45};

double worldPixelsAt(int zoom, int tileSize)
{
    return double(tileSize) * double(1 << zoom);
}

double metresPerPixel(int zoom, int tileSize)
{
    return kEarthCircumference / worldPixelsAt(zoom, tileSize);
}

double riverHalfWidth(int zoom, int tileSize)
{
    return zoom < 8 ? 0.0 : std::max(0.6, 60.0 / metresPerPixel(zoom, tileSize));
}

double clamp01(double v)
{
    return v < 0 ? 0 : (v > 1 ? 1 : v);
}

// How much of a pixel lies on the negative side of a field edge, from the value and
// its gradient in pixels.
double coverage(double value, double gradient)
{
    if (gradient <= 1e-12)
        return value < 0 ? 1 : 0;
    return clamp01(0.5 - value / gradient);
}

QColor blend(const QColor& a, const QColor& b, double t)
{
    return QColor::fromRgbF(a.redF() + (b.redF() - a.redF()) * t, a.greenF() + (b.greenF() - a.greenF()) * t,
                            a.blueF() + (b.blueF() - a.blueF()) * t);
}

const char* const kStreetNames[] = {"Maple",    "Oak",      "Cedar",    "Elm",     "Birch",
                                    "Willow",   "Pine",     "Aspen",    "Juniper", "Laurel",
                                    "Magnolia", "Hawthorn", "Chestnut", "Spruce",  "Walnut",
                                    "Cypress",  "Alder",    "Poplar",   "Linden",  "Sycamore"};
const char* const kAvenueNames[] = {"Main St",    "Broadway",     "Central Ave", "Harbor Blvd",
                                    "Park Ave",   "Lakeshore Dr", "Market St",   "Union Ave",
                                    "Grand Blvd", "Liberty Ave",  "Mission St",  "King St",
                                    "Queen St",   "Station Rd",   "Hill St",     "Bridge St"};

QString ordinal(qint64 n)
{
    const qint64 m100 = n % 100;
    const char* suffix = (m100 >= 11 && m100 <= 13) ? "th"
                         : n % 10 == 1              ? "st"
                         : n % 10 == 2              ? "nd"
                         : n % 10 == 3              ? "rd"
                                                    : "th";
    return QStringLiteral("%1%2").arg(n).arg(QLatin1String(suffix));
}

// Streets running north-south are named, east-west ones numbered; every eighth
// line is an avenue with a name of its own.
QString streetName(qint64 line, bool vertical)
{
    if (line % 8 == 0)
        return QLatin1String(
            kAvenueNames[hash2(line, vertical, 71) % (sizeof(kAvenueNames) / sizeof(*kAvenueNames))]);
    if (vertical)
        return QStringLiteral("%1 St").arg(
            QLatin1String(kStreetNames[hash2(line, 1, 73) % (sizeof(kStreetNames) / sizeof(*kStreetNames))]));
    return QStringLiteral("%1 St").arg(ordinal((line % 400 + 400) % 400 + 1));
}

bool isHighwayLine(qint64 line, bool vertical)
{
    return unit(hash2(line, vertical, 59)) < 0.25;
}

struct RoadClass
{
    int shift;
    int minZoom;
    double metres;
    double minWidth;
    QColor fill;
    QColor casing;
};

} // namespace

const GeneratedTilePainter::Palette& GeneratedTilePainter::palette(Style style)
{
    return style == NightMap ? kNightPalette : kDayPalette;
}

QColor GeneratedTilePainter::testPatternColor(const TileId& tile)
{
    const int hue = int(hash2(tile.x, tile.y, quint32(tile.zoom) * 7919u) % 360u);
    return QColor::fromHsv(hue, 150 + int(hash2(tile.y, tile.x, 3) % 80u),
                           180 + int(hash2(tile.x, tile.zoom, 5) % 60u));
}

bool GeneratedTilePainter::isWater(double u, double v, int zoom)
{
    const double world = worldPixelsAt(zoom, 256);
    if (kSea.value(u, v, world) < 0 || kLake.value(u, v, world) < 0)
        return true;
    const double half = riverHalfWidth(zoom, 256);
    if (half <= 0)
        return false;
    const double e = 1.0 / world;
    const double r = kRiver.value(u, v, world);
    const double gx = (kRiver.value(u + e, v, world) - kRiver.value(u - e, v, world)) / 2;
    const double gy = (kRiver.value(u, v + e, world) - kRiver.value(u, v - e, world)) / 2;
    const double g = std::hypot(gx, gy);
    return g > 0 && std::abs(r) / g < half;
}

QImage GeneratedTilePainter::paint(const TileId& tile) const
{
    QImage image(mSize, mSize, QImage::Format_RGBA8888_Premultiplied);
    if (!tile.isValid()) {
        image.fill(Qt::transparent);
        return image;
    }
    if (mStyle == TestPattern) {
        QPainter painter(&image);
        paintTestPattern(painter, tile);
    } else {
        paintMap(image, tile);
    }
    return image;
}

void GeneratedTilePainter::paintTestPattern(QPainter& painter, const TileId& tile) const
{
    painter.fillRect(QRect(0, 0, mSize, mSize), testPatternBorderColor());
    painter.fillRect(QRect(kTestPatternBorder, kTestPatternBorder, mSize - 2 * kTestPatternBorder,
                           mSize - 2 * kTestPatternBorder),
                     testPatternColor(tile));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(qMax(8, mSize / 10));
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRect(0, 0, mSize, mSize), Qt::AlignCenter, tile.toString());
}

void GeneratedTilePainter::paintMap(QImage& image, const TileId& tile) const
{
    const Palette& colours = palette(mStyle);
    const int zoom = tile.zoom;
    const double world = worldPixelsAt(zoom, mSize);
    const double originX = double(tile.x) * mSize, originY = double(tile.y) * mSize;

    // The fields on a coarse grid (one sample every kStep pixels, one sample beyond
    // each edge for the gradients), interpolated per pixel.
    constexpr int kStep = 4;
    const int cells = mSize / kStep;
    const int n = cells + 3;
    const double riverHalf = riverHalfWidth(zoom, mSize);
    QVector<float> sea(n * n), lake(n * n), river(n * n), park(n * n);
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            const double u = (originX + (i - 1) * kStep) / world, v = (originY + (j - 1) * kStep) / world;
            sea[j * n + i] = float(kSea.value(u, v, world));
            lake[j * n + i] = float(kLake.value(u, v, world));
            river[j * n + i] = riverHalf > 0 ? float(kRiver.value(u, v, world)) : 1.0f;
            park[j * n + i] = zoom >= 10 ? float(kParkField.value(u, v, world)) : -1.0f;
        }
    }
    // Value and gradient length (per pixel) of a grid field at a pixel.
    auto sample = [&](const QVector<float>& f, double px, double py, double* gradient) {
        const double gx = px / kStep + 1, gy = py / kStep + 1;
        const int i = qBound(1, int(gx), n - 3), j = qBound(1, int(gy), n - 3);
        const double tx = gx - i, ty = gy - j;
        auto at = [&](int a, int b) {
            return double(f[b * n + a]);
        };
        const double top = at(i, j) + (at(i + 1, j) - at(i, j)) * tx;
        const double bottom = at(i, j + 1) + (at(i + 1, j + 1) - at(i, j + 1)) * tx;
        const double dx =
            ((at(i + 1, j) - at(i, j)) * (1 - ty) + (at(i + 1, j + 1) - at(i, j + 1)) * ty) / kStep;
        const double dy =
            ((at(i, j + 1) - at(i, j)) * (1 - tx) + (at(i + 1, j + 1) - at(i + 1, j)) * tx) / kStep;
        *gradient = std::hypot(dx, dy);
        return top + (bottom - top) * ty;
    };

    QVector<float> water(mSize * mSize);
    for (int y = 0; y < mSize; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < mSize; ++x) {
            const double px = x + 0.5, py = y + 0.5;
            double g = 0;
            double cover = coverage(sample(sea, px, py, &g), g);
            cover = std::max(cover, coverage(sample(lake, px, py, &g), g));
            if (riverHalf > 0) {
                const double r = sample(river, px, py, &g);
                // Distance to the river's centre line, in pixels.
                if (g > 1e-12)
                    cover = std::max(cover, clamp01(riverHalf + 0.5 - std::abs(r) / g));
            }
            water[y * mSize + x] = float(cover);
            const double parkCover = 1 - coverage(sample(park, px, py, &g), g);
            const QColor c = blend(colours.land, colours.park, parkCover);
            // RGBA8888 in memory order: bytes r, g, b, a.
            uchar* p = reinterpret_cast<uchar*>(line + x);
            p[0] = uchar(c.red());
            p[1] = uchar(c.green());
            p[2] = uchar(c.blue());
            p[3] = 255;
        }
    }

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-originX, -originY);
    const QRectF tileRect(originX, originY, mSize, mSize);
    const double mpp = metresPerPixel(zoom, mSize);

    // Whole blocks turned into parks, between the streets.
    if (zoom >= 13) {
        const double block = world / double(1 << kStreetShift);
        const qint64 i0 = qint64(std::floor(originX / block)), j0 = qint64(std::floor(originY / block));
        const qint64 i1 = qint64(std::floor((originX + mSize) / block)),
                     j1 = qint64(std::floor((originY + mSize) / block));
        for (qint64 j = j0; j <= j1; ++j) {
            for (qint64 i = i0; i <= i1; ++i) {
                if (unit(hash2(i, j, 97)) >= 0.05)
                    continue;
                painter.fillRect(QRectF(i * block, j * block, block, block), colours.park);
            }
        }
    }

    const RoadClass streets{kStreetShift, 14, 10, 1.0, colours.street, colours.streetCasing};
    const RoadClass avenues{kAvenueShift, 11, 18, 1.2, colours.avenue, colours.avenueCasing};
    const RoadClass highways{kHighwayShift, 9, 28, 1.5, colours.highway, colours.highwayCasing};
    auto drawRoads = [&](const RoadClass& road, bool highwaysOnly) {
        if (zoom < road.minZoom)
            return;
        const double spacing = world / double(1 << road.shift);
        const double width = std::max(road.minWidth, road.metres / mpp);
        const double casing = zoom >= 15 ? std::max(1.0, width * 0.12) : 0.0;
        const double margin = width + casing;
        QPainterPath path;
        for (int axis = 0; axis < 2; ++axis) {
            const double from = (axis == 0 ? originX : originY) - margin;
            const double to = (axis == 0 ? originX : originY) + mSize + margin;
            for (qint64 k = qint64(std::ceil(from / spacing)); k * spacing <= to; ++k) {
                if (highwaysOnly != (road.shift == kHighwayShift))
                    continue;
                if (road.shift == kHighwayShift && !isHighwayLine(k, axis == 0))
                    continue;
                const double c = k * spacing;
                if (axis == 0)
                    path.moveTo(c, originY - margin), path.lineTo(c, originY + mSize + margin);
                else
                    path.moveTo(originX - margin, c), path.lineTo(originX + mSize + margin, c);
            }
        }
        if (path.isEmpty())
            return;
        if (casing > 0)
            painter.strokePath(path, QPen(road.casing, width + 2 * casing, Qt::SolidLine, Qt::FlatCap));
        painter.strokePath(path, QPen(road.fill, width, Qt::SolidLine, Qt::FlatCap));
    };
    drawRoads(streets, false);
    drawRoads(avenues, false);
    painter.end();

    // Water over the streets; highways cross it on bridges.
    for (int y = 0; y < mSize; ++y) {
        auto* p = image.scanLine(y);
        for (int x = 0; x < mSize; ++x, p += 4) {
            const float w = water[y * mSize + x];
            if (w <= 0)
                continue;
            p[0] = uchar(p[0] + (colours.water.red() - p[0]) * w + 0.5f);
            p[1] = uchar(p[1] + (colours.water.green() - p[1]) * w + 0.5f);
            p[2] = uchar(p[2] + (colours.water.blue() - p[2]) * w + 0.5f);
        }
    }

    painter.begin(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.translate(-originX, -originY);
    drawRoads(highways, true);

    if (zoom < 16)
        return;
    // Names in the middle of blocks, every few blocks on closer zooms. Labels that
    // start in a neighbouring tile are drawn too, so that they continue across the edge.
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(zoom >= 18 ? 13 : (zoom == 17 ? 12 : 11));
    const QFontMetricsF metrics(font);
    const double block = world / double(1 << kStreetShift);
    const int every = zoom >= 18 ? 1 : (zoom == 17 ? 2 : 3);
    const double streetWidth = std::max(streets.minWidth, streets.metres / mpp);
    const double reach = block * every + 200;
    for (int axis = 0; axis < 2; ++axis) {
        const bool vertical = axis == 0;
        const double across0 = (vertical ? originX : originY) - 20, across1 = across0 + mSize + 40;
        const double along0 = (vertical ? originY : originX) - reach, along1 = along0 + mSize + 2 * reach;
        for (qint64 k = qint64(std::ceil(across0 / block)); k * block <= across1; ++k) {
            const QString name = streetName(k, vertical);
            const double textWidth = metrics.horizontalAdvance(name);
            if (textWidth > block - streetWidth - 6)
                continue;
            for (qint64 b = qint64(std::floor(along0 / block)); b * block <= along1; ++b) {
                if ((b + k) % every != 0)
                    continue;
                const double mid = (b + 0.5) * block;
                const QPointF centre = vertical ? QPointF(k * block, mid) : QPointF(mid, k * block);
                if (!tileRect.adjusted(-textWidth, -textWidth, textWidth, textWidth).contains(centre))
                    continue;
                if (isWater(centre.x() / world, centre.y() / world, zoom))
                    continue;
                QPainterPath text;
                text.addText(-textWidth / 2, (metrics.ascent() - metrics.descent()) / 2, font, name);
                painter.save();
                painter.translate(centre);
                if (vertical)
                    painter.rotate(-90);
                painter.strokePath(text,
                                   QPen(colours.labelHalo, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
                painter.fillPath(text, colours.label);
                painter.restore();
            }
        }
    }
}

} // namespace NativeMaps
