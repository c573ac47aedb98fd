#include "ListDelegate.h"

ListDelegate::~ListDelegate() = default;

int ListDelegate::rowKind(int) const
{
    return 0;
}

void ListDelegate::unbindRow(DisplayView*, int) {}

int ListDelegate::fixedRowHeight() const
{
    return 0;
}

int ListDelegate::rowHeight(int) const
{
    return 0;
}

int ListDelegate::estimatedRowHeight() const
{
    return kDefaultEstimatedRowHeight;
}
