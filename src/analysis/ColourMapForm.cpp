#include "analysis/ColourMapForm.h"

#include <memory>

#include "analysis/ColourScale.h"
#include "core/AppContext.h"

namespace analysis {

using forms::ControlKind;

ColourMapForm::ColourMapForm(core::AppContext* ctx) : Form(kName, "Colourmap"), ctx_(ctx) {
    add(ControlKind::Frame, kScaleFrame, "Select Colourmap");
    add(ControlKind::OptionButton, "optCM1", "CM 1 - Contue bright red and blue outside limits",
        kScaleFrame);
    add(ControlKind::OptionButton, "optCM2", "CM 2 - Dark red and blue outside limits",
        kScaleFrame);
    add(ControlKind::OptionButton, "optCM3", "CM 3 - Grey (light and dark) outside limits",
        kScaleFrame);
    add(ControlKind::OptionButton, "optCM4", "CM 4 - Grey and bright colours outside limits",
        kScaleFrame);
    add(ControlKind::CommandButton, "cmdAccept", "Accept").onChange = [this] { hide(); };
}

void ColourMapForm::onLoad() {
    setOption("optCM1");
    if (ctx_ == nullptr) return;
    ctx_->state.bolColourMapCancelled = 0;
    ctx_->state.bolInverseColourMap = kInverseMap;
}

void ColourMapForm::onQueryClose() {
    if (ctx_ != nullptr) ctx_->state.bolColourMapCancelled = -1;
    hide();
}

int ColourMapForm::selectedScale() const {
    for (int k = 0; k < 4; ++k)
        if (optionValue(kScaleOptions[k])) return k + 1;
    return 0;
}

forms::Form& colourMapForm(core::AppContext& ctx) {
    if (forms::Form* f = ctx.forms.find(ColourMapForm::kName)) {
        if (auto* own = dynamic_cast<ColourMapForm*>(f)) own->attach(&ctx);
        return *f;
    }
    auto form = std::make_unique<ColourMapForm>(&ctx);
    forms::Form& ref = *form;
    ctx.forms.add(std::move(form));
    return ref;
}

}  // namespace analysis
