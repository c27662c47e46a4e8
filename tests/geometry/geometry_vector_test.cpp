#include <iostream>

#include "tests/geometry/CapturedStream.h"
#include "tests/geometry/Sweep.h"

namespace {

using Vector = Sweep;

TEST_F(Vector, PolarFormsFramesAndLengthsAgreeWithComplexNumbers) {
    for (int i = 0; i < COUNT; ++i) {
        float const length = number(-100, 100); // a negative one turns round
        float const ang = number(-360, 360);
        ASSERT_TRUE(agree(Vector2D(length, ang, POLAR), double{length} * unit(-ang))); // clockwise
        Vector2D orig;
        orig.setVector2D_Orig(length, ang, POLAR);
        ASSERT_TRUE(agree(orig, double{length} * unit(ang)));

        Vector2D const p = point();
        Vector2D const q = point();
        Complex const pq = toComplex(q) - toComplex(p);
        Vector2D turned = p;
        ASSERT_EQ(turned.rotate(ang), turned);
        ASSERT_TRUE(agree(turned, toComplex(p) * unit(ang)));
        ASSERT_EQ(turned.globalToRelative(q, ang), turned);
        ASSERT_TRUE(agree(turned, toComplex(p) - toComplex(q) * unit(-ang)));
        ASSERT_EQ(turned.relativeToGlobal(q, ang), turned);
        ASSERT_TRUE(agree(turned, toComplex(p) * unit(ang)));

        float const part = ang / 360;
        ASSERT_TRUE(agree(p.getVector2DOnLineFraction(q, part), toComplex(p) + double{part} * pq));
        ASSERT_NEAR(p.getDistanceTo(q), std::abs(pq), 1e-4);
        Vector2D scaled = p;
        ASSERT_EQ(scaled.setLength(length), scaled);
        ASSERT_TRUE(agree(scaled, double{length} / std::abs(toComplex(p)) * toComplex(p)));
    }
    constexpr Vector2D WITHOUT_DIRECTION(0.00005F, 0, CARTESIAN);
    EXPECT_EQ(Vector2D(WITHOUT_DIRECTION).setLength(5), WITHOUT_DIRECTION);
}

TEST_F(Vector, InvalidVectorsAndTexts) {
    for (float const mark : {UNDEFINED_FLOAT, INFINITY, -INFINITY, NAN}) {
        EXPECT_TRUE(Vector2D(mark, 1, CARTESIAN).isInvalid()) << mark;
        EXPECT_TRUE(Vector2D(1, mark, CARTESIAN).isInvalid()) << mark;
    }
    EXPECT_FALSE(Vector2D(1e9F, -UNDEFINED_FLOAT, CARTESIAN).isInvalid());

    CapturedStream const out(std::cout);
    Vector2D(0.5F, -1234567, CARTESIAN).show(CARTESIAN);
    Vector2D().show(POLAR);
    EXPECT_EQ(out.text(), "( 0.5, -1.23457e+06 )\n( r: 0, phi: 0  )");
}

} // namespace
