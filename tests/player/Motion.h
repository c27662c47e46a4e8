#pragma once

#include "geometry/Sweep.h"
#include "player/Point.h"
#include "worldmodel/MovingObject.h"

inline void expectMotion(MovingObject const& object, Complex position, Complex velocity) {
    EXPECT_LT(std::abs(toComplex(object.position) - position), 1e-3);
    EXPECT_LT(std::abs(toComplex(object.velocity) - velocity), 1e-3);
}
