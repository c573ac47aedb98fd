#include "ListRowHeights.h"

#include <algorithm>

void ListRowHeights::reset(int count, int height)
{
    mCount = std::max(0, count);
    mUniform = std::max(0, height);
    mTotal = mCount * mUniform;
    mHeights.clear();
    mTree.clear();
}

void ListRowHeights::reset(const QVector<int>& heights)
{
    mCount = heights.size();
    mUniform = 0;
    mHeights = heights;
    for (int& height : mHeights)
        height = std::max(0, height);
    build();
}

int ListRowHeights::height(int row) const
{
    if (row < 0 || row >= mCount)
        return 0;
    return isUniform() ? mUniform : mHeights[row];
}

void ListRowHeights::setHeight(int row, int height)
{
    height = std::max(0, height);
    if (row < 0 || row >= mCount || this->height(row) == height)
        return;
    materialise();
    const int delta = height - mHeights[row];
    mHeights[row] = height;
    mTotal += delta;
    for (int i = row + 1; i <= mCount; i += i & -i)
        mTree[i] += delta;
}

int ListRowHeights::top(int row) const
{
    row = std::clamp(row, 0, mCount);
    if (isUniform())
        return row * mUniform;
    int sum = 0;
    for (int i = row; i > 0; i -= i & -i)
        sum += mTree[i];
    return sum;
}

int ListRowHeights::rowAt(int y) const
{
    if (mCount == 0)
        return -1;
    if (y <= 0)
        return 0;
    if (isUniform())
        return mUniform > 0 ? std::min(y / mUniform, mCount - 1) : mCount - 1;
    // The most rows whose heights add up to no more than y: the row after them holds y.
    int step = 1;
    while (step * 2 <= mCount)
        step *= 2;
    int index = 0;
    for (int remaining = y; step > 0; step /= 2) {
        const int next = index + step;
        if (next <= mCount && mTree[next] <= remaining) {
            index = next;
            remaining -= mTree[next];
        }
    }
    return std::min(index, mCount - 1);
}

void ListRowHeights::insert(int first, const QVector<int>& heights)
{
    first = std::clamp(first, 0, mCount);
    if (heights.isEmpty())
        return;
    if (isUniform() && std::all_of(heights.begin(), heights.end(), [this](int h) { return h == mUniform; })) {
        mCount += heights.size();
        mTotal = mCount * mUniform;
        return;
    }
    materialise();
    QVector<int> clamped = heights;
    for (int& height : clamped)
        height = std::max(0, height);
    mHeights.insert(first, clamped.size(), 0);
    std::copy(clamped.begin(), clamped.end(), mHeights.begin() + first);
    mCount = mHeights.size();
    build();
}

void ListRowHeights::remove(int first, int count)
{
    first = std::clamp(first, 0, mCount);
    count = std::clamp(count, 0, mCount - first);
    if (count == 0)
        return;
    if (isUniform()) {
        mCount -= count;
        mTotal = mCount * mUniform;
        return;
    }
    mHeights.remove(first, count);
    mCount = mHeights.size();
    build();
}

void ListRowHeights::materialise()
{
    if (!isUniform())
        return;
    mHeights.fill(mUniform, mCount);
    build();
}

void ListRowHeights::build()
{
    mTree.fill(0, mCount + 1);
    mTotal = 0;
    for (int i = 1; i <= mCount; ++i) {
        mTree[i] += mHeights[i - 1];
        mTotal += mHeights[i - 1];
        const int parent = i + (i & -i);
        if (parent <= mCount)
            mTree[parent] += mTree[i];
    }
}
