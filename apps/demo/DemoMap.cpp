#include "DemoMap.h"

#include "VehicleData.h"
#include "VehicleSimulator.h"

#include <SkinManager.h>
#include <maps/MapView.h>
#include <native/tiles/GeneratedTileSource.h>

namespace {
NativeMaps::TileSource* tilesFor(bool night)
{
    using NativeMaps::GeneratedTilePainter;
    return new NativeMaps::GeneratedTileSource(night ? GeneratedTilePainter::NightMap
                                                     : GeneratedTilePainter::Map);
}
} // namespace

DemoMap::DemoMap(MapView* map, double zoom, double tilt) : QObject(map), mMap(map)
{
    const VehicleSimulator::Route route = VehicleSimulator::drivenRoute();
    mNight = !SkinManager::instance()->isDay();
    map->setTileSource(tilesFor(mNight));
    map->setRoute(route);
    map->setCamera(MapCamera(route.first(), zoom, 0.0, tilt));
    map->setFollowCar(true);
    connect(&VehicleData::position, &DataValue::valueChanged, this, &DemoMap::positionChanged);
    connect(SkinManager::instance(), &SkinManager::skinChanged, this, &DemoMap::skinChanged);
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

void DemoMap::skinChanged()
{
    const bool night = !SkinManager::instance()->isDay();
    if (night == mNight)
        return;
    mNight = night;
    // The tiles of the other style are drawn afresh; the camera, route and car stay.
    mMap->setTileSource(tilesFor(night));
}
