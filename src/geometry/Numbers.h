#pragma once

#include <algorithm>
#include <limits>

/// The whole number in `value`, toward zero; 0 for NaN, and the nearest int beyond its range.
constexpr int truncateToInt(double value) {
    using Limits = std::numeric_limits<int>;
    bool const isNan = value != value;
    if (isNan) return 0;
    return static_cast<int>(std::clamp(value, double{Limits::min()}, double{Limits::max()}));
}
