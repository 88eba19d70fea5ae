#include "analysis/ColourMapForm.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <memory>

#include "analysis/ColourMapByData.h"
#include "analysis/ColourScale.h"
#include "analysis/Frm28ImportFOSData.h"
#include "analysis/ProgressPacer.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"

namespace analysis {

using forms::ControlKind;

namespace {

const std::vector<std::string> kPercentMax = {"100", "90", "80", "70", "60", "50"};
const std::vector<std::string> kPercentMin = {"90", "80", "70", "60", "50",
                                              "40", "30", "20", "10", "0"};
const std::vector<std::string> kPPVMax = {"0.12", "0.16", "0.2", "0.24", "0.28", "0.32", "0.36",
                                          "0.4",  "0.6",  "0.8", "1",    "1.2",  "1.6",  "2"};
const std::vector<std::string> kPPVMin = {"0.03", "0.04", "0.05", "0.06", "0.07", "0.08", "0.09",
                                          "0.1",  "0.15", "0.2",  "0.25", "0.3",  "0.4",  "0.5"};
const std::vector<std::string> kFOSMax = {"1", "1.2", "1.4", "1.6", "1.8", "2"};

// The strict reading of the extremes scan: a field that is not wholly one number
// (blanks around it aside) gives nothing and the polygon is passed over.
bool strictNumber(std::string_view s, double& out) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    if (!s.empty() && s.front() == '+') s.remove_prefix(1);
    if (s.empty()) return false;
    const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), out);
    return ec == std::errc() && end == s.data() + s.size() && std::isfinite(out);
}

}  // namespace

