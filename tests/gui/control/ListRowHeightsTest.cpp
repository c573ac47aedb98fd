#include "control/ListRowHeights.h"

#include <QRandomGenerator>
#include <gtest/gtest.h>

namespace {

// The answers a plain list of heights gives, for comparison.
struct Naive
{
    QVector<int> heights;
    int top(int row) const
    {
        int sum = 0;
        for (int i = 0; i < row; ++i)
            sum += heights[i];
        return sum;
    }
    int rowAt(int y) const
    {
        if (heights.isEmpty())
            return -1;
        int sum = 0;
        for (int i = 0; i < heights.size(); ++i) {
            sum += heights[i];
            if (y < sum)
                return i;
        }
        return heights.size() - 1;
    }
};

void expectSame(const ListRowHeights& heights, const Naive& naive)
{
    ASSERT_EQ(heights.count(), naive.heights.size());
    ASSERT_EQ(heights.total(), naive.top(naive.heights.size()));
    for (int row = 0; row <= naive.heights.size(); ++row)
        ASSERT_EQ(heights.top(row), naive.top(row)) << "row " << row;
    for (int y = -3; y < heights.total() + 3; ++y)
        ASSERT_EQ(heights.rowAt(y), naive.rowAt(y)) << "y " << y;
}

} // namespace

TEST(ListRowHeights, AgreesWithSummingThroughChangesInsertsAndRemovals)
{
    QRandomGenerator random(21);
    Naive naive;
    for (int i = 0; i < 37; ++i)
        naive.heights.append(random.bounded(0, 50)); // zero heights included
    ListRowHeights heights;
    heights.reset(naive.heights);
    expectSame(heights, naive);

    for (int step = 0; step < 40; ++step) {
        const int row = random.bounded(naive.heights.size());
        switch (step % 3) {
        case 0: {
            const int height = random.bounded(0, 80);
            heights.setHeight(row, height);
            naive.heights[row] = height;
            break;
        }
        case 1: {
            const QVector<int> inserted{random.bounded(1, 30), 0, random.bounded(1, 30)};
            heights.insert(row, inserted);
            for (int i = 0; i < inserted.size(); ++i)
                naive.heights.insert(row + i, inserted[i]);
            break;
        }
        default: {
            const int count = std::min(2, int(naive.heights.size()) - row);
            heights.remove(row, count);
            naive.heights.remove(row, count);
            break;
        }
        }
        expectSame(heights, naive);
    }
}

TEST(ListRowHeights, OneHeightForAllKeepsNothingPerRowUntilARowDiffers)
{
    ListRowHeights heights;
    heights.reset(100000, 60);
    EXPECT_TRUE(heights.isUniform());
    EXPECT_EQ(heights.total(), 6000000);
    EXPECT_EQ(heights.top(99999), 5999940);
    EXPECT_EQ(heights.rowAt(5999999), 99999);
    EXPECT_EQ(heights.rowAt(6000100), 99999);
    EXPECT_EQ(heights.rowAt(119), 1);
    heights.insert(5, {60, 60});
    heights.remove(0, 2);
    EXPECT_TRUE(heights.isUniform());
    EXPECT_EQ(heights.count(), 100000);

    heights.setHeight(3, -5); // counts as 0
    EXPECT_FALSE(heights.isUniform());
    EXPECT_EQ(heights.height(3), 0);
    EXPECT_EQ(heights.top(4), 180);
    EXPECT_EQ(heights.rowAt(180), 4);
    EXPECT_EQ(heights.total(), 6000000 - 60);

    heights.reset(0, 60);
    EXPECT_EQ(heights.rowAt(0), -1);
    EXPECT_EQ(heights.height(0), 0);
}
