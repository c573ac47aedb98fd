#include "support/QtPrinters.h"

#include "DisplayDevice.h"
#include "LayoutAction.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"

#include <functional>
#include <gtest/gtest.h>

namespace {
// A layout that records what the view tells it and runs a given pass.
class ScriptedLayout : public DisplayView::LayoutImpl
{
public:
    explicit ScriptedLayout(DisplayView* owner) : owner(owner), start(owner) {}

    QSizeF size() override { return owner->size(); }
    QPointF topLeft() override { return QPointF(owner->x(), owner->y()); }
    void setSize(const QSizeF&) override {}
    void setTopLeft(const QPointF&) override {}
    void layoutPropertyChanged(DisplayView::LayoutProperty property) override { properties.append(property); }
    void childLayoutPropertyChanged(DisplayView*, DisplayView::LayoutProperty) override {}
    void childLayoutDirty(DisplayView*) override {}
    bool isFixedSize() override { return false; }
    void childAdded(DisplayView* child) override { events.append("added " + child->viewName()); }
    void childRemoved(DisplayView* child) override { events.append("removed " + child->viewName()); }
    void childOrderChanged(DisplayView* child) override { events.append("order " + child->viewName()); }
    void childrenCleared() override { events.append("cleared"); }
    DisplayView* viewToStartLayout() override { return start; }
    void layout() override
    {
        ++passes;
        if (pass)
            pass();
    }
    void layoutMarkedDirty() override { ++dirtied; }
    LayoutImpl* cloneForPlaceholder(DisplayView* placeholder) override
    {
        return new ScriptedLayout(placeholder);
    }
    bool supportsLayoutAnimations() override { return true; }

    DisplayView* owner;
    DisplayView* start;
    std::function<void()> pass;
    QList<DisplayView::LayoutProperty> properties;
    QStringList events;
    int passes = 0;
    int dirtied = 0;
};

struct Layout : ::testing::Test
{
    DisplayDevice device{400, 300};
    DisplayView* box = new DisplayView(device.views(), "box");
    ScriptedLayout* impl = new ScriptedLayout(box);
    DisplayView* child = new DisplayView(box, "child");

    Layout()
    {
        box->setEnableDeferredLayout(true);
        box->setLayoutImpl(impl);
        device.processDeferredLayouts();
        impl->passes = 0;
    }
};

class Mover : public DisplayView
{
public:
    using DisplayView::DisplayView;
    std::function<void()> onMoved, onResized;
    void moved() override
    {
        if (onMoved)
            onMoved();
    }
    void resized() override
    {
        if (onResized)
            onResized();
    }
};
} // namespace

TEST_F(Layout, DeferredPassRunsOnceAtTheFrameAndPlacesResults)
{
    impl->pass = [this] {
        child->setLayoutResultRect(QRectF(10, 20, 30, 40));
    };
    box->hide();
    box->show();
    EXPECT_TRUE(box->isLayoutDirty());
    EXPECT_EQ(device.deferredLayoutCount(), 1); // queued once for both changes
    EXPECT_EQ(impl->properties, QList<DisplayView::LayoutProperty>(
                                    {DisplayView::VisibilityProperty, DisplayView::VisibilityProperty}));
    EXPECT_EQ(impl->passes, 0);
    device.startFrame();
    EXPECT_EQ(impl->passes, 1);
    EXPECT_FALSE(box->isLayoutDirty());
    EXPECT_EQ(child->rect(), QRect(10, 20, 30, 40));
    EXPECT_EQ(child->layoutResultRect(), QRectF(10, 20, 30, 40));

    new DisplayView(box, "second");
    child->raise();
    box->clearAllChildren();
    EXPECT_EQ(impl->events,
              QStringList({"added second", "order child", "removed child", "removed second", "cleared"}));
}

TEST_F(Layout, PassesAreBoundedPerFrame)
{
    ScopedConfigOverride bound("ui/max_layout_iterations", 3);
    impl->pass = [this] {
        box->markLayoutDirty();
        box->queueForLayout();
    };
    box->setLayoutMargin(Padding(4));
    LogCapture capture;
    device.processDeferredLayouts();
    EXPECT_EQ(impl->passes, 3);
    EXPECT_EQ(capture.assertions().count("Still dirty after performing layout View: DisplayDevice/views/box"),
              3);
}

