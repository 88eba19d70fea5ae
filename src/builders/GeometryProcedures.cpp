#include "builders/GeometryProcedures.h"

#include "builders/Geometry.h"
#include "core/AppContext.h"
#include "core/Procedures.h"

namespace builders {

namespace {

using core::AppContext;
using core::ParamKind;
using core::Procedure;
using core::Value;
using Args = std::vector<Value>;
using Body = std::function<Value(AppContext&, Args&)>;

Procedure proc(const char* name, std::vector<ParamKind> params, bool changesArgs,
               std::vector<std::size_t> outArgs, Body body) {
    Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.changesArgs = changesArgs;
    p.outArgs = std::move(outArgs);
    p.body = std::move(body);
    return p;
}

engine::Handle handleOf(const Value& v) { return static_cast<engine::Handle>(v.integer()); }

void addNumberFunction(core::ProcedureRegistry& r, const char* name, double (*fn)(double)) {
    r.add(proc(name, {ParamKind::Number}, false, {},
               [fn](AppContext&, Args& a) { return Value(fn(a.at(0).number())); }));
}

void addHandleFunction(core::ProcedureRegistry& r, const char* name,
                       double (*fn)(const engine::Engine&, engine::Handle)) {
    r.add(proc(name, {ParamKind::Handle}, false, {}, [fn](AppContext& ctx, Args& a) {
        return Value(fn(ctx.engine, handleOf(a.at(0))));
    }));
}

}  // namespace

void registerGeometryProcedures(core::ProcedureRegistry& r) {
    using K = ParamKind;
    addNumberFunction(r, "ACosRad", &ACosRad);
    addNumberFunction(r, "ACosDeg", &ACosDeg);
    addNumberFunction(r, "ASinDeg", &ASinDeg);

    r.add(proc("P_subCopyPoint", {K::Point, K::Point}, true, {0}, [](AppContext&, Args& a) {
        engine::Point3 d;
        P_subCopyPoint(d, a.at(1).point());
        a[0] = Value(d);
        return Value();
    }));
    r.add(proc("P_subNegatePoint", {K::Point, K::Point}, true, {0}, [](AppContext&, Args& a) {
        engine::Point3 d;
        P_subNegatePoint(d, a.at(1).point());
        a[0] = Value(d);
        return Value();
    }));
    r.add(proc("P_subCopyColour", {K::Colour, K::Colour}, true, {0}, [](AppContext&, Args& a) {
        engine::Rgb d;
        P_subCopyColour(d, a.at(1).colour());
        a[0] = Value(d);
        return Value();
    }));
    r.add(proc("P_fncLineVerticalAngle", {K::Point, K::Point}, false, {}, [](AppContext&, Args& a) {
        return Value(P_fncLineVerticalAngle(a.at(0).point(), a.at(1).point()));
    }));
    r.add(proc("P_subDipAndDipDirection",
               {K::Bool, K::Bool, K::Bool, K::Point, K::Number, K::Number}, true, {4, 5},
               [](AppContext& ctx, Args& a) {
                   engine::Point3 v = a.at(3).point();
                   double dip = 0, dd = 0;
                   P_subDipAndDipDirection(ctx, a.at(0).boolean(), a.at(1).boolean(),
                                           a.at(2).boolean(), v, dip, dd);
                   a[3] = Value(v);
                   a[4] = Value(dip);
                   a[5] = Value(dd);
                   return Value();
               }));
    r.add(proc("P_fncDipToPolePlunge", {K::Number}, true, {}, [](AppContext&, Args& a) {
        double dip = a.at(0).number();
        double result = P_fncDipToPolePlunge(dip);
        a[0] = Value(dip);
        return Value(result);
    }));
    r.add(proc("P_fncDipDirToPoleTrend", {K::Number}, true, {}, [](AppContext&, Args& a) {
        double dd = a.at(0).number();
        double result = P_fncDipDirToPoleTrend(dd);
        a[0] = Value(dd);
        return Value(result);
    }));
    r.add(proc("P_subTrendPlungeEnd", {K::Point, K::Number, K::Number, K::Number, K::Point}, true,
               {4}, [](AppContext& ctx, Args& a) {
                   double trend = a.at(2).number(), plunge = a.at(3).number();
                   engine::Point3 end;
                   P_subTrendPlungeEnd(ctx, a.at(0).point(), a.at(1).number(), trend, plunge, end);
                   a[2] = Value(trend);
                   a[3] = Value(plunge);
                   a[4] = Value(end);
                   return Value();
               }));
    r.add(proc("P_subProjectPointOnLine", {K::Point, K::Point, K::Point}, true, {},
               [](AppContext&, Args& a) {
                   engine::Point3 p = a.at(2).point();
                   P_subProjectPointOnLine(a.at(0).point(), a.at(1).point(), p);
                   a[2] = Value(p);
                   return Value();
               }));
    addHandleFunction(r, "P_fncPolygonCornerArea", &P_fncPolygonCornerArea);
    addHandleFunction(r, "P_fncPolygonCornerRadius", &P_fncPolygonCornerRadius);
    addHandleFunction(r, "P_fncGroupVolume", &P_fncGroupVolume);
}

}  // namespace builders
