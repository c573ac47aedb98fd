#pragma once

#include "DataValue.h"
#include "OrbisUtilsExport.h"
#include "StringDataValue.h"

/// Process-wide data values that the framework reads and writes.
extern ORBIS_UTILS_EXPORT DataValue GUI_lastTouchTime;    ///< UTC seconds of the last touch
extern ORBIS_UTILS_EXPORT DataValue GUI_touchDriverError; ///< bool: the touch driver failed
extern ORBIS_UTILS_EXPORT DataValue GUI_tapAnimation;     ///< bool: show the tap animation
extern ORBIS_UTILS_EXPORT DataValue GUI_showFrameMeter;   ///< bool: frame-time meter on screen
extern ORBIS_UTILS_EXPORT DataValue GUI_backlightRequest; ///< real: requested backlight level 0..1
extern ORBIS_UTILS_EXPORT DataValue GUI_dayMode;          ///< bool: day (true) or night skin
extern ORBIS_UTILS_EXPORT DataValue GUI_allReady;         ///< bool: the application finished starting
extern ORBIS_UTILS_EXPORT DataValue GUI_language; ///< int: QLocale::Language, or the framework's codes 1000+
extern ORBIS_UTILS_EXPORT DataValue GUI_factoryMode;      ///< bool: factory mode
extern ORBIS_UTILS_EXPORT DataValue GUI_isDevelopmentCar; ///< bool: development vehicle
extern ORBIS_UTILS_EXPORT DataValue CD_displayState;      ///< int: display state, see DisplayState
extern ORBIS_UTILS_EXPORT DataValue
    GUI_softwareUpdateGatewayInProgress; ///< bool: gateway update blocks input

/// Values of CD_displayState.
enum class DisplayState
{
    Off = 0,
    On = 1,
    Charging = 2,
    Accessory = 3,
    UserAbsent = 4,
};
