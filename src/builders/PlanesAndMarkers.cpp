#include "builders/PlanesAndMarkers.h"

#include <memory>

#include "builders/DiscPlanes.h"
#include "builders/Markers.h"
#include "builders/StressTensor.h"
#include "core/AppContext.h"
#include "core/Procedures.h"
#include "forms/Frm10SelectMarker.h"
#include "forms/Frm11SelectMarkerStandard.h"
#include "forms/Frm13SelectExcStandard.h"
#include "forms/Frm14SelectLMStandard.h"
#include "forms/Frm15DiscPlane.h"
#include "forms/Frm16SelectDiscPlaneStandard.h"
#include "forms/Frm25StressTensor.h"

namespace builders {

namespace {

using core::AppContext;
using core::ParamKind;
using core::Procedure;
using core::Value;
using engine::Handle;
using Args = std::vector<Value>;
using K = ParamKind;

constexpr const char* kMarkerForms[] = {
    forms::Frm10SelectMarker::kName,      forms::Frm11SelectMarkerStandard::kName,
    forms::Frm13SelectExcStandard::kName, forms::Frm14SelectLMStandard::kName,
    forms::Frm15DiscPlane::kName,         forms::Frm16SelectDiscPlaneStandard::kName,
    forms::Frm25StressTensor::kName,
};

Handle handleOf(const Value& v) { return static_cast<Handle>(v.integer()); }

Procedure proc(const char* name, std::vector<ParamKind> params,
               std::function<Value(AppContext&, Args&)> body) {
    Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.body = std::move(body);
    return p;
}

template <class Form>
void addForm(AppContext& ctx) {
    if (!ctx.forms.find(Form::kName)) ctx.forms.add(std::make_unique<Form>(&ctx));
}

// Each button of the dialogs is a command of its form, run as a click.
void registerButtons(AppContext& ctx) {
    for (const char* formName : kMarkerForms) {
        forms::Form* f = ctx.forms.find(formName);
        if (!f) continue;
        for (const auto& c : f->controls()) {
            if (c->kind != forms::ControlKind::CommandButton) continue;
            core::Command cmd;
            cmd.name = c->name;
            cmd.caption = c->caption;
            cmd.form = formName;
            cmd.handler = [form = std::string(formName), button = c->name](AppContext& a) {
                forms::Form* target = a.forms.find(form);
                if (!target) return;
                target->ensureLoaded();
                target->click(button);
            };
            ctx.commands.add(std::move(cmd));
        }
    }
}

void registerProcedures(core::ProcedureRegistry& r) {
    r.add(proc("P_fncCreate2PointDiscPlane",
               {K::Point, K::Point, K::Number, K::Number, K::Number, K::Number, K::Colour},
               [](AppContext& ctx, Args& a) {
                   return Value(P_fncCreate2PointDiscPlane(
                       ctx.engine, a.at(0).point(), a.at(1).point(), a.at(2).number(),
                       a.at(3).number(), a.at(4).number(), a.at(5).number(), a.at(6).colour()));
               }));
    r.add(proc("P_fncCreate3PointDiscPlane",
               {K::Point, K::Point, K::Point, K::Number, K::Number, K::Number, K::Colour},
               [](AppContext& ctx, Args& a) {
                   return Value(P_fncCreate3PointDiscPlane(
                       ctx.engine, a.at(0).point(), a.at(1).point(), a.at(2).point(),
                       a.at(3).number(), a.at(4).number(), a.at(5).number(), a.at(6).colour()));
               }));
    Procedure pole =
        proc("P_subPlanePointsFromPole",
             {K::Point, K::Number, K::Number, K::Bool, K::Handle, K::Point, K::Point},
             [](AppContext& ctx, Args& a) {
                 Handle hPole = 0;
                 engine::Point3 A, B;
                 P_subPlanePointsFromPole(ctx, a.at(0).point(), a.at(1).number(), a.at(2).number(),
                                          a.at(3).boolean(), hPole, A, B);
                 a[4] = Value(hPole);
                 a[5] = Value(A);
                 a[6] = Value(B);
                 return Value();
             });
    pole.changesArgs = true;
    pole.outArgs = {4, 5, 6};
    r.add(std::move(pole));

    r.add(proc("P_subAcceptPlaneType", {}, [](AppContext& ctx, Args&) {
        discPlaneForm(ctx).P_subAcceptPlaneType();
        return Value();
    }));
    r.add(proc("P_subMarkerAccept", {}, [](AppContext& ctx, Args&) {
        selectMarkerForm(ctx).P_subMarkerAccept();
        return Value();
    }));

    r.add(proc("placeDiscPlaneOnePoint", {K::Point}, [](AppContext& ctx, Args& a) {
        return Value(placeDiscPlaneOnePoint(ctx, a.at(0).point()));
    }));
    r.add(proc("placeDiscPlaneTwoPoints", {K::Point, K::Point}, [](AppContext& ctx, Args& a) {
        return Value(placeDiscPlaneTwoPoints(ctx, a.at(0).point(), a.at(1).point()));
    }));
    r.add(proc(
        "placeDiscPlaneThreePoints", {K::Point, K::Point, K::Point}, [](AppContext& ctx, Args& a) {
            return Value(
                placeDiscPlaneThreePoints(ctx, a.at(0).point(), a.at(1).point(), a.at(2).point()));
        }));
    r.add(proc("placeMarker", {K::Point, K::Handle}, [](AppContext& ctx, Args& a) {
        return Value(placeMarker(ctx, a.at(0).point(), handleOf(a.at(1))));
    }));
    r.add(proc("placeMarkerPointer", {K::Point, K::Point}, [](AppContext& ctx, Args& a) {
        return Value(placeMarkerPointer(ctx, a.at(0).point(), a.at(1).point()));
    }));
    r.add(proc("placeStressTensor", {K::Point}, [](AppContext& ctx, Args& a) {
        return Value(placeStressTensor(ctx, a.at(0).point()));
    }));

    // The colour tables: the colour of a name, nothing for a name of no row.
    r.add(proc("discPlaneColour", {K::Text}, [](AppContext&, Args& a) {
        engine::Rgb c;
        return forms::Frm15DiscPlane::tableColour(a.at(0).text(), c) ? Value(c) : Value();
    }));
    r.add(proc("markerColour", {K::Text}, [](AppContext&, Args& a) {
        engine::Rgb c;
        return forms::Frm10SelectMarker::tableColour(a.at(0).text(), c) ? Value(c) : Value();
    }));
}

}  // namespace

void registerPlanesAndMarkers(AppContext& ctx) {
    if (ctx.procedures.find("placeDiscPlaneOnePoint")) return;

    auto& planes = discPlaneForm(ctx);
    addForm<forms::Frm16SelectDiscPlaneStandard>(ctx);
    AppContext* c = &ctx;
    planes.at("cmdStandardPlanes").onChange = [c] {
        if (forms::Form* f = c->forms.find(forms::Frm16SelectDiscPlaneStandard::kName))
            c->ui.showModal(*f);
    };
    selectMarkerForm(ctx);  // with its catalogue and the stress tensor dialog
    addForm<forms::Frm13SelectExcStandard>(ctx);
    addForm<forms::Frm14SelectLMStandard>(ctx);

    registerButtons(ctx);
    registerProcedures(ctx.procedures);
}

}  // namespace builders
