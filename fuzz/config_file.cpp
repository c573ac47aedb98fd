// Configuration files as ORBIS_CONFIG names them, read back through every
// configuration value the framework registers.

#include "ConfigRegistry.h"
#include "FuzzEnvironment.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzEnvironment& environment = FuzzEnvironment::instance();
    const QString folder = environment.freshFolder();
    const QString path = folder + "/orbis.conf";
    FuzzEnvironment::write(path, FuzzEnvironment::bytes(data, size));
    ConfigRegistry& registry = ConfigRegistry::instance();
    registry.loadFile(path);
    for (const ConfigRegistry::Entry& entry : registry.entries())
        FuzzEnvironment::check(entry.isSet || entry.currentValue == entry.defaultValue,
                               "a value the file does not set keeps its default");
    registry.unloadFiles();
    FuzzEnvironment::remove(folder);
    return 0;
}
