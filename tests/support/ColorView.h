#pragma once

#include "DisplayView.h"

#include <QColor>
#include <QStringList>

// A view that fills its rectangle with one colour and notes, in a shared log, each
// draw and overlay call by its name.
class ColorView : public DisplayView
{
    Q_OBJECT

public:
    ColorView(DisplayView* parent, const char* name, QColor color = Qt::transparent,
              QStringList* log = nullptr);

    void draw(QPainter& painter) override;
    void drawOverlay(QPainter& painter) override;

    QColor color;
    QColor overlayColor;
    QStringList* log;
};
