#include <AtlasAllocator.h>

#include <QRegion>
#include <gtest/gtest.h>
#include <random>

using namespace gfx;

namespace {

TEST(AtlasAllocatorTest, FillsRowsAndRefusesWhatDoesNotFit)
{
    AtlasAllocator atlas(QSize(64, 64));
    QRect out;
    EXPECT_FALSE(atlas.allocate(QSize(65, 1), out));
    EXPECT_FALSE(atlas.allocate(QSize(0, 5), out));
    QVector<QRect> placed;
    for (int i = 0; i < 16; ++i) {
        ASSERT_TRUE(atlas.allocate(QSize(16, 16), out)) << i;
        placed << out;
    }
    EXPECT_FALSE(atlas.allocate(QSize(1, 1), out));
    EXPECT_EQ(atlas.usedArea(), 64 * 64);
    // A freed place is found again, exactly.
    atlas.release(placed[5]);
    ASSERT_TRUE(atlas.allocate(QSize(16, 16), out));
    EXPECT_EQ(out, placed[5]);
}

TEST(AtlasAllocatorTest, EmptiedShelvesGiveTheirBandBackForOtherHeights)
{
    AtlasAllocator atlas(QSize(64, 64));
    QVector<QRect> small;
    QRect out;
    while (atlas.allocate(QSize(8, 8), out))
        small << out;
    ASSERT_EQ(small.size(), 64);
    // Two emptied neighbouring shelves make one band of 16 pixels.
    for (const QRect& r : qAsConst(small))
        if (r.y() == 8 || r.y() == 16)
            atlas.release(r);
    ASSERT_TRUE(atlas.allocate(QSize(64, 16), out));
    EXPECT_EQ(out, QRect(0, 8, 64, 16));
    for (const QRect& r : qAsConst(small))
        if (r.y() != 8 && r.y() != 16)
            atlas.release(r);
    atlas.release(out);
    EXPECT_TRUE(atlas.isEmpty());
    EXPECT_TRUE(atlas.allocate(QSize(64, 64), out));
}

TEST(AtlasAllocatorTest, RandomTrafficNeverOverlapsOrLeavesTheArea)
{
    std::mt19937 random(11);
    AtlasAllocator atlas(QSize(256, 256));
    QVector<QRect> live;
    int refused = 0;
    for (int step = 0; step < 4000; ++step) {
        if (!live.isEmpty() && random() % 3 == 0) {
            const int victim = int(random() % unsigned(live.size()));
            atlas.release(live.takeAt(victim));
            continue;
        }
        const QSize size(1 + int(random() % 60), 1 + int(random() % 60));
        QRect out;
        if (!atlas.allocate(size, out)) {
            ++refused;
            continue;
        }
        ASSERT_EQ(out.size(), size);
        ASSERT_TRUE(QRect(0, 0, 256, 256).contains(out));
        for (const QRect& other : qAsConst(live))
            ASSERT_FALSE(other.intersects(out)) << step;
        live << out;
    }
    EXPECT_GT(refused, 0);
    qint64 area = 0;
    for (const QRect& r : qAsConst(live))
        area += qint64(r.width()) * r.height();
    EXPECT_EQ(atlas.usedArea(), area);
    for (const QRect& r : qAsConst(live))
        atlas.release(r);
    EXPECT_TRUE(atlas.isEmpty());
}

} // namespace
