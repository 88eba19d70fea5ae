#pragma once
// The plane dialog: how a slab for a fault, dyke, joint, bedding plane or a
// bulkhead is defined (one point with its orientation, two points with a dip, or
// three points), its size, thickness and colour. The pick tool then collects the
// points; the dispatcher reads the values through the accessors below.

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

enum class PlaneMode { None, OnePoint, TwoPoints, ThreePoints };

class Frm15DiscPlane : public Form {
public:
    static constexpr const char* kName = "frm15_DiscPlane";
    static constexpr const char* kColourBox = "Colour Box";
    static constexpr const char* kColourSelect = "Colour Select";
    static constexpr const char* kDefaultColour = "Fault plane 2 (purple - default)";
    static constexpr const char* kPrompt = "Select a position for the plane";
    static constexpr const char* kHorCentre = "Horizontal offset from the centre point:";
    static constexpr const char* kVertCentre = "Vertical offset from the centre point:";
    static constexpr const char* kHorSelected = "Horizontal offset from the selected points:";
    static constexpr const char* kVertSelected = "Vertical offset from the selected points:";

    // ctx may be null: accepting then only checks the values and hides the form.
    explicit Frm15DiscPlane(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return "cmdAcceptPlaneType"; }
    void onQueryClose() override;

    // The named colours in the order the colour box lists them.
    static const std::array<NamedColour, 18>& colours();
    // The colour of a table name; false for "Colour Box", "Colour Select" and
    // names the table does not hold.
    static bool tableColour(std::string_view name, engine::Rgb& out);

    // The pole pair follows the plane pair and the other way round through these
    // conversions (the geometry layer attaches them; without them nothing follows).
    using Conversion = double (*)(double&);
    void attachPoleConversions(Conversion dipToPlunge, Conversion dipDirToTrend);

    // Checks the values, arms the tool for the chosen mode, takes the colour, sets
    // the pick pointer, hides the form, prompts and draws a frame. Stays open
    // (false) after a refusing message.
    bool P_subAcceptPlaneType();

    PlaneMode mode() const;
    // The colour the planes are built with: the table's for a table name, the
    // colour box's for "Colour Box" and "Colour Select" (no dialog here).
    engine::Rgb currentColour() const;
    // The colour set by the last accept.
    engine::Rgb lngDiscPlaneColour{252, 3, 252};
    // The last colour of the colour dialog ("Colour Box").
    engine::Rgb colourBox{252, 3, 252};

private:
    void planeTypeChanged();
    // Writes the partner box of a pair; the write does not echo back.
    void follow(const char* from, const char* to, Conversion conversion);
    bool refuse(const char* text, const char* title);

    core::AppContext* ctx_;
    Conversion dipToPlunge_ = nullptr;
    Conversion dipDirToTrend_ = nullptr;
    bool following_ = false;
};

}  // namespace forms
