#include "tests/geometry/CapturedStream.h"
#include "tests/geometry/Sweep.h"

#include <iostream>
#include <limits>

namespace {

using Vector = Sweep;

constexpr Vector2D CORNER(52, -34, CARTESIAN);
static_assert((CORNER + CORNER) / 2 == CORNER && 2 * CORNER - CORNER == CORNER);

/// Vectors up to 100 m: a few roundings of their float coordinates, and of float angles.
constexpr double TOLERANCE = 1e-4;

double distance(Vector2D const& v, Complex expected) {
    return std::abs(toComplex(v) - expected);
}

TEST_F(Vector, PolarFormsAndFramesAgreeWithComplexNumbers) {
    EXPECT_LT(distance(Vector2D(2, 90, POLAR), {0, -2}), TOLERANCE); // clockwise
    for (int i = 0; i < COUNT; ++i) {
        float const length = number(0, 100);
        float const ang = number(-360, 360);
        ASSERT_LT(distance(Vector2D(length, ang, POLAR), Complex(length) * unit(-ang)), TOLERANCE);
        Vector2D orig;
        orig.setVector2D_Orig(length, ang, POLAR);
        ASSERT_LT(distance(orig, Complex(length) * unit(ang)), TOLERANCE);

        Vector2D const p = point();
        Vector2D const origin = point();
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

TEST_F(Vector, LengthsDistancesAndFractions) {
    for (int i = 0; i < COUNT; ++i) {
        Vector2D p = point();
        Vector2D const q = point();
        ASSERT_NEAR(p.getDistanceTo(q), std::abs(toComplex(p) - toComplex(q)), TOLERANCE);
        float const frac = number(-1, 2);
        Complex const between = toComplex(p) + (toComplex(q) - toComplex(p)) * Complex(frac);
        ASSERT_LT(distance(p.getVector2DOnLineFraction(q, frac), between), TOLERANCE);

        Complex const direction = toComplex(p) / std::abs(toComplex(p));
        float const len = number(-100, 100); // a negative length turns round
        ASSERT_EQ(p.setLength(len), p);
        ASSERT_LT(distance(p, direction * Complex(len)), TOLERANCE);
    }
    constexpr Vector2D WITHOUT_DIRECTION(0.00005F, 0, CARTESIAN);
    EXPECT_EQ(Vector2D(WITHOUT_DIRECTION).setLength(5), WITHOUT_DIRECTION);
}

TEST_F(Vector, InvalidVectors) {
    constexpr float INF = std::numeric_limits<float>::infinity();
    for (float const mark : {UNDEFINED_FLOAT, INF, -INF, std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_TRUE(Vector2D(mark, 1, CARTESIAN).isInvalid()) << mark;
        EXPECT_TRUE(Vector2D(1, mark, CARTESIAN).isInvalid()) << mark;
    }
    EXPECT_FALSE(Vector2D(1e9F, -UNDEFINED_FLOAT, CARTESIAN).isInvalid());
}

TEST_F(Vector, Texts) {
    CapturedStream const out(std::cout);
    Vector2D const v(0.5F, -1234567, CARTESIAN);
    std::cout << v << "|";
    v.show(CARTESIAN);
    Vector2D().show(POLAR);
    EXPECT_EQ(out.text(), "( 0.5, -1.23457e+06 )|( 0.5, -1.23457e+06 )\n( r: 0, phi: 0  )");
}

} // namespace
