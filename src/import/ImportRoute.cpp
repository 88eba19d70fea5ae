#include "import/ImportRoute.h"

#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/MainForm.h"
#include "persistence/OpenFile.h"
#include "persistence/WorldFiles.h"

namespace importers {

void p_subFileOpen(core::AppContext& ctx, const std::string& strFileTypeLoad) {
    core::p_subResetAndCleanup(ctx);
    if (!persistence::p_subOpenNewFile(ctx, strFileTypeLoad)) {
        core::p_subMainLoop(ctx, false);
        return;
    }
    persistence::resetMainForm(ctx, 3);
    if (ctx.engine.engine_load_world("", "", "", 4) != 0)
        ctx.ui.msgBox("Error loading world", ui::Buttons::OK, "Error");
    ctx.status(1, core::kStatusHelpText);
    core::p_subInitializeCamera(ctx, false);
}

void p_subFileAdd(core::AppContext& ctx, const std::string& strFileTypeLoad) {
    core::p_subResetAndCleanup(ctx);
    if (!persistence::p_subOpenNewFile(ctx, strFileTypeLoad)) {
        core::p_subMainLoop(ctx, false);
        return;
    }
    persistence::resetMainForm(ctx, 1);
}

}  // namespace importers
