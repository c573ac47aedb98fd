#pragma once

#include "OrbisUIFrameworkExport.h"

class QPainter;
class QRect;

/// Drawn under a view, over its rectangle grown by the shadow padding.
class ORBIS_UI_EXPORT DisplayViewShadow
{
public:
    virtual ~DisplayViewShadow() = default;
    virtual void draw(QPainter& painter, const QRect& rect) = 0;
};
