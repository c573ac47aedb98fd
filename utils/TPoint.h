#pragma once

#include <cmath>

/// A plain 2D point of any arithmetic type (projected coordinates, world pixels).
template <typename T> struct TPoint
{
    T x = T();
    T y = T();

    constexpr TPoint() = default;
    constexpr TPoint(T px, T py) : x(px), y(py) {}

    constexpr TPoint operator+(const TPoint& o) const { return TPoint(x + o.x, y + o.y); }
    constexpr TPoint operator-(const TPoint& o) const { return TPoint(x - o.x, y - o.y); }
    constexpr TPoint operator*(T s) const { return TPoint(x * s, y * s); }
    constexpr TPoint operator/(T s) const { return TPoint(x / s, y / s); }
    TPoint& operator+=(const TPoint& o)
    {
        x += o.x;
        y += o.y;
        return *this;
    }
    TPoint& operator-=(const TPoint& o)
    {
        x -= o.x;
        y -= o.y;
        return *this;
    }
    constexpr bool operator==(const TPoint& o) const { return x == o.x && y == o.y; }
    constexpr bool operator!=(const TPoint& o) const { return !(*this == o); }

    T length() const { return T(std::sqrt(double(x) * double(x) + double(y) * double(y))); }
};
