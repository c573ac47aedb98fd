#include <ColorShaderUsage.h>
#include <CustomRenderItem.h>
#include <DisplayList.h>
#include <DisplayListSliceRenderItem.h>
#include <GeometryRenderItem.h>
#include <IndirectShaderUsage.h>
#include <LogCapture.h>
#include <RenderItemBuilder.h>
#include <RenderState.h>
#include <Renderer.h>
#include <TextureCache.h>
#include <TextureShaderUsage.h>

#include <gtest/gtest.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

TextureKey imageKey(int w = 8, int h = 8)
{
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    return TextureCache::instance()->addOrLookup(image);
}

int liveItems(const QVector<RenderItem*>& items)
{
    return int(std::count_if(items.begin(), items.end(), [](RenderItem* i) { return i != nullptr; }));
}

GeometryRenderItem* geometryAt(const QVector<RenderItem*>& items, int i)
{
    return static_cast<GeometryRenderItem*>(items[i]);
}

class OptimizerTest : public ::testing::Test
{
protected:
    ~OptimizerTest() override { qDeleteAll(mItems); }
    QVector<RenderItem*>& take()
    {
        mItems = mBuilder.takeItems();
        return mItems;
    }

    RenderItemBuilder mBuilder;
    QVector<RenderItem*> mItems;
};

TEST_F(OptimizerTest, OpaqueItemsHideAndDeleteWhatLiesBeneath)
{
    mBuilder.drawColoredRect(QRect(10, 10, 20, 20), Qt::blue);            // wholly hidden
    mBuilder.drawColoredRect(QRect(0, 0, 100, 50), QColor(0, 0, 0, 128)); // partly hidden
    mBuilder.drawColoredRect(QRect(0, 0, 100, 40), Qt::green);
    auto& items = take();
    const QRegion covered = optimize(items, false);
    EXPECT_EQ(items[0], nullptr);
    ASSERT_NE(items[1], nullptr);
    EXPECT_EQ(geometryAt(items, 1)->mGeometry->region(), QRegion(0, 40, 100, 10));
    EXPECT_EQ(covered, QRegion(0, 0, 100, 40));
    EXPECT_EQ(items.size(), 3);
}

TEST_F(OptimizerTest, TranslucentItemsHideNothing)
{
    mBuilder.drawColoredRect(QRect(10, 10, 20, 20), Qt::blue);
    mBuilder.drawColoredRect(QRect(0, 0, 100, 40), QColor(0, 255, 0, 254));
    mBuilder.drawTexturedRect(QRect(0, 0, 100, 40), imageKey(), true);
    auto& items = take();
    optimize(items, false);
    EXPECT_EQ(liveItems(items), 3);
    EXPECT_EQ(geometryAt(items, 0)->mGeometry->region(), QRegion(10, 10, 20, 20));
}

TEST_F(OptimizerTest, RotatedItemsPromiseNoOpaqueArea)
{
    QMatrix4x4 rotation;
    rotation.rotate(45, 0, 0, 1);
    mBuilder.drawColoredRect(QRect(10, 10, 5, 5), Qt::blue);
    mBuilder.drawTexturedShape(Shape(QRectF(0, 0, 40, 40)), imageKey(), rotation, false);
    auto& items = take();
    EXPECT_TRUE(items[1]->opaqueRect.isNull());
    EXPECT_FALSE(items[1]->bounds.isEmpty());
    optimize(items, false);
    EXPECT_EQ(liveItems(items), 2);

    QMatrix4x4 quarterTurn;
    quarterTurn.rotate(90, 0, 0, 1);
    RenderItem item(RenderItem::kSkipped, new ColorShaderUsage(Qt::red));
    item.shaderUsage->setMatrix(quarterTurn);
    item.computeRects(QRect(0, 0, 10, 20), QRect(0, 0, 10, 20));
    EXPECT_EQ(item.opaqueRect, QRect(-20, 0, 20, 10));
}

