#include "worldmodel/MovingObject.h"

#include <algorithm>
#include <cmath>
#include <limits>

Vector2D MovingObject::predictedPosition(int cycles) const {
    if (position.isInvalid() || velocity.isInvalid()) return position;
    Vector2D predicted = position;
    for (int i = 0; i < cycles; ++i) {
        predicted += velocity;
    }
    return predicted;
}

void clampSpeed(Vector2D& velocity, float speedMax) {
    float const speed = velocity.getLength();
    if (speed > speedMax) velocity *= speedMax / speed;
}

int truncateToInt(double value) {
    using Limits = std::numeric_limits<int>;
    if (std::isnan(value)) return 0;
    return static_cast<int>(std::clamp(value, double{Limits::min()}, double{Limits::max()}));
}
