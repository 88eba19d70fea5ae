// The building steps of the chain: excavation legs, planes and markers.
#include "builders/DiscPlanes.h"
#include "builders/MarkerSpheres.h"
#include "builders/Markers.h"
#include "builders/TubeLeg.h"
#include "core/AppContext.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "forms/Frm12Excavation.h"
#include "tools/Snap.h"
#include "tools/ToolSession.h"
#include "tools/ToolSteps.h"

namespace tools {

using engine::Handle;
using engine::Point3;

namespace {

builders::TubeSection sectionOf(const std::string& option) {
    using S = builders::TubeSection;
    if (option == "optCrossPolyLine") return S::CrossPolyLine;
    if (option == "optExcCylinder") return S::Cylinder;
    if (option == "optExcWedge") return S::Wedge;
    if (option == "optExc4Cone") return S::Cone4;
    if (option == "optExc8Cone") return S::Cone8;
    if (option == "optExc3Cone") return S::Cone3;
    return S::Tunnel;
}

builders::LinePosition positionOf(const std::string& option) {
    if (option == "optLineTop") return builders::LinePosition::Top;
    if (option == "optLineBottom") return builders::LinePosition::Bottom;
    return builders::LinePosition::Centre;
}

// The first click of a two-point step: the point, sphere 1, the rubber line.
bool takeFirstPoint(core::AppContext& ctx, const Click& c, const char* off, const char* on,
                    const char* prompt) {
    Point3 p;
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Miss) missKeepsTool(ctx);
    if (r != SnapResult::Hit) return false;
    if (!pickMarkerAt(ctx, 1, p)) return false;
    toolSession(ctx).firstPoint = p;
    arm(ctx, off, on);
    rubberFrom(ctx, p);
    ctx.comment(prompt);
    return true;
}

// A later click: the snapped point, or false after the miss question (OK keeps
// the tool and its spheres, Cancel resets).
bool takeNextPoint(core::AppContext& ctx, const Click& c, Point3& p) {
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Hit) return true;
    if (r == SnapResult::Miss && !missKeepsSphere(ctx)) core::p_subResetAndCleanup(ctx);
    return false;
}

// One object placed: Shift 1 keeps the tool armed at `again`, otherwise it ends.
void placedOne(core::AppContext& ctx, const Click& c, const char* again, const char* prompt) {
    if (c.shift == 1) {
        core::p_subResetAndCleanup(ctx);
        ctx.state.setToolFlag(again, true);
        ctx.pointer(kPickPointer);
        ctx.comment(prompt);
        return;
    }
    core::p_subResetAndCleanup(ctx);
}

}  // namespace

bool stepExcavation(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    ToolSession& ts = toolSession(ctx);
    auto& form = forms::Frm12Excavation::of(ctx);
    form.ensureLoaded();
    if (s.toolFlag("bolExcavation1")) {
        Point3 p;
        const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
        if (r == SnapResult::Miss) missKeepsTool(ctx);
        if (r != SnapResult::Hit) return true;
        ts.pickedUp = form.checkValue("chkPickUpAttributes") == 1;
        if (ts.pickedUp) {
            ts.pickedName = core::strEntityName(ctx.engine, ts.hSnapPolygon);
            ts.pickedColour = ctx.engine.polygon_get_color(ts.hSnapPolygon);
            form.lngExcavationColour = ts.pickedColour;
        }
        if (!pickMarkerAt(ctx, 1, p)) return true;
        ts.firstPoint = p;
        arm(ctx, "bolExcavation1", "bolExcavation2");
        rubberFrom(ctx, p);
        ctx.comment("Select the second point of the excavation");
        return true;
    }
    if (!s.toolFlag("bolExcavation2")) return false;

    Point3 p;
    if (!takeNextPoint(ctx, c, p)) return true;
    builders::TubeLegRequest q;
    q.section = sectionOf(form.selectedType());
    q.position = positionOf(form.selectedLinePosition());
    q.start = ts.firstPoint;
    q.end = p;
    q.widthMetres = form.widthMetres();
    q.heightMetres = form.heightMetres();
    q.colour = form.lngExcavationColour;
    builders::removePickMarker(ctx, 1);
    const Handle h = builders::buildTubeLeg(ctx, q);
    if (h == 0) {
        core::p_subResetAndCleanup(ctx);
        return true;
    }
    if (ts.pickedUp) {
        core::p_subSetGroupPolygonNames(ctx.engine, h, ts.pickedName);
        ctx.engine.group_set_color(h, ts.pickedColour);
    }
    core::P_subApplyLight(ctx, h);
    const double length = engine::length(p - ts.firstPoint);
    double dip = 0, direction = 0;
    lineDipDirection(ctx, ts.firstPoint, p, dip, direction);
    ts.dblCumLength += length;
    const std::string text = "The excavation length is " + fixedText(length * 0.1, 2) +
                             " m:   Dip is " + fixedText(dip, 1) + " degrees:   Direction is " +
                             fixedText(direction, 1) +
                             " degrees:   CUM. LENGTH = " + fixedText(ts.dblCumLength * 0.1, 2);
    if (c.shift == 1) {
        ts.firstPoint = p;
        if (!pickMarkerAt(ctx, 1, p)) return true;
        rubberFrom(ctx, p);
        ctx.comment(text + " m.   Select the next point");
        return true;
    }
    if (c.shift == 3) {
        core::p_subResetAndCleanup(ctx);
        newAddedInfoGroup(ctx);
        s.setToolFlag("bolExcavation1", true);
        ctx.pointer(kPickPointer);
        ctx.comment(text + " m.   Select a new starting point");
        return true;
    }
    ctx.comment(text + " m.");
    core::p_subResetAndCleanup(ctx);
    return true;
}

