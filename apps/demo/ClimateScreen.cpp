#include "ClimateScreen.h"

#include "VehicleData.h"

#include <control/Button.h>
#include <control/Label.h>
#include <control/Panel.h>
#include <control/ProgressBar.h>
#include <control/Slider.h>

namespace {
constexpr double kMinTemperature = 16;
constexpr double kMaxTemperature = 28;
constexpr int kMaxFan = 5;

} // namespace

ClimateScreen::ClimateScreen(DisplayView* parent) : Screen(parent, "climate", QStringLiteral("Climate/Page"))
{
    buildSide("driver", tr("DRIVER"), VehicleData::driverTemperature, VehicleData::seatHeatDriver,
              &mDriverTemperature, &mDriverSlider);
    buildCenter(this);
    Label* passenger = nullptr;
    Slider* slider = nullptr;
    buildSide("passenger", tr("PASSENGER"), VehicleData::passengerTemperature, VehicleData::seatHeatPassenger,
              &passenger, &slider);
}

DisplayView* ClimateScreen::buildSide(const char* name, const QString& zone, DataValue& temperature,
                                      DataValue& seatHeat, Label** label, Slider** slider)
{
    auto* card = new Panel(this, name, QStringLiteral("Climate/Side"));
    new Label(card, "zone", zone, QStringLiteral("Climate/Zone"));
    *label = new Label(card, "temperature", QString(), QStringLiteral("Climate/Temperature"));
    (*label)->setValueFormat(QStringLiteral("%1\u00b0"));
    (*label)->setValueSource(temperature);
    (*label)->refreshValue();
    *slider = new Slider(card, "slider");
    (*slider)->setStyle(Style(QStringLiteral("Climate/Slider")));
    (*slider)->setRange(kMinTemperature, kMaxTemperature);
    {
        DataValue::ConditionalLocker lock(temperature);
        (*slider)->setValue(temperature.toReal());
    }
    (*slider)->setValueSource(temperature);
    // The label follows the finger, not only the value the finger leaves behind.
    Label* shown = *label;
    connect(*slider, qOverload<Slider*, double>(&Slider::valueChanged), shown,
            [shown](Slider*, double value) { shown->valueChanged(false, value); });
    DisplayView* scale = box(card, "scale", "Climate/Scale");
    new Label(scale, "low", QStringLiteral("%1\u00b0").arg(kMinTemperature),
              QStringLiteral("Climate/ScaleLow"));
    new Label(scale, "high", QStringLiteral("%1\u00b0").arg(kMaxTemperature),
              QStringLiteral("Climate/ScaleHigh"));
    toggleButton(card, "seatHeat", tr("Seat heating"), QStringLiteral("Climate/SeatHeat"), seatHeat);
    return card;
}

void ClimateScreen::buildCenter(DisplayView* parent)
{
    auto* card = new Panel(parent, "fan", QStringLiteral("Climate/Center"));
    new Label(card, "title", tr("FAN"), QStringLiteral("Climate/FanTitle"));
    auto* level = new Label(card, "level", QString(), QStringLiteral("Climate/FanValue"));
    level->setValueSource(VehicleData::fanLevel);
    level->refreshValue();
    DisplayView* row = box(card, "row", "Climate/FanRow");
    mFanDown = new Button(row, "down", QString(), QStringLiteral("Climate/FanStep; Image:icons/minus"));
    auto* bar = new ProgressBar(row, "bar", QStringLiteral("Climate/FanLevel"));
    bar->setRange(0, kMaxFan);
    {
        DataValue::ConditionalLocker lock(VehicleData::fanLevel);
        bar->setValue(VehicleData::fanLevel.toReal());
    }
    bar->setValueSource(VehicleData::fanLevel);
    mFanUp = new Button(row, "up", QString(), QStringLiteral("Climate/FanStep; Image:icons/plus"));
    connect(mFanDown, &Button::clicked, this, &ClimateScreen::fanClicked);
    connect(mFanUp, &Button::clicked, this, &ClimateScreen::fanClicked);
    DisplayView* toggles = box(card, "toggles", "Climate/Toggles");
    toggleButton(toggles, "auto", tr("Auto"), QStringLiteral("Climate/Toggle"), VehicleData::climateAuto);
    toggleButton(toggles, "ac", tr("A/C"), QStringLiteral("Climate/Toggle"), VehicleData::airConditioning);
    toggleButton(toggles, "recirculation", tr("Recirc."), QStringLiteral("Climate/Toggle"),
                 VehicleData::recirculation);
}

Button* ClimateScreen::toggleButton(DisplayView* parent, const char* name, const QString& title,
                                    const QString& style, DataValue& value)
{
    auto* button = new Button(parent, name, title, style);
    mToggles.insert(button, &value);
    connect(button, &Button::clicked, this, &ClimateScreen::toggleClicked);
    dvConnect(value, SLOT(toggleValueChanged(DataValue*)), true);
    return button;
}

void ClimateScreen::toggleClicked(Button* button)
{
    DataValue* value = mToggles.value(button);
    if (!value)
        return;
    // The value decides; the button shows it when the change arrives.
    DataValue::EventLocker lock(value);
    value->setValue(!value->toBool());
}

void ClimateScreen::toggleValueChanged(DataValue* value)
{
    bool on;
    {
        DataValue::ConditionalLocker lock(value);
        on = value->toBool();
    }
    for (auto it = mToggles.constBegin(); it != mToggles.constEnd(); ++it) {
        if (it.value() == value)
            it.key()->setSelected(on);
    }
}

void ClimateScreen::fanClicked(Button* button)
{
    DataValue::EventLocker lock(VehicleData::fanLevel);
    const int level = VehicleData::fanLevel.toInt() + (button == mFanUp ? 1 : -1);
    VehicleData::fanLevel.setValue(qBound(0, level, kMaxFan));
}
