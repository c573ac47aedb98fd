#pragma once

#include <DisplayView.h>
#include <QColor>

// A filled rounded rectangle with an optional outline: the cards of the scene.
class PanelView : public DisplayView
{
    Q_OBJECT

public:
    PanelView(DisplayView* parent, const char* name, const QColor& fill, int radius = 0);

    void setFill(const QColor& fill);
    void setOutline(const QColor& outline);
    void draw(QPainter& painter) override;

private:
    QColor mFill;
    QColor mOutline;
    int mRadius;
};
