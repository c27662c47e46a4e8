#pragma once

#include <limits>

/// Marks a quantity that a message did not carry.
inline constexpr float RCC_ABSENT = std::numeric_limits<float>::infinity();

/// An angle as the server counts it: clockwise, 0 straight ahead of whatever it is relative to.
/// Infinite when absent. The parser always delivers degrees.
struct RCC_Angle {
    enum Unit { Degrees, Radians };

    float value = RCC_ABSENT;
    Unit unit = Degrees;

    bool isAbsent() const { return value == RCC_ABSENT; }

    float degrees() const {
        constexpr double INVERSE_PI = 0.3183098861837907;
        if (unit == Degrees) return value;
        return static_cast<float>(value * (180 * INVERSE_PI));
    }
};
