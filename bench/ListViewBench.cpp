#include <DisplayDevice.h>
#include <DisplayDeviceWidget.h>
#include <ManualClock.h>
#include <control/ListDelegate.h>
#include <control/ListView.h>
#include <input/touch/MouseTouchDriver.h>
#include <input/touch/TouchDevice.h>

#include <QCoreApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTest>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <memory>

// A settings-like list of 100,000 rows of 60 pixels, each a filled band with its
// label, against the same content made of one view per row inside a plain
// scrolling view: the path that keeps every row and moves them all.
namespace {

constexpr int kRows = 100000;
constexpr int kRowHeight = 60;

class Row : public DisplayView
{
public:
    explicit Row(DisplayView* parent) : DisplayView(parent, "row") {}
    void bind(int row)
    {
        mText = QStringLiteral("Setting %1").arg(row);
        mColor = row % 2 ? QColor(32, 36, 44) : QColor(26, 30, 37);
        update();
    }
    void draw(QPainter& painter) override
    {
        painter.fillRect(QRect(0, 0, width(), height()), mColor);
        painter.setPen(QColor(220, 226, 232));
        painter.drawText(QRect(24, 0, width() - 48, height()), Qt::AlignVCenter | Qt::AlignLeft, mText);
    }

private:
    QString mText;
    QColor mColor;
};

class Rows : public ListModel
{
public:
    int count() const override { return kRows; }
};

class RowMaker : public ListDelegate
{
public:
    DisplayView* createRow(int, DisplayView* parent) override { return new Row(parent); }
    void bindRow(DisplayView* view, int row) override { static_cast<Row*>(view)->bind(row); }
    int fixedRowHeight() const override { return kRowHeight; }
};

// The rows as one view each under a plain scrolling view.
DisplayView* allRows(int width)
{
    auto* content = new DisplayView(nullptr, "content");
    content->resizeTo(width, kRows * kRowHeight);
    for (int i = 0; i < kRows; ++i) {
        auto* row = new Row(content);
        row->moveTo(0, i * kRowHeight);
        row->resizeTo(width, kRowHeight);
        row->bind(i);
    }
    return content;
}

// A 1280 x 800 screen with one scrolling view filling it, whose frames run 16 ms
// apart on a manual clock. A finger flings the content, one way and then back,
// whenever it comes to rest.
class FlingScreen
{
public:
    FlingScreen(bool recycling)
    {
        if (!mDevice.hasWindow())
            return;
        mDevice.timer()->stop();
        if (recycling) {
            auto* list = new ListView(mDevice.views(), "list");
            list->resizeTo(1280, 800);
            list->setDelegate(&mDelegate);
            list->setModel(&mModel);
            mScroller = list;
        } else {
            mScroller = new ScrollableView(mDevice.views(), "scroller");
            mScroller->resizeTo(1280, 800);
            mScroller->setContent(allRows(1280));
        }
        mScroller->scroll(QPointF(0, kRows * kRowHeight / 2), 0);
        mDevice.setVisible(true);
        if (!QTest::qWaitForWindowExposed(mDevice.widget()))
            mScroller = nullptr;
        else
            frame();
    }
    bool valid() const { return mScroller != nullptr; }
    // Pixels the content moved, over all frames so far.
    qint64 travelled() const { return mTravelled; }

    void frame()
    {
        if (!mScroller->isScrolling() && mStep == 0)
            mStep = 1;
        if (mStep > 0)
            fingerStep();
        const int before = mScroller->contentOffset().y();
        mClock.advanceMs(16);
        mDevice.doTick();
        QOpenGLContext::currentContext()->functions()->glFinish();
        mTravelled += std::abs(mScroller->contentOffset().y() - before);
    }

private:
    // Press, three moves of 160 pixels a frame (10 px/ms), lift.
    void fingerStep()
    {
        const int from = mUp ? 700 : 100, step = mUp ? -160 : 160;
        const int moved = std::min(mStep - 1, 3) * step;
        TouchDevice::getInstance(&mDevice)->mouseDriver()->queueEvent(0, mStep < 5, 640, from + moved);
        if (++mStep > 5) {
            mStep = 0;
            mUp = !mUp;
        }
    }

