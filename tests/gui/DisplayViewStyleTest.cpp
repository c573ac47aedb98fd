#include "support/QtPrinters.h"

#include "DisplayView.h"
#include "LogCapture.h"
#include "Style.h"

#include <gtest/gtest.h>

TEST(ViewStyle, GeometryPaddingsAndTouchFromTheStyle)
{
    DisplayView parent(nullptr, "parent");
    parent.resizeTo(400, 300);
    DisplayView* view = new DisplayView(&parent, "view");
    view->setStyle(Style("Width:100; Height:50; X:10; Y:20; Alpha:0.5; TouchPadding:4"));
    EXPECT_EQ(view->rect(), QRect(10, 20, 100, 50));
    EXPECT_FLOAT_EQ(view->alpha(), 0.5f);
    EXPECT_EQ(parent.viewAtPoint(QPoint(7, 17)), view); // inside the touch padding

    view->setStyle(Style("Right:30; Bottom:40; TouchEnabled:false; LayoutMargin:1,2"));
    EXPECT_EQ(view->rect(), QRect(270, 210, 100, 50));
    EXPECT_EQ(view->layoutMargin(), Padding(1, 2, 1, 2));
    EXPECT_EQ(parent.viewAtPoint(QPoint(300, 220)), &parent);
}

TEST(ViewStyle, EdgeListsMustHaveAValidCount)
{
    // Flex edges make a flex view; margins need a flex parent.
    DisplayView parent(nullptr, "parent");
    parent.enableCssLayout();
    DisplayView* view = new DisplayView(&parent, "view");
    LogCapture capture;
    view->setStyle(Style("Padding:1,2,3,4"));
    view->setStyle(Style("Margin:1,2,3,4,5,6"));
    EXPECT_TRUE(capture.assertions().isEmpty());
    view->setStyle(Style("Padding:1,2,3"));
    view->setStyle(Style("Margin:1,2,3,4,5"));
    EXPECT_EQ(capture.assertions(), QStringList({"Invalid padding count: 3", "Invalid margin count: 5"}));
    EXPECT_EQ(capture.records().first().file, "../../../gui/DisplayView");
}

TEST(ViewStyle, RestylingTakesTheStyleAgainAndCanReachChildren)
{
    DisplayView parent(nullptr, "parent");
    DisplayView* child = new DisplayView(&parent, "child");
    parent.setStyle(Style("Width:60; Height:30; ApplyToChildren:true"));
    EXPECT_EQ(child->size(), QSize(60, 30));
    EXPECT_EQ(parent.style(), Style("Width:60; Height:30; ApplyToChildren:true"));

    parent.resizeTo(5, 5);
    // The style machinery calls restyled() by name when the style changes.
    ASSERT_TRUE(QMetaObject::invokeMethod(&parent, "restyled"));
    EXPECT_EQ(parent.size(), QSize(60, 30));
}
