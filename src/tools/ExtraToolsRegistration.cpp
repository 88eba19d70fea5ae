#include <functional>
#include <string>

#include "core/AppContext.h"
#include "core/Procedures.h"
#include "forms/Frm07GridPlane.h"
#include "forms/Frm20HideAllExcept.h"
#include "tools/ExtraTools.h"

namespace tools {

namespace {

using core::AppContext;
using core::ParamKind;
using core::Value;
using Args = std::vector<Value>;

struct Button {
    const char* command;
    const char* caption;
    const char* menu;
    std::function<void(AppContext&, int button, int shift)> press;
};

const Button kButtons[] = {
    {"cmdGridPlane", "Grid plane", "",
     [](AppContext& c, int b, int) { gridPlaneButtonDown(c, b); }},
    {"cmdPhotoLink", "Photo link", "",
     [](AppContext& c, int b, int) { linkButtonDown(c, true, b); }},
    {"cmdFileLink", "File link", "",
     [](AppContext& c, int b, int) { linkButtonDown(c, false, b); }},
    {"cmdHideAllExcept", "Hide all except", "Edit",
     [](AppContext& c, int b, int) { hideExceptButtonDown(c, b); }},
};

core::Procedure proc(std::string name, std::vector<ParamKind> params,
                     std::function<Value(AppContext&, Args&)> body) {
    core::Procedure p;
    p.name = std::move(name);
    p.params = std::move(params);
    p.body = std::move(body);
    return p;
}

void addFormButtons(AppContext& ctx, const char* formName) {
    forms::Form* f = ctx.forms.find(formName);
    if (!f) return;
    for (const auto& control : f->controls()) {
        if (control->kind != forms::ControlKind::CommandButton) continue;
        // A bare name that another form has already would make both ambiguous.
        if (ctx.commands.find(control->name)) continue;
        core::Command k;
        k.name = control->name;
        k.caption = control->caption;
        k.form = formName;
        k.handler = [form = std::string(formName), button = control->name](AppContext& a) {
            if (forms::Form* t = a.forms.find(form)) {
                t->ensureLoaded();
                t->click(button);
            }
        };
        ctx.commands.add(std::move(k));
    }
}

void registerProcedures(AppContext& ctx) {
    ctx.procedures.add(proc("modCreateGridPlane",
                            {ParamKind::Point, ParamKind::Number, ParamKind::Number,
                             ParamKind::Number, ParamKind::Integer, ParamKind::Colour},
                            [](AppContext& c, Args& a) {
                                GridPlaneRequest q;
                                q.centre = a.at(0).point();
                                q.length = a.at(1).number();
                                q.width = a.at(2).number();
                                q.spacing = a.at(3).number();
                                const auto o = a.at(4).integer();
                                q.orientation = o == 1 ? forms::GridOrientation::VerticalEastWest
                                                : o == 2
                                                    ? forms::GridOrientation::VerticalNorthSouth
                                                    : forms::GridOrientation::Horizontal;
                                q.colour = a.at(5).colour();
                                return Value(buildGridPlane(c.engine, q));
                            }));
    ctx.procedures.add(proc("P_fncLinkTarget", {ParamKind::Text}, [](AppContext&, Args& a) {
        return Value(linkTarget(a.at(0).text()).value_or(""));
    }));
    ctx.procedures.add(proc("P_subHideAllExcept", {ParamKind::Handle}, [](AppContext& c, Args& a) {
        return Value(hideAllExcept(c, engine::Handle(a.at(0).integer())));
    }));
}

}  // namespace

void registerExtraTools(AppContext& ctx) {
    if (ctx.commands.find("cmdGridPlane")) return;
    forgetBand(ctx);
    wireGridPlane(ctx);
    wireHideExcept(ctx);
    for (const auto& b : kButtons) {
        core::Command k;
        k.name = b.command;
        k.caption = b.caption;
        k.menuPath = b.menu;
        k.toolButton = true;
        k.handler = [press = b.press](AppContext& c) { press(c, 1, 0); };
        ctx.commands.add(std::move(k));
        // The press with its button and shift, as the window and scripts give them.
        ctx.procedures.add(proc(std::string(b.command) + "_MouseDown",
                                {ParamKind::Integer, ParamKind::Integer},
                                [press = b.press](AppContext& c, Args& a) {
                                    press(c, int(a.at(0).integer()), int(a.at(1).integer()));
                                    return Value();
                                }));
    }
    addFormButtons(ctx, forms::Frm07GridPlane::kName);
    addFormButtons(ctx, forms::Frm20HideAllExcept::kName);
    registerProcedures(ctx);

    ctx.onResetAndCleanup.push_back([](AppContext& a) { deleteBandPolygons(a); });
    auto& in = ctx.input;
    in.onMouseDown = [old = in.onMouseDown](AppContext& a, int b, int sh, double x, double y) {
        if (old) old(a, b, sh, x, y);
        bandMouseDown(a, b, sh, x, y);
    };
    in.onMouseMove = [old = in.onMouseMove](AppContext& a, int b, int sh, double x, double y) {
        if (old) old(a, b, sh, x, y);
        bandMouseMove(a, b, x, y);
    };
}

}  // namespace tools
