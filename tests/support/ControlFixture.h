#pragma once

#include "DataValueManager.h"
#include "DisplayDevice.h"
#include "ManualClock.h"
#include "input/touch/MouseTouchDriver.h"
#include "input/touch/TouchDevice.h"

#include <gtest/gtest.h>

// A display whose whole frames (touches, ticks, rendering) run one at a time on a
// manual clock, with touches queued through the mouse driver as a controller would.
struct ControlFixture : ::testing::Test
{
    ManualClock clock;
    // Changes left by earlier tests must not reach this dispatcher as a fresh display state.
    bool settled = (DataValueManager::instance()->processPendingChanges(), true);
    DisplayDevice device{800, 480};
    TouchDevice* touch = TouchDevice::getInstance(&device);

    ControlFixture() { device.timer()->stop(); }

    void press(QPoint point, int id = 0) { frame(id, true, point); }
    void move(QPoint point, int id = 0) { frame(id, true, point); }
    void release(QPoint point, int id = 0) { frame(id, false, point); }
    void tap(QPoint point, int id = 0)
    {
        press(point, id);
        release(point, id);
    }
    // One frame after `ms` milliseconds.
    void tick(qint64 ms = 0)
    {
        clock.advanceMs(ms);
        device.doTick();
    }

private:
    void frame(int id, bool down, QPoint point)
    {
        touch->mouseDriver()->queueEvent(id, down, point.x(), point.y());
        device.doTick();
    }
};