bool stepPlanes(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    ToolSession& ts = toolSession(ctx);
    if (s.toolFlag("bolPlaneOne")) {
        Point3 p;
        const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
        if (r == SnapResult::Miss) missKeepsTool(ctx);
        if (r != SnapResult::Hit) return true;
        if (builders::placeDiscPlaneOnePoint(ctx, p) == 0) {
            core::p_subResetAndCleanup(ctx);
            return true;
        }
        placedOne(ctx, c, "bolPlaneOne", "Select the first point of the fault plane");
        return true;
    }
    if (s.toolFlag("bolPlaneTwo1")) {
        takeFirstPoint(ctx, c, "bolPlaneTwo1", "bolPlaneTwo2",
                       "Select the second point of the fault plane");
        return true;
    }
    if (s.toolFlag("bolPlaneTwo2")) {
        Point3 p;
        if (!takeNextPoint(ctx, c, p)) return true;
        if (builders::placeDiscPlaneTwoPoints(ctx, ts.firstPoint, p) == 0) {
            core::p_subResetAndCleanup(ctx);
            return true;
        }
        // Each next click chains a slab from the last point.
        ts.firstPoint = p;
        if (!pickMarkerAt(ctx, 1, p)) return true;
        rubberFrom(ctx, p);
        ctx.comment("Select the next point of the fault plane");
        return true;
    }
    if (s.toolFlag("bolPlaneThree1")) {
        takeFirstPoint(ctx, c, "bolPlaneThree1", "bolPlaneThree2",
                       "Select the second point of the fault plane");
        return true;
    }
    if (s.toolFlag("bolPlaneThree2")) {
        Point3 p;
        if (!takeNextPoint(ctx, c, p)) return true;
        if (!pickMarkerAt(ctx, 2, p)) return true;
        ts.secondPoint = p;
        arm(ctx, "bolPlaneThree2", "bolPlaneThree3");
        rubberFrom(ctx, p);
        ctx.comment("Select the third point of the fault plane");
        return true;
    }
    if (s.toolFlag("bolPlaneThree3")) {
        Point3 p;
        if (!takeNextPoint(ctx, c, p)) return true;
        builders::removePickMarker(ctx, 1);
        builders::removePickMarker(ctx, 2);
        if (builders::placeDiscPlaneThreePoints(ctx, ts.firstPoint, ts.secondPoint, p) == 0) {
            core::p_subResetAndCleanup(ctx);
            return true;
        }
        placedOne(ctx, c, "bolPlaneThree1", "Select the first point of the fault plane");
        return true;
    }
    return false;
}

bool stepMarker(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    ToolSession& ts = toolSession(ctx);
    if (s.toolFlag("bolMarker")) {
        const auto symbol = builders::selectMarkerForm(ctx).symbol();
        if (symbol == forms::MarkerSymbol::ConePointer) {
            takeFirstPoint(ctx, c, "bolMarker", "bolMarkerSecond",
                           "Select the point the pointer points at");
            return true;
        }
        Point3 p;
        const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
        if (r == SnapResult::Miss) missKeepsTool(ctx);
        if (r != SnapResult::Hit) return true;
        if (builders::placeMarker(ctx, p, ts.hSnapPolygon) == 0) {
            core::p_subResetAndCleanup(ctx);
            return true;
        }
        placedOne(ctx, c, "bolMarker", forms::Frm10SelectMarker::kPrompt);
        return true;
    }
    if (!s.toolFlag("bolMarkerSecond")) return false;
    Point3 p;
    if (!takeNextPoint(ctx, c, p)) return true;
    builders::removePickMarker(ctx, 1);
    if (builders::placeMarkerPointer(ctx, ts.firstPoint, p) == 0) {
        core::p_subResetAndCleanup(ctx);
        return true;
    }
    placedOne(ctx, c, "bolMarker", forms::Frm10SelectMarker::kPrompt);
    return true;
}

}  // namespace tools
