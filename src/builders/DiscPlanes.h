#pragma once
// Discontinuity planes: faults, dykes, joints and bedding, and the mine's own flat
// structures (bulkheads, ventilation doors and seals), drawn as thin slabs. The
// builders take engine units and report nothing; the placing procedures read the
// plane dialog, show the failure box, name the slab with its mapping record and
// hang it under the tool's added-information group.

#include <string>

#include "engine/Types.h"
#include "ui/Ui.h"

namespace engine {
class Engine;
}
namespace core {
class AppContext;
}
namespace forms {
class Frm15DiscPlane;
}

namespace builders {

inline constexpr const char* kDiscPlaneGroup = "FinalDiscPlane";
inline constexpr engine::Rgb kPoleColour{150, 150, 150};
inline constexpr double kPoleDiameter = 5.0;

// Slab through P1 and P2 (each extended outwards by dblHorOffset along the line)
// dipping dblDip degrees to the right of the line seen from above, reaching
// dblVertOffset along the plane to either side, dblThickness thick. Faces: top,
// bottom, then the four sides; only top and bottom for a thickness of 0. A dip of
// exactly 0 is taken as a tiny one so that a level plane can be built. The group
// is 0 only when it could not be made; degenerate input leaves it empty.
engine::Handle P_fncCreate2PointDiscPlane(engine::Engine& eng, const engine::Point3& P1,
                                          const engine::Point3& P2, double dblDip,
                                          double dblHorOffset, double dblVertOffset,
                                          double dblThickness, const engine::Rgb& lngColour);
// The same, also giving the unit normal of the slab's mid-surface (its top side),
// (0, 0, 0) when the corners do not make a plane.
engine::Handle createDiscPlane(engine::Engine& eng, const engine::Point3& P1,
                               const engine::Point3& P2, double dblDip, double dblHorOffset,
                               double dblVertOffset, double dblThickness,
                               const engine::Rgb& lngColour, engine::Point3& normal);

// Slab through the three points, centred on their mean, dblHorOffset to either side
// along the strike.
engine::Handle P_fncCreate3PointDiscPlane(engine::Engine& eng, const engine::Point3& P1,
                                          const engine::Point3& P2, const engine::Point3& P3,
                                          double dblHorOffset, double dblVertOffset,
                                          double dblThickness, const engine::Rgb& lngColour);
engine::Handle createDiscPlane3(engine::Engine& eng, const engine::Point3& P1,
                                const engine::Point3& P2, const engine::Point3& P3,
                                double dblHorOffset, double dblVertOffset, double dblThickness,
                                const engine::Rgb& lngColour, engine::Point3& normal);

// The two points A and B on the strike through P of the plane whose pole has that
// trend and plunge (degrees, plunge positive downwards). With bolShowPole a grey
// cylinder of diameter 5 is drawn from P along the pole and hPole is its group
// (else 0).
void P_subPlanePointsFromPole(engine::Engine& eng, float sngNorthAxis, const engine::Point3& P,
                              double dblTrend, double dblPlunge, bool bolShowPole,
                              engine::Handle& hPole, engine::Point3& A, engine::Point3& B);
void P_subPlanePointsFromPole(core::AppContext& ctx, const engine::Point3& P, double dblTrend,
                              double dblPlunge, bool bolShowPole, engine::Handle& hPole,
                              engine::Point3& A, engine::Point3& B);

// The mapping record every polygon of a placed slab carries: "PR_UGmap", date,
// time, "Dip (degrees):", dip, "Direction (degrees):", direction, CR LF between.
std::string discPlaneRecord(const ui::DateTime& when, double dblDip, double dblDipDirection);

// The plane dialog of the window, made and wired on first use.
forms::Frm15DiscPlane& discPlaneForm(core::AppContext& ctx);

// What the pick tool builds with the dialog's values (engine units), after a pick
// of one, two or three points. Each returns the slab's group, or 0 after the box
// "Null handle from P_fncCreate2PointDiscPlane" (the pole's box "Null handle from
// P_fncCreateCylinder" when the pole fails).
engine::Handle placeDiscPlaneOnePoint(core::AppContext& ctx, const engine::Point3& P);
engine::Handle placeDiscPlaneTwoPoints(core::AppContext& ctx, const engine::Point3& P1,
                                       const engine::Point3& P2);
engine::Handle placeDiscPlaneThreePoints(core::AppContext& ctx, const engine::Point3& P1,
                                         const engine::Point3& P2, const engine::Point3& P3);

}  // namespace builders
