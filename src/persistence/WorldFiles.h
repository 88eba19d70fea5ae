#pragma once
// Opening, adding and saving world files from the menus, scripts and the
// command line. The engine reads and writes the files (engine/WorldFormat.h);
// here is what the program does around that: dialogs, the model groups
// "FirstModel" and "NextModel", the camera, the light, the log and the messages.

#include <string>
#include <vector>

#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kFirstModel = "FirstModel";
inline constexpr const char* kNextModel = "NextModel";
inline constexpr const char* kSaveVisibleGroup = "Save visible information group";
inline constexpr const char* kSaveAddedGroup = "Save added information group";

// The main form's reset before a new scene: 1 the tool state, 2 the tables
// (labels, added groups, translucent count), 3 the views (auto-rotation and
// timers stopped), 4 the model groups and the current file.
void resetMainForm(core::AppContext& ctx, int steps);

// mnuSTATEFileOpenInitialize: asks for a world (unless a path was handed over)
// and replaces the scene by it under "FirstModel". True when a world was opened.
bool p_subSTATEFileOpen(core::AppContext& ctx);
// Adds a world under a new "NextModel". With bolFirst the scene is emptied
// first (the first file of a multi-load). Without a path the dialog asks
// ("LinkSTATE-File" with bolLink). True when the world was added.
bool p_subSTATEFileAdd(core::AppContext& ctx, bool bolFirst, bool bolLink,
                       const std::string& path = {});
// mnuOpenEmptyFileEditor: an empty scene, the camera on it.
void mnuOpenEmptyFileEditor(core::AppContext& ctx);
// mnuSTATEFileOpenMulti: frm26_FileAdd chooses the files, then each is opened or added.
void mnuSTATEFileOpenMulti(core::AppContext& ctx);

// A world handed over by the command line or a double click: opens it without a
// dialog. False (after the box) when it could not be read.
bool p_subAssFileOpen(core::AppContext& ctx, const std::string& path);
// The program's arguments: the first that is not an option ("-x", "--x") is a
// world to open with p_subAssFileOpen. False when there is none or it failed.
bool openWorldFromCommandLine(core::AppContext& ctx, const std::vector<std::string>& args);

// Saves lngGroup (0 the whole scene) as a world. "STATE-File" asks for the name
// unless `path` is given; bolBitmaps copies the bitmaps into "Bitmaps" beside it.
// True when the file was written.
bool P_subSaveWorld(core::AppContext& ctx, const std::string& strFileTypeSave,
                    engine::Handle lngGroup, bool bolBitmaps, const std::string& path = {});
// mnuSaveCurName: saves under strFullPath without asking.
bool mnuSaveCurName(core::AppContext& ctx);
// mnuSaveVisibleInfoOnly: the enabled polygons only, grouped by runs of their groups.
bool mnuSaveVisibleInfoOnly(core::AppContext& ctx);
// mnuSaveAddedInfoOnly: the groups the tools added in this run.
bool mnuSaveAddedInfoOnly(core::AppContext& ctx);

// Registers the world-file commands, procedures, frm26_FileAdd, the backup and
// restore, cmdUndo and the script hooks ctx.worldFiles. Safe to call twice.
void registerWorldFiles(core::AppContext& ctx);

}  // namespace persistence
