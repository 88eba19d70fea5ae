#include "builders/Tubes.h"

#include <cmath>
#include <vector>

#include "engine/Engine.h"

namespace builders {

using engine::Engine;
using engine::Handle;
using engine::Point3;
using engine::ScenePoint;

namespace {

Handle finishGroup(Engine& eng, const char* name, std::vector<Handle>& polys,
                   const engine::Rgb& colour, Finish order) {
    const Handle group = eng.group_create(name);
    if (group == 0) {
        for (Handle h : polys) eng.polygon_delete(h);
        return 0;
    }
    for (Handle& h : polys) finishPolygon(eng, h, group, colour, order);
    return group;
}

// Rings kept across calls can go stale when the world is cleared and their handles
// taken by other polygons: use them only while they are still free triangles.
bool ringsUsable(const Engine& eng, const DrillLineRings& rings) {
    if (!rings.prepared()) return false;
    for (const Ring* ring : {&rings.ring1, &rings.ring2}) {
        if (eng.polygon_is_in_world(ring->polygon) ||
            eng.polygon_get_num_of_points(ring->polygon) != 3 || ring->points.size() != 3)
            return false;
    }
    return true;
}

}  // namespace

Handle P_fncCreate3DExcavation(Engine& eng, bool bolNoEnds, const Point3& dblStart,
                               const Point3& dblEnd, double dblWidth, double dblHeight,
                               const engine::Rgb& lngColour) {
    SolidRecipe r;
    r.groupName = kExcavationGroup;
    r.flatRing = rectangleRing(dblHeight / 2, dblWidth / 2);
    r.rule = YRule::GreaterOrEqual;
    r.byLocation = true;
    r.finish = Finish::FillAddGroup;
    r.dropEndRings = bolNoEnds;
    return buildPrism(eng, r, dblStart, dblEnd, lngColour);
}

Handle P_fncCreate3DString(Engine& eng, const Point3& dblStart, const Point3& dblEnd,
                           double dblDiameter, const engine::Rgb& lngColour) {
    const double h = dblDiameter / 2;
    if (!finitePoints(dblStart, dblEnd) || !std::isfinite(h)) return eng.group_create(kStringGroup);
    Ring ring = createRing(eng, squareRing(h));
    turnRing(eng, ring.polygon, axisAngles(dblStart, dblEnd, YRule::GreaterOrEqual));
    placeByLocation(eng, ring.polygon, dblStart);
    readBack(eng, ring);
    // Not flipped: the end ring reads in the same order as the start ring.
    const Handle end = eng.polygon_duplicate(ring.polygon);
    placeByLocation(eng, end, dblEnd);
    const std::vector<ScenePoint> w = walkPoints(eng, end);
    const std::vector<ScenePoint>& v = ring.v;
    eng.polygon_delete(ring.polygon);
    eng.polygon_delete(end);
    std::vector<Handle> polys;
    if (w.size() == 4 && v.size() == 4) {
        polys = {
            makePolygon(eng, {v[0], w[0], w[2], v[2]}), makePolygon(eng, {v[1], w[1], w[3], v[3]}),
            makePolygon(eng, {v[2], w[2], w[0], v[0]}), makePolygon(eng, {v[3], w[3], w[1], v[1]})};
    }
    return finishGroup(eng, kStringGroup, polys, lngColour, Finish::AddUnlitFillGroup);
}

void P_subPrepareDrillLine(Engine& eng, DrillLineRings& rings, double dblDiameter) {
    P_subReleaseDrillLine(eng, rings);
    const double r = std::isfinite(dblDiameter) ? dblDiameter / 2 : 0.0;
    rings.ring1 = createRing(eng, triangleRing(r));
    rings.ring2 = createRing(eng, triangleRing(r));
}

Handle P_fncCreateDrillLine(Engine& eng, DrillLineRings& rings, const Point3& dblStart,
                            const Point3& dblEnd, double dblDiameter,
                            const engine::Rgb& lngColour) {
    const double r = dblDiameter / 2;
    if (!finitePoints(dblStart, dblEnd) || !std::isfinite(r))
        return eng.group_create(kDrillLineGroup);
    if (!ringsUsable(eng, rings)) {
        rings = DrillLineRings{};  // stale handles are not ours to delete
        P_subPrepareDrillLine(eng, rings, dblDiameter);
    }
    const AxisAngles angles = axisAngles(dblStart, dblEnd, YRule::GreaterOrEqual);
    const std::vector<Point3> flat = triangleRing(r);
    for (Ring* ring : {&rings.ring1, &rings.ring2}) {
        for (std::size_t i = 0; i < ring->points.size() && i < flat.size(); ++i)
            eng.point_set_xyz(ring->points[i], flat[i]);
        turnRing(eng, ring->polygon, angles);
    }
    placeByCentre(eng, rings.ring1.polygon, dblStart);
    placeByCentre(eng, rings.ring2.polygon, dblEnd);
    readBack(eng, rings.ring1);
    readBack(eng, rings.ring2);
    eng.polygon_flip_visible_side(rings.ring2.polygon);

    const std::vector<ScenePoint>& v = rings.ring1.v;
    const std::vector<ScenePoint>& w = rings.ring2.v;
    std::vector<Handle> polys;
    if (v.size() == 3 && w.size() == 3) {
        polys = {makePolygon(eng, {v[0], w[0], w[1], v[1]}),
                 makePolygon(eng, {v[1], w[1], w[2], v[2]}),
                 makePolygon(eng, {v[2], w[2], w[0], v[0]})};
    }
    return finishGroup(eng, kDrillLineGroup, polys, lngColour, Finish::AddFillGroup);
}

void P_subReleaseDrillLine(Engine& eng, DrillLineRings& rings) {
    for (Ring* ring : {&rings.ring1, &rings.ring2}) {
        // Never a polygon of the world: a stale handle may have been taken by one.
        if (ring->polygon != 0 && !eng.polygon_is_in_world(ring->polygon))
            eng.polygon_delete(ring->polygon);
        *ring = Ring{};
    }
}

Handle P_fncCreateFlatCircle(Engine& eng, double dblDiameter, const engine::Rgb& lngColour) {
    const double r = dblDiameter / 2;
    if (!std::isfinite(r)) return eng.group_create(kCircleGroup);
    Ring ring = createRing(eng, circleRing16(r));
    const Handle back = eng.polygon_duplicate(ring.polygon);
    eng.polygon_flip_visible_side(back);
    std::vector<Handle> polys{ring.polygon, back};
    return finishGroup(eng, kCircleGroup, polys, lngColour, Finish::AddFillGroup);
}

}  // namespace builders
