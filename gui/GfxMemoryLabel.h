#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayView.h"

#include <QFont>

// A debug line over the screen with the GL memory in use: cached textures and
// layer framebuffers. Refreshed once a second.
class ORBIS_UI_INTERNAL_EXPORT GfxMemoryLabel : public DisplayView
{
    Q_OBJECT

public:
    GfxMemoryLabel(DisplayView* parent, DisplayDevice* device);

    QString text() const { return mText; }
    void tick1s() override;
    void draw(QPainter& painter) override;

private:
    DisplayDevice* mScreen;
    QString mText;
    QFont mFont;
    QColor mColor = Qt::yellow;
};
