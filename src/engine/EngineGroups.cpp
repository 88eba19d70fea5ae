// Engine: groups, their tree and the operations on all polygons of a group.

#include <cmath>

#include "engine/EngineInternal.h"
#include "engine/Geometry.h"

namespace engine {

namespace {
// Group slots of g and its descendants, g first.
void subtree(const SceneStore& st, std::uint32_t g, std::vector<std::uint32_t>& out) {
    out.clear();
    out.push_back(g);
    for (std::size_t i = 0; i < out.size(); ++i)
        for (std::uint32_t c = st.group(out[i])->firstChild; c; c = st.group(c)->nextSibling)
            out.push_back(c);
}

std::uint32_t copyPolygon(SceneStore& st, std::uint32_t s, std::uint32_t toGroup) {
    const std::uint32_t c = st.createPolygon();
    if (!c) return 0;
    internal::PointsOf pts(st, s);
    if (!st.assignPoints(c, pts.data(), std::uint32_t(pts.size()))) {
        st.destroyPolygon(c);
        return 0;
    }
    st.copyAttributes(s, c);
    st.setPolygonGroup(c, toGroup);
    if (st.inWorld(s)) st.addToWorld(c);
    return c;
}

std::uint32_t copyTree(SceneStore& st, std::uint32_t g, std::uint32_t father) {
    const std::uint32_t ng = st.createGroup(st.groupName(g));
    if (!ng) return 0;
    st.setFather(ng, father);
    const GroupRecord& src = *st.group(g);
    if (src.hasRotateReference) st.setRotateReference(ng, src.rotateReference);
    for (std::uint32_t s = st.group(g)->firstPolygon; s; s = st.nextInGroup(s))
        copyPolygon(st, s, ng);
    for (std::uint32_t c = st.group(g)->firstChild; c; c = st.group(c)->nextSibling)
        copyTree(st, c, ng);
    return ng;
}
}  // namespace

void Engine::collectPolygons(Handle group, std::vector<std::uint32_t>& out) const {
    out.clear();
    if (group == 0) {
        out.reserve(store_->worldCount());
        for (std::uint32_t s = store_->firstInWorld(); s; s = store_->nextInWorld(s))
            out.push_back(s);
        return;
    }
    const std::uint32_t g = store_->groupSlot(group);
    if (!g) return;
    std::vector<std::uint32_t> groups;
    subtree(*store_, g, groups);
    for (std::uint32_t x : groups)
        for (std::uint32_t s = store_->group(x)->firstPolygon; s; s = store_->nextInGroup(s))
            out.push_back(s);
}

Handle Engine::group_create(std::string_view name) {
    return SceneStore::groupHandle(store_->createGroup(name));
}

bool Engine::group_is_group(Handle h) const { return store_->groupSlot(h) != 0; }

Handle Engine::group_get_first_group() const {
    return SceneStore::groupHandle(store_->firstGroup());
}

Handle Engine::group_get_next(Handle group) const {
    const std::uint32_t g = store_->groupSlot(group);
    return g ? SceneStore::groupHandle(store_->group(g)->next) : 0;
}

Handle Engine::group_get_first_polygon(Handle group) const {
    const std::uint32_t g = store_->groupSlot(group);
    return g ? SceneStore::polygonHandle(store_->group(g)->firstPolygon) : 0;
}

Handle Engine::group_get_next_polygon(Handle group, Handle polygon) const {
    const std::uint32_t g = store_->groupSlot(group);
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!g || !s || store_->groupOf(s) != g) return 0;
    return SceneStore::polygonHandle(store_->nextInGroup(s));
}

Handle Engine::group_get_father_group(Handle group) const {
    const std::uint32_t g = store_->groupSlot(group);
    return g ? SceneStore::groupHandle(store_->group(g)->father) : 0;
}

int Engine::group_set_father_group(Handle group, Handle father) {
    const std::uint32_t g = store_->groupSlot(group);
    const std::uint32_t f = store_->groupSlot(father);
    if (!g || (father != 0 && !f)) return -1;
    // A father inside the group's own subtree would make a loop.
    for (std::uint32_t a = f; a; a = store_->group(a)->father)
        if (a == g) return -1;
    store_->setFather(g, f);
    return 0;
}

