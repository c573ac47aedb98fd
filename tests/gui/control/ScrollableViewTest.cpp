#include "control/ScrollableView.h"
#include "control/ControlBase.h"
#include "control/ScrollBar.h"
#include "support/FingerFixture.h"
#include "support/TouchRecorderView.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// Notes the hooks a subclass gets.
class RecordingScroller : public ScrollableView
{
public:
    using ScrollableView::ScrollableView;
    void aboutToScroll() override { log << QStringLiteral("about"); }
    void doneScrolling() override { log << QStringLiteral("done"); }
    void wasScrolled() override { log << QStringLiteral("scrolled %1").arg(contentOffset().y()); }
    void scrollbarCreated(ScrollBar*) override { log << QStringLiteral("bar"); }
    QStringList take()
    {
        const QStringList taken = log;
        log.clear();
        return taken;
    }
    QStringList log;
};

class Content : public DisplayView
{
public:
    using DisplayView::DisplayView;
    int resizedReceivers() { return receivers(SIGNAL(resized(DisplayView*))); }
};

// A 400 x 300 scroller at (100, 50) on the screen.
struct ScrollableViewTest : FingerFixture
{
    RecordingScroller* scroller = new RecordingScroller(device.views(), "scroller");
    Content* content = new Content(nullptr, "content");
    QStringList touches;

    ScrollableViewTest()
    {
        scroller->moveTo(100, 50);
        scroller->resizeTo(400, 300);
        content->resizeTo(400, 1300);
        scroller->setContent(content);
        scroller->take();
    }
    int offset() const { return scroller->contentOffset().y(); }
};

} // namespace

TEST_F(ScrollableViewTest, TheContentSizeDecidesTheAxesAndTheBar)
{
    EXPECT_EQ(scroller->scrollMax(), QPointF(0, 1000));
    EXPECT_FALSE(scroller->allowHorizontalScrolling());
    EXPECT_TRUE(scroller->allowVerticalScrolling());
    ASSERT_NE(scroller->scrollBar(), nullptr);

    content->resizeTo(400, 300); // exactly the view: nothing to scroll
    EXPECT_EQ(scroller->scrollMax(), QPointF(0, 0));
    EXPECT_FALSE(scroller->allowVerticalScrolling());
    EXPECT_EQ(scroller->scrollBar(), nullptr);

    content->resizeTo(401, 200); // smaller on one axis clamps to 0
    EXPECT_EQ(scroller->scrollMax(), QPointF(1, 0));
    EXPECT_TRUE(scroller->allowHorizontalScrolling());
    EXPECT_FALSE(scroller->allowVerticalScrolling());
    EXPECT_EQ(scroller->scrollBar(), nullptr);
}

TEST_F(ScrollableViewTest, OnlyAVerticalOnlyViewGetsABar)
{
    scroller->setOption(ScrollableView::AxesFollowContent, false);
    scroller->setAllowHorizontalScrolling(true);
    EXPECT_EQ(scroller->scrollBar(), nullptr);
    EXPECT_TRUE(scroller->take().isEmpty());

    scroller->setAllowHorizontalScrolling(false);
    ASSERT_NE(scroller->scrollBar(), nullptr);
    EXPECT_EQ(scroller->take(), QStringList{"bar"});
    EXPECT_EQ(scroller->scrollBar()->parentView(), scroller);
    scroller->setUseScrollBar(true); // already there: no second bar
    EXPECT_TRUE(scroller->take().isEmpty());

    ScrollBar* bar = scroller->scrollBar();
    scroller->setOption(ScrollableView::UseScrollBar, false);
    scroller->setUseScrollBar(true);
    EXPECT_EQ(scroller->scrollBar(), nullptr);
    EXPECT_FALSE(bar->visibleFlag());
    scroller->setOption(ScrollableView::UseScrollBar, true);
    scroller->setAllowVerticalScrolling(false);
    scroller->setUseScrollBar(true);
    EXPECT_EQ(scroller->scrollBar(), nullptr);
}

