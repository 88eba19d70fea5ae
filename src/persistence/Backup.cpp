#include "persistence/Backup.h"

#include <filesystem>
#include <system_error>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "engine/WorldFormat.h"
#include "persistence/OpenFile.h"
#include "persistence/WorldFiles.h"

namespace persistence {

namespace fs = std::filesystem;

namespace {

// A restored scene holds the model groups it had: find them again by name.
void rememberModelGroups(core::AppContext& ctx) {
    auto& s = ctx.state;
    auto& e = ctx.engine;
    s.lngModelGroups.clear();
    for (engine::Handle g = e.group_get_first_group(); g; g = e.group_get_next(g)) {
        if (e.group_get_father_group(g) != 0) continue;
        const std::string name = e.entity_get_name(g);
        if (name == kFirstModel || name == kNextModel) s.lngModelGroups.push_back(g);
    }
    s.intModelCount = int(s.lngModelGroups.size()) - 1;
}

}  // namespace

std::string backupPath(const core::AppContext& ctx, const std::string& name) {
    return (fs::path(programFolder(ctx)) / name).string();
}

bool p_subBackup(core::AppContext& ctx, const std::string& name) {
    const engine::WorldResult r = engine::saveWorld(ctx.engine, backupPath(ctx, name));
    if (!r.ok) {
        ctx.ui.msgBox(r.message, ui::Buttons::OK, "Error message");
        ctx.logLine(r.message);
        return false;
    }
    ctx.comment("Backup file saved");
    return true;
}

bool p_subRestore(core::AppContext& ctx, const std::string& name) {
    core::p_subResetAndCleanup(ctx);
    resetMainForm(ctx, 3);
    const std::string path = backupPath(ctx, name);
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) {
        ctx.ui.msgBox("A backup-file cannot be found", ui::Buttons::OK, "File does not exist");
        return false;
    }
    const engine::WorldResult r =
        engine::loadWorld(ctx.engine, path, (fs::path(programFolder(ctx)) / "Bitmaps").string());
    if (!r.ok) {
        ctx.ui.msgBox("Error loading world", ui::Buttons::OK, "Error");
        ctx.comment(r.message);
        ctx.logLine(r.message);
        return false;
    }
    for (const std::string& n : r.notes) ctx.logLine(n);
    resetMainForm(ctx, 4);
    rememberModelGroups(ctx);
    ctx.comment("Backup file opened");
    core::p_subMainLoop(ctx, true);
    return true;
}

void cmdUndo(core::AppContext& ctx) {
    if (ctx.ui.msgBox("Load a backup file?", ui::Buttons::YesNo, "Confirmation") == ui::Answer::Yes)
        p_subRestore(ctx, kUndoBackupFile);
}

}  // namespace persistence
