#pragma once

// Facts about the unit the process runs on, set by configuration.
namespace RuntimeEnv {

// "runtime/instrument_cluster": the process drives the instrument cluster rather
// than the centre display.
bool isInstrumentCluster();
// "runtime/development_car", or the data value GUI_isDevelopmentCar.
bool isDevelopmentCar();

} // namespace RuntimeEnv
