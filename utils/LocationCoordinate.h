#pragma once

#include "OrbisUtilsExport.h"

#include <QMetaType>
#include <cmath>

/// A geographic position in degrees (WGS84).
class ORBIS_UTILS_EXPORT LocationCoordinate
{
public:
    LocationCoordinate() = default;
    LocationCoordinate(double latitude, double longitude) : mLatitude(latitude), mLongitude(longitude) {}

    double latitude() const { return mLatitude; }
    double longitude() const { return mLongitude; }
    void setLatitude(double latitude) { mLatitude = latitude; }
    void setLongitude(double longitude) { mLongitude = longitude; }

    bool isValid() const
    {
        return std::isfinite(mLatitude) && std::isfinite(mLongitude) && mLatitude >= -90.0 &&
               mLatitude <= 90.0 && mLongitude >= -180.0 && mLongitude <= 180.0;
    }

    bool operator==(const LocationCoordinate& o) const
    {
        return mLatitude == o.mLatitude && mLongitude == o.mLongitude;
    }
    bool operator!=(const LocationCoordinate& o) const { return !(*this == o); }

private:
    double mLatitude = NAN;
    double mLongitude = NAN;
};

Q_DECLARE_METATYPE(LocationCoordinate)
