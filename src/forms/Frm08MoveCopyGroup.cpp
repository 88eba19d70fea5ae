#include "forms/Frm08MoveCopyGroup.h"

#include "core/LenientNumber.h"

namespace forms {

Frm08MoveCopyGroup::Frm08MoveCopyGroup() : Form(kName, "Move or copy objects") {
    add(ControlKind::Frame, "fraOffset", "Offset (m)");
    for (const char* box : {"cboXoffset", "cboYoffset", "cboZoffset"}) {
        auto& c = add(ControlKind::ComboBox, box, std::string(box).substr(3, 1) + ":", "fraOffset");
        c.text = "0";
    }
    add(ControlKind::ComboBox, "cboLength", "Length:", "fraOffset").text = "0";
    add(ControlKind::CommandButton, "cmdPickOffset", "Pick...", "fraOffset").onChange = [this] {
        cancelled = false;
        hide();
        if (onPickOffset) onPickOffset();
    };
    add(ControlKind::Frame, "fraMoveCopy", "Action");
    add(ControlKind::OptionButton, "optMove", "Move", "fraMoveCopy");
    add(ControlKind::OptionButton, "optCopy", "Copy", "fraMoveCopy");
    add(ControlKind::CommandButton, "cmdOK", "Accept").onChange = [this] {
        if (!moveChosen() && !copyChosen()) {
            if (onRefuse) onRefuse(kNoChoiceText, kNoChoiceTitle);
            return;
        }
        cancelled = false;
        hide();
        if (onAccepted) onAccepted();
    };
    add(ControlKind::CommandButton, "cmdCancel", "Cancel").onChange = [this] { onQueryClose(); };
}

void Frm08MoveCopyGroup::onQueryClose() {
    cancelled = true;
    hide();
}

engine::Point3 Frm08MoveCopyGroup::offsetMetres() const {
    return {core::valNumber(text("cboXoffset")), core::valNumber(text("cboYoffset")),
            core::valNumber(text("cboZoffset"))};
}

}  // namespace forms
