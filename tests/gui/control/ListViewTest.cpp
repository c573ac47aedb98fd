#include "control/ListView.h"
#include "LogCapture.h"
#include "control/ListDelegate.h"
#include "support/FingerFixture.h"

#include <QSignalSpy>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

// Rows show items by identity, so that a test can follow an item while rows move.
class ItemModel : public ListModel
{
public:
    explicit ItemModel(int count)
    {
        for (int i = 0; i < count; ++i)
            items.append(i);
    }
    int count() const override { return items.size(); }
    int sectionCount() const override { return sections.size(); }
    int sectionStart(int section) const override { return sections[section]; }

    void insert(int at, int count)
    {
        for (int i = 0; i < count; ++i)
            items.insert(at + i, 1000000 + i);
        emit rowsInserted(this, at, count);
    }
    void remove(int at, int count)
    {
        items.remove(at, count);
        emit rowsRemoved(this, at, count);
    }

    QVector<int> items;
    QVector<int> sections;
};

class RowView : public DisplayView
{
public:
    RowView(DisplayView* parent, int kind) : DisplayView(parent, "row"), kind(kind) {}
    QSizeF naturalSize(double width) override { return QSizeF(width, measured); }

    int kind;
    int row = -1;
    int item = -1;
    int measured = 0;
};

// Items are 60 high unless measured; section headers (kind 1) are 30.
class RowDelegate : public ListDelegate
{
public:
    explicit RowDelegate(ItemModel& model) : model(model) {}

    int rowKind(int row) const override { return model.sections.contains(row) ? 1 : 0; }
    DisplayView* createRow(int kind, DisplayView* parent) override
    {
        ++created;
        return new RowView(parent, kind);
    }
    void bindRow(DisplayView* view, int row) override
    {
        auto* rowView = static_cast<RowView*>(view);
        ++binds;
        rowView->row = row;
        rowView->item = model.items[row];
        rowView->measured = 40 + (model.items[row] % 3) * 20;
    }
    void unbindRow(DisplayView* view, int) override { static_cast<RowView*>(view)->row = -1; }
    int fixedRowHeight() const override { return measure || !model.sections.isEmpty() ? 0 : 60; }
    int rowHeight(int row) const override
    {
        if (measure)
            return 0;
        return rowKind(row) == 1 ? 30 : 60;
    }

    ItemModel& model;
    bool measure = false;
    int created = 0;
    int binds = 0;
};

// A 400 x 300 list at the top left of the screen.
struct ListViewTest : FingerFixture
{
    ItemModel model{100000};
    RowDelegate delegate{model};
    ListView* list = new ListView(device.views(), "list");

    ListViewTest()
    {
        list->resizeTo(400, 300);
        list->setDelegate(&delegate);
        list->setModel(&model);
    }
    // The list goes before the model and the delegate it uses.
    ~ListViewTest() override { delete list; }
    int scrollY() const { return list->contentOffset().y(); }
    RowView* rowView(int row) const { return static_cast<RowView*>(list->viewForRow(row)); }
    // Where a row's view appears in the list.
    int screenY(int row) const { return rowView(row)->y() - scrollY(); }

    // Every bound view shows its own row, where that row lies, and the rows in view
    // are all there.
    void expectRowsInPlace()
    {
        const QList<int> rows = list->boundRows();
        ASSERT_FALSE(rows.isEmpty());
        for (int row : rows) {
            RowView* view = rowView(row);
            ASSERT_EQ(view->row, row);
            ASSERT_EQ(view->item, model.items[row]);
            ASSERT_TRUE(view->visibleFlag());
            if (!list->listOption(ListView::StickyHeaders)) {
                ASSERT_EQ(view->y(), list->rowTop(row)) << "row " << row;
            }
            ASSERT_EQ(view->height(), list->rowHeight(row));
        }
        // Row views paint in the order of their rows (a pinned header last).
        QList<int> painted;
        for (DisplayView* child : list->rowContainer()->children().list()) {
            const int row = static_cast<RowView*>(child)->row;
            if (rows.contains(row) && rowView(row) == child)
                painted.append(row);
        }
        if (list->listOption(ListView::StickyHeaders) && painted.size() > 1 &&
            painted.last() < painted[painted.size() - 2])
            painted.removeLast();
        ASSERT_TRUE(std::is_sorted(painted.begin(), painted.end())) << painted.size();
        const int top = std::max(0, scrollY()),
                  bottom = std::min(scrollY() + list->height(), list->rowTop(model.count()));
        for (int y = top; y < bottom; y += 10)
            ASSERT_TRUE(rows.contains(list->rowAt(QPoint(0, y - scrollY())))) << "y " << y;
    }
};

} // namespace

