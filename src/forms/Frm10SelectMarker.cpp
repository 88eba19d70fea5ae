#include "forms/Frm10SelectMarker.h"

#include "core/AppContext.h"
#include "forms/FormNumbers.h"

namespace forms {

namespace {

constexpr int kPickPointer = 14;
constexpr const char* kStressForm = "frm25_StressTensor";
constexpr const char* kCatalogueForm = "frm11_SelectMarkerStandard";

const std::array<NamedColour, 13> kColours{{
    {"White", {250, 250, 250}},
    {"Grey", {123, 123, 123}},
    {"Yellow", {250, 250, 5}},
    {"Pink", {250, 123, 187}},
    {"Mustard", {123, 123, 5}},
    {"Orange", {250, 123, 5}},
    {"Red", {250, 5, 5}},
    {"Green", {5, 250, 5}},
    {"Blue", {5, 5, 250}},
    {"Purple", {187, 123, 250}},
    {"Brown", {123, 5, 5}},
    {"Light blue", {123, 123, 250}},
    {"Light red", {250, 123, 123}},
}};

struct SymbolCaption {
    const char* option;
    const char* caption;
};
constexpr SymbolCaption kSymbolCaptions[] = {
    {"optSphere", "Sphere"},
    {"optSphereText", "Sphere with text"},
    {"optSphereCoordinates", "Sphere with its coordinates"},
    {"optCylinder", "Cylinder"},
    {"optCylSphere", "Cylinder with a sphere"},
    {"optDirCylSphere", "Cylinder with a sphere, along the surface normal"},
    {"optCylDiamond", "Cylinder with a diamond"},
    {"optDirCylDiamond", "Cylinder with a diamond, along the surface normal"},
    {"optConeUpright", "Upright cone"},
    {"optConePointer", "Pointer between two points"},
    {"optVirginStress", "Virgin stress tensor"},
};

}  // namespace

Frm10SelectMarker::Frm10SelectMarker(core::AppContext* ctx)
    : Form(kName, "Select marker"), ctx_(ctx) {
    add(ControlKind::Frame, "fraMarkerType", "Marker");
    for (const auto& s : kSymbolCaptions)
        add(ControlKind::OptionButton, s.option, s.caption, "fraMarkerType");

    add(ControlKind::Frame, "fraMarkerSize", "Dimensions (m)");
    auto combo = [this](const char* name, const char* caption, const char* frame,
                        std::vector<std::string> items) -> Control& {
        Control& c = add(ControlKind::ComboBox, name, caption, frame);
        c.items = std::move(items);
        return c;
    };
    combo("cboSphereRadius", "Sphere radius", "fraMarkerSize",
          {"0.5", "1.0", "1.5", "2.0", "2.5", "5.0"});
    combo("cboCylDiameter", "Cylinder diameter", "fraMarkerSize",
          {"0.25", "0.5", "1.0", "1.5", "2.0"});
    combo("cboCylLength", "Cylinder length", "fraMarkerSize",
          {"1.0", "2.0", "2.5", "4.0", "6.0", "10.0"});

    add(ControlKind::Frame, "fraMarkerPlacement", "Placement on the point");
    add(ControlKind::OptionButton, "optMarkerBottom", "Bottom", "fraMarkerPlacement");
    add(ControlKind::OptionButton, "optMarkerCentre", "Centre", "fraMarkerPlacement");
    add(ControlKind::OptionButton, "optMarkerTop", "Top", "fraMarkerPlacement");

    add(ControlKind::Frame, "fraDirectConnect", "After placing");
    add(ControlKind::OptionButton, "optConDirectComment", "Add a comment", "fraDirectConnect");
    add(ControlKind::OptionButton, "optConDirectPhoto", "Link a photograph", "fraDirectConnect");
    add(ControlKind::OptionButton, "optNoDirectConnect", "Nothing", "fraDirectConnect");

    std::vector<std::string> names;
    for (const auto& c : kColours) names.emplace_back(c.name);
    names.emplace_back(kColourBox);
    names.emplace_back(kColourSelect);
    combo("cboMarkerColour", "Colour", "", names);

    add(ControlKind::ListBox, "lstMarkerText", "Text markers");
    // Filled in by the marker layer, which knows the scene.
    add(ControlKind::CommandButton, "cmdRefreshText", "Refresh text");

    add(ControlKind::CommandButton, "cmdMarkerAccept", "Accept").onChange = [this] {
        P_subMarkerAccept();
    };
    add(ControlKind::CommandButton, "cmdCancelMarker", "Cancel").onChange = [this] { hide(); };
    add(ControlKind::CommandButton, "cmdStandardMarkers", "Standard markers...").onChange = [this] {
        if (!ctx_) return;
        if (Form* f = ctx_->forms.find(kCatalogueForm)) ctx_->ui.showModal(*f);
    };
    add(ControlKind::CommandButton, "cmdChangeStressTensor", "Stress tensor...").onChange = [this] {
        if (!ctx_) return;
        Form* f = ctx_->forms.find(kStressForm);
        if (!f) return;
        // The tensor dialog brings this one back when it is accepted.
        hide();
        ctx_->ui.showModal(*f);
    };

    at("cboSphereRadius").text = "1.0";
    at("cboCylDiameter").text = "0.5";
    at("cboCylLength").text = "2.0";
    setOption("optMarkerBottom");
    setOption("optNoDirectConnect");
    at("cboMarkerColour").text = "Red";
}

const std::array<NamedColour, 13>& Frm10SelectMarker::colours() { return kColours; }

bool Frm10SelectMarker::tableColour(std::string_view name, engine::Rgb& out) {
    for (const auto& c : kColours) {
        if (name == c.name) {
            out = c.colour;
            return true;
        }
    }
    return false;
}

MarkerSymbol Frm10SelectMarker::symbol() const {
    static constexpr MarkerSymbol kSymbols[] = {
        MarkerSymbol::Sphere,      MarkerSymbol::SphereText,    MarkerSymbol::SphereCoordinates,
        MarkerSymbol::Cylinder,    MarkerSymbol::CylSphere,     MarkerSymbol::DirCylSphere,
        MarkerSymbol::CylDiamond,  MarkerSymbol::DirCylDiamond, MarkerSymbol::ConeUpright,
        MarkerSymbol::ConePointer, MarkerSymbol::VirginStress,
    };
    for (std::size_t i = 0; i < std::size(kSymbolOptions); ++i)
        if (optionValue(kSymbolOptions[i])) return kSymbols[i];
    return MarkerSymbol::None;
}

MarkerPlacement Frm10SelectMarker::placement() const {
    if (optionValue("optMarkerTop")) return MarkerPlacement::Top;
    if (optionValue("optMarkerCentre")) return MarkerPlacement::Centre;
    return MarkerPlacement::Bottom;
}

MarkerLink Frm10SelectMarker::link() const {
    if (optionValue("optConDirectComment")) return MarkerLink::Comment;
    if (optionValue("optConDirectPhoto")) return MarkerLink::Photo;
    return MarkerLink::None;
}

bool Frm10SelectMarker::usesSphere(MarkerSymbol s) {
    switch (s) {
        case MarkerSymbol::Sphere:
        case MarkerSymbol::SphereText:
        case MarkerSymbol::SphereCoordinates:
        case MarkerSymbol::CylSphere:
        case MarkerSymbol::DirCylSphere:
        case MarkerSymbol::CylDiamond:
        case MarkerSymbol::DirCylDiamond:
            return true;
        default:
            return false;
    }
}

bool Frm10SelectMarker::usesCylinder(MarkerSymbol s) {
    switch (s) {
        case MarkerSymbol::None:
        case MarkerSymbol::Sphere:
        case MarkerSymbol::SphereText:
        case MarkerSymbol::SphereCoordinates:
            return false;
        default:
            return true;
    }
}

engine::Rgb Frm10SelectMarker::currentColour() const {
    const std::string& name = text("cboMarkerColour");
    engine::Rgb c;
    if (tableColour(name, c)) return c;
    if (name == kColourBox || name == kColourSelect) return colourBox;
    tableColour("Red", c);
    return c;
}

bool Frm10SelectMarker::P_subMarkerAccept() {
    if (ctx_) ctx_->pointer(kPickPointer);
    const MarkerSymbol s = symbol();
    auto refuse = [this](const char* message, const char* title) {
        if (ctx_) ctx_->ui.msgBox(message, ui::Buttons::OK, title);
        return false;
    };
    if (s == MarkerSymbol::None) return refuse(kNoTypeText, kNoTypeTitle);
    if (usesSphere(s) && valText(text("cboSphereRadius")) == 0)
        return refuse(kDimensionText, kDimensionTitle);
    if (usesCylinder(s) &&
        (valText(text("cboCylDiameter")) == 0 || valText(text("cboCylLength")) == 0))
        return refuse(kDimensionText, kDimensionTitle);

    if (text("cboMarkerColour") == kColourSelect && ctx_) {
        if (auto chosen = ctx_->ui.chooseColour(colourBox)) colourBox = *chosen;
    }
    lngMarkerColour = currentColour();
    hide();
    if (ctx_) {
        ctx_->state.setToolFlag("bolMarker", true);
        ctx_->comment(kPrompt);
    }
    return true;
}

void Frm10SelectMarker::onQueryClose() {
    hide();
    if (ctx_) ctx_->state.bolDialogCancelled = true;
}

}  // namespace forms
