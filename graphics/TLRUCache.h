#pragma once

#include "NullLock.h"
#include "SortedVector.h"

#include <list>
#include <mutex>
#include <utility>

namespace gfx {

/// A least-recently-used store: entries in a list by use, most recent at the front,
/// found through an index of (key, list position) pairs.
template <typename Key, typename Value, typename Lock = NullLock,
          template <typename> class Index = sorted_vector>
class TLRUCache
{
    using List = std::list<std::pair<Key, Value>>;

public:
    /// A stored entry's place in the use list, valid until the entry leaves.
    using Handle = typename List::iterator;

    /// The value under `key` moved to the front, or nullptr.
    Value* find(const Key& key)
    {
        std::lock_guard<Lock> guard(mLock);
        auto it = mIndex.find(key);
        if (it == mIndex.end())
            return nullptr;
        mList.splice(mList.begin(), mList, it->second);
        return &it->second->second;
    }
    /// Moves a stored entry to the front without searching the index.
    void touch(Handle handle)
    {
        std::lock_guard<Lock> guard(mLock);
        mList.splice(mList.begin(), mList, handle);
    }
    /// Inserts at the front, replacing an entry with the same key.
    Handle insert(const Key& key, const Value& value)
    {
        std::lock_guard<Lock> guard(mLock);
        auto it = mIndex.find(key);
        if (it != mIndex.end())
            mList.erase(it->second);
        mList.emplace_front(key, value);
        mIndex.insert({key, mList.begin()});
        return mList.begin();
    }
    /// Removes the least recently used entry into `out`; false when empty.
    bool takeLast(std::pair<Key, Value>& out)
    {
        std::lock_guard<Lock> guard(mLock);
        if (mList.empty())
            return false;
        out = std::move(mList.back());
        mIndex.erase(out.first);
        mList.pop_back();
        return true;
    }
    bool contains(const Key& key)
    {
        std::lock_guard<Lock> guard(mLock);
        return mIndex.find(key) != mIndex.end();
    }
    size_t size() const { return mList.size(); }
    void clear()
    {
        std::lock_guard<Lock> guard(mLock);
        mIndex.clear();
        mList.clear();
    }

private:
    List mList;
    Index<std::pair<Key, typename List::iterator>> mIndex;
    Lock mLock;
};

} // namespace gfx
