#include "BenchGLContext.h"
#include "GLDrawCounter.h"

#include <DisplayList.h>
#include <ElapsedTimer.h>
#include <GraphicsPaintDevice.h>
#include <QCoreApplication>
#include <QPainter>
#include <QTemporaryDir>
#include <RenderState.h>
#include <ScopedConfigOverride.h>
#include <TextureCache.h>
#include <benchmark/benchmark.h>
#include <maps/MapTileRenderer.h>
#include <memory>
#include <native/MapCRS.h>
#include <native/tiles/GeneratedTileSource.h>
#include <native/tiles/TileCache.h>
#include <native/tiles/TileLoader.h>

using namespace NativeMaps;

namespace {

const QSize kScreen = BenchGLContext::kScreen;
const LocationCoordinate kStart(37.7749, -122.4194);
constexpr int kZoom = 15;
constexpr double kTilt = 45.0;
constexpr int kFrameMs = 16;

MapTransform camera(const LocationCoordinate& centre, double scale)
{
    MapTransform t(kZoom, scale, 0.0, MapProjection::forViewport(QRect(QPoint(0, 0), kScreen)), centre,
                   QPointF(kScreen.width() / 2.0, kScreen.height() * 0.65), QSize(256, 256));
    return t.changeTilt(kTilt).changeReferenceProjected(
        centre, QPointF(kScreen.width() / 2.0, kScreen.height() * 0.65));
}

// The generated map behind a disk cache and a loader, as the map view has them.
struct MapStack
{
    MapStack()
    {
        static MapCRSEPSG3857 mercator;
        if (!MapCRS::defaultCRS())
            MapCRS::setDefaultCRS(&mercator);
        cache = std::make_unique<TileCache>(dir.filePath("tiles.mbtiles"), 512LL << 20);
        newLoader();
    }
    void newLoader()
    {
        renderer.reset();
        loader = std::make_unique<TileLoader>(&source, cache.get());
        renderer = std::make_unique<MapTileRenderer>(loader.get());
    }
    // One frame: lay out, draw, then let the workers' answers in for the rest of
    // the frame's time, as the display's frame loop does.
    void frame(const MapTransform& t)
    {
        ElapsedTimer timer;
        timer.start();
        renderer->prepare(t);
        renderer->render(gfx::RenderState(kScreen), QRect(QPoint(0, 0), kScreen),
                         QRect(QPoint(0, 0), kScreen));
        BenchGLContext::get()->finish();
        gfx::TextureCache::instance()->destroyExpiredTextures();
        do
            QCoreApplication::processEvents(QEventLoop::AllEvents, kFrameMs);
        while (timer.elapsed() < kFrameMs);
    }

