#pragma once
// Turning a window position into a point on the model by the two snap boxes of
// the main form, and the questions a tool asks when a click meets nothing.

#include <string>
#include <string_view>
#include <vector>

#include "engine/Engine.h"

namespace core {
class AppContext;
}
namespace forms {
class Form;
}

namespace tools {

inline constexpr const char* kSnapBox1 = "cboSnapSelect1";
inline constexpr const char* kSnapBox2 = "cboSnapSelect2";
inline constexpr const char* kMissText =
    "No polygon is selected, press 'OK' to continue or 'Cancel' to terminate";
inline constexpr const char* kMissTitle = "No polygon selected";

// The second box's entries for a first-box entry (empty for an unknown one).
std::vector<std::string> snapTargets(std::string_view box1);
// What the second box shows after the first box went to box1 while it showed box2.
std::string snapTargetAfter(std::string_view box1, std::string_view box2);
// Refills the second box after a change of the first (its change handler).
void cboSnapSelect1_Change(core::AppContext& ctx);

enum class SnapResult {
    Hit,    // point written
    Miss,   // nothing under the click: bolSnapFailed is set
    Reset,  // "Polygon, Point" found no point: the tool was reset
};

// The polygon and point under (x, y), honouring the culling band: a hit nearer
// than the cut-off or beyond cut-off plus culling depth is disabled for the
// moment and the pick repeated; all such polygons are enabled again afterwards.
engine::PickHit pickInBand(core::AppContext& ctx, double x, double y);

// Snaps the click by the pair of boxes, writes the point to status panel 3 and
// keeps the polygon in the tool session (hSnapPolygon).
SnapResult P_subSnapPoint(core::AppContext& ctx, double x, double y, engine::Point3& point);

// Snap of a known pick (no window): the pair rules alone. False when "Polygon,
// Point" found no point.
bool snapByBoxes(const engine::Engine& eng, std::string_view box1, std::string_view box2,
                 engine::Handle hPolygon, const engine::Point3& pick, engine::Point3& out);

// The edge of the polygon nearest to p (the closing edge included); false for a
// polygon with fewer than two points. Ties go to the first edge found.
bool nearestEdge(const engine::Engine& eng, engine::Handle hPolygon, const engine::Point3& p,
                 engine::Point3& a, engine::Point3& b);

// "x, y, z" in metres, one decimal each.
std::string snapStatusText(const engine::Point3& p);

// The standard miss question. OK: the tool stays armed (pointer 14), true.
// Cancel: reset, false.
bool missKeepsTool(core::AppContext& ctx);
// The variant for a tool whose first point is taken: OK keeps the temporary
// sphere and the tool (true), Cancel stops it (false; the caller ends the tool).
bool missKeepsSphere(core::AppContext& ctx);

}  // namespace tools
