#include "RuntimeEnv.h"

#include "ConfigValue.h"
#include "DataValues.h"

namespace {
ConfigBoolValue gInstrumentCluster("runtime/instrument_cluster", false);
ConfigBoolValue gDevelopmentCar("runtime/development_car", false);
} // namespace

namespace RuntimeEnv {

bool isInstrumentCluster()
{
    return gInstrumentCluster.value();
}

bool isDevelopmentCar()
{
    if (gDevelopmentCar.value())
        return true;
    DataValue::ConditionalLocker lock(GUI_isDevelopmentCar);
    return GUI_isDevelopmentCar.toBool();
}

} // namespace RuntimeEnv
