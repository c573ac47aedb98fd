#include "support/QtPrinters.h"
#include "support/ScopedStyleAssets.h"

#include "CssLayout.h"
#include "DisplayDevice.h"
#include "LogCapture.h"
#include "ScopedConfigOverride.h"
#include "StyleManager.h"
#include "gui/control/Label.h"

#include <QFile>

#include <QSignalSpy>
#include <QTemporaryFile>
#include <cmath>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {
// Text that wraps: as many lines of 20 pixels as the width needs for its length.
class WrappingText : public DisplayView
{
public:
    WrappingText(DisplayView* parent, const char* name, double length)
        : DisplayView(parent, name), length(length)
    {
        cssLayout()->setOption(CssLayout::Measure, true);
    }
    QSizeF naturalSize(double width) override
    {
        ++measured;
        if (width < 0 || width >= length)
            return QSizeF(length, 20);
        const double lines = width > 0 ? std::ceil(length / width) : 1;
        return QSizeF(width, 20 * lines);
    }
    double length;
    int measured = 0;
};

struct Flex : ::testing::Test
{
    DisplayDevice device{800, 600};
    DisplayView* root = new DisplayView(device.views(), "root");

    Flex()
    {
        root->setCssSize(QSizeF(400, 300));
        frame();
    }

    void frame() { device.startFrame(); }

    DisplayView* box(DisplayView* parent, const char* name, float width = CSS_UNDEFINED,
                     float height = CSS_UNDEFINED)
    {
        DisplayView* view = new DisplayView(parent, name);
        view->setCssWidth(width);
        view->setCssHeight(height);
        return view;
    }
};
} // namespace

TEST_F(Flex, FlexChildTakesWhatItsFixedSiblingLeavesAtTheNextFrame)
{
    root->setCssFlexDirection(CSS_FLEX_DIRECTION_ROW);
    DisplayView* fixed = box(root, "fixed", 100);
    DisplayView* rest = box(root, "rest");
    rest->setCssFlex(1);
    EXPECT_EQ(rest->rect(), QRect()); // deferred to the frame
    EXPECT_GE(device.deferredLayoutCount(), 1);

    frame();
    EXPECT_EQ(root->layoutResultRect(), QRectF(0, 0, 400, 300));
    EXPECT_EQ(fixed->layoutResultRect(), QRectF(0, 0, 100, 300));
    EXPECT_EQ(rest->layoutResultRect(), QRectF(100, 0, 300, 300));
    EXPECT_EQ(rest->rect(), QRect(100, 0, 300, 300));
    EXPECT_EQ(device.deferredLayoutCount(), 0);
    EXPECT_FALSE(rest->isLayoutDirty());
}

TEST_F(Flex, AbsoluteChildPlacesItselfUntilRightOrBottomPutsItInTheFlow)
{
    DisplayView* first = box(root, "first", CSS_UNDEFINED, 50);
    DisplayView* badge = new DisplayView(root, "badge");
    badge->setCssPositionType(CSS_POSITION_ABSOLUTE);
    badge->moveTo(30, 40);
    badge->resizeTo(50, 20);
    DisplayView* second = box(root, "second", CSS_UNDEFINED, 50);
    frame();
    EXPECT_FALSE(badge->cssLayout()->isChild());
    EXPECT_EQ(root->cssLayout()->node()->children_count, 2);
    EXPECT_EQ(badge->rect(), QRect(30, 40, 50, 20));
    EXPECT_EQ(first->layoutResultRect(), QRectF(0, 0, 400, 50));
    EXPECT_EQ(second->layoutResultRect(), QRectF(0, 50, 400, 50));

    badge->setCssPosition(CSS_LEFT, CSS_UNDEFINED);
    badge->setCssPosition(CSS_RIGHT, 10);
    frame();
    EXPECT_TRUE(badge->cssLayout()->isChild());
    EXPECT_EQ(root->cssLayout()->node()->children_count, 3);
    EXPECT_EQ(badge->layoutResultRect(), QRectF(340, 40, 50, 20));
    EXPECT_EQ(second->layoutResultRect(), QRectF(0, 50, 400, 50)); // still out of the flow
}

