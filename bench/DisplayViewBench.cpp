#include "DisplayDevice.h"

#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <memory>
#include <random>
#include <vector>

// A tree of 10,000 views six levels deep on a 1920x1200 screen, each view filling
// its rectangle, against the same work done without the tree: revealing the rect
// directly, scanning every rect for a hit, and filling the rects with a bare painter.
namespace {

constexpr int kViewCount = 10000;
constexpr int kBranching = 5;
constexpr int kDepth = 6;

class FilledView : public DisplayView
{
public:
    FilledView(DisplayView* parent, QColor color) : DisplayView(parent, "filled"), mColor(color) {}
    void draw(QPainter& painter) override { painter.fillRect(QRect(0, 0, width(), height()), mColor); }

private:
    QColor mColor;
};

struct Scene
{
    std::unique_ptr<DisplayDevice> device;
    std::vector<DisplayView*> views; // creation (and thus paint) order within each parent
    std::vector<DisplayView*> leaves;
    // What the bare painter draws: each view's visible screen rectangle, in paint order.
    std::vector<QRect> paintList;

    static Scene& instance()
    {
        static Scene scene;
        return scene;
    }

private:
    Scene() : device(std::make_unique<DisplayDevice>(1920, 1200))
    {
        std::mt19937 random(4);
        std::vector<DisplayView*> level = {device->views()};
        for (int depth = 0; depth < kDepth && int(views.size()) < kViewCount; ++depth) {
            std::vector<DisplayView*> next;
            for (DisplayView* parent : level) {
                for (int i = 0; i < kBranching && int(views.size()) < kViewCount; ++i) {
                    const QColor color = QColor::fromRgb(random() & 0xffffff);
                    FilledView* view = new FilledView(parent, color);
                    const int w = std::max(4, parent->width() * 2 / 5);
                    const int h = std::max(4, parent->height() * 2 / 5);
                    view->resizeTo(w, h);
                    view->moveTo(int(random() % unsigned(std::max(1, parent->width() - w / 2))),
                                 int(random() % unsigned(std::max(1, parent->height() - h / 2))));
                    views.push_back(view);
                    next.push_back(view);
                }
            }
            level = std::move(next);
        }
        for (DisplayView* view : views) {
            if (view->children().isEmpty())
                leaves.push_back(view);
        }
        collectPaintList(device->views(), QPoint(), QRect(QPoint(), device->size()));
    }

    void collectPaintList(DisplayView* parent, QPoint origin, QRect clip)
    {
        for (DisplayView* child : parent->children().list()) {
            const QRect screen = child->rect().translated(origin) & clip;
            if (screen.isEmpty())
                continue;
            paintList.push_back(screen);
            collectPaintList(child, origin + child->position(), screen);
        }
    }
};

QRect screenRect(DisplayView* view)
{
    return view->relativePositionRect(nullptr);
}

void clearDirt(DisplayDevice& device)
{
    device.takeDirtyRegions(nullptr, nullptr);
    device.layer()->takeDirtyRegion();
}

} // namespace

static void BM_DisplayViewUpdateLeaf(benchmark::State& state)
{
    Scene& scene = Scene::instance();
    size_t i = 0;
    for (auto _ : state) {
        scene.leaves[i++ % scene.leaves.size()]->update();
        clearDirt(*scene.device);
    }
}
BENCHMARK(BM_DisplayViewUpdateLeaf);

// Baseline: the same screen rectangle revealed on the device directly.
static void BM_DisplayViewUpdateLeafBaseline(benchmark::State& state)
{
    Scene& scene = Scene::instance();
    std::vector<QRect> rects;
    for (DisplayView* leaf : scene.leaves)
        rects.push_back(screenRect(leaf));
    size_t i = 0;
    for (auto _ : state) {
        const QRect& rect = rects[i++ % rects.size()];
        scene.device->reveal(rect);
        scene.device->layer()->update(rect);
        clearDirt(*scene.device);
    }
}
BENCHMARK(BM_DisplayViewUpdateLeafBaseline);

