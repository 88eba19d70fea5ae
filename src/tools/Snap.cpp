#include "tools/Snap.h"

#include <cmath>

#include "builders/Geometry.h"
#include "builders/TubeCentreLine.h"
#include "core/AppContext.h"
#include "core/MainForm.h"
#include "tools/ToolSession.h"

namespace tools {

using engine::Handle;
using engine::Point3;

namespace {

constexpr int kPickPointer = 14;
// A band that rejects polygon after polygon stops here: the pick is then a miss.
constexpr int kMaxBandRejects = 100000;

std::vector<Point3> polygonPoints(const engine::Engine& eng, Handle h) {
    std::vector<Point3> pts;
    for (Handle pt = eng.polygon_get_first_point(h); pt != 0; pt = eng.point_get_next_point(pt)) {
        Point3 p;
        if (eng.point_get_xyz(pt, p) == 0) pts.push_back(p);
    }
    return pts;
}

// The two end points a "Tube" or "Line" snap works with: the tube's axis when the
// polygon belongs to a tube; for a line, failing that, the polygon's first point and
// its point farthest from it.
bool axisEnds(const engine::Engine& eng, Handle h, bool line, Point3& a, Point3& b) {
    bool isTube = false;
    if (builders::P_fncTubeCentreLine(eng, h, a, b, isTube) && isTube) return true;
    if (!line) return false;
    const auto pts = polygonPoints(eng, h);
    if (pts.size() < 2) return false;
    a = pts.front();
    double best = -1;
    for (const auto& p : pts) {
        const double d = engine::length(p - a);
        if (d > best) {
            best = d;
            b = p;
        }
    }
    return best > 0;
}

}  // namespace

std::vector<std::string> snapTargets(std::string_view box1) {
    if (box1 == "Polygon") return {"Surface", "Point", "Edge", "1/2 Edge", "Centre"};
    if (box1 == "Tube" || box1 == "Line") return {"Edge", "Point", "Centre"};
    if (box1 == "Entity" || box1 == "Group") return {"Centre"};
    return {};
}

std::string snapTargetAfter(std::string_view box1, std::string_view box2) {
    if (box1 == "Polygon") return "Surface";
    if (box1 == "Tube" || box1 == "Line") {
        if (box2 == "Surface") return "Edge";
        if (box2 == "1/2 Edge") return "Centre";
        if (box2 == "Edge" || box2 == "Point" || box2 == "Centre") return std::string(box2);
        return "Edge";
    }
    if (box1 == "Entity" || box1 == "Group") return "Centre";
    return std::string(box2);
}

void cboSnapSelect1_Change(core::AppContext& ctx) {
    forms::Form& f = mainForm(ctx);
    const std::string box1 = f.text(kSnapBox1);
    auto items = snapTargets(box1);
    if (items.empty()) return;
    forms::Control& second = f.at(kSnapBox2);
    const std::string next = snapTargetAfter(box1, second.text);
    second.items = std::move(items);
    second.text = next;
}

bool nearestEdge(const engine::Engine& eng, Handle h, const Point3& p, Point3& a, Point3& b) {
    const auto pts = polygonPoints(eng, h);
    if (pts.size() < 2) return false;
    double best = 0;
    bool found = false;
    for (std::size_t i = 0; i < pts.size(); ++i) {
        const Point3& s = pts[i];
        const Point3& e = pts[(i + 1) % pts.size()];  // the last edge closes to the first point
        const Point3 toPick = p - s, along = e - s;
        const double lp = engine::length(toPick), le = engine::length(along);
        double d = 0;
        if (lp > 0 && le > 0) {
            double c = engine::dot(toPick, along) / (lp * le);
            c = c > 1 ? 1 : (c < -1 ? -1 : c);
            d = std::sin(std::acos(c)) * lp;
        }
        if (!found || d < best) {
            best = d;
            a = s;
            b = e;
            found = true;
        }
    }
    return found;
}

bool snapByBoxes(const engine::Engine& eng, std::string_view box1, std::string_view box2, Handle h,
                 const Point3& pick, Point3& out) {
    out = pick;
    if (box1 == "Polygon") {
        if (box2 == "Point") {
            const Handle pt = eng.polygon_get_closest_point(h, pick);
            return pt != 0 && eng.point_get_xyz(pt, out) == 0;
        }
        if (box2 == "Edge" || box2 == "1/2 Edge") {
            Point3 a, b;
            if (!nearestEdge(eng, h, pick, a, b)) return true;
            if (box2 == "Edge") {
                Point3 foot = pick;
                builders::P_subProjectPointOnLine(a, b, foot);
                if (foot.finite()) out = foot;
            } else {
                out = (a + b) * 0.5;
            }
            return true;
        }
        if (box2 == "Centre") out = eng.polygon_get_center(h);
        return true;
    }
    if (box1 == "Tube" || box1 == "Line") {
        Point3 a, b;
        if (!axisEnds(eng, h, box1 == "Line", a, b)) return true;  // no axis: no change
        if (box2 == "Edge") {
            Point3 foot = pick;
            builders::P_subProjectPointOnLine(a, b, foot);
            if (foot.finite()) out = foot;
        } else if (box2 == "Point") {
            out = engine::length(pick - a) < engine::length(pick - b) ? a : b;  // a tie: the second
        } else if (box2 == "Centre") {
            out = (a + b) * 0.5;
        }
        return true;
    }
    const Handle entity = eng.polygon_get_group(h);
    if (box1 == "Entity") {
        if (entity != 0) out = eng.group_get_center_of_mass(entity);
    } else if (box1 == "Group") {
        const Handle father = entity != 0 ? eng.group_get_father_group(entity) : 0;
        if (father != 0)
            out = eng.group_get_center_of_mass(father);
        else if (entity != 0)
            out = eng.group_get_center_of_mass(entity);
    }
    return true;
}

engine::PickHit pickInBand(core::AppContext& ctx, double x, double y) {
    auto& eng = ctx.engine;
    const auto& s = ctx.state;
    engine::PickHit hit = eng.engine_2D_point_to_3D(x, y);
    if (mainForm(ctx).text("cboCullingDepth") == "Infinite") return hit;
    const double nearEdge = static_cast<double>(s.lngCutOff);
    const double farEdge = nearEdge + static_cast<double>(s.lngCullingDepth);
    std::vector<Handle> noted;
    while (hit.polygon != 0 && (hit.distance < nearEdge || hit.distance > farEdge)) {
        if (noted.size() >= kMaxBandRejects || eng.polygon_disable(hit.polygon) != 0) {
            hit = {};
            break;
        }
        noted.push_back(hit.polygon);
        hit = eng.engine_2D_point_to_3D(x, y);
    }
    for (Handle h : noted) eng.polygon_enable(h);
    return hit;
}

std::string snapStatusText(const Point3& p) {
    return fixedText(p.x * 0.1, 1) + ", " + fixedText(p.y * 0.1, 1) + ", " +
           fixedText(p.z * 0.1, 1);
}

SnapResult P_subSnapPoint(core::AppContext& ctx, double x, double y, Point3& point) {
    ToolSession& ts = toolSession(ctx);
    const engine::PickHit hit = pickInBand(ctx, x, y);
    ts.hSnapPolygon = hit.polygon;
    if (hit.polygon == 0) {
        ts.bolSnapFailed = true;
        return SnapResult::Miss;
    }
    ts.bolSnapFailed = false;
    forms::Form& f = mainForm(ctx);
    Point3 out;
    if (!snapByBoxes(ctx.engine, f.text(kSnapBox1), f.text(kSnapBox2), hit.polygon, hit.point,
                     out)) {
        core::p_subResetAndCleanup(ctx);
        return SnapResult::Reset;
    }
    point = out;
    ctx.status(3, snapStatusText(point));
    return SnapResult::Hit;
}

bool missKeepsTool(core::AppContext& ctx) {
    if (ctx.ui.msgBox(kMissText, ui::Buttons::OKCancel, kMissTitle) == ui::Answer::OK) {
        ctx.pointer(kPickPointer);
        return true;
    }
    core::p_subResetAndCleanup(ctx);
    return false;
}

bool missKeepsSphere(core::AppContext& ctx) {
    if (ctx.ui.msgBox(kMissText, ui::Buttons::OKCancel, kMissTitle) == ui::Answer::OK) {
        ctx.pointer(kPickPointer);
        return true;
    }
    return false;
}

}  // namespace tools
