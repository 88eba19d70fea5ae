#include "forms/Frm06Lighting.h"

#include "core/AppContext.h"
#include "core/Lighting.h"

namespace forms {

Frm06Lighting::Frm06Lighting(core::AppContext* ctx) : Form(kName, "Lighting"), ctx_(ctx) {
    add(ControlKind::OptionButton, "optNoLights", "No lights");
    add(ControlKind::OptionButton, "optFlatShading1", "Flat shading").value = 1;
    add(ControlKind::OptionButton, "optFlatShading2", "High contrast flat shading");
    add(ControlKind::OptionButton, "optLightOnceTopBottom", "Light once from top and bottom");
    add(ControlKind::OptionButton, "optLightOnce1SideCamera", "Light once from the camera side");
    add(ControlKind::OptionButton, "optSemiDynamic", "Semi-dynamic light");
    add(ControlKind::OptionButton, "optDynamicLight", "Dynamic light, following the camera");
    add(ControlKind::CommandButton, "cmdOK", "OK").onChange = [this] {
        hide();
        if (ctx_ == nullptr) return;
        core::P_subApplyLight(*ctx_, 0);
        ctx_->ui.requestFrame();
    };
}

std::string Frm06Lighting::selectedOption() const {
    for (const char* name : kOptions)
        if (optionValue(name)) return name;
    return {};
}

}  // namespace forms
