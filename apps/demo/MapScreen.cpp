#include "MapScreen.h"

#include "DemoMap.h"
#include "VehicleData.h"

#include <control/Button.h>
#include <control/Label.h>
#include <control/Panel.h>
#include <maps/MapView.h>

namespace {
constexpr double kZoom = 16.8;
constexpr double kTilt = 50;
constexpr double kZoomStep = 1.0;
constexpr double kZoomSeconds = 0.4;
} // namespace

MapScreen::MapScreen(DisplayView* parent) : Screen(parent, "map", QStringLiteral("MapScreen/Page"))
{
    mMap = new MapView(this, "map");
    mMap->setStyle(Style(QStringLiteral("MapScreen/Map")));
    // The car sits low on the screen, so that more of the road ahead shows.
    mMap->setFocus(QPointF(0.5, 0.68));
    mMap->setUseLayer(true);
    new DemoMap(mMap, kZoom, kTilt);
    connect(mMap, &MapView::followCarChanged, this, &MapScreen::followChanged);

    // The map's own layer keeps its tiles, route and car apart from what floats over it.
    auto* overlay = box(this, "overlay", "MapScreen/Overlay");
    overlay->setUseLayer(true);
    auto* speed = new Panel(box(overlay, "top", "MapScreen/Top"), "speed", QStringLiteral("MapScreen/Speed"));
    auto* value = new Label(speed, "value", QString(), QStringLiteral("MapScreen/SpeedValue"));
    value->setValueSource(VehicleData::speed);
    value->refreshValue();
    new Label(speed, "unit", tr("km/h"), QStringLiteral("MapScreen/SpeedUnit"));

    DisplayView* bottom = box(overlay, "bottom", "MapScreen/Bottom");
    mRecenter = new Button(bottom, "recenter", tr("Recenter"), QStringLiteral("MapScreen/Recenter"));
    connect(mRecenter, &Button::clicked, this, &MapScreen::recenterClicked);
    mRecenter->hide();
    box(bottom, "spacer", "Demo/Spacer");
    DisplayView* tools = box(bottom, "tools", "MapScreen/Tools");
    mZoomIn = new Button(tools, "zoomIn", QString(), QStringLiteral("MapScreen/Tool; Image:icons/plus"));
    mZoomOut = new Button(tools, "zoomOut", QString(), QStringLiteral("MapScreen/Tool; Image:icons/minus"));
    connect(mZoomIn, &Button::clicked, this, &MapScreen::zoomClicked);
    connect(mZoomOut, &Button::clicked, this, &MapScreen::zoomClicked);
}

void MapScreen::activate(bool active)
{
    Screen::activate(active);
    if (active && !mMap->followsCar())
        recenterClicked();
}

void MapScreen::followChanged(MapView*, bool follow)
{
    if (follow)
        mRecenter->fadeOut(0.2);
    else
        mRecenter->fadeIn(0.2);
}

void MapScreen::zoomClicked(Button* button)
{
    MapCamera camera = mMap->camera();
    camera.zoom += button == mZoomIn ? kZoomStep : -kZoomStep;
    mMap->flyTo(camera, kZoomSeconds, InterpolatedValue::EaseOutQuad);
}

void MapScreen::recenterClicked()
{
    MapCamera camera = mMap->camera();
    camera.tilt = kTilt;
    mMap->setCamera(camera);
    mMap->setFollowCar(true);
}
