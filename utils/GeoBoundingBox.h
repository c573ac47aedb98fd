#pragma once

#include "LocationCoordinate.h"
#include "OrbisUtilsExport.h"

/// A latitude/longitude box given by its north-west and south-east corners. A box
/// whose west edge lies east of its east edge crosses the antimeridian.
class ORBIS_UTILS_EXPORT GeoBoundingBox
{
public:
    GeoBoundingBox() = default;
    GeoBoundingBox(const LocationCoordinate& northWest, const LocationCoordinate& southEast)
        : mNorthWest(northWest), mSouthEast(southEast)
    {}

    const LocationCoordinate& northWestLimit() const { return mNorthWest; }
    const LocationCoordinate& southEastLimit() const { return mSouthEast; }

    bool isValid() const
    {
        return mNorthWest.isValid() && mSouthEast.isValid() && mNorthWest.latitude() >= mSouthEast.latitude();
    }
    bool crossesAntimeridian() const { return mNorthWest.longitude() > mSouthEast.longitude(); }

    bool contains(const LocationCoordinate& c) const
    {
        if (c.latitude() > mNorthWest.latitude() || c.latitude() < mSouthEast.latitude())
            return false;
        if (crossesAntimeridian())
            return c.longitude() >= mNorthWest.longitude() || c.longitude() <= mSouthEast.longitude();
        return c.longitude() >= mNorthWest.longitude() && c.longitude() <= mSouthEast.longitude();
    }

    LocationCoordinate center() const
    {
        double east = mSouthEast.longitude();
        if (crossesAntimeridian())
            east += 360.0;
        double lon = (mNorthWest.longitude() + east) / 2.0;
        if (lon >= 180.0)
            lon -= 360.0;
        return LocationCoordinate((mNorthWest.latitude() + mSouthEast.latitude()) / 2.0, lon);
    }

private:
    LocationCoordinate mNorthWest;
    LocationCoordinate mSouthEast;
};
