// Engine: light objects, baked into the light colour of the polygons they light.

#include <algorithm>
#include <cmath>

#include "engine/EngineInternal.h"
#include "engine/Geometry.h"

namespace engine {

namespace {
constexpr int kDirectional = 58;
// One unit of light is a quarter of full white: the program's usual settings
// (ambient about 1.5, diffuse about 1, specular about 1.5) then run from a mid
// grey on faces turned away to white on faces turned to the light.
constexpr double kGreyPerUnit = 255.0 / 4.0;
}  // namespace

Handle Engine::light_create(std::string_view name, Point3 location) {
    if (!location.finite()) return 0;
    auto l = std::make_unique<LightObj>();
    l->name = std::string(name);
    l->location = location;
    l->target = location + Point3{1, 0, 0};
    lights_.push_back(std::move(l));
    return makeHandle(Kind::Light, std::uint32_t(lights_.size() - 1));
}

namespace {
template <class L>
L* lightOf(const std::vector<std::unique_ptr<L>>& lights, Handle h) {
    const std::int64_t i = handleIndex(h, Kind::Light);
    return (i >= 0 && std::size_t(i) < lights.size()) ? lights[std::size_t(i)].get() : nullptr;
}
}  // namespace

int Engine::light_set_location(Handle light, Point3 p) {
    LightObj* l = lightOf(lights_, light);
    if (!l || !p.finite()) return -1;
    l->location = p;
    return 0;
}

int Engine::light_point_at(Handle light, Point3 p) {
    LightObj* l = lightOf(lights_, light);
    if (!l || !p.finite()) return -1;
    l->target = p;
    return 0;
}

int Engine::light_set_type_of_light(Handle light, int type) {
    LightObj* l = lightOf(lights_, light);
    if (!l) return -1;
    l->type = type;
    return 0;
}

int Engine::light_set_entity_to_light(Handle light, Handle group) {
    LightObj* l = lightOf(lights_, light);
    if (!l || (group != 0 && !store_->groupSlot(group))) return -1;
    l->entity = group;
    return 0;
}

namespace {
int setTerm(double* field, double v) {
    if (!field || !std::isfinite(v)) return -1;
    *field = v;
    return 0;
}
}  // namespace

int Engine::light_set_ambient(Handle light, double v) {
    LightObj* l = lightOf(lights_, light);
    return setTerm(l ? &l->ambient : nullptr, v);
}
int Engine::light_set_diffuse(Handle light, double v) {
    LightObj* l = lightOf(lights_, light);
    return setTerm(l ? &l->diffuse : nullptr, v);
}
int Engine::light_set_specular(Handle light, double v) {
    LightObj* l = lightOf(lights_, light);
    return setTerm(l ? &l->specular : nullptr, v);
}
int Engine::light_set_specular_shining(Handle light, double v) {
    LightObj* l = lightOf(lights_, light);
    return setTerm(l ? &l->shining : nullptr, v);
}

void Engine::light_calcualte_vertices_normals_automatically(double maxAngleDegrees) {
    if (std::isfinite(maxAngleDegrees)) normalsAngle_ = maxAngleDegrees;
}

int Engine::light_activate(Handle light, int flag) {
    const LightObj* l = lightOf(lights_, light);
    if (!l) return -1;
    // An entity deleted since it was set lights nothing rather than everything.
    if (l->entity != 0 && !store_->groupSlot(l->entity)) return -1;
    std::vector<std::uint32_t> polys;
    collectPolygons(l->entity, polys);
    const bool directional = l->type == kDirectional;
    Point3 towardLight = l->location - l->target;  // from the scene to a parallel light
    if (directional && math_normalize_vector(towardLight) == 0) return -1;
    const Point3 eye = camera_.location;
    internal::PointsOf pts(*store_, 0);
    for (std::uint32_t s : polys) {
        if (!store_->inWorld(s) || store_->disabled(s) || store_->brightness(s) == 0) continue;
        pts.load(*store_, s);
        Plane pl;
        if (!geom::planeOf(pts.data(), pts.size(), pl)) continue;
        const Point3 c = geom::mean(pts.data(), pts.size());
        Point3 L = towardLight;
        if (!directional && math_normalize_vector(L = l->location - c) == 0) L = pl.n;
        const double nl = dot(pl.n, L);
        double value = l->ambient + l->diffuse * std::max(0.0, nl);
        if (nl > 0 && l->specular != 0) {
            const Point3 r = pl.n * (2 * nl) - L;  // L mirrored in the face
            Point3 v = eye - c;
            if (math_normalize_vector(v) != 0) {
                const double rv = std::max(0.0, dot(r, v));
                value += l->specular * std::pow(rv, l->shining);
            }
        }
        int grey = int(std::lround(std::clamp(value * kGreyPerUnit, 0.0, 255.0)));
        if (flag == 1) {
            if (const std::optional<Rgb> old = store_->light(s)) {
                store_->setLight(s, Rgb{std::min(255, old->r + grey), std::min(255, old->g + grey),
                                        std::min(255, old->b + grey)});
                continue;
            }
        }
        store_->setLight(s, Rgb{grey, grey, grey});
    }
    return 0;
}

int Engine::light_remove_light(Handle light) {
    const LightObj* l = lightOf(lights_, light);
    if (!l) return -1;
    if (l->entity != 0 && !store_->groupSlot(l->entity)) return -1;
    std::vector<std::uint32_t> polys;
    collectPolygons(l->entity, polys);
    for (std::uint32_t s : polys)
        if (store_->light(s)) store_->setLight(s, std::nullopt);
    return 0;
}

}  // namespace engine
