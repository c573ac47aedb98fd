#pragma once

#include <algorithm>
#include <vector>

namespace gfx {

/// (key, value) pairs kept sorted by key and searched by binary search: small and
/// cache-friendly for lookups, at the price of shifting on insertion.
template <typename Pair> class sorted_vector
{
public:
    using key_type = typename Pair::first_type;
    using iterator = typename std::vector<Pair>::iterator;

    iterator find(const key_type& key)
    {
        iterator it = lowerBound(key);
        return it != mItems.end() && it->first == key ? it : mItems.end();
    }
    /// Inserts or replaces the pair with the same key.
    void insert(const Pair& pair)
    {
        iterator it = lowerBound(pair.first);
        if (it != mItems.end() && it->first == pair.first)
            *it = pair;
        else
            mItems.insert(it, pair);
    }
    bool erase(const key_type& key)
    {
        iterator it = find(key);
        if (it == mItems.end())
            return false;
        mItems.erase(it);
        return true;
    }
    iterator end() { return mItems.end(); }
    size_t size() const { return mItems.size(); }
    void clear() { mItems.clear(); }
    void reserve(size_t n) { mItems.reserve(n); }

private:
    iterator lowerBound(const key_type& key)
    {
        return std::lower_bound(mItems.begin(), mItems.end(), key,
                                [](const Pair& p, const key_type& k) { return p.first < k; });
    }

    std::vector<Pair> mItems;
};

} // namespace gfx
