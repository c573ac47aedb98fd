#include "DisplayDevice.h"
#include "DisplayViewEffect.h"
#include "LogCapture.h"
#include "TouchOwnership.h"
#include "support/QtPrinters.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {
class VisibilityRecorder : public DisplayView
{
public:
    using DisplayView::DisplayView;
    void visibilityChanged(DisplayView* view) override
    {
        heard.append(view);
        DisplayView::visibilityChanged(view);
    }
    QList<DisplayView*> heard;
};

class FakeTouches : public TouchOwnership
{
public:
    bool viewHasTouch(DisplayView* view, bool) override { return owners.contains(view); }
    void cancelTouchEvents(DisplayView* view) override { canceled.append(view); }
    void transferTouch(int, DisplayView*) override {}
    void processEvents() override {}
    QList<DisplayView*> owners;
    QList<DisplayView*> canceled;
};

QRegion takeReveal(DisplayDevice& device)
{
    QRegion render;
    device.takeDirtyRegions(&render, nullptr);
    return render;
}
} // namespace

TEST(Visibility, AncestorsAndStopView)
{
    DisplayView top(nullptr, "top");
    DisplayView* middle = new DisplayView(&top, "middle");
    DisplayView* leaf = new DisplayView(middle, "leaf");
    EXPECT_TRUE(leaf->isVisible(nullptr));
    middle->hide();
    EXPECT_FALSE(leaf->isVisible(nullptr)); // its own flag is still set
    EXPECT_TRUE(leaf->visibleFlag());
    EXPECT_TRUE(leaf->isVisible(leaf));
    EXPECT_FALSE(leaf->isVisible(middle));
    middle->show();
    top.hide();
    EXPECT_TRUE(leaf->isVisible(middle)); // the walk stops before the hidden top
    EXPECT_FALSE(leaf->isVisible(&top));
    leaf->hide();
    EXPECT_FALSE(leaf->isVisible(leaf));
}

TEST(Visibility, ShowReportsToSignalDescendantsAndTouches)
{
    DisplayDevice device(100, 100);
    FakeTouches touches;
    device.setTouchOwnership(&touches);
    VisibilityRecorder* parent = new VisibilityRecorder(device.views(), "parent");
    VisibilityRecorder* child = new VisibilityRecorder(parent, "child");
    VisibilityRecorder* grandchild = new VisibilityRecorder(child, "grandchild");
    QSignalSpy flag(parent, SIGNAL(visibleFlagChanged(DisplayView*)));

    parent->show(true); // already shown
    EXPECT_EQ(flag.count(), 0);
    parent->hide();
    EXPECT_EQ(flag.count(), 1);
    EXPECT_EQ(grandchild->heard, QList<DisplayView*>({parent}));
    EXPECT_EQ(child->heard, QList<DisplayView*>({parent}));
    EXPECT_EQ(touches.canceled, QList<DisplayView*>({parent}));
    parent->show();
    EXPECT_EQ(touches.canceled.size(), 1);
    EXPECT_EQ(grandchild->heard.size(), 2);
    device.setTouchOwnership(nullptr);
}

struct Invalidation : ::testing::Test
{
    DisplayDevice device{800, 600};
    DisplayView* layer = new DisplayView(device.views(), "layer");
    DisplayView* leaf = new DisplayView(layer, "leaf");

    Invalidation()
    {
        layer->moveTo(100, 50);
        layer->resizeTo(200, 100);
        leaf->moveTo(10, 10);
        leaf->resizeTo(20, 20);
        clear();
    }
    void clear()
    {
        takeReveal(device);
        device.layer()->takeDirtyRegion();
        if (layer->layer())
            layer->layer()->takeDirtyRegion();
    }
};

TEST_F(Invalidation, ClimbsToTheRootBufferAndTheDevice)
{
    QSignalSpy leafSpy(leaf, SIGNAL(updated(DisplayView*, QRect)));
    QSignalSpy layerSpy(layer, SIGNAL(updated(DisplayView*, QRect)));
    leaf->update(QRect(0, 0, 5, 5));
    ASSERT_EQ(leafSpy.count(), 1);
    EXPECT_EQ(leafSpy.first().at(1).toRect(), QRect(0, 0, 5, 5));
    ASSERT_EQ(layerSpy.count(), 1);
    EXPECT_EQ(layerSpy.first().at(1).toRect(), QRect(10, 10, 5, 5));
    EXPECT_EQ(device.layer()->dirtyRegion(), QRegion(110, 60, 5, 5));
    EXPECT_EQ(takeReveal(device), QRegion(110, 60, 5, 5));
    EXPECT_TRUE(device.frameNeeded() == false);

    // Clipped to the view's own bounds on the way.
    leaf->update(QRect(15, 15, 100, 100));
    EXPECT_EQ(takeReveal(device), QRegion(125, 75, 5, 5));
    leaf->update(QRect(40, 40, 5, 5));
    leaf->update(QRect());
    EXPECT_TRUE(takeReveal(device).isEmpty());
}

