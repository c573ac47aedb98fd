#include "PhysicsListView.h"

#include "Clock.h"
#include "ConfigValue.h"

#include <cmath>

static ConfigIntValue gListDragThreshold("gui/list_drag_threshold", 5);
static ConfigRealValue gListItemMaxDragSlope("gui/list_item_max_drag_slope", 0.7);

// Only the movement of the last moments counts for the fling; a finger that rested
// longer than this before lifting does not fling.
static const qint64 kVelocityWindowMs = 100;
static const double kSwipeReturnSeconds = 0.25;

PhysicsListView::PhysicsListView(DisplayView* parent, const char* name, Qt::Orientation direction, float drag,
                                 float k, float damping)
    : DisplayView(parent, name), mDirection(direction),
      mScroll(drag, k, damping, ScrollHandler::kDoneThreshold)
{}

void PhysicsListView::reconfigureConstants(float drag, float k, float damping)
{
    mScroll.reconfigureConstants(drag, k, damping);
}

void PhysicsListView::touched(int touch, QPoint point)
{
    if (mTouch != -1)
        return;
    mTouch = touch;
    mMode = DragMode::Undecided;
    mPendingDrag = QSize(0, 0);
    mTouchPoint = point - relativePositionRect(nullptr).topLeft();
    mMoves = {{Clock::current()->nowMilliseconds(), 0.0f}};
    // Catching a gliding list stops it where it is.
    mScroll.onTouchStart(float(mScroll.value()));
}

void PhysicsListView::dragged(int touch, QSize delta)
{
    if (touch != mTouch)
        return;
    if (mMode == DragMode::Undecided) {
        mPendingDrag += delta;
        decideDragMode();
        if (mMode != DragMode::Undecided)
            moveBy(mPendingDrag);
    } else {
        moveBy(delta);
    }
    placeItems();
}

void PhysicsListView::released(int touch)
{
    if (touch == mTouch)
        endTouch(true);
}

void PhysicsListView::touchCanceled(int touch)
{
    if (touch == mTouch)
        endTouch(false);
}

void PhysicsListView::tick()
{
    mScroll.update(false);
    mSwipeOffset.update(false);
    placeItems();
}

float PhysicsListView::along(QSize size) const
{
    return float(mDirection == Qt::Vertical ? size.height() : size.width());
}

float PhysicsListView::across(QSize size) const
{
    return float(mDirection == Qt::Vertical ? size.width() : size.height());
}

void PhysicsListView::decideDragMode()
{
    const float a = std::fabs(along(mPendingDrag)), c = std::fabs(across(mPendingDrag));
    if (std::hypot(a, c) < gListDragThreshold.value())
        return;
    const bool sideways = c > 0 && a / c <= gListItemMaxDragSlope.value();
    mSwipedItem = sideways ? itemAt(mTouchPoint) : nullptr;
    if (mSwipedItem) {
        mMode = DragMode::Swiping;
        mSwipeOffset.setValue(0);
    } else {
        mMode = DragMode::Scrolling;
    }
}

void PhysicsListView::moveBy(QSize delta)
{
    if (mMode == DragMode::Swiping) {
        mSwipeOffset.setValue(mSwipeOffset.value() + across(delta));
        return;
    }
    const qint64 now = Clock::current()->nowMilliseconds();
    while (mMoves.size() > 1 && mMoves.first().first < now - kVelocityWindowMs)
        mMoves.removeFirst();
    mMoves.append({now, along(delta)});
    mScroll.onTouchMove(along(delta));
}

float PhysicsListView::releaseVelocity() const
{
    const qint64 now = Clock::current()->nowMilliseconds();
    if (mMode != DragMode::Scrolling || mMoves.last().first < now - kVelocityWindowMs)
        return 0;
    // The first kept entry only marks when the measured stretch began.
    float distance = 0;
    for (int i = 1; i < mMoves.size(); ++i)
        distance += mMoves[i].second;
    const qint64 span = mMoves.last().first - mMoves.first().first;
    return span > 0 ? distance * 1000.0f / float(span) : 0.0f;
}

void PhysicsListView::endTouch(bool reportSwipe)
{
    if (mMode == DragMode::Swiping && mSwipedItem) {
        if (reportSwipe)
            emit itemSwiped(this, mSwipedItem, int(std::lround(mSwipeOffset.value())));
        mSwipeOffset.ease(0, kSwipeReturnSeconds, 0, InterpolatedValue::EaseOutExpo, true);
    }
    // A list left past an end (a swipe or a tap during a bounce) springs back too.
    mScroll.onTouchEnd(reportSwipe ? releaseVelocity() : 0.0f);
    mTouch = -1;
    mMode = DragMode::Undecided;
}

DisplayView* PhysicsListView::itemAt(QPoint local) const
{
    const DisplayViewList::List& items = children().list();
    for (auto it = items.end(); it != items.begin();) {
        DisplayView* item = *--it;
        if (item->visibleFlag() && item->rect().contains(local))
            return item;
    }
    return nullptr;
}

void PhysicsListView::placeItems()
{
    const bool vertical = mDirection == Qt::Vertical;
    int offset = int(std::floor(mScroll.value() + 0.5));
    int length = 0;
    for (DisplayView* item : children().list()) {
        if (!item->visibleFlag())
            continue;
        const int side = item == mSwipedItem ? int(std::lround(mSwipeOffset.value())) : 0;
        const QPoint to = vertical ? QPoint(side, offset + length) : QPoint(offset + length, side);
        if (item->position() != to)
            item->moveTo(to.x(), to.y());
        length += vertical ? item->height() : item->width();
    }
    mScroll.setExtent(float(length - (vertical ? height() : width())));
}
