#pragma once
// Tubes between two points: tunnels with a rectangular section, strings drawn as
// crossed ribbons, drillhole segments with a triangular section, and a flat disc.
// The same rules as the meshes of Meshes.h: one fresh group with a fixed name,
// sizes in scene units, nothing reported, refused polygons deleted.

#include "builders/RingTools.h"
#include "engine/Types.h"

namespace engine {
class Engine;
}

namespace builders {

inline constexpr const char* kExcavationGroup = "ExcPolyGroup";
inline constexpr const char* kStringGroup = "StringPolyGroup";
// Shared with the wedge on purpose: nothing tells the two apart by name.
inline constexpr const char* kDrillLineGroup = "3WedgePolyGroup";
inline constexpr const char* kCircleGroup = "CircleGroup";

// Rectangular tunnel: dblHeight along the ring's x, dblWidth along its y; the two
// end faces, then the four sides. With bolNoEnds only the four sides.
engine::Handle P_fncCreate3DExcavation(engine::Engine& eng, bool bolNoEnds,
                                       const engine::Point3& dblStart, const engine::Point3& dblEnd,
                                       double dblWidth, double dblHeight,
                                       const engine::Rgb& lngColour);

// Two crossed ribbons along the line, each seen from both sides (four polygons),
// unlit (brightness 0): a line of constant width from every direction.
engine::Handle P_fncCreate3DString(engine::Engine& eng, const engine::Point3& dblStart,
                                   const engine::Point3& dblEnd, double dblDiameter,
                                   const engine::Rgb& lngColour);

// The two triangular rings a run of drill-line segments shares. They never enter
// the world; P_subReleaseDrillLine deletes them. One per reader or session.
struct DrillLineRings {
    Ring ring1, ring2;
    bool prepared() const { return ring1.polygon != 0 && ring2.polygon != 0; }
};

// Once before a run of segments. Rings left from an earlier run are released first.
void P_subPrepareDrillLine(engine::Engine& eng, DrillLineRings& rings, double dblDiameter);
// One segment: three sides with open ends, group "3WedgePolyGroup". Prepares the
// rings itself when the run was not prepared.
engine::Handle P_fncCreateDrillLine(engine::Engine& eng, DrillLineRings& rings,
                                    const engine::Point3& dblStart, const engine::Point3& dblEnd,
                                    double dblDiameter, const engine::Rgb& lngColour);
// After the run: deletes the rings that exist and clears them.
void P_subReleaseDrillLine(engine::Engine& eng, DrillLineRings& rings);

// A flat 16-sided disc in the z = 0 plane around the origin, both faces; the caller
// places it.
engine::Handle P_fncCreateFlatCircle(engine::Engine& eng, double dblDiameter,
                                     const engine::Rgb& lngColour);

}  // namespace builders
