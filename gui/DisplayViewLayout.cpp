// DisplayView: the layout protocol.
#include "CssLayout.h"
#include "DisplayDevice.h"
#include "DisplayView.h"
#include "DisplayViewExtras.h"
#include "LayoutAction.h"
#include "Logger.h"

static const char* const kLogSource = "../../../gui/DisplayView";

void DisplayView::setLayoutImpl(LayoutImpl* impl)
{
    if (impl == layoutImpl())
        return;
    // Known before the old binding goes, which may look at its view while it does.
    mLayoutIsCss = dynamic_cast<CssLayout*>(impl) != nullptr;
    mLayoutImpl.reset(impl);
    layoutImplChanged();
    if (impl && mEnableDeferredLayout) {
        markLayoutDirty();
        queueForLayout();
    }
}

void DisplayView::layoutImplChanged() {}

void DisplayView::setEnableDeferredLayout(bool enable)
{
    mEnableDeferredLayout = enable;
}

void DisplayView::setLayoutMargin(const Padding& margin)
{
    if (margin == ext().mLayoutMargin)
        return;
    extras().mLayoutMargin = margin;
    layoutPropertyChanged(MarginProperty);
}

void DisplayView::setFixedSize(bool fixed)
{
    if (!layoutImpl()) {
        viewAssert("mLayoutImpl", QStringLiteral("Unimplemented View: %1"), __LINE__);
        return;
    }
    mFixedSize = fixed;
    layoutPropertyChanged(FixedSizeProperty);
}

bool DisplayView::checkForRecursiveLayout(LayoutProperty property)
{
    if (mLayoutInProgress)
        return viewAssert("!mLayoutInProgress", QStringLiteral("Recursive layout detected View: %1"),
                          __LINE__);
    if (mInResized && property == SizeProperty)
        return viewAssert("!mInResized", QStringLiteral("Recursive layout in resized() View: %1"), __LINE__);
    if (mInMoved && property == PositionProperty)
        return viewAssert("!mInMoved", QStringLiteral("Recursive layout in moved() View: %1"), __LINE__);
    return true;
}

void DisplayView::layoutPropertyChanged(LayoutProperty property)
{
    LayoutImpl* parentLayout = mParentView ? mParentView->layoutImpl() : nullptr;
    if (!layoutImpl() && !parentLayout)
        return;
    if (!checkForRecursiveLayout(property))
        return;
    if (layoutImpl())
        layoutImpl()->layoutPropertyChanged(property);
    if (parentLayout)
        parentLayout->childLayoutPropertyChanged(this, property);
    if (mEnableDeferredLayout) {
        markLayoutDirty();
        queueForLayout();
    } else if (layoutImpl()) {
        viewAssert(
            "mEnableDeferredLayout",
            QStringLiteral("Views that use CSS Layout should always have mEnableDeferredLayout set View: %1"),
            __LINE__);
    }
}

void DisplayView::markLayoutDirty()
{
    if (mLayoutDirty)
        return;
    mLayoutDirty = true;
    if (layoutImpl())
        layoutImpl()->layoutMarkedDirty();
    if (mParentView && mParentView->layoutImpl())
        mParentView->layoutImpl()->childLayoutDirty(this);
}

void DisplayView::queueForLayout()
{
    if (mDevice)
        mDevice->deferLayout(this);
}

void DisplayView::deferredLayout()
{
    layout(false);
}

void DisplayView::layout(bool force)
{
    if (!force && !mLayoutDirty)
        return;
    DisplayView* start = layoutImpl() ? layoutImpl()->viewToStartLayout() : this;
    if (!start) {
        viewAssert("start", QStringLiteral("View for starting layout not found View: %1"), __LINE__);
        return;
    }
    start->visitForLayout();
    if (mLayoutDirty)
        viewAssert("!mLayoutDirty", QStringLiteral("Still dirty after performing layout View: %1"), __LINE__);
}

void DisplayView::visitForLayout()
{
    if (mLayoutInProgress) {
        viewAssert("!mLayoutInProgress", QStringLiteral("Layout already in progress View: %1"), __LINE__);
        return;
    }
    ++sVisitedCount;
    // Cleared first: a change made during the pass leaves the view dirty again.
    mLayoutDirty = false;
    mLayoutInProgress = true;
    doLayout();
    mLayoutInProgress = false;
}

void DisplayView::doLayout()
{
    if (!mLayoutInProgress) {
        viewAssert("mLayoutInProgress",
                   QStringLiteral("doLayout() called while layout not in progress View: %1"), __LINE__);
        return;
    }
    if (layoutImpl())
        layoutImpl()->layout();
    // A flex view's binding visits the children in its flow; a child outside the flow
    // is queued for layout by its own changes.
    if (!cssLayout())
        visitChildrenForLayout();
}

void DisplayView::visitChildrenForLayout()
{
    const DisplayViewList::List children = mChildren.list();
    for (DisplayView* child : children) {
        if (child->mLayoutDirty)
            child->visitForLayout();
    }
}

void DisplayView::placeRecursively()
{
    place();
    const DisplayViewList::List children = mChildren.list();
    for (DisplayView* child : children)
        child->placeRecursively();
}

void DisplayView::setLayoutResultPosition(const QPointF& position)
{
    setLayoutResultRect(QRectF(position, QSizeF(mWidth, mHeight)));
}

QSizeF DisplayView::naturalSize(double)
{
    return QSizeF(mWidth, mHeight);
}

void DisplayView::setLayoutResultSize(const QSizeF& size)
{
    setLayoutResultRect(QRectF(QPointF(mX, mY), size));
}

void DisplayView::setLayoutResultRect(const QRectF& rect)
{
    const QRectF from(mX, mY, mWidth, mHeight);
    extras().mLayoutResultRect = rect;
    if (ext().mLayoutAction) {
        ++LayoutAction::sActive;
        ext().mLayoutAction->apply(this, from, rect);
        --LayoutAction::sActive;
        return;
    }
    applyPosition(rect.x(), rect.y());
    applySize(qRound(rect.width()), qRound(rect.height()));
}

void DisplayView::setLayoutAction(LayoutAction* action, bool owned)
{
    if (ext().mOwnsLayoutAction && ext().mLayoutAction != action)
        delete ext().mLayoutAction;
    extras().mLayoutAction = action;
    extras().mOwnsLayoutAction = action && owned;
}
