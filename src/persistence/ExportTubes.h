#pragma once
// The tube exports: the two end centres of every tube of the visible set, as
// Map3D or VentSim lines through the temporary file, or as Datamine strings
// built whole.

#include <string>

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kTxtFileType = "TXT-File";
inline constexpr const char* kDatamineStringsType = "Datamine Strings";

// "Map3D" (file type "PNT-File") or "VentSim" (file type "TXT-File"). True when a
// file was saved.
bool P_subExportTubes(core::AppContext& ctx, const std::string& strType);
// Two numbered points a tube, handed to the save dialog whole.
bool P_subExportDatamineStrings(core::AppContext& ctx);

}  // namespace persistence
