#pragma once
// How the exports write numbers and lines: the shortest text that reads back to
// the same double, scene tenths of a metre as metres, CR LF at each line end.

#include <string>
#include <string_view>

#include "engine/Types.h"

namespace persistence {

inline constexpr std::string_view kCrLf = "\r\n";
// Scene units are tenths of a metre; files hold metres.
inline constexpr double kSceneToMetres = 0.1;

// The shortest text of the double that reads back to it ("0.30000000000000004",
// "1e+20"); no fixed number of decimals and no rounding.
std::string shortestText(double value);
// A scene length in metres, as above.
std::string metresText(double sceneValue);

// x, y and z in metres, joined by `sep`.
std::string pointText(const engine::Point3& p, std::string_view sep = "\t");

// Every CR LF of a name becomes a tab, so that a record stays on one line.
std::string nameOnOneLine(std::string_view name);

}  // namespace persistence