ColourMapForm::ColourMapForm(core::AppContext* ctx) : Form(kName, "Colourmap"), ctx_(ctx) {
    add(ControlKind::Frame, kSourceFrame, "Parameter to colourmap");
    auto option = [this](const char* name, const char* caption, std::function<void()> h) {
        add(ControlKind::OptionButton, name, caption, kSourceFrame).onChange = std::move(h);
    };
    add(ControlKind::Label, "lblMap3DPoints", "Map3D Points", kSourceFrame);
    option("optGeneralDataPoints", "General data points with values", [this] {
        applyPreset({"1",
                     {"300", "250", "200", "150", "100"},
                     "150",
                     {"100", "75", "50", "25", "0"},
                     "50",
                     1,
                     "optCM1"});
    });
    option("optCumPPV", "Cumulative PPV", [this] {
        applyPreset({"1", kPPVMax, "0.12", kPPVMin, "0.03", 0, "optCM4"});
    });
    option("optMaxPPV", "Maximum PPV", [this] {
        applyPreset({"2", kPPVMax, "0.12", kPPVMin, "0.03", 0, "optCM4"});
    });
    option("optNumPPV", "Number PPV hits", [this] {
        applyPreset({"3", {"3", "4", "5", "6"}, "4", {"1", "2", "3"}, "1", 0, "optCM4"});
    });
    add(ControlKind::Label, "lblSurfaceStresses", "Surface Stresses", kSourceFrame);
    option("optSigma1", "Sigma 1", [this] {
        applyPreset({"1",
                     {"60", "80", "100", "120", "130", "140", "150", "180", "200"},
                     "80",
                     {"0", "2", "5", "10", "20", "30", "40", "50", "60", "70", "80"},
                     "40",
                     0,
                     "optCM1"});
    });
    option("optSigma3", "Sigma 3", [this] {
        applyPreset({"2",
                     {"5", "10", "20", "30", "40", "50", "60"},
                     "20",
                     {"-10", "-5", "0", "5", "10", "20"},
                     "0",
                     0,
                     "optCM1"});
    });
    option("optSFinv", "1/SF", [this] {
        applyPreset({"1", kFOSMax, "1", {"0", "0.2", "0.4", "0.6", "0.8"}, "0", 0, "optCM3"});
    });
    option("optCalcFOS_RCF", "Diffferent Stress Options", [this] { calcFOSChanged(); });
    add(ControlKind::CommandButton, "cmdChangeFOS", "Change values", kSourceFrame).onChange =
        [this] { cmdChangeFOS(); };
    add(ControlKind::Label, "lblDrillholes", "Drillhole Information", kSourceFrame);
    option("optSelectDrillholes", "Select from drillhole information options",
           [this] { setCheck("chkInverseColourMap", 0); });
    forms::Control& quick =
        add(ControlKind::ComboBox, "cboQuickSet", "Quick set extremes and type:", kSourceFrame);
    quick.items.assign(std::begin(kQuickSets), std::end(kQuickSets));
    quick.text = "Recovery";
    quick.onChange = [this] { quickSet(); };
    add(ControlKind::CheckBox, "chkAlphabetLetters", "Check if selected column is letters",
        kSourceFrame)
        .onChange = [this] { lettersChanged(); };
    add(ControlKind::CheckBox, "chkRQDPRintMode", "Check for distinct RQD-zones", kSourceFrame)
        .onChange = [this] {
        setOption("optSelectDrillholes");
        pickQuickSet("RQD");
    };
    add(ControlKind::ComboBox, "cboLoadColumn", "Column to colourmap:", kSourceFrame);

    add(ControlKind::Frame, kExtremesFrame, "Coulourmap Extremes");
    add(ControlKind::ComboBox, "cboMin", "Minimum Value", kExtremesFrame).onChange = [this] {
        minChanged();
    };
    add(ControlKind::ComboBox, "cboMax", "Maximum Value", kExtremesFrame);
    add(ControlKind::TextBox, "txtMinNotZero", "Non-Zero Min", kExtremesFrame);
    add(ControlKind::CommandButton, "cmdObtainExtremes", "Obtain extremes", kExtremesFrame)
        .onChange = [this] { cmdObtainExtremes(); };

    add(ControlKind::Frame, kScaleFrame, "Select Colourmap");
    add(ControlKind::OptionButton, "optCM1", "CM 1 - Contue bright red and blue outside limits",
        kScaleFrame);
    add(ControlKind::OptionButton, "optCM2", "CM 2 - Dark red and blue outside limits",
        kScaleFrame);
    add(ControlKind::OptionButton, "optCM3", "CM 3 - Grey (light and dark) outside limits",
        kScaleFrame);
    add(ControlKind::OptionButton, "optCM4", "CM 4 - Grey and bright colours outside limits",
        kScaleFrame);
    add(ControlKind::CheckBox, "chkInverseColourMap", "Inverse the Colourmap", kScaleFrame)
        .onChange = [this] {
        if (ctx_ != nullptr)
            ctx_->state.bolInverseColourMap = checkValue("chkInverseColourMap") == 1 ? -1 : 0;
    };
    add(ControlKind::CommandButton, "cmdAccept", "Accept").onChange = [this] { cmdAccept(); };
}

void ColourMapForm::onLoad() {
    setOption("optGeneralDataPoints");
    setOption("optCM1");
    if (ctx_ == nullptr) return;
    ctx_->state.bolColourMapCancelled = 0;
    ctx_->state.bolInverseColourMap = kInverseMap;
}

void ColourMapForm::onQueryClose() {
    hide();
    if (ctx_ == nullptr) return;
    ctx_->state.bolColourMapCancelled = -1;
    core::p_subResetAndCleanup(*ctx_);
}

int ColourMapForm::selectedScale() const {
    for (int k = 0; k < 4; ++k)
        if (optionValue(kScaleOptions[k])) return k + 1;
    return 0;
}

std::string ColourMapForm::selectedSource() const {
    for (const auto& c : controls())
        if (c->kind == ControlKind::OptionButton && c->frame == kSourceFrame && c->value)
            return c->name;
    return {};
}

