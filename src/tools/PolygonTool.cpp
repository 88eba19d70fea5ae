#include "tools/PolygonTool.h"

#include "builders/BuilderMessages.h"
#include "builders/MarkerSpheres.h"
#include "core/AppContext.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "forms/Frm24Polygon.h"
#include "tools/Snap.h"
#include "tools/ToolSession.h"
#include "tools/ToolSteps.h"

namespace tools {

using engine::Handle;
using engine::Point3;

engine::Handle modCreate3PointPoly(engine::Engine& eng, const Point3& p1, const Point3& p2,
                                   const Point3& p3, const engine::Rgb& colour) {
    const Handle g = eng.group_create(kHandPolygonGroup);
    if (g == 0) return 0;
    const Handle front = eng.polygon_create();
    for (const Point3& p : {p1, p2, p3}) eng.polygon_add_point(front, p);
    if (eng.engine_add_polygon(front) != 0) {
        eng.polygon_delete(front);
        return g;
    }
    eng.polygon_set_color_fill(front, colour);
    eng.polygon_set_group(front, g);
    const Handle back = eng.polygon_duplicate(front);
    if (back != 0) {
        eng.polygon_flip_visible_side(back);
        if (eng.engine_add_polygon(back) == 0)
            eng.polygon_set_group(back, g);
        else
            eng.polygon_delete(back);
    }
    return g;
}

namespace {

forms::Frm24Polygon& polygonForm(core::AppContext& ctx) {
    auto* f = dynamic_cast<forms::Frm24Polygon*>(ctx.forms.find(forms::Frm24Polygon::kName));
    if (!f) {
        ctx.forms.add(std::make_unique<forms::Frm24Polygon>());
        f = dynamic_cast<forms::Frm24Polygon*>(ctx.forms.find(forms::Frm24Polygon::kName));
    }
    return *f;
}

bool snapOrAsk(core::AppContext& ctx, const Click& c, Point3& p, bool pointsTaken) {
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Hit) return true;
    if (r == SnapResult::Miss) {
        if (!pointsTaken)
            missKeepsTool(ctx);
        else if (!missKeepsSphere(ctx))
            core::p_subResetAndCleanup(ctx);
    }
    return false;
}

}  // namespace

bool stepPolygon(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    ToolSession& ts = toolSession(ctx);
    const bool one = s.toolFlag("bolPoly1"), two = s.toolFlag("bolPoly2"),
               three = s.toolFlag("bolPoly3"), more = s.toolFlag("bolPolyMore");
    if (!one && !two && !three && !more) return false;
    Point3 p;
    if (!snapOrAsk(ctx, c, p, !one)) return true;
    if (one) {
        if (!pickMarkerAt(ctx, 1, p)) return true;
        ts.firstPoint = p;
        arm(ctx, "bolPoly1", "bolPoly2");
        rubberFrom(ctx, p);
        ctx.comment("Select the second point of the polygon");
        return true;
    }
    if (two) {
        if (!pickMarkerAt(ctx, 2, p)) return true;
        ts.secondPoint = p;
        arm(ctx, "bolPoly2", "bolPoly3");
        rubberFrom(ctx, p);
        // The plane tool's prompt, kept for the third point.
        ctx.comment("Select the second point of the fault plane");
        return true;
    }
    auto& form = polygonForm(ctx);
    const Handle g =
        modCreate3PointPoly(ctx.engine, ts.firstPoint, ts.secondPoint, p, form.lngPolygonColour);
    if (!builders::checkBuilderHandle(ctx, g, builders::BuilderFailure::ThreePointPoly)) {
        core::p_subResetAndCleanup(ctx);
        return true;
    }
    s.F_h_lngAddedGroups.push_back(g);
    if (s.F_h_lngAddedInfoGroup != 0) ctx.engine.group_set_father_group(g, s.F_h_lngAddedInfoGroup);
    core::P_subApplyLight(ctx, g);

    const forms::PolygonFollow follow = form.follow();
    if (c.shift != 1) {
        core::p_subResetAndCleanup(ctx);
        return true;
    }
    if (follow == forms::PolygonFollow::New) {
        builders::removePickMarker(ctx, 1);
        builders::removePickMarker(ctx, 2);
        s.bolRubberLine = false;
        arm(ctx, three ? "bolPoly3" : "bolPolyMore", "bolPoly1");
        ctx.comment("Select the first point of the next polygon");
        return true;
    }
    // Fan: the first point stays; strip: the last edge starts the next polygon.
    if (follow == forms::PolygonFollow::Strip) ts.firstPoint = ts.secondPoint;
    ts.secondPoint = p;
    if (!pickMarkerAt(ctx, 2, p)) return true;
    arm(ctx, "bolPoly3", "bolPolyMore");
    rubberFrom(ctx, p);
    ctx.comment("Select the next point of the polygon");
    return true;
}

}  // namespace tools
