#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QPoint>
#include <QPointF>

// Geometry of finger positions for gesture recognition. Angles are in degrees,
// measured like atan2 (counter-clockwise from +x in a y-up frame; on screen, where y
// grows downwards, positive angles turn clockwise).
namespace PointUtils {
ORBIS_UI_INTERNAL_EXPORT double distanceBetween(const QPointF& a, const QPointF& b);
// The vector from a to b.
ORBIS_UI_INTERNAL_EXPORT QPointF vectorBetween(const QPointF& a, const QPointF& b);
ORBIS_UI_INTERNAL_EXPORT double vectorAngle(const QPointF& vector);
// The signed turn from angle `from` to angle `to`, wrapped into [-180, 180).
ORBIS_UI_INTERNAL_EXPORT double angleDifference(double from, double to);
ORBIS_UI_INTERNAL_EXPORT QPointF midpoint(const QPointF& a, const QPointF& b);
ORBIS_UI_INTERNAL_EXPORT int manhattanDistance(const QPoint& a, const QPoint& b);
} // namespace PointUtils
