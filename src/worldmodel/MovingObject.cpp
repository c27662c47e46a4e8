#include "worldmodel/MovingObject.h"

Vector2D MovingObject::predictedPosition(int cycles) const {
    if (position.isInvalid() || velocity.isInvalid()) return position;
    Vector2D predicted = position;
    for (int i = 0; i < cycles; ++i) {
        predicted += velocity;
    }
    return predicted;
}
