#include "geometry/Geometry.h"

#include <cmath>
#include <iostream>

float Geometry::getLengthGeomSeries(float first, float ratio, float sum) {
    if (ratio < 0) std::cerr << "(Geometry:getLengthGeomSeries): negative ratio" << std::endl;
    double const q = ratio;
    double const lastRatio = 1 + sum * (q - 1) / first; // ratio^n
    if (lastRatio <= 0) return -1;
    return static_cast<float>(std::log(lastRatio) / std::log(q));
}

float Geometry::getSumGeomSeries(float first, float ratio, float length) {
    double const q = ratio;
    return static_cast<float>(first * (1 - std::pow(q, length)) / (1 - q));
}

float Geometry::getSumInfGeomSeries(float first, float ratio) {
    // Intentional: the message names another function; logs are searched for this text.
    if (ratio > 1) {
        std::cerr << "(Geometry:CalcLengthGeomSeries): series does not converge" << std::endl;
    }
    return static_cast<float>(first / (1 - static_cast<double>(ratio)));
}

float Geometry::getFirstGeomSeries(float sum, float ratio, float length) {
    double const q = ratio;
    return static_cast<float>(sum * (1 - q) / (1 - std::pow(q, length)));
}

float Geometry::getFirstInfGeomSeries(float sum, float ratio) {
    if (ratio > 1) {
        std::cerr << "(Geometry:getFirstInfGeomSeries):series does not converge" << std::endl;
    }
    return static_cast<float>(sum * (1 - static_cast<double>(ratio)));
}

int Geometry::abcFormula(float a, float b, float c, float* s1, float* s2) {
    // In double, because b*b and 4*a*c are often large and nearly the same.
    double x1 = 0;
    double x2 = 0;
    int const count = abcFormula(double{a}, double{b}, double{c}, &x1, &x2);
    if (count > 0) *s1 = static_cast<float>(x1);
    if (count > 1) *s2 = static_cast<float>(x2);
    return count;
}

int Geometry::abcFormula(double a, double b, double c, double* s1, double* s2) {
    double const twoA = 2 * a;
    double const discriminant = b * b - 2 * twoA * c;
    if (std::fabs(discriminant) < EPSILON) {
        *s1 = -b / twoA;
        return 1;
    }
    if (discriminant < 0) return 0;
    double const root = std::sqrt(discriminant);
    *s1 = (-b + root) / twoA;
    *s2 = (-b - root) / twoA;
    return 2;
}
