#include "DataValues.h"

#include <QLocale>

DataValue GUI_lastTouchTime(QStringLiteral("GUI_lastTouchTime"), 0.0);
DataValue GUI_touchDriverError(QStringLiteral("GUI_touchDriverError"), false);
DataValue GUI_tapAnimation(QStringLiteral("GUI_tapAnimation"), false);
DataValue GUI_showFrameMeter(QStringLiteral("GUI_showFrameMeter"), false);
DataValue GUI_backlightRequest(QStringLiteral("GUI_backlightRequest"), 1.0);
DataValue GUI_dayMode(QStringLiteral("GUI_dayMode"), true);
DataValue GUI_allReady(QStringLiteral("GUI_allReady"), false);
DataValue GUI_language(QStringLiteral("GUI_language"), int(QLocale::English));
DataValue GUI_factoryMode(QStringLiteral("GUI_factoryMode"), false);
DataValue GUI_isDevelopmentCar(QStringLiteral("GUI_isDevelopmentCar"), false);
DataValue CD_displayState(QStringLiteral("CD_displayState"), int(DisplayState::On));
DataValue GUI_softwareUpdateGatewayInProgress(QStringLiteral("GUI_softwareUpdateGatewayInProgress"), false);
