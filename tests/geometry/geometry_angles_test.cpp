#include "tests/geometry/Sweep.h"

#include <limits>

namespace {

using Angles = Sweep;

constexpr float INF = std::numeric_limits<float>::infinity();

/// Two roundings of an angle near 360 to float.
constexpr double ROUNDING = 6e-5;

TEST_F(Angles, TrigonometryAgreesWithComplexNumbers) {
    for (int i = 0; i < COUNT; ++i) {
        float const a = number(-720, 720);
        ASSERT_NEAR(cosDeg(a), unit(a).real(), 1e-6) << a;
        ASSERT_NEAR(sinDeg(a), unit(a).imag(), 1e-6) << a;
        ASSERT_NEAR(tanDeg(a) * unit(a).real(), unit(a).imag(), 1e-6 * (1 + std::fabs(tanDeg(a))));

        Vector2D const p = point();
        ASSERT_LT(angleBetween(atan2Deg(p.y, p.x), std::arg(toComplex(p)) * 180 / PI), ROUNDING);
        ASSERT_NEAR(tanDeg(atanDeg(p.x)) / p.x, 1, 1e-5 * (1 + std::fabs(p.x)));

        float const x = number(-1, 1);
        ASSERT_NEAR(unit(acosDeg(x)).real(), x, 1e-6);
        ASSERT_NEAR(unit(asinDeg(x)).imag(), x, 1e-6);
        ASSERT_NEAR(acosDeg(x) + asinDeg(x), 90, ROUNDING);
    }
}

TEST_F(Angles, BoundsAndMarkers) {
    EXPECT_EQ(acosDeg(1.5F), 0);
    EXPECT_EQ(acosDeg(-2), 180);
    EXPECT_EQ(asinDeg(3), 90);
    EXPECT_EQ(asinDeg(-1), -90);
    EXPECT_EQ(atan2Deg(0.00005F, -0.00005F), 0); // nearly nothing has no direction
    EXPECT_NEAR(atan2Deg(0.0001F, -1), 180, 0.01);
    EXPECT_EQ(atan2Deg(0.00011F, 0), 90);
    EXPECT_EQ(atan2Deg(-0.0F, -1), -180);

    for (float const wholeTurns : {720.0F, -360.0F, -0.0F}) {
        EXPECT_EQ(normalizeTo360Deg(wholeTurns), 0);
        EXPECT_FALSE(std::signbit(normalizeTo360Deg(wholeTurns)));
    }
    EXPECT_EQ(normalizeTo360Deg(-1e-9F), 360); // rounding, accepted
    for (float const bound : {180.0F, -180.0F}) {
        EXPECT_EQ(normalizeTo180Deg(bound), bound);
        EXPECT_EQ(normalizeTo180Deg(3 * bound), bound);
    }
    EXPECT_FALSE(std::signbit(normalizeTo180Deg(-720)));
    EXPECT_LE(std::fabs(normalizeTo180Deg(-UNDEFINED_FLOAT)), 180); // and ends
    EXPECT_TRUE(std::isnan(normalizeTo180Deg(INF)));
    EXPECT_TRUE(std::isnan(normalizeTo360Deg(-INF)));

    EXPECT_EQ(convertAngleTo180(180), -180);
    EXPECT_EQ(convertAngleTo360(180), 180);
    EXPECT_TRUE(std::signbit(convertAngleTo180(0)));
}

TEST_F(Angles, NormalisedAndConvertedAnglesKeepTheirDirection) {
    for (int i = 0; i < COUNT; ++i) {
        float const a = number(-1e5F, 1e5F);
        float const full = normalizeTo360Deg(a);
        ASSERT_TRUE(full >= 0 && full < 360) << a;
        ASSERT_LT(angleBetween(full, a), ROUNDING) << a;
        float const half = normalizeTo180Deg(a);
        ASSERT_TRUE(half >= -180 && half <= 180) << a;
        ASSERT_EQ(angleBetween(half, a), 0) << a;

        float const counter = convertAngleTo180(full);
        ASSERT_LE(std::fabs(counter), 180) << full;
        ASSERT_EQ(angleBetween(counter, -full), 0) << full;
        ASSERT_EQ(convertAngleTo360(counter), full);
    }
}

/// Open bounds for an interval that doesn't cross 0, closed ones otherwise. Away from the bounds,
/// the arcs from angMin tell.
bool expectedInInterval(int ang, int angMin, int angMax) {
    auto const turn = [](int a) { return (a % 360 + 360) % 360; };
    bool const crossesZero = turn(angMin) >= turn(angMax);
    if (turn(ang) == turn(angMin) || turn(ang) == turn(angMax)) return crossesZero;
    int const width = turn(angMax - angMin);
    return width == 0 || turn(ang - angMin) < width;
}

TEST_F(Angles, IntervalsTreatTheirBoundsBySort) {
    constexpr int STEPS = 23; // of 30 degrees, from -330 to 330
    auto const angleOf = [](int step) { return step % STEPS * 30 - 330; };
    for (int i = 0; i < STEPS * STEPS * STEPS; ++i) {
        int const ang = angleOf(i);
        int const angMin = angleOf(i / STEPS);
        int const angMax = angleOf(i / STEPS / STEPS);
        ASSERT_EQ(isAngInInterval(static_cast<float>(ang), static_cast<float>(angMin),
                                  static_cast<float>(angMax)),
                  expectedInInterval(ang, angMin, angMax))
            << ang << " in " << angMin << ".." << angMax;
    }
}

TEST_F(Angles, BisectorsAndDifferences) {
    for (int i = 0; i < COUNT; ++i) {
        float const a1 = number(-360, 360);
        float const a2 = number(-360, 360);
        float const difference = getAngleDifference(a1, a2);
        ASSERT_LT(angleBetween(difference, static_cast<double>(a1) - a2), ROUNDING);
        ASSERT_EQ(getAbsAngleDifference(a1, a2), std::fabs(difference));
        if (std::fabs(difference) > 175) continue; // hardly a direction left
        float const half = getBisectorTwoAngles(a1, a2);
        ASSERT_LT(angleBetween(half, a2 + difference / 2.0), 3e-4) << a1 << " " << a2;
        ASSERT_LE(std::fabs(half), 180);
    }
    EXPECT_EQ(getBisectorTwoAngles(0, 180), 0);
}

} // namespace
