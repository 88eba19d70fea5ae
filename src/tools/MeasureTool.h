#pragma once
// The texts of the measuring tool.

#include <string>

namespace tools {

inline constexpr const char* kMeasurePrompt1 = "Select the first point for the measuring";
inline constexpr const char* kMeasurePrompt2 = "Select the second point for the measuring";
inline constexpr const char* kDeleteLineQuestion = "Delete the yellow markerline ?";

// The measure's line up to (not including) its ending: lengths in scene units,
// written in metres.
std::string measureLineBody(double length, double dip, double direction, double horizontal,
                            double vertical, double cumulative);
// The final line: the body and " m".
std::string measureFinalLine(double length, double dip, double direction, double horizontal,
                             double vertical, double cumulative);

}  // namespace tools
