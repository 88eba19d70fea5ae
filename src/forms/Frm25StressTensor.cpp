#include "forms/Frm25StressTensor.h"

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "forms/FormNumbers.h"

namespace forms {

namespace {

constexpr const char* kMarkerForm = "frm10_SelectMarker";

}  // namespace

Frm25StressTensor::Frm25StressTensor(core::AppContext* ctx)
    : Form(kName, "Virgin stress tensor"), ctx_(ctx) {
    struct Box {
        const char* name;
        const char* caption;
        const char* frame;
        const char* value;
    };
    // The computed boxes are filled by the first calculation.
    const Box boxes[] = {
        {"cboSig1Magnitude", "Magnitude (MPa)", "fraSigma1", "60"},
        {"cboSig1Trend", "Trend (degrees)", "fraSigma1", "20"},
        {"cboSig1Plunge", "Plunge (degrees)", "fraSigma1", "30"},
        {"cboSig2Magnitude", "Magnitude (MPa)", "fraSigma2", "40"},
        {"cboSig2Trend", "Trend (degrees)", "fraSigma2", "110"},
        {"cboSig2Plunge", "Plunge (degrees, computed)", "fraSigma2", ""},
        {"cboSig3Magnitude", "Magnitude (MPa)", "fraSigma3", "20"},
        {"cboSig3Trend", "Trend (degrees, computed)", "fraSigma3", ""},
        {"cboSig3Plunge", "Plunge (degrees, computed)", "fraSigma3", ""},
        {"cboSig1Length", "Length of sigma 1 (m)", "fraMarkerSize", "10"},
        {"cboSig1Diameter", "Diameter (m)", "fraMarkerSize", "1"},
    };
    add(ControlKind::Frame, "fraSigma1", "Major principal stress (sigma 1)");
    add(ControlKind::Frame, "fraSigma2", "Intermediate principal stress (sigma 2)");
    add(ControlKind::Frame, "fraSigma3", "Minor principal stress (sigma 3)");
    add(ControlKind::Frame, "fraMarkerSize", "Marker size");
    for (const Box& b : boxes)
        add(ControlKind::ComboBox, b.name, b.caption, b.frame).text = b.value;
    // The calculation is attached by the geometry layer.
    add(ControlKind::CommandButton, "cmdCalculateTensor1", "Calculate");
    add(ControlKind::CommandButton, "cmdAcceptStressTensor", "Accept").onChange = [this] {
        cmdAcceptStressTensor();
    };
}

bool Frm25StressTensor::cmdAcceptStressTensor() {
    if (valText(text("cboSig1Magnitude")) == 0) {
        if (ctx_) ctx_->ui.msgBox(kZeroText, ui::Buttons::OK, kZeroTitle);
        return false;
    }
    hide();
    if (!ctx_) return true;
    core::p_subMainLoop(*ctx_);
    if (Form* marker = ctx_->forms.find(kMarkerForm)) {
        marker->ensureLoaded();
        marker->setText("cboCylLength", text("cboSig1Length"));
        marker->setText("cboCylDiameter", text("cboSig1Diameter"));
        core::p_subMainLoop(*ctx_);
        ctx_->ui.showModal(*marker);
    }
    return true;
}

void Frm25StressTensor::onQueryClose() {
    hide();
    if (!ctx_) return;
    ctx_->state.bolDialogCancelled = true;
    core::p_subResetAndCleanup(*ctx_);
}

}  // namespace forms
