#pragma once
// The menu entries of the imports. Each names a file type (the filter of its
// dialog), a route ("Open" empties the scene, "Add" keeps it) and a reader. A new
// reader is one file with its reader functions and a register function that calls
// addImportCommand for each of its entries, plus one line in registerImport.

#include <functional>
#include <string>

namespace core {
class AppContext;
}

namespace importers {

enum class Route { Open, Add };

// The menus the entries sit in.
inline constexpr const char* kImportMenu = "File/Import Other";
inline constexpr const char* kMap3DMenu = "File/Import Other/Map3D";
inline constexpr const char* kDatamineMenu = "File/Import Other/Datamine";
inline constexpr const char* kSurpacMenu = "File/Import Other/Surpac";
inline constexpr const char* kStopeCADMenu = "File/Import Other/StopeCAD";

using Reader = std::function<void(core::AppContext&, const std::string& strMode)>;

struct ImportCommand {
    std::string name;      // "mnuOpenMap3DWireASC"
    std::string caption;   // as the menu shows it
    std::string menuPath;  // one of the menus above, or a reader's own
    std::string fileType;  // "ASC-File": the dialog's filter
    Route route = Route::Open;
    // "Open", "Add", or "" for a reader that takes no mode.
    std::string mode;
    // Reads the chosen file. An entry without a reader stays disabled.
    Reader reader;
};

// Registers the entry as a command (an entry of the same name is replaced, so a
// reader plugs into a row of the table by registering it again).
void addImportCommand(core::AppContext& ctx, ImportCommand command);
// A click on the entry: the route with the dialog, then, unless no file was
// chosen, the reader. bolFileCancelled is cleared again either way.
void runImportCommand(core::AppContext& ctx, const ImportCommand& command);

// The rows of the import table whose readers this version does not have
// (Datamine, Surpac, StopeCAD, the pit shell): shown, with their captions,
// disabled.
void registerImportTable(core::AppContext& ctx);

}  // namespace importers
