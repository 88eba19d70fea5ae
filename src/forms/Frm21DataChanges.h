#pragma once
// The coordinate convention of a seismic list, asked before its file: a sign for
// each axis and whether the file's first two values are swapped. The seismic
// imports and the PPV evaluation read it after the form is hidden again.

#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace forms {

class Frm21DataChanges : public Form {
public:
    static constexpr const char* kName = "frm21_DataChanges";

    // ctx may be null: the form then only keeps its controls.
    explicit Frm21DataChanges(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return "cmdOK"; }
    // Closing by the frame: bolColourMapCancelled -1, so that the caller stops.
    void onQueryClose() override;

    // The sign of axis 0 (x), 1 (y) or 2 (z): -1 when its box holds a negative
    // number or starts with "-", else 1.
    short intCoordSign(int axis) const;
    bool bolSwitchXandY() const { return checkValue("chkSwitchXandY") == 1; }

private:
    core::AppContext* ctx_;
};

// The window's frm21_DataChanges, made and registered on first use.
Frm21DataChanges& dataChangesForm(core::AppContext& ctx);

}  // namespace forms
