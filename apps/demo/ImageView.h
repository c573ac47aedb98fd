#pragma once

#include <DisplayView.h>
#include <Graphics.h>
#include <QPixmap>

// A picture fitted into the view's rectangle.
class ImageView : public DisplayView
{
    Q_OBJECT

public:
    ImageView(DisplayView* parent, const char* name, const QPixmap& pixmap,
              int fitMode = Graphics::FitInside);

    void draw(QPainter& painter) override;

private:
    QPixmap mPixmap;
    int mFitMode;
};
