#pragma once
// Written information on polygons: the name record the information form makes
// and reads, the name display in the status bar and the message box of a double
// click.

#include <optional>
#include <string>
#include <string_view>

#include "engine/Types.h"
#include "ui/Ui.h"

namespace core {
class AppContext;
}
namespace forms {
class Frm23ChangeInfo;
}

namespace builders {

inline constexpr const char* kNoInformationText =
    "No information is associated with the selected polygon";
inline constexpr const char* kInformationTitle = "Information associated with the selected polygon";
inline constexpr const char* kInfoOffText =
    "Name display disabled, double click to display a message-box with the name";
inline constexpr const char* kInfoOnText =
    "Name display enabled, name displayed in the Status Bar at the bottom of the form";

// The name for what the form shows: prefix and type code, date, time (hour not
// padded), text, joined by CR LF.
std::string P_fncInfoString(const forms::Frm23ChangeInfo& form);
// Fills the form from a name; a name that is no record opens as
// "...Other (not defined)" at `now` with the whole name as its text.
void P_subLoadInfoForm(forms::Frm23ChangeInfo& form, std::string_view strName,
                       const ui::DateTime& now);
// The same on the context's form.
std::string P_fncInfoString(core::AppContext& ctx);
void P_subLoadInfoForm(core::AppContext& ctx, std::string_view strName);
forms::Frm23ChangeInfo& changeInfoForm(core::AppContext& ctx);

// Loads the form from a name and shows it; the new name, or nothing when the form
// was closed by its frame (the polygon is then left as it was).
std::optional<std::string> editInfoText(core::AppContext& ctx, std::string_view strName);

// "( x, y, z )" in metres with dblCoordOffset taken off, then five blanks.
std::string pickCoordinateText(const core::AppContext& ctx, engine::Point3 p);
// chkShowInfo of the main form switched.
void chkShowInfo_Click(core::AppContext& ctx);
bool infoDisplayOn(core::AppContext& ctx);
// The mouse moved to a window pixel: with the display on, the status bar shows
// the name under it.
void showNameUnderMouse(core::AppContext& ctx, double x, double y);
// A double click with no tool waiting: the name of the polygon under the mouse in
// a message box.
void showInformationOfPolygonAt(core::AppContext& ctx, double x, double y);

// Adds frm23_ChangeInfo, the info display switch, the text search and protection
// commands and their procedures. Safe to call twice.
void registerObjectInfo(core::AppContext& ctx);

}  // namespace builders
