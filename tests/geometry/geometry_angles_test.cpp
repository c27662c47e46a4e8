#include "tests/geometry/Sweep.h"

namespace {

using Angles = Sweep;

/// Two roundings of an angle near 360 to float.
constexpr double ROUNDING = 6e-5;

TEST_F(Angles, TrigonometryAgreesWithComplexNumbers) {
    for (int i = 0; i < COUNT; ++i) {
        float const a = number(-720, 720);
        ASSERT_NEAR(cosDeg(a), unit(a).real(), 1e-6) << a;
        ASSERT_NEAR(sinDeg(a), unit(a).imag(), 1e-6) << a;
        ASSERT_NEAR(tanDeg(a) * unit(a).real(), unit(a).imag(), 1e-6 * (1 + std::fabs(tanDeg(a))));
        Vector2D const p = point();
        ASSERT_LT(angleBetween(atan2Deg(p.y, p.x), degrees(toComplex(p))), ROUNDING);
        ASSERT_NEAR(atanDeg(p.x), degrees({1, p.x}), ROUNDING);
        float const x = number(-1.1F, 1.1F);
        ASSERT_NEAR(unit(acosDeg(x)).real(), std::clamp(x, -1.0F, 1.0F), 1e-6);
        ASSERT_NEAR(acosDeg(x) + asinDeg(x), 90, ROUNDING);
    }
}

TEST_F(Angles, BoundsAndMarkers) {
    EXPECT_TRUE(acosDeg(-1) == 180 && asinDeg(1) == 90 && asinDeg(-1) == -90);
    EXPECT_EQ(atan2Deg(0.00005F, -0.00005F), 0); // nearly nothing has no direction
    EXPECT_NEAR(atan2Deg(0.00005F, -1), 180, 0.01);
    EXPECT_EQ(atan2Deg(0.00011F, 0), 90);
    for (float const turns : {720.0F, -360.0F, -720.0F}) {
        EXPECT_EQ(1 / normalizeTo360Deg(turns), INFINITY); // a positive zero
        EXPECT_EQ(1 / normalizeTo180Deg(turns), INFINITY);
    }
    EXPECT_EQ(normalizeTo360Deg(-1e-9F), 360); // rounding, accepted
    EXPECT_TRUE(normalizeTo180Deg(180) == 180 && normalizeTo180Deg(-180) == -180);
    EXPECT_TRUE(normalizeTo180Deg(540) == 180 && normalizeTo180Deg(-540) == -180);
    EXPECT_LE(std::fabs(normalizeTo180Deg(-UNDEFINED_FLOAT)), 180); // and ends
    EXPECT_TRUE(std::isnan(normalizeTo180Deg(INFINITY)) && std::isnan(normalizeTo360Deg(INFINITY)));
    EXPECT_TRUE(convertAngleTo180(180) == -180 && convertAngleTo360(180) == 180);
}

TEST_F(Angles, NormalisedAndConvertedAnglesKeepTheirDirection) {
    for (int i = 0; i < COUNT; ++i) {
        float const a = number(-1e5F, 1e5F);
        float const full = normalizeTo360Deg(a);
        ASSERT_TRUE(full >= 0 && full < 360 && angleBetween(full, a) < ROUNDING) << a;
        float const half = normalizeTo180Deg(a);
        ASSERT_TRUE(std::fabs(half) <= 180 && angleBetween(half, a) == 0) << a;
        float const counter = convertAngleTo180(full);
        ASSERT_TRUE(std::fabs(counter) <= 180 && angleBetween(counter, -full) == 0) << full;
        ASSERT_EQ(convertAngleTo360(counter), full);

        float const b = number(-360, 360);
        float const difference = getAngleDifference(half, b);
        ASSERT_LT(angleBetween(difference, static_cast<double>(half) - b), ROUNDING);
        ASSERT_EQ(getAbsAngleDifference(half, b), std::fabs(difference));
        if (std::fabs(difference) < 175) { // hardly a direction left beyond
            ASSERT_LT(angleBetween(getBisectorTwoAngles(half, b), b + difference / 2.0), 3e-4);
        }
    }
    EXPECT_EQ(getBisectorTwoAngles(0, 180), 0);
}

TEST_F(Angles, IntervalsExcludeTheirBoundsUnlessTheyCrossZero) {
    auto const turn = [](float a) { return static_cast<int>(a + 1080) % 360; };
    for (int i = 0; i < COUNT; ++i) {
        auto const angle = [this] { return 30 * std::round(number(-11, 11)); };
        float const ang = angle();
        float const low = angle();
        float const high = angle();
        bool const crossing = turn(low) >= turn(high);
        int const width = turn(low) == turn(high) ? 360 : turn(high - low);
        int const way = turn(ang - low); // from the lower bound upwards
        bool const inside = way == 0 || way == width ? crossing : way < width;
        ASSERT_EQ(isAngInInterval(ang, low, high), inside) << ang << ": " << low << ".." << high;
    }
}

} // namespace
