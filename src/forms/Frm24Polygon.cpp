#include "forms/Frm24Polygon.h"

#include <array>

namespace forms {

namespace {

struct Entry {
    const char* name;
    engine::Rgb colour;
};
constexpr std::array<Entry, 6> kColours{{
    {"Light blue", {123, 123, 250}},
    {"Grey", {123, 123, 123}},
    {"Yellow", {250, 250, 5}},
    {"Green", {5, 250, 5}},
    {"Red", {250, 5, 5}},
    {"Brown", {123, 5, 5}},
}};

}  // namespace

Frm24Polygon::Frm24Polygon() : Form(kName, "Build polygons") {
    add(ControlKind::Frame, "fraFollow", "After each polygon");
    add(ControlKind::OptionButton, "optPolyFan", "Keep the first point (fan)", "fraFollow");
    add(ControlKind::OptionButton, "optPolyStrip", "Go on from the last edge (strip)", "fraFollow");
    add(ControlKind::OptionButton, "optPolyNew", "Start a new polygon", "fraFollow");
    at("optPolyNew").value = 1;
    auto& colour = add(ControlKind::ComboBox, "cboPolygonColour", "Colour");
    for (const auto& e : kColours) colour.items.emplace_back(e.name);
    colour.items.emplace_back(kColourSelect);
    colour.text = kColours[0].name;
    add(ControlKind::CommandButton, "cmdOK", "Accept").onChange = [this] {
        const std::string& entry = text("cboPolygonColour");
        if (entry == kColourSelect && chooseColour) {
            if (auto c = chooseColour(colourBox)) colourBox = *c;
        }
        lngPolygonColour = colourFor(entry);
        cancelled = false;
        hide();
        if (onAccepted) onAccepted();
    };
    add(ControlKind::CommandButton, "cmdCancel", "Cancel").onChange = [this] { onQueryClose(); };
}

void Frm24Polygon::onQueryClose() {
    cancelled = true;
    hide();
}

PolygonFollow Frm24Polygon::follow() const {
    if (optionValue("optPolyFan")) return PolygonFollow::Fan;
    if (optionValue("optPolyStrip")) return PolygonFollow::Strip;
    return PolygonFollow::New;
}

engine::Rgb Frm24Polygon::colourFor(const std::string& entry) const {
    for (const auto& e : kColours)
        if (entry == e.name) return e.colour;
    if (entry == kColourSelect) return colourBox;
    return kColours[0].colour;
}

}  // namespace forms
