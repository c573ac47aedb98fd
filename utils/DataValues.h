#pragma once

#include "DataValue.h"
#include "StringDataValue.h"

// Process-wide data values that the framework reads and writes.
extern DataValue GUI_lastTouchTime;       // UTC seconds of the last touch
extern DataValue GUI_touchDriverError;    // bool: the touch driver failed
extern DataValue GUI_tapAnimation;        // bool: show the tap animation
extern DataValue GUI_showFrameMeter;      // bool: frame-time meter on screen
extern DataValue GUI_backlightRequest;    // real: requested backlight level 0..1
extern DataValue GUI_dayMode;             // bool: day (true) or night skin
extern DataValue GUI_allReady;            // bool: the application finished starting
extern DataValue GUI_language;            // int: QLocale::Language, or the framework's codes 1000+
extern DataValue GUI_factoryMode;         // bool: factory mode
extern DataValue GUI_isDevelopmentCar;    // bool: development vehicle
extern DataValue CD_displayState;         // int: display state, see DisplayState
extern DataValue GUI_softwareUpdateGatewayInProgress; // bool: gateway update blocks input

// Values of CD_displayState.
enum class DisplayState
{
    Off = 0,
    On = 1,
    Charging = 2,
    Accessory = 3,
    UserAbsent = 4,
};
