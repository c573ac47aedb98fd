#pragma once

#include <GraphicsPaintEngine.h>
#include <QImage>
#include <QRgb>
#include <functional>
#include <gtest/gtest.h>

class GLTestContext;
class QPainter;

// Paints the same commands twice: through the engine's paint device, optimised and
// rendered into a GL framebuffer, and through Qt's raster engine into an image,
// both over the same background, and compares the two pictures.
class PaintComparison
{
public:
    using Painting = std::function<void(QPainter&)>;

    struct Difference
    {
        // Pixels whose channels differ by more than the tolerance.
        int pixels = 0;
        // The largest channel difference, and where it is.
        int worst = 0;
        QPoint worstAt;
        // Where the differing pixels lie.
        QRect area;
    };

    PaintComparison(GLTestContext& gl, QRgb background);

    // Options of the engine's paint device (substitution is off by default).
    void setEngineOptions(gfx::GraphicsPaintEngine::OptionFlags options) { mOptions = options; }

    QImage engine(const Painting& paint) const;
    // The engine's picture with the display-list optimiser switched off.
    QImage unoptimized(const Painting& paint) const;

    // What the optimiser may change: a channel by one step. A substituted texture
    // is composited over its fill in the shader where blending rounds in the
    // framebuffer's steps, and a stretched texture cut into pieces has its
    // coordinates interpolated with other float rounding.
    static constexpr int kOptimizerTolerance = 1;
    QImage raster(const Painting& paint) const;
    Difference compare(const Painting& paint, int tolerance) const;
    // Success when no more than `allowedPixels` differ by more than `tolerance`.
    ::testing::AssertionResult matches(const Painting& paint, int tolerance, int allowedPixels) const;
    static Difference difference(const QImage& a, const QImage& b, int tolerance);
    // Pictures with text: both engines rasterise glyphs with FreeType but hint a
    // little differently, so a stem may move by part of a pixel. They agree when no
    // more than 1.5% of the pixels differ by more than a quarter of the range and
    // the ink (the sum of darkness) is within 2%.
    static ::testing::AssertionResult textAgrees(const QImage& engine, const QImage& raster);
    // Turned text: the engine turns the upright glyph bitmaps with a linear filter
    // where Qt rasterises the turned outlines, so twice as many stems may move.
    // Glyphs left upright on a turned baseline lose a quarter of their ink.
    static ::testing::AssertionResult turnedTextAgrees(const QImage& engine, const QImage& raster);

private:
    static ::testing::AssertionResult textAgrees(const QImage& engine, const QImage& raster,
                                                 double differingShare);

    GLTestContext& mGL;
    QRgb mBackground;
    gfx::GraphicsPaintEngine::OptionFlags mOptions;
};
