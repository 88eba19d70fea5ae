#pragma once
// Polygons built by hand, three picked points at a time.

#include "engine/Types.h"

namespace engine {
class Engine;
}

namespace tools {

inline constexpr const char* kHandPolygonGroup = "3PointPolyGroup";

// One triangle through the three points in a fresh group, with its flipped twin so
// that it is seen from both sides. 0 when the group could not be made; points that
// make no area leave the group empty.
engine::Handle modCreate3PointPoly(engine::Engine& eng, const engine::Point3& p1,
                                   const engine::Point3& p2, const engine::Point3& p3,
                                   const engine::Rgb& colour);

}  // namespace tools