static void BM_DisplayViewHitTest(benchmark::State& state)
{
    Scene& scene = Scene::instance();
    std::mt19937 random(7);
    for (auto _ : state)
        benchmark::DoNotOptimize(scene.device->viewAtPoint(QPoint(random() % 1920, random() % 1200)));
}
BENCHMARK(BM_DisplayViewHitTest);

// Baseline: a scan over every view's screen rectangle, topmost (last painted) first.
static void BM_DisplayViewHitTestBaseline(benchmark::State& state)
{
    Scene& scene = Scene::instance();
    std::vector<std::pair<QRect, DisplayView*>> order;
    std::function<void(DisplayView*, QPoint, QRect)> collect = [&](DisplayView* parent, QPoint origin,
                                                                   QRect clip) {
        for (DisplayView* child : parent->children().list()) {
            const QRect screen = child->rect().translated(origin) & clip;
            order.emplace_back(screen, child);
            collect(child, origin + child->position(), screen);
        }
    };
    collect(scene.device->views(), QPoint(), QRect(0, 0, 1920, 1200));
    std::mt19937 random(7);
    for (auto _ : state) {
        const QPoint point(random() % 1920, random() % 1200);
        DisplayView* hit = nullptr;
        for (auto it = order.rbegin(); it != order.rend(); ++it) {
            if (it->first.contains(point)) {
                hit = it->second;
                break;
            }
        }
        benchmark::DoNotOptimize(hit);
    }
}
BENCHMARK(BM_DisplayViewHitTestBaseline);

static void BM_DisplayViewPaint(benchmark::State& state)
{
    Scene& scene = Scene::instance();
    QImage image(1920, 1200, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    for (auto _ : state)
        scene.device->drawViewAndChildren(painter);
    state.counters["views"] = double(scene.views.size());
}
BENCHMARK(BM_DisplayViewPaint)->Unit(benchmark::kMillisecond);

// Baseline: the same visible rectangles filled with a bare QPainter in the same order.
static void BM_DisplayViewPaintBaseline(benchmark::State& state)
{
    Scene& scene = Scene::instance();
    QImage image(1920, 1200, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    std::mt19937 random(4);
    std::vector<QColor> colors;
    for (size_t i = 0; i < scene.paintList.size(); ++i)
        colors.push_back(QColor::fromRgb(random() & 0xffffff));
    for (auto _ : state) {
        for (size_t i = 0; i < scene.paintList.size(); ++i)
            painter.fillRect(scene.paintList[i], colors[i]);
    }
    state.counters["rects"] = double(scene.paintList.size());
}
BENCHMARK(BM_DisplayViewPaintBaseline)->Unit(benchmark::kMillisecond);

// Heap bytes per view, measured by the allocator itself over 10,000 plain views,
// against the bytes of a bare QObject with a parent.
template <typename Make> static double heapBytesPer(Make make)
{
    const size_t before = mallinfo2().uordblks;
    auto* holder = make();
    const size_t after = mallinfo2().uordblks;
    delete holder;
    return double(after - before) / kViewCount;
}

static void BM_DisplayViewHeapBytes(benchmark::State& state)
{
    double viewBytes = 0;
    double objectBytes = 0;
    for (auto _ : state) {
        DisplayView parent(nullptr, "parent");
        viewBytes = heapBytesPer([&parent] {
            auto* group = new DisplayView(&parent, "group");
            for (int i = 0; i < kViewCount; ++i)
                new DisplayView(group, "view");
            return group;
        });
        objectBytes = heapBytesPer([] {
            auto* group = new QObject;
            for (int i = 0; i < kViewCount; ++i)
                new QObject(group);
            return group;
        });
    }
    state.counters["bytes_per_view"] = viewBytes;
    state.counters["bytes_per_qobject"] = objectBytes;
    state.counters["sizeof_view"] = double(sizeof(DisplayView));
    state.counters["view_over_qobject"] = viewBytes / objectBytes;
}
BENCHMARK(BM_DisplayViewHeapBytes)->Iterations(1);
