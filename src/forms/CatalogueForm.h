#pragma once
// A catalogue of the mine's standard symbols: one option per standard, and two
// buttons. Accepting writes the chosen row into the target dialog and accepts that
// dialog; the other button writes the row and leaves the target open for changes
// by hand. A row writes only the controls it names: the target keeps the rest.

#include <string>
#include <vector>

#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace forms {

// One control of the target: an option button is switched on ("1"), a text or
// combo box takes the text as it stands ("2.50" stays "2.50").
struct CatalogueWrite {
    const char* control;
    const char* value;
};

struct CatalogueRow {
    const char* option;                  // the catalogue's own option button
    const char* caption;                 // the mine's wording of the standard
    std::vector<CatalogueWrite> writes;  // in the order a person would fill them in
};

class CatalogueForm : public Form {
public:
    CatalogueForm(const char* name, const char* caption, const char* target,
                  const char* acceptButtonName, const char* changesButtonName,
                  const std::vector<CatalogueRow>& rows, core::AppContext* ctx);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return accept_; }
    void onQueryClose() override { hide(); }

    const std::string& target() const { return target_; }
    const std::vector<CatalogueRow>& rows() const { return rows_; }
    // The row whose option is on, or nullptr.
    const CatalogueRow* selectedRow() const;
    // Writes a row into a form, running its handlers as a person's entries would.
    // Controls the form does not have are passed over.
    static void writeRow(const CatalogueRow& row, Form& form);

private:
    // Writes the chosen row into the target and, when `acceptTarget`, presses the
    // target's accept button. Nothing happens while no row is chosen.
    void apply(bool acceptTarget);

    std::string target_;
    std::string accept_;
    const std::vector<CatalogueRow>& rows_;
    core::AppContext* ctx_;
};

}  // namespace forms
