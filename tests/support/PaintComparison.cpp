#include "PaintComparison.h"

#include "GLTestContext.h"

#include <DisplayList.h>
#include <GraphicsPaintDevice.h>
#include <RenderState.h>

#include <QPainter>
#include <ScopedConfigOverride.h>
#include <cstdlib>

PaintComparison::PaintComparison(GLTestContext& gl, QRgb background) : mGL(gl), mBackground(background) {}

QImage PaintComparison::engine(const Painting& paint) const
{
    mGL.clear(qRed(mBackground) / 255.f, qGreen(mBackground) / 255.f, qBlue(mBackground) / 255.f,
              qAlpha(mBackground) / 255.f);
    gfx::GraphicsPaintDevice device(mGL.size(), QRegion(), mOptions);
    {
        QPainter painter(&device);
        paint(painter);
    }
    auto list = device.engine()->createDisplayList();
    list->optimize();
    list->render(gfx::RenderState(mGL.size()));
    return mGL.image().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage PaintComparison::unoptimized(const Painting& paint) const
{
    const ScopedConfigOverride off(QStringLiteral("gfx/optimize_display_lists"), false);
    return engine(paint);
}

QImage PaintComparison::raster(const Painting& paint) const
{
    QImage image(mGL.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(mBackground);
    QPainter painter(&image);
    paint(painter);
    return image;
}

PaintComparison::Difference PaintComparison::compare(const Painting& paint, int tolerance) const
{
    return difference(engine(paint), raster(paint), tolerance);
}

::testing::AssertionResult PaintComparison::matches(const Painting& paint, int tolerance,
                                                    int allowedPixels) const
{
    const Difference d = compare(paint, tolerance);
    if (d.pixels <= allowedPixels)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << d.pixels << " pixels differ, worst by " << d.worst << " at "
                                         << d.worstAt.x() << "," << d.worstAt.y();
}

PaintComparison::Difference PaintComparison::difference(const QImage& a, const QImage& b, int tolerance)
{
    Difference result;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const int d = std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                    std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
            if (d > tolerance) {
                ++result.pixels;
                result.area |= QRect(x, y, 1, 1);
            }
            if (d > result.worst) {
                result.worst = d;
                result.worstAt = QPoint(x, y);
            }
        }
    }
    return result;
}

namespace {
constexpr int kGlyphTolerance = 64;
constexpr double kDifferingShare = 0.015;
constexpr double kTurnedDifferingShare = 0.03;
constexpr double kInkShare = 0.02;

qint64 ink(const QImage& image)
{
    qint64 sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += 255 - qGray(image.pixel(x, y));
    return sum;
}
} // namespace

::testing::AssertionResult PaintComparison::textAgrees(const QImage& engine, const QImage& raster)
{
    return textAgrees(engine, raster, kDifferingShare);
}

::testing::AssertionResult PaintComparison::turnedTextAgrees(const QImage& engine, const QImage& raster)
{
    return textAgrees(engine, raster, kTurnedDifferingShare);
}

::testing::AssertionResult PaintComparison::textAgrees(const QImage& engine, const QImage& raster,
                                                       double differingShare)
{
    const Difference d = difference(engine, raster, kGlyphTolerance);
    const qint64 engineInk = ink(engine);
    const qint64 rasterInk = ink(raster);
    if (rasterInk > 0 && d.pixels <= differingShare * engine.width() * engine.height() &&
        qAbs(engineInk - rasterInk) <= kInkShare * rasterInk)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << d.pixels << " pixels differ (worst " << d.worst << " at " << d.worstAt.x() << ","
           << d.worstAt.y() << "), ink " << engineInk << " against " << rasterInk;
}
