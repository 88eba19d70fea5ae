#include "analysis/Frm28ImportFOSData.h"

#include <cstdio>
#include <memory>

#include "builders/MarkerSpheres.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/MainForm.h"
#include "forms/Frm33Settings.h"

namespace analysis {

using forms::ControlKind;

namespace {

struct Representation {
    const char* option;
    const char* caption;
    const char* entry;  // the settings' marker entry
};
constexpr Representation kRepresentations[] = {
    {"optHRSphere", "High resolution sphere", "High Resolution"},
    {"optMRSphere", "Medium resolution sphere", "Medium Resolution"},
    {"optLRSphere", "Low resolution sphere", "Low Resolution"},
    {"optQuickMarker", "Quick marker", "Quick Marker"},
    {"optCube", "Cube marker", "Cube Marker"},
};

// Shown again by cmdAccept and by closing, hidden for a re-colouring.
constexpr const char* kImportControls[] = {
    "fraMinStep",  "cboMinStep",     "fraRepresentation", "optHRSphere",     "optMRSphere",
    "optLRSphere", "optQuickMarker", "optCube",           "fraSphereRadius", "cboSphereRadius",
};

float single(const std::string& text) { return static_cast<float>(core::valNumber(text)); }

}  // namespace

std::string singleText(double value) {
    const float f = static_cast<float>(value);
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.7g", static_cast<double>(f));
    return core::numberText(core::valNumber(buf));
}

Frm28ImportFOSData::Frm28ImportFOSData(core::AppContext* ctx)
    : Form(kName, "Import Data (FOS / S1-S3 / RCF)"), ctx_(ctx) {
    auto combo = [this](const char* name, const char* frame, const char* text,
                        std::vector<std::string> items) -> forms::Control& {
        forms::Control& c = add(ControlKind::ComboBox, name, "", frame);
        c.text = text;
        c.items = std::move(items);
        return c;
    };
    add(ControlKind::Frame, "fraUCSintact", "Intact UCS");
    add(ControlKind::Label, "lblUCSintactUnit", "MPa", "fraUCSintact");
    combo("cboUCSintact", "fraUCSintact", "160", {"100", "150", "200", "250", "300"}).onChange =
        [this] { guardZero("cboUCSintact", "140"); };
    add(ControlKind::Frame, "fraUCSrm", "Rockmass Strength");
    add(ControlKind::Label, "lblUCSrmUnit", "MPa", "fraUCSrm");
    combo("cboUCSrm", "fraUCSrm", "80", {"60", "80", "100", "120", "140", "160"}).onChange =
        [this] { guardZero("cboUCSrm", "80"); };
    add(ControlKind::Frame, "fraFricAngle", "Friction Angle");
    combo("cboFricAngle", "fraFricAngle", "30", {"10", "15", "20", "25", "30", "35", "40"})
        .onChange = [this] { guardZero("cboFricAngle", "25"); };
    add(ControlKind::Frame, "fraF", "Downgrade Factor");
    combo("cboF", "fraF", "0.8", {"0.5", "0.6", "0.7", "0.8", "0.9", "1.0"});
    add(ControlKind::Frame, "fraCutOffs", "Cut-offs");
    add(ControlKind::Label, "lblSig1", "Sig1", "fraCutOffs");
    combo("cboSig1CO", "fraCutOffs", "1.5",
          {"-100", "0.0", "0.5", "1.0", "1.5", "2.0", "5.0", "10.0"});
    add(ControlKind::Label, "lblSig3", "Sig3", "fraCutOffs");
    combo("cboSig3CO", "fraCutOffs", "0.5",
          {"-100", "0.0", "0.1", "0.2", "0.5", "1.0", "1.5", "2.0"});
    add(ControlKind::Frame, "fraSphereRadius", "Sphere Diamater");
    combo("cboSphereRadius", "fraSphereRadius", "10", {"10", "12", "15", "20"}).onChange = [this] {
        guardZero("cboSphereRadius", "5");
    };
    add(ControlKind::Frame, "fraMinStep", "Mining Step");
    std::vector<std::string> steps;
    for (int k = 1; k <= 15; ++k) steps.push_back(std::to_string(k));
    combo("cboMinStep", "fraMinStep", " 1", steps).onChange = [this] {
        guardZero("cboMinStep", "1");
    };

    add(ControlKind::Frame, "fraCalc", "Type of Calculation");
    add(ControlKind::OptionButton, "optFOS", "FS Mohr-Coulomb [(K*S3+UCSrm)/S1]", "fraCalc")
        .onChange = [this] { showInputs(false, true, false, false, true); };
    add(ControlKind::OptionButton, "optS1S3", "FS Deviatoric Stress [(1/3*UCS)/(S1-S3)]", "fraCalc")
        .onChange = [this] { showInputs(true, false, true, true, false); };
    add(ControlKind::OptionButton, "optShear", "Max Shear Stress [0.5*(S1-S3)]", "fraCalc")
        .onChange = [this] { showInputs(false, false, true, false, false); };
    add(ControlKind::OptionButton, "optRCF", "RCF [(3*S1-S3)/(F*UCS)]", "fraCalc").onChange =
        [this] { showInputs(true, false, true, true, false); };

    add(ControlKind::Frame, "fraRepresentation", "Point representation");
    for (const Representation& r : kRepresentations)
        add(ControlKind::OptionButton, r.option, r.caption, "fraRepresentation");

    add(ControlKind::CommandButton, "cmdAccept", "Accept").onChange = [this] { accept(); };
}

void Frm28ImportFOSData::onLoad() {
    setOption("optFOS");
    // The representation starts as the settings' point marker.
    std::string entry = "Low Resolution";
    if (ctx_ != nullptr) {
        const std::string_view e = builders::sphereResolutionEntry(ctx_->settings);
        if (!e.empty()) entry = std::string(e);
    }
    for (const Representation& r : kRepresentations)
        if (entry == r.entry) setOption(r.option);
}

void Frm28ImportFOSData::setVisible(const char* control, bool on) {
    if (forms::Control* c = find(control)) c->visible = on;
}

void Frm28ImportFOSData::showInputs(bool intact, bool rockmass, bool fFrame, bool fCombo,
                                    bool friction) {
    setVisible("fraUCSintact", intact);
    setVisible("cboUCSintact", intact);
    setVisible("fraUCSrm", rockmass);
    setVisible("cboUCSrm", rockmass);
    setVisible("fraF", fFrame);
    setVisible("cboF", fCombo);
    setVisible("fraFricAngle", friction);
    setVisible("cboFricAngle", friction);
}

void Frm28ImportFOSData::guardZero(const char* control, const char* putIn) {
    if (core::valNumber(text(control)) != 0) return;
    if (ctx_ != nullptr) ctx_->ui.msgBox(kZeroText, ui::Buttons::OK, kZeroTitle);
    setText(control, putIn);
}

void Frm28ImportFOSData::hideImportControls() {
    for (const char* c : kImportControls) setVisible(c, false);
}

void Frm28ImportFOSData::showImportControls() {
    for (const char* c : kImportControls) setVisible(c, true);
}

Criterion Frm28ImportFOSData::selectedCriterion() const {
    if (optionValue("optFOS")) return Criterion::FOS;
    if (optionValue("optS1S3")) return Criterion::S1S3;
    if (optionValue("optShear")) return Criterion::Shear;
    if (optionValue("optRCF")) return Criterion::RCF;
    return Criterion::None;
}

RockInputs Frm28ImportFOSData::rockInputs() const {
    RockInputs in;
    in.ucsIntact = single(text("cboUCSintact"));
    in.ucsRockmass = single(text("cboUCSrm"));
    in.frictionAngle = single(text("cboFricAngle"));
    in.downgrade = single(text("cboF"));
    return in;
}

std::string Frm28ImportFOSData::representationEntry() const {
    for (const Representation& r : kRepresentations)
        if (optionValue(r.option)) return r.entry;
    return {};
}

void Frm28ImportFOSData::accept() {
    showImportControls();
    if (ctx_ != nullptr) {
        const std::string entry = representationEntry();
        if (!entry.empty() && builders::applySphereResolution(ctx_->settings, entry)) {
            if (auto* s = dynamic_cast<forms::Frm33Settings*>(
                    ctx_->forms.find(forms::Frm33Settings::kName)))
                s->putText("cboSphereResolution", entry);
        }
    }
    for (const char* c : {"cboSphereRadius", "cboUCSintact", "cboUCSrm", "cboF", "cboFricAngle"})
        setText(c, singleText(core::valNumber(text(c))));
    const auto step = core::wholeNumber(core::valNumber(text("cboMinStep")));
    setText("cboMinStep", step ? std::to_string(*step) : "0");
    hide();
    if (ctx_ != nullptr) core::p_subMainLoop(*ctx_);
}

void Frm28ImportFOSData::onQueryClose() {
    showImportControls();
    setVisible("cboSphereRadius", false);
    hide();
    if (ctx_ == nullptr) return;
    ctx_->state.bolColourMapCancelled = -1;
    core::p_subResetAndCleanup(*ctx_);
}

Frm28ImportFOSData& importFOSForm(core::AppContext& ctx) {
    if (auto* f = dynamic_cast<Frm28ImportFOSData*>(ctx.forms.find(Frm28ImportFOSData::kName))) {
        f->attach(&ctx);
        return *f;
    }
    auto form = std::make_unique<Frm28ImportFOSData>(&ctx);
    Frm28ImportFOSData& ref = *form;
    ctx.forms.add(std::move(form));
    return ref;
}

}  // namespace analysis
