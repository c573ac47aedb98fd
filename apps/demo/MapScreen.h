#pragma once

#include "Screen.h"

class Button;
class MapView;

// The map across the whole content area: the car following the drive, the camera
// behind it heading up and tilted, the speed, zoom buttons, and a button that
// brings the camera back to the car once a finger has moved the map.
class MapScreen : public Screen
{
    Q_OBJECT

public:
    explicit MapScreen(DisplayView* parent);

    MapView* map() const { return mMap; }
    void activate(bool active) override;

private slots:
    void followChanged(MapView* map, bool follow);
    void zoomClicked(Button* button);
    void recenterClicked();

private:
    MapView* mMap;
    Button* mZoomIn;
    Button* mZoomOut;
    Button* mRecenter;
};
