// The Map3D entries of the import menus.

#include "core/AppContext.h"
#include "forms/Frm12Excavation.h"
#include "import/ImportCommands.h"
#include "import/Map3DReaders.h"

namespace importers {

namespace {

Reader asc(bool bolVerticeData, bool bolTwoSided) {
    return [bolVerticeData, bolTwoSided](core::AppContext& ctx, const std::string& mode) {
        importMap3DAsc(ctx, mode, bolVerticeData, bolTwoSided);
    };
}

}  // namespace

void registerMap3DReaders(core::AppContext& ctx) {
    forms::Frm12Excavation::of(ctx);
    const Reader strings = importMap3DConstructionStrings;
    const Reader wireframes = importMap3DConstructionWireframes;
    const ImportCommand entries[] = {
        {"mnuStringFileOpenPNTLocal", "Open Construction Lines as STRINGS", kMap3DMenu,
         "Map3DStringFileLocal", Route::Open, "Open", strings},
        {"mnuStringFileAddPNTLocal", "Add Construction Lines as STRINGS", kMap3DMenu,
         "Map3DStringFileLocal", Route::Add, "Add", strings},
        {"mnuFileOpenPNTEditor", "Open Construction Lines as WIREFRAMES", kMap3DMenu, "PNT-File",
         Route::Open, "Open", wireframes},
        {"mnuFileAddPNTEditor", "Add Construction Lines as WIREFRAMES", kMap3DMenu, "PNT-File",
         Route::Add, "Add", wireframes},
        {"mnuOpenMap3DWireASC", "Open PNT-file as WIREFRAMES", kMap3DMenu, "ASC-File", Route::Open,
         "Open", asc(false, true)},
        {"mnuAddMap3DWireASC", "Add PNT-file as WIREFRAMES", kMap3DMenu, "ASC-File", Route::Add,
         "Add", asc(false, true)},
        {"mnuOpenMap3DPNTSingle", "Open PNT-file as One-sided Polygons", kMap3DMenu, "ASC-File",
         Route::Open, "Open", asc(false, false)},
        {"mnuOpenVerticeDataWireframePNT", "Open PNT-file as One-sided with Vertice-data",
         kMap3DMenu, "ASC-File", Route::Open, "Open", asc(true, false)},
    };
    for (const ImportCommand& e : entries) addImportCommand(ctx, e);
}

}  // namespace importers
