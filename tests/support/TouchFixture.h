#pragma once

#include "DataValueManager.h"
#include "DisplayDevice.h"
#include "ManualClock.h"
#include "TouchRecorderView.h"
#include "input/touch/MouseTouchDriver.h"
#include "input/touch/TouchDevice.h"

#include <gtest/gtest.h>

// A display with one recording view, driven through the mouse driver's queue one frame
// at a time on a manual clock.
struct TouchFixture : ::testing::Test
{
    ManualClock clock;
    // Changes left by earlier tests must not reach this dispatcher as a fresh display state.
    bool settled = (DataValueManager::instance()->processPendingChanges(), true);
    QStringList log;
    DisplayDevice device{800, 480};
    TouchDevice* touch = TouchDevice::getInstance(&device);
    TouchRecorderView* button =
        new TouchRecorderView(device.views(), "button", QRect(100, 100, 200, 100), &log);

    void queue(int id, bool down, QPoint point)
    {
        touch->mouseDriver()->queueEvent(id, down, point.x(), point.y());
    }
    void press(int id, QPoint point) { frame(id, true, point); }
    void move(int id, QPoint point) { frame(id, true, point); }
    void release(int id, QPoint point) { frame(id, false, point); }
    void frame(int id, bool down, QPoint point)
    {
        queue(id, down, point);
        device.startFrame();
    }
    QStringList take()
    {
        QStringList taken = log;
        log.clear();
        return taken;
    }
};
