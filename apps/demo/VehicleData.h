#pragma once

#include <DataValue.h>
#include <StringDataValue.h>

// The vehicle and media values the centre display shows. On a vehicle the
// services publish them; here the VehicleSimulator does.
namespace VehicleData {
extern DataValue speed;              // km/h
extern StringDataValue gear;         // "P", "R", "N", "D"
extern DataValue batteryPercent;     // 0..100
extern DataValue rangeKm;            // estimated range
extern DataValue powerKw;            // drive power, negative while recuperating
extern DataValue outsideTemperature; // degrees Celsius
extern DataValue timeOfDay;          // seconds since midnight
extern DataValue connectivity;       // signal bars 0..4
extern DataValue position;           // [latitude, longitude, heading] of the last fix (1 Hz)

extern StringDataValue mediaTitle;
extern StringDataValue mediaArtist;
extern StringDataValue mediaCover; // picture name in the assets folder
extern StringDataValue mediaNextTitle;
extern StringDataValue mediaNextArtist;
extern StringDataValue mediaNextCover;
extern DataValue mediaPosition;    // seconds into the track
extern DataValue mediaDuration;    // seconds
extern DataValue mediaPlaying;     // bool, written by the display too
extern DataValue mediaSkipRequest; // counter: the display adds 1 (next) or -1 (previous)

// Settings and climate, written by the display's controls.
extern DataValue driverTemperature;    // degrees Celsius
extern DataValue passengerTemperature; // degrees Celsius
extern DataValue fanLevel;             // 0..5
extern DataValue seatHeatDriver;       // bool
extern DataValue seatHeatPassenger;    // bool
extern DataValue recirculation;        // bool
extern DataValue climateAuto;          // bool
extern DataValue airConditioning;      // bool
extern DataValue brightness;           // 0..1
extern DataValue volume;               // 0..1
extern DataValue nightMode;            // bool, the display's skin follows it
extern DataValue turnSignalChime;      // bool
extern DataValue creepMode;            // bool
extern DataValue autoHold;             // bool
extern DataValue scheduledCharging;    // bool
extern DataValue chargeLimit;          // percent, 50..100
extern DataValue preconditioning;      // bool
extern DataValue unlockCableWhenDone;  // bool
extern DataValue wifi;                 // bool
extern DataValue mobileData;           // bool
extern DataValue metricUnits;          // bool
extern DataValue clock24h;             // bool
} // namespace VehicleData
