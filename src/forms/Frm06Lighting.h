#pragma once
// The lighting dialog: one option per light mode and OK, which relights the scene.
// A new window starts with the flat shading (optFlatShading1): every face gets a
// grey of its own at once, with no light object to aim, which is what a wireframe
// of a mine needs to read.

#include <string>

#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace forms {

class Frm06Lighting : public Form {
public:
    static constexpr const char* kName = "frm06_Lighting";
    // The options, in the order of the dialog.
    static constexpr const char* kOptions[] = {
        "optNoLights",           "optFlatShading1",         "optFlatShading2",
        "optLightOnceTopBottom", "optLightOnce1SideCamera", "optSemiDynamic",
        "optDynamicLight",
    };

    // ctx may be null: the dialog then only keeps the choice.
    explicit Frm06Lighting(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    // Name of the option that is on ("" when none is).
    std::string selectedOption() const;

private:
    core::AppContext* ctx_;
};

}  // namespace forms
