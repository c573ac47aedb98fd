#include "ListView.h"

#include "ListDelegate.h"
#include "ListModel.h"
#include "Logger.h"

#include <algorithm>
#include <cmath>
#include <iterator>

static const char* const kLogSource = "../../../gui/control/ListView";

// Measured heights and a scroll kept on its anchor may each call for one more pass.
static const int kMaxLayoutPasses = 4;

ListView::ListView(DisplayView* parent, const char* name)
    : ScrollableView(parent, name), mRows(new DisplayView(this, "rows"))
{
    // A list scrolls along its length only, and shows its bar whenever it is longer
    // than itself.
    setOption(AxesFollowContent, false);
    setOption(HorizontalScrolling, false);
    setContent(mRows);
}

ListView::~ListView() = default;

void ListView::setModel(ListModel* model)
{
    if (model == mModel)
        return;
    if (mModel)
        disconnect(mModel, nullptr, this, nullptr);
    mModel = model;
    if (model) {
        connect(model, SIGNAL(modelReset(ListModel*)), this, SLOT(modelReset()));
        connect(model, SIGNAL(rowsInserted(ListModel*, int, int)), this,
                SLOT(rowsInserted(ListModel*, int, int)));
        connect(model, SIGNAL(rowsRemoved(ListModel*, int, int)), this,
                SLOT(rowsRemoved(ListModel*, int, int)));
        connect(model, SIGNAL(rowsChanged(ListModel*, int, int)), this,
                SLOT(rowsChanged(ListModel*, int, int)));
        connect(model, SIGNAL(destroyed(QObject*)), this, SLOT(modelDestroyed(QObject*)));
    }
    modelReset();
}

void ListView::setDelegate(ListDelegate* delegate)
{
    if (delegate == mDelegate)
        return;
    dropAllViews();
    mDelegate = delegate;
    mDelegateObject = dynamic_cast<QObject*>(delegate);
    modelReset();
}

void ListView::modelDestroyed(QObject* model)
{
    // Its rows are not handed back to a delegate that is going with it.
    if (model == mDelegateObject) {
        mDelegate = nullptr;
        mDelegateObject = nullptr;
    }
    modelReset();
}

void ListView::setListOption(ListOption option, bool on)
{
    mListOptions = on ? (mListOptions | option) : (mListOptions & ~quint32(option));
    if (option == SwipeRows && !on)
        closeSwipedRow(false);
    layoutRows();
}

void ListView::setOverscan(int pixels)
{
    mOverscan = pixels;
    layoutRows();
}

void ListView::setSwipeRevealWidth(int pixels)
{
    mSwipeRevealWidth = std::max(0, pixels);
}

int ListView::overscan() const
{
    return mOverscan >= 0 ? mOverscan : height() / 4;
}

// Queries

int ListView::rowAt(QPoint point) const
{
    if (!QRect(0, 0, width(), height()).contains(point) || mHeights.count() == 0)
        return -1;
    const int scrollY = contentOffset().y();
    const int header = stickyHeaderRow(scrollY);
    if (header >= 0) {
        const int top = pinnedTop(header, scrollY) - scrollY;
        if (point.y() >= top && point.y() < top + mHeights.height(header))
            return header;
    }
    const int y = point.y() + scrollY;
    return y >= 0 && y < mHeights.total() ? mHeights.rowAt(y) : -1;
}

int ListView::rowOfView(DisplayView* view) const
{
    while (view && view->parentView() != mRows)
        view = view->parentView();
    for (auto it = mBound.cbegin(); view && it != mBound.cend(); ++it) {
        if (it.value() == view)
            return it.key();
    }
    return -1;
}

void ListView::scrollToRow(int row, double duration)
{
    if (row < 0 || row >= mHeights.count())
        return;
    int target = mHeights.top(row);
    const int header = stickyHeaderRow(target);
    if (header >= 0 && header != row)
        target -= mHeights.height(header);
    target = std::clamp(target, 0, int(scrollMax().y()));
    scroll(QPointF(0, target - contentOffset().y()), duration);
}

// Model changes

int ListView::heightOf(int row) const
{
    const int height = mDelegate->rowHeight(row);
    return height > 0 ? height : mDelegate->estimatedRowHeight();
}

