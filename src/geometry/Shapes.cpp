#include "geometry/Shapes.h"

#include <cmath>
#include <iostream>

#include "geometry/Geometry.h"

namespace {

template <typename Real>
Real square(Real x) {
    return x * x;
}

/// One circle's share of an overlap: the sector over half the chord, less the triangle from its
/// center to the chord. Rounding may make half a chord longer than the radius.
float sectorMinusTriangle(float radius, float halfChord, float centerToChord) {
    float const halfAngle = std::asin(std::min(halfChord / radius, 1.0F));
    return halfAngle * square(radius) - halfChord * centerToChord;
}

} // namespace

Line Line::makeLineFromTwoPoints(Vector2D pos1, Vector2D pos2) {
    Vector2D const d = pos2 - pos1;
    // NaN fails the comparison, so points without a distance between them make a vertical line.
    bool const sloped = std::fabs(d.x) >= EPSILON;
    float const a = sloped ? 1.0F : 0.0F;
    float const b = sloped ? -d.y / d.x : 1.0F;
    return Line{a, b, -a * pos2.y - b * pos2.x};
}

Line Line::makeLineFromPositionAndAngle(Vector2D pos, float ang) {
    return makeLineFromTwoPoints(pos, pos + Vector2D(1, ang, POLAR));
}

float Line::getYGivenX(float x) const {
    if (a == 0) {
        std::cerr << "(Line::getYGivenX) Cannot calculate Y coordinate: " << *this << std::endl;
        return 0;
    }
    return -(b * x + c) / a;
}

float Line::getXGivenY(float y) const {
    if (b == 0) {
        std::cerr << "(Line::getXGivenY) Cannot calculate X coordinate\n";
        return 0;
    }
    return -(a * y + c) / b;
}

Vector2D Line::getIntersection(Line other) const {
    if (b == other.b) return {};
    if (a == 0) {
        float const x = -c / b;
        return {x, other.getYGivenX(x), CARTESIAN};
    }
    float const x = other.a == 0 ? -other.c / other.b
                                 : (a * other.c - other.a * c) / (other.a * b - a * other.b);
    return {x, getYGivenX(x), CARTESIAN};
}

Vector2D Line::getPointOnLineClosestTo(Vector2D pos) const {
    return getIntersection(getTangentLine(pos));
}

float Line::distanceToPoint(Vector2D pos) const {
    return pos.getDistanceTo(getPointOnLineClosestTo(pos));
}

bool Line::isInBetween(Vector2D pos, Vector2D point1, Vector2D point2) const {
    Vector2D const foot = getPointOnLineClosestTo(pos);
    float const length = point1.getDistanceTo(point2);
    return foot.getDistanceTo(point1) <= length && foot.getDistanceTo(point2) <= length;
}

int Line::getCircleIntersectionPoints(Circle circle, Vector2D* p1, Vector2D* p2) const {
    // In double: a steep line has a slope and an intercept so large that in float the rest is lost.
    double const cx = circle.center.x;
    double const cy = circle.center.y;
    double const r2 = square(double{circle.radius});
    double s1 = 0;
    double s2 = 0;
    if (isNearZero(a)) {
        float const x0 = -c / b;
        int const count =
            Geometry::abcFormula(1, -2 * cy, square(x0 - cx) + square(cy) - r2, &s1, &s2);
        *p1 = {x0, static_cast<float>(s1), CARTESIAN};
        *p2 = {x0, static_cast<float>(s2), CARTESIAN};
        return count;
    }
    double const slope = -double{b} / a;
    double const intercept = -double{c} / a;
    double const constant = square(cx) + square(intercept - cy) - r2;
    int const count = Geometry::abcFormula(1 + square(slope), 2 * (slope * (intercept - cy) - cx),
                                           constant, &s1, &s2);
    auto const pointAt = [&](double x) {
        return Vector2D(static_cast<float>(x), static_cast<float>(slope * x + intercept),
                        CARTESIAN);
    };
    *p1 = pointAt(s1);
    *p2 = pointAt(s2);
    return count;
}

void Line::show(std::ostream& os) const {
    os << *this;
}

std::ostream& operator<<(std::ostream& os, Line const& line) {
    auto const [a, b, c] = line;
    if (a == 0) return os << "x = " << -c / b;
    os << "y = ";
    if (b != 0) os << -b / a << "x ";
    if (c > 0) os << "- " << std::fabs(c / a);
    if (c < 0) os << "+ " << std::fabs(c / a);
    return os;
}

int Circle::getIntersectionPoints(Circle other, Vector2D* p1, Vector2D* p2) const {
    Vector2D const toOther = other.center - center;
    float const d = toOther.getMagnitude();
    float const toChord = (square(d) + square(radius) - square(other.radius)) / (2 * d);
    float const halfChord2 = square(radius) - square(toChord);
    float const halfChord = halfChord2 > 0 ? std::sqrt(halfChord2) : 0;

    Vector2D const unit = toOther / d;
    Vector2D const base = center + toChord * unit;
    Vector2D const sideways = halfChord * Vector2D(-unit.y, unit.x, CARTESIAN);
    *p1 = base + sideways;
    *p2 = base - sideways;
    if (halfChord2 < 0) return 0;
    return halfChord2 == 0 ? 1 : 2;
}

float Circle::getIntersectionArea(Circle other) const {
    float const d = center.getDistanceTo(other.center);
    if (d > radius + other.radius) return 0;
    if (d <= std::fabs(other.radius - radius)) {
        return square(std::min(radius, other.radius)) * static_cast<float>(PI);
    }
    Vector2D p1;
    Vector2D p2;
    if (getIntersectionPoints(other, &p1, &p2) != 2) return 0;
    Vector2D const mid = p1.getVector2DOnLineFraction(p2, 0.5F);
    float const halfChord = p1.getDistanceTo(mid);
    return sectorMinusTriangle(radius, halfChord, mid.getDistanceTo(center)) +
           sectorMinusTriangle(other.radius, halfChord, mid.getDistanceTo(other.center));
}

void Circle::show(std::ostream& os) const {
    os << "c:" << center << ", r:" << radius;
}

void Rectangle::show(std::ostream& /*os*/) const {
    std::cout << "rect(" << cornerMaxXMinY << " " << cornerMinXMaxY << ")";
}