TEST_F(OptimizerTest, EqualNeighboursMergeUnlessADifferentItemOverlapsBetween)
{
    // Blending sets the opaque blue apart; colours alone do not.
    const QColor red(255, 0, 0, 128);
    const QColor green(0, 255, 0, 64);
    mBuilder.drawColoredRect(QRect(0, 0, 10, 10), red);
    mBuilder.drawColoredRect(QRect(5, 0, 10, 10), Qt::blue);
    mBuilder.drawColoredRect(QRect(40, 0, 10, 10), green);
    auto& blocked = take();
    optimize(blocked, false);
    EXPECT_EQ(liveItems(blocked), 3);
    qDeleteAll(blocked);

    mBuilder.drawColoredRect(QRect(0, 0, 10, 10), red);
    mBuilder.drawColoredRect(QRect(20, 0, 10, 10), Qt::blue);
    mBuilder.drawColoredRect(QRect(40, 0, 10, 10), green);
    auto& items = take();
    optimize(items, false);
    EXPECT_EQ(items[0], nullptr);
    auto* merged = geometryAt(items, 2);
    EXPECT_EQ(merged->mergeCount, 1u);
    EXPECT_EQ(merged->bounds, QRect(0, 0, 50, 10));
    // The earlier item's geometry is drawn first.
    ASSERT_NE(merged->mGeometry->next(), nullptr);
    EXPECT_EQ(merged->mGeometry->region(), QRegion(0, 0, 10, 10));
    EXPECT_EQ(merged->mGeometry->next()->region(), QRegion(40, 0, 10, 10));
    EXPECT_EQ(merged->mGeometry->rect(), QRect(0, 0, 50, 10));
    // Each keeps its colour in its vertices.
    const Vertex first = merged->mGeometry->triangulate().value(0);
    const Vertex second = merged->mGeometry->next()->triangulate().value(0);
    EXPECT_EQ(qRgba(first.r, first.g, first.b, first.a), red.rgba());
    EXPECT_EQ(qRgba(second.r, second.g, second.b, second.a), green.rgba());
}

TEST_F(OptimizerTest, AnItemAbsorbsAtMostFiftyOneOthers)
{
    for (int i = 0; i < 54; ++i)
        mBuilder.drawColoredRect(QRect(i * 20, 0, 10, 10), QColor(255, 0, 0, 128));
    auto& items = take();
    optimize(items, false);
    EXPECT_EQ(liveItems(items), 2);
    ASSERT_NE(items[1], nullptr);
    EXPECT_EQ(geometryAt(items, 53)->mergeCount, 51u);
    EXPECT_EQ(geometryAt(items, 1)->mergeCount, 1u);
}

TEST_F(OptimizerTest, LargeTranslucentTexturesOverASolidFillBecomeOpaque)
{
    const TextureKey key = imageKey();
    mBuilder.drawColoredRect(QRect(0, 0, 200, 200), Qt::white);
    mBuilder.drawTexturedRect(QRect(10, 10, 63, 64), key, true);
    mBuilder.drawTexturedRect(QRect(100, 100, 64, 64), key, true);
    auto& items = take();
    optimize(items, true);
    const auto* small = dynamic_cast<TextureShaderUsage*>(items[1]->shaderUsage.get());
    const auto* large = dynamic_cast<TextureShaderUsage*>(items[2]->shaderUsage.get());
    ASSERT_TRUE(small && large);
    EXPECT_FALSE(small->isOpacified());
    EXPECT_TRUE(large->isOpacified());
    EXPECT_FALSE(large->needsBlending());
    EXPECT_EQ(large->color(), QColor(Qt::white));
    // Now opaque, the texture cuts its area out of the fill below.
    EXPECT_EQ(geometryAt(items, 0)->mGeometry->region(), QRegion(0, 0, 200, 200) - QRegion(100, 100, 64, 64));
}

