#pragma once
// Open or add several world files at once: a folder, the worlds in it, the
// ones chosen in the order they will be read, and what the first one does.

#include <string>
#include <vector>

#include "forms/Form.h"

namespace forms {

class Frm26FileAdd : public Form {
public:
    static constexpr const char* kName = "frm26_FileAdd";

    Frm26FileAdd();
    std::string acceptButton() const override { return "cmdOK"; }
    void onQueryClose() override;

    // Lists the world files (".STATE", ".WLD", any case) of txtFolder by name.
    void refresh();
    // The chosen files with their folder, in order.
    std::vector<std::string> chosenPaths() const;

    bool cancelled = false;

private:
    void choose(const std::string& file);
};

}  // namespace forms
