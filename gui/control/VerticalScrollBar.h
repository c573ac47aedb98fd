#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ScrollBar.h"

/// The bar along the right edge of the visible area of its scrolling view.
class ORBIS_UI_EXPORT VerticalScrollBar : public ScrollBar
{
    Q_OBJECT

public:
    explicit VerticalScrollBar(DisplayView* parent);

    int scrollBarSize() override;
    int scrollingViewSize() override;
    void draw(QPainter& painter) override;

public slots:
    void resizeToView(DisplayView* view) override;

private:
    DisplayImage mImage;
};
