#include "import/ImportRegistration.h"

#include "core/AppContext.h"
#include "forms/Frm12Excavation.h"
#include "import/ImportCommands.h"
#include "import/DrillholeReaders.h"
#include "import/ImportRoute.h"
#include "import/Map3DColour.h"
#include "import/Map3DReaders.h"
#include "import/ProgressMessage.h"
#include "import/SeismicReaders.h"
#include "import/Triangle.h"

namespace importers {

namespace {

using core::ParamKind;
using Args = std::vector<core::Value>;

core::Procedure proc(const char* name, std::vector<ParamKind> params,
                     std::function<core::Value(core::AppContext&, Args&)> body) {
    core::Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.body = std::move(body);
    return p;
}

void registerProcedures(core::ProcedureRegistry& r) {
    r.add(proc("p_subFileOpen", {ParamKind::Text}, [](core::AppContext& ctx, Args& a) {
        p_subFileOpen(ctx, a.at(0).text());
        return core::Value();
    }));
    r.add(proc("p_subFileAdd", {ParamKind::Text}, [](core::AppContext& ctx, Args& a) {
        p_subFileAdd(ctx, a.at(0).text());
        return core::Value();
    }));
    r.add(proc("P_subProgressMessage", {ParamKind::Number, ParamKind::Number, ParamKind::Text},
               [](core::AppContext& ctx, Args& a) {
                   P_subProgressMessage(ctx, static_cast<float>(a.at(0).number()),
                                        static_cast<float>(a.at(1).number()), a.at(2).text());
                   return core::Value();
               }));
    auto colour =
        proc("P_subMap3DColour", {ParamKind::Integer, ParamKind::Colour},
             [](core::AppContext&, Args& a) {
                 const std::int64_t code = a.at(0).integer();
                 const auto lng = static_cast<std::int32_t>(
                     code > INT32_MAX ? INT32_MAX : (code < INT32_MIN ? INT32_MIN : code));
                 engine::Rgb c;
                 P_subMap3DColour(lng, c);
                 a.at(1) = core::Value(c);
                 return core::Value();
             });
    colour.changesArgs = true;
    colour.outArgs = {1};
    r.add(std::move(colour));
    r.add(proc("P_subAcceptExcavationDimensions", {}, [](core::AppContext& ctx, Args&) {
        forms::Frm12Excavation::of(ctx).P_subAcceptExcavationDimensions();
        return core::Value();
    }));
    r.add(proc("P_fncTriangle",
               {ParamKind::Point, ParamKind::Point, ParamKind::Point, ParamKind::Colour},
               [](core::AppContext& ctx, Args& a) {
                   return core::Value(P_fncTriangle(ctx.engine, a.at(0).point(), a.at(1).point(),
                                                    a.at(2).point(), a.at(3).colour()));
               }));
}

}  // namespace

void registerImport(core::AppContext& ctx) {
    registerProcedures(ctx.procedures);
    registerMap3DReaders(ctx);
    registerDrillholeReaders(ctx);
    registerSeismicReaders(ctx);
    // One line per reader family.
    registerImportTable(ctx);
}

}  // namespace importers
