#pragma once
// The settings file (".SET"): one value per line, CR LF, in a fixed order —
// the eleven settings, the main form's two sizes, then the texts of the settings
// dialog so that it shows what the numbers mean. A file with a value that does
// not read is refused whole and the settings in force stay.

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/Settings.h"

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kStartupSettingsFile = "Tarvik Settings.SET";
inline constexpr const char* kSettingsFileType = "Settings-File";
inline constexpr const char* kSettingsFilter = "Settings(*.SET)|*.SET|All file types (*.*)|*.*";
inline constexpr const char* kSettingsErrorTitle = "Settings-File error";

// Lines 1 to 13 and what follows them.
struct SettingsFileContent {
    core::Settings settings;
    int formWidth = 0, formHeight = 0;  // twips
    // Texts of the dialog's combo boxes in file order (fewer when the file ends early).
    std::vector<std::string> controlTexts;
    std::optional<int> statusBarToggle;  // the check box, when the file has its line
};

struct SettingsFileError {
    int line = 0;      // from 1
    std::string text;  // what the line holds ("" for a missing line)
    bool missing = false;
};

std::string settingsFileText(const SettingsFileContent& content);
// Lines end in CR LF, LF or CR. Lines 1 to 13 must hold numbers (whole numbers
// in the range of their type for the integer settings); the texts may be absent.
std::variant<SettingsFileContent, SettingsFileError> parseSettingsFile(std::string_view text);
// The message of the error box for a refused file.
std::string settingsErrorMessage(const std::string& path, const SettingsFileError& error);

// What the program holds now: the settings, the form's size, the dialog's texts.
SettingsFileContent currentSettingsContent(core::AppContext& ctx);
// Puts a read file in force: settings, the dialog's texts, spacing and sizes.
void applySettingsContent(core::AppContext& ctx, const SettingsFileContent& content);

// False (after the error box) when the file cannot be written or read; a refused
// file changes nothing.
bool saveSettingsFile(core::AppContext& ctx, const std::string& path);
bool loadSettingsFile(core::AppContext& ctx, const std::string& path);

// The dialog's buttons: a file dialog, then the file. Load adds the file to
// strLoadedFiles and shows it in txtComment.
void cmdSaveSettings(core::AppContext& ctx);
void cmdLoadSettings(core::AppContext& ctx);

// Reads "Tarvik Settings.SET" in ctx.strProgramFolder when it is there (call it at
// start-up, after the main form's load). A missing file, or no program folder,
// leaves the defaults; true when a file was read and put in force.
bool loadStartupSettings(core::AppContext& ctx);

// Adds frm33_Settings and the menu entry that shows it. Safe to call twice.
void registerSettings(core::AppContext& ctx);

}  // namespace persistence
