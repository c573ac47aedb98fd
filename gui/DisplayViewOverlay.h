#pragma once

#include "OrbisUIFrameworkExport.h"

class DisplayView;
class QPainter;

/// Drawn above a view's children, in the view's coordinates (focus rings, badges).
class ORBIS_UI_EXPORT DisplayViewOverlay
{
public:
    virtual ~DisplayViewOverlay() = default;
    virtual void draw(DisplayView* view, QPainter& painter) = 0;
};
