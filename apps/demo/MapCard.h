#pragma once

#include <control/Panel.h>

class MapView;

// The small map of the home screen: the car on the map, heading up. A tap on it
// opens the map screen.
class MapCard : public Panel
{
    Q_OBJECT

public:
    explicit MapCard(DisplayView* parent);

    MapView* map() const { return mMap; }
    void tapped(int touch, QPoint point) override;

signals:
    void opened();

private:
    MapView* mMap;
};
