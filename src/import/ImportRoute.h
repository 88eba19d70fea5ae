#pragma once
// The two roads into an import: "Open" empties the scene first, "Add" keeps it.
// Both ask for the file with the filter of its type (persistence/OpenFile.h) and
// leave state.bolFileCancelled at -1 when no file was chosen; the caller tests
// and clears it.

#include <string>

namespace core {
class AppContext;
}

namespace importers {

// Reset and clean-up, the dialog; with a file: the main form's tool state,
// tables and views reset, an empty world, the status help text and a fresh
// camera. Cancelled: a frame, and the scene as the clean-up left it.
void p_subFileOpen(core::AppContext& ctx, const std::string& strFileTypeLoad);
// Reset and clean-up, the dialog; with a file: the tool state reset. The scene stays.
void p_subFileAdd(core::AppContext& ctx, const std::string& strFileTypeLoad);

}  // namespace importers
