#include "worldmodel/MovingObject.h"

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

int truncateToInt(float value) {
    using Limits = std::numeric_limits<int>;
    if (std::isnan(value)) return 0;
    if (value >= static_cast<float>(Limits::max())) return Limits::max();
    if (value <= static_cast<float>(Limits::min())) return Limits::min();
    return static_cast<int>(value);
}
