#include "tools/SelectionActions.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <unordered_set>

#include "builders/ObjectInfo.h"
#include "core/AppContext.h"
#include "core/MainForm.h"
#include "tools/SelectionDispatch.h"
#include "tools/SelectionScope.h"

namespace tools {

namespace {

using engine::Handle;
using forms::Frm22Selection;

constexpr long kNothingTaken = -1;
constexpr long kCancelled = -2;
// The backup that the undo of the main form loads again.
constexpr const char* kUndoBackup = "TarvikBackup.STATE";

struct ActionText {
    SelectionActionInfo info;
    const char* doneText;
};

// In the order the dispatcher tests the flags.
constexpr ActionText kActions[] = {
    {{SelectionAction::Delete, "cmdDeleteGroup", "bolDeleteGroup", "Delete",
      "Select the object(s) to delete"},
     kDeletedText},
    {{SelectionAction::Hide, "cmdHideGroup", "bolHideGroup", "Hide",
      "Select the object(s) to hide"},
     "The number of hidden polygons is "},
    {{SelectionAction::PartialHide, "cmdPartialHideGroup", "bolPartialHideGroup", "Partial hide",
      "Select the object(s) to make translucent"},
     "The number of polygons made translucent is "},
    {{SelectionAction::PartialUnhide, "cmdPartialUnhideGroup", "bolPartialUnhideGroup",
      "Partial unhide", "Select the object(s) to make opaque"},
     "The number of polygons made opaque is "},
    {{SelectionAction::ChangeColour, "cmdChangeColour", "bolChangeColour", "Change colour",
      "Select the object(s) to colour"},
     "The number of coloured polygons is "},
    {{SelectionAction::ChangeName, "cmdChangeName", "bolChangeName", "Change name",
      "Select the object(s) to name"},
     "The number of renamed polygons is "},
    {{SelectionAction::Unhide, "cmdUnhide", "bolUnhideGroup", "Unhide",
      "Select an object to show its hidden polygons"},
     "The number of polygons made visible is "},
};

const ActionText& actionText(SelectionAction a) {
    for (const auto& t : kActions)
        if (t.info.action == a) return t;
    return kActions[0];
}

Scope currentScope(core::AppContext& ctx) {
    return scopeFromText(forms::selectionScopeBox(ctx).text);
}

void takeBackup(core::AppContext& ctx) {
    const core::Procedure* p = ctx.procedures.find("p_subBackup");
    if (!p || !p->body) return;
    std::vector<core::Value> args{core::Value(kUndoBackup)};
    p->body(ctx, args);
}

// Keeps the translucent list to polygons that are still translucent.
void pruneTranslucent(core::AppContext& ctx) {
    auto& list = Frm22Selection::of(ctx).translucentPolygons;
    list.erase(std::remove_if(list.begin(), list.end(),
                              [&](Handle h) { return ctx.engine.polygon_get_translucent(h) == 0; }),
               list.end());
    ctx.state.intTranslucentCount = static_cast<int>(list.size());
}

void endTool(core::AppContext& ctx, SelectionAction a) {
    const auto& info = selectionActionInfo(a);
    ctx.state.setToolFlag(info.flag, false);
    if (auto* c = ctx.commands.findMutable(info.command)) {
        c->enabled = true;
        c->highlighted = false;
    }
}

void finishPass(core::AppContext& ctx) {
    core::p_subMainLoop(ctx);
    ctx.pointer(ctx.state.toolArmed() ? 14 : 1);
}

long enableAllHidden(core::AppContext& ctx) {
    long n = 0;
    auto& eng = ctx.engine;
    for (Handle p = eng.polygon_get_first_polygon(); p != 0; p = eng.polygon_get_next(p)) {
        if (!eng.polygon_is_disabled(p)) continue;
        eng.polygon_enable(p);
        ++n;
    }
    return n;
}

// One polygon's change by the action.
struct ActOn {
    core::AppContext& ctx;
    SelectionAction a;
    int level;
    engine::Rgb colour;
    const std::string& newName;
    void operator()(Handle p) const {
        auto& eng = ctx.engine;
        switch (a) {
            case SelectionAction::Delete:
                eng.polygon_delete(p);
                break;
            case SelectionAction::Hide:
                eng.polygon_disable(p);
                break;
            case SelectionAction::PartialHide: {
                auto& list = Frm22Selection::of(ctx).translucentPolygons;
                if (eng.polygon_get_translucent(p) == 0) list.push_back(p);
                eng.polygon_set_translucent(p, level);
                break;
            }
            case SelectionAction::PartialUnhide:
                eng.polygon_set_translucent(p, 0);
                break;
            case SelectionAction::ChangeColour:
                eng.polygon_set_color_fill(p, colour);
                break;
            case SelectionAction::ChangeName:
                eng.polygon_set_name(p, newName);
                break;
            case SelectionAction::Unhide:
                eng.polygon_enable(p);
                break;
        }
    }
};

}  // namespace

const SelectionActionInfo& selectionActionInfo(SelectionAction a) { return actionText(a).info; }

bool armedSelectionAction(const core::AppContext& ctx, SelectionAction& out) {
    for (const auto& t : kActions) {
        if (ctx.state.toolFlag(t.info.flag)) {
            out = t.info.action;
            return true;
        }
    }
    return false;
}

std::string statusPointText(engine::Point3 p) {
    char buf[128];
    std::snprintf(buf, sizeof buf, "%.1f, %.1f, %.1f", p.x * 0.1, p.y * 0.1, p.z * 0.1);
    return buf;
}

void removeFromAddedGroups(core::AppContext& ctx, const std::vector<Handle>& groups) {
    if (groups.empty()) return;
    const std::unordered_set<Handle> gone(groups.begin(), groups.end());
    auto& added = ctx.state.F_h_lngAddedGroups;
    added.erase(
        std::remove_if(added.begin(), added.end(), [&](Handle h) { return gone.count(h) != 0; }),
        added.end());
}

long applySelectionAction(core::AppContext& ctx, SelectionAction a, Handle hPolygon) {
    auto& eng = ctx.engine;
    auto& form = Frm22Selection::of(ctx);
    const Scope scope = currentScope(ctx);
    if (scope == Scope::None || scope == Scope::Rubberband) return kNothingTaken;
    if (hPolygon == 0 && !scopeNeedsNoHit(scope)) return kNothingTaken;

    Handle group = 0;
    if (scope == Scope::Entity || scope == Scope::Group || scope == Scope::File) {
        group = scopeGroup(eng, scope, hPolygon);
        if (group == 0) return kNothingTaken;
    }

    std::string newName;
    if (a == SelectionAction::ChangeName) {
        std::optional<std::string> name =
            builders::editInfoText(ctx, hPolygon != 0 ? eng.entity_get_name(hPolygon) : "");
        if (!name) return kCancelled;
        newName = std::move(*name);
    }
    if (form.backupAsked()) takeBackup(ctx);

    const ActOn act{ctx, a, form.transLevel(), form.lastColour, newName};
    long n = 0;
    if (group != 0 && a == SelectionAction::Delete) {
        // The groups go with their polygons, and out of the added list.
        const std::vector<Handle> tree = groupTree(eng, group);
        n = eng.group_get_number_of_polygons(group);
        eng.group_delete_members(group);
        removeFromAddedGroups(ctx, tree);
    } else if (group != 0) {
        for (Handle p : treePolygons(eng, group)) {
            // Count only what changes: hidden parts stay hidden, shown ones shown.
            const bool disabled = eng.polygon_is_disabled(p);
            if ((a == SelectionAction::Hide && disabled) ||
                (a == SelectionAction::Unhide && !disabled))
                continue;
            act(p);
            ++n;
        }
    } else if (scope == Scope::Polygon) {
        act(hPolygon);
        n = 1;
    } else {
        ctx.pointer(11);
        const SceneFilter filter =
            sceneFilterFor(eng, scope, hPolygon, a == SelectionAction::Unhide);
        n = walkScene(ctx, filter, std::function<void(Handle)>(act));
    }
    pruneTranslucent(ctx);
    return n;
}

void P_subSelectAccept(core::AppContext& ctx, Handle hPolygon, int intShift) {
    SelectionAction a;
    if (!armedSelectionAction(ctx, a)) return;
    const Scope scope = currentScope(ctx);
    if (!ctx.engine.polygon_is_in_world(hPolygon)) hPolygon = 0;
    if (hPolygon == 0 && !scopeNeedsNoHit(scope)) {
        if (ctx.ui.msgBox(kNoPolygonText, ui::Buttons::OKCancel, kNoPolygonTitle) ==
            ui::Answer::OK) {
            ctx.pointer(14);
        } else {
            core::p_subResetAndCleanup(ctx);
        }
        return;
    }
    // The point is read before a delete takes the polygon.
    const std::optional<engine::Point3> point =
        hPolygon != 0 ? std::optional(ctx.engine.polygon_get_center(hPolygon)) : std::nullopt;

    const long n = applySelectionAction(ctx, a, hPolygon);
    if (n == kCancelled) {
        ctx.state.bolDialogCancelled = false;
        core::p_subResetAndCleanup(ctx);
        return;
    }
    if (n == kNothingTaken) {
        finishPass(ctx);
        return;
    }
    ctx.comment(actionText(a).doneText + std::to_string(n));
    if (point) ctx.status(3, statusPointText(*point));
    if (intShift != 1) endTool(ctx, a);
    finishPass(ctx);
}

void P_subSelectBand(core::AppContext& ctx, const std::vector<Handle>& polygons, int intShift) {
    SelectionAction a;
    if (!armedSelectionAction(ctx, a)) return;
    auto& eng = ctx.engine;
    auto& form = Frm22Selection::of(ctx);
    std::string newName;
    if (a == SelectionAction::ChangeName) {
        std::optional<std::string> name = builders::editInfoText(
            ctx, polygons.empty() ? "" : eng.entity_get_name(polygons.front()));
        if (!name) {
            ctx.state.bolDialogCancelled = false;
            core::p_subResetAndCleanup(ctx);
            return;
        }
        newName = std::move(*name);
    }
    if (form.backupAsked() && !polygons.empty()) takeBackup(ctx);
    const ActOn act{ctx, a, form.transLevel(), form.lastColour, newName};
    long n = 0;
    for (Handle p : polygons) {
        if (!eng.polygon_is_in_world(p)) continue;
        act(p);
        ++n;
    }
    pruneTranslucent(ctx);
    ctx.comment(actionText(a).doneText + std::to_string(n));
    if (intShift != 1) endTool(ctx, a);
    finishPass(ctx);
}

void allOpaque(core::AppContext& ctx) {
    auto& eng = ctx.engine;
    for (Handle p = eng.polygon_get_first_polygon(); p != 0; p = eng.polygon_get_next(p))
        if (eng.polygon_get_translucent(p) != 0) eng.polygon_set_translucent(p, 0);
    auto& form = Frm22Selection::of(ctx);
    form.translucentPolygons.clear();
    form.progressCalls = 0;
    form.progressBar = 0;
    ctx.state.intTranslucentCount = 0;
    core::p_subMainLoop(ctx);
}

void cmdUnhide(core::AppContext& ctx, int shift) {
    if (shift & 1) {
        selectionButtonDown(ctx, SelectionAction::Unhide, 1, 0);
        return;
    }
    const long n = enableAllHidden(ctx);
    ctx.comment(actionText(SelectionAction::Unhide).doneText + std::to_string(n));
    core::p_subMainLoop(ctx);
}

void selectionButtonDown(core::AppContext& ctx, SelectionAction a, int button, int shift) {
    if (button == 4 || ctx.ui.pointer() == 11) return;
    if (a == SelectionAction::PartialUnhide && (shift & 1)) {
        allOpaque(ctx);
        return;
    }
    const auto& info = selectionActionInfo(a);
    core::p_subResetAndCleanup(ctx);
    ctx.pointer(14);
    if (auto* c = ctx.commands.findMutable(info.command)) {
        c->enabled = false;
        c->highlighted = true;
    }
    ctx.state.setToolFlag(info.flag, true);
    ctx.comment(info.prompt);

    auto& form = Frm22Selection::of(ctx);
    form.ensureLoaded();
    form.P_subPrepare(a);
    if (button == 2) {
        form.P_subSelectAccept(false);
    } else {
        ctx.state.bolDialogCancelled = false;
        const ui::FormAction how = ctx.ui.showModal(form);
        if (how == ui::FormAction::Close || ctx.state.bolDialogCancelled) {
            ctx.state.bolDialogCancelled = false;
            core::p_subResetAndCleanup(ctx);
            return;
        }
        form.P_subSelectAccept(true);
        if (a == SelectionAction::ChangeColour) {
            std::optional<engine::Rgb> c = ctx.ui.chooseColour(form.lastColour);
            if (!c) {
                core::p_subResetAndCleanup(ctx);
                return;
            }
            form.lastColour = *c;
        }
    }
    ctx.pointer(14);
    core::p_subMainLoop(ctx);
}

}  // namespace tools
