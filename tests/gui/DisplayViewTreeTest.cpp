#include "DisplayDevice.h"
#include "LogCapture.h"
#include "support/ColorView.h"
#include "support/QtPrinters.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {
QStringList names(const DisplayView* parent)
{
    QStringList result;
    for (DisplayView* child : parent->children().list())
        result.append(child->viewName());
    return result;
}

bool allIteratorsValid(const DisplayView* parent)
{
    for (DisplayView* child : parent->children().list()) {
        if (!child->isParentChildrenIteratorValid())
            return false;
    }
    return true;
}

struct Tree : ::testing::Test
{
    DisplayDevice device{400, 300};
    DisplayView* root = new DisplayView(device.views(), "root");
    DisplayView* a = new DisplayView(root, "a");
    DisplayView* b = new DisplayView(root, "b");
    DisplayView* c = new DisplayView(root, "c");

    Tree() { root->resizeTo(400, 300); }
};
} // namespace

TEST_F(Tree, ChildrenAreInCreationOrderWithValidIterators)
{
    EXPECT_EQ(names(root), QStringList({"a", "b", "c"}));
    EXPECT_TRUE(allIteratorsValid(root));
    EXPECT_EQ(a->device(), &device);
    EXPECT_EQ(a->parent(), root);
    EXPECT_EQ(c->viewPath(), "DisplayDevice/views/root/c");
    EXPECT_TRUE(c->isChildOf(&device));
    EXPECT_FALSE(root->isChildOf(c));
}

TEST_F(Tree, RaiseAndLowerReorderWithAndWithoutAnotherView)
{
    a->raise();
    EXPECT_EQ(names(root), QStringList({"b", "c", "a"}));
    a->lower();
    EXPECT_EQ(names(root), QStringList({"a", "b", "c"}));
    a->raise(b);
    EXPECT_EQ(names(root), QStringList({"b", "a", "c"}));
    c->lower(a);
    EXPECT_EQ(names(root), QStringList({"b", "c", "a"}));
    c->raise(a); // onto the top through the last node
    EXPECT_EQ(names(root), QStringList({"b", "a", "c"}));
    EXPECT_TRUE(allIteratorsValid(root));
}

TEST_F(Tree, RaiseOrLowerAgainstAnotherParentLogsAndKeepsTheOrder)
{
    DisplayView stranger(nullptr, "stranger");
    LogCapture capture;
    a->raise(&stranger);
    a->lower(&stranger);
    EXPECT_EQ(capture.assertions(),
              QStringList({"Trying to use raise() on a view that doesn't have same parent!",
                           "Trying to use lower() on a view that doesn't have same parent!"}));
    EXPECT_EQ(capture.records().first().file, "../../../gui/DisplayView");
    EXPECT_EQ(names(root), QStringList({"a", "b", "c"}));
}

TEST_F(Tree, ChangesWhileACopyIsAliveRepairTheCachedIterators)
{
    // A copy such as painting takes shares the nodes; the next change detaches.
    const DisplayViewList::List snapshot = root->children().list();
    a->raise();
    EXPECT_TRUE(allIteratorsValid(root));
    EXPECT_EQ(names(root), QStringList({"b", "c", "a"}));
    EXPECT_EQ(snapshot.first(), a); // the copy is untouched

    const DisplayViewList::List second = root->children().list();
    delete b;
    EXPECT_TRUE(allIteratorsValid(root));
    const DisplayViewList::List third = root->children().list();
    c->lower(a);
    EXPECT_EQ(names(root), QStringList({"c", "a"}));
    EXPECT_TRUE(allIteratorsValid(root));
    const DisplayViewList::List fourth = root->children().list();
    new DisplayView(root, "d");
    EXPECT_EQ(names(root), QStringList({"c", "a", "d"}));
    EXPECT_TRUE(allIteratorsValid(root));
}

TEST_F(Tree, ChangeParentMovesTheViewAndItsDevice)
{
    DisplayView* inner = new DisplayView(b, "inner");
    QSignalSpy rootUpdates(root, SIGNAL(updated(DisplayView*, QRect)));
    b->resizeTo(10, 10);
    rootUpdates.clear();
    b->changeParent(b->parentView()); // no-op
    EXPECT_EQ(rootUpdates.count(), 0);

    DisplayView detached(nullptr, "detached");
    b->changeParent(&detached);
    EXPECT_EQ(names(root), QStringList({"a", "c"}));
    EXPECT_EQ(names(&detached), QStringList({"b"}));
    EXPECT_EQ(inner->device(), nullptr);
    EXPECT_EQ(rootUpdates.count(), 1); // the area it left

    b->changeParent(nullptr);
    EXPECT_EQ(b->parentView(), nullptr);
    EXPECT_TRUE(detached.children().isEmpty());
    b->changeParent(root);
    EXPECT_EQ(names(root), QStringList({"a", "c", "b"}));
    EXPECT_EQ(inner->device(), &device);

    LogCapture capture;
    root->changeParent(inner);
    EXPECT_EQ(capture.assertions(),
              QStringList("A view cannot become a child of itself or of its descendants"));
    EXPECT_EQ(root->parentView(), device.views());
}

