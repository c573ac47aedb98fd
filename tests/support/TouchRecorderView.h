#pragma once

#include "DisplayView.h"

#include <QStringList>

// A view that notes every touch callback it gets, as "name:callback id args".
class TouchRecorderView : public DisplayView
{
    Q_OBJECT

public:
    TouchRecorderView(DisplayView* parent, const char* name, QRect rect, QStringList* log);

    void touched(int touch, QPoint point) override;
    void released(int touch) override;
    void tapped(int touch, QPoint point) override;
    void pinched(int touch, double scale) override;
    void rotated(int touch, double angle) override;
    void touchCanceled(int touch) override;
    void dragged(int touch, QSize delta) override;

    QStringList* log;

private:
    void note(const QString& what);
};
