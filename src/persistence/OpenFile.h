#pragma once
// The first steps every file takes on its way in: the open dialog of a file
// type with its filter, the shared path strings, the log of loaded files and
// the clean-up of stray engine log files. The world files use them, and so
// does every importer.

#include <string>

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kStateFileType = "STATE-File";
inline constexpr const char* kLinkStateFileType = "LinkSTATE-File";

// The dialog filter of a file type ("All file types (*.*)|*.*" for an unknown type).
std::string fileFilterFor(const std::string& strFileTypeLoad);

// Shows the open dialog of the type and sets strFullPath, strFileTitle and
// strFolder. A cancelled dialog, an empty name or a file that is not there set
// bolFileCancelled to -1 (callers test and clear it) and give false.
bool p_subOpenNewFile(core::AppContext& ctx, const std::string& strFileTypeLoad);

// strFullPath split as the dialogs of world files do: the title is the last
// part of the path, the folder what is before it (ending in a separator).
void splitFullPath(core::AppContext& ctx, const std::string& fullPath);

// Adds "path suffix" (suffix " opened", " added", " saved") to strLoadedFiles
// as a new line and returns that text.
std::string logLoadedFile(core::AppContext& ctx, const std::string& path,
                          const std::string& suffix);

// Deletes the engine's log files ("error.Log", "3dstate.log",
// "3d_card_capabilities.txt") from the current folder, the program folder and
// `folder`, each without complaint when absent.
void P_subDeleteEngineLogs(core::AppContext& ctx, const std::string& folder);

// The rotation centre on the scene's centre of mass; the background stays.
void P_subSceneCentre(core::AppContext& ctx);

// The folder where backups go: the program folder, else the current folder.
std::string programFolder(const core::AppContext& ctx);

}  // namespace persistence
