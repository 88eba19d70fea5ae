#pragma once
// The coordinate limit rule: a rotation centre far from the origin gets an
// offset in whole steps of the limit, taken off every coordinate shown, and the
// user is warned once per check.

#include "engine/Types.h"

namespace core {

class AppContext;

inline constexpr double kCoordinateLimit = 1000000.0;
// The text says 100 000 while the check stands at 1000000: both stay so.
inline constexpr const char* kCoordinateLimitText =
    "LIMITATION: Tarvik can only accurately accommodate coordinates of up to 100 000";
inline constexpr const char* kCoordinateWarningText =
    "When one of the coordinate system values exceeds 1000000, Tarvik could create errors. The "
    "larger the value, the larger the potential error.";
inline constexpr const char* kCoordinateWarningTitle = "WARNING";

// True when x, y or z lies beyond the limit (an infinity does, a NaN does not).
bool beyondCoordinateLimit(engine::Point3 p);
// The value brought within -limit..+limit by whole steps of the limit, where
// repeated adding or subtracting would stop: a value beyond +limit ends in
// (0, limit], one beyond -limit in [-limit, 0). Values within come back as they
// are; a value that is no finite number comes back unchanged too.
double wrapIntoCoordinateLimit(double v);
// Per axis the amount the wrap took off (0 for an axis within the limit or not finite).
engine::Point3 coordinateOffsetFor(engine::Point3 centre);

// Run when the camera starts on a new look: sets dblCoordOffset from the
// rotation centre. Beyond the limit the comment box shows the limitation, the
// warning box comes up, and the selection form goes to whole groups.
void p_subCoordinateLimitCheck(AppContext& ctx);

}  // namespace core
