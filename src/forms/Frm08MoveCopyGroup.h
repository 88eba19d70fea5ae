#pragma once
// The move and copy dialog: the offset in metres (typed, or measured between two
// picks), and whether the picked objects are moved or copied.

#include <functional>
#include <string>

#include "engine/Types.h"
#include "forms/Form.h"

namespace forms {

class Frm08MoveCopyGroup : public Form {
public:
    static constexpr const char* kName = "frm08_MoveCopyGroup";
    static constexpr const char* kNoChoiceText =
        "Make a selection to either Move or Copy an object";
    static constexpr const char* kNoChoiceTitle = "Selection error";

    Frm08MoveCopyGroup();

    std::string acceptButton() const override { return "cmdOK"; }
    void onQueryClose() override;

    // The offset boxes read as numbers, in metres.
    engine::Point3 offsetMetres() const;
    bool moveChosen() const { return optionValue("optMove"); }
    bool copyChosen() const { return optionValue("optCopy"); }

    // Accept with neither move nor copy chosen: the box; the dialog stays.
    std::function<void(const char* text, const char* title)> onRefuse;
    // Accept with a choice: the tool arms for the picks (the dialog has hidden).
    std::function<void()> onAccepted;
    // The pick button: the dialog hides and the measure of the offset begins.
    std::function<void()> onPickOffset;
    bool cancelled = false;
};

}  // namespace forms
