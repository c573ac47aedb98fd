#include "VerticalScrollBar.h"

VerticalScrollBar::VerticalScrollBar(DisplayView* parent)
    : ScrollBar(parent), mImage(sliderImage("control/vertical_scrollbar.png", Qt::Vertical))
{
    if (parent)
        resizeToView(parent);
}

int VerticalScrollBar::scrollBarSize()
{
    return height();
}

int VerticalScrollBar::scrollingViewSize()
{
    DisplayView* view = parentView();
    return view ? view->height() : 0;
}

void VerticalScrollBar::draw(QPainter& painter)
{
    if (!shouldShowScrollBar())
        return;
    double offset = 0;
    int length = 0;
    sliderOffsetAndLength(offset, length);
    mImage.draw(painter, QRect(0, int(offset), mImage.width(), length));
}

void VerticalScrollBar::resizeToView(DisplayView* view)
{
    if (!view)
        return;
    const Padding margin = layoutMargin();
    resizeTo(mImage.width(), view->height() - (margin.top + kEndInset) - (margin.bottom + kEndInset));
    moveTo(view->width() + view->contentOffset().x() - width() - kEdgeInset + margin.left,
           view->contentOffset().y() + margin.top + kEndInset);
    ScrollBar::resizeToView(view);
}
