// ListView: touches, and sliding rows sideways.
#include "ListView.h"

#include "ConfigValue.h"
#include "input/touch/TouchDevice.h"

#include <cmath>

static ConfigIntValue gListDragThreshold("gui/list_drag_threshold", 5);
static ConfigRealValue gListItemMaxDragSlope("gui/list_item_max_drag_slope", 0.7);

static const double kSwipeSettleSeconds = 0.25;

void ListView::touched(int touch, QPoint point)
{
    mDragMode = DragMode::Undecided;
    mPendingDrag = QSize(0, 0);
    closeSwipedRow(true);
    ScrollableView::touched(touch, point);
}

void ListView::dragged(int touch, QSize delta)
{
    if (mDragMode == DragMode::Undecided && listOption(SwipeRows)) {
        mPendingDrag += delta;
        decideDragMode(touch);
        if (mDragMode == DragMode::Scrolling)
            ScrollableView::dragged(touch, mPendingDrag);
        else if (mDragMode == DragMode::Swiping)
            dragged(touch, mPendingDrag);
        return;
    }
    if (mDragMode == DragMode::Swiping) {
        mSwipeOffset.setValue(mSwipeOffset.value() + delta.width());
        placeSwipedRow();
        return;
    }
    mDragMode = DragMode::Scrolling;
    ScrollableView::dragged(touch, delta);
}

void ListView::released(int touch)
{
    if (mDragMode == DragMode::Swiping)
        endSwipe(true);
    mDragMode = DragMode::Undecided;
    ScrollableView::released(touch);
}

void ListView::touchCanceled(int touch)
{
    if (mDragMode == DragMode::Swiping)
        closeSwipedRow(true);
    mDragMode = DragMode::Undecided;
    ScrollableView::touchCanceled(touch);
}

void ListView::tick()
{
    ScrollableView::tick();
    if (mSwipeRow < 0 || !mSwipeOffset.active())
        return;
    mSwipeOffset.update(false);
    placeSwipedRow();
    if (!mSwipeOffset.active() && mSwipeOffset.value() == 0)
        mSwipeRow = -1;
}

// A drag that runs mostly across the list slides the row under the press; any
// other drag scrolls.
void ListView::decideDragMode(int touch)
{
    const double along = std::abs(mPendingDrag.height()), across = std::abs(mPendingDrag.width());
    if (std::hypot(along, across) < gListDragThreshold.value())
        return;
    int row = -1;
    if (across > 0 && along / across <= gListItemMaxDragSlope.value()) {
        const TouchInfo* info = theTouchDevice ? theTouchDevice->info(touch) : nullptr;
        if (info)
            row = rowAt(info->pressPoint - relativePositionRect(nullptr).topLeft());
    }
    if (row < 0 || !viewForRow(row)) {
        mDragMode = DragMode::Scrolling;
        return;
    }
    mDragMode = DragMode::Swiping;
    if (mSwipeRow != row)
        endSwipe(false);
    mSwipeRow = row;
    mSwipeOffset.setValue(0);
    // The part of the drag that decided it is replayed as the first slide.
    mPendingDrag.setHeight(0);
}

void ListView::placeSwipedRow()
{
    if (DisplayView* view = viewForRow(mSwipeRow)) {
        const QPoint to(int(std::lround(mSwipeOffset.value())), view->position().y());
        if (view->position() != to)
            view->moveTo(to.x(), to.y());
    }
}

void ListView::endSwipe(bool report)
{
    if (mSwipeRow < 0)
        return;
    const int offset = int(std::lround(mSwipeOffset.value()));
    if (!report) {
        // The row leaves its view: the view goes back into line at once.
        mSwipeOffset.setValue(0);
        placeSwipedRow();
        mSwipeRow = -1;
        return;
    }
    const int row = mSwipeRow;
    if (mSwipeRevealWidth > 0 && std::abs(offset) * 2 >= mSwipeRevealWidth)
        mSwipeOffset.ease(offset < 0 ? -mSwipeRevealWidth : mSwipeRevealWidth, kSwipeSettleSeconds, 0,
                          InterpolatedValue::EaseOutExpo, true);
    else
        mSwipeOffset.ease(0, kSwipeSettleSeconds, 0, InterpolatedValue::EaseOutExpo, true);
    emit rowSwiped(this, row, offset);
}

void ListView::closeSwipedRow(bool animated)
{
    if (mSwipeRow < 0)
        return;
    if (animated && mSwipeOffset.value() != 0) {
        mSwipeOffset.ease(0, kSwipeSettleSeconds, 0, InterpolatedValue::EaseOutExpo, true);
        return;
    }
    endSwipe(false);
}

void ListView::rowViewTapped(DisplayView* view)
{
    const int row = rowOfView(view);
    if (mSwipeRow >= 0 && mSwipeRow != row)
        closeSwipedRow(true);
    if (row >= 0)
        emit rowTapped(this, row);
}
