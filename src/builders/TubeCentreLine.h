#pragma once
// Finding a tube again from one of its polygons, for the "Tube" snap mode, the
// point move tool and the tube exports.
//
// A group is a tube when its name is one the tube builders give: "ExcPolyGroup",
// "CylPolyGroup", "3WedgePolyGroup" (wedge and drill line), "StringPolyGroup".
// Its ends come from its side quadrilaterals, each built v(s), w(s), w(s + 1),
// v(s + 1): the first and last points lie on the start ring, the middle two on the
// end ring, and every ring point is met twice, so the means are the ring centres.
// An excavation with its end faces (six quadrilaterals) skips its first two, the
// ends. A tube whose sides were all refused (its two points equal) falls back on
// the centres of its first two polygons.

#include <string_view>

#include "engine/Types.h"

namespace engine {
class Engine;
}

namespace builders {

// bolIsTube and the result tell whether the polygon's group is a tube; only then
// are endA (the start's centre) and endB (the end's centre) written.
bool P_fncTubeCentreLine(const engine::Engine& eng, engine::Handle hPolygon, engine::Point3& endA,
                         engine::Point3& endB, bool& bolIsTube);

// True for the group names of the tube builders.
bool isTubeGroupName(std::string_view name);

}  // namespace builders