Handle Engine::group_get_first_included_group(Handle group) const {
    const std::uint32_t g = store_->groupSlot(group);
    return g ? SceneStore::groupHandle(store_->group(g)->firstChild) : 0;
}

Handle Engine::group_get_next_included_group(Handle group, Handle child) const {
    const std::uint32_t g = store_->groupSlot(group);
    const std::uint32_t c = store_->groupSlot(child);
    if (!g || !c || store_->group(c)->father != g) return 0;
    return SceneStore::groupHandle(store_->group(c)->nextSibling);
}

int Engine::group_set_rotate_reference_point(Handle group, Point3 p) {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g || !p.finite()) return -1;
    store_->setRotateReference(g, p);
    return 0;
}

Point3 Engine::group_get_center_of_mass(Handle group) const {
    const bool world = group == 0;
    const WorldCentre key{store_->geometryRevision(), store_->additions(), store_->removals(), {}};
    if (world && key.geometry == worldCentre_.geometry && key.additions == worldCentre_.additions &&
        key.removals == worldCentre_.removals)
        return worldCentre_.centre;
    Point3 sum{0, 0, 0};
    std::size_t n = 0;
    auto add = [&](std::uint32_t s) {
        const std::uint32_t f = store_->firstPoint(s), c = store_->pointCount(s);
        for (std::uint32_t i = 0; i < c; ++i) sum = sum + store_->point(f + i);
        n += c;
    };
    if (world) {
        for (std::uint32_t s = store_->firstInWorld(); s; s = store_->nextInWorld(s)) add(s);
    } else {
        std::vector<std::uint32_t> polys;
        collectPolygons(group, polys);
        for (std::uint32_t s : polys) add(s);
    }
    const Point3 centre =
        n ? Point3{sum.x / double(n), sum.y / double(n), sum.z / double(n)} : Point3{};
    if (world) {
        worldCentre_ = key;
        worldCentre_.centre = centre;
    }
    return centre;
}

int Engine::group_set_name(Handle group, std::string_view name) {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g) return -1;
    store_->setGroupName(g, name);
    return 0;
}

int Engine::group_get_number_of_polygons(Handle group) const {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g) return 0;
    std::vector<std::uint32_t> groups;
    subtree(*store_, g, groups);
    std::size_t n = 0;
    for (std::uint32_t x : groups) n += store_->group(x)->polygonCount;
    return int(n);
}

bool Engine::group_bounding_box(Handle group, Point3& lo, Point3& hi) const {
    std::vector<std::uint32_t> polys;
    collectPolygons(group, polys);
    bool any = false;
    for (std::uint32_t s : polys) {
        const std::uint32_t f = store_->firstPoint(s), c = store_->pointCount(s);
        for (std::uint32_t i = 0; i < c; ++i) {
            const Point3& p = store_->point(f + i);
            if (!any) {
                lo = hi = p;
                any = true;
            }
            for (int k = 0; k < 3; ++k) {
                lo[k] = std::min(lo[k], p[k]);
                hi[k] = std::max(hi[k], p[k]);
            }
        }
    }
    return any;
}

namespace {
template <class Fn>
void mapGroupPoints(SceneStore& st, const std::vector<std::uint32_t>& polys, Fn fn) {
    for (std::uint32_t s : polys) {
        const std::uint32_t f = st.firstPoint(s), n = st.pointCount(s);
        for (std::uint32_t i = 0; i < n; ++i) {
            Point3& p = st.pointRef(f + i);
            p = fn(p);
        }
        st.touchGeometry(s);
    }
}
}  // namespace

int Engine::group_rotate(Handle group, double degrees, int axis) {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g || !std::isfinite(degrees) || axis < 0 || axis > 2) return -1;
    const GroupRecord& G = *store_->group(g);
    const Point3 c = G.hasRotateReference ? G.rotateReference : group_get_center_of_mass(group);
    std::vector<std::uint32_t> polys;
    collectPolygons(group, polys);
    mapGroupPoints(*store_, polys,
                   [&](Point3 p) { return geom::rotateAboutAxis(p, c, axis, degrees); });
    return 0;
}

