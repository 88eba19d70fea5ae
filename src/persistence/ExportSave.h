#pragma once
// The end of every export: the save dialog of a file type, then the text or the
// temporary file written under the chosen name. A file that cannot be written
// leaves the one that stood under that name untouched.

#include <string>

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kExportTempName = "Tarvik_temp.txt";
inline constexpr const char* kCopyFailedText = "The file could not be saved";
inline constexpr const char* kCopyFailedTitle = "Error copying file";
inline constexpr const char* kNullNameText = "No file saved as the filename was a Null-value";
inline constexpr const char* kNullNameTitle = "Null-value for filename";

// The exports' temporary file: in the program folder, or in the system's
// temporary folder where the program folder cannot be written.
std::string exportTempFile(const core::AppContext& ctx);

// Shows the save dialog for the type and writes the text under the chosen name.
// True when the file was written.
bool P_subSaveText(core::AppContext& ctx, const std::string& strFileTypeSave,
                   const std::string& strStringToSave);
// Shows the save dialog for the type and copies the file `strSource` to the
// chosen name. True when the copy was made.
bool p_subFileCopy(core::AppContext& ctx, const std::string& strFileTypeSave,
                   const std::string& strSource);

// Writes `text` to `target` through a file beside it that is then renamed over
// it. False (and `target` as it was) when any step fails.
bool replaceFileWith(const std::string& target, const std::string& text);
bool replaceFileByCopy(const std::string& target, const std::string& source);

}  // namespace persistence
