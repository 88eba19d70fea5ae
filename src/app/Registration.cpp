#include "app/Registration.h"

#include "builders/GeometryProcedures.h"
#include "core/AppContext.h"
#include "core/EngineProcedures.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "core/Navigation.h"
#include "core/TextProcedures.h"

namespace app {

void registerAll(core::AppContext& ctx) {
    core::registerMainFormCommands(ctx);
    core::registerEngineProcedures(ctx.procedures);
    core::registerTextProcedures(ctx.procedures);
    core::installLighting(ctx);
    core::installNavigation(ctx);
    builders::registerGeometryProcedures(ctx.procedures);
}

bool startMainForm(core::AppContext& ctx) { return core::Form_Load(ctx); }

}  // namespace app
