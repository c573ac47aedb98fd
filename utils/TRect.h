#pragma once

#include "TPoint.h"

#include <algorithm>

/// A rectangle as origin and size (x, y, width, height). A negative height means
/// that the y axis of the space points the other way (north-up extents).
template <typename T> struct TRect
{
    T x = T();
    T y = T();
    T width = T();
    T height = T();

    constexpr TRect() = default;
    constexpr TRect(T px, T py, T w, T h) : x(px), y(py), width(w), height(h) {}

    constexpr T left() const { return std::min(x, T(x + width)); }
    constexpr T right() const { return std::max(x, T(x + width)); }
    constexpr T top() const { return std::min(y, T(y + height)); }
    constexpr T bottom() const { return std::max(y, T(y + height)); }
    constexpr bool isEmpty() const { return width == T() || height == T(); }
    constexpr TPoint<T> origin() const { return TPoint<T>(x, y); }

    constexpr bool contains(const TPoint<T>& p) const
    {
        return p.x >= left() && p.x <= right() && p.y >= top() && p.y <= bottom();
    }
    constexpr bool operator==(const TRect& o) const
    {
        return x == o.x && y == o.y && width == o.width && height == o.height;
    }
};
