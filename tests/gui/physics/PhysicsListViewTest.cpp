#include "physics/PhysicsListView.h"
#include "ManualClock.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// A vertical list 100 high at (30, 50) with five items 40 high: 100 of content to scroll.
struct ListTest : ::testing::Test
{
    ManualClock clock;
    DisplayView root{nullptr, "root"};
    PhysicsListView* list = new PhysicsListView(&root, "list", Qt::Vertical);
    QList<DisplayView*> items;

    ListTest()
    {
        list->moveTo(30, 50);
        list->resizeTo(200, 100);
        for (int i = 0; i < 5; ++i) {
            items.append(new DisplayView(list, "item"));
            items.last()->resizeTo(200, 40);
        }
        list->tick();
    }
    // Each step of the finger, and each tick, takes one frame.
    void drag(QSize step, int frames)
    {
        for (int i = 0; i < frames; ++i) {
            clock.advanceMs(16);
            list->dragged(1, step);
        }
    }
    double runFrames(int frames)
    {
        double lowest = items[0]->y();
        for (int i = 0; i < frames; ++i) {
            clock.advanceMs(16);
            list->tick();
            lowest = std::min(lowest, items[0]->y());
        }
        return lowest;
    }
};

} // namespace

TEST_F(ListTest, FlingGlidesPastTheEndAndSpringsBack)
{
    EXPECT_EQ(items[4]->y(), 160);
    list->touched(1, QPoint(60, 120));
    drag(QSize(0, -20), 3); // 1250 px/s upwards
    EXPECT_EQ(items[0]->y(), -60);
    list->released(1);
    EXPECT_LT(runFrames(180), -102);
    EXPECT_EQ(items[0]->y(), -100);
    EXPECT_FALSE(list->scrollHandler().active());
}

TEST_F(ListTest, FingerThatRestsOrBarelyMovesDoesNotFling)
{
    list->touched(1, QPoint(60, 120));
    drag(QSize(0, -2), 2); // within the drag threshold: nothing moves
    EXPECT_EQ(items[0]->y(), 0);
    drag(QSize(0, -20), 2);
    EXPECT_EQ(items[0]->y(), -44); // the held-back movement is caught up
    clock.advanceMs(200);
    list->released(1);
    EXPECT_EQ(runFrames(60), -44);
}

TEST_F(ListTest, MostlySidewaysDragSwipesTheItemUnderTheFinger)
{
    QSignalSpy swiped(list, &PhysicsListView::itemSwiped);
    list->touched(1, QPoint(60, 140)); // (30, 90) in the list: the third item
    drag(QSize(12, 6), 2);             // slope 0.5
    EXPECT_EQ(items[2]->x(), 24);
    EXPECT_EQ(items[0]->y(), 0);
    list->released(1);
    ASSERT_EQ(swiped.count(), 1);
    EXPECT_EQ(swiped.first().at(1).value<DisplayView*>(), items[2]);
    EXPECT_EQ(swiped.first().at(2).toInt(), 24);
    runFrames(30);
    EXPECT_EQ(items[2]->x(), 0);

    list->touched(1, QPoint(60, 140));
    drag(QSize(-8, -8), 2); // slope 1: scrolls instead
    EXPECT_EQ(items[2]->x(), 0);
    EXPECT_EQ(items[0]->y(), -16);
}
