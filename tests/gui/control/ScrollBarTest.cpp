#include "ScopedConfigOverride.h"
#include "control/HorizontalScrollBar.h"
#include "control/ScrollableView.h"
#include "control/VerticalScrollBar.h"
#include "support/FingerFixture.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// A bar on a plain 400 x 400 view: 380 long, as wide as its picture.
struct ScrollBarTest : FingerFixture
{
    DisplayView* view = new DisplayView(device.views(), "view");
    VerticalScrollBar* bar;

    ScrollBarTest()
    {
        view->resizeTo(400, 400);
        bar = new VerticalScrollBar(view);
    }
    QPair<double, int> slider()
    {
        double offset = -1;
        int length = -1;
        bar->sliderOffsetAndLength(offset, length);
        return {offset, length};
    }
};

} // namespace

TEST_F(ScrollBarTest, TheSliderShowsTheShareOfTheContentInView)
{
    EXPECT_EQ(bar->height(), 380);
    EXPECT_EQ(bar->width(), 8);
    EXPECT_FALSE(bar->visibleFlag());

    bar->setOffset(0, 400); // r = 1
    EXPECT_EQ(bar->sliderLength(), 190);
    EXPECT_TRUE(bar->visibleFlag());
    EXPECT_EQ(slider(), qMakePair(0.0, 190));
    bar->setOffset(200, 400);
    EXPECT_EQ(slider(), qMakePair(95.0, 190));

    bar->setOffset(0, 100000); // long content: the floor
    EXPECT_EQ(bar->sliderLength(), ScrollBar::kMinSliderLength);
    bar->setOffset(100000, 100000);
    EXPECT_EQ(slider(), qMakePair(320.0, 60));
}

TEST_F(ScrollBarTest, NothingToScrollNeverShows)
{
    bar->setOffset(0, 0);
    EXPECT_FALSE(bar->shouldShowScrollBar());
    bar->setOffset(30, 0);
    EXPECT_FALSE(bar->visibleFlag());
    EXPECT_EQ(slider(), qMakePair(-1.0, -1)); // nothing written

    bar->setOffset(0, 400);
    EXPECT_TRUE(bar->visibleFlag());
    bar->setShouldShow(false);
    EXPECT_FALSE(bar->visibleFlag());
    bar->setOffset(10, 400);
    EXPECT_FALSE(bar->visibleFlag());
}

TEST_F(ScrollBarTest, APullPastEitherEndSqueezesTheSliderAtThatEnd)
{
    bar->setOffset(-50, 400); // 23.75 of the slider's 190 past the start
    EXPECT_EQ(slider(), qMakePair(0.0, 166));
    bar->setOffset(-1000, 400);
    EXPECT_EQ(slider(), qMakePair(0.0, 5));
    bar->setOffset(450, 400);
    EXPECT_EQ(slider(), qMakePair(214.0, 166));
    bar->setOffset(1400, 400);
    EXPECT_EQ(slider(), qMakePair(375.0, 5));
}

TEST_F(ScrollBarTest, TheSameOffsetTwiceNeitherFadesNorRepaints)
{
    bar->setOffset(100, 400);
    frames(40);
    QSignalSpy updated(bar, SIGNAL(updated(DisplayView*, QRect)));
    const int animations = device.animationCount();
    bar->setOffset(100, 400);
    EXPECT_EQ(updated.count(), 0);
    EXPECT_EQ(device.animationCount(), animations);
    bar->setOffset(101, 400);
    EXPECT_GT(updated.count(), 0);
}

