#include "support/ControlFixture.h"

#include "LogCapture.h"
#include "control/Button.h"
#include "control/Label.h"
#include "control/ListDelegate.h"
#include "control/ListModel.h"
#include "control/ListView.h"

namespace {

struct Rows : ListModel, ListDelegate
{
    int count() const override { return 50; }
    DisplayView* createRow(int, DisplayView* parent) override { return new Label(parent, "row"); }
    void bindRow(DisplayView* view, int row) override
    {
        static_cast<Label*>(view)->setText(QString::number(row));
    }
    int fixedRowHeight() const override { return 40; }
};

// Controls and lists inside flex rows: the flow places them, and they place what is
// inside them.
struct ControlsInFlexTest : ControlFixture
{
    Rows rows;
    DisplayView* column = new DisplayView(device.views(), "column");

    ControlsInFlexTest()
    {
        column->setStyle(
            Style(QStringLiteral("Width:400; Height:300; FlexDirection:column; AlignItems:stretch")));
    }
};

TEST_F(ControlsInFlexTest, AButtonKeepsItsTitleWhereItPutsIt)
{
    LogCapture log;
    auto* button =
        new Button(column, "ok", QStringLiteral("OK"), QStringLiteral("Height:60; ContentPadding:0,20"));
    tick();
    EXPECT_EQ(button->rect(), QRect(0, 0, 400, 60));
    EXPECT_EQ(button->titleLabel()->rect(), QRect(20, 0, 360, 60));
    EXPECT_FALSE(button->titleLabel()->usesCssLayout());
    EXPECT_TRUE(log.messages().isEmpty()) << log.messages().join('\n').toStdString();
}

TEST_F(ControlsInFlexTest, AListTakesItsShareAndPlacesItsOwnRows)
{
    LogCapture log;
    auto* header = new DisplayView(column, "header");
    header->setStyle(Style(QStringLiteral("Height:60")));
    auto* list = new ListView(column, "list");
    list->setStyle(Style(QStringLiteral("Flex:1")));
    list->setDelegate(&rows);
    list->setModel(&rows);
    tick();
    tick();
    EXPECT_EQ(list->rect(), QRect(0, 60, 400, 240));
    // Rows sit one under the other at the list's width, not stacked by the flow.
    ASSERT_TRUE(list->viewForRow(3));
    EXPECT_EQ(list->viewForRow(3)->rect(), QRect(0, 120, 400, 40));
    EXPECT_EQ(list->rowContainer()->height(), 50 * 40);
    list->scroll(QPointF(0, 400), 0);
    tick();
    ASSERT_TRUE(list->viewForRow(12));
    EXPECT_EQ(list->contentOffset().y(), 400);
    EXPECT_EQ(list->viewForRow(12)->y(), 480);
    EXPECT_TRUE(log.messages().isEmpty()) << log.messages().join('\n').toStdString();
}

} // namespace
