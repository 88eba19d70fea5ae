#pragma once
// The inverse trigonometry and constants every angle of the program is computed
// with. They sit this low so that the lighting can use them too; the geometry
// functions of the builders take them over under the same names.

#include <cmath>

namespace core {

// The literal constants the angle conventions were set with: keep them, results are
// compared to one decimal against values computed with exactly these.
inline constexpr double kPi = 3.14159265358979;
inline constexpr double kHalfPi = 1.570796326794895;
inline constexpr double kDegree = 0.017453292519943278;  // radians
// Stands in for a zero that would divide.
inline constexpr double kDivZero = 1E-100;

// -1, 0 or 1 (0 for NaN).
inline int Sgn(double x) { return x > 0 ? 1 : (x < 0 ? -1 : 0); }
// x, or kDivZero when x is exactly zero.
inline double nonZero(double x) { return x == 0 ? kDivZero : x; }

// Arctangent forms: no domain error, |x| >= 1 gives the end of the range. NaN stays NaN.
inline double ACosRad(double x) {
    if (std::isnan(x)) return x;
    if (std::fabs(x) < 1) return kHalfPi - std::atan(x / std::sqrt(1 - x * x));
    return kHalfPi - Sgn(x) * kPi * 0.5;
}
inline double ACosDeg(double x) { return ACosRad(x) * 180 / kPi; }
inline double ASinDeg(double x) {
    if (std::isnan(x)) return x;
    if (std::fabs(x) < 1) return std::atan(x / std::sqrt(1 - x * x)) * 180 / kPi;
    return Sgn(x) * kPi * 0.5 * 180 / kPi;
}

// Whole-number rounding, half to even on the binary value; -0 comes back as 0.
inline double roundHalfEven(double x) {
    if (!std::isfinite(x)) return x;
    double f = std::floor(x);
    double diff = x - f;
    double r = diff > 0.5 ? f + 1 : (diff < 0.5 ? f : (std::fmod(f, 2.0) == 0 ? f : f + 1));
    return r == 0 ? 0.0 : r;
}

}  // namespace core
