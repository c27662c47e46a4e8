#pragma once

#include <cmath>
#include <iosfwd>

#include "geometry/Angles.h"

/// What the two numbers of a vector mean.
enum CoordSystemT {
    CARTESIAN = 0, ///< x and y
    POLAR = 1      ///< a length and a direction in degrees
};

/// A position, velocity or offset in the plane: metres, or metres per cycle.
///
/// Polar values are clockwise directions (see Angles.h): Vector2D(2, 90, POLAR) is (0, -2). The
/// functions ending in _Orig, rotate and getDirection take or give counter-clockwise ones. A vector
/// with an unknown coordinate holds UNDEFINED_FLOAT there; no operation looks for that, callers ask
/// isInvalid where it matters.
struct Vector2D {
    float x = 0;
    float y = 0;

    constexpr Vector2D() = default;
    constexpr Vector2D(float a, float b, CoordSystemT cs) { setVector2D(a, b, cs); }

    /// POLAR: b is a clockwise direction.
    constexpr void setVector2D(float a, float b, CoordSystemT cs) {
        *this = cs == POLAR ? getVector2DFromPolar(a, b) : fromCartesian(a, b);
    }
    /// POLAR: b is a counter-clockwise direction.
    constexpr void setVector2D_Orig(float a, float b, CoordSystemT cs) {
        *this = cs == POLAR ? getVector2DFromPolar_Orig(a, b) : fromCartesian(a, b);
    }

    /// (mag cos ang, -mag sin ang): ang is clockwise.
    static Vector2D getVector2DFromPolar(float mag, float ang);
    /// (mag cos ang, mag sin ang): ang is counter-clockwise.
    static Vector2D getVector2DFromPolar_Orig(float mag, float ang);

    constexpr float getX() const { return x; }
    constexpr float getY() const { return y; }

    float getMagnitude() const { return std::sqrt(x * x + y * y); }
    float getLength() const { return getMagnitude(); }
    /// Counter-clockwise, in [-180, 180]; 0 for the zero vector.
    float getDirection() const { return atan2Deg(y, x); }
    inline float getDistanceTo(Vector2D const& p) const;

    /// Whether a coordinate is UNDEFINED_FLOAT, infinite or NaN.
    bool isInvalid() const;

    /// Scales the vector in place to length len, and returns it; a vector not longer than EPSILON
    /// has no direction and stays as it is.
    Vector2D setLength(float len);

    /// Turns the vector in place by ang, counter-clockwise, and returns it.
    Vector2D rotate(float ang);

    /// In place: the coordinates of this point in a frame that sits at origin and is turned
    /// counter-clockwise by ang. Returns the result.
    Vector2D globalToRelative(Vector2D origin, float ang);

    /// In place: the inverse of globalToRelative.
    Vector2D relativeToGlobal(Vector2D origin, float ang);

    /// The point at a fraction of the way to p: 0 is this point, 1 is p.
    constexpr Vector2D getVector2DOnLineFraction(Vector2D const& p, float frac) const;

    /// Writes to standard output: CARTESIAN as the stream form and a line end; POLAR as length and
    /// counter-clockwise direction, without a line end.
    void show(CoordSystemT cs) const;

    constexpr Vector2D& operator+=(Vector2D const& p) {
        x += p.x;
        y += p.y;
        return *this;
    }
    constexpr Vector2D& operator-=(Vector2D const& p) {
        x -= p.x;
        y -= p.y;
        return *this;
    }
    constexpr Vector2D& operator*=(float factor) {
        x *= factor;
        y *= factor;
        return *this;
    }
    constexpr Vector2D& operator/=(float divisor) {
        x /= divisor;
        y /= divisor;
        return *this;
    }
    constexpr Vector2D operator-() const { return fromCartesian(-x, -y); }

    /// Exact: both coordinates are the same numbers.
    friend constexpr bool operator==(Vector2D const&, Vector2D const&) = default;

private:
    static constexpr Vector2D fromCartesian(float x, float y) {
        Vector2D v;
        v.x = x;
        v.y = y;
        return v;
    }
};

constexpr Vector2D operator+(Vector2D a, Vector2D const& b) {
    return a += b;
}
constexpr Vector2D operator-(Vector2D a, Vector2D const& b) {
    return a -= b;
}
constexpr Vector2D operator*(Vector2D v, float factor) {
    return v *= factor;
}
constexpr Vector2D operator*(float factor, Vector2D v) {
    return v *= factor;
}
constexpr Vector2D operator/(Vector2D v, float divisor) {
    return v /= divisor;
}

inline float Vector2D::getDistanceTo(Vector2D const& p) const {
    return (*this - p).getMagnitude();
}

constexpr Vector2D Vector2D::getVector2DOnLineFraction(Vector2D const& p, float frac) const {
    return (1 - frac) * *this + frac * p;
}

/// "( x , y )", without a line end.
std::ostream& operator<<(std::ostream& os, Vector2D const& v);
