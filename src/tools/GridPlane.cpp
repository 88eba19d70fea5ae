// The grid plane: a flat plane of two faces with grid lines on both, built from
// frm07_GridPlane at a typed or picked centre.
#include <algorithm>
#include <cmath>
#include <memory>

#include "core/AppContext.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "forms/FormNumbers.h"
#include "tools/ExtraTools.h"
#include "tools/Snap.h"
#include "tools/ToolSession.h"

namespace tools {

using engine::Handle;
using engine::Point3;
using forms::Frm07GridPlane;
using forms::GridOrientation;

namespace {

// Lines are this share of the spacing wide, and stand this share of the
// plane's smaller size off its faces so that they never fight with them.
constexpr double kLineWidthShare = 0.03;
constexpr double kLiftShare = 0.001;

// One face: corners c -+ u -+ v, clockwise from the side of u x v (front) or the other.
bool addFace(engine::Engine& eng, Handle g, const Point3& c, const Point3& u, const Point3& v,
             bool front, engine::Rgb colour, const std::string& name) {
    Point3 pts[4] = {c - u - v, c - u + v, c + u + v, c + u - v};
    if (!front) std::swap(pts[1], pts[3]);
    const Handle h = eng.polygon_create();
    for (const Point3& p : pts) eng.polygon_add_point(h, p);
    if (eng.engine_add_polygon(h) != 0) {
        eng.polygon_delete(h);
        return false;
    }
    eng.polygon_set_color_fill(h, colour);
    eng.polygon_set_group(h, g);
    if (!name.empty()) eng.polygon_set_name(h, name);
    return true;
}

double inside(double t, double half, double halfLine) {
    const double limit = std::max(0.0, half - halfLine);
    return std::clamp(t, -limit, limit);
}

Frm07GridPlane& gridForm(core::AppContext& ctx) {
    auto* f = dynamic_cast<Frm07GridPlane*>(ctx.forms.find(Frm07GridPlane::kName));
    if (!f) {
        ctx.forms.add(std::make_unique<Frm07GridPlane>());
        f = dynamic_cast<Frm07GridPlane*>(ctx.forms.find(Frm07GridPlane::kName));
    }
    f->ensureLoaded();
    return *f;
}

std::string metres(double v) { return forms::numberText(v); }

void buildFromForm(core::AppContext& ctx) {
    auto& f = gridForm(ctx);
    GridPlaneRequest q;
    const Point3 m = f.centreMetres();
    q.centre = m * 10.0 + ctx.state.dblCoordOffset;
    q.length = f.lengthMetres() * 10.0;
    q.width = f.widthMetres() * 10.0;
    q.spacing = f.spacingMetres() * 10.0;
    q.orientation = f.orientation();
    q.colour = f.colour();
    newAddedInfoGroup(ctx);
    const Handle g = buildGridPlane(ctx.engine, q);
    if (g == 0) {
        ctx.ui.msgBox("The grid plane could not be built", ui::Buttons::OK, "Grid plane");
        return;
    }
    const std::string name = "Grid plane\r\nCentre (m): " + metres(m.x) + ", " + metres(m.y) +
                             ", " + metres(m.z) +
                             "\r\nGrid spacing (m): " + metres(f.spacingMetres());
    core::p_subSetGroupPolygonNames(ctx.engine, g, name);
    if (ctx.state.F_h_lngAddedInfoGroup != 0)
        ctx.engine.group_set_father_group(g, ctx.state.F_h_lngAddedInfoGroup);
    ctx.state.F_h_lngAddedGroups.push_back(g);
    core::P_subApplyLight(ctx, g);
    ctx.comment("Grid plane built: " + metres(f.lengthMetres()) + " m by " +
                metres(f.widthMetres()) + " m, grid spacing " + metres(f.spacingMetres()) + " m");
    core::p_subMainLoop(ctx);
}

}  // namespace

void gridAxes(GridOrientation o, Point3& first, Point3& second) {
    switch (o) {
        case GridOrientation::VerticalEastWest:
            first = {1, 0, 0};
            second = {0, 0, 1};
            break;
        case GridOrientation::VerticalNorthSouth:
            first = {0, 1, 0};
            second = {0, 0, 1};
            break;
        default:
            first = {1, 0, 0};
            second = {0, 1, 0};
    }
}

std::vector<double> gridLineOffsets(double size, double spacing) {
    std::vector<double> out;
    if (!(size > 0) || !(spacing > 0) || !std::isfinite(size) || !std::isfinite(spacing))
        return out;
    const double half = size / 2;
    // A line that misses the border by a rounding error still counts as on it.
    const long n = static_cast<long>(std::floor(half / spacing + 1e-9));
    if (n > Frm07GridPlane::kMaxLines) return out;
    for (long k = -n; k <= n; ++k) out.push_back(k * spacing);
    return out;
}

engine::Rgb gridLineColour(engine::Rgb c) {
    const double luminance = 0.299 * c.r + 0.587 * c.g + 0.114 * c.b;
    return luminance >= 128 ? engine::Rgb{0, 0, 0} : engine::Rgb{255, 255, 255};
}

Handle buildGridPlane(engine::Engine& eng, const GridPlaneRequest& q) {
    if (!q.centre.finite() || !(q.length > 0) || !(q.width > 0) || !(q.spacing > 0)) return 0;
    const std::vector<double> across1 = gridLineOffsets(q.length, q.spacing);
    const std::vector<double> across2 = gridLineOffsets(q.width, q.spacing);
    if (across1.empty() || across2.empty()) return 0;
    Point3 a, b;
    gridAxes(q.orientation, a, b);
    const Point3 n = engine::cross(a, b);
    const Handle g = eng.group_create(kGridPlaneGroup);
    const double lift = kLiftShare * std::min(q.length, q.width);
    const double halfLine = 0.5 * kLineWidthShare * q.spacing;
    const engine::Rgb lineColour = gridLineColour(q.colour);
    bool ok =
        addFace(eng, g, q.centre, a * (q.length / 2), b * (q.width / 2), true, q.colour, "") &&
        addFace(eng, g, q.centre, a * (q.length / 2), b * (q.width / 2), false, q.colour, "");
    for (int side = 0; ok && side < 2; ++side) {
        const bool front = side == 0;
        const Point3 off = n * (front ? lift : -lift);
        // A border line is drawn just inside the border, not half over it.
        for (double t : across1)
            ok = ok && addFace(eng, g, q.centre + off + a * inside(t, q.length / 2, halfLine),
                               a * halfLine, b * (q.width / 2), front, lineColour, "");
        for (double t : across2)
            ok = ok && addFace(eng, g, q.centre + off + b * inside(t, q.width / 2, halfLine),
                               a * (q.length / 2), b * halfLine, front, lineColour, "");
    }
    if (!ok) {
        eng.group_delete_members(g);
        return 0;
    }
    return g;
}

void gridPlaneButtonDown(core::AppContext& ctx, int button) {
    if (button == 4 || ctx.ui.pointer() == 11) return;
    core::p_subResetAndCleanup(ctx);
    ctx.comment(kGridPlanePrompt);
    auto& f = gridForm(ctx);
    f.accepted = false;
    if (button == 2)
        f.click(f.acceptButton());
    else
        ctx.ui.showModal(f);
    ctx.pointer(ctx.state.toolArmed() ? kPickPointer : 1);
}

bool stepGridCentre(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    if (!s.toolFlag("bolGridCentre")) return false;
    Point3 p;
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Miss) missKeepsTool(ctx);
    if (r != SnapResult::Hit) return true;
    s.setToolFlag("bolGridCentre", false);
    auto& f = gridForm(ctx);
    f.setCentreMetres((p - s.dblCoordOffset) * 0.1);
    ctx.pointer(1);
    ctx.ui.showModal(f);
    return true;
}

void wireGridPlane(core::AppContext& ctx) {
    auto& f = gridForm(ctx);
    core::AppContext* c = &ctx;
    f.onRefuse = [c](const char* text, const char* title) {
        c->ui.msgBox(text, ui::Buttons::OK, title);
    };
    f.chooseColour = [c](engine::Rgb initial) { return c->ui.chooseColour(initial); };
    f.onAccepted = [c] { buildFromForm(*c); };
    f.onPickCentre = [c] {
        c->state.setToolFlag("bolGridCentre", true);
        c->pointer(kPickPointer);
        c->comment(kGridCentrePrompt);
    };
}

}  // namespace tools
