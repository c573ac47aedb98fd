#pragma once

#include "Screen.h"

class Button;
class DataValue;
class Label;
class Slider;

// The cabin: a temperature per side with a slider each, seat heating, the fan
// level and the air toggles.
class ClimateScreen : public Screen
{
    Q_OBJECT

public:
    explicit ClimateScreen(DisplayView* parent);

    Label* driverTemperature() const { return mDriverTemperature; }
    Slider* driverSlider() const { return mDriverSlider; }

private slots:
    void toggleClicked(Button* button);
    void fanClicked(Button* button);
    void toggleValueChanged(DataValue* value);

private:
    DisplayView* buildSide(const char* name, const QString& zone, DataValue& temperature, DataValue& seatHeat,
                           Label** label, Slider** slider);
    void buildCenter(DisplayView* parent);
    Button* toggleButton(DisplayView* parent, const char* name, const QString& title, const QString& style,
                         DataValue& value);

    Label* mDriverTemperature = nullptr;
    Slider* mDriverSlider = nullptr;
    Button* mFanDown = nullptr;
    Button* mFanUp = nullptr;
    QHash<Button*, DataValue*> mToggles;
};
