#pragma once

#include <QObject>
#include <QVector>

class DataValue;
class MapView;
struct LocationCoordinate;

// What the demo's maps share: generated tiles (no network needed) in the colours of
// the current skin, the route the simulated car drives, and the position fixes the
// vehicle publishes, smoothed by each map's GPS interpolator.
class DemoMap : public QObject
{
    Q_OBJECT

public:
    // Gives `map` its tiles and the route, follows the car with the camera at `zoom`
    // and `tilt`, and feeds it every position fix from now on.
    DemoMap(MapView* map, double zoom, double tilt);

private slots:
    void positionChanged(DataValue* value);
    void skinChanged();

private:
    MapView* mMap;
    bool mNight = false;
};
