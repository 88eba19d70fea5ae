#pragma once
// Angle and vector operations shared by every builder, tool and colour map: the
// sign conventions of dip, dip direction, trend and plunge live here, for both grid
// orientations (sngNorthAxis 0: north along +x, azimuths towards -y; 0.5: north
// along +y, azimuths towards +x).
//
// Nothing here throws. A zero that would divide is replaced by kDivZero. NaN inputs
// come back as NaN results rather than as made-up angles.

#include <cstdint>
#include <optional>
#include <vector>

#include "core/AngleMath.h"
#include "engine/Types.h"

namespace engine {
class Engine;
}
namespace core {
class AppContext;
}

namespace builders {

using core::ACosDeg;
using core::ACosRad;
using core::ASinDeg;
using core::kDegree;
using core::kDivZero;
using core::kHalfPi;
using core::kPi;
using core::nonZero;
using core::roundHalfEven;
using core::Sgn;

// Rounds to one decimal place, half to even, decided on the decimal value the
// double stands for: its shortest round-trip decimal text (what a person reads,
// e.g. 0.35 and not 0.34999999999999997779...). So 0.25 -> 0.2, 0.35 -> 0.4,
// -0.15 -> -0.2. The result is the double nearest that decimal; -0 becomes 0;
// NaN and infinities pass through.
double roundHalfEven1(double x);

// Array copies: indices 0 to the source's upper bound; a shorter destination grows.
void P_subCopyPoint(std::vector<double>& destination, const std::vector<double>& source);
void P_subCopyPoint(engine::Point3& destination, const engine::Point3& source);
void P_subNegatePoint(std::vector<double>& destination, const std::vector<double>& source);
void P_subNegatePoint(engine::Point3& destination, const engine::Point3& source);
void P_subCopyColour(std::vector<std::int32_t>& destination,
                     const std::vector<std::int32_t>& source);
void P_subCopyColour(engine::Rgb& destination, const engine::Rgb& source);

// Vertical angle of the line a to b in degrees, negative downwards. A vertical line
// gives 0 (the horizontal-ratio rule), kept so.
double P_fncLineVerticalAngle(const engine::Point3& a, const engine::Point3& b);

// Dip and dip direction of a plane's normal (bolPlane) or of a line's direction.
// A zero x or y of dblVector is replaced by kDivZero in the caller's vector. Both
// results are rounded to one decimal, half to even. With bolFullCircle given and
// false the direction folds into 0..180. Any sngNorthAxis other than 0 is taken as
// the +y north.
void P_subDipAndDipDirection(std::optional<bool> bolFullCircle, bool bolFlipSense, bool bolPlane,
                             engine::Point3& dblVector, double& dblDip, double& dblDipDirection,
                             float sngNorthAxis);
// The same with sngNorthAxis of the open window.
void P_subDipAndDipDirection(const core::AppContext& ctx, std::optional<bool> bolFullCircle,
                             bool bolFlipSense, bool bolPlane, engine::Point3& dblVector,
                             double& dblDip, double& dblDipDirection);

// Plunge of the pole of a plane with that dip; the dip is clamped to 0..90 in place.
double P_fncDipToPolePlunge(double& dblDip);
// Trend of the pole; the dip direction is clamped to 0..360 in place.
double P_fncDipDirToPoleTrend(double& dblDipDirection);

// End of a line of that length from start, positive plunge downwards. Trend 0 and 45,
// plunge 45 and 90 are nudged in the caller's variables first.
void P_subTrendPlungeEnd(const engine::Point3& start, double length, double& trend, double& plunge,
                         engine::Point3& end, float sngNorthAxis);
void P_subTrendPlungeEnd(const core::AppContext& ctx, const engine::Point3& start, double length,
                         double& trend, double& plunge, engine::Point3& end);

// p becomes its foot on the line a to b.
void P_subProjectPointOnLine(const engine::Point3& a, const engine::Point3& b, engine::Point3& p);

// Half the product of the polygon's first two edges (first to second point, second to
// third point), in scene units squared; 0 with fewer than three points.
double P_fncPolygonCornerArea(const engine::Engine& eng, engine::Handle hPolygon);
// Distance from the polygon's centre to its first point, times 0.1 (metres).
double P_fncPolygonCornerRadius(const engine::Engine& eng, engine::Handle hPolygon);
// Enclosed volume in cubic metres: the polygons of the group and its descendants (the
// whole scene for group 0) as cones from the centre of mass. A polygon of more than
// three points counts as its first triangle.
double P_fncGroupVolume(const engine::Engine& eng, engine::Handle hGroup);

}  // namespace builders
