#include "import/ImportCommands.h"

#include "core/AppContext.h"
#include "import/ImportRoute.h"

namespace importers {

void addImportCommand(core::AppContext& ctx, ImportCommand command) {
    core::Command c;
    c.name = command.name;
    c.caption = command.caption;
    c.menuPath = command.menuPath;
    c.enabled = static_cast<bool>(command.reader);
    c.handler = [command = std::move(command)](core::AppContext& a) {
        runImportCommand(a, command);
    };
    ctx.commands.add(std::move(c));
}

void runImportCommand(core::AppContext& ctx, const ImportCommand& command) {
    if (command.route == Route::Open)
        p_subFileOpen(ctx, command.fileType);
    else
        p_subFileAdd(ctx, command.fileType);
    if (ctx.state.bolFileCancelled != 0) {
        ctx.state.bolFileCancelled = 0;
        return;
    }
    if (command.reader) command.reader(ctx, command.mode);
}

void registerImportTable(core::AppContext& ctx) {
    struct Row {
        const char* name;
        const char* caption;
        const char* menu;
        const char* fileType;
        Route route;
        const char* mode;
    };
    static const Row rows[] = {
        {"mnuOpenDatamineStringText", "Open DAT-file as STRINGS", kDatamineMenu,
         "DatamineStringFileLocal", Route::Open, "Open"},
        {"mnuAddDatamineStringText", "Add DAT-file as STRINGS", kDatamineMenu,
         "DatamineStringFileLocal", Route::Add, "Add"},
        {"mnuOpenDatamineWireText", "Open DAT-file as WIREFRAMES", kDatamineMenu, "DAT-File",
         Route::Open, "Open"},
        {"mnuAddDatamineWireText", "Add DAT-file as WIREFRAMES", kDatamineMenu, "DAT-File",
         Route::Add, "Add"},
        {"mnuOpenSurpacStringText", "Open STR-file as STRING", kSurpacMenu, "SurpacStringFileLocal",
         Route::Open, "Open"},
        {"mnuAddSurpacStringText", "Add STR-file as STRING", kSurpacMenu, "SurpacStringFileLocal",
         Route::Add, "Add"},
        {"mnuImportStopeCADLynx2", "Import Lynx2 delimited file as STRINGS", kStopeCADMenu,
         "StopeCADLynx2Delimited", Route::Add, ""},
        {"mnuCorwinPitShell", "Pitshell from Corwin program", kImportMenu, "DAT-File", Route::Open,
         "Open"},
    };
    for (const Row& r : rows) {
        // A reader registered already keeps its row.
        if (const core::Command* c = ctx.commands.find(r.name); c && c->enabled) continue;
        addImportCommand(ctx, {r.name, r.caption, r.menu, r.fileType, r.route, r.mode, {}});
    }
}

}  // namespace importers
