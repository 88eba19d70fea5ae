#pragma once
// The virgin stress marker: three cylinders from a point along the principal
// stresses, their lengths in proportion to the magnitudes. The dialog completes
// an orthogonal set from sigma 1 and sigma 2's trend, and keeps sigma 2 and sigma 3
// in the lower hemisphere.

#include <functional>

#include "engine/Types.h"

namespace core {
class AppContext;
}
namespace forms {
class Frm25StressTensor;
}

namespace builders {

inline constexpr const char* kNegativeText = "Negative values is no allowed";
inline constexpr const char* kNegativeTitle = "Invalid values";
inline constexpr const char* kSig3TurnedText =
    "The trend of the minor principal stress was changed to enable a lower hemispherical "
    "projection";
inline constexpr const char* kSig3TurnedTitle = "Minor Principal Stress Trend changed 180 degrees";

inline constexpr engine::Rgb kSigma1Colour{184, 8, 8};
inline constexpr engine::Rgb kSigma2Colour{8, 184, 8};
inline constexpr engine::Rgb kSigma3Colour{8, 8, 184};

// The numbers of the dialog, degrees for the angles.
struct StressTensorValues {
    double sig1Magnitude = 0, sig1Trend = 0, sig1Plunge = 0;
    double sig2Magnitude = 0, sig2Trend = 0, sig2Plunge = 0;
    double sig3Magnitude = 0, sig3Trend = 0, sig3Plunge = 0;
};

// One completion: sigma 2's plunge, sigma 3's trend and plunge from sigma 1's trend
// and plunge and sigma 2's trend, each rounded to one decimal. Sigma 3's trend is
// left at 0 where sigma 2's grid trend is not strictly inside (0, pi) or (pi, 2 pi).
void completeStressTensor(StressTensorValues& v, float sngNorthAxis);

// The whole calculation: false, and nothing changed, for a negative magnitude,
// sigma 1 trend or plunge, or sigma 2 trend. Else the completion, then the lower
// hemisphere: a negative sigma 2 plunge is made positive with its trend turned by
// 180 degrees; the same for sigma 3, which calls onSig3Turned and completes the
// tensor again, once (a second turn of sigma 3 is made and told, no third pass).
bool calculateStressTensor(StressTensorValues& v, float sngNorthAxis,
                           const std::function<void()>& onSig3Turned);

// The dialog's fields as numbers, and back (sigma 2's trend and the computed boxes).
StressTensorValues readStressTensorForm(const forms::Frm25StressTensor& form);
// cmdCalculateTensor1: the calculation on the dialog, with its messages.
void cmdCalculateTensor1(core::AppContext& ctx);

// The three cylinders at p (engine units) from the dialog's values read in single
// precision, sigma 1 as long as cboSig1Length, the others in proportion; a stress
// of zero magnitude has none. They go into one "MarkerGroup", which is returned.
// 0 after a box: the zero sigma 1 message, or "Null handle from P_fncCreateCylinder"
// (the cylinders made are deleted).
engine::Handle drawStressTensor(core::AppContext& ctx, const engine::Point3& p);
// The marker placed by the pick: the drawing, then the steps every marker ends with.
engine::Handle placeStressTensor(core::AppContext& ctx, const engine::Point3& p);

// The dialog of the window, made on first use with its first calculation done.
forms::Frm25StressTensor& stressTensorForm(core::AppContext& ctx);

}  // namespace builders
