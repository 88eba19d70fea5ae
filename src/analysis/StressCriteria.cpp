#include "analysis/StressCriteria.h"

#include <cmath>

namespace analysis {

namespace {
constexpr double kDegree = 0.017453292519943278;

bool finiteQuotient(double num, double den, double& out) {
    if (den == 0) return false;
    out = num / den;
    return std::isfinite(out);
}
}  // namespace

std::string_view criterionWord(Criterion c) {
    switch (c) {
        case Criterion::FOS:
            return "FOSPoints";
        case Criterion::S1S3:
            return "S1S3Points";
        case Criterion::Shear:
            return "ShearPoints";
        case Criterion::RCF:
            return "RCFPoints";
        case Criterion::None:
            break;
    }
    return "";
}

std::string_view criterionCode(Criterion c) {
    switch (c) {
        case Criterion::FOS:
            return "CM_s_FOS";
        case Criterion::S1S3:
            return "CM_s_S13";
        case Criterion::RCF:
            return "CM_s_RCF";
        default:
            break;
    }
    return "";
}

double frictionFactor(float frictionAngleDegrees) {
    const double s = std::sin(static_cast<double>(frictionAngleDegrees) * kDegree);
    return (1 + s) / (1 - s);
}

static bool criterion(Criterion c, double s1, double s3, const RockInputs& in, double& v) {
    const double strength = static_cast<double>(in.downgrade) * in.ucsIntact;
    switch (c) {
        case Criterion::FOS:
            return finiteQuotient(frictionFactor(in.frictionAngle) * s3 + in.ucsRockmass, s1, v);
        case Criterion::S1S3:
            return finiteQuotient(strength, s1 - s3, v);
        case Criterion::Shear:
            v = (s1 - s3) * 0.5;
            return std::isfinite(v);
        case Criterion::RCF:
            return finiteQuotient(3 * s1 - s3, strength, v);
        case Criterion::None:
            break;
    }
    return false;
}

bool importCriterion(Criterion c, double s1, double s3, const RockInputs& in, float& result) {
    double v = 0;
    if (!criterion(c, s1, s3, in, v)) return false;
    result = static_cast<float>(v);
    return std::isfinite(result);
}

bool recolourCriterion(Criterion c, double s1, double s3, const RockInputs& in, double& result) {
    if (c == Criterion::FOS && s1 == 0) {
        result = 1.0;
        return true;
    }
    if (c == Criterion::S1S3 && s1 == 0 && s3 == 0) {
        result = 0.0;
        return true;
    }
    return criterion(c, s1, s3, in, result);
}

// The single is widened before the test, so a result of 1.2 held as a single
// (a hair above 1.2) takes the next row.
engine::Rgb markerColour(float value) {
    const double v = value;
    if (v <= 1.0) return {182, 182, 182};
    if (v <= 1.2) return {245, 10, 10};
    if (v <= 1.4) return {245, 118, 10};
    if (v <= 1.6) return {245, 245, 10};
    if (v <= 1.8) return {101, 245, 10};
    if (v <= 2.0) return {10, 10, 245};
    return {54, 54, 54};
}

}  // namespace analysis
