#include "MapView.h"

#include "DisplayDevice.h"
#include "input/touch/TouchDevice.h"

#include <cmath>

using NativeMaps::MapTransform;

namespace {
// Degrees of tilt per pixel that two fingers side by side move up or down.
constexpr double kTiltPerPixel = 0.3;
// Pixels a finger moves before the map follows it.
constexpr int kDragThreshold = 8;

QPointF relativeWorldAt(const MapTransform& t, const QPointF& projected)
{
    return t.relativeWorldPixelsFromViewPixels(t.projection().inverse.map(projected) -
                                               t.referenceViewPoint());
}
} // namespace

QPointF MapView::touchPoint(int touch, bool pairCenter) const
{
    DisplayDevice* display = device();
    if (!display)
        return QPointF(width() / 2.0, height() / 2.0);
    TouchDevice* touches = TouchDevice::getInstance(display);
    const QPoint onScreen = pairCenter
                                ? touches->getPairCenterPoint(touch)
                                : (touches->info(touch) ? touches->info(touch)->currentPoint : QPoint());
    return QPointF(onScreen - relativePositionRect(nullptr).topLeft());
}

MapCamera MapView::anchored(const MapCamera& camera, const LocationCoordinate& anchor,
                            const QPointF& point) const
{
    const MapTransform t = transformFor(camera);
    const QPointF shift =
        relativeWorldAt(t, t.projectedViewPixelsFromLatLng(anchor)) - relativeWorldAt(t, point);
    MapCamera result = camera;
    result.center = t.latLngFromProjectedViewPixels(t.projectedViewPixelsFromRelativeWorldPixels(shift));
    return result;
}

void MapView::touched(int touch, QPoint)
{
    mTouches.insert(touch);
    mHasPairCenter = false;
    if (DisplayDevice* display = device())
        TouchDevice::getInstance(display)->setDragDistanceThreshold(touch, kDragThreshold);
}

void MapView::released(int touch)
{
    mTouches.remove(touch);
    mHasPairCenter = false;
}

void MapView::touchCanceled(int touch)
{
    released(touch);
}

void MapView::dragged(int touch, QSize delta)
{
    if (delta.width() == 0 && delta.height() == 0)
        return;
    userMovedMap();
    const QPointF now = touchPoint(touch, false);
    const QPointF before = now - QPointF(delta.width(), delta.height());
    const MapTransform t = transform();
    // What was under the finger stays under it.
    applyCamera(anchored(mCamera, t.latLngFromProjectedViewPixels(before), now));
}

void MapView::pinched(int touch, double scale)
{
    if (scale <= 0)
        return;
    userMovedMap();
    const QPointF center = touchPoint(touch, true);
    const LocationCoordinate anchor = latLngFromViewPoint(center);
    MapCamera c = mCamera;
    c.zoom = qBound(kMinZoom, c.zoom + std::log2(scale), kMaxZoom);
    applyCamera(anchored(c, anchor, center));
}

void MapView::rotated(int touch, double angle)
{
    userMovedMap();
    const QPointF center = touchPoint(touch, true);
    const LocationCoordinate anchor = latLngFromViewPoint(center);
    MapCamera c = mCamera;
    // Turning the fingers clockwise turns the map with them.
    c.rotation -= angle;
    applyCamera(anchored(c, anchor, center));
}

// Two fingers side by side moving up or down together tilt the map: no pinch or
// rotate is reported for that, so the pair's midpoint is watched every frame.
void MapView::followTilt()
{
    DisplayDevice* display = device();
    if (mTouches.size() != 2 || !display) {
        mHasPairCenter = false;
        return;
    }
    TouchDevice* touches = TouchDevice::getInstance(display);
    const int first = *mTouches.constBegin();
    const TouchInfo* a = touches->info(first);
    if (!a || a->pair == TouchInfo::kNoPair || !mTouches.contains(a->pair))
        return;
    const TouchInfo* b = touches->info(a->pair);
    const QPoint across = b->currentPoint - a->currentPoint;
    const QPointF center = touchPoint(first, true);
    if (std::abs(across.y()) * 2 > std::abs(across.x())) {
        mHasPairCenter = false;
        return;
    }
    if (mHasPairCenter && center.y() != mLastPairCenter.y()) {
        userMovedMap();
        MapCamera c = mCamera;
        c.tilt -= (center.y() - mLastPairCenter.y()) * kTiltPerPixel;
        applyCamera(c);
    }
    mLastPairCenter = center;
    mHasPairCenter = true;
}
