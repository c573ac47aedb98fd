#include <DemoScene.h>
#include <DisplayDevice.h>
#include <DisplayDeviceWidget.h>
#include <LabelView.h>
#include <ScopedConfigOverride.h>

#include <QCoreApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTest>
#include <benchmark/benchmark.h>

namespace {

// The demo screen at 1280x800 with its animations stopped, shown once for all
// frame benchmarks. Each frame is timed up to the end of the GPU work.
class DemoScreen
{
public:
    static DemoScreen* get()
    {
        static DemoScreen* screen = nullptr;
        if (!screen) {
            screen = new DemoScreen;
            qAddPostRoutine([] {
                delete screen;
                screen = nullptr;
            });
        }
        return screen->mDevice.hasWindow() ? screen : nullptr;
    }

    void frame()
    {
        mDevice.doTick();
        QOpenGLContext::currentContext()->functions()->glFinish();
    }

    DisplayDevice mDevice{1280, 800};
    DemoScene mScene{&mDevice};

private:
    DemoScreen()
    {
        if (!mDevice.hasWindow())
            return;
        mDevice.timer()->stop();
        mScene.freeze();
        mDevice.setVisible(true);
        QTest::qWaitForWindowExposed(mDevice.widget());
        frame();
    }
};

void BM_DisplayDeviceIdleFrame(benchmark::State& state)
{
    DemoScreen* screen = DemoScreen::get();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    screen->frame();
    for (auto _ : state)
        screen->frame();
}
BENCHMARK(BM_DisplayDeviceIdleFrame)->Unit(benchmark::kMicrosecond);

// The clock label changes: one 160 x 48 rectangle is rendered and composited.
void BM_DisplayDeviceSmallDirtyFrame(benchmark::State& state)
{
    DemoScreen* screen = DemoScreen::get();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    for (auto _ : state) {
        screen->mScene.clock()->update();
        screen->frame();
    }
}
BENCHMARK(BM_DisplayDeviceSmallDirtyFrame)->Unit(benchmark::kMicrosecond);

// Every layer re-rendered whole and the whole screen composited.
void BM_DisplayDeviceFullRedraw(benchmark::State& state)
{
    DemoScreen* screen = DemoScreen::get();
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
    DemoScreen* screen = DemoScreen::get();
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
