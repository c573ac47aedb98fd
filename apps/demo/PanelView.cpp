#include "PanelView.h"

PanelView::PanelView(DisplayView* parent, const char* name, const QColor& fill, int radius)
    : DisplayView(parent, name), mFill(fill), mRadius(radius)
{}

void PanelView::setFill(const QColor& fill)
{
    mFill = fill;
    mShape = QPixmap();
    update();
}

void PanelView::setOutline(const QColor& outline)
{
    mOutline = outline;
    mShape = QPixmap();
    update();
}

void PanelView::resized()
{
    mShape = QPixmap();
    DisplayView::resized();
}

void PanelView::draw(QPainter& painter)
{
    if (mRadius == 0 && !mOutline.isValid()) {
        painter.fillRect(QRect(0, 0, width(), height()), mFill);
        return;
    }
    if (mShape.size() != size()) {
        QImage image(size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter shape(&image);
        shape.setRenderHint(QPainter::Antialiasing);
        shape.setPen(mOutline.isValid() ? QPen(mOutline, 1) : QPen(Qt::NoPen));
        shape.setBrush(mFill);
        // An outline is centred on the edge pixels; a plain fill covers them whole.
        const QRectF rect = mOutline.isValid() ? QRectF(0.5, 0.5, width() - 1, height() - 1)
                                               : QRectF(0, 0, width(), height());
        shape.drawRoundedRect(rect, mRadius, mRadius);
        shape.end();
        mShape = QPixmap::fromImage(image);
    }
    painter.drawPixmap(0, 0, mShape);
}