TEST_F(ListViewTest, AHundredThousandRowsScrollEndToEndOnAFewViews)
{
    EXPECT_EQ(list->rowContainer()->height(), 6000000);
    EXPECT_EQ(list->scrollMax(), QPointF(0, 5999700));
    expectRowsInPlace();
    // 300 in view and 75 beyond the bottom: rows 0 to 6.
    EXPECT_EQ(list->boundRows(), (QList<int>{0, 1, 2, 3, 4, 5, 6}));
    const int made = delegate.created;
    while (scrollY() < 5999700) {
        list->scroll(QPointF(0, std::min(4999, 5999700 - scrollY())), 0);
        ASSERT_LE(list->createdViewCount(), made + 2) << "at " << scrollY();
        ASSERT_NO_FATAL_FAILURE(expectRowsInPlace());
    }
    EXPECT_EQ(scrollY(), 5999700);
    EXPECT_TRUE(list->boundRows().contains(99999));
    EXPECT_EQ(list->createdViewCount(), delegate.created);
}

TEST_F(ListViewTest, ResizingTheListBindsTheRowsNowInView)
{
    list->scroll(QPointF(0, 3000), 0);
    list->resizeTo(300, 900);
    expectRowsInPlace();
    EXPECT_EQ(rowView(60)->width(), 300);
    EXPECT_EQ(list->boundRows().last(), (3000 + 900 + 900 / 4 - 1) / 60);
    list->resizeTo(300, 120);
    expectRowsInPlace();
    EXPECT_EQ(list->boundRows().size(), 4); // 2970 to 3150
}

TEST_F(ListViewTest, AFastFlingBindsEveryRowItsOwnItem)
{
    press(QPoint(200, 280));
    move(QPoint(0, -80), 3); // 5 px/ms
    lift();
    int frames = 0;
    for (; frames < 600 && list->isScrolling(); ++frames) {
        frame();
        ASSERT_NO_FATAL_FAILURE(expectRowsInPlace()) << "frame " << frames;
    }
    EXPECT_FALSE(list->isScrolling());
    EXPECT_GT(scrollY(), 1000);
    EXPECT_LE(list->createdViewCount(), 9);
    expectRowsInPlace();
}

TEST_F(ListViewTest, OnlyBoundRowsAreBoundAgainWhenTheirDataChanges)
{
    list->scroll(QPointF(0, 600), 0);
    delegate.binds = 0;
    model.items[12] = 77;
    emit model.rowsChanged(&model, 0, 20);
    EXPECT_EQ(delegate.binds, list->boundRows().size());
    EXPECT_EQ(rowView(12)->item, 77);
    delegate.binds = 0;
    emit model.rowsChanged(&model, 500, 10);
    EXPECT_EQ(delegate.binds, 0);
}

TEST_F(ListViewTest, InsertingOrRemovingAboveKeepsTheRowsInViewWhereTheyAre)
{
    list->scroll(QPointF(0, 6030), 0); // item 100 half out at the top
    ASSERT_EQ(screenY(100), -30);
    model.insert(10, 3);
    EXPECT_EQ(rowView(103)->item, 100);
    EXPECT_EQ(screenY(103), -30);
    expectRowsInPlace();

    model.remove(0, 5);
    EXPECT_EQ(rowView(98)->item, 100);
    EXPECT_EQ(screenY(98), -30);
    expectRowsInPlace();

    // Removing the rows in view brings up those after them at the same place.
    model.remove(97, 3);
    EXPECT_EQ(rowView(97)->item, 102);
    EXPECT_EQ(screenY(97), -30);
    expectRowsInPlace();

    // Below the view nothing moves, and at the very top the new rows show.
    const int item = rowView(100)->item;
    model.insert(110, 4);
    EXPECT_EQ(rowView(100)->item, item);
    list->scrollToStart();
    model.insert(0, 2);
    EXPECT_EQ(scrollY(), 0);
    EXPECT_EQ(rowView(0)->item, 1000000);
    expectRowsInPlace();
}

