#pragma once
// One leg of the excavation tool between two picked points: the section chosen in
// frm12_Excavation, the line's place on the section, sizes in metres as typed.

#include "builders/BuilderMessages.h"
#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace builders {

// The type options of frm12_Excavation.
enum class TubeSection {
    CrossPolyLine,  // optCrossPolyLine: string
    Tunnel,         // optExcTunnel: excavation, width and height
    Cylinder,       // optExcCylinder
    Wedge,          // optExcWedge
    Cone4,          // optExc4Cone: four-sided pyramid, width and height, with its base
    Cone8,          // optExc8Cone
    Cone3,          // optExc3Cone
};

// Where the picked line lies on the section (optLineBottom, optLineCentre, optLineTop).
enum class LinePosition { Bottom, Centre, Top };

struct TubeLegRequest {
    TubeSection section = TubeSection::Tunnel;
    LinePosition position = LinePosition::Centre;
    engine::Point3 start, end;  // the picked points, scene units
    double widthMetres = 0;     // width or diameter box
    double heightMetres = 0;    // height box (read only where the section has a height)
    engine::Rgb colour{128, 128, 255};
};

// The section's vertical size in scene units, which the line position shifts by half:
// the height for the tunnel and the four-sided pyramid, the diameter for the other
// solids, 0 for the string.
double tubeVerticalSize(const TubeLegRequest& request);

// The box a null handle of that section's builder shows: the string shares the
// excavation's, the wedge the cylinder's, the three-sided pyramid the cone's.
BuilderFailure tubeLegFailure(TubeSection section);

// Builds the leg from start to end (both raised by half the vertical size for a line
// at the bottom, lowered for one at the top), records its group in
// F_h_lngAddedGroups and hangs it under F_h_lngAddedInfoGroup. On a null handle: the
// builder's box titled "Error" and 0, nothing recorded.
engine::Handle buildTubeLeg(core::AppContext& ctx, const TubeLegRequest& request);

}  // namespace builders
