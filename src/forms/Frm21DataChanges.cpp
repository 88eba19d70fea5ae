#include "forms/Frm21DataChanges.h"

#include <memory>

#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/MainForm.h"

namespace forms {

namespace {

constexpr const char* kSignBoxes[] = {"cboX", "cboY", "cboZ"};
constexpr const char* kSignLabels[] = {"lblX", "lblY", "lblZ"};
constexpr const char* kAxisCaptions[] = {"X-coordinate sign", "Y-coordinate sign",
                                         "Z-coordinate sign"};

}  // namespace

Frm21DataChanges::Frm21DataChanges(core::AppContext* ctx)
    : Form(kName, "Coordinate Changes"), ctx_(ctx) {
    add(ControlKind::Frame, "fraSigns", "Multiply the coordinates of the file by");
    for (int k = 0; k < 3; ++k) {
        add(ControlKind::Label, kSignLabels[k], kAxisCaptions[k], "fraSigns");
        Control& box = add(ControlKind::ComboBox, kSignBoxes[k], kAxisCaptions[k], "fraSigns");
        box.items = {"1", "-1"};
        box.text = box.items.front();
    }
    add(ControlKind::CheckBox, "chkSwitchXandY", "Switch X and Y");
    add(ControlKind::CommandButton, "cmdOK", "OK").onChange = [this] {
        hide();
        if (ctx_) core::p_subMainLoop(*ctx_);
    };
}

short Frm21DataChanges::intCoordSign(int axis) const {
    if (axis < 0 || axis > 2) return 1;
    const std::string& t = text(kSignBoxes[axis]);
    const std::size_t first = t.find_first_not_of(" \t");
    if (first != std::string::npos && t[first] == '-') return -1;
    return core::valNumber(t) < 0 ? -1 : 1;
}

void Frm21DataChanges::onQueryClose() {
    hide();
    if (ctx_) ctx_->state.bolColourMapCancelled = -1;
}

Frm21DataChanges& dataChangesForm(core::AppContext& ctx) {
    if (Form* f = ctx.forms.find(Frm21DataChanges::kName)) {
        if (auto* own = dynamic_cast<Frm21DataChanges*>(f)) {
            own->attach(&ctx);
            return *own;
        }
    }
    auto form = std::make_unique<Frm21DataChanges>(&ctx);
    Frm21DataChanges& ref = *form;
    ctx.forms.add(std::move(form));
    return ref;
}

}  // namespace forms
