#include "VehicleData.h"

#include <QVariantList>

namespace VehicleData {
DataValue speed(QStringLiteral("Vehicle_speed"), 0.0);
StringDataValue gear(QStringLiteral("Vehicle_gear"), QStringLiteral("P"));
DataValue batteryPercent(QStringLiteral("Vehicle_batteryPercent"), 0.0);
DataValue rangeKm(QStringLiteral("Vehicle_rangeKm"), 0.0);
DataValue powerKw(QStringLiteral("Vehicle_powerKw"), 0.0);
DataValue outsideTemperature(QStringLiteral("Vehicle_outsideTemperature"), QVariant());
DataValue timeOfDay(QStringLiteral("Vehicle_timeOfDay"), 0);
DataValue connectivity(QStringLiteral("Vehicle_connectivity"), 0);
DataValue position(QStringLiteral("Vehicle_position"), QVariantList());

StringDataValue mediaTitle(QStringLiteral("Media_title"), QString());
StringDataValue mediaArtist(QStringLiteral("Media_artist"), QString());
StringDataValue mediaCover(QStringLiteral("Media_cover"), QString());
StringDataValue mediaNextTitle(QStringLiteral("Media_nextTitle"), QString());
StringDataValue mediaNextArtist(QStringLiteral("Media_nextArtist"), QString());
StringDataValue mediaNextCover(QStringLiteral("Media_nextCover"), QString());
DataValue mediaPosition(QStringLiteral("Media_position"), 0.0);
DataValue mediaDuration(QStringLiteral("Media_duration"), 0.0);
DataValue mediaPlaying(QStringLiteral("Media_playing"), true);
DataValue mediaSkipRequest(QStringLiteral("Media_skipRequest"), 0);

DataValue driverTemperature(QStringLiteral("Climate_driverTemperature"), 21.0);
DataValue passengerTemperature(QStringLiteral("Climate_passengerTemperature"), 21.0);
DataValue fanLevel(QStringLiteral("Climate_fanLevel"), 2);
DataValue seatHeatDriver(QStringLiteral("Climate_seatHeatDriver"), false);
DataValue seatHeatPassenger(QStringLiteral("Climate_seatHeatPassenger"), false);
DataValue recirculation(QStringLiteral("Climate_recirculation"), false);
DataValue climateAuto(QStringLiteral("Climate_auto"), true);
DataValue airConditioning(QStringLiteral("Climate_airConditioning"), true);
DataValue brightness(QStringLiteral("Settings_brightness"), 0.8);
DataValue volume(QStringLiteral("Settings_volume"), 0.45);
DataValue nightMode(QStringLiteral("Settings_nightMode"), false);
DataValue turnSignalChime(QStringLiteral("Settings_turnSignalChime"), true);
DataValue creepMode(QStringLiteral("Settings_creepMode"), false);
DataValue autoHold(QStringLiteral("Settings_autoHold"), true);
DataValue scheduledCharging(QStringLiteral("Settings_scheduledCharging"), false);
DataValue chargeLimit(QStringLiteral("Settings_chargeLimit"), 90);
DataValue preconditioning(QStringLiteral("Settings_preconditioning"), true);
DataValue unlockCableWhenDone(QStringLiteral("Settings_unlockCableWhenDone"), false);
DataValue wifi(QStringLiteral("Settings_wifi"), true);
DataValue mobileData(QStringLiteral("Settings_mobileData"), true);
DataValue metricUnits(QStringLiteral("Settings_metricUnits"), true);
DataValue clock24h(QStringLiteral("Settings_clock24h"), true);
} // namespace VehicleData
