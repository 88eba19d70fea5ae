#pragma once
// The excavation dialog: the section of a tube (string, tunnel, cylinder, wedge,
// three pyramids), its size in metres, where the picked line lies on the section
// and the colour. The tube tool picks the line afterwards; the Map3D string
// reader uses the dialog for shape and size only, its colours coming from the file.

#include <functional>
#include <string>

#include "engine/Types.h"
#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace forms {

class Frm12Excavation : public Form {
public:
    static constexpr const char* kName = "frm12_Excavation";
    // The type options, in the order of the dialog.
    static constexpr const char* kTypeOptions[] = {
        "optCrossPolyLine", "optExcTunnel", "optExcCylinder", "optExcWedge",
        "optExc4Cone",      "optExc8Cone",  "optExc3Cone",
    };
    static constexpr const char* kSizeError =
        "A blank or zero value as a dimension is unacceptable";
    static constexpr const char* kSizeErrorTitle = "Selection error";
    static constexpr const char* kPickPrompt = "Select a position for the excavation";

    // ctx may be null: the dialog then only keeps its values (no boxes, no colour
    // dialog, no status line).
    explicit Frm12Excavation(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }
    // The dialog of the window, made and registered on first use.
    static Frm12Excavation& of(core::AppContext& ctx);

    std::string acceptButton() const override { return "cmdOK"; }
    void onQueryClose() override;
    // Shows a catalogue of standard sections that fills this dialog.
    void openCatalogue(const char* name);

    // The accept button: a width or height that reads as 0 (a blank is 0) is
    // refused with a box and the dialog stays; else the colour is taken, the
    // dialog hides and, unless a reader uses the dialog, the status line asks for
    // the position and onAccepted arms the tool.
    void P_subAcceptExcavationDimensions();

    // The type option that is on ("" when none is) and the line position:
    // "optLineBottom", "optLineCentre" or "optLineTop".
    std::string selectedType() const;
    std::string selectedLinePosition() const;
    // Width and height boxes read as numbers, in metres.
    double widthMetres() const;
    double heightMetres() const;

    // The colour of a cboExcavationColour entry; "Colour Box" is the colour last
    // chosen, an unknown text the light blue of tunnels. "Colour Select" is asked
    // from the colour dialog when the dialog is accepted.
    static engine::Rgb excavationColourFor(const std::string& entry, const engine::Rgb& colourBox);

    // Readers that colour by their file switch the colour choice off while they
    // use the dialog (and on again after).
    void setColourChoiceEnabled(bool on);
    bool colourChoiceEnabled() const { return colourChoice_; }

    // lngExcavationColour: the colour the tool builds with.
    engine::Rgb lngExcavationColour{128, 128, 255};
    // The colour last chosen in the colour dialog ("Colour Box").
    engine::Rgb colourBox{128, 128, 255};
    // Closed by its frame or Cancel (the caller clears it).
    bool cancelled = false;
    // What the accept leads to when the tool uses the dialog (the picking).
    std::function<void()> onAccepted;

private:
    void relabel();
    void chooseColour();

    core::AppContext* ctx_;
    bool colourChoice_ = true;
};

}  // namespace forms
