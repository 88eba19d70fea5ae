#pragma once
// One triangle of the polygon tool, as the wireframe readers build theirs.

#include "engine/Types.h"

namespace engine {
class Engine;
}

namespace importers {

// A triangle through the three points in that order (clockwise seen from its
// front), in the world and filled with the colour; 0 when the engine refuses it
// (two equal points, no area, a point that is not finite), and nothing is left.
engine::Handle P_fncTriangle(engine::Engine& eng, const engine::Point3& p1,
                             const engine::Point3& p2, const engine::Point3& p3,
                             const engine::Rgb& colour);

}  // namespace importers
