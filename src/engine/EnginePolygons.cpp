// Engine: making, deleting, walking and questioning polygons; the cut by a plane.

#include <cmath>
#include <limits>

#include "engine/EngineInternal.h"
#include "engine/Geometry.h"

namespace engine {

using internal::PointsOf;

Handle Engine::polygon_create() { return SceneStore::polygonHandle(store_->createPolygon()); }

Handle Engine::polygon_add_point(Handle polygon, const ScenePoint& sp) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    const Point3 p{sp.x, sp.y, sp.z};
    if (!s || !p.finite() || !std::isfinite(sp.bx) || !std::isfinite(sp.by)) return 0;
    const std::uint32_t ps = store_->appendPoint(s, p);
    if (!ps) return 0;
    if (sp.bx != 0 || sp.by != 0) {
        PolygonExtra& ex = store_->extraFor(s);
        ex.points.resize(store_->pointCount(s));
        ex.points.back().bx = sp.bx;
        ex.points.back().by = sp.by;
    }
    return SceneStore::pointHandle(ps);
}

int Engine::polygon_delete(Handle polygonOrLine) {
    if (handleKind(polygonOrLine) == Kind::Line) {
        for (auto it = lines_.begin(); it != lines_.end(); ++it) {
            if (it->handle == polygonOrLine) {
                lines_.erase(it);
                store_->touchScene();
                return 0;
            }
        }
        return -1;
    }
    const std::uint32_t s = store_->polygonSlot(polygonOrLine);
    if (!s) return -1;
    store_->destroyPolygon(s);
    return 0;
}

Handle Engine::polygon_duplicate(Handle polygon) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return 0;
    const std::uint32_t c = store_->createPolygon();
    if (!c) return 0;
    PointsOf pts(*store_, s);
    if (!store_->assignPoints(c, pts.data(), std::uint32_t(pts.size()))) {
        store_->destroyPolygon(c);
        return 0;
    }
    store_->copyAttributes(s, c);
    store_->setPolygonGroup(c, store_->groupOf(s));
    return SceneStore::polygonHandle(c);
}

Handle Engine::polygon_get_group(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s ? SceneStore::groupHandle(store_->groupOf(s)) : 0;
}

int Engine::polygon_set_group(Handle polygon, Handle group) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    const std::uint32_t g = store_->groupSlot(group);
    if (!s || (group != 0 && !g)) return -1;
    store_->setPolygonGroup(s, g);
    return 0;
}

int Engine::polygon_set_name(Handle polygon, std::string_view name) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->setName(s, name);
    return 0;
}

Handle Engine::polygon_get_first_point(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || store_->pointCount(s) == 0) return 0;
    return SceneStore::pointHandle(store_->firstPoint(s));
}

Handle Engine::point_get_next_point(Handle point) const {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p) return 0;
    const std::uint32_t o = store_->owner(p);
    return p + 1 < store_->firstPoint(o) + store_->pointCount(o) ? SceneStore::pointHandle(p + 1)
                                                                 : 0;
}

Handle Engine::polygon_get_closest_point(Handle polygon, Point3 q) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || !q.finite()) return 0;
    const std::uint32_t f = store_->firstPoint(s), n = store_->pointCount(s);
    std::uint32_t best = 0;
    double bestD = std::numeric_limits<double>::infinity();
    for (std::uint32_t i = 0; i < n; ++i) {
        const double d = math_get_square_distance(store_->point(f + i), q);
        if (d < bestD) {
            bestD = d;
            best = f + i;
        }
    }
    return SceneStore::pointHandle(best);
}

Point3 Engine::polygon_get_center(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return {};
    PointsOf pts(*store_, s);
    return geom::mean(pts.data(), pts.size());
}

int Engine::polygon_get_plane(Handle polygon, Plane& plane) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    PointsOf pts(*store_, s);
    return geom::planeOf(pts.data(), pts.size(), plane) ? 0 : -1;
}

int Engine::polygon_get_num_of_points(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s ? int(store_->pointCount(s)) : 0;
}

