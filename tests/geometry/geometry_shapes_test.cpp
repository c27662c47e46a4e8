#include "tests/geometry/CapturedStream.h"
#include "tests/geometry/Sweep.h"

#include <gtest/gtest.h>

#include <iostream>

namespace {

constexpr Vector2D at(float x, float y) {
    return {x, y, CARTESIAN};
}

constexpr Rectangle BOX(at(10, -5), at(-10, 5));
static_assert(BOX.isInside(at(9.9F, 4.9F)) && !BOX.isInside(at(10, 0)) && !BOX.isInside(at(0, -5)));
static_assert(Circle(at(-52, 0), 7.01F).radius == 7.01F && Circle().center == at(-1000, -1000));

std::string text(const Line& line) {
    std::ostringstream os;
    line.show(os);
    return os.str();
}

TEST(Line, AgreesWithProjectionsOfVectors) {
    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        const Vector2D p1 = sweep.point();
        const Vector2D p2 = sweep.point();
        const Vector2D pos = sweep.point();
        if (std::fabs(p1.x - p2.x) < 2)
            continue; // so steep that the float coefficients lose digits

        const Complex along = toComplex(p2) - toComplex(p1);
        const double t = ((toComplex(pos) - toComplex(p1)) * std::conj(along)).real() /
                         std::norm(along); // 0 in p1, 1 in p2
        const Complex foot = toComplex(p1) + t * along;

        const Line line = Line::makeLineFromTwoPoints(p1, p2);
        ASSERT_LT(std::abs(toComplex(line.getPointOnLineClosestTo(pos)) - foot), 2e-3);
        ASSERT_NEAR(line.distanceToPoint(pos), std::abs(toComplex(pos) - foot), 2e-3);
        ASSERT_NEAR(line.getYGivenX(p1.x), p1.y, 1e-3);
        if (std::fabs(t) > 0.01 && std::fabs(t - 1) > 0.01) {
            ASSERT_EQ(line.isInBetween(pos, p1, p2), t > 0 && t < 1);
        }

        const Line clockwise = Line::makeLineFromPositionAndAngle(p1, -p1.getDirection());
        ASSERT_NEAR(clockwise.distanceToPoint(at(0, 0)), 0, 2e-2) << p1;
    }
}

TEST(Line, VerticalAndHorizontalLines) {
    const Line vertical = Line::makeLineFromTwoPoints(at(1, 0), at(1.00005F, 5));
    EXPECT_EQ(vertical.a, 0);
    EXPECT_EQ(vertical.b, 1);
    EXPECT_EQ(vertical.c, -1.00005F);
    EXPECT_EQ(vertical.getPointOnLineClosestTo(at(7, 3)), at(1.00005F, 3));

    const Line horizontal = Line::makeLineFromTwoPoints(at(0, 0), at(1, 0));
    EXPECT_EQ(horizontal.getPointOnLineClosestTo(at(3, 2)), at(3, 0));
    EXPECT_EQ(horizontal.distanceToPoint(at(3, 2)), 2);
    EXPECT_EQ(horizontal.getIntersection(vertical), at(1.00005F, 0));
    EXPECT_EQ(vertical.getIntersection(horizontal), at(1.00005F, 0));
    EXPECT_TRUE(horizontal.isInBetween(at(1, 5), at(0, 0), at(2, 0)));
    EXPECT_FALSE(horizontal.isInBetween(at(3, 1), at(0, 0), at(2, 0)));
    EXPECT_TRUE(horizontal.isInBetween(at(2, 1), at(0, 0), at(2, 0)));
}

TEST(Line, QuestionsWithoutAnswerAreReported) {
    const CapturedStream err(std::cerr);
    EXPECT_EQ(Line(0, 1, -3).getYGivenX(5), 0);
    EXPECT_EQ(Line(1, 0, -3).getXGivenY(5), 0);
    EXPECT_EQ(err.text(), "(Line::getYGivenX) Cannot calculate Y coordinate: x = 3\n"
                          "(Line::getXGivenY) Cannot calculate X coordinate\n");
    EXPECT_EQ(Line(1, -2, 4).getXGivenY(8), 6);
}

