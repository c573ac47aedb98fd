#include "StatusBar.h"

#include "VehicleData.h"

#include <control/Label.h>

StatusBar::StatusBar(DisplayView* parent) : Panel(parent, "statusBar", QStringLiteral("StatusBar/Bar"))
{
    mClock = new Label(this, "clock", QString(), QStringLiteral("StatusBar/Clock"));
    mDrive = new Label(this, "drive", QString(), QStringLiteral("StatusBar/Drive"));
    auto* spacer = new DisplayView(this, "spacer");
    spacer->setStyle(Style(QStringLiteral("Demo/Spacer")));
    mTemperature = new Label(this, "temperature", QString(), QStringLiteral("StatusBar/Temperature"));
    mTemperature->setValueFormat(QStringLiteral("%1 \u00b0C"));
    mTemperature->setValueSource(VehicleData::outsideTemperature);
    mTemperature->refreshValue();
    auto* signal = new DisplayView(this, "signal");
    signal->setStyle(Style(QStringLiteral("StatusBar/Signal")));
    for (int i = 0; i < 4; ++i)
        mBars << new Panel(signal, "bar");
    new Label(this, "network", QStringLiteral("LTE"), QStringLiteral("StatusBar/Network"));

    dvConnect(VehicleData::timeOfDay, SLOT(timeChanged(DataValue*)), true);
    dvConnect(VehicleData::speed, SLOT(driveChanged(DataValue*)), true);
    dvConnect(VehicleData::gear, SLOT(driveChanged(DataValue*)), true);
    dvConnect(VehicleData::connectivity, SLOT(signalChanged(DataValue*)), true);
}

void StatusBar::timeChanged(DataValue*)
{
    int seconds;
    {
        DataValue::ConditionalLocker lock(VehicleData::timeOfDay);
        seconds = VehicleData::timeOfDay.toInt();
    }
    mClock->setText(QStringLiteral("%1:%2")
                        .arg(seconds / 3600 % 24, 2, 10, QLatin1Char('0'))
                        .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0')));
}

void StatusBar::driveChanged(DataValue*)
{
    QString gear;
    int speed;
    {
        DataValue::ConditionalLocker gearLock(VehicleData::gear);
        DataValue::ConditionalLocker speedLock(VehicleData::speed);
        gear = VehicleData::gear.toString();
        speed = VehicleData::speed.toInt();
    }
    mDrive->setText(gear == QLatin1String("P") ? tr("Parked")
                                               : tr("%1  \u00b7  %2 km/h").arg(gear).arg(speed));
}

void StatusBar::signalChanged(DataValue*)
{
    int bars;
    {
        DataValue::ConditionalLocker lock(VehicleData::connectivity);
        bars = VehicleData::connectivity.toInt();
    }
    for (int i = 0; i < mBars.size(); ++i) {
        mBars[i]->setStyle(Style(QStringLiteral("StatusBar/Bar%1; StatusBar/%2")
                                     .arg(i + 1)
                                     .arg(QLatin1String(i < bars ? "SignalOn" : "SignalOff"))));
    }
}
