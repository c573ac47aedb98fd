#include "DisplayDevice.h"
#include "GfxMemoryLabel.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"

#include <gtest/gtest.h>

namespace {

// Counts its ticks and can make each of its frames take time.
class TickCounter : public DisplayView
{
public:
    TickCounter(DisplayView* parent, ManualClock* clock) : DisplayView(parent, "counter"), mClock(clock) {}
    void tick() override
    {
        ++ticks;
        mClock->advanceMs(frameMs);
    }
    void tick1s() override { ++seconds; }

    int ticks = 0;
    int seconds = 0;
    qint64 frameMs = 0;

private:
    ManualClock* mClock;
};

TEST(DisplayDeviceTest, TheTickTimerRunsAtTheRefreshRatePlusTheOffset)
{
    {
        DisplayDevice device(100, 100);
        EXPECT_EQ(device.timer()->objectName(), QStringLiteral("UITick"));
        EXPECT_TRUE(device.timer()->isActive());
        EXPECT_FALSE(device.timer()->isSingleShot());
        EXPECT_EQ(device.timer()->interval(), 16);
    }
    {
        ScopedConfigOverride offset("ui/tick_timer_offset", 3);
        DisplayDevice::refreshRate = 30;
        DisplayDevice device(100, 100);
        EXPECT_EQ(device.timer()->interval(), 36);
    }
    {
        DisplayDevice::refreshRate = 0;
        LogCapture log;
        DisplayDevice device(100, 100);
        EXPECT_FALSE(device.timer()->isActive());
        EXPECT_EQ(log.assertions(), QStringList{QStringLiteral("The refresh rate must be positive")});
    }
    DisplayDevice::refreshRate = 60;
}

TEST(DisplayDeviceTest, OnceASecondTheTreeGetsTick1sAndTheRateIsChecked)
{
    ManualClock clock;
    DisplayDevice device(100, 100);
    device.timer()->stop();
    auto* counter = new TickCounter(device.views(), &clock);
    counter->frameMs = 300;
    LogCapture log;
    for (int i = 0; i < 3; ++i)
        device.doTick();
    EXPECT_EQ(counter->ticks, 3);
    EXPECT_EQ(counter->seconds, 0);
    device.doTick(); // 1200 ms have passed
    EXPECT_EQ(counter->seconds, 1);
    EXPECT_EQ(device.frameStats().lastSecondTicks, 4);
    EXPECT_TRUE(log.contains(QStringLiteral("Frame rate 3.3 is below 15")))
        << log.messages().join("\n").toStdString();
    device.doTick();
    EXPECT_EQ(counter->seconds, 1);

    // Each tick is timed: the slowest and the mean.
    EXPECT_EQ(device.frameStats().ticks, 5);
    EXPECT_EQ(device.frameStats().maxNs, 300 * 1000000LL);
    counter->frameMs = 50;
    device.doTick();
    EXPECT_EQ(device.frameStats().totalNs, (5 * 300 + 50) * 1000000LL);
    device.resetStats();
    EXPECT_EQ(device.frameStats().ticks, 0);
}

TEST(DisplayDeviceTest, WithoutAWindowAFrameDropsTheDirtyState)
{
    DisplayDevice device(100, 100);
    device.timer()->stop();
    ASSERT_FALSE(device.hasWindow());
    device.views()->update(QRect(0, 0, 10, 10));
    ASSERT_TRUE(device.frameNeeded());
    device.doTick();
    EXPECT_FALSE(device.frameNeeded());
    EXPECT_TRUE(device.compositeRegion().isEmpty());
    EXPECT_EQ(device.frameStats().drawnFrames, 0);
}

TEST(DisplayDeviceTest, TheGfxMemoryLineFollowsItsSettingOnceASecond)
{
    ManualClock clock;
    DisplayDevice device(300, 100);
    device.timer()->stop();
    const auto line = [&]() -> GfxMemoryLabel* {
        const DisplayViewList::List overlays = device.overlays()->children().list();
        return overlays.isEmpty() ? nullptr : qobject_cast<GfxMemoryLabel*>(overlays.first());
    };
    ScopedConfigOverride show("ui/show_gfx_memory_usage", true);
    device.doTick();
    EXPECT_EQ(line(), nullptr);
    clock.advanceMs(1000);
    device.doTick();
    ASSERT_NE(line(), nullptr);
    EXPECT_EQ(line()->text(), QStringLiteral("GL memory: textures 0.0 MB in 0, layers 0.0 MB in 0"));
    EXPECT_EQ(line()->width(), 300);
    {
        ScopedConfigOverride hide("ui/show_gfx_memory_usage", false);
        clock.advanceMs(1000);
        device.doTick();
        EXPECT_EQ(line(), nullptr);
    }
}

} // namespace
