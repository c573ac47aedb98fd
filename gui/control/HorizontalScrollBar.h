#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ScrollBar.h"

/// The bar along the bottom edge of the visible area of its scrolling view.
class ORBIS_UI_EXPORT HorizontalScrollBar : public ScrollBar
{
    Q_OBJECT

public:
    explicit HorizontalScrollBar(DisplayView* parent);

    int scrollBarSize() override;
    int scrollingViewSize() override;
    void draw(QPainter& painter) override;

public slots:
    void resizeToView(DisplayView* view) override;

private:
    DisplayImage mImage;
};
