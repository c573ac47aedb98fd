#include "PeerScene.h"

#include <QPainter>
#include <cmath>

namespace PeerScene {

QString trackText(int row)
{
    return QStringLiteral("Track %1").arg(row + 1);
}

QString artistText(int row)
{
    return QStringLiteral("Artist name %1").arg(row % 37 + 1);
}

double scrollOffset(double seconds)
{
    return std::fmod(seconds * kPixelsPerSecond, kScrollExtent);
}

double ringAngle(double seconds)
{
    return std::fmod(seconds / kSecondsPerTurn, 1.0) * 360.0;
}

void paintRing(QPainter& painter, const QRectF& bounds)
{
    const double inset = kRingStroke / 2.0;
    QPen pen(kRing, kRingStroke);
    pen.setCapStyle(Qt::RoundCap);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    // Qt's arcs are in sixteenths of a degree, counter-clockwise from three o'clock.
    painter.drawArc(bounds.adjusted(inset, inset, -inset, -inset), 90 * 16, -int(kRingSpan * 360 * 16));
    painter.restore();
}

} // namespace PeerScene
