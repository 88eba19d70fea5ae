// The smaller steps of the chain: a new rotation point, move and copy, obtaining
// a colour and moving the end of a tube.
#include "builders/MarkerSpheres.h"
#include "builders/TubeCentreLine.h"
#include "builders/TubeLeg.h"
#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "forms/Frm08MoveCopyGroup.h"
#include "forms/Frm12Excavation.h"
#include "tools/Snap.h"
#include "tools/ToolSession.h"
#include "tools/ToolSteps.h"

namespace tools {

using engine::Handle;
using engine::Point3;

namespace {

builders::TubeSection sectionOfGroup(const std::string& name) {
    using S = builders::TubeSection;
    if (name == "CylPolyGroup") return S::Cylinder;
    if (name == "3WedgePolyGroup") return S::Wedge;
    if (name == "StringPolyGroup") return S::CrossPolyLine;
    return S::Tunnel;
}

void forgetAddedGroup(core::AppContext& ctx, Handle g) {
    auto& list = ctx.state.F_h_lngAddedGroups;
    for (auto it = list.begin(); it != list.end();) it = (*it == g) ? list.erase(it) : it + 1;
}

}  // namespace

bool stepNewRotation(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    if (!s.toolFlag("bolNewRotation")) return false;
    Point3 p;
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Miss) missKeepsTool(ctx);
    if (r != SnapResult::Hit) return true;
    core::setRotationCentre(ctx, p);
    s.setToolFlag("bolNewRotation", false);
    if (auto* cmd = ctx.commands.findMutable("cmdNewRotationPoint")) cmd->enabled = true;
    // The hide-all-except tool asked for the point: its dialog comes back.
    if (s.toolFlag("bolRotationForHide")) {
        s.setToolFlag("bolRotationForHide", false);
        if (forms::Form* f = ctx.forms.find("frm20_HideAllExcept")) ctx.ui.showModal(*f);
    }
    ctx.pointer(1);
    core::p_subMainLoop(ctx, true);
    return true;
}

bool stepMoveCopy(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    const bool move = s.toolFlag("bolMoveSelect"), copy = s.toolFlag("bolCopySelect");
    if (!move && !copy) return false;
    Point3 p;
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Miss) missKeepsTool(ctx);
    if (r != SnapResult::Hit) return true;
    auto* f =
        dynamic_cast<forms::Frm08MoveCopyGroup*>(ctx.forms.find(forms::Frm08MoveCopyGroup::kName));
    if (!f) return true;
    const Point3 d = f->offsetMetres() * 10.0;
    Handle g = ctx.engine.polygon_get_group(toolSession(ctx).hSnapPolygon);
    if (g == 0) return true;
    if (copy) {
        g = ctx.engine.group_duplicate_tree(g);
        if (g == 0) return true;
    }
    ctx.engine.group_move(g, d);
    ctx.comment(copy ? "Object copied" : "Object moved");
    // Shift keeps the tool for the next object.
    if (c.shift != 1) core::p_subResetAndCleanup(ctx);
    return true;
}

bool stepObtainColour(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    if (!s.toolFlag("bolObtainColour")) return false;
    Point3 p;
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Miss) missKeepsTool(ctx);
    if (r != SnapResult::Hit) return true;
    ToolSession& ts = toolSession(ctx);
    const engine::Rgb colour = ctx.engine.polygon_get_color(ts.hSnapPolygon);
    ctx.comment("Red: " + std::to_string(colour.r) + "  Green: " + std::to_string(colour.g) +
                "  Blue: " + std::to_string(colour.b));
    const std::string asker = ts.colourAskedBy;
    ts.colourAskedBy.clear();
    core::p_subResetAndCleanup(ctx);
    ctx.ui.chooseColour(colour);
    if (!asker.empty())
        if (forms::Form* f = ctx.forms.find(asker)) ctx.ui.showModal(*f);
    return true;
}

