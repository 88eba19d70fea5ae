#include "forms/Frm30ImportPPV.h"

#include <memory>

#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/MainForm.h"

namespace forms {

namespace {

constexpr const char* kThresholds[] = {"0.03", "0.04", "0.05", "0.06", "0.07",
                                       "0.08", "0.09", "0.10", "0.15", "0.20",
                                       "0.25", "0.30", "0.40", "0.50"};
constexpr const char* kMaxima[] = {"0.12", "0.16", "0.20", "0.24", "0.28", "0.32", "0.36",
                                   "0.40", "0.60", "0.80", "1.00", "1.20", "1.60", "2.00"};

std::string fourTimes(const std::string& text) {
    return core::numberText(4 * core::valNumber(text));
}

}  // namespace

Frm30ImportPPV::Frm30ImportPPV(core::AppContext* ctx) : Form(kName, "Import PPV-values"), ctx_(ctx) {
    add(ControlKind::Frame, "fraConstants", "PPV Constants");
    add(ControlKind::Label, "txtK1", "K1", "fraConstants");
    add(ControlKind::ComboBox, "cboK1", "K1", "fraConstants").text = "0.7326";
    add(ControlKind::Label, "txtK2", "K2", "fraConstants");
    add(ControlKind::ComboBox, "cboK2", "K2", "fraConstants").text = "0.0821";

    add(ControlKind::Frame, "fraThreshold", "PPV Thresshold");
    Control& threshold = add(ControlKind::ComboBox, "cboPPVThreshold", "Threshold", "fraThreshold");
    threshold.text = "0.03";
    threshold.items.assign(std::begin(kThresholds), std::end(kThresholds));

    add(ControlKind::Frame, "fraExtremes", "Colourmap Extremes");
    add(ControlKind::Label, "txtPPVMin", "Min PPV-Value", "fraExtremes");
    Control& min = add(ControlKind::ComboBox, "cboPPVMin", "Min PPV-Value", "fraExtremes");
    min.text = "0.030";
    min.items.assign(std::begin(kThresholds), std::end(kThresholds));
    add(ControlKind::Label, "txtPPVMax", "Max PPV-Value", "fraExtremes");
    Control& max = add(ControlKind::ComboBox, "cboPPVMax", "Max PPV-Value", "fraExtremes");
    max.text = "0.12";
    max.items.assign(std::begin(kMaxima), std::end(kMaxima));

    add(ControlKind::CheckBox, "chkLoadEvents", "Load thresshold events");
    add(ControlKind::Label, "lblFormula", "log(PPV*D) = K1*ML + K2");
    add(ControlKind::Label, "lblPPV", "PPV - Peak Particle Velocity");
    add(ControlKind::Label, "lblD", "D - Distance");
    add(ControlKind::Label, "lblML", "ML - Local Magnitude");
    add(ControlKind::Label, "lblK1K2", "K1 and K2 - constants");
    add(ControlKind::CommandButton, "cmdAccept", "Accept").onChange = [this] { cmdAccept(); };

    min.onChange = [this] { setText("cboPPVMax", fourTimes(text("cboPPVMin"))); };
    threshold.onChange = [this] {
        setText("cboPPVMax", fourTimes(text("cboPPVThreshold")));
        setText("cboPPVMin", text("cboPPVThreshold"));
    };
}

float Frm30ImportPPV::k1() const { return static_cast<float>(core::valNumber(text("cboK1"))); }
float Frm30ImportPPV::k2() const { return static_cast<float>(core::valNumber(text("cboK2"))); }
double Frm30ImportPPV::threshold() const { return core::valNumber(text("cboPPVThreshold")); }
double Frm30ImportPPV::scaleMin() const { return core::valNumber(text("cboPPVMin")); }
double Frm30ImportPPV::scaleMax() const { return core::valNumber(text("cboPPVMax")); }

void Frm30ImportPPV::cmdAccept() {
    // Equal limits pass: the colour scale's own check stops them.
    if (scaleMax() < scaleMin()) {
        if (ctx_) ctx_->ui.msgBox(kMaxBelowMinText, ui::Buttons::OK, kMaxBelowMinTitle);
        return;
    }
    hide();
    if (ctx_) core::p_subMainLoop(*ctx_);
}

void Frm30ImportPPV::onQueryClose() {
    hide();
    if (!ctx_) return;
    ctx_->state.bolColourMapCancelled = -1;
    core::p_subResetAndCleanup(*ctx_);
}

Frm30ImportPPV& importPpvForm(core::AppContext& ctx) {
    if (Form* f = ctx.forms.find(Frm30ImportPPV::kName)) {
        if (auto* own = dynamic_cast<Frm30ImportPPV*>(f)) {
            own->attach(&ctx);
            return *own;
        }
    }
    auto form = std::make_unique<Frm30ImportPPV>(&ctx);
    Frm30ImportPPV& ref = *form;
    ctx.forms.add(std::move(form));
    return ref;
}

}  // namespace forms
