#include "DemoMap.h"

#include "VehicleData.h"
#include "VehicleSimulator.h"

#include <maps/MapView.h>
#include <native/tiles/GeneratedTileSource.h>

DemoMap::DemoMap(MapView* map, double zoom, double tilt) : QObject(map), mMap(map)
{
    const VehicleSimulator::Route route = VehicleSimulator::drivenRoute();
    map->setTileSource(new NativeMaps::GeneratedTileSource(NativeMaps::GeneratedTilePainter::Map));
    map->setRoute(route);
    map->setCamera(MapCamera(route.first(), zoom, 0.0, tilt));
    map->setFollowCar(true);
    connect(&VehicleData::position, &DataValue::valueChanged, this, &DemoMap::positionChanged);
    positionChanged(&VehicleData::position);
}

void DemoMap::positionChanged(DataValue* value)
{
    QVariantList fix;
    {
        DataValue::ConditionalLocker lock(value);
        fix = value->value().toList();
    }
    if (fix.size() == 3)
        mMap->addGpsFix(fix[0].toDouble(), fix[1].toDouble(), fix[2].toDouble());
}
