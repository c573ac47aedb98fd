#include "ScrollableView.h"

#include "VerticalScrollBar.h"
#include "input/touch/TouchDevice.h"

#include <cmath>

ScrollableView::ScrollableView(DisplayView* parent, const char* name)
    : DisplayView(parent, name), mHorizontal(ScrollHandler::kScrollFriction, ScrollHandler::kScrollSpring,
                                             ScrollHandler::kScrollDamping, ScrollHandler::kDoneThreshold),
      mVertical(ScrollHandler::kScrollFriction, ScrollHandler::kScrollSpring, ScrollHandler::kScrollDamping,
                ScrollHandler::kDoneThreshold)
{
    setTouchBehavior(KeepTouches, true);
    setRequiredTouchGesture(DragGesture, true);
    // The content moves with the scroll, whatever flex flow the view is in.
    setPlacesOwnChildren(true);
    layoutImplChanged();
}

ScrollableView::~ScrollableView() = default;

void ScrollableView::layoutImplChanged() {}

// Options

bool ScrollableView::option(Option option) const
{
    if (option == NoOptions)
        return mOptions == 0;
    return (mOptions & option) == quint32(option);
}

void ScrollableView::setOption(Option option, bool on)
{
    mOptions = on ? (mOptions | option) : (mOptions & ~quint32(option));
    if (option & (HorizontalScrolling | VerticalScrolling))
        scrollingAllowedChanged(option);
}

void ScrollableView::scrollingAllowedChanged(Option)
{
    setUseScrollBar(!allowHorizontalScrolling() && allowVerticalScrolling());
    updateExtent();
}

void ScrollableView::setAllowHorizontalScrolling(bool allow)
{
    setOption(HorizontalScrolling, allow);
}

void ScrollableView::setAllowVerticalScrolling(bool allow)
{
    setOption(VerticalScrolling, allow);
}

void ScrollableView::setUseScrollBar(bool use)
{
    if (use && option(UseScrollBar)) {
        if (mScrollBar || !allowVerticalScrolling())
            return;
        mScrollBar = new VerticalScrollBar(this);
        scrollbarCreated(mScrollBar);
        updateScrollBar();
    } else if (mScrollBar) {
        mScrollBar->setShouldAutoDimiss(false);
        mScrollBar->deleteLater();
        mScrollBar->show(false);
        mScrollBar = nullptr;
    }
}

void ScrollableView::updateScrollBar()
{
    if (!mScrollBar)
        return;
    mScrollBar->resizeToView(this);
    mScrollBar->setOffset(contentOffset().y(), mScrollMax.y());
}

// Content and extent

void ScrollableView::setContent(DisplayView* content)
{
    if (content == mContent)
        return;
    if (mContent)
        disconnect(mContent, SIGNAL(resized(DisplayView*)), this, SLOT(contentResized()));
    mContent = content;
    if (content) {
        content->changeParent(this);
        connect(content, SIGNAL(resized(DisplayView*)), this, SLOT(contentResized()));
    }
    contentResized();
}

void ScrollableView::contentResized()
{
    if (!mContent)
        return;
    const QPointF max(mContent->width() - width(), mContent->height() - height());
    setScrollMax(max);
    if (option(AxesFollowContent)) {
        setOption(HorizontalScrolling, max.x() > 0);
        setOption(VerticalScrolling, max.y() > 0);
    }
}

void ScrollableView::setScrollMax(const QPointF& max)
{
    mScrollMax = QPointF(std::max(0.0, max.x()), std::max(0.0, max.y()));
    updateScrollBar();
    updateExtent();
}

void ScrollableView::updateExtent()
{
    mHorizontal.setExtent(allowHorizontalScrolling() ? float(mScrollMax.x()) : 0.0f);
    mVertical.setExtent(allowVerticalScrolling() ? float(mScrollMax.y()) : 0.0f);
    mHorizontal.resetToBounds(false);
    mVertical.resetToBounds(false);
    doScroll();
}

void ScrollableView::resized()
{
    if (mScrollingActive) {
        contentResized();
        doScroll();
        return;
    }
    setScrollActive(true);
    contentResized();
    doScroll();
    setScrollActive(false);
}

// Scrolling

void ScrollableView::doScroll()
{
    // Halves round towards the end of the content, the same way on both sides of 0.
    const QPoint offset(int(std::floor(-mHorizontal.value() + 0.5)),
                        int(std::floor(-mVertical.value() + 0.5)));
    if (offset == contentOffset())
        return;
    setContentOffset(offset);
    placeRecursively();
    updateScrollBar();
    update();
    wasScrolled();
    emit scrolled();
}

void ScrollableView::setScrollActive(bool active)
{
    if (active == mScrollingActive)
        return;
    if (active)
        aboutToScroll();
    mScrollingActive = active;
    if (!active)
        doneScrolling();
    emit scrollingActiveChanged(active);
}

