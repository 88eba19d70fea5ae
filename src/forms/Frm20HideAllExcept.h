#pragma once
// The hide-all-except dialog: whether the click keeps its entity or the entity's
// group in view, and a new rotation point to look at what stays.

#include <functional>
#include <string>

#include "forms/Form.h"

namespace forms {

class Frm20HideAllExcept : public Form {
public:
    static constexpr const char* kName = "frm20_HideAllExcept";

    Frm20HideAllExcept();

    std::string acceptButton() const override { return "cmdHideExceptOK"; }
    void onQueryClose() override {
        accepted = false;
        hide();
    }

    bool keepsGroup() const { return optionValue("optHideGroup"); }

    std::function<void()> onAccepted;
    // cmdNewRotationPoint: the form is hidden and the point is to be picked.
    std::function<void()> onNewRotation;
    bool accepted = false;
};

}  // namespace forms
