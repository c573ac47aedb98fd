#include "BenchScreen.h"

#include <CentreDisplay.h>
#include <ScopedConfigOverride.h>
#include <StatusBar.h>
#include <StyleManager.h>
#include <control/Label.h>

#include <benchmark/benchmark.h>
#include <memory>

namespace {

// The demo's home screen at 1280x800 with its animations stopped, shown once for
// all frame benchmarks.
class DemoScreen : public BenchScreen
{
public:
    std::unique_ptr<CentreDisplay> mScene;

private:
    friend class BenchScreen;
    DemoScreen()
    {
        if (!mDevice.hasWindow())
            return;
        StyleManager::registerOptionalStyleOverrideName(QStringLiteral("demo"));
        StyleManager::instance()->loadConfiguration();
        mScene = std::make_unique<CentreDisplay>(&mDevice, QStringLiteral("home"));
        mScene->freeze();
        frame();
    }
};

void BM_DisplayDeviceIdleFrame(benchmark::State& state)
{
    DemoScreen* screen = BenchScreen::get<DemoScreen>();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    screen->frame();
    for (auto _ : state)
        screen->frame();
}
BENCHMARK(BM_DisplayDeviceIdleFrame)->Unit(benchmark::kMicrosecond);

// The clock label changes: one small rectangle is rendered and composited.
void BM_DisplayDeviceSmallDirtyFrame(benchmark::State& state)
{
    DemoScreen* screen = BenchScreen::get<DemoScreen>();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    for (auto _ : state) {
        screen->mScene->statusBar()->clock()->update();
        screen->frame();
    }
}
BENCHMARK(BM_DisplayDeviceSmallDirtyFrame)->Unit(benchmark::kMicrosecond);

// Every layer re-rendered whole and the whole screen composited.
void BM_DisplayDeviceFullRedraw(benchmark::State& state)
{
    DemoScreen* screen = BenchScreen::get<DemoScreen>();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    for (auto _ : state) {
        screen->mDevice.markDirtyRectsForRendering(true, true);
        screen->frame();
    }
}
BENCHMARK(BM_DisplayDeviceFullRedraw)->Unit(benchmark::kMicrosecond);

// The same full redraw with every layer painted by Qt's own GL paint engine: the
// baseline for the framework's engine.
void BM_DisplayDeviceFullRedrawQtEngine(benchmark::State& state)
{
    DemoScreen* screen = BenchScreen::get<DemoScreen>();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    ScopedConfigOverride qt("ui/qt_paint_engine", true);
    for (auto _ : state) {
        screen->mDevice.markDirtyRectsForRendering(true, true);
        screen->frame();
    }
}
BENCHMARK(BM_DisplayDeviceFullRedrawQtEngine)->Unit(benchmark::kMicrosecond);

} // namespace
