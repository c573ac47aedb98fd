#include <CoverageMaskCache.h>
#include <SharedTextureManager.h>
#include <TextureKeyData.h>

#include <QPainterPath>
#include <gtest/gtest.h>

using namespace gfx;

namespace {

QPainterPath circle(const QPointF& at, qreal diameter)
{
    QPainterPath path;
    path.addEllipse(QRectF(at, QSizeF(diameter, diameter)));
    return path;
}

CoverageMaskCache::Mask maskOf(const QPainterPath& outline)
{
    return CoverageMaskCache::instance()->mask(outline, outline.boundingRect().toAlignedRect());
}

bool sameSlot(const CoverageMaskCache::Mask& a, const CoverageMaskCache::Mask& b)
{
    return a.key == b.key && a.insets.left == b.insets.left && a.insets.top == b.insets.top;
}

class CoverageMaskCacheTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        Singleton<CoverageMaskCache>::reset();
        Singleton<SharedTextureManager>::reset();
    }
};

TEST_F(CoverageMaskCacheTest, OutlinesMovedByWholePixelsShareAMask)
{
    const CoverageMaskCache::Mask first = maskOf(circle(QPointF(10.25, 4.5), 30));
    EXPECT_EQ(first.key.data()->type(), TextureKeyData::kShared);
    EXPECT_TRUE(sameSlot(maskOf(circle(QPointF(210.25, 99.5), 30)), first));
    // A quarter pixel further, or another size, covers other pixels.
    EXPECT_FALSE(sameSlot(maskOf(circle(QPointF(10.5, 4.5), 30)), first));
    EXPECT_FALSE(sameSlot(maskOf(circle(QPointF(10.25, 4.5), 31)), first));
    QPainterPath evenOdd = circle(QPointF(10.25, 4.5), 30);
    evenOdd.setFillRule(Qt::WindingFill);
    EXPECT_FALSE(sameSlot(maskOf(evenOdd), first));
    EXPECT_EQ(CoverageMaskCache::instance()->entryCount(), 4);
}

TEST_F(CoverageMaskCacheTest, FullPagesMakeRoomAndMasksStillDraw)
{
    // One of these fills a page.
    const qreal large = CoverageMaskCache::kPageSize * 0.6;
    for (int i = 0; i < CoverageMaskCache::kMaxPages; ++i)
        EXPECT_EQ(maskOf(circle(QPointF(i * 0.25, 0), large)).key.data()->type(), TextureKeyData::kShared);
    EXPECT_EQ(CoverageMaskCache::instance()->entryCount(), CoverageMaskCache::kMaxPages);
    // No room: drawn from a texture of its own, and the oldest mask gives way for
    // the next frame.
    const QPainterPath third = circle(QPointF(0.75, 0), large);
    const CoverageMaskCache::Mask alone = maskOf(third);
    EXPECT_NE(alone.key.data()->type(), TextureKeyData::kShared);
    EXPECT_EQ(alone.key.size(), third.boundingRect().toAlignedRect().size());
    EXPECT_EQ(CoverageMaskCache::instance()->entryCount(), CoverageMaskCache::kMaxPages - 1);
    // Larger than a page: never in the atlas.
    const qreal huge = CoverageMaskCache::kPageSize + 10;
    EXPECT_NE(maskOf(circle(QPointF(0, 0), huge)).key.data()->type(), TextureKeyData::kShared);
}

} // namespace
