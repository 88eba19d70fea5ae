#include "app/Registration.h"

#include "core/AppContext.h"
#include "core/MainForm.h"

namespace app {

void registerAll(core::AppContext& ctx) {
    core::registerMainFormCommands(ctx);
}

bool startMainForm(core::AppContext& ctx) { return core::Form_Load(ctx); }

}  // namespace app
