#include "TouchInfo.h"

TouchInfo::TouchInfo()
{
    touchDelayTimer.setSingleShot(true);
}

void TouchInfo::reset()
{
    view = nullptr;
    state = TouchIdle;
    previousState = TouchIdle;
    pair = kNoPair;
    delivered = false;
    pairDistance = 0;
    pairAngle = 0;
    velocity.clear();
}

void TouchInfo::startTouchDelayTimer()
{
    touchDelayTimerRunning = true;
    touchDelayTimer.start();
}
