#include "forms/Frm12Excavation.h"

#include <cstring>

#include "core/AppContext.h"
#include "core/LenientNumber.h"

namespace forms {

namespace {

struct TypeLabels {
    const char* option;
    const char* frameCaption;
    const char* widthCaption;
    bool heightShown;
};

constexpr TypeLabels kTypeLabels[] = {
    {"optCrossPolyLine", "Line thickness", "Diameter", false},
    {"optExcTunnel", "Excavation dimensions", "Width", true},
    {"optExcCylinder", "Cylinder diameter", "Diameter", false},
    {"optExcWedge", "Wedge diameter", "Diameter", false},
    {"optExc4Cone", "Pyramid dimensions", "Width", true},
    {"optExc8Cone", "Cone diameter", "Diameter", false},
    {"optExc3Cone", "Pyramid diameter", "Diameter", false},
};

struct NamedColour {
    const char* entry;
    engine::Rgb colour;
};

// The standard colours; 2 in place of 0 is what the standards always used.
constexpr NamedColour kColours[] = {
    {"Light blue(tunnels)", {126, 126, 253}},
    {"Dark blue (tunnels)", {2, 2, 190}},
    {"Dark grey (raises)", {62, 62, 62}},
    {"Light grey (gullies)", {190, 190, 190}},
    {"Light purple (cylinders)", {222, 158, 253}},
    {"Red (High stress support)", {253, 2, 2}},
    {"Orange (Mesh and lace)", {253, 126, 2}},
    {"Yellow (Shotcrete)", {253, 253, 2}},
    {"Pink (Mesh only)", {253, 126, 190}},
    {"White (Shotcrete required)", {253, 253, 253}},
    {"Light green (Cables required)", {190, 253, 190}},
    {"Brown (Sidewall slabbing - HS)", {190, 62, 30}},
    {"Mustard (HW unravelling)", {158, 158, 2}},
    {"Blue (Ventilation intake)", {62, 62, 253}},
    {"Red (Ventilation return)", {253, 62, 62}},
};
constexpr const char* kColourBox = "Colour Box";
constexpr const char* kColourSelect = "Colour Select";

}  // namespace

Frm12Excavation::Frm12Excavation(core::AppContext* ctx) : Form(kName, "Excavation"), ctx_(ctx) {
    add(ControlKind::Frame, "fraExcavationType", "Type");
    const char* typeCaptions[] = {"String",       "Tunnel",       "Cylinder",    "Wedge",
                                  "4-sided cone", "8-sided cone", "3-sided cone"};
    for (std::size_t i = 0; i < std::size(kTypeOptions); ++i)
        add(ControlKind::OptionButton, kTypeOptions[i], typeCaptions[i], "fraExcavationType")
            .onChange = [this] { relabel(); };
    at("optExcTunnel").value = 1;

    add(ControlKind::Frame, "fraExcavationDimensions", "Excavation dimensions");
    add(ControlKind::Label, "lblExcavationWidth", "Width", "fraExcavationDimensions");
    auto& width = add(ControlKind::ComboBox, "cboExcavationWidth", "", "fraExcavationDimensions");
    add(ControlKind::Label, "lblExcavationHeight", "Height", "fraExcavationDimensions");
    auto& height = add(ControlKind::ComboBox, "cboExcavationHeight", "", "fraExcavationDimensions");
    width.items = height.items = {"0.5", "1.0", "1.5", "2.0", "2.5", "3.0",
                                  "3.5", "4.0", "4.5", "5.0", "6.0"};
    width.text = "3.0";
    height.text = "3.0";

    add(ControlKind::Frame, "fraLinePosition", "Position of the picked line");
    add(ControlKind::OptionButton, "optLineBottom", "Line at the bottom", "fraLinePosition");
    add(ControlKind::OptionButton, "optLineCentre", "Line in the centre", "fraLinePosition").value =
        1;
    add(ControlKind::OptionButton, "optLineTop", "Line at the top", "fraLinePosition");

    add(ControlKind::Frame, "fraExcavationColour", "Colour");
    auto& colour = add(ControlKind::ComboBox, "cboExcavationColour", "", "fraExcavationColour");
    for (const auto& c : kColours) colour.items.emplace_back(c.entry);
    colour.items.emplace_back(kColourBox);
    colour.items.emplace_back(kColourSelect);
    colour.text = kColours[0].entry;
    add(ControlKind::CommandButton, "cmdColourSelect", "Colour...", "fraExcavationColour")
        .onChange = [this] { chooseColour(); };

    add(ControlKind::CheckBox, "chkPickUpAttributes",
        "Pick up the information and colour of the picked polygon");
    add(ControlKind::CommandButton, "cmdOK", "Accept").onChange = [this] {
        P_subAcceptExcavationDimensions();
    };
    add(ControlKind::CommandButton, "cmdCancel", "Cancel").onChange = [this] {
        cancelled = true;
        hide();
    };
    // The catalogues write their row into this dialog and accept it or leave it open.
    add(ControlKind::CommandButton, "cmdStandardExcavations", "Standard excavations...").onChange =
        [this] { openCatalogue("frm13_SelectExcStandard"); };
    add(ControlKind::CommandButton, "cmdStandardLineMarkers", "Standard line markers...").onChange =
        [this] { openCatalogue("frm14_SelectLMStandard"); };
    relabel();
}

Frm12Excavation& Frm12Excavation::of(core::AppContext& ctx) {
    auto* f = dynamic_cast<Frm12Excavation*>(ctx.forms.find(kName));
    if (!f) {
        ctx.forms.add(std::make_unique<Frm12Excavation>(&ctx));
        f = dynamic_cast<Frm12Excavation*>(ctx.forms.find(kName));
    }
    return *f;
}

void Frm12Excavation::openCatalogue(const char* name) {
    if (!ctx_) return;
    if (Form* f = ctx_->forms.find(name)) ctx_->ui.showModal(*f);
}

void Frm12Excavation::onQueryClose() {
    cancelled = true;
    hide();
}

void Frm12Excavation::relabel() {
    const std::string type = selectedType();
    for (const auto& t : kTypeLabels) {
        if (type != t.option) continue;
        at("fraExcavationDimensions").caption = t.frameCaption;
        at("lblExcavationWidth").caption = t.widthCaption;
        at("lblExcavationHeight").visible = t.heightShown;
        at("cboExcavationHeight").visible = t.heightShown;
    }
}

std::string Frm12Excavation::selectedType() const {
    for (const char* name : kTypeOptions)
        if (optionValue(name)) return name;
    return {};
}

std::string Frm12Excavation::selectedLinePosition() const {
    for (const char* name : {"optLineBottom", "optLineCentre", "optLineTop"})
        if (optionValue(name)) return name;
    return {};
}

double Frm12Excavation::widthMetres() const { return core::valNumber(text("cboExcavationWidth")); }
double Frm12Excavation::heightMetres() const {
    return core::valNumber(text("cboExcavationHeight"));
}

engine::Rgb Frm12Excavation::excavationColourFor(const std::string& entry, const engine::Rgb& box) {
    if (entry == kColourBox || entry == kColourSelect) return box;
    for (const auto& c : kColours)
        if (entry == c.entry) return c.colour;
    return kColours[0].colour;
}

void Frm12Excavation::setColourChoiceEnabled(bool on) {
    colourChoice_ = on;
    at("cboExcavationColour").enabled = on;
    at("cmdColourSelect").enabled = on;
}

void Frm12Excavation::chooseColour() {
    if (ctx_ == nullptr) return;
    if (auto c = ctx_->ui.chooseColour(colourBox)) {
        colourBox = *c;
        setText("cboExcavationColour", kColourBox);
    }
}

void Frm12Excavation::P_subAcceptExcavationDimensions() {
    if (widthMetres() == 0 || heightMetres() == 0) {
        if (ctx_) ctx_->ui.msgBox(kSizeError, ui::Buttons::OK, kSizeErrorTitle);
        return;
    }
    if (colourChoice_) {
        const std::string& entry = text("cboExcavationColour");
        if (entry == kColourSelect && ctx_ != nullptr) {
            if (auto c = ctx_->ui.chooseColour(colourBox)) colourBox = *c;
        }
        lngExcavationColour = excavationColourFor(entry, colourBox);
    }
    cancelled = false;
    hide();
    if (!colourChoice_) return;  // a reader's use: no picking follows
    if (ctx_) ctx_->status(1, kPickPrompt);
    if (onAccepted) onAccepted();
}

}  // namespace forms
