#pragma once

class QPainter;
class QRect;

// Drawn under a view, over its rectangle grown by the shadow padding.
class DisplayViewShadow
{
public:
    virtual ~DisplayViewShadow() = default;
    virtual void draw(QPainter& painter, const QRect& rect) = 0;
};
