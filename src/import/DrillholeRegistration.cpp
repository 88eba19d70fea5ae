// The drillhole entries of the import menus: each adds to the scene.

#include "core/AppContext.h"
#include "import/DrillholeReaders.h"
#include "import/ImportCommands.h"

namespace importers {

namespace {

inline constexpr const char* kDrillholeMenu = "File/Import Other/Drillholes";

Reader adding(void (*read)(core::AppContext&)) {
    return [read](core::AppContext& ctx, const std::string&) { read(ctx); };
}

Reader joints(bool bolDipAndDipDirection) {
    return [bolDipAndDipDirection](core::AppContext& ctx, const std::string&) {
        importOrientedJoints(ctx, bolDipAndDipDirection);
    };
}

}  // namespace

void registerDrillholeReaders(core::AppContext& ctx) {
    const ImportCommand entries[] = {
        {"mnuReadDHCollarFile", "Read Collar File", kDrillholeMenu, "DHCollarFile", Route::Add,
         "Add", adding(importDrillholeCollars)},
        {"mnuReadDHSurveyFile", "Read Survey File", kDrillholeMenu, "DHSurveyFile", Route::Add,
         "Add", adding(importDrillholeSurveys)},
        {"mnuReadDHAtrributeFile", "Read Attribute File", kDrillholeMenu, "DHAttributeFile",
         Route::Add, "Add", adding(importDrillholeAttributes)},
        {"mnuReadDHOrientJointsFile", "Read Oriented Joints (Alpha and Beta)", kDrillholeMenu,
         "DHOrientJointsFile", Route::Add, "Add", joints(false)},
        {"mnuReadDHOrientJointsFileDipDD", "Read Oriented Joints (Dip and Dip Direction)",
         kDrillholeMenu, "DHOrientJointsFile", Route::Add, "Add", joints(true)},
    };
    for (const ImportCommand& e : entries) addImportCommand(ctx, e);
}

}  // namespace importers
