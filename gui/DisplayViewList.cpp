#include "DisplayViewList.h"

#include "DisplayView.h"
#include "Logger.h"

static const char* const kLogSource = "../../../gui/DisplayView";

void DisplayViewList::updateCachedIterators()
{
    for (iterator iter = mList.begin(); iter != mList.end(); ++iter) {
        (*iter)->mParentChildrenIterator = iter;
        ORBIS_ASSERT((*iter)->isParentChildrenIteratorValid(), QStringLiteral("Invalid children iterator"));
    }
}

void DisplayViewList::settle(bool wasShared, DisplayView* view, iterator node)
{
    if (wasShared) {
        updateCachedIterators();
        return;
    }
    view->mParentChildrenIterator = node;
}

void DisplayViewList::append(DisplayView* view)
{
    if (!ORBIS_ASSERT(!view->isParentChildrenIteratorValid(), QStringLiteral("View already in a list")))
        return;
    const bool shared = !mList.isDetached();
    mList.append(view);
    settle(shared, view, --mList.end());
}

void DisplayViewList::prepend(DisplayView* view)
{
    if (!ORBIS_ASSERT(!view->isParentChildrenIteratorValid(), QStringLiteral("View already in a list")))
        return;
    const bool shared = !mList.isDetached();
    mList.prepend(view);
    settle(shared, view, mList.begin());
}

void DisplayViewList::insert(iterator position, DisplayView* view)
{
    if (!ORBIS_ASSERT(!view->isParentChildrenIteratorValid(), QStringLiteral("View already in a list")))
        return;
    // QLinkedList carries the position over when the insert detaches; the siblings'
    // cached iterators are then repaired by settle().
    const bool shared = !mList.isDetached();
    settle(shared, view, mList.insert(position, view));
}

void DisplayViewList::remove(DisplayView* view)
{
    const bool shared = !mList.isDetached();
    if (view->isParentChildrenIteratorValid())
        mList.erase(view->mParentChildrenIterator);
    else
        mList.removeOne(view);
    view->resetParentChildrenIterator();
    if (shared)
        updateCachedIterators();
}

void DisplayViewList::clear()
{
    for (DisplayView* view : qAsConst(mList))
        view->resetParentChildrenIterator();
    mList.clear();
}
