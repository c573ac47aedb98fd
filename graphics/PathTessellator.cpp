#include "PathTessellator.h"

#include <GL/glu.h>
#include <list>

namespace gfx {

namespace {
struct Tessellation
{
    QVector<Vertex> triangles;
    // Points the tessellator creates at crossings; they must outlive it.
    struct Point
    {
        GLdouble xyz[3];
    };
    std::list<Point> created;
};

void GLAPIENTRY vertex(void* data, void* user)
{
    const auto* p = static_cast<const GLdouble*>(data);
    static_cast<Tessellation*>(user)->triangles << Vertex{float(p[0]), float(p[1]), 0, 0};
}

void GLAPIENTRY combine(GLdouble coords[3], void* [4], GLfloat[4], void** out, void* user)
{
    auto& created = static_cast<Tessellation*>(user)->created;
    created.emplace_back();
    GLdouble* p = created.back().xyz;
    p[0] = coords[0];
    p[1] = coords[1];
    p[2] = 0;
    *out = p;
}

// With an edge-flag callback the tessellator emits separate triangles only.
void GLAPIENTRY edgeFlag(GLboolean, void*) {}
void GLAPIENTRY begin(GLenum, void*) {}
void GLAPIENTRY end(void*) {}
} // namespace

QVector<Vertex> PathTessellator::fill(const QVector<QVector<QVector2D>>& contours, FillRule rule)
{
    Tessellation result;
    GLUtesselator* tess = gluNewTess();
    if (!tess)
        return result.triangles;
    using Callback = void(GLAPIENTRY*)();
    gluTessCallback(tess, GLU_TESS_BEGIN_DATA, reinterpret_cast<Callback>(begin));
    gluTessCallback(tess, GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(vertex));
    gluTessCallback(tess, GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(combine));
    gluTessCallback(tess, GLU_TESS_EDGE_FLAG_DATA, reinterpret_cast<Callback>(edgeFlag));
    gluTessCallback(tess, GLU_TESS_END_DATA, reinterpret_cast<Callback>(end));
    gluTessProperty(tess, GLU_TESS_WINDING_RULE,
                    rule == kOddEven ? GLU_TESS_WINDING_ODD : GLU_TESS_WINDING_NONZERO);
    gluTessNormal(tess, 0, 0, 1);
    std::list<QVector<GLdouble>> points;
    gluTessBeginPolygon(tess, &result);
    for (const QVector<QVector2D>& contour : contours) {
        if (contour.size() < 3)
            continue;
        points.emplace_back(contour.size() * 3);
        QVector<GLdouble>& coords = points.back();
        gluTessBeginContour(tess);
        for (int i = 0; i < contour.size(); ++i) {
            GLdouble* p = coords.data() + i * 3;
            p[0] = contour[i].x();
            p[1] = contour[i].y();
            p[2] = 0;
            gluTessVertex(tess, p, p);
        }
        gluTessEndContour(tess);
    }
    gluTessEndPolygon(tess);
    gluDeleteTess(tess);
    return result.triangles;
}

} // namespace gfx
