#include "forms/Frm07GridPlane.h"

#include <array>
#include <cmath>
#include <optional>

#include "forms/FormNumbers.h"
#include "forms/NamedColour.h"

namespace forms {

namespace {

constexpr const char* kInvalidEntryText = "Fill in all the relevant information";
constexpr const char* kInvalidEntryTitle = "Invalid entry";
constexpr const char* kDimensionText = "A blank or zero value as a dimension is unacceptable";
constexpr const char* kDimensionTitle = "Selection error";
constexpr const char* kSpacingText = "The grid spacing is too small for the plane dimensions";

constexpr std::array<NamedColour, 8> kColours{{
    {"Grey", {160, 160, 160}},
    {"White", {246, 246, 246}},
    {"Black", {20, 20, 20}},
    {"Light blue", {150, 190, 246}},
    {"Blue", {9, 9, 246}},
    {"Green", {3, 189, 3}},
    {"Yellow", {246, 246, 0}},
    {"Brown", {150, 90, 30}},
}};

}  // namespace

Frm07GridPlane::Frm07GridPlane() : Form(kName, "Grid plane") {
    add(ControlKind::Frame, "fraCentre", "Plane centre (m)");
    add(ControlKind::TextBox, "txtCentreX", "X (East)", "fraCentre").text = "0";
    add(ControlKind::TextBox, "txtCentreY", "Y (North)", "fraCentre").text = "0";
    add(ControlKind::TextBox, "txtCentreZ", "Z (Elevation)", "fraCentre").text = "0";
    add(ControlKind::CommandButton, "cmdPickCentre", "Pick centre", "fraCentre").onChange = [this] {
        accepted = false;
        hide();
        if (onPickCentre) onPickCentre();
    };

    add(ControlKind::Frame, "fraOrientation", "Plane");
    add(ControlKind::OptionButton, "optHorizontal", "Horizontal", "fraOrientation");
    add(ControlKind::OptionButton, "optVerticalEW", "Vertical, east-west", "fraOrientation");
    add(ControlKind::OptionButton, "optVerticalNS", "Vertical, north-south", "fraOrientation");
    setOption("optHorizontal");

    add(ControlKind::Frame, "fraDimensions", "Dimensions (m)");
    auto combo = [this](const char* name, const char* caption, std::vector<std::string> items,
                        const char* value) {
        Control& c = add(ControlKind::ComboBox, name, caption, "fraDimensions");
        c.items = std::move(items);
        c.text = value;
    };
    combo("cboPlaneLength", "Length", {"10", "50", "100", "200", "500", "1000", "2000"}, "200");
    combo("cboPlaneWidth", "Width", {"10", "50", "100", "200", "500", "1000", "2000"}, "200");
    combo("cboGridSpacing", "Grid spacing", {"1", "5", "10", "20", "25", "50", "100"}, "20");

    Control& colour = add(ControlKind::ComboBox, "cboPlaneColour", "Plane colour");
    for (const auto& c : kColours) colour.items.emplace_back(c.name);
    colour.items.emplace_back(kColourSelect);
    colour.text = kColours[0].name;
    colour.onChange = [this] {
        if (text("cboPlaneColour") != kColourSelect || !chooseColour) return;
        if (auto c = chooseColour(colourSelected)) colourSelected = *c;
    };

    add(ControlKind::CommandButton, "cmdAcceptGridPlane", "Accept").onChange = [this] {
        if (P_subAcceptGridPlane() && onAccepted) onAccepted();
    };
    add(ControlKind::CommandButton, "cmdCancelGridPlane", "Cancel").onChange = [this] {
        accepted = false;
        hide();
    };
}

bool Frm07GridPlane::P_subAcceptGridPlane() {
    accepted = false;
    auto refuse = [this](const char* t, const char* title) {
        if (onRefuse) onRefuse(t, title);
        return false;
    };
    for (const char* c : {"txtCentreX", "txtCentreY", "txtCentreZ", "cboPlaneLength",
                          "cboPlaneWidth", "cboGridSpacing", "cboPlaneColour"})
        if (blankText(text(c))) return refuse(kInvalidEntryText, kInvalidEntryTitle);
    const double l = lengthMetres(), w = widthMetres(), s = spacingMetres();
    if (!(l > 0) || !(w > 0) || !(s > 0) || !std::isfinite(l) || !std::isfinite(w) ||
        !std::isfinite(s))
        return refuse(kDimensionText, kDimensionTitle);
    if (std::max(l, w) / s > 2.0 * kMaxLines) return refuse(kSpacingText, kDimensionTitle);
    accepted = true;
    hide();
    return true;
}

engine::Point3 Frm07GridPlane::centreMetres() const {
    return {valText(text("txtCentreX")), valText(text("txtCentreY")), valText(text("txtCentreZ"))};
}

void Frm07GridPlane::setCentreMetres(const engine::Point3& p) {
    at("txtCentreX").text = numberText(p.x);
    at("txtCentreY").text = numberText(p.y);
    at("txtCentreZ").text = numberText(p.z);
}

double Frm07GridPlane::lengthMetres() const { return valText(text("cboPlaneLength")); }
double Frm07GridPlane::widthMetres() const { return valText(text("cboPlaneWidth")); }
double Frm07GridPlane::spacingMetres() const { return valText(text("cboGridSpacing")); }

GridOrientation Frm07GridPlane::orientation() const {
    if (optionValue("optVerticalEW")) return GridOrientation::VerticalEastWest;
    if (optionValue("optVerticalNS")) return GridOrientation::VerticalNorthSouth;
    return GridOrientation::Horizontal;
}

engine::Rgb Frm07GridPlane::colour() const {
    const std::string& name = text("cboPlaneColour");
    for (const auto& c : kColours)
        if (name == c.name) return c.colour;
    return colourSelected;
}

}  // namespace forms