TEST(Line, EqualCoefficientsOfXCountAsParallel) {
    EXPECT_EQ(Line(1, 2, 3).getIntersection(Line(5, 2, 1)), at(0, 0));

    // Slope 1 and its perpendiculars share b, so that every foot is the origin.
    const Line diagonal = Line::makeLineFromTwoPoints(at(0, 0), at(2, 2));
    EXPECT_EQ(diagonal.getYGivenX(3), 3);
    EXPECT_EQ(diagonal.getPointOnLineClosestTo(at(5, 3)), at(0, 0));
    EXPECT_EQ(diagonal.distanceToPoint(at(3, 4)), 5);
    EXPECT_TRUE(diagonal.isInBetween(at(50, 50), at(0, 0), at(2, 2)));
}

TEST(Line, Texts) {
    EXPECT_EQ(text(Line(1, -2, 1)), "y = 2x - 1");
    EXPECT_EQ(text(Line(1, 0.5F, -1)), "y = -0.5x + 1");
    EXPECT_EQ(text(Line(1, 0, 3)), "y = - 3");
    EXPECT_EQ(text(Line(1, 0, 0)), "y = ");
    EXPECT_EQ(text(Line(0, 2, -3)), "x = 1.5");
}

TEST(Line, MeetsCircles) {
    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        const Circle circle(sweep.point(), sweep.number(0.5F, 20));
        const Vector2D from = sweep.point();
        // Every tenth line is vertical.
        const Vector2D to = i % 10 == 0 ? at(from.x, from.y + 1) : sweep.point();
        if (i % 10 != 0 && std::fabs(from.x - to.x) < 5) continue;
        const Line line = Line::makeLineFromTwoPoints(from, to);

        Vector2D points[2];
        const int count = line.getCircleIntersectionPoints(circle, &points[0], &points[1]);
        const double reach = circle.radius - line.distanceToPoint(circle.center);
        if (std::fabs(reach) > 0.02) {
            ASSERT_EQ(count, reach > 0 ? 2 : 0) << line;
        }
        for (int k = 0; k < count; ++k) {
            ASSERT_NEAR(points[k].getDistanceTo(circle.center), circle.radius, 0.01) << line;
            ASSERT_NEAR(line.distanceToPoint(points[k]), 0, 0.01) << line;
        }
    }
}

TEST(Line, CountsAndOrderOfCirclePoints) {
    const Circle circle(at(0, 0), 1);
    Vector2D p1;
    Vector2D p2;
    EXPECT_EQ(Line(1, 0, 0).getCircleIntersectionPoints(circle, &p1, &p2), 2);
    EXPECT_EQ(p1, at(1, 0));
    EXPECT_EQ(p2, at(-1, 0));
    EXPECT_EQ(Line(1, 0, -1).getCircleIntersectionPoints(circle, &p1, &p2), 1);
    EXPECT_EQ(p1, at(0, 1));
    EXPECT_EQ(Line(1, 0, -2).getCircleIntersectionPoints(circle, &p1, &p2), 0);
}

TEST(Circle, NormalisesItsRadius) {
    Circle circle(at(1, 2), -1);
    EXPECT_EQ(circle.radius, 0);
    EXPECT_TRUE(circle.setRadius(3));
    EXPECT_FALSE(circle.setRadius(-3));
    EXPECT_FALSE(circle.setCircle(at(0, 0), 0));
    EXPECT_TRUE(circle.setCircle(at(1, 2), 0.5F));
    std::ostringstream os;
    circle.show(os);
    EXPECT_EQ(os.str(), "c:( 1, 2 ), r:0.5");
}