TEST_F(ScrollableViewTest, OptionAsksForEveryBit)
{
    EXPECT_TRUE(scroller->option(
        ScrollableView::Option(ScrollableView::UseScrollBar | ScrollableView::VerticalScrolling)));
    EXPECT_FALSE(scroller->option(
        ScrollableView::Option(ScrollableView::UseScrollBar | ScrollableView::ResetWhenShown)));
    EXPECT_FALSE(scroller->option(ScrollableView::NoOptions));
    for (auto option :
         {ScrollableView::UseScrollBar, ScrollableView::VerticalScrolling, ScrollableView::AxesFollowContent})
        scroller->setOption(option, false);
    EXPECT_TRUE(scroller->option(ScrollableView::NoOptions));
}

TEST_F(ScrollableViewTest, HalvesRoundTowardsTheEndOfTheContent)
{
    scroller->scroll(QPointF(0, 10.5), 0); // handler -10.5
    EXPECT_EQ(offset(), 11);
    scroller->scroll(QPointF(0, -21), 0); // handler 10.5
    EXPECT_EQ(offset(), -10);
    scroller->scroll(QPointF(0, 0.4), 0); // handler 10.1: floor(-9.6)
    EXPECT_EQ(offset(), -10);
}

TEST_F(ScrollableViewTest, AnImmediateScrollBracketsItsMovementAndEndsInactive)
{
    QSignalSpy active(scroller, SIGNAL(scrollingActiveChanged(bool)));
    QSignalSpy scrolled(scroller, SIGNAL(scrolled()));
    scroller->scroll(QPointF(0, 120), 0);
    EXPECT_EQ(scroller->take(), (QStringList{"about", "scrolled 120", "done"}));
    EXPECT_FALSE(scroller->isScrolling());
    ASSERT_EQ(active.count(), 2);
    EXPECT_TRUE(active[0][0].toBool());
    EXPECT_FALSE(active[1][0].toBool());
    EXPECT_EQ(scrolled.count(), 1);

    // The same offset again moves nothing and reports no scroll.
    scroller->scroll(QPointF(0, 0), 0);
    EXPECT_EQ(scroller->take(), (QStringList{"about", "done"}));
    EXPECT_EQ(scrolled.count(), 1);
}

TEST_F(ScrollableViewTest, AnAnimatedScrollStaysActiveUntilItArrives)
{
    scroller->scroll(QPointF(0, 300), 0.5);
    EXPECT_EQ(scroller->take(), QStringList{"about"});
    EXPECT_TRUE(scroller->isScrolling());
    frames(120);
    EXPECT_EQ(offset(), 300);
    EXPECT_FALSE(scroller->isScrolling());
    EXPECT_EQ(scroller->log.last(), "done");
}

TEST_F(ScrollableViewTest, TheSameContentTwiceNeitherReconnectsNorRecomputes)
{
    scroller->setScrollMax(QPointF(0, 5));
    scroller->setContent(content);
    EXPECT_EQ(scroller->scrollMax(), QPointF(0, 5));
    EXPECT_EQ(content->resizedReceivers(), 1);

    auto* other = new Content(nullptr, "other");
    other->resizeTo(400, 700);
    scroller->setContent(other);
    EXPECT_EQ(other->parentView(), scroller);
    EXPECT_EQ(content->resizedReceivers(), 0);
    EXPECT_EQ(scroller->scrollMax(), QPointF(0, 400));
    content->resizeTo(400, 5000); // the old content no longer counts
    EXPECT_EQ(scroller->scrollMax(), QPointF(0, 400));
}

TEST_F(ScrollableViewTest, ResizingTheViewRecomputesTheRangeAndKeepsTheContentInside)
{
    scroller->scroll(QPointF(0, 1000), 0);
    scroller->take();
    scroller->resizeTo(400, 600);
    EXPECT_EQ(scroller->scrollMax(), QPointF(0, 700));
    EXPECT_EQ(offset(), 700);
    EXPECT_EQ(scroller->take(), (QStringList{"about", "scrolled 700", "done"}));
}

