#include "builders/BuilderProcedures.h"

#include <algorithm>
#include <memory>

#include "builders/MarkerSpheres.h"
#include "builders/Meshes.h"
#include "builders/TubeCentreLine.h"
#include "builders/Tubes.h"
#include "core/AppContext.h"
#include "core/Procedures.h"

namespace builders {

namespace {

using core::AppContext;
using core::ParamKind;
using core::Procedure;
using core::Value;
using engine::Handle;
using Args = std::vector<Value>;
using Body = std::function<Value(AppContext&, Args&)>;

Procedure proc(const char* name, std::vector<ParamKind> params, std::vector<std::size_t> outArgs,
               bool changesArgs, Body body) {
    Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.changesArgs = changesArgs;
    p.outArgs = std::move(outArgs);
    p.body = std::move(body);
    return p;
}

// A builder: its result is the group handle.
Procedure builder(const char* name, std::vector<ParamKind> params, Body body) {
    return proc(name, std::move(params), {}, false, std::move(body));
}

short int16(const Value& v) {
    return static_cast<short>(std::clamp<std::int64_t>(v.integer(), -32768, 32767));
}

// Wrappers hand the group back in their last argument.
using Wrapper = bool (*)(AppContext&, const engine::Point3&, double, const engine::Rgb&, Handle&);
Procedure wrapper(const char* name, Wrapper fn) {
    using K = ParamKind;
    return proc(name, {K::Point, K::Number, K::Colour, K::Handle}, {3}, true,
                [fn](AppContext& ctx, Args& a) {
                    Handle h = 0;
                    fn(ctx, a.at(0).point(), a.at(1).number(), a.at(2).colour(), h);
                    a[3] = Value(h);
                    return Value();
                });
}

}  // namespace

void registerBuilderProcedures(core::ProcedureRegistry& r) {
    using K = ParamKind;
    r.add(builder("P_fncCreateSphere", {K::Number, K::Integer, K::Integer, K::Colour},
                  [](AppContext& ctx, Args& a) {
                      return Value(P_fncCreateSphere(ctx.engine, a.at(0).number(), int16(a.at(1)),
                                                     int16(a.at(2)), a.at(3).colour()));
                  }));
    r.add(builder("P_fncCreateCube", {K::Point, K::Colour}, [](AppContext& ctx, Args& a) {
        const engine::Point3 d = a.at(0).point();
        return Value(P_fncCreateCube(ctx.engine, {toSingle(d.x), toSingle(d.y), toSingle(d.z)},
                                     a.at(1).colour()));
    }));
    using TwoPoint = Handle (*)(engine::Engine&, const engine::Point3&, const engine::Point3&,
                                double, const engine::Rgb&);
    const std::pair<const char*, TwoPoint> twoPoint[] = {
        {"fncCreateCone", &fncCreateCone},
        {"P_fncCreate3Cone", &P_fncCreate3Cone},
        {"P_fncCreateCylinder", &P_fncCreateCylinder},
        {"P_fncCreateWedge", &P_fncCreateWedge},
        {"P_fncCreate3DString", &P_fncCreate3DString},
    };
    for (const auto& [name, fn] : twoPoint) {
        r.add(builder(name, {K::Point, K::Point, K::Number, K::Colour},
                      [fn = fn](AppContext& ctx, Args& a) {
                          return Value(fn(ctx.engine, a.at(0).point(), a.at(1).point(),
                                          a.at(2).number(), a.at(3).colour()));
                      }));
    }
    using Boxed = Handle (*)(engine::Engine&, bool, const engine::Point3&, const engine::Point3&,
                             double, double, const engine::Rgb&);
    const std::pair<const char*, Boxed> boxed[] = {
        {"P_fncCreate4Cone", &P_fncCreate4Cone},
        {"P_fncCreate3DExcavation", &P_fncCreate3DExcavation},
    };
    for (const auto& [name, fn] : boxed) {
        r.add(builder(name, {K::Bool, K::Point, K::Point, K::Number, K::Number, K::Colour},
                      [fn = fn](AppContext& ctx, Args& a) {
                          return Value(fn(ctx.engine, a.at(0).boolean(), a.at(1).point(),
                                          a.at(2).point(), a.at(3).number(), a.at(4).number(),
                                          a.at(5).colour()));
                      }));
    }
    r.add(builder("P_fncCreateFlatCircle", {K::Number, K::Colour}, [](AppContext& ctx, Args& a) {
        return Value(P_fncCreateFlatCircle(ctx.engine, a.at(0).number(), a.at(1).colour()));
    }));

    auto rings = std::make_shared<DrillLineRings>();
    r.add(builder("P_subPrepareDrillLine", {K::Number}, [rings](AppContext& ctx, Args& a) {
        P_subPrepareDrillLine(ctx.engine, *rings, a.at(0).number());
        return Value();
    }));
    r.add(builder("P_fncCreateDrillLine", {K::Point, K::Point, K::Number, K::Colour},
                  [rings](AppContext& ctx, Args& a) {
                      return Value(P_fncCreateDrillLine(ctx.engine, *rings, a.at(0).point(),
                                                        a.at(1).point(), a.at(2).number(),
                                                        a.at(3).colour()));
                  }));
    r.add(builder("P_subReleaseDrillLine", {}, [rings](AppContext& ctx, Args&) {
        P_subReleaseDrillLine(ctx.engine, *rings);
        return Value();
    }));

    r.add(wrapper("P_fncRenderSphere", &P_fncRenderSphere));
    r.add(wrapper("P_fncResolutionSphere", &P_fncResolutionSphere));
    r.add(proc("P_fncResolutionCube", {K::Point, K::Number, K::Colour, K::Handle}, {3}, true,
               [](AppContext& ctx, Args& a) {
                   Handle h = 0;
                   P_fncResolutionCube(ctx, a.at(0).point(), toSingle(a.at(1).number()),
                                       a.at(2).colour(), h);
                   a[3] = Value(h);
                   return Value();
               }));
    r.add(proc("P_fncTubeCentreLine", {K::Handle, K::Point, K::Point, K::Bool}, {1, 2, 3}, true,
               [](AppContext& ctx, Args& a) {
                   engine::Point3 endA = a.at(1).point(), endB = a.at(2).point();
                   bool isTube = false;
                   P_fncTubeCentreLine(ctx.engine, static_cast<Handle>(a.at(0).integer()), endA,
                                       endB, isTube);
                   a[1] = Value(endA);
                   a[2] = Value(endB);
                   a[3] = Value(isTube);
                   return Value();
               }));
}

}  // namespace builders
