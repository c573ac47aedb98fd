#pragma once

#include "OrbisUIFrameworkExport.h"

class DisplayView;

/// Makes and fills the views of a ListView's rows. Views are recycled: a view made for
/// one row is bound to other rows of the same kind as the list scrolls, so bindRow must
/// set everything that differs between rows.
class ORBIS_UI_EXPORT ListDelegate
{
public:
    static constexpr int kDefaultEstimatedRowHeight = 60;

    virtual ~ListDelegate();

    /// Rows of different kinds (section headers and items, say) never share views.
    virtual int rowKind(int row) const;
    /// A new view for rows of `kind`, made under `parent`.
    virtual DisplayView* createRow(int kind, DisplayView* parent) = 0;
    virtual void bindRow(DisplayView* view, int row) = 0;
    /// The view no longer shows `row` and waits to be bound again.
    virtual void unbindRow(DisplayView* view, int row);

    /// Heights. A list whose rows all have one height says so here, and keeps nothing per
    /// row. Otherwise each row's height comes from rowHeight, where 0 means that the
    /// bound view is measured (DisplayView::naturalSize at the list's width); rows not
    /// measured yet count as estimatedRowHeight.
    virtual int fixedRowHeight() const;
    virtual int rowHeight(int row) const;
    virtual int estimatedRowHeight() const;
};