/// The overlap of circles on the x axis at 0 and d, added up in upright slices.
double slicedOverlap(double r0, double r1, double d) {
    constexpr int SLICES = 4000;
    const double width = 2 * r0 / SLICES;
    double area = 0;
    for (int i = 0; i < SLICES; ++i) {
        const double x = -r0 + (i + 0.5) * width;
        const double h0 = r0 * r0 - x * x;
        const double h1 = r1 * r1 - (x - d) * (x - d);
        area += 2 * std::sqrt(std::max(0.0, std::min(h0, h1))) * width;
    }
    return area;
}

TEST(Circle, MeetsAndOverlapsCircles) {
    Sweep sweep;
    for (int i = 0; i < 2000; ++i) {
        const Circle one(sweep.point(), sweep.number(1, 20));
        const Circle two(one.center + Vector2D(sweep.number(1, 40), sweep.number(0, 360), POLAR),
                         sweep.number(1, 20));
        const double d = one.center.getDistanceTo(two.center);
        const double r0 = one.radius;
        const double r1 = two.radius;
        const double clearance = std::min(r0 + r1 - d, d - std::fabs(r0 - r1));
        if (std::fabs(clearance) < 0.01) continue;

        Vector2D points[2];
        ASSERT_EQ(one.getIntersectionPoints(two, &points[0], &points[1]), clearance > 0 ? 2 : 0);
        for (const Vector2D& p : points) {
            if (clearance < 0) break;
            ASSERT_NEAR(p.getDistanceTo(one.center), r0, 1e-3);
            ASSERT_NEAR(p.getDistanceTo(two.center), r1, 1e-3);
        }
        // Beyond this the formula is off, on purpose: a center lies on the far side of the chord.
        const bool exact = clearance < 0 || std::fabs(r0 * r0 - r1 * r1) < d * d;
        const float area = one.getIntersectionArea(two);
        if (exact) {
            ASSERT_NEAR(area, slicedOverlap(r0, r1, d), 2e-3 * (1 + area));
        }
    }
}

TEST(Circle, OddOverlaps) {
    const Circle one(at(0, 0), 1);
    Vector2D p1;
    Vector2D p2;
    EXPECT_EQ(one.getIntersectionPoints(Circle(at(1, 0), 1), &p1, &p2), 2);
    EXPECT_NEAR(p1.y, 0.8660254, 1e-6); // left of the way to the other center comes first
    EXPECT_NEAR(p2.y, -0.8660254, 1e-6);
    EXPECT_EQ(one.getIntersectionPoints(Circle(at(2, 0), 1), &p1, &p2), 1);
    EXPECT_EQ(p1, at(1, 0));
    EXPECT_EQ(one.getIntersectionArea(Circle(at(3, 0), 1)), 0);
    EXPECT_EQ(one.getIntersectionArea(one), static_cast<float>(PI));
    EXPECT_EQ(one.getIntersectionArea(Circle(at(1, 0), 5)), static_cast<float>(PI));

    // The center of the small circle lies beyond the chord: asin(h/r) stands for its obtuse angle.
    const double h = std::sqrt(1 - 0.25 * 0.25);
    const double kept = std::asin(h) - h * 0.25 + std::asin(h / 2) * 4 - h * 1.75;
    EXPECT_NEAR(one.getIntersectionArea(Circle(at(1.5F, 0), 2)), kept, 1e-5);
}

TEST(Rectangle, ShowsOnStandardOutputWhateverItIsGiven) {
    EXPECT_EQ(Rectangle(at(-10, -5), at(10, 5)).cornerMaxXMinY, BOX.cornerMaxXMinY);
    const CapturedStream out(std::cout);
    std::ostringstream given;
    BOX.show(given);
    EXPECT_EQ(given.str(), "");
    EXPECT_EQ(out.text(), "rect(( 10, -5 ) ( -10, 5 ))");
}

} // namespace
