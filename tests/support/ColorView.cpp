#include "ColorView.h"

ColorView::ColorView(DisplayView* parent, const char* name, QColor color, QStringList* log)
    : DisplayView(parent, name), color(color), log(log)
{}

void ColorView::draw(QPainter& painter)
{
    if (log)
        log->append(viewName());
    if (color.alpha() > 0)
        painter.fillRect(QRect(0, 0, width(), height()), color);
}

void ColorView::drawOverlay(QPainter& painter)
{
    if (log)
        log->append(viewName() + QStringLiteral(":overlay"));
    if (overlayColor.isValid())
        painter.fillRect(QRect(0, 0, width(), height()), overlayColor);
}
