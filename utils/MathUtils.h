#pragma once

#include <cmath>
#include <cstdlib>
#include <type_traits>

namespace MathUtils {

/// Wraps value into [minimum, maximum): with range = maximum - minimum and
/// x = value - minimum, k = ceil((|x| + range) / range) and the result is
/// fmod(k * range + x, range) + minimum. Adding k whole ranges first keeps the
/// remainder's argument positive, so negative values wrap the same way.
template <typename T> T wrap(T value, T minimum, T maximum)
{
    static_assert(std::is_arithmetic<T>::value, "wrap needs an arithmetic type");
    const T range = maximum - minimum;
    const T x = value - minimum;
    if constexpr (std::is_integral<T>::value) {
        const T k = T((std::abs(x) + range + range - 1) / range);
        return T((k * range + x) % range + minimum);
    } else {
        const int k = int(std::ceil((std::fabs(x) + range) / range));
        return T(std::fmod(k * range + x, range) + minimum);
    }
}

template <typename T> constexpr T clamp(T value, T low, T high)
{
    return value < low ? low : (value > high ? high : value);
}

constexpr double degreesToRadians(double degrees)
{
    return degrees * 0.017453292519943295;
}

constexpr double radiansToDegrees(double radians)
{
    return radians * 57.29577951308232;
}

} // namespace MathUtils
