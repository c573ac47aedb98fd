#include <ColorShaderUsage.h>
#include <Geometry.h>
#include <GeometryRenderItem.h>
#include <LogCapture.h>
#include <Shape.h>

#include <gtest/gtest.h>

using namespace gfx;

namespace {

double area(const Shape& shape)
{
    double sum = 0;
    for (const QPolygonF& p : shape.polygons())
        for (int i = 0; i < p.size(); ++i)
            sum += (p[i].x() * p[(i + 1) % p.size()].y() - p[(i + 1) % p.size()].x() * p[i].y()) / 2;
    return std::abs(sum);
}

TEST(ShapeTest, RotatedShapesAreCutByEachClipRectangle)
{
    QTransform rotation;
    rotation.translate(50, 50).rotate(45);
    const Shape diamond(QRectF(-10, -10, 20, 20), rotation);
    EXPECT_FALSE(diamond.isRectilinear());
    EXPECT_NEAR(area(diamond), 400, 0.01);
    // Two clip rectangles, each taking one half of the diamond.
    const Shape halves = diamond.clipped(QRegion(0, 0, 100, 50) + QRegion(10, 50, 80, 50));
    EXPECT_EQ(halves.polygons().size(), 2);
    EXPECT_NEAR(area(halves), 400, 0.1);
    const Shape top = diamond.clipped(QRegion(0, 0, 100, 50));
    EXPECT_NEAR(area(top), 200, 0.1);
    EXPECT_EQ(top.boundingRect(), QRect(35, 35, 30, 15));
    EXPECT_TRUE(diamond.clipped(QRegion(0, 0, 30, 30)).deepIsEmpty());
    // Texture coordinates follow the shape through the rotation.
    const QPointF corner = rotation.map(QPointF(-10, -10));
    EXPECT_NEAR(diamond.texCoordAt(corner).x(), 0, 1e-6);
    EXPECT_NEAR(diamond.texCoordAt(QPointF(50, 50)).y(), 0.5, 1e-6);
}

TEST(ShapeTest, EmptinessLooksAtThePolygonsAndMirrorsAreNotRectilinear)
{
    EXPECT_TRUE(Shape(QRectF(10, 10, 0, 5)).deepIsEmpty());
    EXPECT_TRUE(Shape(QRectF(0, 0, 10, 10), QTransform::fromScale(1, 0)).deepIsEmpty());
    EXPECT_FALSE(Shape(QRectF(0, 0, 1, 1)).deepIsEmpty());
    EXPECT_FALSE(Shape(QRectF(0, 0, 4, 4), QTransform::fromScale(-1, 1)).isRectilinear());
    Shape two(QRegion(0, 0, 10, 10) + QRegion(20, 0, 10, 10));
    two.removeHidden(QRegion(0, 0, 10, 10) + QRegion(20, 0, 9, 10));
    EXPECT_EQ(two.polygons().size(), 1);
    EXPECT_EQ(two.boundingRect(), QRect(20, 0, 10, 10));
}

TEST(GeometryTest, HolesCutWholePixelsAndDropOnlyCoveredFractions)
{
    Geometry g(Geometry::kColorRects);
    g.addRect(QRectF(0, 0, 10, 10));
    g.addRect(QRectF(20.5, 0, 5, 5));
    g.addRect(QRectF(40.5, 0, 5, 5));
    EXPECT_EQ(g.region(), QRegion(0, 0, 10, 10));
    EXPECT_EQ(g.fractionalRects().size(), 2);
    EXPECT_EQ(g.rect(), QRect(0, 0, 46, 10));
    g.setHolesRegion(QRegion(0, 0, 5, 10) + QRegion(20, 0, 6, 5) + QRegion(40, 0, 5, 5));
    EXPECT_EQ(g.region(), QRegion(5, 0, 5, 10));
    ASSERT_EQ(g.fractionalRects().size(), 1);
    EXPECT_EQ(g.fractionalRects()[0], QRectF(40.5, 0, 5, 5));
    EXPECT_FALSE(g.hasNoArea());
    g.setHolesRegion(QRegion(0, 0, 100, 100));
    EXPECT_TRUE(g.hasNoArea());
    EXPECT_TRUE(g.triangulate().isEmpty());
}

TEST(GeometryTest, TrianglesCarryTextureCoordinatesInsideTheInsets)
{
    Geometry g(Geometry::kTextureRects);
    g.setRegion(QRegion(10, 10, 20, 10));
    g.setTextureMapping(QRectF(10, 10, 20, 10), {0.25f, 0, 0.25f, 0.5f});
    const QVector<Vertex> v = g.triangulate();
    ASSERT_EQ(v.size(), 6);
    EXPECT_FLOAT_EQ(v[0].x, 10);
    EXPECT_FLOAT_EQ(v[0].u, 0.25f);
    EXPECT_FLOAT_EQ(v[2].x, 30);
    EXPECT_FLOAT_EQ(v[2].y, 20);
    EXPECT_FLOAT_EQ(v[2].u, 0.75f);
    EXPECT_FLOAT_EQ(v[2].v, 0.5f);

    Geometry indexed(Geometry::kIndexedTriangles);
    indexed.vertices() = {{0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}};
    indexed.setIndices({2, 1, 0, 7});
    const QVector<Vertex> expanded = indexed.triangulate();
    ASSERT_EQ(expanded.size(), 3); // the index past the end is dropped
    EXPECT_FLOAT_EQ(expanded[0].y, 1);
}

TEST(GeometryTest, LongChainsAreFreedWithoutRecursion)
{
    auto* head = new Geometry(Geometry::kColorRects);
    Geometry* tail = head;
    for (int i = 0; i < 200000; ++i) {
        tail->setNext(new Geometry(Geometry::kColorRects));
        tail = tail->next();
    }
    EXPECT_EQ(head->last(), tail);
    delete head;
}

TEST(GeometryTest, MergingNeedsGeometryOfTheSameKind)
{
    auto make = [](Geometry::Mode mode, const QRect& r) {
        auto* g = new Geometry(mode);
        g->setRegion(QRegion(r));
        g->setUploaded(0, 6);
        auto* item = new GeometryRenderItem(new ColorShaderUsage(Qt::red), g);
        item->computeRects(r, r);
        return item;
    };
    GeometryRenderItem* later = make(Geometry::kColorRects, QRect(10, 0, 5, 5));
    GeometryRenderItem* other = make(Geometry::kTextureRects, QRect(0, 0, 5, 5));
    EXPECT_FALSE(later->merge(other));
    EXPECT_EQ(later->mergeCount, 0u);
    delete other;
    GeometryRenderItem* earlier = make(Geometry::kColorRects, QRect(0, 0, 5, 5));
    ASSERT_TRUE(later->merge(earlier));
    EXPECT_FALSE(later->mGeometry->isUploaded());
    EXPECT_TRUE(later->mGeometry->next()->isUploaded());
    EXPECT_EQ(later->bounds, QRect(0, 0, 15, 5));
    delete later;

    LogCapture log;
    GeometryRenderItem empty(new ColorShaderUsage(Qt::red), nullptr);
    GeometryRenderItem* victim = make(Geometry::kColorRects, QRect(0, 0, 5, 5));
    EXPECT_FALSE(empty.merge(victim));
    ASSERT_EQ(log.records().size(), 1);
    EXPECT_EQ(log.records()[0].condition, "mGeometry");
    delete victim;
}

} // namespace
