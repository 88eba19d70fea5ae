#pragma once
// Everything the program knows about an object beyond its geometry is text in the
// engine name of its polygons, so that a saved world carries it. The first three
// characters decide how the rest reads: "PR_" protected text, "UP_" open text,
// "CM_" numbers for the colour map, anything else plain text.

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "engine/Types.h"
#include "ui/Ui.h"

namespace engine {
class Engine;
}

namespace core {

class AppContext;

inline constexpr std::string_view kProtectedPrefix = "PR_";
inline constexpr std::string_view kUnprotectedPrefix = "UP_";
inline constexpr std::string_view kColourMapPrefix = "CM_";
inline constexpr std::string_view kCrLf = "\r\n";
// What one read of a name returns at most (the engine keeps the whole name).
inline constexpr int kNameBufferLength = 258;

// The text types of the information form: five-letter code and caption.
struct TextType {
    std::string_view code;
    std::string_view caption;
};
const std::array<TextType, 9>& textTypes();
// "" when the caption or code is not in the table.
std::string_view typeCodeForCaption(std::string_view caption);
std::string_view typeCaptionForCode(std::string_view code);

// The colour-map record codes; a record's field 0 is one of them.
const std::array<std::string_view, 9>& colourMapCodes();
bool isColourMapRecord(std::string_view name);
// The code the name starts with, or "" when it starts with none of them.
std::string_view colourMapCodeOf(std::string_view name);

// "yyyy-mm-dd" and "HH:mm:ss".
std::string formatRecordDate(const ui::DateTime& t);
std::string formatRecordTime(const ui::DateTime& t);
// Lone CR and lone LF become CR LF, so every line break of a record is CR LF.
std::string withCrLfLines(std::string_view text);

// prefix + code, CR LF, date, CR LF, time, CR LF, text (its lines split by CR LF).
std::string buildInfoRecord(std::string_view prefix, std::string_view code, std::string_view date,
                            std::string_view time, std::string_view text);
std::string buildInfoRecord(bool bolProtected, std::string_view code, const ui::DateTime& when,
                            std::string_view text);

struct InfoRecord {
    std::string prefix;  // "PR_" or "UP_"
    std::string code;    // the five characters after the prefix
    std::string date;
    std::string time;
    std::string text;  // everything after the third line end, line ends kept
};
// Nothing for a name that is not a "PR_" or "UP_" record. Missing lines read as "".
std::optional<InfoRecord> parseInfoRecord(std::string_view name);

// The clock's own form of a time: "H:mm:ss AM" or "H:mm:ss PM" (12 for noon and
// midnight).
std::string clockTime12(const ui::DateTime& t);
// The visible-text marker's rewrite of a clock time to 24 hours: the minute is
// padded to two digits when under 10, " AM" or " PM" is cut and PM adds 12 to the
// hour. The hour is never padded and the seconds stay as written, so 12 PM reads
// 24 and 12 AM reads 12: markers written so must keep reading back the same.
std::string clockTimeTo24(std::string_view clockTime);
// "UP_VText", CR LF, date, CR LF, the rewritten clock time, CR LF, the label text.
std::string buildVTextName(const ui::DateTime& now, std::string_view label);

// The name of a polygon or group as one read gives it: at most 257 characters.
std::string strEntityName(const engine::Engine& eng, engine::Handle hPolygon);
// False for "" and for " ": such an object carries no information.
bool bolNameHasText(std::string_view name);
// Names every polygon that the group holds itself.
void p_subSetGroupPolygonNames(engine::Engine& eng, engine::Handle hGroup,
                               std::string_view strName);

// The father group of an entity, or the entity itself when it is a top: its father
// is 0 or itself, or the entity is its own grandfather.
engine::Handle topGroupOfEntity(const engine::Engine& eng, engine::Handle hEntity);
// The entity of a polygon; 0 after the box "Polygon does not belong to a entity"
// titled "Group error".
engine::Handle entityOfPolygon(AppContext& ctx, engine::Handle hPolygon);
// topGroupOfEntity of the polygon's entity; 0 (after the box) when it has none.
engine::Handle topGroupOfPolygon(AppContext& ctx, engine::Handle hPolygon);

}  // namespace core
