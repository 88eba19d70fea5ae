#pragma once
// What a tool keeps between two clicks beyond its flags: the points taken so far,
// the running length, the attributes picked up. One per open window.

#include <string>

#include "engine/Types.h"

namespace core {
class AppContext;
}
namespace forms {
class Form;
}

namespace tools {

struct ToolSession {
    engine::Point3 firstPoint;         // the start of a measure, an excavation leg or a plane
    engine::Point3 secondPoint;        // the second point of three-point planes and polygons
    engine::Point3 thirdPoint;         // the last point of a polygon
    double dblCumLength = 0;           // scene units
    engine::Handle hMeasureGroup = 0;  // the group the yellow lines go into

    // Pick-up of attributes by the excavation tool.
    bool pickedUp = false;
    std::string pickedName;
    engine::Rgb pickedColour;

    // The point move tool: the picked object and its fixed end.
    engine::Handle moveGroup = 0;
    engine::Point3 moveFixed;
    std::string moveName;
    engine::Rgb moveColour;
    bool moveWasTube = false;  // "Tube" or "Line" by the first snap box

    // Which form asked for the obtained colour ("" none).
    std::string colourAskedBy;

    // Snapping: true when the last pick found nothing; the polygon it found.
    bool bolSnapFailed = false;
    engine::Handle hSnapPolygon = 0;
};

// The session of this window; made by registerTools (a fresh one for every context).
ToolSession& toolSession(core::AppContext& ctx);
// Forgets the session of this window (the next toolSession starts a fresh one).
void resetToolSession(core::AppContext& ctx);

// The main form, made and loaded on first use.
forms::Form& mainForm(core::AppContext& ctx);

// A number as the tools write it: rounded half away from zero to `decimals`
// places, never "-0".
std::string fixedText(double v, int decimals);

}  // namespace tools
