#include "ImageView.h"

#include <Graphics.h>

ImageView::ImageView(DisplayView* parent, const char* name, const QPixmap& pixmap, int fitMode)
    : DisplayView(parent, name), mPixmap(pixmap), mFitMode(fitMode)
{}

void ImageView::draw(QPainter& painter)
{
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    Graphics::fitAndDrawImage(painter, QRect(0, 0, width(), height()), mPixmap, mFitMode);
    painter.restore();
}