TEST_F(ListViewTest, MeasuredRowsTakeTheirHeightsAndTheRowsInViewStayPut)
{
    delegate.measure = true;
    emit model.modelReset(&model);
    // Unmeasured rows count as the estimate until they are bound.
    EXPECT_EQ(list->rowHeight(50000), ListDelegate::kDefaultEstimatedRowHeight);
    EXPECT_EQ(list->rowHeight(0), 40);
    EXPECT_EQ(list->rowHeight(1), 60);
    EXPECT_EQ(list->rowHeight(2), 80);
    expectRowsInPlace();

    list->scroll(QPointF(0, 600000), 0);
    expectRowsInPlace();
    // Moving up brings rows above into view; each is measured and the rows already
    // shown stay where the finger put them.
    for (int step = 0; step < 20; ++step) {
        const int row = list->rowAt(QPoint(0, 150));
        const int before = screenY(row);
        list->scroll(QPointF(0, -37), 0);
        ASSERT_EQ(screenY(row), before + 37) << "step " << step;
        ASSERT_NO_FATAL_FAILURE(expectRowsInPlace());
    }
}

TEST_F(ListViewTest, StickyHeadersStayAtTheTopUntilTheNextOnePushesThemOut)
{
    model.sections = {0, 10, 20, 30};
    emit model.modelReset(&model);
    list->setListOption(ListView::StickyHeaders, true);
    // Each section: a header of 30 and nine rows of 60, 570 in all.
    EXPECT_EQ(list->rowTop(20), 1140);

    list->scroll(QPointF(0, 1140 + 200), 0);
    ASSERT_NE(rowView(20), nullptr);
    EXPECT_EQ(screenY(20), 0);
    EXPECT_EQ(list->rowAt(QPoint(10, 10)), 20);
    EXPECT_EQ(list->rowAt(QPoint(10, 40)), 24);
    EXPECT_EQ(list->rowContainer()->children().list().last(), rowView(20));

    list->scroll(QPointF(0, 1690 - 1340), 0); // the next header, 20 below the top, pushes
    EXPECT_EQ(screenY(20), -10);
    EXPECT_EQ(screenY(30), 20);
    list->scroll(QPointF(0, 20), 0);
    EXPECT_EQ(screenY(30), 0);
    EXPECT_EQ(rowView(20), nullptr);

    for (int row : list->boundRows())
        EXPECT_EQ(rowView(row)->kind, delegate.rowKind(row)) << "row " << row;
    list->scrollToRow(35, 0);
    EXPECT_EQ(screenY(35), 30); // right under the pinned header
}

TEST_F(ListViewTest, SectionStartsOutOfOrderAreReportedAndSkipped)
{
    LogCapture capture;
    model.sections = {0, 10, 10, 200000};
    emit model.modelReset(&model);
    EXPECT_EQ(
        capture.assertions(),
        (QStringList{
            QStringLiteral("Section 2 starts out of order at row 10 View: %1").arg(list->viewPath()),
            QStringLiteral("Section 3 starts out of order at row 200000 View: %1").arg(list->viewPath())}));
    EXPECT_EQ(capture.records().first().file, QStringLiteral("../../../gui/control/ListView"));
}

TEST_F(ListViewTest, ADelegateThatMakesNoViewIsReported)
{
    class NoViews : public RowDelegate
    {
    public:
        using RowDelegate::RowDelegate;
        DisplayView* createRow(int, DisplayView*) override { return nullptr; }
    } none(model);
    LogCapture capture;
    list->setDelegate(&none);
    EXPECT_TRUE(list->boundRows().isEmpty());
    ASSERT_FALSE(capture.assertions().isEmpty());
    EXPECT_EQ(capture.assertions().first(),
              QStringLiteral("The delegate made no view for rows of kind 0 View: %1").arg(list->viewPath()));
    list->setDelegate(&delegate);
    expectRowsInPlace();
}

