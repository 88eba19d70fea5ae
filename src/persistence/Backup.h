#pragma once
// Backups of the whole scene in the program folder, and their restore.
// "TarvikBackup1.STATE" is the one the user makes (mnuBackup) and restores
// (mnuRestore); operations that may spoil the scene first save
// "TarvikBackup.STATE", which the main form's undo (cmdUndo) loads again.

#include <string>

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kBackupFile = "TarvikBackup1.STATE";
inline constexpr const char* kUndoBackupFile = "TarvikBackup.STATE";

// The path of a backup file of that name.
std::string backupPath(const core::AppContext& ctx, const std::string& strBackupName);

// Saves the whole scene as the backup; false (after a box) when it cannot.
bool p_subBackup(core::AppContext& ctx, const std::string& strBackupName);
// Replaces the scene by the backup; false when there is none or it cannot be read.
bool p_subRestore(core::AppContext& ctx, const std::string& strBackupName);
// "Load a backup file?": Yes restores "TarvikBackup.STATE".
void cmdUndo(core::AppContext& ctx);

}  // namespace persistence
