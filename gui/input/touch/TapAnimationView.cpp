#include "TapAnimationView.h"

#include <QPen>

TapAnimationView::TapAnimationView(DisplayView* parent, QPoint center) : DisplayView(parent, "TapAnimation")
{
    setTouchBehavior(IgnoreTouches, true);
    resizeTo(kDiameter, kDiameter);
    moveTo(center.x() - kDiameter / 2, center.y() - kDiameter / 2);
    setAlpha(0, kFadeSeconds, InterpolatedValue::EaseOutQuad, true);
    deleteAfterAnimation();
}

void TapAnimationView::draw(QPainter& painter)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(255, 255, 255, 200), 4));
    painter.setBrush(QColor(255, 255, 255, 60));
    painter.drawEllipse(QRectF(2, 2, kDiameter - 4, kDiameter - 4));
    painter.restore();
}
