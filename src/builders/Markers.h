#pragma once
// Markers placed on a picked point: the symbol, sizes, placement and colour of
// frm10_SelectMarker, the text and coordinate labels, and what follows the placing
// (the information form or a photograph link). Sizes in the dialog are metres.

#include <string>

#include "engine/Types.h"
#include "forms/Frm10SelectMarker.h"

namespace core {
class AppContext;
}

namespace builders {

inline constexpr const char* kMarkerGroup = "MarkerGroup";
inline constexpr const char* kEntityPrompt = "Describe the entity";
inline constexpr const char* kEntityTitle = "Input for entity";

// The dialog's values in engine units.
struct MarkerRequest {
    forms::MarkerSymbol symbol = forms::MarkerSymbol::None;
    forms::MarkerPlacement placement = forms::MarkerPlacement::Bottom;
    forms::MarkerLink link = forms::MarkerLink::None;
    double sphereRadius = 0;
    double cylDiameter = 0;
    double cylLength = 0;
    engine::Rgb colour;
};
MarkerRequest readMarkerForm(const forms::Frm10SelectMarker& form);

// The extent of a symbol along its axis, foot to head: a sphere its diameter, a
// cylinder or cone its length, a cylinder with a sphere centred on its end the
// length and the radius, with a diamond (two pyramids of height r) the length and
// twice the radius.
double markerHeight(const MarkerRequest& request);
// Where the foot goes so that the placement's point (foot, middle or head) is on p.
engine::Point3 markerFoot(const MarkerRequest& request, const engine::Point3& p,
                          const engine::Point3& axis);

// Builds the symbol standing along the unit axis; a composite symbol's parts go
// into one "MarkerGroup". Returns the entity or the marker group, 0 after the box
// "Null handle from creation of object" (the parts made are deleted). The
// pointer and the stress tensor are not built here.
engine::Handle buildMarkerSymbol(core::AppContext& ctx, const MarkerRequest& request,
                                 const engine::Point3& p, const engine::Point3& axis);

// What the pick tool does with one picked point on polygon hPolygon (0: none; the
// "Dir" symbols then stand upright): builds the dialog's marker, labels it, hangs
// it under the added-information group, lights it and runs the link that follows.
// 0 when nothing was placed (a failure box, a cancelled text, or the pointer,
// which needs two points).
engine::Handle placeMarker(core::AppContext& ctx, const engine::Point3& p, engine::Handle hPolygon);
// The pointer: an eight-sided cone from the first pick to the second.
engine::Handle placeMarkerPointer(core::AppContext& ctx, const engine::Point3& first,
                                  const engine::Point3& second);

// The steps every placed marker ends with: recorded in the added groups, under
// the added-information group, lit, then the dialog's link (comment or photograph).
void finishPlacedMarker(core::AppContext& ctx, engine::Handle hGroup);

// "( x, y, z )" in metres with dblCoordOffset taken off.
std::string markerCoordinateText(const core::AppContext& ctx, const engine::Point3& p);

// Rebuilds the visible text markers from the scene: each group whose polygons carry
// a "UP_VText" or "PR_VText" record is one label (its text at the group's centre of
// mass). The marker dialog's list shows each label's group and father-group names.
void refreshTextMarkers(core::AppContext& ctx);

// The marker dialog and its two companions, made and wired on first use.
forms::Frm10SelectMarker& selectMarkerForm(core::AppContext& ctx);

}  // namespace builders
