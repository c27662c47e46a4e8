#pragma once

#include "geometry/Angles.h"
#include "geometry/Shapes.h"
#include "geometry/Vector2D.h"

/// Closed formulas: the geometric series first, first*ratio, first*ratio^2, ... (a decaying ball or
/// player covers such distances cycle by cycle) and the quadratic equation.
///
/// Nothing fails: a senseless ratio is reported on standard error, and the result computed anyway;
/// divisions by zero (ratio 1, a = 0) give infinities or NaN.
class Geometry {
public:
    /// The number of terms that add up to sum: a real number, not rounded; -1 when no number does.
    static float getLengthGeomSeries(float first, float ratio, float sum);

    /// The sum of the first length terms; length may be fractional.
    static float getSumGeomSeries(float first, float ratio, float length);

    /// The sum of all terms, for a ratio below 1.
    static float getSumInfGeomSeries(float first, float ratio);

    /// The first term of a series whose first length terms add up to sum.
    static float getFirstGeomSeries(float sum, float ratio, float length);

    /// The first term of a series whose terms all together add up to sum, for a ratio below 1.
    static float getFirstInfGeomSeries(float sum, float ratio);

    /// Solves a*x^2 + b*x + c = 0 and returns the number of solutions. One solution, when the
    /// discriminant is within EPSILON of 0, is written to s1; two go to s1 (the one with the plus
    /// sign) and s2; the rest stays untouched.
    static int abcFormula(float a, float b, float c, float* s1, float* s2);
    static int abcFormula(double a, double b, double c, double* s1, double* s2);
};
