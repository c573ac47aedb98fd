#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayView.h"
#include "physics/ScrollHandler.h"

#include <QPointF>
#include <QPointer>

class ScrollBar;

/// The scrolling container: it holds one content view, larger than itself, and moves
/// it under the finger on one or both axes with the friction glide and edge springs
/// of two ScrollHandlers, showing a vertical scroll bar while the content moves.
/// Lists and settings pages derive from it and refine it through wasScrolled(),
/// aboutToScroll(), doneScrolling(), scrollbarCreated() and doScroll().
///
/// Its children are placed in content coordinates: a child at (x, y) appears at (x, y)
/// minus contentOffset(), the distance the content is scrolled.
///
/// Drags that start on descendants which neither take drags nor name a drag delegate
/// come to this view. A drag that runs along an axis with a drag delegate goes to that
/// delegate instead: a horizontal carousel inside a vertical list names the list as its
/// vertical drag delegate, so vertical drags scroll the list and horizontal ones the
/// carousel. A touch on a gliding view catches it: it goes to this view, not to the
/// content under the finger.
class ORBIS_UI_EXPORT ScrollableView : public DisplayView
{
    Q_OBJECT

public:
    enum Option
    {
        NoOptions = 0,
        UseScrollBar = 0x1,        // a scroll bar may be shown
        HorizontalScrolling = 0x2, // the content moves horizontally
        VerticalScrolling = 0x4,   // the content moves vertically
        AxesFollowContent = 0x8,   // an axis is allowed exactly when the content can move along it
        ResetWhenShown = 0x10,     // showing the view stops scrolling and returns to the start
        DefaultOptions = UseScrollBar | HorizontalScrolling | VerticalScrolling | AxesFollowContent
    };
    enum DragDirection
    {
        NoDrag = 0,
        HorizontalDrag = 1,
        VerticalDrag = 2
    };

    explicit ScrollableView(DisplayView* parent, const char* name = "ScrollableView");
    ~ScrollableView() override;

    /// Makes the view a child of this one; its size sets how far it can scroll.
    void setContent(DisplayView* content);
    DisplayView* content() const { return mContent; }
    void setScrollMax(const QPointF& max);
    QPointF scrollMax() const { return mScrollMax; }
    void setOption(Option option, bool on);
    /// Whether every bit of `option` is set; NoOptions asks whether none is.
    bool option(Option option) const;
    void setAllowHorizontalScrolling(bool allow);
    void setAllowVerticalScrolling(bool allow);
    void setUseScrollBar(bool use);
    ScrollBar* scrollBar() const { return mScrollBar; }
    void setHorizontalDragDelegate(DisplayView* delegate) { mHorizontalDragDelegate = delegate; }
    void setVerticalDragDelegate(DisplayView* delegate) { mVerticalDragDelegate = delegate; }

    /// Moves the content by `delta` (positive: towards its end), springing there when
    /// duration is not 0.
    void scroll(QPointF delta, double duration);
    void stopScrolling();
    void resetToBounds(bool animated);

    bool isDragging() const { return mDragDirection != NoDrag; }
    bool isScrolling() const { return mScrollingActive; }
    int dragDirection() const { return mDragDirection; }
    bool allowHorizontalScrolling() const { return option(HorizontalScrolling); }
    bool allowVerticalScrolling() const { return option(VerticalScrolling); }
    const ScrollHandler& horizontalHandler() const { return mHorizontal; }
    const ScrollHandler& verticalHandler() const { return mVertical; }

    DisplayView* dragGestureDelegate(int touch) const override;
    DisplayView* viewAtPoint(QPoint point) override;
    void tick() override;
    void shown() override;
    void resized() override;
    void touched(int touch, QPoint point) override;
    void dragged(int touch, QSize delta) override;
    void released(int touch) override;
    void touchCanceled(int touch) override;
    void layoutImplChanged() override;

public slots:
    /// Jumps back to the start of both axes; scroll() springs there when asked to.
    virtual void scrollToStart();
    virtual void wasScrolled();
    virtual void aboutToScroll();
    virtual void doneScrolling();
    virtual void scrollbarCreated(ScrollBar* bar);
    /// Takes the content offset from the handlers and places the children by it.
    virtual void doScroll();
    void contentResized();

signals:
    void scrolled();
    /// A scroll gesture delivered to the view reaches its listeners as this signal.
    void scrolled(int touch, QSize delta) override;
    void scrollingActiveChanged(bool active);

protected:
    ScrollHandler& horizontalHandler() { return mHorizontal; }
    ScrollHandler& verticalHandler() { return mVertical; }
    void setScrollActive(bool active);
    void updateScrollBar();
    void updateExtent();
    int calculateDragDirection(int touch) const;
    void updateDragDirection(int touch);

private:
    void scrollingAllowedChanged(Option changed);

    ScrollHandler mHorizontal;
    ScrollHandler mVertical;
    QPointF mScrollMax;
    ScrollBar* mScrollBar = nullptr;
    QPointer<DisplayView> mContent;
    quint32 mOptions = DefaultOptions;
    int mDragDirection = NoDrag;
    bool mScrollingActive = false;
    QPointer<DisplayView> mHorizontalDragDelegate;
    QPointer<DisplayView> mVerticalDragDelegate;
};