void ScrollableView::scroll(QPointF delta, double duration)
{
    const bool animated = duration != 0;
    if (allowHorizontalScrolling())
        mHorizontal.scroll(float(-delta.x()), animated);
    if (allowVerticalScrolling())
        mVertical.scroll(float(-delta.y()), animated);
    setScrollActive(true);
    if (!animated) {
        doScroll();
        setScrollActive(false);
    }
}

void ScrollableView::scrollToStart()
{
    mHorizontal.resetToStart(false);
    mVertical.resetToStart(false);
    doScroll();
}

void ScrollableView::stopScrolling()
{
    mHorizontal.stopScrolling();
    mVertical.stopScrolling();
    setScrollActive(false);
}

void ScrollableView::resetToBounds(bool animated)
{
    mHorizontal.resetToBounds(animated);
    mVertical.resetToBounds(animated);
    if (!animated)
        doScroll();
}

void ScrollableView::tick()
{
    const bool horizontal = mHorizontal.update(false);
    const bool vertical = mVertical.update(false);
    if (horizontal || vertical)
        doScroll();
    // A glide that has just begun may not have moved yet: only handlers at rest end
    // the active period.
    if (mScrollingActive && !mHorizontal.active() && !mVertical.active() && !isDragging())
        setScrollActive(false);
}

void ScrollableView::shown()
{
    DisplayView::shown();
    if (option(ResetWhenShown)) {
        stopScrolling();
        scrollToStart();
    }
}

void ScrollableView::wasScrolled() {}
void ScrollableView::aboutToScroll() {}
void ScrollableView::doneScrolling() {}
void ScrollableView::scrollbarCreated(ScrollBar*) {}

// Touch

DisplayView* ScrollableView::viewAtPoint(QPoint point)
{
    DisplayView* hit = DisplayView::viewAtPoint(point);
    if (hit && hit != this && mScrollingActive && !isDragging())
        return this;
    return hit;
}

void ScrollableView::touched(int touch, QPoint point)
{
    mHorizontal.onTouchStart(float(mHorizontal.value()));
    mVertical.onTouchStart(float(mVertical.value()));
    setScrollActive(false);
    DisplayView::touched(touch, point);
}

void ScrollableView::dragged(int touch, QSize delta)
{
    if (mScrollBar) {
        mScrollBar->setShouldAutoDimiss(false);
        mScrollBar->updateVisibility(false);
    }
    setScrollActive(true);
    if (allowHorizontalScrolling())
        mHorizontal.onTouchMove(float(delta.width()));
    if (allowVerticalScrolling())
        mVertical.onTouchMove(float(delta.height()));
    updateDragDirection(touch);
    doScroll();
}

void ScrollableView::released(int touch)
{
    if (mScrollBar) {
        mScrollBar->setShouldAutoDimiss(true);
        mScrollBar->fadeOut();
    }
    // The dispatcher measures pixels per millisecond; the handlers take them per second.
    const QPointF velocity = theTouchDevice ? theTouchDevice->getVelocity(touch) * 1000.0 : QPointF();
    if (allowVerticalScrolling())
        mVertical.onTouchEnd(float(velocity.y()));
    if (allowHorizontalScrolling())
        mHorizontal.onTouchEnd(float(velocity.x()));
    mDragDirection = NoDrag;
}

void ScrollableView::touchCanceled(int)
{
    // A drag handed on to a delegate leaves the bar to dismiss itself as a release does.
    if (mScrollBar) {
        mScrollBar->setShouldAutoDimiss(true);
        mScrollBar->fadeOut();
    }
    if (allowVerticalScrolling())
        mVertical.onTouchEnd(0);
    if (allowHorizontalScrolling())
        mHorizontal.onTouchEnd(0);
    mDragDirection = NoDrag;
}

int ScrollableView::calculateDragDirection(int touch) const
{
    const TouchInfo* info = theTouchDevice ? theTouchDevice->info(touch) : nullptr;
    if (!info)
        return VerticalDrag;
    const QPoint moved = info->currentPoint - info->pressPoint;
    return std::abs(moved.x()) > std::abs(moved.y()) ? HorizontalDrag : VerticalDrag;
}

void ScrollableView::updateDragDirection(int touch)
{
    if (mDragDirection == NoDrag)
        mDragDirection = calculateDragDirection(touch);
}

DisplayView* ScrollableView::dragGestureDelegate(int touch) const
{
    const int direction = mDragDirection != NoDrag ? mDragDirection : calculateDragDirection(touch);
    if (direction == HorizontalDrag && mHorizontalDragDelegate)
        return mHorizontalDragDelegate;
    if (direction == VerticalDrag && mVerticalDragDelegate)
        return mVerticalDragDelegate;
    return DisplayView::dragGestureDelegate(touch);
}
