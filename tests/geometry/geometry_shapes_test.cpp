#include <iostream>

#include "tests/geometry/CapturedStream.h"
#include "tests/geometry/Sweep.h"

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

TEST_F(Shapes, LinesAgreeWithProjectionsOfVectors) {
    for (int i = 0; i < COUNT; ++i) {
        Vector2D const p1 = point();
        // Every tenth line is vertical; one too steep loses digits of its coefficients.
        Vector2D const p2 = i % 10 == 0 ? p1 + at(0, number(1, 9)) : point();
        if (i % 10 != 0 && std::fabs(p1.x - p2.x) < 5) continue;
        Vector2D const pos = point();
        Complex const along = toComplex(p2) - toComplex(p1);
        Complex const t = (toComplex(pos) - toComplex(p1)) / along; // 0 in p1, 1 in p2
        Complex const foot = toComplex(p1) + t.real() * along;
        double const away = std::abs(t.imag() * along);

        Line const line = Line::makeLineFromTwoPoints(p1, p2);
        ASSERT_TRUE(agree(line.getPointOnLineClosestTo(pos), foot, 2e-3));
        ASSERT_NEAR(line.distanceToPoint(pos), away, 2e-3);
        if (std::fabs(std::fabs(t.real() - 0.5) - 0.5) > 0.01) {
            ASSERT_EQ(line.isInBetween(pos, p1, p2), t.real() > 0 && t.real() < 1);
        }
        Line const clockwise = Line::makeLineFromPositionAndAngle(p1, -p1.getDirection());
        ASSERT_NEAR(clockwise.distanceToPoint(at(0, 0)), 0, 2e-2) << p1;

        Circle const circle(pos, number(0.5F, 20));
        double const half2 = circle.radius * circle.radius - away * away; // of the chord
        if (std::fabs(half2) < 0.1) continue;
        Vector2D points[2];
        int const count = line.getCircleIntersectionPoints(circle, &points[0], &points[1]);
        ASSERT_EQ(count, half2 > 0 ? 2 : 0) << line;
        if (count == 0) continue;
        Complex half = along / std::abs(along) * std::sqrt(half2);
        if (i % 10 != 0 && half.real() < 0) half = -half; // the greater x first, or else y
        ASSERT_TRUE(agree(points[0], foot + half, 0.02)) << line;
        ASSERT_TRUE(agree(points[1], foot - half, 0.02)) << line;
    }
}

TEST_F(Shapes, OddLines) {
    Line const vertical = Line::makeLineFromTwoPoints(at(1, 0), at(1.00005F, 5));
    Line const horizontal = Line::makeLineFromTwoPoints(at(0, 0), at(1, 0));
    EXPECT_EQ(horizontal.getIntersection(vertical), at(1.00005F, 0));
    EXPECT_EQ(vertical.getIntersection(horizontal), at(1.00005F, 0));
    EXPECT_EQ(Line::makeLineFromTwoPoints(at(NAN, 0), at(0, 0)).a, 0); // no slope to be had
    EXPECT_TRUE(horizontal.isInBetween(at(2, 1), at(0, 0), at(2, 0)));
    EXPECT_TRUE(horizontal.isInBetween(at(0, 1), at(0, 0), at(2, 0)));

    // Lines with the same b count as parallel; so do slope 1 and its perpendiculars.
    EXPECT_EQ(Line(1, 2, 3).getIntersection(Line(5, 2, 1)), at(0, 0));
    EXPECT_EQ(Line::makeLineFromTwoPoints(at(0, 0), at(2, 2)).distanceToPoint(at(3, 4)), 5);

    EXPECT_EQ(Line(1, -2, 4).getXGivenY(8), 6);
    CapturedStream const err(std::cerr);
    EXPECT_EQ(Line(0, 1, -3).getYGivenX(5), 0);
    EXPECT_EQ(Line(1, 0, -3).getXGivenY(5), 0);
    EXPECT_EQ(err.text(), "(Line::getYGivenX) Cannot calculate Y coordinate: x = 3\n"
                          "(Line::getXGivenY) Cannot calculate X coordinate\n");
}

