#pragma once
// Search over the texts of all polygons, and the protection of texts. A search
// leaves only the matching polygons shown.

#include <optional>
#include <string>
#include <string_view>

namespace core {
class AppContext;
}

namespace builders {

inline constexpr const char* kSearchPrompt = "Fill in the text to search for";
inline constexpr const char* kSearchTitle = "Text search";
inline constexpr const char* kMatchQuestion =
    "Select 'Yes' for a general match and 'No' for a specific match";
inline constexpr const char* kMatchQuestionTitle = "Select between a general and specific match";
inline constexpr const char* kZeroMatchesText = "No matches could be found for the searched text";
inline constexpr const char* kZeroMatchesTitle = "Zero matches";
inline constexpr const char* kFoundCountText = "Number of polygons found with search text: ";
inline constexpr const char* kProtectTitle = "Warning message";
inline constexpr const char* kUnprotectQuestion =
    "This action will unprotect the information of all the visible polygons and enable changes "
    "to their information. Press 'Yes' if you want to continue and 'No' if you if you want to "
    "abort.";
inline constexpr const char* kProtectQuestion =
    "This action will protect the information of all the visible polygons. Press 'Yes' if you "
    "want to continue and 'No' if you if you want to abort.";

// Row and column of a position search, both from 1.
struct TextCell {
    int row = 1;
    int column = 1;
};

// The field a position search reads: line `row` of the CR LF lines, field
// `column` of its tab fields; "" when the name has no such line or field.
std::string textCell(std::string_view name, int row, int column);
// The cell holds the text anywhere, whatever the case.
bool generalMatch(std::string_view cell, std::string_view text);
// One whole tab field (a line counts as fields) is the text, whatever the case.
bool specificMatch(std::string_view cell, std::string_view text);

// Scope 1 all polygons, 2 the shown ones, 3 the hidden ones. With bolPosition
// the search reads one cell of each name: `cell` when given, else the row and
// column are asked first. Returns the number of matches.
int p_subFindText(core::AppContext& ctx, int intScope, bool bolGeneralMatch, bool bolPosition,
                  std::optional<TextCell> cell = std::nullopt);
// The "Row position" and "Column position" boxes; nothing when either is cancelled.
std::optional<TextCell> askTextCell(core::AppContext& ctx);

// A name after a protection action ("Unprotect", "Protect1", "Protect2"); the
// name itself when the action leaves it alone.
std::string protectedName(std::string_view name, std::string_view strAction);
// Asks, then changes the names of the shown polygons. Returns how many changed.
int p_subProtectText(core::AppContext& ctx, const std::string& strAction);

// The menu entries of search and protection and both procedures.
void registerTextSearch(core::AppContext& ctx);

}  // namespace builders