TEST_F(Layout, MisuseMessages)
{
    LogCapture capture;
    box->doLayout();
    impl->start = nullptr;
    box->layout(true);
    impl->start = box;
    impl->pass = [this] {
        box->visitForLayout();
    };
    box->layout(true);
    impl->pass = [this] {
        box->layoutPropertyChanged(DisplayView::StyleProperty);
    };
    box->layout(true);
    impl->pass = [this] {
        box->moveTo(5, 5);
        box->resizeTo(5, 5);
    };
    box->layout(true);
    EXPECT_EQ(capture.assertions(),
              QStringList({"doLayout() called while layout not in progress View: DisplayDevice/views/box",
                           "View for starting layout not found View: DisplayDevice/views/box",
                           "Layout already in progress View: DisplayDevice/views/box",
                           "Recursive layout detected View: DisplayDevice/views/box",
                           "Circular layout in moveTo View: DisplayDevice/views/box",
                           "Circular layout in resizeTo View: DisplayDevice/views/box"}));
    EXPECT_EQ(box->rect(), QRect(0, 0, 0, 0));

    capture.clear();
    box->setEnableDeferredLayout(false);
    box->setLayoutMargin(Padding(1));
    box->setFixedSize(true);
    DisplayView plain(nullptr, "plain");
    plain.setFixedSize(true);
    EXPECT_EQ(capture.assertions(),
              QStringList({"Views that use CSS Layout should always have mEnableDeferredLayout set View: "
                           "DisplayDevice/views/box",
                           "Views that use CSS Layout should always have mEnableDeferredLayout set View: "
                           "DisplayDevice/views/box",
                           "Unimplemented View: plain"}));
}

TEST_F(Layout, AnimationsOfLaidOutViewsBelongToTheLayoutAnimator)
{
    ManualClock clock;
    LogCapture capture;
    box->moveTo(50, 50, 1.0);
    EXPECT_EQ(capture.assertions(),
              QStringList("Starting animation outside of layout animator View: DisplayDevice/views/box"));
    EXPECT_EQ(device.animationCount(), 0);

    class Glide : public LayoutAction
    {
    public:
        void apply(DisplayView* view, const QRectF&, const QRectF& to) override
        {
            view->moveTo(int(to.x()), int(to.y()), 1.0, InterpolatedValue::Linear);
        }
    };
    box->setLayoutAction(new Glide, true);
    capture.clear();
    box->setLayoutResultPosition(QPointF(100, 0));
    EXPECT_TRUE(capture.assertions().isEmpty());
    clock.advanceMs(500);
    device.updateAnimations();
    EXPECT_EQ(box->x(), 50);
}

TEST(LayoutRecursion, CallbacksThatReenterAreCaught)
{
    DisplayView parent(nullptr, "parent");
    Mover* mover = new Mover(&parent, "mover");
    ScriptedLayout* impl = new ScriptedLayout(mover);
    mover->setEnableDeferredLayout(true);
    mover->setLayoutImpl(impl);

    LogCapture capture;
    mover->onMoved = [mover] {
        mover->moveTo(int(mover->x()) + 1, 0);
    };
    mover->onResized = [mover] {
        mover->layoutPropertyChanged(DisplayView::SizeProperty);
    };
    mover->setLayoutResultRect(QRectF(10, 0, 20, 20));
    mover->onResized = nullptr;
    mover->onMoved = [mover] {
        mover->layoutPropertyChanged(DisplayView::PositionProperty);
    };
    mover->setLayoutResultPosition(QPointF(30, 0));
    mover->onMoved = nullptr;
    mover->onResized = [mover] {
        mover->setLayoutResultSize(QSizeF(mover->width() + 1, 5));
    };
    mover->setLayoutResultSize(QSizeF(40, 40));
    EXPECT_EQ(capture.assertions(), QStringList({"Recursive moved() detected View: parent/mover",
                                                 "Recursive layout in resized() View: parent/mover",
                                                 "Recursive layout in moved() View: parent/mover",
                                                 "Recursive resized() detected View: parent/mover"}));
    EXPECT_EQ(mover->size(), QSize(41, 5)); // the inner change happened; only its callback was refused
}