/// One circle's share of an overlap, behind a chord. Intentional: a chord beyond the center counts
/// as one on this side of it, so that the sum is right only for chords between the centers.
double share(double radius, double cosine) {
    return radius * radius * (std::acos(cosine) - cosine * std::sqrt(1 - cosine * cosine));
}

TEST_F(Shapes, CircleMeetsAndOverlapsCircles) {
    for (int i = 0; i < 2000; ++i) {
        double const d = number(1, 40);
        Complex const way = unit(number(0, 360));
        double const r0 = number(1, 20);
        double const r1 = number(1, 20);
        double const cosine = (d * d + r0 * r0 - r1 * r1) / (2 * d * r0); // at the first center
        if (std::fabs(std::fabs(cosine) - 1) < 1e-3) continue;
        Circle const one(point(), static_cast<float>(r0));
        Complex const center = toComplex(one.center);
        Circle const two(
            one.center + Vector2D(static_cast<float>(d), -static_cast<float>(degrees(way)), POLAR),
            static_cast<float>(r1));
        Vector2D p[2];
        ASSERT_EQ(one.getIntersectionPoints(two, &p[0], &p[1]), std::fabs(cosine) < 1 ? 2 : 0);
        double area = d > r0 + r1 ? 0 : PI * std::pow(std::min(r0, r1), 2);
        if (std::fabs(cosine) < 1) {
            area = share(r0, std::fabs(cosine)) + share(r1, std::fabs(d - r0 * cosine) / r1);
            // The point on the left of the way to the other center comes first.
            ASSERT_TRUE(agree(p[0], center + way * std::polar(r0, std::acos(cosine)), 0.01));
            ASSERT_TRUE(agree(p[1], center + way * std::polar(r0, -std::acos(cosine)), 0.01));
        }
        ASSERT_NEAR(one.getIntersectionArea(two), area, 2e-3 * (1 + area));
    }
    // A line through the centre, however steep, meets the circle a radius away on either side.
    for (int i = 0; i < 2000; ++i) {
        Circle const goal(at(-52, 0), 7);
        double const beside = std::pow(10, number(-4, 1)) + 1e-4;
        Complex const other(-52 + (i % 2 == 0 ? beside : -beside), number(5, 34));
        Vector2D const drawn =
            at(static_cast<float>(other.real()), static_cast<float>(other.imag()));
        Complex const way = toComplex(drawn) - Complex(-52, 0);
        Complex const reach = way * (7 / std::abs(way));
        Vector2D p[2];
        Line const line = Line::makeLineFromTwoPoints(drawn, goal.center);
        ASSERT_EQ(line.getCircleIntersectionPoints(goal, &p[0], &p[1]), 2);
        std::size_t const far = p[0].y > p[1].y ? 0 : 1;
        ASSERT_TRUE(agree(p[far], Complex(-52, 0) + reach, 1e-3)) << other;
        ASSERT_TRUE(agree(p[1 - far], Complex(-52, 0) - reach, 1e-3)) << other;
    }
    Circle const one(at(0, 0), 1);
    Vector2D p1;
    Vector2D p2;
    EXPECT_EQ(Line(1, 0, -1).getCircleIntersectionPoints(one, &p1, &p2), 1); // touches
    EXPECT_EQ(one.getIntersectionPoints(Circle(at(0, 2), 1), &p2, &p2), 1);
    EXPECT_TRUE(p1 == at(0, 1) && p2 == p1);
    EXPECT_EQ(one.getIntersectionArea(one), static_cast<float>(PI));
}

TEST_F(Shapes, Texts) {
    CapturedStream const out(std::cout);
    Line(1, -2, 1).show(std::cout);
    std::cout << "|" << Line(2, 1, -2) << "|" << Line(1, 0, 0) << "|";
    Circle(at(1, 2), 0.5F).show(std::cout);
    BOX.show(std::cerr); // to standard output, whatever it is given
    EXPECT_EQ(out.text(),
              "y = 2x - 1|y = -0.5x + 1|y = |c:( 1, 2 ), r:0.5rect(( 10, -5 ) ( -10, 5 ))");
}

} // namespace
