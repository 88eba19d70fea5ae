#include "analysis/SplitPolygons.h"

#include <vector>

#include "analysis/ProgressPacer.h"
#include "builders/Tubes.h"
#include "core/AppContext.h"
#include "core/GroupPolygons.h"
#include "core/Lighting.h"
#include "core/MainForm.h"

namespace analysis {

namespace {

using engine::Handle;
using engine::Plane;
using engine::Point3;

int compareSide(double p, double coordinate) {
    if (p > coordinate) return 1;
    if (p < coordinate) return -1;
    return 0;
}

// One test a coefficient; the order of the sums is that of the formulas.
int sideOnZ(const Plane& pl, const Point3& c) {
    const double p = (pl.n.y * c.y + pl.n.x * c.x + pl.d) * (-1 / pl.n.z);
    return compareSide(p, c.z);
}
int sideOnY(const Plane& pl, const Point3& c) {
    const double p = (pl.n.z * c.z + pl.n.x * c.x + pl.d) * (-1 / pl.n.y);
    return compareSide(p, c.y);
}
int sideOnX(const Plane& pl, const Point3& c) {
    const double p = (pl.n.z * c.z + pl.n.y * c.y + pl.d) * (-1 / pl.n.x);
    return compareSide(p, c.x);
}

void setEnabled(engine::Engine& eng, const std::vector<Handle>& polygons, bool on) {
    for (Handle p : polygons) on ? eng.polygon_enable(p) : eng.polygon_disable(p);
}

std::vector<Handle> ownPolygons(const engine::Engine& eng, Handle group) {
    std::vector<Handle> out;
    if (group == 0) return out;
    for (Handle p = eng.group_get_first_polygon(group); p != 0;
         p = eng.group_get_next_polygon(group, p))
        out.push_back(p);
    return out;
}

void deletePiece(engine::Engine& eng, Handle& piece) {
    if (piece != 0) eng.polygon_delete(piece);
    piece = 0;
}

struct Cutter {
    core::AppContext& ctx;
    const Plane& plane;
    bool split;
    bool lines;
    SplitRun& run;

