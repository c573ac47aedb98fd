#pragma once

/// The state of one touch identifier. The driver reports Touched, Moved and Released;
/// the dispatcher's record also moves through Pending (pressed, still within the drag
/// threshold) and Dragging.
enum TouchState
{
    TouchIdle = 0,
    TouchTouched = 1,
    TouchMoved = 2,
    TouchReleased = 3,
    TouchPending = 4,
    TouchDragging = 5
};