void ListView::rebuildHeights()
{
    const int count = mModel && mDelegate ? std::max(0, mModel->count()) : 0;
    const int fixed = mDelegate ? mDelegate->fixedRowHeight() : 0;
    if (fixed > 0 || count == 0) {
        mHeights.reset(count, fixed);
        return;
    }
    QVector<int> heights(count);
    for (int row = 0; row < count; ++row)
        heights[row] = heightOf(row);
    mHeights.reset(heights);
}

void ListView::rebuildSections()
{
    mSectionStarts.clear();
    if (!mModel)
        return;
    const int sections = mModel->sectionCount();
    for (int section = 0; section < sections; ++section) {
        const int start = mModel->sectionStart(section);
        const int previous = mSectionStarts.isEmpty() ? -1 : mSectionStarts.last();
        if (start <= previous || start >= mHeights.count()) {
            Logger::logAssert("start > previous && start < count",
                              QStringLiteral("Section %1 starts out of order at row %2 View: %3")
                                  .arg(section)
                                  .arg(start)
                                  .arg(viewPath()),
                              kLogSource, __LINE__);
            continue;
        }
        mSectionStarts.append(start);
    }
}

void ListView::modelReset()
{
    closeSwipedRow(false);
    unbindAll();
    rebuildHeights();
    rebuildSections();
    layoutRows();
}

void ListView::rowsInserted(ListModel* model, int first, int count)
{
    if (model != mModel || !mDelegate || count <= 0 || first < 0 || first > mHeights.count())
        return;
    const int scrollY = contentOffset().y();
    int anchor = scrollY > 0 ? mHeights.rowAt(scrollY) : -1;
    const int anchorTop = mHeights.top(anchor);
    const int fixed = mDelegate->fixedRowHeight();
    QVector<int> heights(count);
    for (int i = 0; i < count; ++i)
        heights[i] = fixed > 0 ? fixed : heightOf(first + i);
    mHeights.insert(first, heights);
    renumberRows(first, count);
    rebuildSections();
    if (anchor >= first)
        anchor += count;
    mRows->resizeTo(width(), mHeights.total());
    if (anchor >= 0)
        keepAnchor(anchor, anchorTop);
    layoutRows();
}

void ListView::rowsRemoved(ListModel* model, int first, int count)
{
    if (model != mModel || count <= 0 || first < 0 || first >= mHeights.count())
        return;
    count = std::min(count, mHeights.count() - first);
    const int scrollY = contentOffset().y();
    int anchor = scrollY > 0 ? mHeights.rowAt(scrollY) : -1;
    const int anchorTop = mHeights.top(anchor);
    if (anchor >= first + count)
        anchor -= count;
    else if (anchor >= first)
        anchor = first; // the row after the removed ones takes the place of the one in view
    mHeights.remove(first, count);
    renumberRows(first, -count);
    rebuildSections();
    mRows->resizeTo(width(), mHeights.total());
    if (anchor >= 0 && anchor < mHeights.count())
        keepAnchor(anchor, anchorTop);
    layoutRows();
}

void ListView::rowsChanged(ListModel* model, int first, int count)
{
    if (model != mModel || !mDelegate || count <= 0)
        return;
    const int last = std::min(first + count, mHeights.count()) - 1;
    first = std::max(0, first);
    const int scrollY = contentOffset().y();
    const int anchor = scrollY > 0 ? mHeights.rowAt(scrollY) : -1;
    const int anchorTop = mHeights.top(anchor);
    if (mDelegate->fixedRowHeight() <= 0) {
        for (int row = first; row <= last; ++row) {
            if (mDelegate->rowHeight(row) > 0)
                mHeights.setHeight(row, mDelegate->rowHeight(row));
        }
    }
    for (auto it = mBound.lowerBound(first); it != mBound.end() && it.key() <= last; ++it)
        bind(it.value(), it.key());
    mRows->resizeTo(width(), mHeights.total());
    if (anchor >= 0)
        keepAnchor(anchor, anchorTop);
    layoutRows();
}

