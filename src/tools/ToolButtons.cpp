#include "tools/ToolButtons.h"

#include <memory>

#include "builders/DiscPlanes.h"
#include "builders/Markers.h"
#include "core/AppContext.h"
#include "core/MainForm.h"
#include "forms/Frm08MoveCopyGroup.h"
#include "forms/Frm10SelectMarker.h"
#include "forms/Frm12Excavation.h"
#include "forms/Frm15DiscPlane.h"
#include "forms/Frm24Polygon.h"
#include "tools/Dispatcher.h"
#include "tools/ExtraTools.h"
#include "tools/MeasureTool.h"
#include "tools/PolygonTool.h"
#include "tools/Snap.h"
#include "tools/ToolSession.h"
#include "tools/ToolSteps.h"

namespace tools {

using core::AppContext;

namespace {

struct ToolButton {
    const char* command;
    const char* caption;
    const char* prompt;
    bool building;  // a fresh "AddedInfoGroup" for what the tool builds
};

constexpr ToolButton kButtons[] = {
    {"cmd3DLength", "Measure", kMeasurePrompt1, true},
    {"cmdCreateExcavation", "Excavation", "Select the first point of the tunnel", true},
    {"cmdCreateDiscPlane", "Plane", "Select the first point of the fault plane", true},
    {"cmdCreateMarker", "Marker", "Select the marker for placement", true},
    {"cmdBuildPoly", "Polygon", "Select the first point of the polygon", true},
    {"cmdPointMove", "Point move", "Select the point to move", false},
    {"cmdMoveCopyGroup", "Move / copy", "Select the object(s) to move / copy", false},
    {"cmdNewRotationPoint", "Rotation point", "", false},
    {"mnuObtainPolygonColour", "Obtain polygon colour", "", false},
};

const ToolButton* buttonOf(const std::string& command) {
    for (const auto& b : kButtons)
        if (command == b.command) return &b;
    return nullptr;
}

template <class F>
F& formOf(AppContext& ctx) {
    auto* f = dynamic_cast<F*>(ctx.forms.find(F::kName));
    if (!f) {
        ctx.forms.add(std::make_unique<F>());
        f = dynamic_cast<F*>(ctx.forms.find(F::kName));
    }
    f->ensureLoaded();
    return *f;
}

// Button 1 shows the dialog; button 2 accepts its last settings without showing it.
void runDialog(AppContext& ctx, forms::Form& f, int button) {
    f.ensureLoaded();
    if (button == 2)
        f.click(f.acceptButton());
    else
        ctx.ui.showModal(f);
}

void wireForms(AppContext& ctx) {
    AppContext* c = &ctx;
    auto& moveCopy = formOf<forms::Frm08MoveCopyGroup>(ctx);
    moveCopy.onRefuse = [c](const char* text, const char* title) {
        c->ui.msgBox(text, ui::Buttons::OK, title);
    };
    moveCopy.onAccepted = [c, &moveCopy] {
        c->state.setToolFlag(moveCopy.moveChosen() ? "bolMoveSelect" : "bolCopySelect", true);
        c->pointer(kPickPointer);
        c->comment("Select the object(s) to move / copy");
    };
    moveCopy.onPickOffset = [c] {
        c->state.setToolFlag("bolPickOffset", true);
        c->state.setToolFlag("bolMeasure1", true);
        c->pointer(kPickPointer);
        c->comment(kMeasurePrompt1);
    };
    auto& poly = formOf<forms::Frm24Polygon>(ctx);
    poly.chooseColour = [c](engine::Rgb initial) { return c->ui.chooseColour(initial); };
    poly.onAccepted = [c] {
        c->state.setToolFlag("bolPoly1", true);
        c->pointer(kPickPointer);
    };
}

void addCommand(AppContext& ctx, const char* name, const char* caption, const char* form,
                std::function<void(AppContext&)> handler, bool toolButton) {
    core::Command k;
    k.name = name;
    k.caption = caption;
    if (form) k.form = form;
    k.handler = std::move(handler);
    k.toolButton = toolButton;
    ctx.commands.add(std::move(k));
}

void registerProcedures(AppContext& ctx) {
    using K = core::ParamKind;
    core::Procedure snap;
    snap.name = "P_subSnapPoint";
    snap.params = {K::Number, K::Number, K::Point};
    snap.changesArgs = true;
    snap.outArgs = {2};
    snap.body = [](AppContext& a, std::vector<core::Value>& v) {
        engine::Point3 p;
        const SnapResult r = P_subSnapPoint(a, v.at(0).number(), v.at(1).number(), p);
        if (r == SnapResult::Hit) v[2] = core::Value(p);
        return core::Value();
    };
    ctx.procedures.add(std::move(snap));
    core::Procedure poly;
    poly.name = "modCreate3PointPoly";
    poly.params = {K::Point, K::Point, K::Point, K::Colour};
    poly.body = [](AppContext& a, std::vector<core::Value>& v) {
        return core::Value(modCreate3PointPoly(a.engine, v.at(0).point(), v.at(1).point(),
                                               v.at(2).point(), v.at(3).colour()));
    };
    ctx.procedures.add(std::move(poly));
    // The press with its button and shift, as the window and scripts give them.
    for (const auto& b : kButtons) {
        core::Procedure press;
        press.name = std::string(b.command) + "_MouseDown";
        press.params = {K::Integer, K::Integer};
        press.body = [name = std::string(b.command)](AppContext& a, std::vector<core::Value>& v) {
            toolButtonDown(a, name, int(v.at(0).integer()));
            return core::Value();
        };
        ctx.procedures.add(std::move(press));
    }
}

}  // namespace

std::string toolPrompt(const std::string& command) {
    const ToolButton* b = buttonOf(command);
    return b ? b->prompt : "";
}

void toolButtonDown(AppContext& ctx, const std::string& command, int button) {
    const ToolButton* b = buttonOf(command);
    if (!b || button == 4 || ctx.ui.pointer() == 11) return;
    auto& s = ctx.state;
    core::p_subResetAndCleanup(ctx);
    ctx.pointer(kPickPointer);
    if (auto* cmd = ctx.commands.findMutable(command)) cmd->enabled = false;
    if (*b->prompt) ctx.comment(b->prompt);
    if (b->building) newAddedInfoGroup(ctx);
    const engine::Handle group = s.F_h_lngAddedInfoGroup;

    if (command == "cmd3DLength") {
        s.setToolFlag("bolMeasure1", true);
    } else if (command == "cmdNewRotationPoint") {
        s.setToolFlag("bolNewRotation", true);
    } else if (command == "mnuObtainPolygonColour") {
        s.setToolFlag("bolObtainColour", true);
    } else if (command == "cmdCreateExcavation" || command == "cmdPointMove") {
        auto& f = forms::Frm12Excavation::of(ctx);
        const bool move = command == "cmdPointMove";
        AppContext* c = &ctx;
        f.onAccepted = [c, move] {
            c->state.setToolFlag(move ? "bolPointMove1" : "bolExcavation1", true);
            c->pointer(kPickPointer);
            if (move) {
                mainForm(*c).setText(kSnapBox1, "Tube");
                mainForm(*c).setText(kSnapBox2, "Point");
            }
        };
        runDialog(ctx, f, button);
        f.onAccepted = nullptr;
    } else if (command == "cmdCreateDiscPlane") {
        runDialog(ctx, builders::discPlaneForm(ctx), button);
    } else if (command == "cmdCreateMarker") {
        runDialog(ctx, builders::selectMarkerForm(ctx), button);
    } else if (command == "cmdBuildPoly") {
        runDialog(ctx, formOf<forms::Frm24Polygon>(ctx), button);
    } else if (command == "cmdMoveCopyGroup") {
        runDialog(ctx, formOf<forms::Frm08MoveCopyGroup>(ctx), button);
    }

    if (!s.toolArmed()) {
        // The dialog was closed: nothing is armed and the empty group goes.
        if (group != 0 && ctx.engine.group_get_number_of_polygons(group) == 0) {
            ctx.engine.group_delete_members(group);
            if (s.F_h_lngAddedInfoGroup == group) s.F_h_lngAddedInfoGroup = 0;
        }
        s.bolDialogCancelled = false;
        core::p_subResetAndCleanup(ctx);
        return;
    }
    ctx.pointer(kPickPointer);
}

void registerTools(AppContext& ctx) {
    if (ctx.commands.find("cmd3DLength")) return;
    resetToolSession(ctx);
    wireForms(ctx);
    ctx.openNameLink = [](AppContext& a, const std::string& name) { return openLinkOf(a, name); };
    for (const auto& b : kButtons) {
        const std::string name = b.command;
        addCommand(
            ctx, b.command, b.caption, nullptr,
            [name](AppContext& a) { toolButtonDown(a, name, 1); }, true);
    }
    for (const char* form : {forms::Frm08MoveCopyGroup::kName, forms::Frm24Polygon::kName}) {
        forms::Form* f = ctx.forms.find(form);
        for (const auto& control : f->controls()) {
            if (control->kind != forms::ControlKind::CommandButton) continue;
            addCommand(
                ctx, control->name.c_str(), control->caption.c_str(), form,
                [form = std::string(form), button = control->name](AppContext& a) {
                    if (forms::Form* t = a.forms.find(form)) {
                        t->ensureLoaded();
                        t->click(button);
                    }
                },
                false);
        }
    }
    registerProcedures(ctx);
    registerExtraTools(ctx);

    AppContext* c = &ctx;
    mainForm(ctx).at(kSnapBox1).onChange = [c] { cboSnapSelect1_Change(*c); };
    // A point move cut short by any reset leaves its object lit again.
    ctx.onResetAndCleanup.push_back([](AppContext& a) {
        if (toolSession(a).moveGroup != 0) restorePointMove(a);
    });

    auto& in = ctx.input;
    in.onMouseUp = [old = in.onMouseUp](AppContext& a, int b, int sh, double x, double y) {
        if (toolTakesMouseUp(a, b, sh))
            picRenderWindow_MouseUp(a, b, sh, x, y);
        else if (old)
            old(a, b, sh, x, y);
    };
    in.onMouseMove = [old = in.onMouseMove](AppContext& a, int b, int sh, double x, double y) {
        if (old) old(a, b, sh, x, y);
        rubberLineMove(a, x, y);
    };
}

}  // namespace tools
