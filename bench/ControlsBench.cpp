#include "BenchScreen.h"

#include <Skin.h>
#include <StyleManager.h>
#include <control/Button.h>
#include <control/Label.h>
#include <input/touch/MouseTouchDriver.h>
#include <input/touch/TouchDevice.h>

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <memory>

namespace {

// 200 buttons with titles in a 20 x 10 grid on a 1280 x 800 screen, and the same
// grid of plain views with a background colour as the baseline. Frames are timed
// up to the end of the GPU work.
constexpr int kColumns = 20;
constexpr int kRows = 10;
constexpr int kCount = kColumns * kRows;
const QString kButtonStyle = QStringLiteral("Button/Default; FontSize:18; ContentPadding:0,4");

QRect cell(int index)
{
    return QRect((index % kColumns) * 64 + 2, (index / kColumns) * 80 + 4, 60, 72);
}

DisplayView* makeButton(DisplayView* parent, int index)
{
    auto* button = new Button(parent, "button", QStringLiteral("B%1").arg(index), kButtonStyle);
    button->moveTo(cell(index).x(), cell(index).y());
    button->resizeTo(60, 72);
    return button;
}

DisplayView* makePlainView(DisplayView* parent, int index)
{
    auto* view = new DisplayView(parent, "plain");
    view->moveTo(cell(index).x(), cell(index).y());
    view->resizeTo(60, 72);
    view->setBackgroundColor(Skin::parseColor(QStringLiteral("buttonColor")));
    return view;
}

DisplayView* makeBareView(DisplayView* parent, int index)
{
    auto* view = new DisplayView(parent, "bare");
    view->moveTo(cell(index).x(), cell(index).y());
    view->resizeTo(60, 72);
    return view;
}

using Maker = DisplayView* (*)(DisplayView*, int);

class ControlScreen : public BenchScreen
{
public:
    // A fresh container with the whole grid.
    void fill(Maker make)
    {
        clear();
        mGrid = new DisplayView(mDevice.views(), "grid");
        mGrid->resizeTo(1280, 800);
        for (int i = 0; i < kCount; ++i)
            make(mGrid, i);
    }
    void clear()
    {
        delete mGrid;
        mGrid = nullptr;
        frame();
    }
    void finger(bool down, QPoint point)
    {
        TouchDevice::getInstance(&mDevice)->mouseDriver()->queueEvent(0, down, point.x(), point.y());
    }

    DisplayView* mGrid = nullptr;

private:
    friend class BenchScreen;
    ControlScreen()
    {
        if (!mDevice.hasWindow())
            return;
        StyleManager::instance()->initialize();
        mDevice.views()->setBackgroundColor(Skin::parseColor(QStringLiteral("backgroundColor")));
        frame();
    }
};

// The first frame of a freshly built grid: every title laid out, every view
// rendered into the layer and the whole screen composited.
void firstFrame(benchmark::State& state, Maker make)
{
    ControlScreen* screen = BenchScreen::get<ControlScreen>();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    for (auto _ : state) {
        state.PauseTiming();
        screen->fill(make);
        state.ResumeTiming();
        screen->frame();
    }
    screen->clear();
}

void BM_ButtonsFirstFrame(benchmark::State& state)
{
    firstFrame(state, makeButton);
}
BENCHMARK(BM_ButtonsFirstFrame)->Unit(benchmark::kMillisecond);

void BM_PlainViewsFirstFrame(benchmark::State& state)
{
    firstFrame(state, makePlainView);
}
BENCHMARK(BM_PlainViewsFirstFrame)->Unit(benchmark::kMillisecond);

// One button pressed: its rectangle is rendered and composited, nothing else. The
// finger is lifted between iterations (untimed), on the next button each time.
// Counters: the pixels rendered and composited by the press frame.
void BM_ButtonPressFrame(benchmark::State& state)
{
    ControlScreen* screen = BenchScreen::get<ControlScreen>();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    screen->fill(makeButton);
    screen->frame();
    qint64 rendered = 0;
    qint64 composited = 0;
    int press = 0;
    for (auto _ : state) {
        const QPoint at = cell(press++ % kCount).center();
        const DisplayDevice::FrameStats before = screen->mDevice.frameStats();
        screen->finger(true, at);
        screen->frame();
        rendered += screen->mDevice.frameStats().renderedPixels - before.renderedPixels;
        composited += screen->mDevice.frameStats().compositedPixels - before.compositedPixels;
        state.PauseTiming();
        screen->finger(false, at);
        screen->frame();
        state.ResumeTiming();
    }
    state.counters["rendered_px"] = benchmark::Counter(double(rendered), benchmark::Counter::kAvgIterations);
    state.counters["composited_px"] =
        benchmark::Counter(double(composited), benchmark::Counter::kAvgIterations);
    screen->clear();
}
BENCHMARK(BM_ButtonPressFrame)->Unit(benchmark::kMicrosecond);

// Baselines for the press frame on the same screen: a frame where nothing
// changed, and a frame that renders and composites everything.
void BM_ButtonsIdleFrame(benchmark::State& state)
{
    ControlScreen* screen = BenchScreen::get<ControlScreen>();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    screen->fill(makeButton);
    screen->frame();
    for (auto _ : state)
        screen->frame();
    screen->clear();
}
BENCHMARK(BM_ButtonsIdleFrame)->Unit(benchmark::kMicrosecond);

void BM_ButtonsFullRedraw(benchmark::State& state)
{
    ControlScreen* screen = BenchScreen::get<ControlScreen>();
    if (!screen)
        return state.SkipWithError("needs an X display with OpenGL");
    screen->fill(makeButton);
    screen->frame();
    for (auto _ : state) {
        screen->mDevice.markDirtyRectsForRendering(true, true);
        screen->frame();
    }
    screen->clear();
}
BENCHMARK(BM_ButtonsFullRedraw)->Unit(benchmark::kMicrosecond);

// Heap bytes per object, measured with the allocator's own count: after creating
// 1000 of them (styles, shapes and fonts already made once), and after their text
// is laid out as the first frame does. No window is needed.
void heapPerObject(benchmark::State& state, Maker make)
{
    StyleManager::instance()->initialize();
    DisplayView root(nullptr, "root");
    delete make(&root, 0); // shared styles, shapes and fonts exist from here on
    constexpr int kObjects = 1000;
    double created = 0;
    double laidOut = 0;
    for (auto _ : state) {
        auto parent = std::make_unique<DisplayView>(&root, "parent");
        const size_t start = mallinfo2().uordblks;
        for (int i = 0; i < kObjects; ++i)
            make(parent.get(), i);
        const size_t afterCreation = mallinfo2().uordblks;
        for (DisplayView* child : parent->children().list()) {
            if (auto* button = qobject_cast<Button*>(child))
                button->titleLabel()->lineCount();
        }
        const size_t afterLayout = mallinfo2().uordblks;
        created = double(afterCreation - start) / kObjects;
        laidOut = double(afterLayout - start) / kObjects;
    }
    state.counters["bytes_created"] = created;
    state.counters["bytes_laid_out"] = laidOut;
}

void BM_HeapPerButton(benchmark::State& state)
{
    heapPerObject(state, makeButton);
}
BENCHMARK(BM_HeapPerButton)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_HeapPerDisplayView(benchmark::State& state)
{
    heapPerObject(state, makeBareView);
}
BENCHMARK(BM_HeapPerDisplayView)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