void ListView::renumberRows(int first, int count)
{
    QMap<int, DisplayView*> renumbered;
    for (auto it = mBound.cbegin(); it != mBound.cend(); ++it) {
        const int row = it.key();
        if (row < first)
            renumbered.insert(row, it.value());
        else if (count < 0 && row < first - count)
            retire(it.value(), row);
        else
            renumbered.insert(row + count, it.value());
    }
    mBound = renumbered;
    // Views keep their items; the delegate learns their new rows.
    for (auto it = mBound.lowerBound(first); it != mBound.end(); ++it) {
        mDelegate->unbindRow(it.value(), it.key() - count);
        bind(it.value(), it.key());
    }
    if (mSwipeRow >= first)
        mSwipeRow += count;
}

// Layout

void ListView::resized()
{
    ScrollableView::resized();
    // Measured rows may wrap differently at a new width.
    if (mRows->width() != width() && mDelegate && mDelegate->fixedRowHeight() <= 0) {
        for (auto it = mBound.cbegin(); it != mBound.cend(); ++it) {
            if (mDelegate->rowHeight(it.key()) <= 0)
                mHeights.setHeight(it.key(), measure(it.value()));
        }
    }
    layoutRows();
}

void ListView::wasScrolled()
{
    layoutRows();
}

void ListView::layoutRows()
{
    if (mInLayout) {
        mLayoutPending = true;
        return;
    }
    mInLayout = true;
    for (int pass = 0; pass < kMaxLayoutPasses; ++pass) {
        mLayoutPending = false;
        layoutPass();
        if (!mLayoutPending)
            break;
    }
    mInLayout = false;
}

void ListView::layoutPass()
{
    const int count = mHeights.count();
    const int scrollY = contentOffset().y();
    const int anchor = scrollY > 0 && count > 0 ? mHeights.rowAt(scrollY) : -1;
    const int anchorTop = mHeights.top(anchor);

    int first = 0, last = -1;
    if (count > 0 && mDelegate && height() > 0) {
        first = mHeights.rowAt(scrollY - overscan());
        last = mHeights.rowAt(scrollY + height() + overscan() - 1);
    }
    const int header = last >= first ? stickyHeaderRow(scrollY) : -1;

    // Rows that leave hand their views to rows that arrive, kind for kind.
    QMap<int, DisplayView*> kept;
    QList<QPair<DisplayView*, int>> leaving;
    for (auto it = mBound.cbegin(); it != mBound.cend(); ++it) {
        const int row = it.key();
        if ((row >= first && row <= last) || row == header)
            kept.insert(row, it.value());
        else
            leaving.append({it.value(), row});
    }
    mBound = kept;
    auto need = [&](int row) {
        if (row < 0 || mBound.contains(row))
            return;
        if (DisplayView* view = obtainView(mDelegate->rowKind(row), leaving)) {
            mBound.insert(row, view);
            bind(view, row);
            keepPaintOrder(view, row);
        }
    };
    for (int row = first; row <= last; ++row)
        need(row);
    need(header);
    for (const auto& [view, row] : leaving)
        retire(view, row);

    if (mRows->size() != QSize(width(), mHeights.total()))
        mRows->resizeTo(width(), mHeights.total());
    if (anchor >= 0)
        keepAnchor(anchor, anchorTop);

    const int nowY = contentOffset().y();
    const int nowHeader = stickyHeaderRow(nowY);
    for (auto it = mBound.cbegin(); it != mBound.cend(); ++it)
        placeRow(it.value(), it.key(), nowY, nowHeader);
    if (DisplayView* pinned = mBound.value(nowHeader)) {
        if (mRows->children().list().last() != pinned)
            pinned->raise();
    }
    // Measuring or keeping the anchor may have moved the range in view.
    if (count > 0 && height() > 0 &&
        (mHeights.rowAt(nowY - overscan()) != first ||
         mHeights.rowAt(nowY + height() + overscan() - 1) != last || nowHeader != header))
        mLayoutPending = true;
}

int ListView::stickyHeaderRow(int scrollY) const
{
    if (!listOption(StickyHeaders) || mSectionStarts.isEmpty() || mHeights.count() == 0)
        return -1;
    const int row = mHeights.rowAt(std::max(0, scrollY));
    const auto after = std::upper_bound(mSectionStarts.cbegin(), mSectionStarts.cend(), row);
    return after == mSectionStarts.cbegin() ? -1 : *(after - 1);
}

