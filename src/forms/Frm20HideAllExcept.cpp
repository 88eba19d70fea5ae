#include "forms/Frm20HideAllExcept.h"

namespace forms {

Frm20HideAllExcept::Frm20HideAllExcept() : Form(kName, "Hide all except") {
    add(ControlKind::Frame, "fraKeep", "Keep in view");
    add(ControlKind::OptionButton, "optHideEntity", "The clicked entity", "fraKeep");
    add(ControlKind::OptionButton, "optHideGroup", "The group of the clicked entity", "fraKeep");
    setOption("optHideEntity");
    add(ControlKind::CommandButton, "cmdHideRotationPoint", "New rotation point").onChange =
        [this] {
            accepted = false;
            hide();
            if (onNewRotation) onNewRotation();
        };
    add(ControlKind::CommandButton, "cmdHideExceptOK", "OK").onChange = [this] {
        accepted = true;
        hide();
        if (onAccepted) onAccepted();
    };
    add(ControlKind::CommandButton, "cmdHideExceptCancel", "Cancel").onChange = [this] {
        onQueryClose();
    };
}

}  // namespace forms
