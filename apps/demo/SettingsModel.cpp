#include "SettingsModel.h"

#include "VehicleData.h"

#include <QCoreApplication>

namespace {
using Entry = SettingsModel::Entry;

QString tr(const char* text)
{
    return QCoreApplication::translate("SettingsModel", text);
}

Entry section(const char* title)
{
    Entry e;
    e.title = tr(title);
    return e;
}

Entry toggle(const char* title, DataValue& value)
{
    Entry e;
    e.kind = Entry::Toggle;
    e.title = tr(title);
    e.value = &value;
    return e;
}

Entry level(const char* title, DataValue& value, double minimum, double maximum, double step)
{
    Entry e;
    e.kind = Entry::Level;
    e.title = tr(title);
    e.value = &value;
    e.minimum = minimum;
    e.maximum = maximum;
    e.step = step;
    return e;
}

Entry choice(const char* title, const char* detail)
{
    Entry e;
    e.kind = Entry::Choice;
    e.title = tr(title);
    e.detail = tr(detail);
    return e;
}

Entry opens(const char* title, const char* detail, const char* name)
{
    Entry e = choice(title, detail);
    e.kind = Entry::Page;
    e.page = QLatin1String(name);
    return e;
}
} // namespace

SettingsModel::SettingsModel(QObject* parent) : ListModel(parent)
{
    setPage(QString());
}

QStringList SettingsModel::pages()
{
    return {QString(), QStringLiteral("units"), QStringLiteral("charging"), QStringLiteral("about")};
}

QString SettingsModel::pageTitle() const
{
    if (mPage == QLatin1String("units"))
        return tr("Units");
    if (mPage == QLatin1String("charging"))
        return tr("Charging");
    if (mPage == QLatin1String("about"))
        return tr("About");
    return tr("Settings");
}

QVector<SettingsModel::Entry> SettingsModel::entriesOf(const QString& name)
{
    using namespace VehicleData;
    if (name == QLatin1String("units"))
        return {section("DISTANCE AND SPEED"),
                toggle("Metric units", metricUnits),
                choice("Distance", "Kilometres"),
                choice("Energy", "kWh / 100 km"),
                section("TIME"),
                toggle("24-hour clock", clock24h),
                choice("Time zone", "Automatic")};
    if (name == QLatin1String("charging"))
        return {section("CHARGE LIMIT"),
                level("Charge limit", chargeLimit, 50, 100, 5),
                toggle("Scheduled charging", scheduledCharging),
                choice("Departure", "07:30, weekdays"),
                section("BATTERY"),
                toggle("Precondition before departure", preconditioning),
                toggle("Unlock cable when charged", unlockCableWhenDone)};
    if (name == QLatin1String("about"))
        return {section("SOFTWARE"),
                choice("Version", "0.1.0"),
                choice("Map data", "Generated streets"),
                section("VEHICLE"),
                choice("Model", "Centre display demo"),
                choice("Odometer", "12 480 km")};
    return {section("DISPLAY"),
            toggle("Night mode", nightMode),
            level("Brightness", brightness, 0, 1, 0),
            opens("Units", "Metric", "units"),
            section("SOUND"),
            level("Volume", volume, 0, 1, 0),
            toggle("Turn signal chime", turnSignalChime),
            choice("Equaliser", "Flat"),
            section("DRIVING"),
            choice("Regenerative braking", "Standard"),
            toggle("Creep mode", creepMode),
            toggle("Auto hold", autoHold),
            section("CHARGING"),
            opens("Charging", "Limit and schedule", "charging"),
            section("CONNECTIVITY"),
            toggle("Wi-Fi", wifi),
            choice("Bluetooth", "Phone connected"),
            toggle("Mobile data", mobileData),
            section("SYSTEM"),
            opens("About", "Version 0.1.0", "about")};
}

void SettingsModel::setPage(const QString& page)
{
    mPage = page;
    mEntries = entriesOf(page);
    mSections.clear();
    for (int row = 0; row < mEntries.size(); ++row) {
        if (mEntries[row].kind == Entry::Section)
            mSections << row;
    }
    emit modelReset(this);
}
