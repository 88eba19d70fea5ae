#include "forms/Frm04CamIniPosition.h"

namespace forms {

Frm04CamIniPosition::Frm04CamIniPosition() : Form("frm04_CamIniPosition", "Initial camera position") {
    add(ControlKind::Frame, "fraNorth", "North on the screen");
    add(ControlKind::OptionButton, "optNorthTop", "North at the top", "fraNorth").value = 1;
    add(ControlKind::OptionButton, "optNorthRight", "North to the right", "fraNorth");
    add(ControlKind::OptionButton, "optNorthBottom", "North at the bottom", "fraNorth");
    add(ControlKind::OptionButton, "optNorthLeft", "North to the left", "fraNorth");
    add(ControlKind::CommandButton, "cmdOK", "OK").onChange = [this] {
        cancelled = false;
        hide();
    };
    add(ControlKind::CommandButton, "cmdCancel", "Cancel").onChange = [this] {
        cancelled = true;
        hide();
    };
}

void Frm04CamIniPosition::onQueryClose() {
    cancelled = true;
    hide();
}

}  // namespace forms
