#include "forms/CatalogueForm.h"

#include <string_view>

#include "core/AppContext.h"

namespace forms {

namespace {

constexpr const char* kFrame = "fraStandards";

bool isOption(std::string_view control) { return control.substr(0, 3) == "opt"; }

}  // namespace

CatalogueForm::CatalogueForm(const char* name, const char* caption, const char* target,
                             const char* acceptButtonName, const char* changesButtonName,
                             const std::vector<CatalogueRow>& rows, core::AppContext* ctx)
    : Form(name, caption), target_(target), accept_(acceptButtonName), rows_(rows), ctx_(ctx) {
    add(ControlKind::Frame, kFrame, "Standards");
    for (const auto& row : rows_) add(ControlKind::OptionButton, row.option, row.caption, kFrame);
    add(ControlKind::CommandButton, acceptButtonName, "Accept").onChange = [this] { apply(true); };
    add(ControlKind::CommandButton, changesButtonName, "Changes...").onChange = [this] {
        apply(false);
    };
    if (!rows_.empty()) setOption(rows_.front().option);
}

const CatalogueRow* CatalogueForm::selectedRow() const {
    for (const auto& row : rows_)
        if (optionValue(row.option)) return &row;
    return nullptr;
}

void CatalogueForm::writeRow(const CatalogueRow& row, Form& form) {
    form.ensureLoaded();
    for (const auto& w : row.writes) {
        if (!form.find(w.control)) continue;
        if (isOption(w.control))
            form.setOption(w.control);
        else
            form.setText(w.control, w.value);
    }
}

void CatalogueForm::apply(bool acceptTarget) {
    const CatalogueRow* row = selectedRow();
    if (row == nullptr) return;
    hide();
    Form* target = ctx_ ? ctx_->forms.find(target_) : nullptr;
    if (target == nullptr) return;
    writeRow(*row, *target);
    if (acceptTarget && target->find(target->acceptButton())) target->click(target->acceptButton());
}

}  // namespace forms
