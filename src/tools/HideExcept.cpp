// Hide all except: a click keeps its entity, or the entity's group, in view and
// hides everything else; cmdUnhide brings it back.
#include <memory>
#include <unordered_set>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "forms/Frm20HideAllExcept.h"
#include "tools/ExtraTools.h"
#include "tools/SelectionActions.h"
#include "tools/SelectionScope.h"
#include "tools/Snap.h"
#include "tools/ToolButtons.h"

namespace tools {

using engine::Handle;
using forms::Frm20HideAllExcept;

namespace {

constexpr const char* kCommand = "cmdHideAllExcept";
constexpr const char* kFlags[] = {"bolHideExcept", "bolHideEntityOnly", "bolHideGroupExcept"};

Frm20HideAllExcept& hideForm(core::AppContext& ctx) {
    auto* f = dynamic_cast<Frm20HideAllExcept*>(ctx.forms.find(Frm20HideAllExcept::kName));
    if (!f) {
        ctx.forms.add(std::make_unique<Frm20HideAllExcept>());
        f = dynamic_cast<Frm20HideAllExcept*>(ctx.forms.find(Frm20HideAllExcept::kName));
    }
    f->ensureLoaded();
    return *f;
}

void endHideExcept(core::AppContext& ctx) {
    for (const char* f : kFlags) ctx.state.setToolFlag(f, false);
    if (auto* c = ctx.commands.findMutable(kCommand)) c->enabled = true;
}

}  // namespace

long hideAllExcept(core::AppContext& ctx, Handle keep) {
    auto& eng = ctx.engine;
    const std::vector<Handle> kept = treePolygons(eng, keep);
    const std::unordered_set<Handle> keepSet(kept.begin(), kept.end());
    long n = 0;
    for (Handle p = eng.polygon_get_first_polygon(); p != 0; p = eng.polygon_get_next(p)) {
        if (keepSet.count(p) || eng.polygon_is_disabled(p)) continue;
        eng.polygon_disable(p);
        ++n;
    }
    return n;
}

void hideExceptButtonDown(core::AppContext& ctx, int button) {
    if (button == 4 || ctx.ui.pointer() == 11) return;
    core::p_subResetAndCleanup(ctx);
    ctx.pointer(kPickPointer);
    if (auto* c = ctx.commands.findMutable(kCommand)) c->enabled = false;
    ctx.comment(kHideExceptPrompt);
    auto& f = hideForm(ctx);
    f.accepted = false;
    if (button == 2)
        f.click(f.acceptButton());
    else
        ctx.ui.showModal(f);
    if (!ctx.state.toolArmed()) {
        core::p_subResetAndCleanup(ctx);
        if (auto* c = ctx.commands.findMutable(kCommand)) c->enabled = true;
        return;
    }
    ctx.pointer(kPickPointer);
}

bool stepHideExcept(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    if (!s.toolFlag("bolHideExcept")) return false;
    auto& eng = ctx.engine;
    const Handle polygon = pickInBand(ctx, c.x, c.y).polygon;
    if (polygon == 0) {
        missKeepsTool(ctx);
        return true;
    }
    Handle keep = eng.polygon_get_group(polygon);
    if (s.toolFlag("bolHideGroupExcept")) {
        // An entity without a father is its own group.
        if (Handle father = scopeGroup(eng, Scope::Group, polygon)) keep = father;
    }
    if (keep == 0) return true;
    const long n = hideAllExcept(ctx, keep);
    ctx.comment("The number of hidden polygons is " + std::to_string(n));
    ctx.status(3, statusPointText(eng.polygon_get_center(polygon)));
    if (c.shift != 1) endHideExcept(ctx);
    return true;
}

void wireHideExcept(core::AppContext& ctx) {
    auto& f = hideForm(ctx);
    core::AppContext* c = &ctx;
    f.onAccepted = [c, &f] {
        c->state.setToolFlag("bolHideExcept", true);
        c->state.setToolFlag("bolHideEntityOnly", !f.keepsGroup());
        c->state.setToolFlag("bolHideGroupExcept", f.keepsGroup());
        c->pointer(kPickPointer);
        c->comment(kHideExceptPrompt);
    };
    f.onNewRotation = [c] {
        toolButtonDown(*c, "cmdNewRotationPoint", 1);
        // The rotation step brings this dialog back once the point is taken.
        c->state.setToolFlag("bolRotationForHide", true);
    };
}

}  // namespace tools
