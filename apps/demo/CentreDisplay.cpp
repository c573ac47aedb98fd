#include "CentreDisplay.h"

#include "DemoScene.h"

CentreDisplay::CentreDisplay(DisplayDevice* device, VehicleSimulator* vehicle, const QString& firstScreen)
    : mDevice(device), mVehicle(vehicle), mScene(std::make_unique<DemoScene>(device)), mScreen(firstScreen)
{
    mSettled.start();
}

CentreDisplay::~CentreDisplay() = default;

qint64 CentreDisplay::settledForMs() const
{
    return mSettled.elapsed();
}
