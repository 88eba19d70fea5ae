#pragma once
// The marker dialog: which symbol is placed at a picked point, its sizes in
// metres, whether its foot, middle or head goes on the point, its colour and what
// follows the placing (a comment, a photograph link or nothing).

#include <array>
#include <string>
#include <string_view>

#include "engine/Types.h"
#include "forms/Form.h"
#include "forms/NamedColour.h"

namespace core {
class AppContext;
}

namespace forms {

enum class MarkerSymbol {
    None,
    Sphere,             // optSphere
    SphereText,         // optSphereText
    SphereCoordinates,  // optSphereCoordinates
    Cylinder,           // optCylinder
    CylSphere,          // optCylSphere
    DirCylSphere,       // optDirCylSphere
    CylDiamond,         // optCylDiamond
    DirCylDiamond,      // optDirCylDiamond
    ConeUpright,        // optConeUpright
    ConePointer,        // optConePointer
    VirginStress,       // optVirginStress
};
enum class MarkerPlacement { Bottom, Centre, Top };
enum class MarkerLink { None, Comment, Photo };

class Frm10SelectMarker : public Form {
public:
    static constexpr const char* kName = "frm10_SelectMarker";
    static constexpr const char* kColourBox = "Colour Box";
    static constexpr const char* kColourSelect = "Colour Select";
    static constexpr const char* kPrompt = "Select a position for the selected marker";
    static constexpr const char* kNoTypeText = "Select the Marker type";
    static constexpr const char* kNoTypeTitle = "No Marker selected";
    static constexpr const char* kDimensionText =
        "A blank or zero value as a dimension is unacceptable";
    static constexpr const char* kDimensionTitle = "Selection error";
    // The symbol options in the order the dialog shows them.
    static constexpr const char* kSymbolOptions[] = {
        "optSphere",      "optSphereText",   "optSphereCoordinates", "optCylinder",
        "optCylSphere",   "optDirCylSphere", "optCylDiamond",        "optDirCylDiamond",
        "optConeUpright", "optConePointer",  "optVirginStress",
    };

    // ctx may be null: accepting then only checks the values and hides the form.
    explicit Frm10SelectMarker(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return "cmdMarkerAccept"; }
    void onQueryClose() override;

    static const std::array<NamedColour, 13>& colours();
    static bool tableColour(std::string_view name, engine::Rgb& out);

    // Checks the symbol and its sizes, takes the colour, arms the marker tool,
    // hides the form and prompts. Stays open (false) after a refusing message.
    bool P_subMarkerAccept();

    MarkerSymbol symbol() const;
    MarkerPlacement placement() const;
    MarkerLink link() const;
    // Symbols drawn with a sphere (or a diamond sized by the sphere radius), and
    // with the cylinder boxes' diameter and length.
    static bool usesSphere(MarkerSymbol s);
    static bool usesCylinder(MarkerSymbol s);

    engine::Rgb currentColour() const;
    engine::Rgb lngMarkerColour{250, 5, 5};
    engine::Rgb colourBox{250, 5, 5};

private:
    core::AppContext* ctx_;
};

}  // namespace forms