bool ColourMapForm::ppvSource() const {
    return optionValue("optCumPPV") || optionValue("optMaxPPV") || optionValue("optNumPPV");
}

void ColourMapForm::applyPreset(const Preset& p) {
    setText("cboLoadColumn", p.column);
    at("cboMax").items = p.maxList;
    at("cboMin").items = p.minList;
    setText("cboMax", p.maxText);
    setText("cboMin", p.minText);
    setCheck("chkInverseColourMap", p.inverse);
    setOption(p.scale);
}

void ColourMapForm::minChanged() {
    if (!ppvSource()) return;
    setText("cboMax", core::numberText(core::valNumber(text("cboMin")) * 4));
}

void ColourMapForm::lettersChanged() {
    setOption("optSelectDrillholes");
    const bool letters = checkValue("chkAlphabetLetters") != 0;
    at("cmdObtainExtremes").enabled = !letters;
    setText("cboMin", "0");
    setText("cboMax", letters ? "30" : "100");
}

void ColourMapForm::pickQuickSet(const std::string& item) {
    if (text("cboQuickSet") == item)
        quickSet();
    else
        setText("cboQuickSet", item);
}

void ColourMapForm::quickSet() {
    setOption("optSelectDrillholes");
    const std::string item = text("cboQuickSet");
    struct QuickSet {
        const char* item;
        Preset preset;
        int letters;
        const char* message;
        const char* title;
    };
    const QuickSet sets[] = {
        {"Recovery", {"1", kPercentMax, "95", kPercentMin, "25", 1, "optCM1"}, 0, nullptr, nullptr},
        {"RQD", {"2", kPercentMax, "95", kPercentMin, "25", 1, "optCM1"}, 0, nullptr, nullptr},
        {"RMR", {"7", kPercentMax, "95", kPercentMin, "25", 1, "optCM1"}, 0, nullptr, nullptr},
        {"UCS",
         {"3", {"250", "200", "150", "100"}, "150", {"100", "75", "50", "25"}, "50", 1, "optCM1"},
         0,
         nullptr,
         nullptr},
        {"Weathering",
         {"4", {"5", "4"}, "5", {"2", "1"}, "1", 0, "optCM1"},
         1,
         kWeatheringText,
         kWeatheringTitle},
        {"FF",
         {"5", {"40", "30", "16", "8"}, "16", {"8", "6", "0"}, "6", 0, "optCM1"},
         0,
         kFFText,
         kFFTitle},
        {"Q ",
         {"6",
          {"1000", "200", "100", "80", "50", "20", "10", "5", "1"},
          "10",
          {"100", "50", "20", "10", "5", "1", "0.1", "0.01", "0.001"},
          "0",
          1,
          "optCM1"},
         0,
         nullptr,
         nullptr},
    };
    for (const QuickSet& q : sets) {
        if (item != q.item) continue;
        if (q.message != nullptr && ctx_ != nullptr)
            ctx_->ui.msgBox(q.message, ui::Buttons::OK, q.title);
        const Preset& p = q.preset;
        setText("cboLoadColumn", p.column);
        at("cboMax").items = p.maxList;
        at("cboMin").items = p.minList;
        setText("cboMax", p.maxText);
        setText("cboMin", p.minText);
        // After the limits, so that a change of the box has the last word on them.
        setCheck("chkAlphabetLetters", q.letters);
        setCheck("chkInverseColourMap", p.inverse);
        setOption(p.scale);
        return;
    }
}

void ColourMapForm::cmdChangeFOS() {
    if (optionValue("optCalcFOS_RCF"))
        calcFOSChanged();
    else
        setOption("optCalcFOS_RCF");
}

