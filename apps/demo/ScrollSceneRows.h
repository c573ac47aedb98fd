#pragma once

#include <control/ListDelegate.h>
#include <control/ListModel.h>

// The benchmark scene's list: rows of 64 pixels, each a rounded square and two
// lines of text, in alternating colours.
class ScrollSceneRows : public ListModel, public ListDelegate
{
    Q_OBJECT

public:
    explicit ScrollSceneRows(int count) : mCount(count) {}

    int count() const override { return mCount; }
    int rowKind(int row) const override { return row % 2; }
    DisplayView* createRow(int kind, DisplayView* parent) override;
    void bindRow(DisplayView* view, int row) override;
    int fixedRowHeight() const override { return kRowHeight; }

    static constexpr int kRowHeight = 64;

private:
    int mCount;
};
