#include "geometry/Angles.h"

#include <cmath>

namespace {

double radians(float degrees) {
    return Deg2Rad(degrees);
}

float degrees(double radians) {
    return Rad2Deg(static_cast<float>(radians));
}

/// Lifts a negative angle of at most one turn into [0, 360).
float liftNegative(float a) {
    return a + 360 < 360 ? a + 360 : a;
}

} // namespace

float cosDeg(float a) {
    return static_cast<float>(std::cos(radians(a)));
}

float sinDeg(float a) {
    return static_cast<float>(std::sin(radians(a)));
}

float tanDeg(float a) {
    return static_cast<float>(std::tan(radians(a)));
}

float atanDeg(float x) {
    return degrees(std::atan(static_cast<double>(x)));
}

float atan2Deg(float y, float x) {
    if (isNearZero(y) && isNearZero(x)) return 0;
    return degrees(std::atan2(static_cast<double>(y), static_cast<double>(x)));
}

float acosDeg(float x) {
    if (x >= 1) return 0;
    if (x <= -1) return 180;
    return degrees(std::acos(static_cast<double>(x)));
}

float asinDeg(float x) {
    if (x >= 1) return 90;
    if (x <= -1) return -90;
    return degrees(std::asin(static_cast<double>(x)));
}

float normalizeTo360Deg(float a) {
    float r = std::fmod(a, 360.0F);
    if (r < 0) r += 360;
    return r == 0 ? 0 : r;
}

float normalizeTo180Deg(float a) {
    // A loop that takes off one turn at a time would not end for UNDEFINED_FLOAT, from which 360 is
    // lost in rounding. Adding 0 makes a negative zero positive.
    if (std::fabs(a) > 360) a = std::fmod(a, 360.0F) + 0.0F;
    if (a > 180) return a - 360;
    if (a < -180) return a + 360;
    return a;
}

bool isAngInInterval(float ang, float angMin, float angMax) {
    ang = liftNegative(ang);
    angMin = liftNegative(angMin);
    angMax = liftNegative(angMax);
    if (angMin < angMax) return angMin < ang && ang < angMax;
    return ang >= angMin || ang <= angMax;
}

float getBisectorTwoAngles(float a1, float a2) {
    float const sinAverage = (sinDeg(a1) + sinDeg(a2)) * 0.5F;
    float const cosAverage = (cosDeg(a1) + cosDeg(a2)) * 0.5F;
    return normalizeTo180Deg(atan2Deg(sinAverage, cosAverage));
}