void ColourMapForm::calcFOSChanged() {
    if (ctx_ == nullptr) return;
    Frm28ImportFOSData& fos = importFOSForm(*ctx_);
    fos.ensureLoaded();
    fos.hideImportControls();
    ctx_->ui.showModal(fos);
    setOption("optCalcFOS_RCF");
    setText("cboLoadColumn", "0");
    const Criterion c = fos.selectedCriterion();
    if (c == Criterion::RCF) {
        at("cboMax").items = kFOSMax;
        at("cboMin").items = {"0.6", "0.7", "0.8", "0.9", "1", "1.1", "1.2"};
        setText("cboMax", "1.4");
        setText("cboMin", "0.7");
        // Checked and at once unchecked again: the outcome is off.
        setCheck("chkInverseColourMap", 1);
        ctx_->state.bolInverseColourMap = -1;
        setCheck("chkInverseColourMap", 0);
        ctx_->state.bolInverseColourMap = 0;
        setOption("optCM1");
    } else if (c != Criterion::None) {
        at("cboMax").items = kFOSMax;
        at("cboMin").items = {"0.6", "0.8", "1", "1.2"};
        setText("cboMax", "2");
        setText("cboMin", "1");
        setCheck("chkInverseColourMap", 1);
        ctx_->state.bolInverseColourMap = -1;
        setOption("optCM1");
    }
}

int ColourMapForm::normaliseColumn() {
    const auto n = core::wholeNumber(core::valNumber(text("cboLoadColumn")));
    const int column = n ? *n : 0;
    setText("cboLoadColumn", std::to_string(column));
    return column;
}

void ColourMapForm::cmdObtainExtremes() {
    setText("cboMax", "");
    setText("cboMin", "");
    setText("txtMinNotZero", "");
    if (ctx_ == nullptr) return;
    core::AppContext& ctx = *ctx_;
    ctx.pointer(11);
    ctx.progress(5);
    const long long n = normaliseColumn();
    long long field = n;
    if (optionValue("optSigma1") || optionValue("optSigma3") || optionValue("optSFinv") ||
        optionValue("optCalcFOS_RCF"))
        field = n + 1;
    else if (optionValue("optSelectDrillholes"))
        field = n + 5;
    constexpr double kLimit = 3.402823e+38;
    double max = -kLimit, min = kLimit, minNotZero = kLimit;
    engine::Engine& eng = ctx.engine;
    ProgressPacer pacer(ctx);
    long count = 0;
    for (engine::Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (ctx.state.bolInterruptProcess) break;
        if (eng.polygon_is_disabled(h)) continue;
        const std::string name = core::strEntityName(eng, h);
        if (name.compare(0, 3, core::kColourMapPrefix) == 0) {
            const std::vector<std::string> f = recordFields(name);
            if (static_cast<long long>(f.size()) - 1 < n) {
                ctx.ui.msgBox(kNoColumnText, ui::Buttons::OK, kNoColumnTitle);
                break;
            }
            double v = 0;
            if (field >= 0 && field < static_cast<long long>(f.size()) &&
                strictNumber(f[static_cast<std::size_t>(field)], v)) {
                if (v > max) {
                    max = v;
                    setText("cboMax", core::numberText(v));
                }
                if (v < min) {
                    min = v;
                    setText("cboMin", core::numberText(v));
                }
                if (v < minNotZero && v != 0) {
                    minNotZero = v;
                    setText("txtMinNotZero", core::numberText(v));
                }
            }
        }
        pacer.step(0.1, 10, "Polygons completed: " + std::to_string(++count));
    }
    ctx.progress(100);
    ctx.pointer(1);
    ctx.ui.setFocus();
}

void ColourMapForm::cmdAccept() {
    normaliseColumn();
    if (!(core::valNumber(text("cboMax")) > core::valNumber(text("cboMin")))) {
        if (ctx_ != nullptr)
            ctx_->ui.msgBox(kMaxNotAboveMinText, ui::Buttons::OK, kMaxNotAboveMinTitle);
        return;
    }
    hide();
    if (ctx_ != nullptr) core::p_subMainLoop(*ctx_);
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
