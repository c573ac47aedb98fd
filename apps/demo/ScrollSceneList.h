#pragma once

#include <ElapsedTimer.h>
#include <control/ListView.h>

// The benchmark scene's list, scrolling on by itself at a steady speed and starting
// over at its end.
class ScrollSceneList : public ListView
{
    Q_OBJECT

public:
    ScrollSceneList(DisplayView* parent, double pixelsPerSecond);

    void setRunning(bool running);
    void tick() override;

private:
    double mSpeed;
    bool mRunning = true;
    ElapsedTimer mStarted;
};
