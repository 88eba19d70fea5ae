#include <string>

#include "core/AppContext.h"
#include "core/Procedures.h"
#include "forms/Frm22Selection.h"
#include "tools/SelectionActions.h"
#include "tools/SelectionDispatch.h"
#include "tools/SelectionScope.h"

namespace tools {

namespace {

using core::AppContext;
using core::ParamKind;
using core::Value;
using Args = std::vector<Value>;

constexpr SelectionAction kButtons[] = {
    SelectionAction::Delete,        SelectionAction::Hide,         SelectionAction::PartialHide,
    SelectionAction::PartialUnhide, SelectionAction::ChangeColour, SelectionAction::ChangeName,
    SelectionAction::Unhide,
};

core::Procedure proc(std::string name, std::vector<ParamKind> params,
                     std::function<Value(AppContext&, Args&)> body) {
    core::Procedure p;
    p.name = std::move(name);
    p.params = std::move(params);
    p.body = std::move(body);
    return p;
}

void registerCommands(AppContext& ctx) {
    for (SelectionAction a : kButtons) {
        const auto& info = selectionActionInfo(a);
        core::Command c;
        c.name = info.command;
        c.caption = info.caption;
        c.menuPath = "Edit";
        c.toolButton = true;
        if (a == SelectionAction::Unhide)
            c.handler = [](AppContext& x) { cmdUnhide(x, 0); };
        else
            c.handler = [a](AppContext& x) { selectionButtonDown(x, a, 1, 0); };
        ctx.commands.add(std::move(c));

        // The press with its button and shift, as the window and scripts give them.
        ctx.procedures.add(proc(std::string(info.command) + "_MouseDown",
                                {ParamKind::Integer, ParamKind::Integer},
                                [a](AppContext& x, Args& args) -> Value {
                                    const int button = int(args.at(0).integer());
                                    const int shift = int(args.at(1).integer());
                                    if (a == SelectionAction::Unhide && button == 1)
                                        cmdUnhide(x, shift);
                                    else
                                        selectionButtonDown(x, a, button, shift);
                                    return {};
                                }));
    }
    for (const char* button : {"cmdOK", "cmdCancel"}) {
        core::Command c;
        c.name = button;
        c.caption = button == std::string("cmdOK") ? "OK" : "Cancel";
        c.form = forms::Frm22Selection::kName;
        c.handler = [b = std::string(button)](AppContext& x) {
            auto& f = forms::Frm22Selection::of(x);
            f.ensureLoaded();
            f.click(b);
        };
        ctx.commands.add(std::move(c));
    }
}

void registerProcedures(AppContext& ctx) {
    ctx.procedures.add(proc("P_subSelectAccept", {ParamKind::Bool}, [](AppContext& x, Args& a) {
        forms::Frm22Selection::of(x).P_subSelectAccept(a.at(0).boolean());
        return Value();
    }));
    ctx.procedures.add(proc(
        "P_subSelectionClick", {ParamKind::Handle, ParamKind::Integer}, [](AppContext& x, Args& a) {
            P_subSelectAccept(x, engine::Handle(a.at(0).integer()), int(a.at(1).integer()));
            return Value();
        }));
    ctx.procedures.add(
        proc("P_subProgressStep", {ParamKind::Number, ParamKind::Integer, ParamKind::Text},
             [](AppContext& x, Args& a) {
                 P_subProgressStep(x, a.at(0).number(), long(a.at(1).integer()), a.at(2).text());
                 return Value();
             }));
}

}  // namespace

void registerSelection(AppContext& ctx) {
    forms::Frm22Selection::of(ctx);
    forms::selectionScopeBox(ctx);
    registerCommands(ctx);
    registerProcedures(ctx);
}

}  // namespace tools
