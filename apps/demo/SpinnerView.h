#pragma once

#include <DisplayView.h>
#include <QColor>
#include <QPixmap>

// A ring with a bright arc that turns a few degrees every frame. It is a layer, so
// turning it only recomposites the screen; its pixels are rendered once, from a
// picture drawn when its size changes.
class SpinnerView : public DisplayView
{
    Q_OBJECT

public:
    SpinnerView(DisplayView* parent, const char* name, const QColor& color, double degreesPerFrame = 4.0);

    void draw(QPainter& painter) override;
    void tick() override;
    void setStep(double degreesPerFrame) { mStep = degreesPerFrame; }

private:
    QColor mColor;
    double mStep;
    double mTurn = 0;
    QPixmap mRing;
};