int ListView::pinnedTop(int header, int scrollY) const
{
    const int natural = mHeights.top(header);
    if (scrollY <= natural)
        return natural;
    const auto next = std::upper_bound(mSectionStarts.cbegin(), mSectionStarts.cend(), header);
    const int end = next == mSectionStarts.cend() ? mHeights.count() : *next;
    // The next header pushes the pinned one out upwards.
    return std::max(natural, std::min(scrollY, mHeights.top(end) - mHeights.height(header)));
}

void ListView::placeRow(DisplayView* view, int row, int scrollY, int header)
{
    const int top = row == header ? pinnedTop(header, scrollY) : mHeights.top(row);
    const int x = row == mSwipeRow ? int(std::lround(mSwipeOffset.value())) : 0;
    if (view->size() != QSize(width(), mHeights.height(row)))
        view->resizeTo(width(), mHeights.height(row));
    if (view->position() != QPoint(x, top))
        view->moveTo(x, top);
}

// Views

DisplayView* ListView::obtainView(int kind, QList<QPair<DisplayView*, int>>& leaving)
{
    for (int i = 0; i < leaving.size(); ++i) {
        if (mKinds.value(leaving[i].first) != kind)
            continue;
        const auto [view, row] = leaving.takeAt(i);
        mDelegate->unbindRow(view, row);
        if (row == mSwipeRow)
            endSwipe(false);
        return view;
    }
    QVector<DisplayView*>& spare = mSpare[kind];
    if (!spare.isEmpty()) {
        DisplayView* view = spare.takeLast();
        view->show(true);
        return view;
    }
    DisplayView* view = mDelegate->createRow(kind, mRows);
    if (!view) {
        Logger::logAssert("view",
                          QStringLiteral("The delegate made no view for rows of kind %1 View: %2")
                              .arg(kind)
                              .arg(viewPath()),
                          kLogSource, __LINE__);
        return nullptr;
    }
    view->changeParent(mRows);
    mKinds.insert(view, kind);
    connect(view, SIGNAL(tapped(DisplayView*)), this, SLOT(rowViewTapped(DisplayView*)));
    return view;
}

void ListView::bind(DisplayView* view, int row)
{
    mDelegate->bindRow(view, row);
    if (mDelegate->fixedRowHeight() <= 0 && mDelegate->rowHeight(row) <= 0)
        mHeights.setHeight(row, measure(view));
}

void ListView::keepPaintOrder(DisplayView* view, int row)
{
    // Rows paint in list order: a row handed over from the top to the bottom would
    // otherwise paint first, and its items could not batch with its neighbours'.
    const auto at = mBound.constFind(row);
    if (at == mBound.cbegin())
        view->lower();
    else
        view->raise(std::prev(at).value());
}

int ListView::measure(DisplayView* view) const
{
    return int(std::ceil(view->naturalSize(width()).height()));
}

void ListView::retire(DisplayView* view, int row)
{
    if (mDelegate)
        mDelegate->unbindRow(view, row);
    if (row == mSwipeRow)
        endSwipe(false);
    view->show(false);
    mSpare[mKinds.value(view)].append(view);
}

void ListView::unbindAll()
{
    const QMap<int, DisplayView*> bound = mBound;
    mBound.clear();
    for (auto it = bound.cbegin(); it != bound.cend(); ++it)
        retire(it.value(), it.key());
}

void ListView::dropAllViews()
{
    unbindAll();
    const QList<DisplayView*> views = mKinds.keys();
    mKinds.clear();
    mSpare.clear();
    qDeleteAll(views);
}

// Scroll position

void ListView::keepAnchor(int anchor, int anchorTop)
{
    const int delta = mHeights.top(anchor) - anchorTop;
    if (delta != 0)
        shiftScroll(delta);
}

// Rows above the view changed height by `delta`: the scroll position follows, so
// that what is in view stays put, and a glide in progress goes on from there.
void ListView::shiftScroll(int delta)
{
    ScrollHandler& handler = verticalHandler();
    const bool moving = handler.active();
    const double target = handler.finalTarget();
    const bool aimed = moving && target != handler.value();
    const double velocity = moving ? handler.getVelocity() : 0.0;
    const double to = handler.value() - delta;
    handler.onTouchStart(float(to));
    if (aimed)
        handler.scroll(float(target - delta - to), true);
    else if (moving)
        handler.startScrollAnimation(float(velocity));
    doScroll();
}
