#include "MapCard.h"

#include "DemoMap.h"

#include <control/Label.h>
#include <maps/MapView.h>

MapCard::MapCard(DisplayView* parent) : Panel(parent, "mapCard", QStringLiteral("Home/MapCard"))
{
    new Label(this, "caption", tr("NAVIGATION"), QStringLiteral("Home/MapCaption"));
    mMap = new MapView(this, "map");
    mMap->setStyle(Style(QStringLiteral("Home/Map")));
    // Its own layer: the map's tiles are drawn apart from the rest of the screen.
    mMap->setUseLayer(true);
    // The card takes the touches: the small map is for looking at.
    mMap->setTouchBehavior(IgnoreTouches, true);
    mMap->setFocus(QPointF(0.5, 0.62));
    new DemoMap(mMap, 16.6, 30);
}

void MapCard::tapped(int touch, QPoint point)
{
    Panel::tapped(touch, point);
    emit opened();
}
