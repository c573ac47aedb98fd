#pragma once

#include "DisplayView.h"
#include "OrbisUIFrameworkExport.h"

/// A ring that marks where a tap landed and fades away, then deletes itself.
class ORBIS_UI_EXPORT TapAnimationView : public DisplayView
{
    Q_OBJECT

public:
    static constexpr int kDiameter = 60;
    static constexpr double kFadeSeconds = 0.35;

    TapAnimationView(DisplayView* parent, QPoint center);

    void draw(QPainter& painter) override;
};
