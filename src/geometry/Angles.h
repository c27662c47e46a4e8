#pragma once

// Angles in degrees.
//
// Two conventions coexist; each function names the one it uses.
//  - Counter-clockwise, in [-180, 180]: the mathematical angle of atan2. Direction 90 is the vector
//    (0, 1). Used by atan2Deg, getBisectorTwoAngles and Vector2D::rotate.
//  - Clockwise, in [0, 360): the directions of the world model. Direction phi is the unit vector
//    (cos phi, -sin phi), so that 90 is (0, -1). Used by Vector2D(r, phi, POLAR).
// The names follow a drawing whose y axis points up. The field's frame has x towards the opponent's
// goal and y pointing DOWN on the picture (the top touch line is at negative y): there the
// world model's direction 90 looks at the top touch line.
//
// All functions are pure. Results are rounded to float once, intermediate results may be double.

/// Marks a coordinate, direction or distance that is not known. Exact in float and in double.
inline constexpr float UNDEFINED_FLOAT = 1e10F;

/// Lengths and coordinates below this count as zero. Compared in double.
inline constexpr double EPSILON = 0.0001;

/// Whether a length or coordinate counts as zero.
constexpr bool isNearZero(float x) {
    return -EPSILON < x && x < EPSILON;
}

inline constexpr double PI = 3.141592653589793;

constexpr float Rad2Deg(float x) {
    return static_cast<float>(x * 180 / PI);
}

constexpr float Deg2Rad(float x) {
    return static_cast<float>(x * PI / 180);
}

float cosDeg(float a);
float sinDeg(float a);
float tanDeg(float a);

/// In [-90, 90].
float atanDeg(float x);

/// Counter-clockwise direction of (x, y), in [-180, 180]; 0 when both are below EPSILON.
/// The y component comes first.
float atan2Deg(float y, float x);

/// In [0, 180]; an argument outside [-1, 1] counts as the nearer bound.
float acosDeg(float x);

/// In [-90, 90]; an argument outside [-1, 1] counts as the nearer bound.
float asinDeg(float x);

/// The same direction in [0, 360), never a negative zero. (A tiny negative angle rounds to 360.)
/// Infinite gives NaN.
float normalizeTo360Deg(float a);

/// The same direction in [-180, 180]; both bounds are left as they are. Infinite gives NaN.
float normalizeTo180Deg(float a);

/// From clockwise [0, 360) to counter-clockwise (-180, 180].
constexpr float convertAngleTo180(float a) {
    return a <= 180 ? -a : 360 - a;
}

/// From counter-clockwise (-180, 180] to clockwise [0, 360); inverse of convertAngleTo180.
constexpr float convertAngleTo360(float a) {
    return a > 0 ? 360 - a : -a;
}

/// Whether ang lies in the interval that runs upwards from angMin to angMax. The two kinds of
/// interval differ at their bounds: one that doesn't cross 0 excludes them, one that crosses 0
/// includes them, and an empty one (angMin == angMax) is the whole circle.
bool isAngInInterval(float ang, float angMin, float angMax);

/// The direction halfway between a1 and a2, in [-180, 180]; 0 for opposite directions.
float getBisectorTwoAngles(float a1, float a2);

/// a1 - a2, in [-180, 180].
inline float getAngleDifference(float a1, float a2) {
    return normalizeTo180Deg(a1 - a2);
}

/// The angle between a1 and a2, in [0, 180].
inline float getAbsAngleDifference(float a1, float a2) {
    float const difference = getAngleDifference(a1, a2);
    return difference < 0 ? -difference : difference;
}
