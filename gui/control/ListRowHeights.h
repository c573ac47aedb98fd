#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QVector>

/// The heights and tops of a list's rows. A Fenwick tree over the heights makes the top
/// of a row, the row at a position and a change of one height each cost O(log n). Rows
/// that all share one height keep no per-row storage until one of them differs.
class ORBIS_UI_EXPORT ListRowHeights
{
public:
    /// `count` rows of `height` each.
    void reset(int count, int height);
    void reset(const QVector<int>& heights);

    int count() const { return mCount; }
    int height(int row) const;
    /// A negative height counts as 0.
    void setHeight(int row, int height);
    /// The sum of the heights of the rows before `row`; top(count()) is the total.
    int top(int row) const;
    int total() const { return mTotal; }
    /// The row whose span holds `y`, clamped to the first and last row; -1 without rows.
    int rowAt(int y) const;

    void insert(int first, const QVector<int>& heights);
    void remove(int first, int count);

    bool isUniform() const { return mHeights.isEmpty(); }

private:
    void materialise();
    void build();

    int mCount = 0;
    int mUniform = 0;
    int mTotal = 0;
    QVector<int> mHeights; // empty while every row has mUniform
    QVector<int> mTree;    // 1-based partial sums
};
