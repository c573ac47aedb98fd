#include "PointUtils.h"

#include "MathUtils.h"

#include <QLineF>
#include <cmath>

namespace PointUtils {

double distanceBetween(const QPointF& a, const QPointF& b)
{
    return QLineF(a, b).length();
}

QPointF vectorBetween(const QPointF& a, const QPointF& b)
{
    return b - a;
}

double vectorAngle(const QPointF& vector)
{
    return std::atan2(vector.y(), vector.x()) * 180.0 / M_PI;
}

double angleDifference(double from, double to)
{
    return MathUtils::wrap(to - from, -180.0, 180.0);
}

QPointF midpoint(const QPointF& a, const QPointF& b)
{
    return (a + b) / 2.0;
}

int manhattanDistance(const QPoint& a, const QPoint& b)
{
    return (b - a).manhattanLength();
}

} // namespace PointUtils
