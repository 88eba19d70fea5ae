#pragma once
// The rock failure criteria of the stress points: factor of safety (Mohr-Coulomb),
// deviatoric factor, maximum shear and RCF, and the marker colours of a result.
// Stresses are doubles, the rock inputs singles as the dialog holds them.

#include <string_view>

#include "engine/Types.h"

namespace analysis {

enum class Criterion { None, FOS, S1S3, Shear, RCF };

// The group-name word of a criterion ("FOSPoints", ...), "" for None.
std::string_view criterionWord(Criterion c);
// The record code written into the point names ("CM_s_FOS", ...), "" for Shear and None.
std::string_view criterionCode(Criterion c);

struct RockInputs {
    float ucsIntact = 0;      // UCSi, MPa
    float ucsRockmass = 0;    // UCSrm, MPa
    float frictionAngle = 0;  // degrees
    float downgrade = 0;      // F
};

// K = (1 + sin phi) / (1 - sin phi).
double frictionFactor(float frictionAngleDegrees);

// The criterion as the import computes it (no guard); false for a division by zero
// or a result that is not finite, which the import treats as a fault of the file.
bool importCriterion(Criterion c, double s1, double s3, const RockInputs& in, float& result);

// The criterion as the re-colouring computes it, with its guards (S1 = 0 for the
// factor of safety, S1 = S3 = 0 for the deviatoric factor). False when the value
// cannot be had (division by zero, not finite): the polygon keeps its grey.
bool recolourCriterion(Criterion c, double s1, double s3, const RockInputs& in, double& result);

// The colour of a new marker by its result; the first row that holds wins.
engine::Rgb markerColour(float value);

}  // namespace analysis
