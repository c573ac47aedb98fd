#pragma once

#include "LocationCoordinate.h"
#include "OrbisUIFrameworkExport.h"
#include "native/MapTransform.h"

#include <QColor>
#include <QPainterPath>
#include <QVector>

class QPainter;

/// A line through geographic points drawn over the map (a route), stroked by the
/// paint engine in view pixels: its width stays the same at every zoom and tilt.
/// The part beyond the far edge of a tilted view is cut off before projecting, so
/// points near or past the horizon never reach the screen.
class ORBIS_UI_EXPORT MapRouteOverlay
{
public:
    void setPoints(const QVector<LocationCoordinate>& points) { mPoints = points; }
    const QVector<LocationCoordinate>& points() const { return mPoints; }
    void setColor(const QColor& color) { mColor = color; }
    const QColor& color() const { return mColor; }
    void setCasingColor(const QColor& color) { mCasing = color; }
    void setWidth(double width) { mWidth = width; }
    double width() const { return mWidth; }
    bool isEmpty() const { return mPoints.size() < 2; }

    /// The visible line in projected view pixels.
    QPainterPath path(const NativeMaps::MapTransform& transform) const;
    void paint(QPainter& painter, const NativeMaps::MapTransform& transform) const;

private:
    QVector<LocationCoordinate> mPoints;
    QColor mColor = QColor(38, 132, 255);
    QColor mCasing = QColor(20, 70, 160);
    double mWidth = 8.0;
};
