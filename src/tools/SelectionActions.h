#pragma once
// The actions on what the user clicks: delete, hide, partial hide (translucent),
// partial unhide, change colour, change name, and the selective unhide. A tool
// button arms the action's flag and sets the scope through frm22_Selection; each
// click then acts on the scope of the clicked polygon (SelectionDispatch.h).

#include <string>
#include <vector>

#include "engine/Types.h"
#include "forms/Frm22Selection.h"

namespace core {
class AppContext;
}

namespace tools {

using SelectionAction = forms::Frm22Selection::Action;

// The command, the tool flag and the prompt of each action.
struct SelectionActionInfo {
    SelectionAction action;
    const char* command;
    const char* flag;
    const char* caption;
    const char* prompt;
};
const SelectionActionInfo& selectionActionInfo(SelectionAction a);
// The armed selection action, in the dispatcher's order; false when none is.
bool armedSelectionAction(const core::AppContext& ctx, SelectionAction& out);

inline constexpr const char* kNoPolygonText =
    "No polygon is selected, press 'OK' to continue or 'Cancel' to terminate";
inline constexpr const char* kNoPolygonTitle = "No polygon selected";
inline constexpr const char* kDeletedText = "The number of deleted polygons is ";

// A press on an action's tool button. Button 1 shows frm22_Selection (and for
// change colour the colour dialog); button 2 takes the last settings silently;
// button 4 does nothing. Shift 1 on partial unhide makes every polygon opaque at
// once; on unhide it arms the selective unhide instead of showing everything.
void selectionButtonDown(core::AppContext& ctx, SelectionAction a, int button, int shift);

// cmdUnhide: every hidden polygon enabled again; with shift the selective form.
void cmdUnhide(core::AppContext& ctx, int shift);
// Every polygon opaque, the translucent list and its counters cleared, a frame.
void allOpaque(core::AppContext& ctx);

// The action of one click on the resolved scope (the backup, if asked, is taken
// before). Returns how many polygons it changed; -1 when the scope took nothing
// (no father for "Group") or a dialog was cancelled.
long applySelectionAction(core::AppContext& ctx, SelectionAction a, engine::Handle hPolygon);

// The action on the polygons inside a rubber band (the scope "Rubberband"), with
// the comment and the end of the tool as for a click.
void P_subSelectBand(core::AppContext& ctx, const std::vector<engine::Handle>& polygons,
                     int intShift);

// Takes the groups out of F_h_lngAddedGroups, keeping the order of the rest.
void removeFromAddedGroups(core::AppContext& ctx, const std::vector<engine::Handle>& groups);

// The point as status panel 3 shows it: metres, one decimal, ", " between.
std::string statusPointText(engine::Point3 p);

// Adds the commands, frm22_Selection and the procedures. Safe to call twice.
void registerSelection(core::AppContext& ctx);

}  // namespace tools
