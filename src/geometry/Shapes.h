#pragma once

#include <algorithm>
#include <iosfwd>

#include "geometry/Vector2D.h"

// Lines, circles and axis-aligned rectangles: plain values, metres, angles in degrees.

struct Circle;

/// The points with a*y + b*x + c = 0. Note the order: a belongs to y.
///
/// Nothing fails: a question without an answer writes a message to standard error and gives 0, and
/// lines that don't meet "intersect" in (0, 0).
struct Line {
    float a; ///< coefficient of y; the makers give 1, or 0 for a vertical line
    float b; ///< coefficient of x; 1 for a vertical line
    float c;

    constexpr Line(float coefficientY, float coefficientX, float constant)
        : a(coefficientY), b(coefficientX), c(constant) {}

    /// Vertical when the x coordinates differ by less than EPSILON.
    static Line makeLineFromTwoPoints(Vector2D pos1, Vector2D pos2);

    /// ang is a clockwise direction.
    static Line makeLineFromPositionAndAngle(Vector2D pos, float ang);

    /// 0 and a message on standard error for a vertical line.
    float getYGivenX(float x) const;
    /// 0 and a message on standard error for a horizontal line.
    float getXGivenY(float y) const;

    /// (0, 0) for lines with the same b, whatever their a: such lines count as parallel.
    Vector2D getIntersection(Line other) const;

    /// The perpendicular through pos.
    constexpr Line getTangentLine(Vector2D pos) const { return Line{b, -a, a * pos.x - b * pos.y}; }

    /// The foot of the perpendicular from pos. A line of slope exactly 1 has b == -a, the b of its
    /// perpendiculars; it counts as parallel to them, and the foot is (0, 0) for every point.
    Vector2D getPointOnLineClosestTo(Vector2D pos) const;

    /// The distance from pos to getPointOnLineClosestTo(pos).
    float distanceToPoint(Vector2D pos) const;

    /// Whether the foot of the perpendicular from pos is no further from either point than they are
    /// from each other. Both points are taken to lie on the line.
    bool isInBetween(Vector2D pos, Vector2D point1, Vector2D point2) const;

    /// The number of common points (0, 1 or 2). Both points are always written; only as many as
    /// the number says mean anything.
    int getCircleIntersectionPoints(Circle circle, Vector2D* p1, Vector2D* p2) const;

    /// Writes the stream form.
    void show(std::ostream& os) const;
};

/// "x = 3" or "y = 2x - 1", without a line end; the sign of the constant is right for a > 0.
std::ostream& operator<<(std::ostream& os, Line const& line);

struct Circle {
    Vector2D center{-1000, -1000, CARTESIAN};
    float radius = 0; ///< never negative when set through setRadius

    constexpr Circle() = default;
    constexpr Circle(Vector2D circleCenter, float circleRadius) {
        setCircle(circleCenter, circleRadius);
    }

    /// False when the radius isn't positive, see setRadius.
    constexpr bool setCircle(Vector2D circleCenter, float circleRadius) {
        center = circleCenter;
        return setRadius(circleRadius);
    }

    /// A radius that isn't positive is stored as 0 and gives false.
    constexpr bool setRadius(float r) {
        bool const positive = r > 0;
        radius = positive ? r : 0;
        return positive;
    }

    /// The number of common points (0, 1 or 2) of the two outlines. Both points are always written;
    /// only as many as the number says mean anything. Concentric circles give NaN.
    int getIntersectionPoints(Circle other, Vector2D* p1, Vector2D* p2) const;

    /// The area of the overlap. Exact only while neither center lies beyond the common chord, on
    /// the other circle's side of it.
    float getIntersectionArea(Circle other) const;

    /// "c:( x , y ), r:radius", without a line end.
    void show(std::ostream& os) const;
};

/// An axis-aligned rectangle, from any two opposite corners.
struct Rectangle {
    Vector2D cornerMaxXMinY;
    Vector2D cornerMinXMaxY;

    constexpr Rectangle(Vector2D pos1, Vector2D pos2) { setRectanglePoints(pos1, pos2); }

    constexpr void setRectanglePoints(Vector2D pos1, Vector2D pos2) {
        cornerMaxXMinY = {std::max(pos1.x, pos2.x), std::min(pos1.y, pos2.y), CARTESIAN};
        cornerMinXMaxY = {std::min(pos1.x, pos2.x), std::max(pos1.y, pos2.y), CARTESIAN};
    }

    /// Strictly inside: a point on an edge is outside.
    constexpr bool isInside(Vector2D pos) const {
        return cornerMinXMaxY.x < pos.x && pos.x < cornerMaxXMinY.x && cornerMaxXMinY.y < pos.y &&
               pos.y < cornerMinXMaxY.y;
    }

    /// Writes "rect(corner corner)" to standard output, whatever stream it is given.
    void show(std::ostream& os) const;
};
