#include "CssLayout.h"
#include "DisplayDevice.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <ctime>
#include <functional>
#include <map>
#include <memory>
#include <vector>

// Flex layout of trees of 1,000 and 10,000 views: rows and columns nested five deep
// on a 1920x1200 screen, with fixed, flexible and measured (wrapping text) leaves.
// A full pass through the views is set against the same tree as bare engine nodes
// laid out with layoutNode directly; one leaf's width change is set against the full
// pass.
namespace {

constexpr int kDepth = 5;

// Wraps text of a given length: what a label's measure costs without the font.
QSizeF wrappedSize(double length, double width)
{
    if (width < 0 || width >= length)
        return QSizeF(length, 16);
    const double lines = width > 1 ? std::ceil(length / width) : length;
    return QSizeF(width, 16 * lines);
}

class BenchText : public DisplayView
{
public:
    BenchText(DisplayView* parent, double length) : DisplayView(parent, "text"), length(length)
    {
        cssLayout()->setOption(CssLayout::Measure, true);
    }
    QSizeF naturalSize(double width) override { return wrappedSize(length, width); }
    double length;
};

// The same tree as engine nodes, children in arrays, nothing cached between passes.
struct BareNode
{
    css_node_t* node = new_css_node();
    std::vector<BareNode*> children;
    double textLength = -1;
    DisplayView* view = nullptr; // the view it mirrors, to compare the results

    BareNode()
    {
        node->context = this;
        node->get_child = [](void* context, int i) {
            return static_cast<BareNode*>(context)->children[size_t(i)]->node;
        };
        node->is_dirty = [](void*) {
            return true;
        };
    }
    ~BareNode()
    {
        for (BareNode* child : children)
            delete child;
        free_css_node(node);
    }
    // What the engine expects of a node before a fresh layout.
    void reset()
    {
        node->layout.dimensions[CSS_WIDTH] = CSS_UNDEFINED;
        node->layout.dimensions[CSS_HEIGHT] = CSS_UNDEFINED;
        for (float& p : node->layout.position)
            p = 0;
        for (BareNode* child : children)
            child->reset();
    }
    bool sameResultsAsViews() const
    {
        const css_layout_t& l = node->layout;
        if (QRectF(l.position[CSS_LEFT], l.position[CSS_TOP], l.dimensions[CSS_WIDTH],
                   l.dimensions[CSS_HEIGHT]) != view->layoutResultRect())
            return false;
        for (const BareNode* child : children) {
            if (!child->sameResultsAsViews())
                return false;
        }
        return true;
    }
};

struct FlexScene
{
    std::unique_ptr<DisplayDevice> device;
    DisplayView* root = nullptr;
    std::vector<DisplayView*> views;
    DisplayView* changingLeaf = nullptr;
    std::unique_ptr<BareNode> bare;

    static FlexScene& instance(int count)
    {
        static std::map<int, std::unique_ptr<FlexScene>> scenes;
        std::unique_ptr<FlexScene>& scene = scenes[count];
        if (!scene)
            scene.reset(new FlexScene(count));
        return *scene;
    }

    void layoutThroughViews()
    {
        root->queueForLayout();
        device->processDeferredLayouts();
    }

    void markAllDirty()
    {
        for (DisplayView* view : views)
            view->markLayoutDirty();
    }

private:
    explicit FlexScene(int count) : device(std::make_unique<DisplayDevice>(1920, 1200))
    {
        // The shape level by level, so that every branch is as deep; the views are then
        // made depth first, the way screens are built.
        struct Place
        {
            int depth;
            int serial;
            std::vector<int> children;
        };
        std::vector<Place> shape(1, Place{0, 0, {}});
        const int branching = int(std::ceil(std::pow(double(count), 1.0 / kDepth)));
        std::vector<int> level = {0};
        for (int depth = 1; depth <= kDepth && int(shape.size()) < count; ++depth) {
            std::vector<int> next;
            for (int parent : level) {
                for (int i = 0; i < branching && int(shape.size()) < count; ++i) {
                    const int index = int(shape.size());
                    shape.push_back(Place{depth, index, {}});
                    shape[size_t(parent)].children.push_back(index);
                    next.push_back(index);
                }
            }
            level = std::move(next);
        }

        root = new DisplayView(device->views(), "root");
        root->setCssSize(QSizeF(1920, 1200));
        root->setCssFlexDirection(CSS_FLEX_DIRECTION_ROW);
        views.push_back(root);
        std::vector<DisplayView*> leaves;
        const std::function<void(const Place&, DisplayView*)> create = [&](const Place& place,
                                                                           DisplayView* view) {
            for (int index : place.children) {
                const Place& at = shape[size_t(index)];
                DisplayView* child = at.depth == kDepth && at.serial % 4 == 0
                                         ? new BenchText(view, 30 + at.serial % 90)
                                         : new DisplayView(view, "box");
                style(child, at.depth, at.serial);
                views.push_back(child);
                if (at.children.empty())
                    leaves.push_back(child);
                create(at, child);
            }
        };
        create(shape.front(), root);
        changingLeaf = leaves[leaves.size() / 2 + 1];
        changingLeaf->setCssFlex(0);
        changingLeaf->setCssWidth(20);
        layoutThroughViews();
        bare.reset(mirror(root));
    }