TEST_F(Flex, FlexThatCannotWorkIsReportedAndKeptAllTheSame)
{
    DisplayView* fixed = box(root, "fixed", 10, 10);
    DisplayView* floating = new DisplayView(root, "floating");
    floating->setCssPositionType(CSS_POSITION_ABSOLUTE);
    DisplayView* loner = new DisplayView(device.views(), "loner");
    LogCapture capture;
    fixed->setCssFlex(1);
    fixed->setCssFlex(1); // unchanged: nothing to report
    floating->setCssFlex(2);
    loner->setCssFlex(0.5);
    loner->setCssFlex(0); // no flex, no check
    EXPECT_EQ(capture.assertions(),
              QStringList(
                  {"Cannot flex fixed size views View: DisplayDevice/views/root/fixed",
                   "Cannot flex absolutely positioned views View: DisplayDevice/views/root/floating",
                   "Cannot flex views that don't have a CSS layout parent View: DisplayDevice/views/loner"}));
    EXPECT_EQ(capture.records().first().file, "gui/CssLayout");
    EXPECT_EQ(fixed->cssFlex(), 1);
    EXPECT_EQ(floating->cssFlex(), 2);
}

TEST_F(Flex, MisplacedRulesAreReportedWithTheViewPath)
{
    DisplayView* child = box(root, "child");
    DisplayView* loner = new DisplayView(device.views(), "loner");
    LogCapture capture;
    loner->setCssPositionType(CSS_POSITION_RELATIVE);
    loner->setCssPosition(CSS_BOTTOM, 5);
    loner->setCssMargin(CSS_TOP, 4);
    child->setCssMargin(CSS_TOP, 4); // a flex child may have margins
    child->setCssBorder(Padding(1));
    child->setCssPosition(CSS_START, 3);
    EXPECT_EQ(
        capture.assertions(),
        QStringList(
            {"Relative position is only supported when the parent also uses CSS layout View: "
             "DisplayDevice/views/loner",
             "Using relative positioning or bottom/right on a view which doesn't have a CSS parent "
             "View: DisplayDevice/views/loner",
             "Setting margin on a view which doesn't have a CSS parent. View: DisplayDevice/views/loner",
             "CSS border not implemented View: DisplayDevice/views/root/child",
             "Positions are left, top, right and bottom only View: DisplayDevice/views/root/child"}));
    // Stored all the same, and borders take their room.
    EXPECT_EQ(loner->cssBottom(), 5);
    frame();
    EXPECT_EQ(child->layoutResultRect(), QRectF(0, 4, 400, 2));
}

TEST_F(Flex, BrokenTreesAndResultsAreReportedNotFollowed)
{
    DisplayView* child = box(root, "child", 10, 10);
    frame();
    CssLayout* css = root->cssLayout();
    LogCapture capture;
    EXPECT_EQ(CssLayout::getChild(css, 0), child->cssLayout()->node());
    const css_node_t* detached = CssLayout::getChild(css, 1);
    EXPECT_NE(detached, nullptr);
    child->cssLayout()->clearIsChild();
    EXPECT_EQ(CssLayout::getChild(css, 0), child->cssLayout()->node()); // reported, still handed out
    child->disableCssLayout();
    EXPECT_EQ(CssLayout::getChild(css, 0), detached); // the cache still names it

    DisplayView* leaf = box(root, "leaf", 10, 10);
    leaf->cssLayout()->node()->layout.should_update = true;
    leaf->cssLayout()->commitLayout(); // never laid out: nothing is defined
    CssLayout::measureView(leaf->cssLayout(), 100);

    DisplayView* loner = new DisplayView(device.views(), "loner");
    loner->enableCssLayout();
    new DisplayView(loner, "inner");
    loner->cssLayout()->setIsChild();
    loner->cssLayout()->computeLayout();
    EXPECT_EQ(capture.assertions(),
              QStringList({"Invalid child index for view View: DisplayDevice/views/root",
                           "mIsChild incorrectly set View: DisplayDevice/views/root/child",
                           "Requested child does not use css layout View: DisplayDevice/views/root/child",
                           "Width defined", "Height defined",
                           "Measure should not be called on fixed size views: DisplayDevice/views/root/leaf",
                           "Parent does not use CSS layout as expected View: DisplayDevice/views/loner"}));
    EXPECT_EQ(capture.records()[3].condition, "!isUndefined(layout.dimensions[CSS_WIDTH])");
    EXPECT_EQ(leaf->layoutResultRect(), QRectF(0, 0, 0, 0)); // undefined counts as 0
}

