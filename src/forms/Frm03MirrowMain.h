#pragma once
#include "forms/Form.h"

namespace forms {

// The controls of the main window that are not menu entries or command buttons.
class Frm03MirrowMain : public Form {
public:
    Frm03MirrowMain();
    std::string acceptButton() const override { return ""; }
};

}  // namespace forms
