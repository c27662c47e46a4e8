#include "tests/geometry/Sweep.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();

/// Two roundings of an angle near 360 to float.
constexpr double ROUNDING = 6e-5;

TEST(Angles, TrigonometryAgreesWithComplexNumbers) {
    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        const float a = sweep.number(-720, 720);
        ASSERT_NEAR(cosDeg(a), unit(a).real(), 1e-6) << a;
        ASSERT_NEAR(sinDeg(a), unit(a).imag(), 1e-6) << a;
        ASSERT_NEAR(tanDeg(a) * unit(a).real(), unit(a).imag(), 1e-6 * (1 + std::fabs(tanDeg(a))));

        const Vector2D p = sweep.point();
        ASSERT_LT(angleBetween(atan2Deg(p.y, p.x), std::arg(toComplex(p)) * 180 / PI), ROUNDING);
        ASSERT_NEAR(tanDeg(atanDeg(p.x)) / p.x, 1, 1e-5 * (1 + std::fabs(p.x)));

        const float x = sweep.number(-1, 1);
        ASSERT_NEAR(unit(acosDeg(x)).real(), x, 1e-6);
        ASSERT_NEAR(unit(asinDeg(x)).imag(), x, 1e-6);
        ASSERT_NEAR(acosDeg(x) + asinDeg(x), 90, ROUNDING);
    }
}

TEST(Angles, ArgumentsBeyondTheRangeAreClamped) {
    EXPECT_EQ(acosDeg(1.5F), 0);
    EXPECT_EQ(acosDeg(-2), 180);
    EXPECT_EQ(asinDeg(3), 90);
    EXPECT_EQ(asinDeg(-1), -90);
}

TEST(Angles, Atan2OfNearlyNothingIsZero) {
    EXPECT_EQ(atan2Deg(0.00005F, -0.00005F), 0);
    EXPECT_EQ(atan2Deg(-0.00009F, 0), 0);
    EXPECT_NEAR(atan2Deg(0.0001F, -1), 180, 0.01);
    EXPECT_EQ(atan2Deg(0.00011F, 0), 90);
    EXPECT_EQ(atan2Deg(0, -1), 180);
    EXPECT_EQ(atan2Deg(-0.0F, -1), -180);
}

TEST(Angles, NormalisedAnglesKeepTheirDirection) {
    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        const float a = sweep.number(-1e5F, 1e5F);
        const float full = normalizeTo360Deg(a);
        ASSERT_TRUE(full >= 0 && full < 360) << a;
        ASSERT_LT(angleBetween(full, a), ROUNDING) << a;

        float turnByTurn = a;
        while (turnByTurn > 180)
            turnByTurn -= 360;
        while (turnByTurn < -180)
            turnByTurn += 360;
        ASSERT_EQ(normalizeTo180Deg(a), turnByTurn) << a;
    }
}

TEST(Angles, NormalisedBounds) {
    EXPECT_EQ(normalizeTo360Deg(-90), 270);
    for (const float wholeTurns : {720.0F, -360.0F, -0.0F, 0.0F}) {
        EXPECT_EQ(normalizeTo360Deg(wholeTurns), 0);
        EXPECT_FALSE(std::signbit(normalizeTo360Deg(wholeTurns)));
    }
    EXPECT_EQ(normalizeTo360Deg(-1e-9F), 360); // rounding, accepted
    EXPECT_EQ(normalizeTo180Deg(180), 180);
    EXPECT_EQ(normalizeTo180Deg(-180), -180);
    EXPECT_EQ(normalizeTo180Deg(540), 180);
    EXPECT_EQ(normalizeTo180Deg(-540), -180);
    EXPECT_EQ(normalizeTo180Deg(190), -170);
}

TEST(Angles, NormalisingEndsForMarkersAndInfinity) {
    EXPECT_LE(std::fabs(normalizeTo180Deg(UNDEFINED_FLOAT)), 180);
    EXPECT_LE(std::fabs(normalizeTo180Deg(-UNDEFINED_FLOAT)), 180);
    EXPECT_TRUE(std::isnan(normalizeTo180Deg(INF)));
    EXPECT_TRUE(std::isnan(normalizeTo360Deg(-INF)));
}

TEST(Angles, ConventionsConvertBothWays) {
    EXPECT_EQ(convertAngleTo180(90), -90);
    EXPECT_EQ(convertAngleTo180(180), -180);
    EXPECT_EQ(convertAngleTo180(270), 90);
    EXPECT_EQ(convertAngleTo360(180), 180);
    EXPECT_TRUE(std::signbit(convertAngleTo180(0)));

    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        const float clockwise = sweep.number(0, 360);
        const float counter = convertAngleTo180(clockwise);
        ASSERT_EQ(convertAngleTo360(counter), clockwise);
        const Complex direction = toComplex(Vector2D(1, clockwise, POLAR));
        ASSERT_NEAR(std::abs(direction - unit(counter)), 0, 1e-6) << clockwise;
    }
}

/// Open bounds for an interval that doesn't cross 0, closed ones otherwise. Away from the bounds,
/// the arcs from angMin tell.
bool expectedInInterval(int ang, int angMin, int angMax) {
    const auto turn = [](int a) { return (a % 360 + 360) % 360; };
    const bool crossesZero = turn(angMin) >= turn(angMax);
    if (turn(ang) == turn(angMin) || turn(ang) == turn(angMax)) return crossesZero;
    const int width = turn(angMax - angMin);
    return width == 0 || turn(ang - angMin) < width;
}

TEST(Angles, IntervalsTreatTheirBoundsBySort) {
    for (int ang = -330; ang < 360; ang += 30) {
        for (int angMin = -330; angMin < 360; angMin += 30) {
            for (int angMax = -330; angMax < 360; angMax += 30) {
                ASSERT_EQ(isAngInInterval(static_cast<float>(ang), static_cast<float>(angMin),
                                          static_cast<float>(angMax)),
                          expectedInInterval(ang, angMin, angMax))
                    << ang << " in " << angMin << ".." << angMax;
            }
        }
    }
    EXPECT_FALSE(isAngInInterval(10, 10, 20));
    EXPECT_TRUE(isAngInInterval(350, 350, 10));
    EXPECT_TRUE(isAngInInterval(5, 30, 30));
    EXPECT_TRUE(isAngInInterval(-10, 340, 20));
}

TEST(Angles, BisectorsAndDifferences) {
    Sweep sweep;
    for (int i = 0; i < Sweep::COUNT; ++i) {
        const float a1 = sweep.number(-360, 360);
        const float a2 = sweep.number(-360, 360);
        const float difference = getAngleDifference(a1, a2);
        ASSERT_LT(angleBetween(difference, static_cast<double>(a1) - a2), ROUNDING);
        ASSERT_EQ(getAbsAngleDifference(a1, a2), std::fabs(difference));
        if (std::fabs(difference) > 175) continue; // hardly a direction left
        const float half = getBisectorTwoAngles(a1, a2);
        ASSERT_LT(angleBetween(half, a2 + difference / 2.0), 3e-4) << a1 << " " << a2;
        ASSERT_LE(std::fabs(half), 180);
    }
    EXPECT_EQ(getBisectorTwoAngles(0, 180), 0);
    EXPECT_NEAR(std::fabs(getBisectorTwoAngles(170, -170)), 180, ROUNDING);
}

} // namespace
