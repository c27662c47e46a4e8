#pragma once

#include <cmath>
#include <numbers>

namespace practice {

/// A point or a vector of the pitch: metres, x to the right goal, y DOWN the picture, origin at the
/// centre spot. Angles are radians, 0 along +x, growing clockwise on that picture; degrees appear
/// only in messages and in names that end in Deg.
struct Vec {
    double x = 0.0, y = 0.0;

    friend Vec operator+(Vec a, Vec b) { return {a.x + b.x, a.y + b.y}; }
    friend Vec operator-(Vec a, Vec b) { return {a.x - b.x, a.y - b.y}; }
    friend Vec operator*(Vec a, double k) { return {a.x * k, a.y * k}; }
    Vec& operator+=(Vec b) { return *this = *this + b; }
    Vec& operator*=(double k) { return *this = *this * k; }
    friend bool operator==(Vec const&, Vec const&) = default;

    double length() const { return std::hypot(x, y); }
    /// The angle of the null vector is 0.
    double angle() const { return x == 0.0 && y == 0.0 ? 0.0 : std::atan2(y, x); }

    friend double dot(Vec a, Vec b) { return a.x * b.x + a.y * b.y; }
    friend double distance(Vec a, Vec b) { return (a - b).length(); }
    friend Vec shortenedTo(Vec v, double longest) {
        double const length = v.length();
        return length > longest ? v * (longest / length) : v;
    }
};

inline Vec polar(double r, double angle) {
    return {r * std::cos(angle), r * std::sin(angle)};
}
constexpr double toDeg(double rad) {
    return rad * 180.0 / std::numbers::pi;
}
constexpr double toRad(double deg) {
    return deg * std::numbers::pi / 180.0;
}

/// Brings an angle into [-pi, pi]; both ends are possible.
inline double normalized(double rad) {
    while (rad > std::numbers::pi) {
        rad -= 2.0 * std::numbers::pi;
    }
    while (rad < -std::numbers::pi) {
        rad += 2.0 * std::numbers::pi;
    }
    return rad;
}

/// Messages carry whole degrees: an int, so that no "-0" appears.
inline int wholeDegrees(double rad) {
    return static_cast<int>(std::rint(toDeg(normalized(rad))));
}

/// Rounds to a multiple of `step`, ties to even.
inline double quantized(double value, double step) {
    return std::rint(value / step) * step;
}

} // namespace practice
