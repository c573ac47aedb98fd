#pragma once

#include "DemoContent.h"

#include <ElapsedTimer.h>
#include <QObject>
#include <memory>

class DemoScene;
class DisplayDevice;
class VehicleSimulator;

// The centre display's screens on one device.
class CentreDisplay : public QObject, public DemoContent
{
    Q_OBJECT

public:
    CentreDisplay(DisplayDevice* device, VehicleSimulator* vehicle, const QString& firstScreen);
    ~CentreDisplay() override;

    QString screenName() const override { return mScreen; }
    qint64 settledForMs() const override;

private:
    DisplayDevice* mDevice;
    VehicleSimulator* mVehicle;
    std::unique_ptr<DemoScene> mScene;
    QString mScreen;
    ElapsedTimer mSettled;
};
