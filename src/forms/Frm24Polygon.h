#pragma once
// The hand-built polygon dialog: what follows each three-point polygon (a fan
// about the first point, a strip along the last edge, or a new polygon) and the
// colour.

#include <functional>
#include <optional>
#include <string>

#include "engine/Types.h"
#include "forms/Form.h"

namespace forms {

enum class PolygonFollow { Fan, Strip, New };

class Frm24Polygon : public Form {
public:
    static constexpr const char* kName = "frm24_Polygon";
    static constexpr const char* kColourSelect = "Colour Select";

    Frm24Polygon();
    std::string acceptButton() const override { return "cmdOK"; }
    void onQueryClose() override;

    PolygonFollow follow() const;
    // The colour of a cboPolygonColour entry ("Colour Select" gives colourBox).
    engine::Rgb colourFor(const std::string& entry) const;

    engine::Rgb lngPolygonColour{123, 123, 250};
    engine::Rgb colourBox{123, 123, 250};
    bool cancelled = false;
    // Asked on accept for "Colour Select" (none: the last colour stays).
    std::function<std::optional<engine::Rgb>(engine::Rgb)> chooseColour;
    std::function<void()> onAccepted;
};

}  // namespace forms
