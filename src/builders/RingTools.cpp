#include "builders/RingTools.h"

#include <algorithm>
#include <cmath>

#include "builders/Geometry.h"
#include "engine/Engine.h"

namespace builders {

using engine::Engine;
using engine::Handle;
using engine::Point3;
using engine::ScenePoint;

AxisAngles axisAngles(const Point3& F, const Point3& T, YRule rule) {
    const Point3 D = F - T;
    double L = std::sqrt(D.x * D.x + D.y * D.y + D.z * D.z);
    if (L == 0) L = kDivZero;
    double H = std::sqrt(D.x * D.x + D.y * D.y);
    if (H == 0) H = kDivZero;
    const double cz = D.z == 0 ? 0.0 : std::clamp(D.z / L, -1.0, 1.0);
    const double cx = D.x == 0 ? 0.0 : std::clamp(D.x / H, -1.0, 1.0);
    AxisAngles a;
    a.rotY = ACosDeg(cz);
    a.rotZ = ACosDeg(cx);
    const bool negate = rule == YRule::Greater ? T.y > F.y : T.y >= F.y;
    if (negate) a.rotZ = -a.rotZ;
    return a;
}

std::vector<Point3> octagonRing(double r) {
    const double d = 0.707 * r;
    return {{r, 0, 0},  {d, -d, 0}, {0, -r, 0}, {-d, -d, 0},
            {-r, 0, 0}, {-d, d, 0}, {0, r, 0},  {d, d, 0}};
}

std::vector<Point3> rectangleRing(double a, double b) {
    return {{a, b, 0}, {a, -b, 0}, {-a, -b, 0}, {-a, b, 0}};
}

std::vector<Point3> triangleRing(double r) {
    const double s = 0.866025403778 * r;
    return {{r, 0, 0}, {-0.5 * r, -s, 0}, {-0.5 * r, s, 0}};
}

std::vector<Point3> squareRing(double h) { return rectangleRing(h, h); }

std::vector<Point3> circleRing16(double r) {
    const double c = 0.9239 * r, s = 0.3827 * r, d = 0.707 * r;
    return {{r, 0, 0},   {c, -s, 0},  {d, -d, 0}, {s, -c, 0}, {0, -r, 0}, {-s, -c, 0},
            {-d, -d, 0}, {-c, -s, 0}, {-r, 0, 0}, {-c, s, 0}, {-d, d, 0}, {-s, c, 0},
            {0, r, 0},   {s, c, 0},   {d, d, 0},  {c, s, 0}};
}

ScenePoint vertexAt(const Point3& p) { return ScenePoint{p.x, p.y, p.z, 0, 0, 100}; }

Ring createRing(Engine& eng, const std::vector<Point3>& flat) {
    Ring ring;
    ring.polygon = eng.polygon_create();
    ring.points.reserve(flat.size());
    ring.v.reserve(flat.size());
    for (const Point3& p : flat) {
        ring.v.push_back(vertexAt(p));
        ring.points.push_back(eng.polygon_add_point(ring.polygon, ring.v.back()));
    }
    return ring;
}

void turnRing(Engine& eng, Handle polygon, const AxisAngles& a) {
    eng.polygon_rotate_y(polygon, a.rotY);
    eng.polygon_rotate_z(polygon, a.rotZ);
}

void placeByLocation(Engine& eng, Handle polygon, const Point3& p) {
    eng.polygon_set_location(polygon, p);
}

void placeByCentre(Engine& eng, Handle polygon, const Point3& p) {
    const Point3 c = eng.polygon_get_center(polygon);
    eng.polygon_move(polygon, p - c);
}

void readBack(Engine& eng, Ring& ring) {
    for (std::size_t i = 0; i < ring.points.size(); ++i) {
        Point3 p;
        if (eng.point_get_xyz(ring.points[i], p) == 0) {
            ring.v[i].x = p.x;
            ring.v[i].y = p.y;
            ring.v[i].z = p.z;
        }
    }
}

std::vector<ScenePoint> walkPoints(const Engine& eng, Handle polygon) {
    std::vector<ScenePoint> out;
    for (Handle pt = eng.polygon_get_first_point(polygon); pt != 0;
         pt = eng.point_get_next_point(pt)) {
        Point3 p;
        eng.point_get_xyz(pt, p);
        out.push_back(vertexAt(p));
    }
    return out;
}

std::vector<ScenePoint> walkPointsReversed(const Engine& eng, Handle polygon) {
    std::vector<ScenePoint> out = walkPoints(eng, polygon);
    std::reverse(out.begin(), out.end());
    return out;
}

Handle makePolygon(Engine& eng, std::initializer_list<ScenePoint> pts) {
    const Handle h = eng.polygon_create();
    for (const ScenePoint& p : pts) eng.polygon_add_point(h, p);
    return h;
}

void finishPolygon(Engine& eng, Handle& polygon, Handle group, const engine::Rgb& colour,
                   Finish order) {
    if (polygon == 0) return;
    if (order == Finish::FillAddGroup) eng.polygon_set_color_fill(polygon, colour);
    if (eng.engine_add_polygon(polygon) == -1) {
        eng.polygon_delete(polygon);
        polygon = 0;
        return;
    }
    if (order == Finish::AddUnlitFillGroup) eng.polygon_set_brightness(polygon, 0);
    if (order != Finish::FillAddGroup) eng.polygon_set_color_fill(polygon, colour);
    eng.polygon_set_group(polygon, group);
}

bool finitePoints(const Point3& a, const Point3& b) { return a.finite() && b.finite(); }

namespace {

bool finiteRecipe(const SolidRecipe& recipe, const Point3& F, const Point3& T) {
    if (!finitePoints(F, T)) return false;
    for (const Point3& p : recipe.flatRing)
        if (!p.finite()) return false;
    return true;
}

// The group comes last, as the builders make it; without one nothing may stay behind.
Handle finishAll(Engine& eng, const SolidRecipe& recipe, std::vector<Handle>& polys,
                 const engine::Rgb& colour) {
    const Handle group = eng.group_create(recipe.groupName);
    if (group == 0) {
        for (Handle h : polys) eng.polygon_delete(h);
        return 0;
    }
    for (Handle& h : polys) finishPolygon(eng, h, group, colour, recipe.finish);
    return group;
}

void place(Engine& eng, const SolidRecipe& recipe, Handle polygon, const Point3& p) {
    if (recipe.byLocation)
        placeByLocation(eng, polygon, p);
    else
        placeByCentre(eng, polygon, p);
}

}  // namespace

Handle buildPyramid(Engine& eng, const SolidRecipe& recipe, const Point3& F, const Point3& T,
                    const engine::Rgb& colour) {
    if (!finiteRecipe(recipe, F, T)) return eng.group_create(recipe.groupName);
    Ring ring = createRing(eng, recipe.flatRing);
    turnRing(eng, ring.polygon, axisAngles(F, T, recipe.rule));
    place(eng, recipe, ring.polygon, F);
    readBack(eng, ring);
    if (recipe.dropFirstRing) {
        eng.polygon_delete(ring.polygon);
        ring.polygon = 0;
    }
    const ScenePoint apex = vertexAt(T);
    const std::size_t k = ring.v.size();
    std::vector<Handle> polys;
    polys.reserve(k + 1);
    if (ring.polygon != 0) polys.push_back(ring.polygon);
    for (std::size_t i = 0; i < k; ++i)
        polys.push_back(makePolygon(eng, {ring.v[i], apex, ring.v[(i + 1) % k]}));
    return finishAll(eng, recipe, polys, colour);
}

Handle buildPrism(Engine& eng, const SolidRecipe& recipe, const Point3& F, const Point3& T,
                  const engine::Rgb& colour) {
    if (!finiteRecipe(recipe, F, T)) return eng.group_create(recipe.groupName);
    Ring ring = createRing(eng, recipe.flatRing);
    turnRing(eng, ring.polygon, axisAngles(F, T, recipe.rule));
    place(eng, recipe, ring.polygon, F);
    readBack(eng, ring);
    Handle end = eng.polygon_duplicate(ring.polygon);
    eng.polygon_flip_visible_side(end);
    place(eng, recipe, end, T);
    const std::vector<ScenePoint> w = walkPointsReversed(eng, end);
    const std::vector<ScenePoint>& v = ring.v;
    const std::size_t k = v.size();
    std::vector<Handle> polys;
    polys.reserve(k + 2);
    if (recipe.dropEndRings) {
        eng.polygon_delete(ring.polygon);
        eng.polygon_delete(end);
    } else {
        polys.push_back(ring.polygon);
        polys.push_back(end);
    }
    if (w.size() == k) {
        for (std::size_t s = 0; s < k; ++s) {
            const std::size_t t = (s + 1) % k;
            polys.push_back(makePolygon(eng, {v[s], w[s], w[t], v[t]}));
        }
    }
    return finishAll(eng, recipe, polys, colour);
}

}  // namespace builders
