#include "app/Registration.h"

#include "analysis/AnalysisRegistration.h"
#include "builders/BuilderProcedures.h"
#include "builders/GeometryProcedures.h"
#include "builders/ObjectInfo.h"
#include "builders/PlanesAndMarkers.h"
#include "core/AppContext.h"
#include "core/EngineProcedures.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "core/Navigation.h"
#include "core/TextProcedures.h"
#include "import/ImportRegistration.h"
#include "persistence/Exports.h"
#include "persistence/SettingsFile.h"
#include "persistence/WorldFiles.h"
#include "tools/ToolButtons.h"
#include "tools/SelectionActions.h"

namespace app {

void registerAll(core::AppContext& ctx) {
    core::registerMainFormCommands(ctx);
    core::registerEngineProcedures(ctx.procedures);
    // after the engine's own: it makes engine_load_world read files
    persistence::registerWorldFiles(ctx);
    core::registerTextProcedures(ctx.procedures);
    core::installLighting(ctx);
    core::installNavigation(ctx);
    builders::registerGeometryProcedures(ctx.procedures);
    builders::registerBuilderProcedures(ctx.procedures);
    builders::registerObjectInfo(ctx);
    builders::registerPlanesAndMarkers(ctx);
    persistence::registerSettings(ctx);
    persistence::registerExports(ctx);
    analysis::registerAnalysis(ctx);
    importers::registerImport(ctx);
    tools::registerSelection(ctx);
    tools::registerTools(ctx);
}

bool startMainForm(core::AppContext& ctx) { return core::Form_Load(ctx); }

}  // namespace app
