#pragma once

#include <complex>
#include <gtest/gtest.h>
#include <random>

#include "geometry/Geometry.h"

/// The plainly different computation of these tests: double precision, vectors as complex numbers.
using Complex = std::complex<double>;

inline Complex toComplex(Vector2D const& v) {
    return {v.x, v.y};
}

/// Counter-clockwise direction in degrees.
inline double degrees(Complex v) {
    return std::arg(v) * 180 / std::acos(-1.0);
}

inline Vector2D toVector(Complex v) {
    return {static_cast<float>(v.real()), static_cast<float>(v.imag()), CARTESIAN};
}

/// v, or if it is longer than that, as long.
inline Complex capped(Complex v, double longest) {
    return std::abs(v) > longest ? std::polar(longest, std::arg(v)) : v;
}

/// Unit vector of a counter-clockwise direction in degrees.
inline Complex unit(double degrees) {
    return std::polar(1.0, degrees * std::acos(-1.0) / 180);
}

/// Up to a few roundings of float coordinates within 100 m, and of float angles.
inline bool agree(Vector2D const& v, Complex expected, double tolerance = 2e-4) {
    return std::abs(toComplex(v) - expected) < tolerance;
}

/// How far two directions in degrees are apart, whatever their turns: 0 to 180.
inline double angleBetween(double a, double b) {
    return std::abs(std::remainder(a - b, 360.0));
}

/// A test with a fixed stream of random inputs.
class Sweep : public testing::Test {
protected:
    static constexpr int COUNT = 20'000;

    float number(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(engine_);
    }

    /// Both bounds included.
    int whole(int low, int high) { return std::uniform_int_distribution(low, high)(engine_); }

    /// A point on the field or somewhat beside it.
    Vector2D point() { return {number(-60, 60), number(-40, 40), CARTESIAN}; }

private:
    std::mt19937 engine_{20020619};
};