TEST_F(OptimizerTest, SubstitutionNeedsTheFirstOverlappedItemToBeASolidContainingFill)
{
    const TextureKey key = imageKey();
    mBuilder.drawColoredRect(QRect(0, 0, 200, 200), Qt::white);
    mBuilder.drawColoredRect(QRect(0, 0, 70, 20), Qt::black); // overlaps, does not contain
    mBuilder.drawTexturedRect(QRect(0, 0, 64, 64), key, true);
    mBuilder.drawColoredRect(QRect(100, 0, 100, 100), QColor(0, 0, 0, 128)); // translucent
    mBuilder.drawTexturedRect(QRect(110, 10, 64, 64), imageKey(), true);
    auto& items = take();
    optimize(items, true);
    EXPECT_FALSE(static_cast<TextureShaderUsage*>(items[2]->shaderUsage.get())->isOpacified());
    EXPECT_FALSE(static_cast<TextureShaderUsage*>(items[4]->shaderUsage.get())->isOpacified());
    qDeleteAll(items);

    mBuilder.drawColoredRect(QRect(0, 0, 200, 200), Qt::white);
    mBuilder.drawTexturedRect(QRect(0, 0, 64, 64), key, true);
    auto& disallowed = take();
    optimize(disallowed, false);
    EXPECT_FALSE(static_cast<TextureShaderUsage*>(disallowed[1]->shaderUsage.get())->isOpacified());
}

TEST_F(OptimizerTest, VertexModesAndSkippedItemsAreNeverCulled)
{
    auto* strip = new Geometry(Geometry::kTriangleStrip);
    strip->vertices() = {{0, 0, 0, 0}, {10, 0, 0, 0}, {0, 10, 0, 0}};
    strip->setRect(QRect(0, 0, 10, 10));
    mBuilder.drawCustom(new ColorShaderUsage(Qt::red), strip, CustomShaderKey());
    mBuilder.drawColoredRect(QRect(0, 0, 10, 10), Qt::blue);
    auto& items = take();
    auto* skipped = new RenderItem(RenderItem::kSkipped, new ColorShaderUsage(Qt::green));
    skipped->computeRects(QRect(0, 0, 10, 10), QRect(0, 0, 10, 10));
    items.append(skipped);
    optimize(items, false);
    EXPECT_NE(items[0], nullptr);
    EXPECT_NE(items[1], nullptr);
}

TEST(DisplayListTest, OptimisedListsDrawMergedItemsAsOneSlice)
{
    ScopedGLRecorder driver;
    RenderItemBuilder builder;
    for (int i = 0; i < 3; ++i)
        builder.drawColoredRect(QRect(i * 20, 0, 10, 10), Qt::red);
    auto list = builder.createDisplayList(false);
    list->optimize();
    list->optimize();
    ASSERT_EQ(list->items().size(), 3);
    auto* slice = dynamic_cast<DisplayListSliceRenderItem*>(list->items()[2]);
    ASSERT_NE(slice, nullptr);
    ASSERT_EQ(slice->ranges.size(), 1);
    EXPECT_EQ(slice->ranges[0].count, 18);
    EXPECT_EQ(list->coveredRegion(),
              QRegion(QRect(0, 0, 10, 10)) + QRect(20, 0, 10, 10) + QRect(40, 0, 10, 10));
    LogCapture log;
    list->render(RenderState(QSize(100, 100)));
    EXPECT_EQ(driver.count("glDrawArrays"), 1);
    EXPECT_TRUE(log.records().isEmpty());
}

TEST(DisplayListTest, EmptySlotsIssueNoGLCallAndFaultsAreReported)
{
    ScopedGLRecorder driver;
    QVector<RenderItem*> empty{nullptr, nullptr};
    DisplayList emptyList(empty, false);
    emptyList.optimize();
    emptyList.render(RenderState(QSize(100, 100)));
    EXPECT_EQ(driver.totalCalls(), 0);

    auto* odd = new RenderItem(9, nullptr);
    odd->computeRects(QRect(0, 0, 10, 10), QRect());
    QVector<RenderItem*> items{odd};
    DisplayList list(items, false);
    LogCapture log;
    list.render(RenderState(QSize(100, 100)));
    ASSERT_EQ(log.records().size(), 2);
    EXPECT_EQ(log.records()[0].level, LogRecord::Error);
    EXPECT_EQ(log.records()[0].message, "Attempting to render unoptimized DisplayList");
    EXPECT_EQ(log.records()[1].message, "Unknown render item: 9");
    EXPECT_EQ(log.records()[1].file, "graphics/Renderer");

    log.clear();
    IndirectShaderUsage indirect(false);
    EXPECT_EQ(indirect.shader(RenderState()), nullptr);
    EXPECT_EQ(log.assertions(), QStringList({"IndirectShaderUsage::shader should never be called"}));
}

} // namespace
