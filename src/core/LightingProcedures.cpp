#include "core/LightingProcedures.h"

#include "core/AppContext.h"
#include "core/Lighting.h"
#include "core/Procedures.h"

namespace core {

namespace {

using Args = std::vector<Value>;

engine::Handle handleOf(const Value& v) { return static_cast<engine::Handle>(v.integer()); }

Procedure proc(const char* name, std::vector<ParamKind> params,
               std::function<Value(AppContext&, Args&)> body) {
    Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.body = std::move(body);
    return p;
}

void addGroupProcedure(ProcedureRegistry& r, const char* name,
                       void (*fn)(AppContext&, engine::Handle)) {
    r.add(proc(name, {ParamKind::Handle}, [fn](AppContext& ctx, Args& a) {
        fn(ctx, handleOf(a.at(0)));
        return Value();
    }));
}

}  // namespace

void registerLightingProcedures(ProcedureRegistry& r) {
    addGroupProcedure(r, "P_subApplyLight", &P_subApplyLight);
    addGroupProcedure(r, "P_subLightOff", &P_subLightOff);
    addGroupProcedure(r, "P_subLightTopBottom", &P_subLightTopBottom);
    addGroupProcedure(r, "P_subLightFromCamera", &P_subLightFromCamera);
    addGroupProcedure(r, "P_subLightFollowCamera", &P_subLightFollowCamera);
    r.add(proc("P_subFlatShading", {ParamKind::Integer, ParamKind::Handle},
               [](AppContext& ctx, Args& a) {
                   P_subFlatShading(ctx, static_cast<int>(a.at(0).integer()), handleOf(a.at(1)));
                   return Value();
               }));
    r.add(proc("P_subPolygonDifferentiation", {}, [](AppContext& ctx, Args&) {
        P_subPolygonDifferentiation(ctx);
        return Value();
    }));
}

}  // namespace core