    QTemporaryDir dir;
    GeneratedTileSource source;
    std::unique_ptr<TileCache> cache;
    std::unique_ptr<TileLoader> loader;
    std::unique_ptr<MapTileRenderer> renderer;
};

struct PanResult
{
    int frames = 0;
    int framesWithHoles = 0;
    int maxHoles = 0;
    int framesToNoHoles = 0;  // after the camera stopped
    int framesToComplete = 0; // ... until every tile is its own
};

// Pans east across 100 tiles at 100 pixels a frame, then waits for the view to fill.
PanResult pan(MapStack& stack)
{
    PanResult r;
    const QPointF startWorld = MapCRS::defaultCRS()->worldPixelsFromLatLng(kStart, kZoom);
    const int steps = 100 * 256 / 100;
    MapTransform t;
    for (int i = 0; i <= steps; ++i) {
        const LocationCoordinate centre =
            MapCRS::defaultCRS()->latLngFromWorldPixels(startWorld + QPointF(i * 100.0, 0), kZoom);
        t = camera(centre, 1.0);
        stack.frame(t);
        ++r.frames;
        const int holes = stack.renderer->stats().holes;
        r.framesWithHoles += holes > 0;
        r.maxHoles = qMax(r.maxHoles, holes);
    }
    for (int i = 0; i < 600 && !stack.renderer->isComplete(); ++i) {
        stack.frame(t);
        if (stack.renderer->stats().holes > 0)
            r.framesToNoHoles = i + 1;
        r.framesToComplete = i + 1;
    }
    return r;
}

void BM_MapTilesPan(benchmark::State& state)
{
    if (!BenchGLContext::get()) {
        state.SkipWithError("no GL context");
        return;
    }
    BenchGLContext::get()->begin();
    for (auto _ : state) {
        MapStack stack;
        const PanResult first = pan(stack);
        const TileLoader::Stats cold = stack.loader->stats();
        state.counters["frames"] = first.frames;
        state.counters["frames_with_holes"] = first.framesWithHoles;
        state.counters["max_holes"] = first.maxHoles;
        state.counters["stop_frames_to_no_holes"] = first.framesToNoHoles;
        state.counters["stop_frames_to_complete"] = first.framesToComplete;
        state.counters["tiles_loaded"] = cold.sourceLoads;
        state.counters["decode_ms_per_tile"] = cold.decoded ? cold.decodeNs / 1e6 / cold.decoded : 0;

        // The same pan again with the same loader: memory first, then the disk.
        stack.loader->resetStats();
        const PanResult second = pan(stack);
        const TileLoader::Stats warm = stack.loader->stats();
        state.counters["pass2_hit_rate"] =
            warm.requested ? double(warm.memoryHits + warm.cacheHits) / warm.requested : 0;
        state.counters["pass2_frames_with_holes"] = second.framesWithHoles;

        // And once more after a restart: an empty memory, the disk cache as it was.
        stack.cache->flush();
        stack.newLoader();
        const PanResult third = pan(stack);
        const TileLoader::Stats restarted = stack.loader->stats();
        state.counters["restart_disk_hit_rate"] =
            restarted.requested ? double(restarted.cacheHits) / restarted.requested : 0;
        state.counters["restart_frames_with_holes"] = third.framesWithHoles;
        stack.renderer.reset();
        gfx::TextureCache::instance()->destroyExpiredTextures();
    }
}
BENCHMARK(BM_MapTilesPan)->Iterations(1)->Unit(benchmark::kSecond);

// A view of about 150 tiles, every one loaded, drawn by the tile renderer (one
// quad each in one vertex array) and, as the baseline, by the paint engine (one
// textured rectangle per tile under the same perspective transform).
struct WideView
{
    WideView()
    {
        // Both ways keep all 150 tiles on the GPU: neither may pay for uploads.
        gfx::TextureCache::instance()->setMaxSizeMb(96);
        ScopedConfigOverride textures("maps/tile_textures", 400);
        ScopedConfigOverride uploads("maps/tile_uploads_per_frame", 400);
        for (double s = 1.0; s > 0.2; s -= 0.01) {
            t = camera(kStart, s);
            stack.renderer->prepare(t);
            if (stack.renderer->stats().visible >= 150)
                break;
        }
        for (int i = 0; i < 600 && !stack.renderer->isComplete(); ++i)
            stack.frame(t);
    }
    ~WideView() { gfx::TextureCache::instance()->setMaxSizeMb(gfx::TextureCacheSize.value()); }
    MapStack stack;
    MapTransform t;
};

void BM_MapTiles150Renderer(benchmark::State& state)
{
    if (!BenchGLContext::get()) {
        state.SkipWithError("no GL context");
        return;
    }
    BenchGLContext::get()->begin();
    WideView view;
    GLDrawCounter::reset();
    for (auto _ : state) {
        gfx::GraphicsPaintDevice device(kScreen);
        view.stack.renderer->prepare(view.t);
        device.engine()->drawWithCustomRenderer(view.stack.renderer.get(), QRect(QPoint(0, 0), kScreen),
                                                QRect(QPoint(0, 0), kScreen), true);
        auto list = device.engine()->createDisplayList();
        list->optimize();
        list->render(gfx::RenderState(kScreen));
        BenchGLContext::get()->finish();
    }
    state.counters["visible"] = view.stack.renderer->stats().visible;
    state.counters["complete"] = view.stack.renderer->isComplete();
    state.counters["draws"] = double(GLDrawCounter::draws()) / double(state.iterations());
}
BENCHMARK(BM_MapTiles150Renderer)->Unit(benchmark::kMillisecond);

void BM_MapTiles150PaintEngineBaseline(benchmark::State& state)
{
    if (!BenchGLContext::get()) {
        state.SkipWithError("no GL context");
        return;
    }
    BenchGLContext::get()->begin();
    WideView view;
    GLDrawCounter::reset();
    for (auto _ : state) {
        gfx::GraphicsPaintDevice device(kScreen);
        view.stack.renderer->prepare(view.t);
        {
            QPainter painter(&device);
            view.stack.renderer->paint(painter, QRect(QPoint(0, 0), kScreen));
        }
        auto list = device.engine()->createDisplayList();
        list->optimize();
        list->render(gfx::RenderState(kScreen));
        BenchGLContext::get()->finish();
    }
    state.counters["visible"] = view.stack.renderer->stats().visible;
    state.counters["draws"] = double(GLDrawCounter::draws()) / double(state.iterations());
}
BENCHMARK(BM_MapTiles150PaintEngineBaseline)->Unit(benchmark::kMillisecond);

} // namespace