TEST_F(Flex, StyleEdgeListsAndTheirCounts)
{
    DisplayView* child = new DisplayView(root, "child");
    child->setStyle(Style("Margin:1,2"));
    EXPECT_EQ(child->cssMargin(CSS_TOP), 1);
    EXPECT_EQ(child->cssMargin(CSS_RIGHT), 2);
    EXPECT_EQ(child->cssMargin(CSS_BOTTOM), 1);
    EXPECT_EQ(child->cssMargin(CSS_LEFT), 2);
    EXPECT_TRUE(std::isnan(child->cssMargin(CSS_START)));

    child->setStyle(Style("Padding:1,2,3,4"));
    EXPECT_EQ(QList<float>({child->cssPadding(CSS_TOP), child->cssPadding(CSS_RIGHT),
                            child->cssPadding(CSS_BOTTOM), child->cssPadding(CSS_LEFT)}),
              QList<float>({1, 2, 3, 4}));
    EXPECT_TRUE(std::isnan(child->cssPadding(CSS_END)));
    child->setStyle(Style("Padding:1,2,3,4,5,6"));
    EXPECT_EQ(child->cssPadding(CSS_START), 5);
    EXPECT_EQ(child->cssPadding(CSS_END), 6);
    child->setStyle(Style("Padding:7.9")); // one number is an integer inset
    EXPECT_EQ(child->cssPadding(CSS_LEFT), 7);
    EXPECT_TRUE(std::isnan(child->cssPadding(CSS_START)));

    LogCapture capture;
    child->setStyle(Style("Padding:3,4,5"));
    child->setStyle(Style("Margin:1,2,3,4,5,6,7"));
    EXPECT_EQ(capture.assertions(), QStringList({"Invalid padding count: 3", "Invalid margin count: 7"}));
    EXPECT_EQ(child->cssPadding(CSS_LEFT), 7); // ignored
}

TEST_F(Flex, StyleFilesDescribeAFlexScreen)
{
    ScopedStyleAssets assets;
    assets.write("styles.conf",
                 "Screen=\"Width:400; Height:300; X:20; FlexDirection:row; Padding:10\"\n"
                 "[Screen]\n"
                 "Side=\"Width:100; MaxHeight:200\"\n"
                 "Main=\"Flex:1; Margin:0,0,0,10; FlexDirection:column; JustifyContent:flexend\"\n"
                 "Button=\"Height:40; AlignSelf:center; MinWidth:120\"\n");
    assets.manager()->loadConfiguration();
    DisplayView* screen = new DisplayView(device.views(), "screen");
    screen->setStyle(Style("Screen"));
    EXPECT_TRUE(screen->usesCssLayout());
    DisplayView* side = new DisplayView(screen, "side");
    side->setStyle(Style("Screen/Side"));
    DisplayView* main = new DisplayView(screen, "main");
    main->setStyle(Style("Screen/Main"));
    DisplayView* button = new DisplayView(main, "button");
    button->setStyle(Style("Screen/Button"));
    frame();
    EXPECT_EQ(screen->layoutResultRect(), QRectF(20, 0, 400, 300));
    EXPECT_EQ(side->layoutResultRect(), QRectF(10, 10, 100, 200));
    EXPECT_EQ(main->layoutResultRect(), QRectF(120, 10, 270, 280));
    EXPECT_EQ(button->layoutResultRect(), QRectF(75, 240, 120, 40));
    delete screen; // before its styles' manager goes
}

TEST_F(Flex, WrappingTextGrowsItsColumn)
{
    root->setCssAlignItems(CSS_ALIGN_FLEX_START);
    DisplayView* column = box(root, "column", 150);
    column->setCssPadding(Padding(5));
    WrappingText* text = new WrappingText(column, "text", 400);
    frame();
    // 140 pixels of room: three lines.
    EXPECT_EQ(text->layoutResultRect(), QRectF(5, 5, 140, 60));
    EXPECT_EQ(column->layoutResultRect(), QRectF(0, 0, 150, 70));

    text->setCssMaxWidth(100);
    frame();
    EXPECT_EQ(text->layoutResultRect(), QRectF(5, 5, 100, 80));
    EXPECT_EQ(column->layoutResultRect(), QRectF(0, 0, 150, 90));

    text->setCssMaxHeight(50); // the measure honours the max size
    frame();
    EXPECT_EQ(text->layoutResultRect().height(), 50);
}

