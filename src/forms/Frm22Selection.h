#pragma once
// The selection dialog: what one click of a selection action takes (the scope),
// whether a backup is made first, and for partial hide how translucent. Each
// action offers only the scopes that make sense for it. The dialog also keeps
// what the selection actions remember between clicks in this window.

#include <string>
#include <vector>

#include "engine/Types.h"
#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace forms {

class Frm22Selection : public Form {
public:
    static constexpr const char* kName = "frm22_Selection";
    static constexpr int kScopeCount = 9;
    // Option buttons and the scope text each stands for, in the dialog's order.
    static constexpr const char* kScopeOptions[kScopeCount] = {
        "optEntity",         "optPolygon", "optGroup",     "optFile",
        "optColour",         "optVisible", "optInvisible", "optDataTypeSelection",
        "optRubberBandPoly",
    };
    static constexpr const char* kScopeTexts[kScopeCount] = {
        "Entity",  "Polygon",   "Group",    "File",       "Colour",
        "Visible", "Invisible", "DataType", "Rubberband",
    };

    enum class Action {
        Delete,
        Hide,
        PartialHide,
        PartialUnhide,
        ChangeColour,
        ChangeName,
        Unhide
    };

    // ctx may be null: the dialog then only keeps its values.
    explicit Frm22Selection(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }
    // The dialog of the window, made and registered on first use.
    static Frm22Selection& of(core::AppContext& ctx);

    std::string acceptButton() const override { return "cmdOK"; }
    // Closed by its frame: the caller sees bolDialogCancelled.
    void onQueryClose() override;

    // Sets the dialog up for an action: its caption, the scopes it offers and the
    // translucency frame (partial hide only). A selected scope the action does not
    // offer gives way to the first one it does.
    void P_subPrepare(Action action);
    Action action() const { return action_; }
    bool offers(const std::string& option) const;

    // Reads the dialog into the main form (cboSelection). bolDialog: the dialog was
    // shown and is now closed; without it the last settings are taken silently.
    void P_subSelectAccept(bool bolDialog);

    // The scope text of the selected option ("" when none is on).
    std::string selectedScope() const;
    bool backupAsked() const { return checkValue("chkBackup") == 1; }
    // The translucency level partial hide passes to the polygons (1 to 100).
    int transLevel() const;

    // Remembered between clicks and runs.
    engine::Rgb lastColour{255, 0, 0};                // the colour of change colour
    std::vector<engine::Handle> translucentPolygons;  // made translucent by partial hide
    long progressCalls = 0;                           // the progress step's counter
    double progressBar = 0;                           // and its bar, 0 to 100

private:
    core::AppContext* ctx_;
    Action action_ = Action::Delete;
};

// The main form's scope box, made on first use; its text is the scope in force.
Control& selectionScopeBox(core::AppContext& ctx);

}  // namespace forms
