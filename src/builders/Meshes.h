#pragma once
// The primitive meshes every marker, event, cable and pointer is drawn with. Each
// builder makes one fresh group with a fixed name, fills it with convex polygons
// and returns the group; polygons get no name. Sizes are scene units (decimetres).
//
// Builders report nothing and never fail on bad geometry: a polygon the engine
// refuses (zero area, equal points) is deleted and the rest is built. The group
// handle is 0 only when the group itself could not be made. Coordinates or sizes
// that are not finite give the named group with no polygons in it.
//
// Origin builders (sphere, cube) build around the origin; the caller places the
// group. Two-point builders build in place between a first point F and a second
// point T: the ring at F faces away from T.

#include <array>
#include <limits>

#include "engine/Types.h"

namespace engine {
class Engine;
}

namespace builders {

inline constexpr const char* kSphereGroup = "Sphere";
inline constexpr const char* kCubeGroup = "CubeGroup";
inline constexpr const char* kCone8Group = "8ConePolyGroup";
inline constexpr const char* kCone4Group = "4ConePolyGroup";
inline constexpr const char* kCone3Group = "3ConePolyGroup";
inline constexpr const char* kCylinderGroup = "CylPolyGroup";
inline constexpr const char* kWedgeGroup = "3WedgePolyGroup";

// Sphere centred on the origin, pole on z: 2m + 2m(n - 2) triangles, north cap,
// bands (two triangles each), south cap. n = 2 is a double pyramid. Fewer than two
// latitude bands or fewer than one longitude band leaves the group empty.
engine::Handle P_fncCreateSphere(engine::Engine& eng, double dblRadius, short intLatitudeBands,
                                 short intLongitudeBands, const engine::Rgb& lngColour);

// A size in single precision as the cube takes it; beyond the range an infinity.
inline float toSingle(double d) {
    constexpr double kMax = std::numeric_limits<float>::max();
    if (d > kMax) return std::numeric_limits<float>::infinity();
    if (d < -kMax) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(d);
}

// Box centred on the origin with full sizes along x, y and z: three pairs of faces,
// each pair a face and its flipped, moved duplicate (z, then x, then y).
engine::Handle P_fncCreateCube(engine::Engine& eng, const std::array<float, 3>& sngDimensions,
                               const engine::Rgb& lngColour);

// Eight-sided pyramid: base ring centred on dblBase, tip at dblApex.
engine::Handle fncCreateCone(engine::Engine& eng, const engine::Point3& dblBase,
                             const engine::Point3& dblApex, double dblDiameter,
                             const engine::Rgb& lngColour);

// Four-sided pyramid with a rectangular base: dblHeight along the ring's x, dblWidth
// along its y. With bolNoBase the base is left out (four polygons).
engine::Handle P_fncCreate4Cone(engine::Engine& eng, bool bolNoBase, const engine::Point3& dblBase,
                                const engine::Point3& dblApex, double dblWidth, double dblHeight,
                                const engine::Rgb& lngColour);

// Three-sided pyramid.
engine::Handle P_fncCreate3Cone(engine::Engine& eng, const engine::Point3& dblBase,
                                const engine::Point3& dblApex, double dblDiameter,
                                const engine::Rgb& lngColour);

// Eight-sided closed prism: ring at the start, flipped ring at the end, eight sides.
engine::Handle P_fncCreateCylinder(engine::Engine& eng, const engine::Point3& dblStart,
                                   const engine::Point3& dblEnd, double dblDiameter,
                                   const engine::Rgb& lngColour);

// Three-sided closed prism.
engine::Handle P_fncCreateWedge(engine::Engine& eng, const engine::Point3& dblStart,
                                const engine::Point3& dblEnd, double dblDiameter,
                                const engine::Rgb& lngColour);

}  // namespace builders