void restorePointMove(core::AppContext& ctx) {
    ToolSession& ts = toolSession(ctx);
    if (ts.moveGroup == 0) return;
    auto& eng = ctx.engine;
    for (Handle h = eng.group_get_first_polygon(ts.moveGroup); h != 0;
         h = eng.group_get_next_polygon(ts.moveGroup, h))
        eng.polygon_set_translucent(h, 0);
    core::P_subApplyLight(ctx, ts.moveGroup);
    ts.moveGroup = 0;
    ctx.state.F_h_lngPointMoveEntity = 0;
}

bool stepPointMove(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    ToolSession& ts = toolSession(ctx);
    auto& eng = ctx.engine;
    if (s.toolFlag("bolPointMove1")) {
        Point3 p;
        const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
        if (r == SnapResult::Miss) missKeepsTool(ctx);
        if (r != SnapResult::Hit) return true;
        Point3 a, b;
        bool isTube = false;
        if (!builders::P_fncTubeCentreLine(eng, ts.hSnapPolygon, a, b, isTube) || !isTube) {
            missKeepsTool(ctx);
            return true;
        }
        ts.moveGroup = eng.polygon_get_group(ts.hSnapPolygon);
        ts.moveName = core::strEntityName(eng, ts.hSnapPolygon);
        ts.moveColour = eng.polygon_get_color(ts.hSnapPolygon);
        ts.moveWasTube = mainForm(ctx).text(kSnapBox1) == "Tube";
        // The end farther from the pick stays where it is.
        ts.moveFixed = engine::length(p - a) >= engine::length(p - b) ? a : b;
        s.F_h_lngPointMoveEntity = ts.hSnapPolygon;
        if (!pickMarkerAt(ctx, 1, ts.moveFixed)) return true;
        core::P_subLightOff(ctx, ts.moveGroup);
        arm(ctx, "bolPointMove1", "bolPointMove2");
        rubberFrom(ctx, ts.moveFixed);
        ctx.comment("Select the second point of the excavation");
        return true;
    }
    if (!s.toolFlag("bolPointMove2")) return false;
    Point3 p;
    const SnapResult r = P_subSnapPoint(ctx, c.x, c.y, p);
    if (r == SnapResult::Reset) return true;
    if (r == SnapResult::Miss) {
        if (!missKeepsSphere(ctx)) {
            restorePointMove(ctx);
            core::p_subResetAndCleanup(ctx);
        }
        return true;
    }
    auto& form = forms::Frm12Excavation::of(ctx);
    form.ensureLoaded();
    builders::TubeLegRequest q;
    q.section = sectionOfGroup(eng.entity_get_name(ts.moveGroup));
    q.position = builders::LinePosition::Centre;  // the ends are the axis already
    q.start = ts.moveFixed;
    q.end = p;
    q.widthMetres = form.widthMetres();
    q.heightMetres = form.heightMetres();
    q.colour = ts.moveColour;
    builders::removePickMarker(ctx, 1);
    const Handle h = builders::buildTubeLeg(ctx, q);
    if (h == 0) {
        restorePointMove(ctx);
        core::p_subResetAndCleanup(ctx);
        return true;
    }
    core::p_subSetGroupPolygonNames(eng, h, ts.moveName);
    const Handle father = eng.group_get_father_group(ts.moveGroup);
    if (father != 0) eng.group_set_father_group(h, father);
    eng.group_delete_members(ts.moveGroup);
    forgetAddedGroup(ctx, ts.moveGroup);
    ts.moveGroup = 0;
    s.F_h_lngPointMoveEntity = 0;
    core::P_subApplyLight(ctx, h);
    core::p_subResetAndCleanup(ctx);
    if (c.shift == 1 || c.shift == 3) {
        s.setToolFlag("bolPointMove1", true);
        mainForm(ctx).setText(kSnapBox1, "Tube");
        mainForm(ctx).setText(kSnapBox2, "Point");
        ctx.pointer(kPickPointer);
        ctx.comment("Select the point to move");
    }
    return true;
}

}  // namespace tools
