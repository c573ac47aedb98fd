#include "GradientRamp.h"

#include "TextureCache.h"

#include <QList>

namespace gfx {

namespace {
// Enough for the gradients of a screen; each ramp is 4 KB.
constexpr int kKeptRamps = 32;

// Pictures rather than keys: a key holds on to its uploaded texture, which must
// not outlive a texture cache that is cleared.
struct Ramp
{
    QGradientStops stops;
    QGradient::InterpolationMode mode;
    QImage image;
};

QList<Ramp>& ramps()
{
    static QList<Ramp> kept;
    return kept;
}

struct Channels
{
    double r, g, b, a;
};

Channels premultiplied(const QColor& c)
{
    const double a = c.alphaF();
    return {c.redF() * a, c.greenF() * a, c.blueF() * a, a};
}

Channels straight(const QColor& c)
{
    return {c.redF(), c.greenF(), c.blueF(), c.alphaF()};
}

Channels mix(const Channels& x, const Channels& y, double f)
{
    return {x.r + (y.r - x.r) * f, x.g + (y.g - x.g) * f, x.b + (y.b - x.b) * f, x.a + (y.a - x.a) * f};
}

QRgb toPixel(Channels c, bool premultiply)
{
    if (premultiply)
        c = {c.r * c.a, c.g * c.a, c.b * c.a, c.a};
    const auto byte = [](double v) {
        return qBound(0, int(v * 255 + 0.5), 255);
    };
    return qRgba(byte(c.r), byte(c.g), byte(c.b), byte(c.a));
}
} // namespace

QImage GradientRamp::image(const QGradientStops& stops, QGradient::InterpolationMode mode)
{
    QImage ramp(kSize, 1, QImage::Format_ARGB32_Premultiplied);
    if (stops.isEmpty()) {
        ramp.fill(Qt::transparent);
        return ramp;
    }
    // Colour interpolation mixes premultiplied colours; component interpolation
    // mixes the components and premultiplies after.
    const bool component = mode == QGradient::ComponentInterpolation;
    const auto channels = [component](const QColor& c) {
        return component ? straight(c) : premultiplied(c);
    };
    auto* pixels = reinterpret_cast<QRgb*>(ramp.scanLine(0));
    int next = 0;
    for (int i = 0; i < kSize; ++i) {
        const double t = double(i) / (kSize - 1);
        while (next < stops.size() && stops[next].first <= t)
            ++next;
        Channels c;
        if (next == 0)
            c = channels(stops.first().second);
        else if (next == stops.size())
            c = channels(stops.last().second);
        else {
            const QGradientStop& from = stops[next - 1];
            const QGradientStop& to = stops[next];
            c = mix(channels(from.second), channels(to.second), (t - from.first) / (to.first - from.first));
        }
        pixels[i] = toPixel(c, component);
    }
    return ramp;
}

TextureKey GradientRamp::key(const QGradient& gradient)
{
    const QGradientStops stops = gradient.stops();
    const QGradient::InterpolationMode mode = gradient.interpolationMode();
    QList<Ramp>& kept = ramps();
    int found = 0;
    while (found < kept.size() && !(kept[found].mode == mode && kept[found].stops == stops))
        ++found;
    if (found < kept.size()) {
        kept.move(found, 0);
    } else {
        kept.prepend({stops, mode, image(stops, mode)});
        while (kept.size() > kKeptRamps)
            kept.removeLast();
    }
    return TextureCache::instance()->addOrLookup(kept.first().image);
}

bool GradientRamp::isOpaque(const QGradientStops& stops)
{
    for (const QGradientStop& stop : stops)
        if (stop.second.alpha() < 255)
            return false;
    return true;
}

} // namespace gfx
