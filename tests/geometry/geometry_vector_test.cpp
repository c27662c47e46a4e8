#include "tests/geometry/CapturedStream.h"
#include "tests/geometry/Sweep.h"

#include <gtest/gtest.h>

#include <iostream>
#include <limits>

namespace {

constexpr Vector2D CORNER(52, -34, CARTESIAN);
static_assert((CORNER + CORNER) / 2 == CORNER && 2 * CORNER - CORNER == CORNER);
static_assert(sizeof(Vector2D) == 2 * sizeof(float));

/// Vectors up to 100 m: a few roundings of their float coordinates, and of float angles.
constexpr double TOLERANCE = 1e-4;

double distance(const Vector2D& v, Complex expected) {
    return std::abs(toComplex(v) - expected);
}

TEST(Vector, PolarIsClockwiseAndOrigIsCounterClockwise) {
    Vector2D orig;
    orig.setVector2D_Orig(2, 90, POLAR);
    EXPECT_LT(distance(orig, {0, 2}), TOLERANCE);
    EXPECT_LT(distance(Vector2D(2, 90, POLAR), {0, -2}), TOLERANCE);

    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        const float r = sweep.number(0, 100);
        const float phi = sweep.number(-360, 360);
        ASSERT_LT(distance(Vector2D(r, phi, POLAR), static_cast<double>(r) * unit(-phi)),
                  TOLERANCE);
        orig.setVector2D_Orig(r, phi, POLAR);
        ASSERT_LT(distance(orig, static_cast<double>(r) * unit(phi)), TOLERANCE);
    }
}

TEST(Vector, FramesAgreeWithComplexNumbers) {
    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        const Vector2D p = sweep.point();
        const Vector2D origin = sweep.point();
        const float ang = sweep.number(-360, 360);

        Vector2D turned = p;
        ASSERT_EQ(turned.rotate(ang), turned);
        ASSERT_LT(distance(turned, toComplex(p) * unit(ang)), TOLERANCE);

        Vector2D relative = p;
        ASSERT_EQ(relative.globalToRelative(origin, ang), relative);
        ASSERT_LT(distance(relative, (toComplex(p) - toComplex(origin)) * unit(-ang)), TOLERANCE);
        ASSERT_EQ(relative.relativeToGlobal(origin, ang), relative);
        ASSERT_LT(distance(relative, toComplex(p)), 2 * TOLERANCE);
    }
}

TEST(Vector, LengthsDistancesAndFractions) {
    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        Vector2D p = sweep.point();
        const Vector2D q = sweep.point();
        ASSERT_NEAR(p.getDistanceTo(q), std::abs(toComplex(p) - toComplex(q)), TOLERANCE);
        const float frac = sweep.number(-1, 2);
        const Complex between = toComplex(p) + (toComplex(q) - toComplex(p)) * Complex(frac);
        ASSERT_LT(distance(p.getVector2DOnLineFraction(q, frac), between), TOLERANCE);

        const float direction = p.getDirection();
        const float len = sweep.number(0.1F, 100);
        ASSERT_EQ(p.setLength(len), p);
        ASSERT_NEAR(p.getMagnitude(), len, TOLERANCE);
        ASSERT_LT(angleBetween(p.getDirection(), direction), TOLERANCE);
    }
}

TEST(Vector, SetLengthLeavesAVectorWithoutDirection) {
    EXPECT_EQ(Vector2D(0.00005F, 0, CARTESIAN).setLength(5), Vector2D(0.00005F, 0, CARTESIAN));
    EXPECT_EQ(Vector2D(3, 4, CARTESIAN).setLength(5), Vector2D(3, 4, CARTESIAN));
    EXPECT_EQ(Vector2D(0, -2, CARTESIAN).setLength(5), Vector2D(0, -5, CARTESIAN));
    EXPECT_EQ(Vector2D(0, -2, CARTESIAN).setLength(-1), Vector2D(-0.0F, 1, CARTESIAN));
}

TEST(Vector, InvalidVectors) {
    constexpr float INF = std::numeric_limits<float>::infinity();
    const float marks[] = {UNDEFINED_FLOAT, INF, -INF, std::numeric_limits<float>::quiet_NaN()};
    for (const float mark : marks) {
        EXPECT_TRUE(Vector2D(mark, 1, CARTESIAN).isInvalid()) << mark;
        EXPECT_TRUE(Vector2D(1, mark, CARTESIAN).isInvalid()) << mark;
    }
    EXPECT_FALSE(Vector2D(1e9F, 1e9F, CARTESIAN).isInvalid());
    EXPECT_FALSE(Vector2D(-UNDEFINED_FLOAT, 0, CARTESIAN).isInvalid());
}

TEST(Vector, Texts) {
    const CapturedStream out(std::cout);
    const Vector2D v(0.5F, -1234567, CARTESIAN);
    std::cout << v << "|";
    v.show(CARTESIAN);
    Vector2D().show(POLAR);
    EXPECT_EQ(out.text(), "( 0.5, -1.23457e+06 )|( 0.5, -1.23457e+06 )\n( r: 0, phi: 0  )");
}

} // namespace
