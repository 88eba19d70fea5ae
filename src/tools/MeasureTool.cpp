#include "tools/MeasureTool.h"

#include <cmath>

#include "builders/BuilderMessages.h"
#include "builders/Geometry.h"
#include "builders/MarkerSpheres.h"
#include "builders/Meshes.h"
#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "forms/Frm08MoveCopyGroup.h"
#include "tools/Snap.h"
#include "tools/ToolSession.h"
#include "tools/ToolSteps.h"

namespace tools {

using engine::Handle;
using engine::Point3;

namespace {

constexpr engine::Rgb kYellow{255, 255, 0};
// A zero length still gets a direction: the dip and direction call sees this.
constexpr double kTinyLength = 1e-100;

std::string metres(double sceneUnits) { return fixedText(sceneUnits * 0.1, 2); }

void forgetAddedGroup(core::AppContext& ctx, Handle g) {
    auto& list = ctx.state.F_h_lngAddedGroups;
    for (auto it = list.begin(); it != list.end();) it = (*it == g) ? list.erase(it) : it + 1;
}

void deleteMeasureGroup(core::AppContext& ctx) {
    ToolSession& ts = toolSession(ctx);
    if (ts.hMeasureGroup == 0) return;
    ctx.engine.group_delete_members(ts.hMeasureGroup);
    forgetAddedGroup(ctx, ts.hMeasureGroup);
    if (ctx.state.F_h_lngAddedInfoGroup == ts.hMeasureGroup) ctx.state.F_h_lngAddedInfoGroup = 0;
    ts.hMeasureGroup = 0;
}

// The offset variant: the measured offset goes into the move and copy dialog.
void fillOffsetForm(core::AppContext& ctx, const Point3& d, double length) {
    auto* f =
        dynamic_cast<forms::Frm08MoveCopyGroup*>(ctx.forms.find(forms::Frm08MoveCopyGroup::kName));
    if (!f) return;
    f->ensureLoaded();
    f->setText("cboXoffset", metres(d.x));
    f->setText("cboYoffset", metres(d.y));
    f->setText("cboZoffset", metres(d.z));
    f->setText("cboLength", metres(length));
    core::p_subResetAndCleanup(ctx);
    ctx.ui.showModal(*f);
}

}  // namespace

std::string measureLineBody(double length, double dip, double direction, double horizontal,
                            double vertical, double cumulative) {
    return "Distance = " + metres(length) + " m    [Dip = " + fixedText(dip, 1) +
           "\u00B0:  Direction = " + fixedText(direction, 1) +
           "\u00B0:  Hor.XY = " + metres(horizontal) + " m:  Vert.Z = " + metres(vertical) +
           " m]    CUM. DISTANCE = " + metres(cumulative);
}

std::string measureFinalLine(double length, double dip, double direction, double horizontal,
                             double vertical, double cumulative) {
    return measureLineBody(length, dip, direction, horizontal, vertical, cumulative) + " m";
}

void finishMeasure(core::AppContext& ctx) {
    ToolSession& ts = toolSession(ctx);
    if (ts.dblCumLength != 0 && ts.hMeasureGroup != 0) {
        if (ctx.ui.msgBox(kDeleteLineQuestion, ui::Buttons::YesNo, ctx.state.txtComment) ==
            ui::Answer::Yes)
            deleteMeasureGroup(ctx);
    }
    ts.dblCumLength = 0;
    ts.hMeasureGroup = 0;
    core::p_subResetAndCleanup(ctx);
}

bool stepMeasure(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    ToolSession& ts = toolSession(ctx);
    if (s.toolFlag("bolMeasure1")) {
        Point3 p;
        const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
        if (r == SnapResult::Miss) missKeepsTool(ctx);
        if (r != SnapResult::Hit) return true;
        if (!pickMarkerAt(ctx, 1, p)) return true;
        ts.firstPoint = p;
        ts.hMeasureGroup = s.F_h_lngAddedInfoGroup;
        arm(ctx, "bolMeasure1", "bolMeasure2");
        ctx.pointer(kPickPointer);
        rubberFrom(ctx, p);
        ctx.comment(kMeasurePrompt2);
        return true;
    }
    if (!s.toolFlag("bolMeasure2")) return false;

    builders::removePickMarker(ctx, 1);
    Point3 p;
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Reset) return true;
    if (r == SnapResult::Miss) {
        if (missKeepsSphere(ctx))
            pickMarkerAt(ctx, 1, ts.firstPoint);
        else
            finishMeasure(ctx);
        return true;
    }
    const Point3 a = ts.firstPoint;
    const Handle line =
        builders::P_fncCreateCylinder(ctx.engine, a, p, ctx.settings.dblLineThickness, kYellow);
    if (!builders::checkBuilderHandle(ctx, line, builders::BuilderFailure::Cylinder)) {
        core::p_subResetAndCleanup(ctx);
        return true;
    }
    if (ts.hMeasureGroup != 0) ctx.engine.group_set_father_group(line, ts.hMeasureGroup);

    const Point3 d = p - a;
    double length = engine::length(d);
    const double horizontal = std::sqrt(d.x * d.x + d.y * d.y);
    double dip = 0, direction = 0;
    lineDipDirection(ctx, a, p, dip, direction);
    ts.dblCumLength += length;

    if (s.toolFlag("bolPickOffset")) {
        ctx.engine.group_delete_members(line);
        ts.dblCumLength = 0;
        fillOffsetForm(ctx, d, length);
        return true;
    }

    const std::string body =
        measureLineBody(length, dip, direction, horizontal, d.z, ts.dblCumLength);
    core::p_subSetGroupPolygonNames(ctx.engine, line, body + " m");
    if (c.shift == 1) {
        if (!pickMarkerAt(ctx, 2, p)) return true;
        ts.firstPoint = p;
        rubberFrom(ctx, p);
        ctx.comment(body + " m.   Select the next point");
        return true;
    }
    const std::string final = body + " m";
    ctx.logLine(final);
    ctx.comment(final);
    finishMeasure(ctx);
    return true;
}

void lineDipDirection(core::AppContext& ctx, const Point3& a, const Point3& b, double& dip,
                      double& direction) {
    Point3 v = b - a;
    if (engine::length(v) == 0) v.z = kTinyLength;
    builders::P_subDipAndDipDirection(ctx, true, false, false, v, dip, direction);
}

}  // namespace tools
