#include "analysis/AnalysisRegistration.h"

#include <memory>
#include <string>

#include "analysis/ColourMapByData.h"
#include "analysis/ColourMapForm.h"
#include "analysis/ColourScale.h"
#include "analysis/GeometryColour.h"
#include "analysis/PpvCommand.h"
#include "analysis/SplitPolygons.h"
#include "analysis/StressPoints.h"
#include "core/AppContext.h"

namespace analysis {

namespace {

using core::AppContext;
using core::ParamKind;
using core::Value;
using engine::Handle;
using Args = std::vector<Value>;
using K = ParamKind;

core::Procedure proc(const char* name, std::vector<ParamKind> params,
                     std::function<Value(AppContext&, Args&)> body,
                     std::vector<std::size_t> outArgs = {}, bool changesArgs = false) {
    core::Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.outArgs = std::move(outArgs);
    p.changesArgs = changesArgs;
    p.body = std::move(body);
    return p;
}

void menu(AppContext& ctx, const char* name, const char* caption, const char* path,
          std::function<void(AppContext&)> handler) {
    core::Command c;
    c.name = name;
    c.caption = caption;
    c.menuPath = path;
    c.handler = std::move(handler);
    ctx.commands.add(std::move(c));
}

Handle handle(const Value& v) { return static_cast<Handle>(v.integer()); }
int scale(const Value& v) { return static_cast<int>(v.integer()); }

// The value type the last geometry colour map used, which p_subNameValue reads
// when a script calls it with the polygon and the value only.
struct Session {
    std::string nameValueType{kTypeMiningStep};
};

void registerColourScale(core::ProcedureRegistry& r) {
    r.add(proc(
        "P_subColourScaleSetup", {K::Number, K::Number, K::Number, K::Number, K::Integer},
        [](AppContext& ctx, Args& a) {
            double max = a.at(0).number(), min = a.at(1).number(), range = 0, inc = 0;
            int bytScale = scale(a.at(4));
            P_subColourScaleSetup(ctx, max, min, range, inc, bytScale);
            a = {Value(max), Value(min), Value(range), Value(inc), Value(bytScale)};
            return Value();
        },
        {2, 3}, true));
    using Colourer = void (*)(engine::Engine&, Handle, double, double, double, double, double, int);
    const std::pair<const char*, Colourer> direct[] = {{"P_subColourNormal", &P_subColourNormal},
                                                       {"P_subColourInverse", &P_subColourInverse}};
    const std::vector<ParamKind> polygonArgs = {K::Handle, K::Number, K::Number, K::Number,
                                                K::Number, K::Number, K::Integer};
    for (const auto& [name, fn] : direct) {
        r.add(proc(name, polygonArgs, [fn = fn](AppContext& ctx, Args& a) {
            fn(ctx.engine, handle(a.at(0)), a.at(1).number(), a.at(2).number(), a.at(3).number(),
               a.at(4).number(), a.at(5).number(), scale(a.at(6)));
            return Value();
        }));
    }
    r.add(proc("P_subColourPolygon", polygonArgs, [](AppContext& ctx, Args& a) {
        P_subColourPolygon(ctx, handle(a.at(0)), a.at(1).number(), a.at(2).number(),
                           a.at(3).number(), a.at(4).number(), a.at(5).number(), scale(a.at(6)));
        return Value();
    }));
    r.add(proc(
        "P_subVertexColour",
        {K::Number, K::Number, K::Number, K::Number, K::Number, K::Integer, K::Colour},
        [](AppContext&, Args& a) {
            engine::Rgb c;
            P_subVertexColour(a.at(0).number(), a.at(1).number(), a.at(2).number(),
                              a.at(3).number(), a.at(4).number(), scale(a.at(5)), c);
            a[6] = Value(c);
            return Value();
        },
        {6}, true));
    r.add(proc("P_subColourVertices",
               {K::Handle, K::Number, K::Number, K::Number, K::Number, K::Integer, K::Text},
               [](AppContext& ctx, Args& a) {
                   P_subColourVertices(ctx.engine, handle(a.at(0)), a.at(1).number(),
                                       a.at(2).number(), a.at(3).number(), a.at(4).number(),
                                       scale(a.at(5)), a.at(6).text());
                   return Value();
               }));
    r.add(proc("P_subPercentageColour", {K::Handle, K::Number}, [](AppContext& ctx, Args& a) {
        P_subPercentageColour(ctx.engine, handle(a.at(0)), a.at(1).number());
        return Value();
    }));
}

void registerGeometryColour(AppContext& ctx, const std::shared_ptr<Session>& session) {
    auto byType = [session](std::string type) {
        return [session, type](AppContext& c) {
            if (type == kTypeMiningStep || type == kTypeEventDateTime)
                session->nameValueType = type;
            p_subColourGeometry(c, type);
        };
    };
    const char* path = "Analysis/Colour map by geometry";
    menu(ctx, "mnuColourMapOnPolyDepth", "Depth", path, byType(std::string(kTypeDepth)));
    menu(ctx, "mnuColourMapOnPolyDip", "Dip", path, byType(std::string(kTypeDip)));
    menu(ctx, "mnuColourMapOnPolyDipDirection", "Dip direction", path,
         byType(std::string(kTypeDipDirection)));
    menu(ctx, "mnuColourMapOnPolyDipAndDipDirection", "Dip direction (0-360)", path,
         byType(std::string(kTypeDipDirection360)));
    menu(ctx, "mnuColourMapOnPolyDipDirection180", "Dip direction (0-180)", path,
         byType(std::string(kTypeDipDirection180)));
    menu(ctx, "mnuColourMapOnPolyValue", "Mining step or event date/time", path,
         [session](AppContext& c) {
             const std::string_view type = p_subColourByNameValue(c);
             if (!type.empty()) session->nameValueType = type;
         });
    menu(ctx, "mnuColourMapOnVerticeDepth", "Vertices by depth", path,
         [](AppContext& c) { p_subColourVertices(c, kVerticeDepth); });
    menu(ctx, "mnuColourMapOnVerticeValues", "Vertices by their values", path,
         [](AppContext& c) { p_subColourVertices(c, kVerticeValue); });

    auto& r = ctx.procedures;
    r.add(proc("p_subColourGeometry", {K::Text}, [session](AppContext& c, Args& a) {
        const std::string type = a.at(0).text();
        if (type == kTypeMiningStep || type == kTypeEventDateTime) session->nameValueType = type;
        p_subColourGeometry(c, type);
        return Value();
    }));
    r.add(proc("p_subColourVertices", {K::Text}, [](AppContext& c, Args& a) {
        p_subColourVertices(c, a.at(0).text());
        return Value();
    }));
    r.add(proc(
        "p_subNameValue", {K::Handle, K::Number},
        [session](AppContext& c, Args& a) {
            double v = 0;
            p_subNameValue(c, session->nameValueType, handle(a.at(0)), v);
            a[1] = Value(v);
            return Value();
        },
        {1}, true));
}

void registerSplit(AppContext& ctx) {
    const char* path = "Analysis/Polygons";
    menu(ctx, "mnuSplitPolygons", "Split polygons by a plane", path,
         [](AppContext& c) { armSplitTool(c, true, false); });
    menu(ctx, "mnuDrawSplitLines", "Section lines of a plane", path,
         [](AppContext& c) { armSplitTool(c, false, true); });
    menu(ctx, "mnuSplitPolyDrawLines", "Split polygons and draw section lines", path,
         [](AppContext& c) { armSplitTool(c, true, true); });

    auto& r = ctx.procedures;
    r.add(proc("P_subSplitPolygons", {K::Handle, K::Bool, K::Bool}, [](AppContext& c, Args& a) {
        P_subSplitPolygons(c, handle(a.at(0)), a.at(1).boolean(), a.at(2).boolean());
        return Value();
    }));
    r.add(proc("P_subSectionLine", {K::Handle, K::Handle, K::Handle}, [](AppContext& c, Args& a) {
        return Value(P_subSectionLine(c, handle(a.at(0)), handle(a.at(1)), handle(a.at(2))));
    }));

    auto& in = ctx.input;
    if (!in.onDblClick) {
        in.onDblClick = [](AppContext& c, double x, double y) { splitAtDoubleClick(c, x, y); };
    } else {
        in.onDblClick = [old = in.onDblClick](AppContext& c, double x, double y) {
            old(c, x, y);
            splitAtDoubleClick(c, x, y);
        };
    }
}

}  // namespace

void registerAnalysis(AppContext& ctx) {
    if (ctx.commands.find("mnuSplitPolygons") != nullptr) return;
    colourMapForm(ctx);
    auto session = std::make_shared<Session>();
    registerColourScale(ctx.procedures);
    registerGeometryColour(ctx, session);
    registerSplit(ctx);
    registerColourMapForm(ctx);
    registerStressPoints(ctx);
    registerPPV(ctx);
}

}  // namespace analysis
