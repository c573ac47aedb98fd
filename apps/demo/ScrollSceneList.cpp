#include "ScrollSceneList.h"

#include <cmath>

ScrollSceneList::ScrollSceneList(DisplayView* parent, double pixelsPerSecond)
    : ListView(parent, "list"), mSpeed(pixelsPerSecond)
{
    mStarted.start();
}

void ScrollSceneList::setRunning(bool running)
{
    mRunning = running;
}

void ScrollSceneList::tick()
{
    ListView::tick();
    const double extent = scrollMax().y();
    if (!mRunning || extent <= 0)
        return;
    const double target = std::fmod(mStarted.elapsed() * mSpeed / 1000.0, extent);
    const double delta = target - contentOffset().y();
    if (delta != 0)
        scroll(QPointF(0, delta), 0);
}
