#pragma once
// The two-point technique every tube and pointed mesh is built with: a flat ring
// drawn around the origin in the z = 0 plane is turned so that its normal lies
// along the line, taken to the first point, and its vertices read back from the
// engine so that the sides meet the ring whatever rounding the engine applied.

#include <vector>

#include "engine/Types.h"

namespace engine {
class Engine;
}

namespace builders {

// When the z turn is negated: the eight-sided cone and the cylinder negate it when
// the second point lies strictly further along y, every other two-point builder
// also at equal y. The two families differ on purpose.
enum class YRule { Greater, GreaterOrEqual };

struct AxisAngles {
    double rotY = 0;  // degrees, applied first
    double rotZ = 0;  // degrees, applied second
};

// Angles that turn a ring's normal from +z onto the direction F - T (away from T).
// Equal points give 90 and +-90; a vertical line 0 or 180 and +-90.
AxisAngles axisAngles(const engine::Point3& F, const engine::Point3& T, YRule rule);

// Flat rings, vertices in order, z = 0, clockwise seen from +z. The factors are
// literal: the octagon's diagonal vertices lie a little inside the circle.
std::vector<engine::Point3> octagonRing(double r);
std::vector<engine::Point3> rectangleRing(double a, double b);  // a on x, b on y
std::vector<engine::Point3> triangleRing(double r);
std::vector<engine::Point3> squareRing(double h);
std::vector<engine::Point3> circleRing16(double r);

// A ring polygon outside the world, its point handles and its vertex records.
struct Ring {
    engine::Handle polygon = 0;
    std::vector<engine::Handle> points;
    std::vector<engine::ScenePoint> v;  // x, y, z overwritten by readBack
};

Ring createRing(engine::Engine& eng, const std::vector<engine::Point3>& flat);
// rotate_y then rotate_z, always in this order.
void turnRing(engine::Engine& eng, engine::Handle polygon, const AxisAngles& a);
// Eight- and four-vertex rings: the bounding-box centre goes on the point.
void placeByLocation(engine::Engine& eng, engine::Handle polygon, const engine::Point3& p);
// Three-vertex rings: moved by the point minus the polygon's centre.
void placeByCentre(engine::Engine& eng, engine::Handle polygon, const engine::Point3& p);
// The world positions of the ring's points into its vertex records.
void readBack(engine::Engine& eng, Ring& ring);
// The vertices of a polygon in the order the engine walks them.
std::vector<engine::ScenePoint> walkPoints(const engine::Engine& eng, engine::Handle polygon);
// A flipped duplicate reads w(k), w(k - 1), ..., w(1): put back in ring order.
std::vector<engine::ScenePoint> walkPointsReversed(const engine::Engine& eng,
                                                   engine::Handle polygon);

// A free polygon from vertex records.
engine::Handle makePolygon(engine::Engine& eng, std::initializer_list<engine::ScenePoint> pts);
engine::ScenePoint vertexAt(const engine::Point3& p);

// The orders in which the builders finish a polygon. A polygon the engine refuses
// is deleted and its handle cleared; nothing is reported.
enum class Finish {
    AddFillGroup,       // the shared finish
    FillAddGroup,       // cylinder, excavation
    AddUnlitFillGroup,  // string: brightness 0 before the fill
};
void finishPolygon(engine::Engine& eng, engine::Handle& polygon, engine::Handle group,
                   const engine::Rgb& colour, Finish order);

// How a two-point solid is put together.
struct SolidRecipe {
    const char* groupName = "";
    std::vector<engine::Point3> flatRing;
    YRule rule = YRule::GreaterOrEqual;
    bool byLocation = true;  // eight- and four-vertex rings; three-vertex ones by centre
    Finish finish = Finish::AddFillGroup;
    bool dropFirstRing = false;  // the pyramid's base, left out
    bool dropEndRings = false;   // the prism's two ends, left out
};
// Pyramid: polygon 0 the ring at F, polygons 1 to k the triangles v(i), T, v(i + 1).
engine::Handle buildPyramid(engine::Engine& eng, const SolidRecipe& recipe, const engine::Point3& F,
                            const engine::Point3& T, const engine::Rgb& colour);
// Prism: polygon 0 the ring at F, polygon 1 its flipped duplicate at T, then the
// sides v(s), w(s), w(s + 1), v(s + 1).
engine::Handle buildPrism(engine::Engine& eng, const SolidRecipe& recipe, const engine::Point3& F,
                          const engine::Point3& T, const engine::Rgb& colour);

// True when every coordinate is finite; two-point builders given anything else make
// their group and leave it empty.
bool finitePoints(const engine::Point3& a, const engine::Point3& b);

}  // namespace builders
