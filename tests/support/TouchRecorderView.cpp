#include "TouchRecorderView.h"

TouchRecorderView::TouchRecorderView(DisplayView* parent, const char* name, QRect rect, QStringList* log)
    : DisplayView(parent, name), log(log)
{
    moveTo(rect.x(), rect.y());
    resizeTo(rect.width(), rect.height());
}

void TouchRecorderView::note(const QString& what)
{
    log->append(viewName() + QLatin1Char(':') + what);
}

void TouchRecorderView::touched(int touch, QPoint point)
{
    note(QStringLiteral("touched %1 %2,%3").arg(touch).arg(point.x()).arg(point.y()));
}

void TouchRecorderView::released(int touch)
{
    note(QStringLiteral("released %1").arg(touch));
}

void TouchRecorderView::tapped(int touch, QPoint point)
{
    note(QStringLiteral("tapped %1 %2,%3").arg(touch).arg(point.x()).arg(point.y()));
}

void TouchRecorderView::pinched(int touch, double scale)
{
    note(QStringLiteral("pinched %1 %2").arg(touch).arg(scale, 0, 'f', 3));
}

void TouchRecorderView::rotated(int touch, double angle)
{
    note(QStringLiteral("rotated %1 %2").arg(touch).arg(angle, 0, 'f', 1));
}

void TouchRecorderView::touchCanceled(int touch)
{
    note(QStringLiteral("canceled %1").arg(touch));
}

void TouchRecorderView::dragged(int touch, QSize delta)
{
    note(QStringLiteral("dragged %1 %2,%3").arg(touch).arg(delta.width()).arg(delta.height()));
}