TEST_F(Tree, PlaceholderTakesTheViewsPlace)
{
    b->moveTo(5, 6);
    b->resizeTo(30, 40);
    DisplayView* placeholder = b->createPlaceholder(new DisplayView(nullptr, "placeholder"));
    ASSERT_NE(placeholder, nullptr);
    EXPECT_EQ(names(root), QStringList({"a", "placeholder", "b", "c"}));
    EXPECT_EQ(placeholder->rect(), QRect(5, 6, 30, 40));
    EXPECT_TRUE(allIteratorsValid(root));

    LogCapture capture;
    DisplayView orphan(nullptr, "orphan");
    DisplayView other(nullptr, "other");
    EXPECT_EQ(orphan.createPlaceholder(&other), nullptr);
    EXPECT_EQ(capture.assertions(),
              QStringList("Trying to create a placeholder for a view without a parent."));
}

TEST_F(Tree, DestructionLeavesTheParentAndDeletesChildren)
{
    QPointer<DisplayView> inner = new DisplayView(b, "inner");
    delete b;
    EXPECT_TRUE(inner.isNull());
    EXPECT_EQ(names(root), QStringList({"a", "c"}));

    root->clearAllChildren();
    EXPECT_TRUE(root->children().isEmpty());

    // A view re-parented behind DisplayView's back is reported when it goes.
    LogCapture capture;
    DisplayView* odd = new DisplayView(root, "odd");
    QObject other;
    odd->setParent(&other);
    delete odd;
    EXPECT_EQ(capture.assertions(),
              QStringList("Unexpected qobject parent for view View: DisplayDevice/views/root/odd"));
}

TEST(DisplayViewNames, SlashesCannotBreakThePath)
{
    DisplayView parent(nullptr, "outer");
    DisplayView* child = new DisplayView(&parent, " a/b ");
    EXPECT_EQ(child->viewPath(), "outer/a_b");
    DisplayView* unnamed = new DisplayView(&parent);
    EXPECT_EQ(unnamed->viewName(), "DisplayView");
    unnamed->setViewName("x/y");
    EXPECT_EQ(unnamed->viewPath(), "outer/x_y");

    child->incrementTouchCount();
    const QVariantMap map = parent.toVariantMap();
    EXPECT_EQ(map.value("name").toString(), "outer");
    ASSERT_EQ(map.value("children").toList().size(), 2);
    EXPECT_EQ(map.value("children").toList().first().toMap().value("TouchCount").toInt(), 1);
    EXPECT_TRUE(map.value("visible").toBool());
    EXPECT_TRUE(map.value("enabled").toBool());
}

TEST(DisplayViewNames, ViewsOfOneNameShareItsCharacters)
{
    DisplayView parent(nullptr, "outer");
    DisplayView* first = new DisplayView(&parent, "row");
    DisplayView* second = new DisplayView(&parent, " row ");
    DisplayView* renamed = new DisplayView(&parent, "other");
    renamed->setViewName("row");
    EXPECT_EQ(second->viewName(), "row");
    EXPECT_EQ(first->viewName().constData(), second->viewName().constData());
    EXPECT_EQ(first->viewName().constData(), renamed->viewName().constData());
    // Sharing never ties two views together: renaming one leaves the others alone.
    first->setViewName("head");
    EXPECT_EQ(first->viewPath(), "outer/head");
    EXPECT_EQ(second->viewPath(), "outer/row");
}

TEST(AutoResize, ChildrenFollowTheirParentsSize)
{
    DisplayDevice device(400, 300);
    EXPECT_EQ(device.views()->size(), QSize(400, 300));
    DisplayView* panel = new DisplayView(device.views(), "panel");
    panel->autoResizeToParent(QRectF(0.5, 0, 0.5, 1));
    DisplayView* inset = new DisplayView(panel, "inset");
    inset->autoResizeToParentWithMargins(Padding(1, 2, 3, 4));
    DisplayView* strip = new DisplayView(panel, "strip");
    strip->resizeTo(10, 7);
    strip->autoResizeWidthToParent(5, 5);
    EXPECT_EQ(panel->rect(), QRect(200, 0, 200, 300));
    EXPECT_EQ(inset->rect(), QRect(4, 1, 194, 296));
    EXPECT_EQ(strip->rect(), QRect(5, 0, 190, 7));

    device.setSize(QSize(800, 600));
    EXPECT_EQ(device.overlays()->size(), QSize(800, 600));
    EXPECT_EQ(panel->rect(), QRect(400, 0, 400, 600));
    EXPECT_EQ(inset->rect(), QRect(4, 1, 394, 596));
    EXPECT_EQ(strip->rect(), QRect(5, 0, 390, 7)); // its height is its own
}
