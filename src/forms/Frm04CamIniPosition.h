#pragma once
#include "forms/Form.h"

namespace forms {

// Where north stands on the screen when the camera starts.
class Frm04CamIniPosition : public Form {
public:
    Frm04CamIniPosition();
    std::string acceptButton() const override { return "cmdOK"; }
    void onQueryClose() override;
    bool cancelled = false;
};

}  // namespace forms