TEST_F(ScrollableViewTest, AnEqualFirstMoveIsVerticalAndTheFirstDecisionHolds)
{
    content->resizeTo(1400, 1300);
    ASSERT_TRUE(scroller->allowHorizontalScrolling());
    scroller->scroll(QPointF(500, 500), 0);
    press(QPoint(300, 200));
    move(QPoint(-40, -40));
    EXPECT_EQ(scroller->dragDirection(), ScrollableView::VerticalDrag);
    EXPECT_EQ(scroller->contentOffset(), QPoint(540, 540));
    move(QPoint(-100, 0), 2);
    EXPECT_EQ(scroller->dragDirection(), ScrollableView::VerticalDrag);
    EXPECT_EQ(scroller->contentOffset(), QPoint(740, 540)); // both axes still follow the finger
    lift();
    EXPECT_FALSE(scroller->isDragging());

    press(QPoint(300, 200));
    move(QPoint(-41, 40));
    EXPECT_EQ(scroller->dragDirection(), ScrollableView::HorizontalDrag);
    lift();
}

// The glide of a fling is the friction model's: it starts at the finger's speed (per
// millisecond from the dispatcher, per second in the handler) and runs the same way.
TEST_F(ScrollableViewTest, AFlingGlidesOnWithTheFingersSpeed)
{
    press(QPoint(300, 300));
    move(QPoint(0, -40), 4); // 2.5 px/ms upwards
    EXPECT_EQ(offset(), 160);
    EXPECT_TRUE(scroller->isDragging());
    lift();
    EXPECT_FALSE(scroller->isDragging());
    EXPECT_TRUE(scroller->isScrolling());
    const int released = offset();
    for (int i = 0; i < 600 && scroller->isScrolling(); ++i)
        frame();
    EXPECT_FALSE(scroller->isScrolling());
    // About 2.2 px/ms (the lift adds a resting sample) is 2200 px/s, of which 1% is
    // left after a second: a glide of about 2200 / ln 100 = 478.
    EXPECT_GT(offset() - released, 420);
    EXPECT_LT(offset() - released, 545);
    EXPECT_EQ(scroller->log.count("done"), 1);
}

TEST_F(ScrollableViewTest, AFlingNeverReversesBeforeTheEdgeAndSettlesOnIt)
{
    scroller->scroll(QPointF(0, 500), 0);
    press(QPoint(300, 300));
    move(QPoint(0, -60), 4);
    lift();
    QVector<int> offsets{offset()};
    for (int i = 0; i < 600 && scroller->isScrolling(); ++i) {
        frame();
        offsets.append(offset());
    }
    ASSERT_FALSE(scroller->isScrolling());
    int i = 1;
    for (; i < offsets.size() && offsets[i - 1] < 1000; ++i)
        EXPECT_GE(offsets[i], offsets[i - 1]) << "frame " << i;
    EXPECT_LT(i, offsets.size()) << "never reached the end";
    EXPECT_GT(*std::max_element(offsets.begin(), offsets.end()), 1000); // it ran past and came back
    EXPECT_EQ(offsets.last(), 1000);
}

TEST_F(ScrollableViewTest, ATouchCatchesAGlideInsteadOfReachingTheContent)
{
    auto* row = new TouchRecorderView(content, "row", QRect(0, 0, 400, 1300), &touches);
    press(QPoint(300, 300));
    move(QPoint(0, -40), 4);
    lift();
    touches.clear();
    frames(3);
    ASSERT_TRUE(scroller->isScrolling());
    press(QPoint(300, 300));
    const int caught = offset();
    frames(10);
    EXPECT_EQ(offset(), caught);
    EXPECT_TRUE(touches.isEmpty());
    lift();
    EXPECT_FALSE(scroller->isScrolling());

    // At rest the content gets its touches again.
    press(QPoint(300, 300));
    lift();
    EXPECT_EQ(touches.first(), QStringLiteral("row:touched 0 300,300"));
    EXPECT_EQ(row->parentView(), content);
}

