#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QMap>
#include <QPointF>
#include <QTransform>
#include <QVector>

class QRegion;

namespace gfx {

class Geometry;
class GlyphRun;

// The textured quads of a glyph run, one triangle list per glyph atlas page.
class ORBIS_UI_INTERNAL_EXPORT GlyphQuads
{
public:
    // `origins` are the glyphs' baseline positions in device pixels, rounded to
    // whole pixels as the raster engine places unhinted positions. Quads are cut
    // to `clip` where one is given. The caller owns the geometries.
    static QMap<unsigned int, Geometry*> build(const GlyphRun& run, const QVector<QPointF>& origins,
                                               const QRegion* clip);
    // The same with each glyph's bitmap turned by `orientation` (a linear
    // transform: rotation, mirroring, shear) about its pen position.
    static QMap<unsigned int, Geometry*> build(const GlyphRun& run, const QVector<QPointF>& origins,
                                               const QTransform& orientation, const QRegion* clip);
};

} // namespace gfx
