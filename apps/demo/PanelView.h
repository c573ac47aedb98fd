#pragma once

#include <DisplayView.h>
#include <QColor>
#include <QPixmap>

// A filled rounded rectangle with an optional outline: the cards of the scene. The
// rounded shape is drawn once into a picture of the panel's size, so that any
// paint engine only has to place a picture.
class PanelView : public DisplayView
{
    Q_OBJECT

public:
    PanelView(DisplayView* parent, const char* name, const QColor& fill, int radius = 0);

    void setFill(const QColor& fill);
    void setOutline(const QColor& outline);
    void draw(QPainter& painter) override;
    void resized() override;

private:
    QColor mFill;
    QColor mOutline;
    int mRadius;
    QPixmap mShape;
};
