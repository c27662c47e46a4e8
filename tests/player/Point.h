#pragma once

#include <gtest/gtest.h>

#include "geometry/Geometry.h"

/// A point or vector, from numbers as a test writes them.
inline Vector2D at(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y), CARTESIAN};
}

inline void expectNear(Vector2D expected, Vector2D actual, std::string const& what = "") {
    EXPECT_NEAR(expected.x, actual.x, 1e-4) << what;
    EXPECT_NEAR(expected.y, actual.y, 1e-4) << what;
}
