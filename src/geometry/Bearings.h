#pragma once

#include "geometry/Vector2D.h"

// Bearings are clockwise directions in [0, 360) (see Angles.h): 0 along positive x, 90 along
// NEGATIVE y. They are worked out by quadrants, so that the four axes give exact results.

/// The direction from one point to another; NaN when they are the same point.
float bearing(Vector2D const& from, Vector2D const& to);

/// Smaller bearings (degrees) count as straight ahead.
inline constexpr float BEARING_SNAP = 0.5F;

/// The same bearing, but 0 when it is below BEARING_SNAP.
float snapBearing(float angle);

/// A bearing as seen from somebody who faces `direction` (clockwise, [0, 360)).
constexpr float relativeBearing(float direction, float angle) {
    return direction <= angle ? angle - direction : angle + 360.0F - direction;
}
