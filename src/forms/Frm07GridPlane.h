#pragma once
// The grid plane dialog: where the plane stands (its centre, typed or picked),
// how it lies, its size, the spacing of its grid lines and its colour.

#include <functional>
#include <optional>
#include <string>

#include "engine/Types.h"
#include "forms/Form.h"

namespace forms {

enum class GridOrientation { Horizontal, VerticalEastWest, VerticalNorthSouth };

class Frm07GridPlane : public Form {
public:
    static constexpr const char* kName = "frm07_GridPlane";
    static constexpr const char* kColourSelect = "Colour Select";
    // Grid lines one way at most; a finer grid is refused.
    static constexpr int kMaxLines = 500;

    Frm07GridPlane();

    std::string acceptButton() const override { return "cmdAcceptGridPlane"; }
    void onQueryClose() override { hide(); }

    // Checks the values and hides the form; false (the form stays up) after a
    // refusing message given to onRefuse.
    bool P_subAcceptGridPlane();

    // The values in metres as typed.
    engine::Point3 centreMetres() const;
    void setCentreMetres(const engine::Point3& p);
    double lengthMetres() const;
    double widthMetres() const;
    double spacingMetres() const;
    GridOrientation orientation() const;
    engine::Rgb colour() const;
    // The last colour of the colour dialog ("Colour Select").
    engine::Rgb colourSelected{160, 160, 160};

    std::function<void(const char* text, const char* title)> onRefuse;
    std::function<std::optional<engine::Rgb>(engine::Rgb)> chooseColour;
    std::function<void()> onAccepted;
    // cmdPickCentre: the form is hidden and the centre is to be picked.
    std::function<void()> onPickCentre;
    // True once the dialog was accepted (and not picked away) since it was shown.
    bool accepted = false;
};

}  // namespace forms
