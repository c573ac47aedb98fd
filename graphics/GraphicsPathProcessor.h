#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QPainterPath>
#include <QTransform>
#include <QVector2D>
#include <QVector>

namespace gfx {

// Flattens painter paths into polylines through a transform: lines as they are,
// cubic curves cut into segments no longer than a few pixels.
class ORBIS_UI_INTERNAL_EXPORT GraphicsPathProcessor
{
public:
    using Polyline = QVector<QVector2D>;

    explicit GraphicsPathProcessor(const QTransform& transform = QTransform());

    // Appends the path's subpaths. False, with the assertion reported and the rest
    // of the path dropped, at an element of unknown kind.
    bool process(const QPainterPath& path);
    // One element; a curve takes its two control elements along.
    bool add(const QPainterPath::Element& element, const QPainterPath::Element* control1 = nullptr,
             const QPainterPath::Element* control2 = nullptr);

    Polyline map(const Polyline& line) const;
    const QVector<Polyline>& polylines() const { return mPolylines; }
    void clear() { mPolylines.clear(); }

private:
    QVector2D mapped(qreal x, qreal y) const;

    QTransform mTransform;
    QVector<Polyline> mPolylines;
};

} // namespace gfx
