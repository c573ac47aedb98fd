#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TPoint.h"

namespace NativeMaps {

/// Maps projected units to normalised world units (the unit square of the tile
/// pyramid) and back, axis by axis.
struct ORBIS_UI_EXPORT MapCRSAffineTransform
{
    double scaleX = 1.0;
    double offsetX = 0.0;
    double scaleY = 1.0;
    double offsetY = 0.0;

    constexpr MapCRSAffineTransform() = default;
    constexpr MapCRSAffineTransform(double sx, double ox, double sy, double oy)
        : scaleX(sx), offsetX(ox), scaleY(sy), offsetY(oy)
    {}

    constexpr TPoint<double> map(const TPoint<double>& projected) const
    {
        return TPoint<double>(scaleX * projected.x + offsetX, scaleY * projected.y + offsetY);
    }
    constexpr TPoint<double> unmap(const TPoint<double>& normalised) const
    {
        return TPoint<double>((normalised.x - offsetX) / scaleX, (normalised.y - offsetY) / scaleY);
    }
};

} // namespace NativeMaps
