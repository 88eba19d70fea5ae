#include "builders/MarkerSpheres.h"

#include <cmath>

#include "builders/BuilderMessages.h"
#include "builders/Meshes.h"
#include "core/AngleMath.h"
#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/Settings.h"

namespace builders {

using engine::Handle;
using engine::Point3;

namespace {

constexpr short kRenderLatitudeBands = 2;
constexpr short kRenderLongitudeBands = 8;

struct ResolutionEntry {
    std::string_view text;
    double latitude, longitude;
};
// Stacks and slices; the cube marker is apart as it keeps them.
constexpr ResolutionEntry kResolutions[] = {
    {"High Resolution", 8, 16},
    {"Medium Resolution", 8, 8},
    {"Low Resolution", 4, 8},
    {"Quick Marker", 2, 4},
};
constexpr std::string_view kCubeEntry = "Cube Marker";
constexpr short kCubeKind = -1;

// A sphere at the location, or 0 (with nothing left behind) when it cannot be there.
Handle sphereAt(core::AppContext& ctx, const Point3& location, double radius, short lat, short lon,
                const engine::Rgb& colour) {
    if (!location.finite()) return 0;
    const Handle h = P_fncCreateSphere(ctx.engine, radius, lat, lon, colour);
    if (h != 0) ctx.engine.group_set_location(h, location);
    return h;
}

Handle& pickMarkerSlot(core::AppContext& ctx, int which) {
    return which == 1 ? ctx.state.F_h_lngMUSphere1 : ctx.state.F_h_lngMUSphere2;
}

}  // namespace

bool P_fncRenderSphere(core::AppContext& ctx, const Point3& location, double dblRadius,
                       const engine::Rgb& lngColour, Handle& hSphere) {
    hSphere =
        sphereAt(ctx, location, dblRadius, kRenderLatitudeBands, kRenderLongitudeBands, lngColour);
    if (!checkBuilderHandle(ctx, hSphere, BuilderFailure::Sphere)) return false;
    core::p_subMainLoop(ctx);
    return true;
}

bool P_fncResolutionSphere(core::AppContext& ctx, const Point3& location, double dblRadius,
                           const engine::Rgb& lngColour, Handle& hSphere) {
    hSphere = sphereAt(ctx, location, dblRadius, sphereBands(ctx.settings.dblSphereLatitudeBands),
                       sphereBands(ctx.settings.dblSphereLongitudeBands), lngColour);
    return checkBuilderHandle(ctx, hSphere, BuilderFailure::Sphere);
}

bool P_fncResolutionCube(core::AppContext& ctx, const Point3& location, float sngSize,
                         const engine::Rgb& lngColour, Handle& hCube) {
    hCube = 0;
    if (location.finite()) {
        hCube = P_fncCreateCube(ctx.engine, {sngSize, sngSize, sngSize}, lngColour);
        if (hCube != 0) ctx.engine.group_set_location(hCube, location);
    }
    return checkBuilderHandle(ctx, hCube, BuilderFailure::Cube);
}

short sphereBands(double setting) {
    if (std::isnan(setting)) return 0;
    const double r = core::roundHalfEven(setting);
    if (r >= 32767) return 32767;
    if (r <= -32768) return -32768;
    return static_cast<short>(r);
}

bool applySphereResolution(core::Settings& settings, std::string_view entry) {
    if (entry == kCubeEntry) {
        settings.intSphereMarkerKind = kCubeKind;
        return true;
    }
    for (const ResolutionEntry& e : kResolutions) {
        if (e.text != entry) continue;
        settings.dblSphereLatitudeBands = e.latitude;
        settings.dblSphereLongitudeBands = e.longitude;
        settings.intSphereMarkerKind = 0;
        return true;
    }
    return false;
}

std::string_view sphereResolutionEntry(const core::Settings& settings) {
    if (cubeMarker(settings)) return kCubeEntry;
    for (const ResolutionEntry& e : kResolutions)
        if (sphereBands(settings.dblSphereLatitudeBands) == e.latitude &&
            sphereBands(settings.dblSphereLongitudeBands) == e.longitude)
            return e.text;
    return "";
}

bool cubeMarker(const core::Settings& settings) { return settings.intSphereMarkerKind != 0; }

Handle placePointMarker(core::AppContext& ctx, const Point3& location, double dblSize,
                        const engine::Rgb& lngColour) {
    Handle h = 0;
    if (cubeMarker(ctx.settings))
        P_fncResolutionCube(ctx, location, toSingle(1.3 * dblSize), lngColour, h);
    else
        P_fncResolutionSphere(ctx, location, dblSize, lngColour, h);
    return h;
}

Handle placePickMarker(core::AppContext& ctx, int which, const Point3& at) {
    if (which != 1 && which != 2) return 0;
    removePickMarker(ctx, which);
    const Handle h = sphereAt(ctx, at, ctx.settings.dblLineThickness, kRenderLatitudeBands,
                              kRenderLongitudeBands, kPickMarkerColour);
    pickMarkerSlot(ctx, which) = h;
    checkBuilderHandle(ctx, h, which == 1 ? BuilderFailure::MUSphere1 : BuilderFailure::MUSphere2);
    return h;
}

void removePickMarker(core::AppContext& ctx, int which) {
    if (which != 1 && which != 2) return;
    Handle& slot = pickMarkerSlot(ctx, which);
    if (slot != 0) ctx.engine.group_delete_members(slot);
    slot = 0;
}

}  // namespace builders
