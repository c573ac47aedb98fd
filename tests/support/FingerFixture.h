#pragma once

#include "DataValueManager.h"
#include "DisplayDevice.h"
#include "ManualClock.h"
#include "input/touch/MouseTouchDriver.h"
#include "input/touch/TouchDevice.h"

#include <gtest/gtest.h>

// A display whose frames the test runs one at a time, 16 ms apart on a manual clock,
// with one finger that presses, moves and lifts through the touch driver's queue.
struct FingerFixture : ::testing::Test
{
    static constexpr int kFrameMs = 16;

    ManualClock clock;
    // Changes left by earlier tests must not reach this dispatcher as a fresh display state.
    bool settled = (DataValueManager::instance()->processPendingChanges(), true);
    DisplayDevice device{800, 480};
    TouchDevice* touch = TouchDevice::getInstance(&device);
    QPoint finger;

    void frame()
    {
        clock.advanceMs(kFrameMs);
        device.doTick();
    }
    void frames(int count)
    {
        for (int i = 0; i < count; ++i)
            frame();
    }
    void queue(bool down, QPoint point)
    {
        finger = point;
        touch->mouseDriver()->queueEvent(0, down, point.x(), point.y());
    }
    void press(QPoint point)
    {
        queue(true, point);
        frame();
    }
    // The finger moves by `step` once a frame, `count` times.
    void move(QPoint step, int count = 1)
    {
        for (int i = 0; i < count; ++i) {
            queue(true, finger + step);
            frame();
        }
    }
    void lift()
    {
        queue(false, finger);
        frame();
    }
    // Press, `count` steps, lift.
    void swipe(QPoint from, QPoint step, int count)
    {
        press(from);
        move(step, count);
        lift();
    }
};
