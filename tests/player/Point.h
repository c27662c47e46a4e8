#pragma once

#include "geometry/Geometry.h"

/// A point or vector, from numbers as a test writes them.
inline Vector2D at(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y), CARTESIAN};
}
