#include "persistence/ExportSeisInfo.h"

#include "core/AppContext.h"
#include "persistence/ExportSave.h"
#include "persistence/ExportText.h"
#include "persistence/ExportVisibleSet.h"

namespace persistence {

bool P_subExportSeisInfo(core::AppContext& ctx) {
    std::string text;
    for (engine::Handle g : visibleGroups(ctx.engine)) {
        text += ctx.engine.entity_get_name(ctx.engine.group_get_first_polygon(g));
        text += kCrLf;
    }
    return P_subSaveText(ctx, kSeismicDataType, text);
}

}  // namespace persistence