TEST_F(ScrollBarTest, ItFadesInOnMovementAndOutAfterTheTimeout)
{
    bar->setOffset(0, 400);
    EXPECT_EQ(bar->alpha(), 0.0f);
    frames(16); // 0.256 s of 0.5 on an easeOutExpo
    EXPECT_GT(bar->alpha(), 0.9f);
    EXPECT_LT(bar->alpha(), 1.0f);
    frames(20);
    EXPECT_EQ(bar->alpha(), 1.0f);

    // Not dismissing: it stays.
    clock.advanceMs(5000);
    frame();
    EXPECT_TRUE(bar->visibleFlag());

    ScopedConfigOverride timeout("scrollbar/timeout", 500);
    bar->setShouldAutoDimiss(true);
    EXPECT_TRUE(bar->isDismissTimerActive());
    bar->fadeOut(); // waits for the timer
    clock.advanceMs(480);
    frame();
    EXPECT_EQ(bar->alpha(), 1.0f);
    frame(); // 512 ms: the timeout fades the bar from the next frame on
    EXPECT_FALSE(bar->isDismissTimerActive());
    frame();
    const float fading = bar->alpha();
    EXPECT_LT(fading, 1.0f);

    // A movement while fading brings it back from where the fade has it.
    bar->setOffset(10, 400);
    frame();
    EXPECT_GT(bar->alpha(), fading);
    frames(24);
    EXPECT_GT(bar->alpha(), 0.99f);
    frames(40);
    EXPECT_FALSE(bar->visibleFlag());
    bar->setShouldAutoDimiss(false);
    EXPECT_FALSE(bar->isDismissTimerActive());
}

TEST_F(ScrollBarTest, TheBarsFollowTheVisibleAreaWithTheirMargins)
{
    auto* scroller = new ScrollableView(device.views(), "scroller");
    scroller->resizeTo(400, 300);
    auto* content = new DisplayView(nullptr, "content");
    content->resizeTo(1400, 1300);
    scroller->setContent(content);
    scroller->scroll(QPointF(200, 300), 0);

    auto* vertical = new VerticalScrollBar(scroller);
    vertical->setLayoutMargin(Padding(2, 3, 4, 6)); // top, right, bottom, left
    vertical->resizeToView(scroller);
    EXPECT_EQ(vertical->rect(), QRect(200 + 400 - 8 - 5 + 6, 300 + 2 + 10, 8, 300 - 12 - 14));

    auto* horizontal = new HorizontalScrollBar(scroller);
    horizontal->setLayoutMargin(Padding(2, 3, 4, 6));
    horizontal->resizeToView(scroller);
    EXPECT_EQ(horizontal->rect(), QRect(200 + 6 + 10, 300 + 300 - 8 - 5 + 2, 400 - 16 - 13, 8));
    horizontal->setOffset(0, 1000);
    EXPECT_EQ(horizontal->sliderLength(), int(371 / (1000.0 / 400 + 1)));

    // A resize of the view places them again.
    scroller->resizeTo(500, 300);
    EXPECT_EQ(vertical->x(), 200 + 500 - 8 - 5 + 6);
    EXPECT_EQ(horizontal->width(), 500 - 16 - 13);
}

TEST_F(ScrollBarTest, ABarLetsTouchesThroughToItsView)
{
    bar->setOffset(0, 400);
    EXPECT_EQ(device.viewAtPoint(bar->relativePositionRect(nullptr).center()), view);
}

// The scrolling view keeps its bar for as long as a finger drags, and lets it go
// "scrollbar/timeout" after the content comes to rest.
struct ScrollBarDismissTest : FingerFixture
{
    ScrollableView* scroller = new ScrollableView(device.views(), "scroller");

    ScrollBarDismissTest()
    {
        scroller->resizeTo(400, 400);
        auto* content = new DisplayView(nullptr, "content");
        content->resizeTo(400, 4000);
        scroller->setContent(content);
    }
};

TEST_F(ScrollBarDismissTest, TheBarFadesOutTheTimeoutAfterTheLastMovement)
{
    ScrollBar* bar = scroller->scrollBar();
    ASSERT_NE(bar, nullptr);
    press(QPoint(200, 300));
    move(QPoint(0, -40), 3);
    EXPECT_TRUE(bar->visibleFlag());
    EXPECT_EQ(bar->alpha(), 1.0f);
    EXPECT_FALSE(bar->shouldAutoDismiss());
    clock.advanceMs(3000); // a resting finger keeps the bar
    frame();
    EXPECT_EQ(bar->alpha(), 1.0f);
    lift(); // no fling after the rest
    EXPECT_TRUE(bar->shouldAutoDismiss());
    for (int elapsed = kFrameMs; elapsed < 900; elapsed += kFrameMs) {
        frame();
        ASSERT_EQ(bar->alpha(), 1.0f) << elapsed << " ms after the lift";
    }
    frames(2);
    EXPECT_LT(bar->alpha(), 1.0f);
    frames(30);
    EXPECT_FALSE(bar->visibleFlag());
}