TEST_F(ScrollableViewTest, ChildrenAreFoundAndPlacedThroughTheOffset)
{
    auto* row = new TouchRecorderView(content, "row", QRect(0, 500, 400, 50), &touches);
    scroller->scroll(QPointF(0, 400), 0);
    EXPECT_EQ(device.viewAtPoint(QPoint(150, 160)), row); // 50 + 500 - 400
    EXPECT_EQ(device.viewAtPoint(QPoint(150, 210)), content);
    EXPECT_EQ(row->relativePositionRect(nullptr), QRect(100, 150, 400, 50));

    QSignalSpy updated(scroller, SIGNAL(updated(DisplayView*, QRect)));
    row->update();
    ASSERT_EQ(updated.count(), 1);
    EXPECT_EQ(updated[0][1].toRect(), QRect(0, 100, 400, 50));
    scroller->scroll(QPointF(0, -300), 0); // the row is now below the view
    updated.clear();
    row->update();
    EXPECT_EQ(updated.count(), 0);
}

TEST_F(ScrollableViewTest, BeingShownReturnsToTheStartOnlyWhenAsked)
{
    scroller->scroll(QPointF(0, 300), 0);
    scroller->hide();
    scroller->show();
    EXPECT_EQ(offset(), 300);

    scroller->setOption(ScrollableView::ResetWhenShown, true);
    scroller->scroll(QPointF(0, 200), 0.5);
    frame();
    scroller->hide();
    scroller->show();
    EXPECT_EQ(offset(), 0);
    EXPECT_FALSE(scroller->isScrolling());
    frames(30);
    EXPECT_EQ(offset(), 0);
}

// A carousel inside a list: vertical drags that start on it scroll the list, and
// horizontal ones the carousel.
TEST_F(ScrollableViewTest, ACarouselHandsVerticalDragsToItsList)
{
    auto* carousel = new ScrollableView(content, "carousel");
    carousel->moveTo(0, 100);
    carousel->resizeTo(400, 150);
    auto* strip = new DisplayView(nullptr, "strip");
    strip->resizeTo(1600, 150);
    carousel->setContent(strip);
    carousel->setVerticalDragDelegate(scroller);
    auto* card = new TouchRecorderView(strip, "card", QRect(0, 0, 1600, 150), &touches);
    Q_UNUSED(card);

    swipe(QPoint(300, 220), QPoint(0, -40), 3); // on the card, 70 below the list's top + 100
    EXPECT_EQ(offset(), 120);
    EXPECT_EQ(carousel->contentOffset(), QPoint(0, 0));
    EXPECT_TRUE(touches.contains(QStringLiteral("card:canceled 0")));
    scroller->stopScrolling();
    scroller->scrollToStart();

    swipe(QPoint(300, 220), QPoint(-40, -5), 3);
    EXPECT_EQ(carousel->contentOffset().x(), 120);
    EXPECT_EQ(offset(), 0);
}

// A control inside the content keeps taps, but a drag that starts on it scrolls.
TEST_F(ScrollableViewTest, ADragThatStartsOnAControlScrollsAndLetsTheControlGo)
{
    auto* control = new ControlBase(content);
    control->moveTo(100, 100);
    control->resizeTo(200, 80);
    QSignalSpy canceled(control, SIGNAL(cancelTouched(ControlBase*)));
    QSignalSpy tapped(control, SIGNAL(tapped(ControlBase*)));
    press(QPoint(300, 200));
    EXPECT_TRUE(control->isPressed());
    move(QPoint(0, -40), 2);
    EXPECT_EQ(offset(), 80);
    EXPECT_FALSE(control->isPressed());
    EXPECT_EQ(canceled.count(), 1);
    lift();
    frames(200);

    scroller->scrollToStart();
    press(QPoint(300, 200));
    lift();
    EXPECT_EQ(tapped.count(), 1);
    EXPECT_EQ(offset(), 0);
}