int Engine::group_set_location(Handle group, Point3 p) {
    Point3 lo, hi;
    if (!store_->groupSlot(group) || !p.finite()) return -1;
    if (!group_bounding_box(group, lo, hi)) return 0;  // nothing to place
    return group_move(group, p - (lo + hi) * 0.5);
}

int Engine::group_move(Handle group, Point3 d) {
    if (!store_->groupSlot(group) || !d.finite()) return -1;
    // A move by nothing changes no point (the readers end with one).
    if (d.x == 0 && d.y == 0 && d.z == 0) return 0;
    std::vector<std::uint32_t> polys;
    collectPolygons(group, polys);
    mapGroupPoints(*store_, polys, [&](Point3 p) { return p + d; });
    return 0;
}

int Engine::group_scale(Handle group, Point3 factors) {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g || !factors.finite()) return -1;
    const GroupRecord& G = *store_->group(g);
    const Point3 c = G.hasRotateReference ? G.rotateReference : group_get_center_of_mass(group);
    std::vector<std::uint32_t> polys;
    collectPolygons(group, polys);
    mapGroupPoints(*store_, polys, [&](Point3 p) {
        return Point3{c.x + (p.x - c.x) * factors.x, c.y + (p.y - c.y) * factors.y,
                      c.z + (p.z - c.z) * factors.z};
    });
    return 0;
}

int Engine::group_ungroup(Handle group) {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g) return -1;
    const std::uint32_t father = store_->group(g)->father;
    while (const std::uint32_t c = store_->group(g)->firstChild) store_->setFather(c, father);
    while (const std::uint32_t s = store_->group(g)->firstPolygon)
        store_->setPolygonGroup(s, father);
    store_->destroyGroup(g);
    return 0;
}

int Engine::group_delete_members(Handle group) {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g) return -1;
    std::vector<std::uint32_t> groups;
    subtree(*store_, g, groups);
    for (std::uint32_t x : groups)
        while (const std::uint32_t s = store_->group(x)->firstPolygon) store_->destroyPolygon(s);
    for (auto it = groups.rbegin(); it != groups.rend(); ++it) store_->destroyGroup(*it);
    return 0;
}

Handle Engine::group_duplicate_tree(Handle group) {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g) return 0;
    return SceneStore::groupHandle(copyTree(*store_, g, store_->group(g)->father));
}

Handle Engine::group_create_reduced_copy(Handle group, double percent) {
    const std::uint32_t g = store_->groupSlot(group);
    if (!g || !(percent > 0) || !std::isfinite(percent)) return 0;
    const long every = std::max(1L, std::lround(100.0 / percent));
    std::vector<std::uint32_t> polys;
    collectPolygons(group, polys);
    const std::uint32_t ng = store_->createGroup(store_->groupName(g));
    if (!ng) return 0;
    store_->setFather(ng, store_->group(g)->father);
    for (std::size_t i = 0; i < polys.size(); i += std::size_t(every))
        copyPolygon(*store_, polys[i], ng);
    return SceneStore::groupHandle(ng);
}

int Engine::group_set_patches_color(Handle group, Rgb c) {
    if (!store_->groupSlot(group)) return -1;
    using internal::clampChannel;
    const Rgb k{clampChannel(c.r), clampChannel(c.g), clampChannel(c.b)};
    std::vector<std::uint32_t> polys;
    collectPolygons(group, polys);
    for (std::uint32_t s : polys) {
        if (!store_->extra(s)) continue;
        for (Patch& p : store_->extraFor(s).patches) p.colour = k;
    }
    return 0;
}

int Engine::group_set_color(Handle group, Rgb c) {
    if (!store_->groupSlot(group)) return -1;
    using internal::clampChannel;
    const Rgb k{clampChannel(c.r), clampChannel(c.g), clampChannel(c.b)};
    std::vector<std::uint32_t> polys;
    collectPolygons(group, polys);
    for (std::uint32_t s : polys) store_->setFill(s, k);
    return 0;
}

int Engine::group_calculate_points_normals(Handle group) {
    // Shading is per polygon (light is baked flat), so there is nothing to store;
    // the call stays for the program that makes it.
    return store_->groupSlot(group) ? 0 : -1;
}

}  // namespace engine
