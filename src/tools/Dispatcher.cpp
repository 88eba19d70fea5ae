#include "tools/Dispatcher.h"

#include <initializer_list>

#include "builders/BuilderMessages.h"
#include "builders/MarkerSpheres.h"
#include "core/AppContext.h"
#include "core/MainForm.h"
#include "tools/ExtraTools.h"
#include "tools/SelectionDispatch.h"
#include "tools/Snap.h"
#include "tools/ToolSession.h"
#include "tools/ToolSteps.h"

namespace tools {

using engine::Point3;

namespace {

// Steps waiting for a second (or later) point: a right click there asks before the
// points taken are lost.
constexpr const char* kLaterSteps[] = {
    "bolMeasure2", "bolExcavation2", "bolPlaneTwo2", "bolPlaneThree2", "bolPlaneThree3",
    "bolPoly2",    "bolPoly3",       "bolPolyMore",  "bolPointMove2",  "bolMarkerSecond",
};

bool anyOf(const core::MainState& s, std::initializer_list<const char*> flags) {
    for (const char* f : flags)
        if (s.toolFlag(f)) return true;
    return false;
}

bool laterStepArmed(const core::MainState& s) {
    for (const char* f : kLaterSteps)
        if (s.toolFlag(f)) return true;
    return false;
}

void endOfPass(core::AppContext& ctx) {
    ctx.pointer(ctx.state.toolArmed() ? kPickPointer : 1);
    core::p_subMainLoop(ctx);
}

// The selection actions take the polygon under the click (0 for none: they ask).
bool stepSelection(core::AppContext& ctx, const Click& c,
                   std::initializer_list<const char*> flags) {
    if (!anyOf(ctx.state, flags)) return false;
    if (bandScopeArmed(ctx)) {
        bandSelect(ctx, c.shift);
        return true;
    }
    const engine::PickHit hit = pickInBand(ctx, c.x, c.y);
    P_subSelectAccept(ctx, hit.polygon, c.shift);
    return true;
}

void rightButton(core::AppContext& ctx) {
    auto& s = ctx.state;
    const bool later = laterStepArmed(s);
    if (!later && !s.toolArmed()) return;
    if (ctx.ui.msgBox(kRightButtonText, ui::Buttons::OKCancel, kRightButtonTitle) ==
        ui::Answer::OK) {
        ctx.pointer(kPickPointer);
        if (later) s.bolRubberLine = true;
        return;
    }
    builders::removePickMarker(ctx, 1);
    builders::removePickMarker(ctx, 2);
    if (s.toolFlag("bolPointMove2")) restorePointMove(ctx);
    if (s.toolFlag("bolMeasure2")) {
        finishMeasure(ctx);
        return;
    }
    core::p_subResetAndCleanup(ctx);
}

}  // namespace

void arm(core::AppContext& ctx, const char* off, const char* on) {
    ctx.state.setToolFlag(off, false);
    ctx.state.setToolFlag(on, true);
}

void newAddedInfoGroup(core::AppContext& ctx) {
    ctx.state.F_h_lngAddedInfoGroup = ctx.engine.group_create(kAddedInfoGroup);
    toolSession(ctx).dblCumLength = 0;
}

bool pickMarkerAt(core::AppContext& ctx, int which, const Point3& p) {
    if (builders::placePickMarker(ctx, which, p) != 0) return true;
    core::p_subResetAndCleanup(ctx);
    return false;
}

void rubberFrom(core::AppContext& ctx, const Point3& p) {
    auto& s = ctx.state;
    s.bolRubberLine = true;
    s.rubberFrom = p;
    s.rubberTo = p;
}

void rubberLineMove(core::AppContext& ctx, double x, double y) {
    auto& s = ctx.state;
    if (!s.bolRubberLine) return;
    const Point3 dir = ctx.engine.camera_get_direction(s.F_h_lngCamera);
    engine::Plane plane;
    plane.n = dir;
    plane.d = -engine::dot(s.rubberFrom, dir);
    Point3 to;
    if (ctx.engine.engine_2D_point_to_3D_point_on_plane(x, y, plane, to) != 0 || !to.finite())
        return;
    s.rubberTo = to;
    // The frame draws the line once the pointer has moved.
    s.mouseOffsetX = x == 0 ? 1e-9 : x;
    s.mouseOffsetY = y;
    core::p_subMainLoop(ctx);
}

bool toolTakesMouseUp(const core::AppContext& ctx, int button, int shift) {
    if (button == 3 && shift == 5) return true;
    if (!ctx.state.toolArmed()) return false;
    return shift != 2;  // Ctrl moves the view while a tool is armed
}

void picRenderWindow_MouseUp(core::AppContext& ctx, int button, int shift, double x, double y) {
    auto& s = ctx.state;
    // 1
    if (ctx.ui.pointer() == 11) return;
    ToolSession& ts = toolSession(ctx);
    ts.bolSnapFailed = false;
    s.bolAllowNavigate = false;
    deleteBandPolygons(ctx);
    // 2
    if (button == 2 && shift != 2) {
        rightButton(ctx);
        endOfPass(ctx);
        return;
    }
    // 3
    if (button == 3 && shift == 5) {
        core::p_subResetAndCleanup(ctx);
        endOfPass(ctx);
        return;
    }
    // 4
    if (button != 1) {
        endOfPass(ctx);
        return;
    }
    const Click c{shift, x, y};
    if (stepLink(ctx, c)) {
        endOfPass(ctx);
        return;
    }
    const bool taken = stepSelection(ctx, c, {"bolChangeName"}) ||
                       stepSelection(ctx, c, {"bolDeleteGroup"}) || stepNewRotation(ctx, c) ||
                       stepMoveCopy(ctx, c) || stepMeasure(ctx, c) ||
                       stepSelection(ctx, c, {"bolHideGroup", "bolUnhideGroup"}) ||
                       stepHideExcept(ctx, c) || stepSelection(ctx, c, {"bolPartialHideGroup"}) ||
                       stepSelection(ctx, c, {"bolPartialUnhideGroup"}) ||
                       stepSelection(ctx, c, {"bolChangeColour"}) || stepExcavation(ctx, c) ||
                       stepPlanes(ctx, c) || stepMarker(ctx, c) || stepPolygon(ctx, c) ||
                       stepObtainColour(ctx, c) || stepPointMove(ctx, c) || stepGridCentre(ctx, c);
    (void)taken;
    if (!s.toolArmed()) s.bolAllowNavigate = true;
    endOfPass(ctx);
}

}  // namespace tools
