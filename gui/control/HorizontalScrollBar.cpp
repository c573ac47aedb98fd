#include "HorizontalScrollBar.h"

HorizontalScrollBar::HorizontalScrollBar(DisplayView* parent)
    : ScrollBar(parent), mImage(sliderImage("control/horizontal_scrollbar.png", Qt::Horizontal))
{
    if (parent)
        resizeToView(parent);
}

int HorizontalScrollBar::scrollBarSize()
{
    return width();
}

int HorizontalScrollBar::scrollingViewSize()
{
    DisplayView* view = parentView();
    return view ? view->width() : 0;
}

void HorizontalScrollBar::draw(QPainter& painter)
{
    if (!shouldShowScrollBar())
        return;
    double offset = 0;
    int length = 0;
    sliderOffsetAndLength(offset, length);
    mImage.draw(painter, QRect(int(offset), 0, length, mImage.height()));
}

void HorizontalScrollBar::resizeToView(DisplayView* view)
{
    if (!view)
        return;
    const Padding margin = layoutMargin();
    resizeTo(view->width() - (margin.left + kEndInset) - (margin.right + kEndInset), mImage.height());
    moveTo(view->contentOffset().x() + margin.left + kEndInset,
           view->height() + view->contentOffset().y() - height() - kEdgeInset + margin.top);
    ScrollBar::resizeToView(view);
}