    static void style(DisplayView* view, int depth, int serial)
    {
        view->setCssFlexDirection(depth % 2 ? CSS_FLEX_DIRECTION_COLUMN : CSS_FLEX_DIRECTION_ROW);
        if (depth < kDepth) {
            view->setCssPadding(Padding(2));
            view->setCssMargin(Padding(1));
            view->setCssFlex(1);
            if (serial % 3 == 0)
                view->setCssJustifyContent(CSS_JUSTIFY_SPACE_BETWEEN);
            if (serial % 5 == 0)
                view->setCssAlignItems(CSS_ALIGN_CENTER);
            return;
        }
        switch (serial % 4) {
        case 0: // measured text
            break;
        case 1:
            view->setCssFlex(1);
            break;
        default:
            view->setCssSize(QSizeF(8 + serial % 12, 6 + serial % 10));
            break;
        }
    }

    static BareNode* mirror(DisplayView* view)
    {
        BareNode* node = new BareNode;
        node->view = view;
        CssLayout* css = view->cssLayout();
        node->node->style = css->node()->style;
        if (auto* text = dynamic_cast<BenchText*>(view)) {
            node->textLength = text->length;
            node->node->measure = [](void* context, float width) {
                const QSizeF size = wrappedSize(static_cast<BareNode*>(context)->textLength,
                                                std::isnan(width) ? -1.0 : std::max(0.0f, width));
                css_dim_t dim;
                dim.dimensions[CSS_WIDTH] = float(size.width());
                dim.dimensions[CSS_HEIGHT] = float(size.height());
                return dim;
            };
        }
        for (DisplayView* child : css->cachedChildren())
            node->children.push_back(mirror(child));
        node->node->children_count = int(node->children.size());
        return node;
    }
};

} // namespace

// Every view marked dirty and the whole tree laid out and committed in one deferred
// pass; the results are the same each time, so nothing moves.
static void BM_FlexFullPassViews(benchmark::State& state)
{
    FlexScene& scene = FlexScene::instance(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        scene.markAllDirty();
        state.ResumeTiming();
        scene.layoutThroughViews();
    }
    state.counters["views"] = double(scene.views.size());
}
BENCHMARK(BM_FlexFullPassViews)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// Baseline: the same tree as bare engine nodes, reset and laid out with layoutNode.
static void BM_FlexFullPassBare(benchmark::State& state)
{
    FlexScene& scene = FlexScene::instance(int(state.range(0)));
    BareNode& bare = *scene.bare;
    for (auto _ : state) {
        bare.reset();
        layoutNode(bare.node, CSS_UNDEFINED, CSS_DIRECTION_INHERIT);
    }
    // The two trees must agree, or the comparison means nothing.
    if (!bare.sameResultsAsViews())
        state.SkipWithError("the bare tree's results differ from the views'");
}
BENCHMARK(BM_FlexFullPassBare)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// A full pass in which every view moves: the screen alternates between two widths.
static void BM_FlexFullPassViewsMoving(benchmark::State& state)
{
    FlexScene& scene = FlexScene::instance(int(state.range(0)));
    bool narrow = false;
    for (auto _ : state) {
        state.PauseTiming();
        scene.markAllDirty();
        narrow = !narrow;
        scene.root->setCssWidth(narrow ? 1900 : 1920);
        scene.device->takeDirtyRegions(nullptr, nullptr);
        state.ResumeTiming();
        scene.layoutThroughViews();
    }
    scene.root->setCssWidth(1920);
    scene.layoutThroughViews();
}
BENCHMARK(BM_FlexFullPassViewsMoving)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// One leaf's width changes: the pass runs from the top of its tree, and what did not
// change comes from the engine's cache.
static void BM_FlexIncrementalLeaf(benchmark::State& state)
{
    FlexScene& scene = FlexScene::instance(int(state.range(0)));
    bool wide = false;
    for (auto _ : state) {
        wide = !wide;
        scene.changingLeaf->setCssWidth(wide ? 26 : 20);
        scene.layoutThroughViews();
    }
    scene.changingLeaf->setCssWidth(20);
    scene.layoutThroughViews();
}
BENCHMARK(BM_FlexIncrementalLeaf)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

namespace {
double threadSeconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}
} // namespace

// The ratios of the goals, measured side by side in every iteration so that both
// sides meet the same machine: the full pass through the views over the bare engine's,
// and one leaf's change over the full pass through the views (thread CPU time).
static void BM_FlexRatios(benchmark::State& state)
{
    FlexScene& scene = FlexScene::instance(int(state.range(0)));
    BareNode& bare = *scene.bare;
    double bareTime = 0;
    double viewsTime = 0;
    double leafTime = 0;
    bool wide = false;
    for (auto _ : state) {
        scene.markAllDirty();
        double start = threadSeconds();
        scene.layoutThroughViews();
        viewsTime += threadSeconds() - start;

        start = threadSeconds();
        bare.reset();
        layoutNode(bare.node, CSS_UNDEFINED, CSS_DIRECTION_INHERIT);
        bareTime += threadSeconds() - start;

        wide = !wide;
        start = threadSeconds();
        scene.changingLeaf->setCssWidth(wide ? 26 : 20);
        scene.layoutThroughViews();
        leafTime += threadSeconds() - start;
    }
    scene.changingLeaf->setCssWidth(20);
    scene.layoutThroughViews();
    const double iterations = double(state.iterations());
    state.counters["bare_ms"] = bareTime * 1000 / iterations;
    state.counters["views_ms"] = viewsTime * 1000 / iterations;
    state.counters["leaf_us"] = leafTime * 1e6 / iterations;
    state.counters["views_over_bare"] = viewsTime / bareTime;
    state.counters["leaf_over_full"] = leafTime / viewsTime;
}
BENCHMARK(BM_FlexRatios)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