    ManualClock mClock;
    // The rows' model and delegate outlive the list.
    Rows mModel;
    RowMaker mDelegate;
    DisplayDevice mDevice{1280, 800};
    ScrollableView* mScroller = nullptr;
    int mStep = 0;
    bool mUp = true;
    qint64 mTravelled = 0;
};

void flingFrames(benchmark::State& state, bool recycling)
{
    FlingScreen screen(recycling);
    if (!screen.valid())
        return state.SkipWithError("needs an X display with OpenGL");
    const qint64 start = screen.travelled();
    for (auto _ : state)
        screen.frame();
    state.counters["px_per_frame"] = double(screen.travelled() - start) / double(state.iterations());
}

void BM_ListViewFlingFrame(benchmark::State& state)
{
    flingFrames(state, true);
}
BENCHMARK(BM_ListViewFlingFrame)->Unit(benchmark::kMicrosecond);

// Baseline: every row a view of its own, all moved by the scroll.
void BM_ListViewFlingFrameAllRowsBaseline(benchmark::State& state)
{
    flingFrames(state, false);
}
BENCHMARK(BM_ListViewFlingFrameAllRowsBaseline)->Unit(benchmark::kMicrosecond);

// Heap left behind by scrolling the whole list down and back up in 300-pixel
// steps, after one such round to warm up, against the heap the same rows take as
// one view each.
void BM_ListViewHeapAfterScrollingEndToEnd(benchmark::State& state)
{
    ManualClock clock;
    Rows model;
    RowMaker delegate;
    DisplayView root(nullptr, "root");
    const size_t empty = mallinfo2().uordblks;
    auto* list = new ListView(&root, "list");
    list->resizeTo(1280, 800);
    list->setDelegate(&delegate);
    list->setModel(&model);
    const size_t listBytes = mallinfo2().uordblks - empty;
    auto round = [list] {
        const int end = int(list->scrollMax().y());
        for (int y = 0; y < end; y += 300)
            list->scroll(QPointF(0, 300), 0);
        list->scroll(QPointF(0, -list->contentOffset().y()), 0);
    };
    round();
    long long growth = 0;
    for (auto _ : state) {
        const size_t before = mallinfo2().uordblks;
        round();
        growth = (long long)mallinfo2().uordblks - (long long)before;
    }
    const size_t beforeRows = mallinfo2().uordblks;
    DisplayView* rows = allRows(1280);
    const size_t rowBytes = mallinfo2().uordblks - beforeRows;
    delete rows;
    state.counters["growth_bytes"] = double(growth);
    state.counters["list_bytes"] = double(listBytes);
    state.counters["all_rows_bytes"] = double(rowBytes);
    state.counters["views"] = double(list->createdViewCount());
}
BENCHMARK(BM_ListViewHeapAfterScrollingEndToEnd)->Iterations(1)->Unit(benchmark::kMillisecond);

// A list 1000 high of rows 20 high: fifty rows in view, none beyond. Each step moves
// the content by one pixel: the offset changes, the rows are placed again, the bar
// follows and the view is invalidated.
class FiftyRows : public ListView
{
public:
    explicit FiftyRows(DisplayView* parent) : ListView(parent, "fifty")
    {
        resizeTo(400, 1000);
        setOverscan(0);
    }
    using ListView::verticalHandler;
};

class SmallRows : public RowMaker
{
public:
    int fixedRowHeight() const override { return 20; }
};

struct FiftyRowScene
{
    Rows model;
    SmallRows delegate;
    DisplayDevice device{1280, 1000};
    FiftyRows* list = new FiftyRows(device.views());

    FiftyRowScene()
    {
        device.timer()->stop();
        list->setDelegate(&delegate);
        list->setModel(&model);
        list->scroll(QPointF(0, 10000), 0);
    }
    void clearDirt()
    {
        device.takeDirtyRegions(nullptr, nullptr);
        device.layer()->takeDirtyRegion();
    }
};

void BM_ListViewDoScrollFiftyRows(benchmark::State& state)
{
    FiftyRowScene scene;
    ScrollHandler& handler = scene.list->verticalHandler();
    double value = handler.value();
    int step = 1;
    for (auto _ : state) {
        value -= step;
        step = -step;
        handler.setValue(value);
        scene.list->doScroll();
        scene.clearDirt();
    }
    state.counters["rows"] = double(scene.list->boundRows().size());
}
BENCHMARK(BM_ListViewDoScrollFiftyRows);

// Baseline: the same rows moved one by one, as a list without a content offset
// must place them.
void BM_ListViewDoScrollFiftyRowsMovedBaseline(benchmark::State& state)
{
    FiftyRowScene scene;
    QList<DisplayView*> rows;
    for (int row : scene.list->boundRows())
        rows.append(scene.list->viewForRow(row));
    int step = 1;
    for (auto _ : state) {
        for (DisplayView* row : rows)
            row->moveTo(0, int(row->y()) - step);
        step = -step;
        scene.clearDirt();
    }
    state.counters["rows"] = double(rows.size());
}
BENCHMARK(BM_ListViewDoScrollFiftyRowsMovedBaseline);

} // namespace
