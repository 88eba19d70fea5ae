#include "core/TextProcedures.h"

#include "core/AppContext.h"
#include "core/NameRecords.h"
#include "core/Procedures.h"
#include "core/TextNormalise.h"

namespace core {

namespace {

using Args = std::vector<Value>;

engine::Handle handleOf(const Value& v) { return static_cast<engine::Handle>(v.integer()); }

Procedure proc(const char* name, std::vector<ParamKind> params, bool changesArgs,
               std::function<Value(AppContext&, Args&)> body) {
    Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.changesArgs = changesArgs;
    p.body = std::move(body);
    return p;
}

}  // namespace

void registerTextProcedures(ProcedureRegistry& r) {
    r.add(proc("P_subNormaliseSeparators", {ParamKind::Text, ParamKind::Integer}, true,
               [](AppContext&, Args& a) {
                   std::string line = a.at(0).text();
                   P_subNormaliseSeparators(line, static_cast<int>(a.at(1).integer()));
                   a[0] = Value(std::move(line));
                   return Value();
               }));
    r.add(proc("P_subNormaliseLineEnds", {ParamKind::Text}, true, [](AppContext&, Args& a) {
        std::string name = a.at(0).text();
        P_subNormaliseLineEnds(name);
        a[0] = Value(std::move(name));
        return Value();
    }));
    r.add(proc("strEntityName", {ParamKind::Handle}, false, [](AppContext& ctx, Args& a) {
        return Value(strEntityName(ctx.engine, handleOf(a.at(0))));
    }));
    r.add(proc("bolNameHasText", {ParamKind::Text}, false,
               [](AppContext&, Args& a) { return Value(bolNameHasText(a.at(0).text())); }));
    r.add(proc("p_subSetGroupPolygonNames", {ParamKind::Handle, ParamKind::Text}, false,
               [](AppContext& ctx, Args& a) {
                   p_subSetGroupPolygonNames(ctx.engine, handleOf(a.at(0)), a.at(1).text());
                   return Value();
               }));
}

}  // namespace core
