#include "tests/geometry/CapturedStream.h"
#include "tests/geometry/Sweep.h"

#include <iostream>

namespace {

using Shapes = Sweep;

constexpr Vector2D at(float x, float y) {
    return {x, y, CARTESIAN};
}

constexpr Rectangle BOX(at(10, -5), at(-10, 5));
static_assert(BOX.isInside(at(9.9F, 4.9F)) && BOX.isInside(at(-9.9F, -4.9F)));
static_assert(!BOX.isInside(at(10, 0)) && !BOX.isInside(at(-10, 0)));
static_assert(!BOX.isInside(at(0, 5)) && !BOX.isInside(at(0, -5)));
static_assert(Rectangle(at(-10, -5), at(10, 5)).cornerMaxXMinY == BOX.cornerMaxXMinY);
static_assert(Circle().center == at(-1000, -1000) && Circle(at(1, 2), -1).radius == 0);
static_assert(Circle().setRadius(3) && !Circle().setCircle(at(0, 0), 0));

template <class Shape>
std::string text(Shape const& shape) {
    std::ostringstream os;
    shape.show(os);
    return os.str();
}

TEST_F(Shapes, LineAgreesWithProjectionsOfVectors) {
    for (int i = 0; i < COUNT; ++i) {
        Vector2D const p1 = point();
        Vector2D const p2 = point();
        Vector2D const pos = point();
        if (std::fabs(p1.x - p2.x) < 2)
            continue; // so steep that the float coefficients lose digits

        Complex const along = toComplex(p2) - toComplex(p1);
        double const t = ((toComplex(pos) - toComplex(p1)) * std::conj(along)).real() /
                         std::norm(along); // 0 in p1, 1 in p2
        Complex const foot = toComplex(p1) + t * along;

        Line const line = Line::makeLineFromTwoPoints(p1, p2);
        ASSERT_LT(std::abs(toComplex(line.getPointOnLineClosestTo(pos)) - foot), 2e-3);
        ASSERT_NEAR(line.distanceToPoint(pos), std::abs(toComplex(pos) - foot), 2e-3);
        ASSERT_NEAR(line.getYGivenX(p1.x), p1.y, 1e-3);
        if (std::fabs(t) > 0.01 && std::fabs(t - 1) > 0.01) {
            ASSERT_EQ(line.isInBetween(pos, p1, p2), t > 0 && t < 1);
        }

        Line const clockwise = Line::makeLineFromPositionAndAngle(p1, -p1.getDirection());
        ASSERT_NEAR(clockwise.distanceToPoint(at(0, 0)), 0, 2e-2) << p1;
    }
}

TEST_F(Shapes, OddLines) {
    Line const vertical = Line::makeLineFromTwoPoints(at(1, 0), at(1.00005F, 5));
    EXPECT_EQ(text(vertical), "x = 1.00005");
    EXPECT_EQ(vertical.getPointOnLineClosestTo(at(7, 3)), at(1.00005F, 3));
    EXPECT_EQ(Line::makeLineFromTwoPoints(at(NAN, 0), at(0, 0)).a, 0); // no slope to be had

    Line const horizontal = Line::makeLineFromTwoPoints(at(0, 0), at(1, 0));
    EXPECT_EQ(horizontal.distanceToPoint(at(3, 2)), 2);
    EXPECT_EQ(horizontal.getIntersection(vertical), at(1.00005F, 0));
    EXPECT_EQ(vertical.getIntersection(horizontal), at(1.00005F, 0));
    EXPECT_FALSE(horizontal.isInBetween(at(3, 1), at(0, 0), at(2, 0)));
    EXPECT_TRUE(horizontal.isInBetween(at(2, 1), at(0, 0), at(2, 0)));

    // Lines with the same b count as parallel; so do slope 1 and its perpendiculars.
    EXPECT_EQ(Line(1, 2, 3).getIntersection(Line(5, 2, 1)), at(0, 0));
    EXPECT_EQ(Line::makeLineFromTwoPoints(at(0, 0), at(2, 2)).distanceToPoint(at(3, 4)), 5);
}

TEST_F(Shapes, LineQuestionsWithoutAnswerAreReported) {
    CapturedStream const err(std::cerr);
    EXPECT_EQ(Line(0, 1, -3).getYGivenX(5), 0);
    EXPECT_EQ(Line(1, 0, -3).getXGivenY(5), 0);
    EXPECT_EQ(err.text(), "(Line::getYGivenX) Cannot calculate Y coordinate: x = 3\n"
                          "(Line::getXGivenY) Cannot calculate X coordinate\n");
    EXPECT_EQ(Line(1, -2, 4).getXGivenY(8), 6);
}

TEST_F(Shapes, LineMeetsCircles) {
    for (int i = 0; i < COUNT; ++i) {
        Circle const circle(point(), number(0.5F, 20));
        Vector2D const from = point();
        // Every tenth line is vertical.
        Vector2D const to = i % 10 == 0 ? at(from.x, from.y + 1) : point();
        if (i % 10 != 0 && std::fabs(from.x - to.x) < 5) continue;
        Line const line = Line::makeLineFromTwoPoints(from, to);

        Vector2D points[2];
        int const count = line.getCircleIntersectionPoints(circle, &points[0], &points[1]);
        double const reach = circle.radius - line.distanceToPoint(circle.center);
        if (std::fabs(reach) > 0.02) {
            ASSERT_EQ(count, reach > 0 ? 2 : 0) << line;
        }
        if (count == 2 && line.a != 0) {
            ASSERT_GT(points[0].x, points[1].x);
        }
        for (int k = 0; k < count; ++k) {
            ASSERT_NEAR(points[k].getDistanceTo(circle.center), circle.radius, 0.01) << line;
            ASSERT_NEAR(line.distanceToPoint(points[k]), 0, 0.01) << line;
        }
    }
}

/// One circle's share of an overlap, behind a chord. Kept: a chord beyond the center counts as one
/// on this side of it, so that the sum is right only for chords between the centers.
double share(double radius, double toChord) {
    double const cosine = std::fabs(toChord) / radius;
    return radius * radius * (std::acos(cosine) - cosine * std::sqrt(1 - cosine * cosine));
}

TEST_F(Shapes, CircleMeetsAndOverlapsCircles) {
    for (int i = 0; i < 2000; ++i) {
        Circle const one(point(), number(1, 20));
        Circle const two(one.center + Vector2D(number(1, 40), number(0, 360), POLAR),
                         number(1, 20));
        double const d = one.center.getDistanceTo(two.center);
        double const r0 = one.radius;
        double const r1 = two.radius;
        double const clearance = std::min(r0 + r1 - d, d - std::fabs(r0 - r1));
        if (std::fabs(clearance) < 0.01) continue;

        Vector2D points[2];
        ASSERT_EQ(one.getIntersectionPoints(two, &points[0], &points[1]), clearance > 0 ? 2 : 0);
        // The point on the left of the way to the other center comes first.
        Complex const way = toComplex(two.center - one.center);
        ASSERT_GT((toComplex(points[0] - points[1]) * std::conj(way)).imag(), -1e-3);
        for (Vector2D const& p : points) {
            if (clearance < 0) break;
            ASSERT_NEAR(p.getDistanceTo(one.center), r0, 1e-3);
            ASSERT_NEAR(p.getDistanceTo(two.center), r1, 1e-3);
        }
        double const toChord = (d * d + r0 * r0 - r1 * r1) / (2 * d);
        double const area = clearance > 0 ? share(r0, toChord) + share(r1, d - toChord)
                            : d > r0 + r1 ? 0
                                          : PI * std::pow(std::min(r0, r1), 2);
        ASSERT_NEAR(one.getIntersectionArea(two), area, 2e-3 * (1 + area));
    }
}

TEST_F(Shapes, Touching) {
    Circle const one(at(0, 0), 1);
    Vector2D p1;
    Vector2D p2;
    EXPECT_EQ(Line(1, 0, -1).getCircleIntersectionPoints(one, &p1, &p2), 1);
    EXPECT_EQ(p1, at(0, 1));
    EXPECT_EQ(one.getIntersectionPoints(Circle(at(2, 0), 1), &p1, &p2), 1);
    EXPECT_EQ(p1, at(1, 0));
    EXPECT_EQ(one.getIntersectionArea(one), static_cast<float>(PI));
}

TEST_F(Shapes, Texts) {
    EXPECT_EQ(text(Line(1, -2, 1)), "y = 2x - 1");
    EXPECT_EQ(text(Line(2, 1, -2)), "y = -0.5x + 1");
    EXPECT_EQ(text(Line(1, 0, 3)), "y = - 3");
    EXPECT_EQ(text(Line(1, 0, 0)), "y = ");
    EXPECT_EQ(text(Circle(at(1, 2), 0.5F)), "c:( 1, 2 ), r:0.5");

    CapturedStream const out(std::cout);
    EXPECT_EQ(text(BOX), ""); // to standard output, whatever it is given
    EXPECT_EQ(out.text(), "rect(( 10, -5 ) ( -10, 5 ))");
}

} // namespace