int Engine::polygon_count_redundant_points(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return 0;
    PointsOf pts(*store_, s);
    return int(geom::redundantCount(pts.data(), pts.size()));
}

bool Engine::polygon_is_valid(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return false;
    PointsOf pts(*store_, s);
    return geom::acceptable(pts.data(), pts.size());
}

bool Engine::polygon_is_convex(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return false;
    PointsOf pts(*store_, s);
    return geom::isConvex(pts.data(), pts.size());
}

bool Engine::polygon_are_all_points_on_one_plane(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return false;
    PointsOf pts(*store_, s);
    return geom::allOnOnePlane(pts.data(), pts.size());
}

namespace {
// Bitmap coordinates are fine when finite and, on a polygon with a bitmap, not
// all the same (the bitmap would shrink to one texel line).
bool bitmapCoordsOk(const SceneStore& store, std::uint32_t s, bool xAxis) {
    const PolygonExtra* ex = store.extra(s);
    if (!ex || ex->points.empty()) return ex == nullptr || ex->bitmap == 0;
    double lo = HUGE_VAL, hi = -HUGE_VAL;
    for (const PointExtra& pe : ex->points) {
        const double v = xAxis ? pe.bx : pe.by;
        if (!std::isfinite(v)) return false;
        lo = std::min(lo, v);
        hi = std::max(hi, v);
    }
    return ex->bitmap == 0 || hi > lo;
}
}  // namespace

bool Engine::polygon_are_bitmap_x_cords_ok(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s && bitmapCoordsOk(*store_, s, true);
}

bool Engine::polygon_are_bitmap_y_cords_ok(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s && bitmapCoordsOk(*store_, s, false);
}

bool Engine::polygon_is_point_inside_polygon(Handle polygon, Point3 p) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || !p.finite()) return false;
    PointsOf pts(*store_, s);
    Plane pl;
    if (!geom::planeOf(pts.data(), pts.size(), pl)) return false;
    const Point3 onPlane = p - pl.n * (dot(pl.n, p) + pl.d);
    return geom::containsProjected(pts.data(), pts.size(), pl.n, onPlane);
}

int Engine::polygon_split(Handle polygon, const Plane& plane, Handle& front, Handle& back) {
    front = back = 0;
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || !plane.n.finite() || !std::isfinite(plane.d)) return -1;
    Point3 n = plane.n;
    const double len = math_normalize_vector(n);
    if (len == 0) return -1;
    PointsOf pts(*store_, s);
    if (pts.size() < 3 || !geom::allFinite(pts.data(), pts.size())) return -1;
    const geom::SplitResult r = geom::split(pts.data(), pts.size(), Plane{n, plane.d / len});
    if (!r.cut) return 0;  // wholly on one side: the polygon itself is the piece
    Handle made[2] = {0, 0};
    const std::vector<Point3>* lists[2] = {&r.front, &r.back};
    for (int i = 0; i < 2; ++i) {
        const std::uint32_t c = store_->createPolygon();
        if (!c || !store_->assignPoints(c, lists[i]->data(), std::uint32_t(lists[i]->size()))) {
            if (c) store_->destroyPolygon(c);
            if (made[0]) store_->destroyPolygon(SceneStore::slotOf(made[0], Kind::Polygon));
            return -1;
        }
        store_->copyAttributes(s, c);
        store_->setPolygonGroup(c, store_->groupOf(s));
        made[i] = SceneStore::polygonHandle(c);
    }
    front = made[0];
    back = made[1];
    return 0;
}

bool Engine::polygon_is_disabled(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s && store_->disabled(s);
}

bool Engine::polygon_is_in_world(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s && store_->inWorld(s);
}

int Engine::polygon_disable(Handle polygon) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->setFlag(s, polyflag::kDisabled, true);
    return 0;
}

int Engine::polygon_enable(Handle polygon) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->setFlag(s, polyflag::kDisabled, false);
    return 0;
}

}  // namespace engine
