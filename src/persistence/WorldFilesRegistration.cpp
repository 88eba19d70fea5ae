// The world files in the registries: menu entries, the undo button, the
// procedures scripts call, the multi-file form and the script hooks.

#include <filesystem>

#include "core/AppContext.h"
#include "engine/WorldFormat.h"
#include "forms/Frm26FileAdd.h"
#include "persistence/Backup.h"
#include "persistence/OpenFile.h"
#include "persistence/WorldFiles.h"

namespace persistence {

namespace fs = std::filesystem;

namespace {

using core::ParamKind;
using core::Value;
using Args = std::vector<Value>;

core::Procedure proc(const char* name, std::vector<ParamKind> params,
                     std::function<Value(core::AppContext&, Args&)> body) {
    core::Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.body = std::move(body);
    return p;
}

engine::Handle handleOf(const Value& v) { return static_cast<engine::Handle>(v.integer()); }

// The engine's folder arguments: a file name and its folder, or a full path.
std::string joined(const std::string& folder, const std::string& file) {
    if (folder.empty() || fs::path(file).is_absolute()) return file;
    return (fs::path(folder) / file).string();
}

void command(core::AppContext& ctx, const char* name, const char* caption, const char* menu,
             const char* shortcut, std::function<void(core::AppContext&)> handler) {
    core::Command c;
    c.name = name;
    c.caption = caption;
    c.menuPath = menu;
    c.shortcut = shortcut;
    c.handler = std::move(handler);
    ctx.commands.add(std::move(c));
}

void registerCommands(core::AppContext& ctx) {
    command(ctx, "mnuSTATEFileOpenInitialize", "Open Tarvik-file", "File", "Ctrl+O",
            [](core::AppContext& c) { p_subSTATEFileOpen(c); });
    command(ctx, "mnuSTATEFileAdd", "Add Tarvik-file", "File", "",
            [](core::AppContext& c) { p_subSTATEFileAdd(c, false, false); });
    command(ctx, "mnuSTATEFileOpenMulti", "Open/Add multiple Tarvik-files", "File", "",
            [](core::AppContext& c) { mnuSTATEFileOpenMulti(c); });
    command(ctx, "mnuOpenEmptyFileEditor", "Open Empty File", "File", "",
            [](core::AppContext& c) { mnuOpenEmptyFileEditor(c); });
    command(ctx, "mnuImportFileLinkMarkers", "Add File Link Marker-files", "File", "",
            [](core::AppContext& c) { p_subSTATEFileAdd(c, false, true); });
    command(ctx, "mnuSaveFullModel1", "Save full 3D-model", "File", "Ctrl+S",
            [](core::AppContext& c) { P_subSaveWorld(c, kStateFileType, 0, false); });
    command(ctx, "mnuSaveFullModel2", "Save full 3D-model (with Bitmaps)", "File", "",
            [](core::AppContext& c) { P_subSaveWorld(c, kStateFileType, 0, true); });
    command(ctx, "mnuSaveCurName", "Save full 3D-model with Current Name", "File", "",
            [](core::AppContext& c) { mnuSaveCurName(c); });
    command(ctx, "mnuSaveVisibleInfoOnly", "Save Visible Information", "File", "",
            [](core::AppContext& c) { mnuSaveVisibleInfoOnly(c); });
    command(ctx, "mnuSaveAddedInfoOnly", "Save Added Information", "File", "",
            [](core::AppContext& c) { mnuSaveAddedInfoOnly(c); });
    command(ctx, "mnuBackup", "Backup File", "File", "",
            [](core::AppContext& c) { p_subBackup(c, kBackupFile); });
    command(ctx, "mnuRestore", "Restore File", "File", "",
            [](core::AppContext& c) { p_subRestore(c, kBackupFile); });
    command(ctx, "cmdUndo", "Undo", "", "", [](core::AppContext& c) { cmdUndo(c); });
}

void registerProcedures(core::ProcedureRegistry& r) {
    // The engine's world operations (also reached with the STATE_ prefix).
    r.add(proc("engine_load_world",
               {ParamKind::Text, ParamKind::Text, ParamKind::Text, ParamKind::Integer},
               [](core::AppContext& ctx, Args& a) -> Value {
                   const std::string file = a.at(0).text();
                   if (file.empty())
                       return ctx.engine.engine_load_world("", "", "", int(a.at(3).integer()));
                   const auto res =
                       engine::loadWorld(ctx.engine, joined(a.at(1).text(), file), a.at(2).text());
                   return res.ok ? 0 : -1;
               }));
    r.add(proc(
        "engine_add_world", {ParamKind::Text, ParamKind::Text, ParamKind::Text, ParamKind::Point},
        [](core::AppContext& ctx, Args& a) -> Value {
            const std::string path = joined(a.at(1).text(), a.at(0).text());
            const auto res = engine::addWorld(ctx.engine, path, a.at(2).text(), a.at(3).point(),
                                              fs::path(path).filename().string());
            return res.ok ? res.group : engine::Handle(0);
        }));
    r.add(proc("engine_save", {ParamKind::Text, ParamKind::Handle, ParamKind::Integer},
               [](core::AppContext& ctx, Args& a) -> Value {
                   engine::WorldSaveOptions opt;
                   opt.group = handleOf(a.at(1));
                   opt.bitmaps = (a.at(2).integer() & 16) != 0;
                   return engine::saveWorld(ctx.engine, a.at(0).text(), opt).ok ? 0 : -1;
               }));

    // The program's procedures.
    r.add(proc("p_subOpenNewFile", {ParamKind::Text}, [](core::AppContext& ctx, Args& a) {
        p_subOpenNewFile(ctx, a.at(0).text());
        return Value();
    }));
    r.add(proc("p_subSTATEFileAdd", {ParamKind::Bool, ParamKind::Bool},
               [](core::AppContext& ctx, Args& a) {
                   p_subSTATEFileAdd(ctx, a.at(0).boolean(), a.at(1).boolean());
                   return Value();
               }));
    r.add(proc("P_subSaveWorld", {ParamKind::Text, ParamKind::Handle, ParamKind::Bool},
               [](core::AppContext& ctx, Args& a) {
                   P_subSaveWorld(ctx, a.at(0).text(), handleOf(a.at(1)), a.at(2).boolean());
                   return Value();
               }));
    r.add(proc("p_subAssFileOpen", {ParamKind::Text}, [](core::AppContext& ctx, Args& a) {
        p_subAssFileOpen(ctx, a.at(0).text());
        return Value();
    }));
    r.add(proc("p_subBackup", {ParamKind::Text}, [](core::AppContext& ctx, Args& a) {
        p_subBackup(ctx, a.at(0).text());
        return Value();
    }));
    r.add(proc("p_subRestore", {ParamKind::Text}, [](core::AppContext& ctx, Args& a) {
        p_subRestore(ctx, a.at(0).text());
        return Value();
    }));
    r.add(proc("P_subDeleteEngineLogs", {}, [](core::AppContext& ctx, Args&) {
        P_subDeleteEngineLogs(ctx, ctx.state.strFolder);
        return Value();
    }));
    r.add(proc("P_subSceneCentre", {}, [](core::AppContext& ctx, Args&) {
        P_subSceneCentre(ctx);
        return Value();
    }));
}

}  // namespace

void registerWorldFiles(core::AppContext& ctx) {
    registerCommands(ctx);
    registerProcedures(ctx.procedures);
    if (!ctx.forms.find(forms::Frm26FileAdd::kName))
        ctx.forms.add(std::make_unique<forms::Frm26FileAdd>());
    ctx.worldFiles.open = [](core::AppContext& c, const std::string& path) {
        return p_subAssFileOpen(c, path);
    };
    ctx.worldFiles.save = [](core::AppContext& c, const std::string& path) {
        return P_subSaveWorld(c, kStateFileType, 0, false, path);
    };
}

}  // namespace persistence
