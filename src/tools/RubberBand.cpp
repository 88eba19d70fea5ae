// The rubber band: with a selection action armed on the scope "Rubberband", a
// press and drag draws a translucent rectangle on the screen; the mouse-up acts
// on the polygons whose centres project inside it.
#include <algorithm>
#include <cmath>
#include <map>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "forms/Frm22Selection.h"
#include "tools/ExtraTools.h"
#include "tools/SelectionActions.h"

namespace tools {

using engine::Handle;
using engine::Point3;

namespace {

// A drag shorter than this many pixels each way is a click, not a band.
constexpr double kMinDrag = 2.0;
constexpr engine::Rgb kBandColour{255, 255, 0};
constexpr int kBandTranslucency = 50;
constexpr const char* kDragPrompt = "Press and drag to draw the band around the object(s)";

struct Band {
    bool pressed = false;
    bool dragged = false;
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    Handle polygons[2] = {0, 0};
};

std::map<const core::AppContext*, Band>& bands() {
    static std::map<const core::AppContext*, Band> all;
    return all;
}
Band& bandOf(core::AppContext& ctx) { return bands()[&ctx]; }

// A triangle facing the eye.
Handle bandTriangle(engine::Engine& eng, Point3 a, Point3 b, Point3 c, const Point3& view) {
    const Point3 n = engine::cross(c - a, b - a);
    if (engine::dot(n, view) > 0) std::swap(b, c);
    const Handle h = eng.polygon_create();
    for (const Point3& p : {a, b, c}) eng.polygon_add_point(h, p);
    if (eng.engine_add_polygon(h) != 0) {
        eng.polygon_delete(h);
        return 0;
    }
    eng.polygon_set_color_fill(h, kBandColour);
    eng.polygon_set_translucent(h, kBandTranslucency);
    return h;
}

void drawBand(core::AppContext& ctx, Band& b) {
    deleteBandPolygons(ctx);
    auto& eng = ctx.engine;
    const Handle cam = ctx.state.F_h_lngCamera;
    const Point3 dir = eng.camera_get_direction(cam);
    const double depth = std::max(eng.camera_get_distance_from_eye(cam), 1e-3) * kBandDepth;
    engine::Plane plane;
    plane.n = dir;
    plane.d = -engine::dot(eng.camera_get_location(cam) + dir * depth, dir);
    const double xs[4] = {b.x0, b.x1, b.x1, b.x0}, ys[4] = {b.y0, b.y0, b.y1, b.y1};
    Point3 c[4];
    for (int i = 0; i < 4; ++i)
        if (eng.engine_2D_point_to_3D_point_on_plane(xs[i], ys[i], plane, c[i]) != 0) return;
    b.polygons[0] = bandTriangle(eng, c[0], c[1], c[2], dir);
    b.polygons[1] = bandTriangle(eng, c[0], c[2], c[3], dir);
}

}  // namespace

bool bandScopeArmed(core::AppContext& ctx) {
    SelectionAction a;
    return armedSelectionAction(ctx, a) && forms::selectionScopeBox(ctx).text == "Rubberband";
}

void bandMouseDown(core::AppContext& ctx, int button, int shift, double x, double y) {
    Band& b = bandOf(ctx);
    b.pressed = false;
    b.dragged = false;
    if (button != 1 || shift == 2 || !bandScopeArmed(ctx)) return;
    b.pressed = true;
    b.x0 = b.x1 = x;
    b.y0 = b.y1 = y;
}

void bandMouseMove(core::AppContext& ctx, int button, double x, double y) {
    Band& b = bandOf(ctx);
    if (!b.pressed || !(button & 1) || !std::isfinite(x) || !std::isfinite(y)) return;
    b.x1 = x;
    b.y1 = y;
    b.dragged = std::abs(b.x1 - b.x0) >= kMinDrag && std::abs(b.y1 - b.y0) >= kMinDrag;
    if (b.dragged)
        drawBand(ctx, b);
    else
        deleteBandPolygons(ctx);
    core::p_subMainLoop(ctx);
}

void deleteBandPolygons(core::AppContext& ctx) {
    auto it = bands().find(&ctx);
    if (it == bands().end()) return;
    for (Handle& h : it->second.polygons) {
        if (h != 0) ctx.engine.polygon_delete(h);
        h = 0;
    }
}

std::vector<Handle> polygonsInBand(core::AppContext& ctx, double x0, double y0, double x1,
                                   double y1) {
    std::vector<Handle> out;
    const double xl = std::min(x0, x1), xh = std::max(x0, x1);
    const double yl = std::min(y0, y1), yh = std::max(y0, y1);
    auto& eng = ctx.engine;
    for (Handle p = eng.polygon_get_first_polygon(); p != 0; p = eng.polygon_get_next(p)) {
        if (eng.polygon_is_disabled(p)) continue;
        double x = 0, y = 0;
        // Only what stands in view: in the window and between the cut-off and the fog.
        if (eng.engine_3D_point_to_2D(eng.polygon_get_center(p), x, y) != 0) continue;
        if (x >= xl && x <= xh && y >= yl && y <= yh) out.push_back(p);
    }
    return out;
}

bool bandSelect(core::AppContext& ctx, int shift) {
    Band& b = bandOf(ctx);
    deleteBandPolygons(ctx);
    const bool dragged = b.pressed && b.dragged;
    b.pressed = false;
    b.dragged = false;
    if (!dragged) {
        ctx.comment(kDragPrompt);
        return false;
    }
    P_subSelectBand(ctx, polygonsInBand(ctx, b.x0, b.y0, b.x1, b.y1), shift);
    return true;
}

void forgetBand(core::AppContext& ctx) { bands().erase(&ctx); }

}  // namespace tools
