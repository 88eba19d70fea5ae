// The two-point meshes: three pyramids and two prisms.
#include <cmath>

#include "builders/Meshes.h"
#include "builders/RingTools.h"
#include "engine/Engine.h"

namespace builders {

using engine::Engine;
using engine::Handle;
using engine::Point3;

Handle fncCreateCone(Engine& eng, const Point3& dblBase, const Point3& dblApex, double dblDiameter,
                     const engine::Rgb& lngColour) {
    SolidRecipe r;
    r.groupName = kCone8Group;
    r.flatRing = octagonRing(dblDiameter / 2);
    r.rule = YRule::Greater;
    r.byLocation = true;
    return buildPyramid(eng, r, dblBase, dblApex, lngColour);
}

Handle P_fncCreate4Cone(Engine& eng, bool bolNoBase, const Point3& dblBase, const Point3& dblApex,
                        double dblWidth, double dblHeight, const engine::Rgb& lngColour) {
    SolidRecipe r;
    r.groupName = kCone4Group;
    r.flatRing = rectangleRing(dblHeight / 2, dblWidth / 2);
    r.rule = YRule::GreaterOrEqual;
    r.byLocation = true;
    r.dropFirstRing = bolNoBase;
    return buildPyramid(eng, r, dblBase, dblApex, lngColour);
}

Handle P_fncCreate3Cone(Engine& eng, const Point3& dblBase, const Point3& dblApex,
                        double dblDiameter, const engine::Rgb& lngColour) {
    SolidRecipe r;
    r.groupName = kCone3Group;
    r.flatRing = triangleRing(dblDiameter / 2);
    r.rule = YRule::GreaterOrEqual;
    r.byLocation = false;
    return buildPyramid(eng, r, dblBase, dblApex, lngColour);
}

Handle P_fncCreateCylinder(Engine& eng, const Point3& dblStart, const Point3& dblEnd,
                           double dblDiameter, const engine::Rgb& lngColour) {
    SolidRecipe r;
    r.groupName = kCylinderGroup;
    r.flatRing = octagonRing(dblDiameter / 2);
    r.rule = YRule::Greater;
    r.byLocation = true;
    r.finish = Finish::FillAddGroup;
    return buildPrism(eng, r, dblStart, dblEnd, lngColour);
}

Handle P_fncCreateWedge(Engine& eng, const Point3& dblStart, const Point3& dblEnd,
                        double dblDiameter, const engine::Rgb& lngColour) {
    SolidRecipe r;
    r.groupName = kWedgeGroup;
    r.flatRing = triangleRing(dblDiameter / 2);
    r.rule = YRule::GreaterOrEqual;
    r.byLocation = false;
    r.finish = Finish::AddFillGroup;
    return buildPrism(eng, r, dblStart, dblEnd, lngColour);
}

}  // namespace builders