TEST_F(Flex, WrappingLabelGrowsItsColumn)
{
    root->setCssAlignItems(CSS_ALIGN_FLEX_START);
    DisplayView* column = box(root, "column", 200);
    Label* label = new Label(column, "label", QStringLiteral("Charging will finish at a quarter past seven"),
                             QStringLiteral("TextFlags:wordwrap; LabelPadding:4"));
    frame();
    const double oneLine = label->naturalSize(-1).height();
    const double wrapped = label->naturalSize(200).height();
    ASSERT_GT(wrapped, oneLine);
    EXPECT_EQ(label->layoutResultRect(), QRectF(0, 0, 200, wrapped));
    EXPECT_EQ(column->layoutResultRect(), QRectF(0, 0, 200, wrapped));

    label->setText(label->text() + QStringLiteral(", in time for the next departure to the coast"));
    frame();
    EXPECT_GT(column->layoutResultRect().height(), wrapped);
    EXPECT_EQ(column->layoutResultRect().height(), label->naturalSize(200).height());

    label->setCssMaxWidth(120); // measured no wider than its css maximum
    frame();
    EXPECT_EQ(label->layoutResultRect().width(), 120);
    EXPECT_EQ(column->layoutResultRect().height(), label->naturalSize(120).height());
}

// The screen styles that ship in the assets folder, laid out as they stand.
TEST_F(Flex, ShippedStylesLayOutTheScreen)
{
    ScopedStyleAssets assets;
    for (const char* name : {"styles-common.conf", "styles.conf", "assets-common.conf", "assets.conf"}) {
        QFile file(QStringLiteral(ORBIS_SOURCE_DIR "/assets/") + name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        assets.write(name, file.readAll());
    }
    assets.manager()->loadConfiguration();
    DisplayView* screen = new DisplayView(device.views(), "screen");
    screen->setStyle(Style("Screen"));
    DisplayView* bar = new DisplayView(screen, "bar");
    bar->setStyle(Style("StatusBar/Bar"));
    DisplayView* clock = new DisplayView(bar, "clock");
    clock->setStyle(Style("StatusBar/Clock"));
    DisplayView* panel = new DisplayView(screen, "panel");
    panel->setStyle(Style("Panel/Frame"));
    DisplayView* header = new DisplayView(panel, "header");
    header->setStyle(Style("Panel/Header"));
    frame();
    EXPECT_EQ(screen->layoutResultRect(), QRectF(0, 0, 1920, 1200));
    EXPECT_EQ(bar->layoutResultRect(), QRectF(0, 0, 1920, 64));
    EXPECT_EQ(clock->layoutResultRect(), QRectF(24, 32, 120, 0)); // centred, no height of its own
    EXPECT_EQ(panel->layoutResultRect(), QRectF(12, 76, 1896, 1112));
    EXPECT_EQ(header->layoutResultRect(), QRectF(0, 0, 1896, 72));
    delete screen; // before its styles' manager goes
}

TEST_F(Flex, ChangedDirectionReachesEveryNodeThatInheritsIt)
{
    root->setCssFlexDirection(CSS_FLEX_DIRECTION_ROW);
    DisplayView* group = box(root, "group", 200);
    group->setCssFlexDirection(CSS_FLEX_DIRECTION_ROW);
    DisplayView* a = box(group, "a", 50);
    DisplayView* b = box(group, "b", 50);
    frame();
    EXPECT_EQ(a->layoutResultRect(), QRectF(0, 0, 50, 300));
    EXPECT_EQ(b->layoutResultRect(), QRectF(50, 0, 50, 300));

    // The group's own size and offered width stay the same: the engine's cache would
    // keep its left-to-right result.
    root->setCssDirection(CSS_DIRECTION_RTL);
    frame();
    EXPECT_EQ(group->layoutResultRect(), QRectF(200, 0, 200, 300));
    EXPECT_EQ(a->layoutResultRect(), QRectF(150, 0, 50, 300));
    EXPECT_EQ(b->layoutResultRect(), QRectF(100, 0, 50, 300));

    root->setCssDirection(CSS_DIRECTION_LTR);
    frame();
    EXPECT_EQ(group->layoutResultRect(), QRectF(0, 0, 200, 300));
    EXPECT_EQ(a->layoutResultRect(), QRectF(0, 0, 50, 300));
    EXPECT_EQ(b->layoutResultRect(), QRectF(50, 0, 50, 300));

    group->setCssDirection(CSS_DIRECTION_RTL);
    frame();
    EXPECT_EQ(a->layoutResultRect(), QRectF(150, 0, 50, 300));
    group->setCssDirection(CSS_DIRECTION_INHERIT);
    frame();
    EXPECT_EQ(a->layoutResultRect(), QRectF(0, 0, 50, 300));
}

TEST_F(Flex, OneChangeRelaysOutOnlyItsTreeAndRepaintsOnlyWhatMoved)
{
    root->setCssFlexDirection(CSS_FLEX_DIRECTION_ROW);
    root->setCssAlignItems(CSS_ALIGN_FLEX_START);
    DisplayView* left = box(root, "left", 100);
    WrappingText* leftText = new WrappingText(left, "text", 300);
    DisplayView* right = box(root, "right", 200, 300);
    DisplayView* first = box(right, "first", 50, 50);
    DisplayView* second = box(right, "second", 50, 50);
    DisplayView* other = new DisplayView(device.views(), "other");
    other->setCssSize(QSizeF(100, 100));
    DisplayView* otherChild = box(other, "child", CSS_UNDEFINED, 20);
    frame();
    ASSERT_EQ(second->layoutResultRect(), QRectF(0, 50, 50, 50));
    device.takeDirtyRegions(nullptr, nullptr);
    const int measured = leftText->measured;

    QSignalSpy firstMoved(first, SIGNAL(moved(DisplayView*)));
    QSignalSpy rightResized(right, SIGNAL(resized(DisplayView*)));
    QSignalSpy otherResized(otherChild, SIGNAL(resized(DisplayView*)));
    first->setCssHeight(30);
    frame();
    EXPECT_EQ(first->layoutResultRect(), QRectF(0, 0, 50, 30));
    EXPECT_EQ(second->layoutResultRect(), QRectF(0, 30, 50, 50));
    EXPECT_EQ(firstMoved.count(), 0);
    EXPECT_EQ(rightResized.count(), 0);
    EXPECT_EQ(otherResized.count(), 0);
    EXPECT_EQ(leftText->measured, measured); // the sibling subtree came from the cache
    QRegion render;
    device.takeDirtyRegions(&render, nullptr);
    EXPECT_EQ(render.boundingRect(), QRect(100, 0, 50, 100));
}

TEST_F(Flex, MembershipFollowsVisibilityParentsAndOrder)
{
    DisplayView* a = box(root, "a", CSS_UNDEFINED, 10);
    DisplayView* b = box(root, "b", CSS_UNDEFINED, 20);
    DisplayView* c = box(root, "c", CSS_UNDEFINED, 30);
    frame();
    EXPECT_EQ(c->layoutResultRect().y(), 30);

    b->hide();
    frame();
    EXPECT_EQ(root->cssLayout()->node()->children_count, 2);
    EXPECT_EQ(c->layoutResultRect().y(), 10);
    b->show();
    a->raise();
    frame();
    EXPECT_EQ(b->layoutResultRect().y(), 0);
    EXPECT_EQ(c->layoutResultRect().y(), 20);
    EXPECT_EQ(a->layoutResultRect().y(), 50);

    DisplayView* other = new DisplayView(device.views(), "other");
    other->setCssSize(QSizeF(100, 100));
    c->changeParent(other);
    frame();
    EXPECT_EQ(a->layoutResultRect().y(), 20);
    EXPECT_EQ(c->layoutResultRect(), QRectF(0, 0, 100, 30));
    EXPECT_TRUE(c->cssLayout()->isChild());

    // A plain child added to a flex view takes part at once.
    DisplayView* late = new DisplayView(other, "late");
    EXPECT_TRUE(late->usesCssLayout());
    EXPECT_TRUE(late->cssLayout()->isChild());

    // Showing and hiding the top of a flow is no misuse.
    LogCapture capture;
    other->hide();
    other->show();
    frame();
    EXPECT_TRUE(capture.assertions().isEmpty()) << capture.assertions().join("\n").toStdString();
}

TEST_F(Flex, ChildrenChangedDuringThePassAreLaidOutInTheNextRound)
{
    class Sprouting : public DisplayView
    {
    public:
        using DisplayView::DisplayView;
        void resized() override
        {
            if (!sprout)
                sprout = new DisplayView(parentView(), "sprout");
        }
        DisplayView* sprout = nullptr;
    };
    Sprouting* a = new Sprouting(root, "a");
    a->setCssHeight(20);
    DisplayView* b = box(root, "b", CSS_UNDEFINED, 30);
    LogCapture capture;
    frame();
    ASSERT_NE(a->sprout, nullptr);
    EXPECT_TRUE(capture.contains("Recursive layout detected View: DisplayDevice/views/root"));
    EXPECT_EQ(b->layoutResultRect(), QRectF(0, 20, 400, 30));
    EXPECT_EQ(a->sprout->layoutResultRect(), QRectF(0, 50, 400, 0));
    EXPECT_EQ(root->cssLayout()->node()->children_count, 3);
    EXPECT_FALSE(root->isLayoutDirty());
}

TEST_F(Flex, RemovingTheOnlyChildLeavesTheNodeChildless)
{
    DisplayView* only = box(root, "only", 10, 10);
    frame();
    EXPECT_EQ(root->cssLayout()->node()->children_count, 1);
    delete only;
    frame();
    EXPECT_EQ(root->cssLayout()->node()->children_count, 0);
    EXPECT_FALSE(root->isLayoutDirty());

    DisplayView* moving = box(root, "moving", 10, 10);
    frame();
    moving->changeParent(device.views());
    frame();
    EXPECT_EQ(root->cssLayout()->node()->children_count, 0);
    EXPECT_FALSE(moving->cssLayout()->isChild());
}

TEST_F(Flex, PlaceholderKeepsTheViewsPlaceInTheFlow)
{
    root->setCssFlexDirection(CSS_FLEX_DIRECTION_ROW);
    box(root, "a", 50);
    DisplayView* b = box(root, "b", 60);
    b->setCssMargin(CSS_LEFT, 5);
    DisplayView* c = box(root, "c", 50);
    frame();
    ASSERT_EQ(c->layoutResultRect().x(), 115);
    DisplayView* placeholder = new DisplayView(nullptr, "placeholder");
    b->createPlaceholder(placeholder);
    b->changeParent(device.views());
    frame();
    EXPECT_EQ(placeholder->layoutResultRect(), QRectF(55, 0, 60, 300));
    EXPECT_EQ(c->layoutResultRect().x(), 115);
}

TEST_F(Flex, ViewsPlacedOrSizedByHandKeepThatThroughThePasses)
{
    DisplayView* panel = new DisplayView(device.views(), "panel");
    panel->enableCssLayout();
    DisplayView* content = box(panel, "content", CSS_UNDEFINED, 40);
    panel->moveTo(40, 30);
    panel->resizeTo(200, 100);
    frame();
    EXPECT_EQ(panel->rect(), QRect(40, 30, 200, 100));
    EXPECT_EQ(content->layoutResultRect(), QRectF(0, 0, 200, 40));

    panel->setHeight(120); // only the height changes hands
    EXPECT_EQ(panel->cssSize(), QSizeF(200, 120));

    content->setFixedSize(true);
    EXPECT_EQ(content->cssSize(), QSizeF(200, 40));
    content->setFixedSize(false);
    EXPECT_TRUE(std::isnan(content->cssWidth()));
}

TEST_F(Flex, DebugSettingPrintsTheComputedTree)
{
    box(root, "child", 100, 20);
    ScopedConfigOverride debug("ui/debug_css_layout", true);
    root->setCssPadding(Padding(2));
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    std::fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    dup2(file.handle(), STDOUT_FILENO);
    frame();
    std::fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(saved);
    file.seek(0);
    const QString printed = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(printed.startsWith("{view: 'DisplayDevice/views/root', layout: {width: 400, height: 300, "
                                   "top: 0, left: 0}"))
        << printed.toStdString();
    EXPECT_TRUE(
        printed.contains("  {view: 'DisplayDevice/views/root/child', layout: {width: 100, height: 20, "
                         "top: 2, left: 2}"))
        << printed.toStdString();
}

TEST(FlexUnbound, ViewsWithoutTheBindingReportTheEngineDefaults)
{
    DisplayView view(nullptr, "plain");
    EXPECT_FALSE(view.usesCssLayout());
    EXPECT_EQ(view.cssFlexDirection(), CSS_FLEX_DIRECTION_COLUMN);
    EXPECT_EQ(view.cssAlignItems(), CSS_ALIGN_STRETCH);
    EXPECT_TRUE(std::isnan(view.cssWidth()));
    EXPECT_EQ(view.cssMargin(CSS_LEFT), 0);
    EXPECT_TRUE(std::isnan(view.cssMargin(CSS_END)));
    EXPECT_FALSE(view.usesCssLayout()); // asking does not enable it
    view.setCssJustifyContent(CSS_JUSTIFY_CENTER);
    EXPECT_TRUE(view.usesCssLayout());
    EXPECT_TRUE(view.deferredLayoutEnabled());
    view.disableCssLayout();
    EXPECT_FALSE(view.usesCssLayout());
}
