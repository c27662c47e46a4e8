#include "geometry/Vector2D.h"

#include <iostream>

namespace {

bool isUnknown(float coordinate) {
    return coordinate == UNDEFINED_FLOAT || !std::isfinite(coordinate);
}

} // namespace

Vector2D Vector2D::getVector2DFromPolar(float mag, float ang) {
    return fromCartesian(mag * cosDeg(ang), -mag * sinDeg(ang));
}

Vector2D Vector2D::getVector2DFromPolar_Orig(float mag, float ang) {
    return fromCartesian(mag * cosDeg(ang), mag * sinDeg(ang));
}

bool Vector2D::isInvalid() const {
    return isUnknown(x) || isUnknown(y);
}

Vector2D Vector2D::setLength(float len) {
    float const length = getMagnitude();
    if (length > EPSILON) *this *= len / length;
    return *this;
}

Vector2D Vector2D::rotate(float ang) {
    setVector2D_Orig(getMagnitude(), getDirection() + ang, POLAR);
    return *this;
}

Vector2D Vector2D::globalToRelative(Vector2D origin, float ang) {
    *this -= origin;
    return rotate(-ang);
}

Vector2D Vector2D::relativeToGlobal(Vector2D origin, float ang) {
    rotate(ang);
    return *this += origin;
}

void Vector2D::show(CoordSystemT cs) const {
    if (cs == CARTESIAN) {
        std::cout << *this << std::endl;
    } else {
        std::cout << "( r: " << getMagnitude() << ", phi: " << getDirection() << "  )";
    }
}

std::ostream& operator<<(std::ostream& os, Vector2D const& v) {
    return os << "( " << v.x << ", " << v.y << " )";
}
