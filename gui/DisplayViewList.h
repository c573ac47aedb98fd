#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QLinkedList>

class DisplayView;

/// A view's children in z-order (first painted first, last on top). Each child keeps an
/// iterator to its own node, which makes removal and raise/lower O(1). The list is
/// implicitly shared so that painting can walk a cheap copy; a change while such a copy
/// is alive detaches the list, after which every cached iterator is re-pointed.
class ORBIS_UI_EXPORT DisplayViewList
{
public:
    using List = QLinkedList<DisplayView*>;
    using iterator = List::iterator;

    const List& list() const { return mList; }
    bool isEmpty() const { return mList.isEmpty(); }
    int size() const { return mList.size(); }
    DisplayView* first() const { return mList.first(); }
    DisplayView* last() const { return mList.last(); }

    void append(DisplayView* view);
    void prepend(DisplayView* view);
    /// Inserts before the node at position.
    void insert(iterator position, DisplayView* view);
    /// Removes the view through its cached iterator.
    void remove(DisplayView* view);
    void clear();
    void updateCachedIterators();

private:
    void settle(bool wasShared, DisplayView* view, iterator node);

    List mList;
};
