#pragma once
// Marker spheres and cubes as the tools, the imports and the analysis place them:
// the main form's wrappers, the two pick markers and the resolution rules. A seismic
// catalogue or a point file can make tens of thousands of markers; the resolution
// setting is the means of control.

#include <string_view>

#include "engine/Types.h"

namespace core {
class AppContext;
struct Settings;
}  // namespace core

namespace builders {

// Sphere of 2 latitude and 8 longitude bands with its centre on the location, then
// one frame. hSphere gets the group, or 0 after the box "h_lngSphere = 0". A
// location that is not finite counts as a failure.
bool P_fncRenderSphere(core::AppContext& ctx, const engine::Point3& location, double dblRadius,
                       const engine::Rgb& lngColour, engine::Handle& hSphere);
// The same with the settings' bands and no frame.
bool P_fncResolutionSphere(core::AppContext& ctx, const engine::Point3& location, double dblRadius,
                           const engine::Rgb& lngColour, engine::Handle& hSphere);
// Cube with all three sizes sngSize, centred on the location; "h_lngCube = 0" on failure.
bool P_fncResolutionCube(core::AppContext& ctx, const engine::Point3& location, float sngSize,
                         const engine::Rgb& lngColour, engine::Handle& hCube);

// A band setting as the sphere takes it: rounded half to even into 16 bits
// (NaN gives 0, values beyond the range its ends).
short sphereBands(double setting);

// The cboSphereResolution entries: stacks, slices and marker kind. "Cube Marker"
// leaves the bands as they are. False, and nothing changed, for another text.
bool applySphereResolution(core::Settings& settings, std::string_view entry);
// The entry that matches the settings ("Cube Marker" whenever the kind is the
// cube's); "" for bands no entry gives.
std::string_view sphereResolutionEntry(const core::Settings& settings);
// True when point markers are drawn as cubes (marker kind not 0).
bool cubeMarker(const core::Settings& settings);

// A point marker of an import or an analysis result: a cube whose sizes are 1.3
// times dblSize when the settings ask for cubes, else a sphere of radius dblSize
// with the settings' bands. 0 after the wrapper's box on failure.
engine::Handle placePointMarker(core::AppContext& ctx, const engine::Point3& location,
                                double dblSize, const engine::Rgb& lngColour);

// The colour of the pick markers.
inline constexpr engine::Rgb kPickMarkerColour{255, 0, 0};

// Pick marker 1 or 2 (F_h_lngMUSphere1 / 2) at a picked point: a sphere of 2 by 8
// bands whose radius is the line thickness setting. The marker it replaces is
// deleted first. 0 after "Null handle for F_h_lngMUSphere1" (or 2) on failure;
// any other number than 1 or 2 does nothing and gives 0.
engine::Handle placePickMarker(core::AppContext& ctx, int which, const engine::Point3& at);
// Deletes pick marker 1 or 2 when it exists; its handle goes back to 0.
void removePickMarker(core::AppContext& ctx, int which);

}  // namespace builders
