#include <iostream>

#include "tests/geometry/CapturedStream.h"
#include "tests/geometry/Sweep.h"

namespace {

using Series = Sweep;
using Quadratic = Sweep;

TEST_F(Series, AgreesWithAddingUpTermByTerm) {
    for (int i = 0; i < 2000; ++i) {
        float const first = number(0.1F, 3);
        // Decaying like a ball, or growing when looked at backwards.
        float const ratio = i % 2 == 0 ? number(0.7F, 0.98F) : number(1.02F, 1.5F);
        double sum = 0;
        double term = first;
        for (int k = 0; k <= i % 30; ++k, term *= ratio) {
            sum += term;
        }
        auto const n = static_cast<float>(1 + i % 30);
        auto const s = static_cast<float>(sum);
        ASSERT_NEAR(Geometry::getSumGeomSeries(first, ratio, n) / sum, 1, 1e-6);
        ASSERT_NEAR(Geometry::getFirstGeomSeries(s, ratio, n) / first, 1, 1e-6);
        ASSERT_NEAR(Geometry::getLengthGeomSeries(first, ratio, s), n, 0.1);
        if (ratio > 1) continue;
        float const all = Geometry::getSumInfGeomSeries(first, ratio);
        ASSERT_NEAR((sum + term / (1.0 - ratio)) / all, 1, 1e-6); // the tail is a series again
        ASSERT_NEAR(Geometry::getFirstInfGeomSeries(all, ratio) / first, 1, 1e-6);
    }
}

TEST_F(Series, SumsOutOfReachAndSenselessRatios) {
    EXPECT_EQ(Geometry::getLengthGeomSeries(2, 0.5F, 4), -1); // the limit itself
    EXPECT_TRUE(std::isinf(Geometry::getSumInfGeomSeries(1, 1)));
    CapturedStream const err(std::cerr);
    EXPECT_EQ(Geometry::getSumInfGeomSeries(1, 1.5F), -2);
    EXPECT_EQ(Geometry::getFirstInfGeomSeries(1, 1.5F), -0.5F);
    EXPECT_EQ(Geometry::getLengthGeomSeries(1, -1, 1), -1);
    EXPECT_EQ(err.text(), "(Geometry:CalcLengthGeomSeries): series does not converge\n"
                          "(Geometry:getFirstInfGeomSeries):series does not converge\n"
                          "(Geometry:getLengthGeomSeries): negative ratio\n");
}

TEST_F(Quadratic, FindsRootsAndWritesNothingElse) {
    float s[2];
    for (int i = 0; i < COUNT; ++i) {
        float const x1 = number(-10, 10);
        float const x2 = x1 - number(0.1F, 10);
        float const a = i % 2 == 0 ? number(0.5F, 3) : number(-3, -0.5F);
        ASSERT_EQ(Geometry::abcFormula(a, -a * (x1 + x2), a * x1 * x2, &s[0], &s[1]), 2);
        ASSERT_NEAR(s[0], a > 0 ? x1 : x2, 1e-3); // the plus sign first, not the greater one
        ASSERT_NEAR(s[1], a > 0 ? x2 : x1, 1e-3);
    }
    s[1] = 8;
    EXPECT_EQ(Geometry::abcFormula(1, 0, 1, &s[0], &s[1]), 0);
    EXPECT_EQ(Geometry::abcFormula(1, -2, 1.00002F, &s[0], &s[1]), 1); // discriminant -0.00008
    EXPECT_TRUE(s[0] == 1 && s[1] == 8);
}

} // namespace
