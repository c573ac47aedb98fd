#include "VehicleSimulator.h"

#include "VehicleData.h"

#include <DataValueManager.h>
#include <ManualClock.h>
#include <QSignalSpy>
#include <cmath>
#include <gtest/gtest.h>
#include <thread>

namespace {

struct VehicleSimulatorTest : ::testing::Test
{
    VehicleSimulatorTest()
    {
        write(VehicleData::mediaPlaying, true);
        DataValueManager::instance()->processPendingChanges();
    }
    static void write(DataValue& value, const QVariant& v)
    {
        DataValue::EventLocker lock(value);
        value.setValue(v);
    }
    static double read(const DataValue& value)
    {
        DataValue::ConditionalLocker lock(value);
        return value.toReal();
    }
    VehicleSimulator sim;
};

TEST_F(VehicleSimulatorTest, PositionFixesComeOncePerSecondAndDriveValuesAtEachStep)
{
    QSignalSpy fixes(&VehicleData::position, SIGNAL(valueChanged(DataValue*)));
    QSignalSpy speeds(&VehicleData::speed, SIGNAL(valueChanged(DataValue*)));
    for (int ms = 100; ms <= 3000; ms += 100) {
        sim.advanceTo(ms);
        DataValueManager::instance()->processPendingChanges();
    }
    EXPECT_EQ(fixes.count(), 3);
    EXPECT_GE(speeds.count(), 10) << "the car accelerates from rest";
    const QVariantList fix = VehicleData::position.value().toList();
    ASSERT_EQ(fix.size(), 3);
    const VehicleSimulator::State state = sim.state();
    EXPECT_EQ(state.timeMs, 3000);
    EXPECT_DOUBLE_EQ(fix[0].toDouble(), state.position.latitude());
    EXPECT_DOUBLE_EQ(fix[2].toDouble(), state.heading);
    EXPECT_EQ(read(VehicleData::speed), std::round(state.speedKmh));
    EXPECT_EQ(read(VehicleData::rangeKm), std::round(state.batteryPercent * 4.6));
    EXPECT_LT(state.batteryPercent, 78.6);

    // Time never runs backwards; part of a step waits for the rest of it.
    sim.advanceTo(1000);
    sim.advanceTo(3050);
    EXPECT_EQ(sim.state().timeMs, 3000);
}

TEST_F(VehicleSimulatorTest, TheRouteIsAClosedLoopDrivenNorthFirst)
{
    const QVector<LocationCoordinate>& route = sim.route();
    ASSERT_GE(route.size(), 4);
    EXPECT_EQ(route.first(), route.last());
    double heading = -1;
    const LocationCoordinate start = sim.along(0, &heading);
    EXPECT_NEAR(start.latitude(), route[0].latitude(), 1e-9);
    EXPECT_NEAR(heading, 0, 1e-6);
    const LocationCoordinate lap = sim.along(sim.lapMetres() + 10, &heading);
    const LocationCoordinate ten = sim.along(10, nullptr);
    EXPECT_NEAR(lap.latitude(), ten.latitude(), 1e-9);
    EXPECT_NEAR(lap.longitude(), ten.longitude(), 1e-9);
    EXPECT_GT(sim.lapMetres(), 2000);
}

TEST_F(VehicleSimulatorTest, TheCarSlowsForCornersAndKeepsToTheLimit)
{
    double slowest = 1e9;
    double fastest = 0;
    // The first corner comes after three blocks of about 120 m each.
    for (int ms = 100; ms <= 60000; ms += 100) {
        sim.advanceTo(ms);
        const VehicleSimulator::State s = sim.state();
        fastest = qMax(fastest, s.speedKmh);
        if (s.metres > 100 && s.metres < sim.lapMetres())
            slowest = qMin(slowest, s.speedKmh);
    }
    EXPECT_LE(fastest, 50.0 + 1e-9);
    EXPECT_GT(fastest, 45.0);
    EXPECT_LT(slowest, 20.0);
    EXPECT_GT(slowest, 10.0) << "corners are taken rolling, not from a stop";
}

TEST_F(VehicleSimulatorTest, MediaFollowsPlayPauseAndSkipRequests)
{
    sim.advanceTo(5000);
    EXPECT_NEAR(sim.state().mediaSeconds, 5.0, 1e-9);
    write(VehicleData::mediaPlaying, false);
    sim.advanceTo(8000);
    EXPECT_NEAR(sim.state().mediaSeconds, 5.0, 1e-9);
    EXPECT_FALSE(sim.state().playing);

    write(VehicleData::mediaPlaying, true);
    write(VehicleData::mediaSkipRequest, read(VehicleData::mediaSkipRequest) + 1);
    sim.advanceTo(8100);
    EXPECT_EQ(sim.state().track, 1);
    EXPECT_EQ(sim.state().mediaSeconds, 0);
    DataValueManager::instance()->processPendingChanges();
    EXPECT_EQ(VehicleData::mediaTitle.stringValue(), VehicleSimulator::tracks()[1].title);

    // Back past the first track wraps to the last.
    write(VehicleData::mediaSkipRequest, read(VehicleData::mediaSkipRequest) - 2);
    sim.advanceTo(8200);
    EXPECT_EQ(sim.state().track, VehicleSimulator::tracks().size() - 1);
}

// Started, the simulator drives on its own thread by the clock while the GUI
// thread reads what it publishes; stopped, it stands still.
TEST_F(VehicleSimulatorTest, OnItsOwnThreadTheCarDrivesByTheClockUntilStopped)
{
    ManualClock clock(5000);
    sim.start();
    sim.start();
    EXPECT_TRUE(sim.isRunning());
    clock.advanceMs(2000);
    for (int wait = 0; wait < 1000 && sim.state().timeMs < 2000; ++wait) {
        DataValueManager::instance()->processPendingChanges();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    DataValueManager::instance()->processPendingChanges();
    EXPECT_EQ(sim.state().timeMs, 2000);
    EXPECT_EQ(read(VehicleData::speed), std::round(sim.state().speedKmh));

    sim.stop();
    EXPECT_FALSE(sim.isRunning());
    clock.advanceMs(2000);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(sim.state().timeMs, 2000);
    sim.stop();
}

} // namespace