// A model going away empties the list. A delegate of its own hands its rows back;
// one that is the model itself is not called while it is being destroyed.
TEST_F(ListViewTest, AModelGoingAwayEmptiesTheList)
{
    auto* other = new ItemModel(10);
    list->setModel(other);
    const QList<int> bound = list->boundRows();
    ASSERT_FALSE(bound.isEmpty());
    RowView* first = rowView(bound.first());
    delete other;
    EXPECT_TRUE(list->boundRows().isEmpty());
    EXPECT_EQ(first->row, -1);
    EXPECT_EQ(list->delegate(), &delegate);

    struct SelfDelegating : ItemModel, RowDelegate
    {
        SelfDelegating() : ItemModel(10), RowDelegate(*static_cast<ItemModel*>(this)) {}
        void unbindRow(DisplayView* view, int row) override { RowDelegate::unbindRow(view, row); }
    };
    auto* both = new SelfDelegating;
    list->setDelegate(both);
    list->setModel(both);
    ASSERT_FALSE(list->boundRows().isEmpty());
    LogCapture capture;
    delete both;
    EXPECT_TRUE(list->boundRows().isEmpty());
    EXPECT_EQ(list->delegate(), nullptr);
    EXPECT_TRUE(capture.assertions().isEmpty());
}

TEST_F(ListViewTest, TappingARowReportsIt)
{
    QSignalSpy tapped(list, SIGNAL(rowTapped(ListView*, int)));
    list->scroll(QPointF(0, 120), 0);
    press(QPoint(100, 70)); // 190 into the content: row 3
    lift();
    ASSERT_EQ(tapped.count(), 1);
    EXPECT_EQ(tapped[0][1].toInt(), 3);
}

TEST_F(ListViewTest, ASidewaysDragSlidesTheRowWhenSwipingIsOn)
{
    QSignalSpy swiped(list, SIGNAL(rowSwiped(ListView*, int, int)));
    swipe(QPoint(100, 150), QPoint(40, 10), 2); // without the option: a scroll
    EXPECT_EQ(rowView(2)->x(), 0);
    EXPECT_EQ(swiped.count(), 0);

    list->setListOption(ListView::SwipeRows, true);
    list->stopScrolling();
    list->scrollToStart();
    press(QPoint(100, 150)); // row 2
    move(QPoint(40, 10), 2); // slope 0.25
    EXPECT_EQ(rowView(2)->x(), 80);
    EXPECT_EQ(scrollY(), 0);
    lift();
    ASSERT_EQ(swiped.count(), 1);
    EXPECT_EQ(swiped[0][1].toInt(), 2);
    EXPECT_EQ(swiped[0][2].toInt(), 80);
    frames(30);
    EXPECT_EQ(rowView(2)->x(), 0);
    EXPECT_EQ(list->swipedRow(), -1);

    // A steep drag scrolls.
    swipe(QPoint(100, 150), QPoint(20, -40), 2);
    EXPECT_EQ(rowView(2)->x(), 0);
    EXPECT_GT(scrollY(), 0);
}

TEST_F(ListViewTest, ARevealWidthHoldsTheRowOpenUntilAnotherRowIsTapped)
{
    list->setListOption(ListView::SwipeRows, true);
    list->setSwipeRevealWidth(120);
    swipe(QPoint(300, 100), QPoint(-40, 0), 2); // row 1, pulled 80: past half of 120
    frames(30);
    EXPECT_EQ(rowView(1)->x(), -120);
    EXPECT_EQ(list->swipedRow(), 1);

    swipe(QPoint(300, 160), QPoint(-35, 0), 1); // row 2, pulled 35: springs back
    frames(30);
    EXPECT_EQ(rowView(2)->x(), 0);
    EXPECT_EQ(rowView(1)->x(), 0); // the new touch closed the open row

    swipe(QPoint(300, 100), QPoint(-40, 0), 2);
    frames(30);
    QSignalSpy tapped(list, SIGNAL(rowTapped(ListView*, int)));
    press(QPoint(100, 250));
    lift();
    frames(30);
    EXPECT_EQ(tapped.count(), 1);
    EXPECT_EQ(rowView(1)->x(), 0);
    EXPECT_EQ(list->swipedRow(), -1);
}
