#include <functional>
#include <utility>

#include "core/AppContext.h"
#include "persistence/ExportCentres.h"
#include "persistence/ExportDxf.h"
#include "persistence/ExportSave.h"
#include "persistence/ExportSeisInfo.h"
#include "persistence/ExportStandardDxf.h"
#include "persistence/ExportTubes.h"
#include "persistence/ExportVisibleSet.h"
#include "persistence/Exports.h"

namespace persistence {

namespace {

using core::ParamKind;
using core::Value;
using Args = std::vector<Value>;
using Handler = std::function<void(core::AppContext&)>;

void command(core::AppContext& ctx, const char* name, const char* caption, Handler h) {
    core::Command c;
    c.name = name;
    c.caption = caption;
    c.menuPath = kExportMenu;
    c.handler = std::move(h);
    ctx.commands.add(std::move(c));
}

void registerCommands(core::AppContext& ctx) {
    command(ctx, "mnuExportDXFWireframes", "DXF Wireframes",
            [](core::AppContext& c) { P_subExportDXF(c, "GeneralDXF"); });
    command(ctx, "mnuExportStandardDXF", "Standard DXF",
            [](core::AppContext& c) { exportStandardDxf(c); });
    command(ctx, "mnuExportMap3DWireframes4", "Map3D Wireframes (closed polygons)",
            [](core::AppContext& c) { P_subExportPNT(c, "Points4"); });
    command(ctx, "mnuExportMap3DWireframes3", "Map3D Wireframes (triangles)",
            [](core::AppContext& c) { P_subExportPNT(c, "Points3"); });
    command(ctx, "mnuExportDatamineStrings", "Datamine Strings",
            [](core::AppContext& c) { P_subExportDatamineStrings(c); });
    command(ctx, "mnuExportMap3DStrings", "Map3D Strings",
            [](core::AppContext& c) { P_subExportTubes(c, "Map3D"); });
    command(ctx, "mnuExportVentSimStrings", "VentSim Strings",
            [](core::AppContext& c) { P_subExportTubes(c, "VentSim"); });
    command(ctx, "mnuExportSeisInfo", "Seismic Information",
            [](core::AppContext& c) { P_subExportSeisInfo(c); });
    const Handler entityData = [](core::AppContext& c) { P_subExportCentres(c, "Entity", 0, -1); };
    command(ctx, "mnuExportCentreAndData", "Centre and Data", entityData);
    command(ctx, "mnuExportEntityCentreAndData", "Entity Centre and Data", entityData);
    command(ctx, "mnuExportEntityDoubleCentres", "Entity Centre and Off-set Point",
            [](core::AppContext& c) { P_subExportCentres(c, "Entity", -1, 0); });
    command(ctx, "mnuExportGroupCentreAndData", "Group Centre and Data",
            [](core::AppContext& c) { P_subExportCentres(c, "Group", 0, -1); });
    command(ctx, "mnuExportPolyData", "Polygon Data",
            [](core::AppContext& c) { P_subExportPolyData(c); });
}

core::Procedure proc(const char* name, std::vector<ParamKind> params,
                     std::function<Value(core::AppContext&, Args&)> body) {
    core::Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.body = std::move(body);
    return p;
}

// A sub: its result is nothing.
template <class Fn>
core::Procedure sub(const char* name, std::vector<ParamKind> params, Fn fn) {
    return proc(name, std::move(params), [fn](core::AppContext& ctx, Args& a) {
        fn(ctx, a);
        return Value();
    });
}

short flag(const Value& v) { return v.boolean() ? -1 : 0; }

void registerProcedures(core::ProcedureRegistry& r) {
    r.add(sub("P_subExportDXF", {ParamKind::Text},
              [](core::AppContext& c, Args& a) { P_subExportDXF(c, a.at(0).text()); }));
    r.add(sub("P_subExportPNT", {ParamKind::Text},
              [](core::AppContext& c, Args& a) { P_subExportPNT(c, a.at(0).text()); }));
    r.add(sub("P_subExportTubes", {ParamKind::Text},
              [](core::AppContext& c, Args& a) { P_subExportTubes(c, a.at(0).text()); }));
    r.add(sub("P_subExportDatamineStrings", {},
              [](core::AppContext& c, Args&) { P_subExportDatamineStrings(c); }));
    r.add(
        sub("P_subExportSeisInfo", {}, [](core::AppContext& c, Args&) { P_subExportSeisInfo(c); }));
    r.add(sub("P_subExportCentres", {ParamKind::Text, ParamKind::Bool, ParamKind::Bool},
              [](core::AppContext& c, Args& a) {
                  P_subExportCentres(c, a.at(0).text(), flag(a.at(1)), flag(a.at(2)));
              }));
    r.add(
        sub("P_subExportPolyData", {}, [](core::AppContext& c, Args&) { P_subExportPolyData(c); }));
    r.add(sub(
        "P_subSaveText", {ParamKind::Text, ParamKind::Text},
        [](core::AppContext& c, Args& a) { P_subSaveText(c, a.at(0).text(), a.at(1).text()); }));
    r.add(sub(
        "p_subFileCopy", {ParamKind::Text, ParamKind::Text},
        [](core::AppContext& c, Args& a) { p_subFileCopy(c, a.at(0).text(), a.at(1).text()); }));
    r.add(proc("P_fncGroupAllVisible", {},
               [](core::AppContext& c, Args&) -> Value { return P_fncGroupAllVisible(c.engine); }));
}

}  // namespace

void registerExports(core::AppContext& ctx) {
    registerCommands(ctx);
    registerProcedures(ctx.procedures);
}

}  // namespace persistence
