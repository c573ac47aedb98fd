#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ListModel.h"
#include "ListRowHeights.h"
#include "ScrollableView.h"

#include <QHash>
#include <QMap>
#include <QPointer>

class ListDelegate;

/// A vertical list of rows for long content: a model says how many rows there are, a
/// delegate makes and binds the views that show them. Only the rows in view, and
/// those within the overscan margin beyond either end, have views; a row that leaves
/// hands its view to one that arrives, so a list of any length scrolls with a fixed
/// number of views. Rows have one fixed height, a height each, or the height their
/// bound view measures.
///
/// Options: SwipeRows lets a drag that runs mostly across the list slide the row under
/// the finger sideways (rowSwiped reports how far when it is let go; it then returns,
/// or with a reveal width stays open past half of it until the next touch or tap);
/// StickyHeaders keeps the header row of the section at the top pinned there until the
/// next header pushes it out.
///
/// The content must stay within DisplayView::kMaxCoordinate pixels in height.
class ORBIS_UI_EXPORT ListView : public ScrollableView
{
    Q_OBJECT

public:
    enum ListOption
    {
        SwipeRows = 0x1,
        StickyHeaders = 0x2
    };

    explicit ListView(DisplayView* parent, const char* name = "ListView");
    ~ListView() override;

    /// Neither is owned; both must outlive their use by the list.
    void setModel(ListModel* model);
    ListModel* model() const { return mModel; }
    void setDelegate(ListDelegate* delegate);
    ListDelegate* delegate() const { return mDelegate; }

    void setListOption(ListOption option, bool on);
    bool listOption(ListOption option) const { return mListOptions & option; }
    /// Pixels beyond each end of the visible area whose rows are kept bound; negative:
    /// a quarter of the list's height (the default).
    void setOverscan(int pixels);
    void setSwipeRevealWidth(int pixels);

    int rowCount() const { return mHeights.count(); }
    int rowTop(int row) const { return mHeights.top(row); }
    int rowHeight(int row) const { return mHeights.height(row); }
    /// The row at a point of the list (its own coordinates); -1 where there is none.
    int rowAt(QPoint point) const;
    /// The view bound to a row, or null when the row has none now.
    DisplayView* viewForRow(int row) const { return mBound.value(row); }
    /// The row whose view is or holds `view`; -1 for any other view.
    int rowOfView(DisplayView* view) const;
    QList<int> boundRows() const { return mBound.keys(); }
    /// Views the delegate made, bound or waiting for reuse.
    int createdViewCount() const { return mKinds.size(); }
    DisplayView* rowContainer() const { return mRows; }
    /// Scrolls so that the row's top meets the top of the list (or the bottom of a
    /// pinned header), as far as the content allows; animated when duration is not 0.
    void scrollToRow(int row, double duration);
    int swipedRow() const { return mSwipeRow; }
    void closeSwipedRow(bool animated);

    void tick() override;
    void resized() override;
    void touched(int touch, QPoint point) override;
    void dragged(int touch, QSize delta) override;
    void released(int touch) override;
    void touchCanceled(int touch) override;

public slots:
    void wasScrolled() override;

signals:
    void rowTapped(ListView* list, int row);
    void rowSwiped(ListView* list, int row, int offset);

private slots:
    void modelReset();
    void modelDestroyed(QObject* model);
    void rowsInserted(ListModel* model, int first, int count);
    void rowsRemoved(ListModel* model, int first, int count);
    void rowsChanged(ListModel* model, int first, int count);
    void rowViewTapped(DisplayView* view);

private:
    enum class DragMode
    {
        Undecided,
        Scrolling,
        Swiping
    };

    /// Rows and views (ListView.cpp).
    void rebuildHeights();
    void rebuildSections();
    int heightOf(int row) const;
    void layoutRows();
    void layoutPass();
    int overscan() const;
    int stickyHeaderRow(int scrollY) const;
    int pinnedTop(int header, int scrollY) const;
    DisplayView* obtainView(int kind, QList<QPair<DisplayView*, int>>& leaving);
    void bind(DisplayView* view, int row);
    /// Puts a newly bound row's view between the views of its neighbouring rows.
    void keepPaintOrder(DisplayView* view, int row);
    int measure(DisplayView* view) const;
    void retire(DisplayView* view, int row);
    void dropAllViews();
    void unbindAll();
    void placeRow(DisplayView* view, int row, int scrollY, int header);
    void keepAnchor(int anchor, int anchorTop);
    void shiftScroll(int delta);
    /// Rows from `first` on moved by `count` (negative: removed); the views follow.
    void renumberRows(int first, int count);

    /// Swiping (ListViewSwipe.cpp).
    void decideDragMode(int touch);
    void placeSwipedRow();
    void endSwipe(bool report);

    QPointer<ListModel> mModel;
    ListDelegate* mDelegate = nullptr;
    /// The delegate as an object, when it is one: a model that is its own delegate
    /// is half gone by the time it says it is destroyed.
    QObject* mDelegateObject = nullptr;
    DisplayView* mRows;
    ListRowHeights mHeights;
    QVector<int> mSectionStarts;
    quint32 mListOptions = 0;
    int mOverscan = -1;
    /// Bound rows: the range in view plus a pinned header.
    QMap<int, DisplayView*> mBound;
    /// Hidden views waiting for a row, per kind, and the kind of every view made.
    QHash<int, QVector<DisplayView*>> mSpare;
    QHash<DisplayView*, int> mKinds;
    bool mInLayout = false;
    bool mLayoutPending = false;

    DragMode mDragMode = DragMode::Undecided;
    QSize mPendingDrag{0, 0};
    int mSwipeRow = -1;
    InterpolatedValue mSwipeOffset;
    int mSwipeRevealWidth = 0;
};
