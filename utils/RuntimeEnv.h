#pragma once

#include "OrbisUtilsExport.h"

/// Facts about the unit the process runs on, set by configuration.
namespace RuntimeEnv {

/// "runtime/instrument_cluster": the process drives the instrument cluster rather
/// than the centre display.
ORBIS_UTILS_EXPORT bool isInstrumentCluster();
/// "runtime/development_car", or the data value GUI_isDevelopmentCar.
ORBIS_UTILS_EXPORT bool isDevelopmentCar();

} // namespace RuntimeEnv