TEST_F(Invalidation, StopsAtTheNearestLayer)
{
    layer->setUseLayer(true);
    clear();
    QSignalSpy containerSpy(device.views(), SIGNAL(updated(DisplayView*, QRect)));
    leaf->update(QRect(0, 0, 5, 5));
    EXPECT_EQ(layer->layer()->dirtyRegion(), QRegion(10, 10, 5, 5));
    EXPECT_TRUE(device.layer()->dirtyRegion().isEmpty());
    EXPECT_EQ(containerSpy.count(), 0);
    EXPECT_EQ(takeReveal(device), QRegion(110, 60, 5, 5)); // recomposited on screen

    // A transformed layer reveals where it shows, not where it lies.
    QMatrix4x4 twice;
    twice.scale(2);
    layer->setLayerTransform(twice);
    clear();
    leaf->update(QRect(0, 0, 5, 5));
    EXPECT_EQ(takeReveal(device), QRegion(120, 70, 10, 10));

    // A turned layer touches pixels in part along its slanted edges: they are damaged too.
    QMatrix4x4 turned;
    turned.rotate(30, 0, 0, 1);
    layer->setLayerTransform(turned);
    clear();
    leaf->update(QRect(0, 0, 5, 5));
    const QRectF shown = turned.mapRect(QRectF(10, 10, 5, 5)).translated(100, 50);
    EXPECT_TRUE(QRectF(takeReveal(device).boundingRect()).contains(shown));
}

TEST_F(Invalidation, SuppressedAndDetachedViews)
{
    leaf->setUpdateBehavior(DisplayView::NoUpdates, true);
    leaf->update();
    EXPECT_TRUE(takeReveal(device).isEmpty());
    leaf->setUpdateBehavior(DisplayView::NoUpdates, false);

    // Without a device nothing is revealed anywhere, and nothing breaks.
    DisplayView detached(nullptr, "detached");
    detached.resizeTo(10, 10);
    DisplayView* child = new DisplayView(&detached, "child");
    child->resizeTo(5, 5);
    QSignalSpy spy(&detached, SIGNAL(updated(DisplayView*, QRect)));
    child->update();
    EXPECT_EQ(spy.count(), 1);
    detached.hide();
    spy.clear();
    child->update();
    EXPECT_EQ(spy.count(), 0);
}

TEST_F(Invalidation, CompositingWithoutAParentLayerIsReported)
{
    leaf->setUseLayer(true);
    leaf->setCompositingBehavior(DisplayView::CompositeIntoParentLayer, true);
    LogCapture capture;
    leaf->update();
    EXPECT_EQ(capture.assertions(),
              QStringList("View doesn't have parent to composite View: DisplayDevice/views/layer/leaf"));
    layer->setUseLayer(true);
    capture.clear();
    leaf->update();
    EXPECT_TRUE(capture.assertions().isEmpty());
}

TEST_F(Invalidation, LayerOperationsNeedALayer)
{
    LogCapture capture;
    layer->setLayoutScale(2.0);
    layer->setCompositeNestedLayers(true);
    layer->setLayerTransform(QMatrix4x4());
    class Blur : public DisplayViewEffect
    {
        void apply() override {}
    } blur;
    layer->setEffect(&blur);
    EXPECT_EQ(capture.assertions(),
              QStringList({"Cannot use setLayoutScale on views that are not layers",
                           "Cannot composite nested layers if this view is not a layer.",
                           "Transform ignored on view since it's not a layer View: DisplayDevice/views/layer",
                           "Cannot set an effect on a view that does not use a layer"}));
    EXPECT_EQ(layer->effect(), nullptr);

    layer->setUseLayer(true);
    capture.clear();
    layer->setLayoutScale(0);
    layer->resizeTo(201, 100);
    layer->setLayoutScale(1.25); // 251.25 wide
    EXPECT_EQ(capture.assertions(), QStringList({"scale != 0", "fraction == 0.5 || fraction == 0"}));
    EXPECT_EQ(capture.records().at(1).condition, "fraction == 0.5 || fraction == 0");
    EXPECT_EQ(layer->layoutScale(), 1.0);
    layer->setLayoutScale(1.5); // 301.5 by 150
    EXPECT_EQ(layer->layoutScale(), 1.5);
    layer->setEffect(&blur);
    EXPECT_EQ(blur.sourceView(), layer);
    EXPECT_EQ(layer->layerView(), layer);
    EXPECT_EQ(leaf->layerView(), layer);
}

TEST(DisplayDevice, RevealIsPaddedToTheWindowScale)
{
    DisplayDevice device(100, 100);
    const QRect rect(QPoint(5, 5), QPoint(10, 10));
    EXPECT_EQ(device.padRevealRect(rect), rect);
    DisplayDevice::windowScale = 2.0;
    EXPECT_EQ(device.padRevealRect(rect), QRect(QPoint(4, 4), QPoint(15, 15)));
    DisplayDevice::windowScale = 0.4; // rounds to 0: unchanged
    EXPECT_EQ(device.padRevealRect(rect), rect);
    DisplayDevice::windowScale = 1.0;

    device.takeDirtyRegions(nullptr, nullptr);
    EXPECT_FALSE(device.frameNeeded());
    device.reveal();
    EXPECT_TRUE(device.frameNeeded());
    QRegion render, composite;
    device.takeDirtyRegions(&render, &composite);
    EXPECT_EQ(render, QRegion(0, 0, 100, 100));
    EXPECT_EQ(composite, render);
}

TEST(DisplayDevice, TicksReachEveryViewDepthFirst)
{
    class Ticking : public DisplayView
    {
    public:
        Ticking(DisplayView* parent, const char* name, QStringList* log) : DisplayView(parent, name), log(log)
        {}
        void tick() override { log->append(viewName()); }
        void tick1s() override { log->append(viewName() + "1s"); }
        QStringList* log;
    };
    QStringList log;
    DisplayDevice device(100, 100);
    Ticking* a = new Ticking(device.views(), "a", &log);
    new Ticking(a, "a1", &log);
    new Ticking(device.views(), "b", &log);
    device.dispatchTick(&device);
    device.dispatchTick1s(a);
    EXPECT_EQ(log, QStringList({"a", "a1", "b", "a1s", "a11s"}));
}
