#include "geometry/Bearings.h"

#include <cmath>

namespace {

/// The quadrant rule. `base` is the acute angle between the way and the y axis, in [0, 90]; on an
/// axis the first case that holds decides.
float f(Vector2D const& from, Vector2D const& to, float base) {
    float result = base;
    if (to.x >= from.x && to.y >= from.y) {
        result = 270.0F + base;
    } else if (from.x >= to.x && to.y >= from.y) {
        result = 270.0F - base;
    } else if (from.x >= to.x && from.y >= to.y) {
        result = 90.0F + base;
    } else if (to.x >= from.x && from.y >= to.y) {
        result = 90.0F - base;
    }
    return result >= 360.0F ? result - 360.0F : result;
}

} // namespace

float bearing(Vector2D const& from, Vector2D const& to) {
    return f(from, to, atanDeg(std::abs(to.x - from.x) / std::abs(to.y - from.y)));
}

float snapBearing(float angle) {
    if (angle < BEARING_SNAP) angle = 0.0F;
    return angle >= 360.0F ? angle - 360.0F : angle;
}
