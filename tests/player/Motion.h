#pragma once

#include "tests/geometry/Sweep.h"
#include "tests/player/Point.h"
#include "worldmodel/MovingObject.h"

inline void expectMotion(MovingObject const& object, Complex position, Complex velocity) {
    EXPECT_TRUE(agree(object.position, position, 1e-3)) << object.position << position;
    EXPECT_TRUE(agree(object.velocity, velocity, 1e-3)) << object.velocity << velocity;
}
