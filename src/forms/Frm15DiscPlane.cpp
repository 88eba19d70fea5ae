#include "forms/Frm15DiscPlane.h"

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "forms/FormNumbers.h"

namespace forms {

namespace {

constexpr int kPickPointer = 14;
constexpr const char* kInvalidEntryText = "Fill in all the relevant information";
constexpr const char* kInvalidEntryTitle = "Invalid entry";
constexpr const char* kDimensionText = "A blank or zero value as a dimension is unacceptable";
constexpr const char* kDimensionTitle = "Selection error";

const std::array<NamedColour, 18> kColours{{
    {"Fault plane 1 (light purple)", {252, 189, 252}},
    {"Fault plane 2 (purple - default)", {252, 3, 252}},
    {"Fault plane 3 (dark purple)", {189, 3, 189}},
    {"Dyke plane 1 (light green)", {189, 252, 189}},
    {"Dyke plane 2 (green)", {3, 252, 3}},
    {"Dyke plane 3 (dark green)", {3, 189, 3}},
    {"Joint plane 1 (light orange)", {252, 226, 96}},
    {"Joint plane 2 (orange)", {252, 125, 3}},
    {"Joint plane 3 (dark orange)", {189, 61, 3}},
    {"Bedding plane 1 (light yellow)", {252, 252, 125}},
    {"Bedding plane 2 (yellow)", {252, 252, 3}},
    {"Bedding plane 3 (dark yellow)", {189, 189, 3}},
    {"Bulkhead1 (purple)", {246, 9, 246}},
    {"Bulkhead2 (blue)", {9, 9, 246}},
    {"Bulkhead3 (orange)", {246, 119, 9}},
    {"Bulkhead4 (white)", {246, 246, 246}},
    {"Ventilation door (red)", {246, 9, 9}},
    {"Ventilation seal (yellow)", {246, 246, 0}},
}};

std::vector<std::string> steps(double from, double to, double step) {
    std::vector<std::string> out;
    for (double v = from; v <= to + 1e-9; v += step) out.push_back(numberText(v));
    return out;
}

}  // namespace

Frm15DiscPlane::Frm15DiscPlane(core::AppContext* ctx)
    : Form(kName, "Discontinuity plane"), ctx_(ctx) {
    add(ControlKind::Frame, "fraPlaneType", "Plane defined by");
    add(ControlKind::OptionButton, "optPlane1Point", "One point and its orientation",
        "fraPlaneType");
    add(ControlKind::OptionButton, "optPlane2Points", "Two points and a dip", "fraPlaneType");
    add(ControlKind::OptionButton, "optPlane3Points", "Three points", "fraPlaneType");
    for (const char* o : {"optPlane1Point", "optPlane2Points", "optPlane3Points"})
        at(o).onChange = [this] { planeTypeChanged(); };

    add(ControlKind::Frame, "fraOnePoint", "One point");
    add(ControlKind::OptionButton, "optDefinePlane", "Dip and dip direction of the plane",
        "fraOnePoint");
    add(ControlKind::OptionButton, "optDefinePole", "Trend and plunge of the pole", "fraOnePoint");
    auto combo = [this](const char* name, const char* caption, const char* frame,
                        std::vector<std::string> items) -> Control& {
        Control& c = add(ControlKind::ComboBox, name, caption, frame);
        c.items = std::move(items);
        return c;
    };
    combo("cboPlaneDip1Point", "Dip (degrees)", "fraOnePoint", steps(0, 90, 5)).onChange = [this] {
        follow("cboPlaneDip1Point", "cboPolePlunge", dipToPlunge_);
    };
    combo("cboPlaneDipDirection1Point", "Dip direction (degrees)", "fraOnePoint", steps(0, 345, 15))
        .onChange = [this] {
        follow("cboPlaneDipDirection1Point", "cboPoleTrend", dipDirToTrend_);
    };
    combo("cboPoleTrend", "Pole trend (degrees)", "fraOnePoint", steps(0, 345, 15)).onChange =
        [this] { follow("cboPoleTrend", "cboPlaneDipDirection1Point", dipDirToTrend_); };
    combo("cboPolePlunge", "Pole plunge (degrees)", "fraOnePoint", steps(0, 90, 5)).onChange =
        [this] { follow("cboPolePlunge", "cboPlaneDip1Point", dipToPlunge_); };
    add(ControlKind::CheckBox, "chkShowPole", "Show the pole", "fraOnePoint");

    add(ControlKind::Frame, "fraTwoPoints", "Two points");
    combo("cboPlaneDip", "Dip (degrees)", "fraTwoPoints", steps(0, 90, 5));

    add(ControlKind::Frame, "fraPlaneDimensions", "Plane dimensions (m)");
    add(ControlKind::Label, "txtLabelPlaneHorOffset", kHorCentre, "fraPlaneDimensions");
    combo("cboPlaneHorOffsetAlongPlane", "", "fraPlaneDimensions",
          {"1", "2", "5", "10", "20", "50", "100"});
    add(ControlKind::Label, "txtLabelPlaneVertOffset", kVertCentre, "fraPlaneDimensions");
    combo("cboPlaneVertOffsetAlongPlane", "", "fraPlaneDimensions",
          {"0", "1", "2", "4", "5", "10", "20", "50"});
    combo("cboPlaneThickness", "Thickness:", "fraPlaneDimensions", {"0", "0.5", "1", "2", "5"});

    std::vector<std::string> names;
    for (const auto& c : kColours) names.emplace_back(c.name);
    names.emplace_back(kColourBox);
    names.emplace_back(kColourSelect);
    combo("cboDiscPlaneColour", "Colour", "", names);

    add(ControlKind::CommandButton, "cmdAcceptPlaneType", "Accept").onChange = [this] {
        P_subAcceptPlaneType();
    };
    add(ControlKind::CommandButton, "cmdCancelPlane", "Cancel").onChange = [this] { hide(); };
    // The catalogue's button is wired by whoever registers the catalogue.
    add(ControlKind::CommandButton, "cmdStandardPlanes", "Standard planes...");

    // Values of a first use; the pole pair is written to match the plane pair.
    setOption("optPlane1Point");
    setOption("optDefinePlane");
    at("cboPlaneDip1Point").text = "60";
    at("cboPlaneDipDirection1Point").text = "120";
    at("cboPolePlunge").text = "30";
    at("cboPoleTrend").text = "300";
    at("cboPlaneDip").text = "90";
    at("cboPlaneHorOffsetAlongPlane").text = "10";
    at("cboPlaneVertOffsetAlongPlane").text = "5";
    at("cboPlaneThickness").text = "0";
    at("cboDiscPlaneColour").text = kDefaultColour;
}

const std::array<NamedColour, 18>& Frm15DiscPlane::colours() { return kColours; }

bool Frm15DiscPlane::tableColour(std::string_view name, engine::Rgb& out) {
    for (const auto& c : kColours) {
        if (name == c.name) {
            out = c.colour;
            return true;
        }
    }
    return false;
}

void Frm15DiscPlane::attachPoleConversions(Conversion dipToPlunge, Conversion dipDirToTrend) {
    dipToPlunge_ = dipToPlunge;
    dipDirToTrend_ = dipDirToTrend;
}

void Frm15DiscPlane::follow(const char* from, const char* to, Conversion conversion) {
    if (following_ || conversion == nullptr) return;
    // A box being emptied to type a new value leaves its partner alone.
    if (blankText(text(from))) return;
    double v = valText(text(from));  // the conversion clamps its own copy
    const double partner = conversion(v);
    following_ = true;
    setText(to, numberText(partner));
    following_ = false;
}

void Frm15DiscPlane::planeTypeChanged() {
    const bool two = optionValue("optPlane2Points");
    at("txtLabelPlaneHorOffset").caption = two ? kHorSelected : kHorCentre;
    at("txtLabelPlaneVertOffset").caption = two ? kVertSelected : kVertCentre;
}

PlaneMode Frm15DiscPlane::mode() const {
    if (optionValue("optPlane1Point")) return PlaneMode::OnePoint;
    if (optionValue("optPlane2Points")) return PlaneMode::TwoPoints;
    if (optionValue("optPlane3Points")) return PlaneMode::ThreePoints;
    return PlaneMode::None;
}

engine::Rgb Frm15DiscPlane::currentColour() const {
    const std::string& name = text("cboDiscPlaneColour");
    engine::Rgb c;
    if (tableColour(name, c)) return c;
    if (name == kColourBox || name == kColourSelect) return colourBox;
    // A name of no row: the default plane colour.
    tableColour(kDefaultColour, c);
    return c;
}

bool Frm15DiscPlane::refuse(const char* message, const char* title) {
    if (ctx_) ctx_->ui.msgBox(message, ui::Buttons::OK, title);
    return false;
}

bool Frm15DiscPlane::P_subAcceptPlaneType() {
    const PlaneMode m = mode();
    std::vector<const char*> needed = {"cboPlaneHorOffsetAlongPlane",
                                       "cboPlaneVertOffsetAlongPlane", "cboPlaneThickness",
                                       "cboDiscPlaneColour"};
    if (m == PlaneMode::OnePoint) {
        if (optionValue("optDefinePole")) {
            needed.push_back("cboPoleTrend");
            needed.push_back("cboPolePlunge");
        } else {
            needed.push_back("cboPlaneDip1Point");
            needed.push_back("cboPlaneDipDirection1Point");
        }
    } else if (m == PlaneMode::TwoPoints) {
        needed.push_back("cboPlaneDip");
    }
    bool missing = m == PlaneMode::None;
    for (const char* c : needed) missing = missing || blankText(text(c));
    if (missing) return refuse(kInvalidEntryText, kInvalidEntryTitle);
    // For one and three points the horizontal offset is half the plane's length.
    if (m != PlaneMode::TwoPoints && valText(text("cboPlaneHorOffsetAlongPlane")) == 0)
        return refuse(kDimensionText, kDimensionTitle);

    const std::string& colourName = text("cboDiscPlaneColour");
    if (colourName == kColourSelect && ctx_) {
        if (auto chosen = ctx_->ui.chooseColour(colourBox)) colourBox = *chosen;
    }
    lngDiscPlaneColour = currentColour();

    if (ctx_) {
        auto& s = ctx_->state;
        s.setToolFlag("bolPlaneOne", m == PlaneMode::OnePoint);
        s.setToolFlag("bolPlaneTwo1", m == PlaneMode::TwoPoints);
        s.setToolFlag("bolPlaneThree1", m == PlaneMode::ThreePoints);
        ctx_->pointer(kPickPointer);
    }
    hide();
    if (ctx_) {
        ctx_->comment(kPrompt);
        core::p_subMainLoop(*ctx_);
    }
    return true;
}

void Frm15DiscPlane::onQueryClose() {
    hide();
    if (ctx_) ctx_->state.bolDialogCancelled = true;
}

}  // namespace forms
