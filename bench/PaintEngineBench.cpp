#include "BenchGLContext.h"
#include "GLDrawCounter.h"

#include <DisplayList.h>
#include <GLStateManager.h>
#include <GlyphCache.h>
#include <GraphicsPaintDevice.h>
#include <RenderItemBuilder.h>
#include <RenderState.h>
#include <ShaderCache.h>
#include <TextureCache.h>

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <benchmark/benchmark.h>
#include <memory>

using namespace gfx;

namespace {

const QSize kScreen = BenchGLContext::kScreen;

// The shared context made current with its framebuffer, or nullptr with the run skipped.
BenchGLContext* startContext(benchmark::State& state)
{
    BenchGLContext* context = BenchGLContext::get();
    if (!context) {
        state.SkipWithError("no GL context");
        return nullptr;
    }
    context->begin();
    GLDrawCounter::reset();
    return context;
}

QImage pattern(int w, int h, int seed, bool alpha)
{
    return BenchGLContext::pattern(w, h, seed, alpha);
}

// A list screen as views paint it: a background picture, a panel, 30 rows (fill,
// icon, title and detail text, separator), a rounded button and a translucent bar.
struct Scene
{
    Scene()
        : background(pattern(64, 64, 1, false).convertToFormat(QImage::Format_RGB32)), font("DejaVu Sans", 11)
    {
        for (int i = 0; i < 5; ++i)
            icons << QPixmap::fromImage(pattern(24, 24, 2 + i, true));
    }

    void paint(QPainter& p) const
    {
        p.drawImage(QRect(QPoint(0, 0), kScreen), background);
        p.fillRect(QRect(40, 0, 1200, 800), QColor(40, 44, 52));
        p.setFont(font);
        for (int row = 0; row < 30; ++row) {
            const int y = row * 26;
            p.fillRect(QRect(40, y, 1200, 25), row % 2 ? QColor(50, 54, 62) : QColor(46, 50, 58));
            p.drawPixmap(QPoint(48, y + 1), icons[row % icons.size()]);
            p.setPen(QColor(230, 230, 230));
            p.drawText(QPointF(80, y + 18), QStringLiteral("Destination %1, Main Street").arg(row));
            p.setPen(QColor(150, 150, 160));
            p.drawText(QPointF(900, y + 18), QStringLiteral("%1.%2 km").arg(row * 3).arg(row % 10));
            p.fillRect(QRect(40, y + 25, 1200, 1), QColor(70, 74, 82));
        }
        QPainterPath button;
        button.addRoundedRect(QRectF(1000, 700, 200, 60), 12, 12);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 120, 215));
        p.drawPath(button);
        p.fillRect(QRect(0, 740, 1280, 60), QColor(0, 0, 0, 96));
    }

    QImage background;
    QVector<QPixmap> icons;
    QFont font;
};

void report(benchmark::State& state)
{
    state.counters["draws"] = double(GLDrawCounter::draws()) / double(state.iterations());
}

void BM_PaintSceneEngine(benchmark::State& state)
{
    BenchGLContext* context = startContext(state);
    if (!context)
        return;
    const Scene scene;
    for (auto _ : state) {
        GraphicsPaintDevice device(kScreen);
        {
            QPainter painter(&device);
            scene.paint(painter);
        }
        auto list = device.engine()->createDisplayList();
        list->optimize();
        list->render(RenderState(kScreen));
        GlyphCache::instance()->nextFrame();
        context->finish();
    }
    report(state);
}
BENCHMARK(BM_PaintSceneEngine)->Unit(benchmark::kMillisecond);

void BM_PaintSceneQtOpenGL(benchmark::State& state)
{
    BenchGLContext* context = startContext(state);
    if (!context)
        return;
    const Scene scene;
    for (auto _ : state) {
        QOpenGLPaintDevice device(kScreen);
        {
            QPainter painter(&device);
            scene.paint(painter);
        }
        context->finish();
    }
    // Qt's engine changed GL behind the state cache.
    GLStateManager::instance()->clearToInvalid();
    report(state);
}
BENCHMARK(BM_PaintSceneQtOpenGL)->Unit(benchmark::kMillisecond);

void BM_PaintSceneRasterUpload(benchmark::State& state)
{
    BenchGLContext* context = startContext(state);
    if (!context)
        return;
    const Scene scene;
    QImage image(kScreen, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        {
            QPainter painter(&image);
            scene.paint(painter);
        }
        RenderItemBuilder builder;
        builder.drawTexturedRect(QRect(QPoint(0, 0), kScreen), TextureCache::instance()->addOrLookup(image),
                                 false);
        auto list = builder.createDisplayList(false);
        list->optimize();
        list->render(RenderState(kScreen));
        list.reset();
        TextureCache::instance()->clear();
        TextureCache::instance()->destroyExpiredTextures();
        context->finish();
    }
    report(state);
}
BENCHMARK(BM_PaintSceneRasterUpload)->Unit(benchmark::kMillisecond);

} // namespace
