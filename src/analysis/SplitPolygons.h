#pragma once
// The cut of every visible polygon along a picked plane: the pieces are sorted into
// a front and a back group, or the section lines where the plane meets the model
// are drawn as thin tunnels, or both. The picked polygon's own group is never cut.

#include "engine/Types.h"

namespace engine {
class Engine;
}
namespace core {
class AppContext;
}

namespace analysis {

inline constexpr const char* kFrontGroupName = "FrontPolyGroup";
inline constexpr const char* kBackGroupName = "BackPolyGroup";
inline constexpr const char* kSectionLineGroupName = "SectionLineGroup";
inline constexpr const char* kSplitFlag = "bolSplitPolygons";
inline constexpr const char* kSplitLinesFlag = "bolDrawSplitLines";
inline constexpr const char* kSplitPrompt =
    "Double click on the plane that must be used to split all visible polygons";
inline constexpr const char* kSplitAndLinesPrompt =
    "Double click on the plane that must be used to split all visible polygons and create "
    "section lines";

// The side of a point for the plane a x + b y + c z + d = 0, by the first coefficient
// that is not 0 in the order c, b, a: p is that coordinate on the plane through the
// other two; 1 (front) when p is greater than the point's coordinate, -1 (back) when
// less, 0 when equal or when every coefficient is 0. So the front lies below a plane
// that is not vertical.
int sideOfPlane(const engine::Plane& plane, const engine::Point3& centre);

// Puts the polygon into the front or back group by its centre; on the plane it stays.
void P_subSortToSide(engine::Engine& eng, engine::Handle lngPolygon, const engine::Plane& plane,
                     engine::Handle lngFrontGroup, engine::Handle lngBackGroup);

// What a run made; the groups exist even when nothing was cut.
struct SplitRun {
    engine::Handle frontGroup = 0;
    engine::Handle backGroup = 0;
    engine::Handle sectionLineGroup = 0;
    long polygonsCut = 0;
    long sectionLines = 0;
    bool interrupted = false;
};

// The cut. The pieces of a run are not cut again (they lie on one side already), so
// the run visits each polygon of the scene once. After an interrupt the picked
// group and the section lines are still enabled, and what is cut stays cut.
SplitRun P_subSplitPolygons(core::AppContext& ctx, engine::Handle lngPlanePolygon,
                            bool bolSplitPolygons, bool bolDrawSplitLines);

// The line where two pieces of one polygon meet: the first two vertices the pieces
// share exactly, as a tunnel of the line thickness in the front piece's colour,
// disabled and hung under the section line group. 0 when fewer than two shared
// vertices were found (or the search was interrupted).
engine::Handle P_subSectionLine(core::AppContext& ctx, engine::Handle lngFront,
                                engine::Handle lngBack, engine::Handle lngSectionGroup);

// The three menu entries: reset, prompt, flags, pick pointer, focus.
void armSplitTool(core::AppContext& ctx, bool bolSplitPolygons, bool bolDrawSplitLines);
// A double click while the tool is armed: the polygon under the mouse is the plane.
// Returns false when the tool is not armed (the click is someone else's).
bool splitAtDoubleClick(core::AppContext& ctx, double x, double y);

}  // namespace analysis
