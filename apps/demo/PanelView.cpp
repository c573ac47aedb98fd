#include "PanelView.h"

PanelView::PanelView(DisplayView* parent, const char* name, const QColor& fill, int radius)
    : DisplayView(parent, name), mFill(fill), mRadius(radius)
{}

void PanelView::setFill(const QColor& fill)
{
    mFill = fill;
    update();
}

void PanelView::setOutline(const QColor& outline)
{
    mOutline = outline;
    update();
}

void PanelView::draw(QPainter& painter)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, mRadius > 0);
    painter.setPen(mOutline.isValid() ? QPen(mOutline, 1) : QPen(Qt::NoPen));
    painter.setBrush(mFill);
    // An outline is centred on the edge pixels; a plain fill covers them whole.
    const QRectF shape =
        mOutline.isValid() ? QRectF(0.5, 0.5, width() - 1, height() - 1) : QRectF(0, 0, width(), height());
    painter.drawRoundedRect(shape, mRadius, mRadius);
    painter.restore();
}
