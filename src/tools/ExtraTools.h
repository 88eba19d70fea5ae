#pragma once
// The grid plane, the photo and file links, hide-all-except and the rubber band:
// their steps in the mouse-up chain and the pieces the tests reach.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Types.h"
#include "forms/Frm07GridPlane.h"
#include "tools/ToolSteps.h"

namespace core {
class AppContext;
}

namespace tools {

// ---- grid plane ------------------------------------------------------------------

inline constexpr const char* kGridPlanePrompt =
    "Fill in the plane centre, dimensions, grid spacing and plane colour";
inline constexpr const char* kGridPlaneGroup = "GridPlaneGroup";
inline constexpr const char* kGridCentrePrompt = "Select the centre of the grid plane";

struct GridPlaneRequest {
    engine::Point3 centre;  // scene units
    double length = 0;      // along the first axis of the plane, scene units
    double width = 0;       // along the second
    double spacing = 0;
    forms::GridOrientation orientation = forms::GridOrientation::Horizontal;
    engine::Rgb colour;
};
// The plane's two axes and its front normal (first x second).
void gridAxes(forms::GridOrientation o, engine::Point3& first, engine::Point3& second);
// The offsets from the centre, along one axis, of the grid lines across it: the
// centre and every spacing out to the half size (both ends included).
std::vector<double> gridLineOffsets(double size, double spacing);
// Black lines on a light plane, white on a dark one.
engine::Rgb gridLineColour(engine::Rgb plane);
// The plane (front and back polygon) and its lines (a thin strip on each side) in
// a new "GridPlaneGroup"; 0 for a bad request (nothing is left behind).
engine::Handle buildGridPlane(engine::Engine& eng, const GridPlaneRequest& q);
// cmdGridPlane's press: button 1 shows frm07_GridPlane, 2 builds with its last values.
void gridPlaneButtonDown(core::AppContext& ctx, int button);
bool stepGridCentre(core::AppContext& ctx, const Click& c);

// ---- photo and file links --------------------------------------------------------

inline constexpr const char* kLinkCode = "LinkF";
// The file a name links to: the text of a "LinkF" record (its first line), or
// nothing when the name is no link.
std::optional<std::string> linkTarget(std::string_view name);
// Opens the file a name links to (a box when it cannot); false when the name is
// no link. The double click on a linked object comes here too.
bool openLinkOf(core::AppContext& ctx, std::string_view name);
// cmdPhotoLink / cmdFileLink: scope "Entity", the flag armed.
void linkButtonDown(core::AppContext& ctx, bool photo, int button);
// With bolPhotoLink or bolFileLink: the click opens the entity's link or asks for
// the file and records it. False when neither flag is armed.
bool stepLink(core::AppContext& ctx, const Click& c);

// ---- hide all except -------------------------------------------------------------

inline constexpr const char* kHideExceptPrompt = "Select the object to keep in view";
void hideExceptButtonDown(core::AppContext& ctx, int button);
// Hides every enabled polygon outside `keep` and its descendants; how many.
long hideAllExcept(core::AppContext& ctx, engine::Handle keep);
bool stepHideExcept(core::AppContext& ctx, const Click& c);

// ---- rubber band -----------------------------------------------------------------

// The band's two polygons are drawn this far in front of the eye, in units of the
// cut-off distance, so that they stand before everything that can be seen.
inline constexpr double kBandDepth = 1.5;
// True while a selection action is armed with the scope "Rubberband".
bool bandScopeArmed(core::AppContext& ctx);
void bandMouseDown(core::AppContext& ctx, int button, int shift, double x, double y);
void bandMouseMove(core::AppContext& ctx, int button, double x, double y);
// Deletes the two band polygons (the rectangle is kept for the mouse-up).
void deleteBandPolygons(core::AppContext& ctx);
// The enabled polygons whose centres project inside the rectangle of pixels.
std::vector<engine::Handle> polygonsInBand(core::AppContext& ctx, double x0, double y0, double x1,
                                           double y1);
// The mouse-up of the band: the action on what is inside; false when no band was
// dragged.
bool bandSelect(core::AppContext& ctx, int shift);

// The commands, forms, procedures and mouse wiring of the above. Safe to call twice.
void registerExtraTools(core::AppContext& ctx);
// Forgets the band of this window (a fresh context starts without one).
void forgetBand(core::AppContext& ctx);
// The forms' handlers, wired by registerExtraTools.
void wireGridPlane(core::AppContext& ctx);
void wireHideExcept(core::AppContext& ctx);

}  // namespace tools
