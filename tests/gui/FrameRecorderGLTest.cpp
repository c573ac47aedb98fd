#include "DisplayDevice.h"
#include "DisplayDeviceWidget.h"
#include "FrameRecorder.h"
#include "support/ColorView.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

// What a tick drew, what the GL state cache kept from the driver, and when the
// first frame reached the screen.
TEST(FrameRecorderGLTest, TicksCountDrawsStateTrafficAndTheFirstSwap)
{
    DisplayDevice device(64, 48);
    device.timer()->stop();
    // Out of the way of other GL tests on the same X server.
    device.setPosition(QPoint(300, 200));
    device.setVisible(true);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(device.widget()));
    auto* view = new ColorView(device.views(), "view", Qt::red);
    view->resizeTo(10, 10);
    FrameRecorder recorder(&device);

    recorder.tick();
    const double afterFirst = FrameRecorder::msSinceProcessStart();
    recorder.tick();
    view->color = Qt::blue;
    view->update();
    recorder.tick();

    const QVector<FrameRecorder::Frame> frames = recorder.frames(QStringLiteral("all"));
    ASSERT_EQ(frames.size(), 3);
    const FrameRecorder::Frame& first = frames[0];
    EXPECT_TRUE(first.swapped);
    EXPECT_GT(first.draws, 0);
    EXPECT_GT(first.stateForwarded, 0);
    EXPECT_GE(first.stateRequests, first.stateForwarded);

    const FrameRecorder::Frame& idle = frames[1];
    EXPECT_FALSE(idle.swapped);
    EXPECT_EQ(idle.glCalls, 0);
    EXPECT_EQ(idle.stateRequests, 0);
    EXPECT_EQ(recorder.summary(QStringLiteral("all")).idleFrames, 1);

    EXPECT_TRUE(frames[2].swapped);
    EXPECT_GT(frames[2].draws, 0);
    // The cold start is the first swapped tick's, not a later one's.
    EXPECT_GT(recorder.firstSwapMs(), 0);
    EXPECT_LE(recorder.firstSwapMs(), afterFirst);
}

} // namespace
