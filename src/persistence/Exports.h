#pragma once
// The export menu entries and the export procedures scripts call.

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kExportMenu = "File/Export";

// The export commands with their captions, and the procedures
// P_subExportDXF, P_subExportPNT, P_subExportTubes, P_subExportDatamineStrings,
// P_subExportSeisInfo, P_subExportCentres, P_subExportPolyData, P_subSaveText,
// p_subFileCopy and P_fncGroupAllVisible. Safe to call twice.
void registerExports(core::AppContext& ctx);

}  // namespace persistence
