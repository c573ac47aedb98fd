#pragma once

class DisplayView;
class QPainter;

// Drawn above a view's children, in the view's coordinates (focus rings, badges).
class DisplayViewOverlay
{
public:
    virtual ~DisplayViewOverlay() = default;
    virtual void draw(DisplayView* view, QPainter& painter) = 0;
};