    void cut(Handle h) {
        engine::Engine& eng = ctx.engine;
        Handle front = 0, back = 0;
        if (eng.polygon_split(h, plane, front, back) != 0) return;
        if (front == 0 || back == 0) {
            // Not crossed: a lone piece is no use to anyone.
            deletePiece(eng, front);
            deletePiece(eng, back);
            if (split) P_subSortToSide(eng, h, plane, run.frontGroup, run.backGroup);
            return;
        }
        ++run.polygonsCut;
        if (split) eng.polygon_delete(h);
        if (eng.engine_add_polygon(front) == -1) deletePiece(eng, front);
        if (eng.engine_add_polygon(back) == -1) deletePiece(eng, back);
        if (lines && front != 0 && back != 0 &&
            P_subSectionLine(ctx, front, back, run.sectionLineGroup) != 0)
            ++run.sectionLines;
        if (split) {
            if (front != 0) P_subSortToSide(eng, front, plane, run.frontGroup, run.backGroup);
            if (back != 0) P_subSortToSide(eng, back, plane, run.frontGroup, run.backGroup);
        } else {
            deletePiece(eng, front);
            deletePiece(eng, back);
        }
    }
};

}  // namespace

int sideOfPlane(const Plane& plane, const Point3& centre) {
    if (plane.n.z != 0) return sideOnZ(plane, centre);
    if (plane.n.y != 0) return sideOnY(plane, centre);
    if (plane.n.x != 0) return sideOnX(plane, centre);
    return 0;
}

void P_subSortToSide(engine::Engine& eng, Handle lngPolygon, const Plane& plane,
                     Handle lngFrontGroup, Handle lngBackGroup) {
    const int side = sideOfPlane(plane, eng.polygon_get_center(lngPolygon));
    if (side > 0)
        eng.polygon_set_group(lngPolygon, lngFrontGroup);
    else if (side < 0)
        eng.polygon_set_group(lngPolygon, lngBackGroup);
}

Handle P_subSectionLine(core::AppContext& ctx, Handle lngFront, Handle lngBack,
                        Handle lngSectionGroup) {
    engine::Engine& eng = ctx.engine;
    Point3 ends[2];
    int found = 0;
    for (Handle a = eng.polygon_get_first_point(lngFront); a != 0 && found < 2;
         a = eng.point_get_next_point(a)) {
        if (ctx.state.bolInterruptProcess) break;
        Point3 pa;
        if (eng.point_get_xyz(a, pa) != 0) continue;
        for (Handle b = eng.polygon_get_first_point(lngBack); b != 0 && found < 2;
             b = eng.point_get_next_point(b)) {
            if (ctx.state.bolInterruptProcess) break;
            Point3 pb;
            if (eng.point_get_xyz(b, pb) == 0 && pa == pb) ends[found++] = pa;
        }
    }
    if (found < 2) return 0;
    const double size = ctx.settings.dblLineThickness;
    const Handle tube = builders::P_fncCreate3DExcavation(eng, false, ends[0], ends[1], size, size,
                                                          eng.polygon_get_color(lngFront));
    if (tube == 0) return 0;
    // Disabled until the run ends, so that the walk does not cut them.
    core::forEachGroupPolygon(eng, tube, [&](Handle p) {
        eng.polygon_disable(p);
        return true;
    });
    eng.group_set_father_group(tube, lngSectionGroup);
    return tube;
}

SplitRun P_subSplitPolygons(core::AppContext& ctx, Handle lngPlanePolygon, bool bolSplitPolygons,
                            bool bolDrawSplitLines) {
    engine::Engine& eng = ctx.engine;
    SplitRun run;
    // 1. A polygon without a plane leaves it all zero: every split then fails.
    Plane plane;
    eng.polygon_get_plane(lngPlanePolygon, plane);
    run.frontGroup = eng.group_create(kFrontGroupName);
    run.backGroup = eng.group_create(kBackGroupName);
    run.sectionLineGroup = eng.group_create(kSectionLineGroupName);
    // 2
    std::vector<Handle> planeGroup = ownPolygons(eng, eng.polygon_get_group(lngPlanePolygon));
    if (planeGroup.empty() && eng.polygon_is_in_world(lngPlanePolygon))
        planeGroup.push_back(lngPlanePolygon);
    setEnabled(eng, planeGroup, false);
    // 3. Pieces go to the end of the walk; the walk ends at the polygon that was last.
    Handle last = 0;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) last = h;
    Cutter cutter{ctx, plane, bolSplitPolygons, bolDrawSplitLines, run};
    ProgressPacer pacer(ctx);
    for (Handle h = eng.polygon_get_first_polygon(); h != 0;) {
        if (ctx.state.bolInterruptProcess) {
            run.interrupted = true;
            break;
        }
        const Handle next = h == last ? 0 : eng.polygon_get_next(h);
        if (!eng.polygon_is_disabled(h)) cutter.cut(h);
        pacer.step(1, 100, "");
        h = next;
    }
    // 4
    setEnabled(eng, planeGroup, true);
    // 5
    if (bolDrawSplitLines) {
        core::forEachGroupPolygon(eng, run.sectionLineGroup, [&](Handle p) {
            eng.polygon_enable(p);
            return true;
        });
        if (run.sectionLines > 0) core::P_subApplyLight(ctx, run.sectionLineGroup);
    }
    core::p_subMainLoop(ctx);
    return run;
}

void armSplitTool(core::AppContext& ctx, bool bolSplitPolygons, bool bolDrawSplitLines) {
    core::p_subResetAndCleanup(ctx);
    ctx.comment(bolSplitPolygons && bolDrawSplitLines ? kSplitAndLinesPrompt : kSplitPrompt);
    ctx.state.setToolFlag(kSplitFlag, bolSplitPolygons);
    ctx.state.setToolFlag(kSplitLinesFlag, bolDrawSplitLines);
    ctx.pointer(14);
    ctx.ui.setFocus();
}

bool splitAtDoubleClick(core::AppContext& ctx, double x, double y) {
    const bool split = ctx.state.toolFlag(kSplitFlag);
    const bool lines = ctx.state.toolFlag(kSplitLinesFlag);
    if (!split && !lines) return false;
    const engine::PickHit hit = ctx.engine.engine_2D_point_to_3D(x, y);
    if (hit.polygon == 0) return true;
    // A new pick is a new run: an interrupt of the last one must not stop it.
    ctx.state.bolInterruptProcess = false;
    ctx.pointer(11);
    P_subSplitPolygons(ctx, hit.polygon, split, lines);
    ctx.progress(80);
    // The tool stays armed for the next plane until reset.
    ctx.pointer(14);
    return true;
}

}  // namespace analysis
