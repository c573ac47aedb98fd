#include "MapCameraAnimation.h"

#include "GeoUtils.h"
#include "input/touch/PointUtils.h"

#include <cmath>

namespace {
constexpr double kWorld = 2 * GeoUtils::kSphericalMercatorHalfWorld;
constexpr double kMaxZoomDip = 4.0;

double metresPerPixel(double zoom)
{
    return kWorld / (256.0 * std::pow(2.0, zoom));
}
} // namespace

MapCameraAnimation::MapCameraAnimation(const MapCamera& from, const MapCamera& to, double seconds,
                                       InterpolatedValue::EaseType ease, double viewSize)
    : mFrom(from), mTo(to), mSeconds(seconds), mEase(ease)
{
    const TPoint<double> a = GeoUtils::projectToSphericalMercator(from.center);
    const TPoint<double> b = GeoUtils::projectToSphericalMercator(to.center);
    double dx = b.x - a.x;
    if (std::abs(dx) > kWorld / 2)
        dx -= std::copysign(kWorld, dx);
    const double distance = std::hypot(dx, b.y - a.y);
    const double span = qMax(1.0, viewSize) * metresPerPixel(qMin(from.zoom, to.zoom));
    if (distance > span)
        mZoomDip = qMin(kMaxZoomDip, std::log2(distance / span));
    mTimer.start();
}

bool MapCameraAnimation::isFinished() const
{
    return mTimer.secondsElapsed() >= mSeconds;
}

MapCamera MapCameraAnimation::current() const
{
    return at(mSeconds > 0 ? mTimer.secondsElapsed() / mSeconds : 1.0);
}

MapCamera MapCameraAnimation::at(double progress) const
{
    if (progress >= 1.0)
        return mTo;
    progress = qMax(0.0, progress);
    const double e = InterpolatedValue::getEaseFunc(mEase)(progress, 0.0, 1.0, 1.0);

    const TPoint<double> a = GeoUtils::projectToSphericalMercator(mFrom.center);
    const TPoint<double> b = GeoUtils::projectToSphericalMercator(mTo.center);
    double dx = b.x - a.x;
    // Across the date line rather than around the world.
    if (std::abs(dx) > kWorld / 2)
        dx -= std::copysign(kWorld, dx);
    TPoint<double> p{a.x + dx * e, a.y + (b.y - a.y) * e};
    if (p.x > kWorld / 2)
        p.x -= kWorld;
    else if (p.x < -kWorld / 2)
        p.x += kWorld;

    MapCamera c;
    c.center = GeoUtils::unprojectFromSphericalMercator(p);
    c.zoom = mFrom.zoom + (mTo.zoom - mFrom.zoom) * e - mZoomDip * std::sin(M_PI * e);
    c.rotation = mFrom.rotation + PointUtils::angleDifference(mFrom.rotation, mTo.rotation) * e;
    c.tilt = mFrom.tilt + (mTo.tilt - mFrom.tilt) * e;
    return c;
}
