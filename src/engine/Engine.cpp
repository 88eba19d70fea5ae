// Engine: the world as a whole, camera, projection and picking.

#include "engine/Engine.h"

#include <cmath>
#include <limits>

#include "engine/Bvh.h"
#include "engine/EngineInternal.h"
#include "engine/Geometry.h"
#include "engine/SceneStore.h"

namespace engine {

namespace {
constexpr Handle kCamera = makeHandle(Kind::Camera, 0);

// The camera frame and the pixel scale of the current window.
struct View {
    Point3 eye, dir, up, right;
    double focal = 1;  // pixels per unit of lateral offset at depth 1
    double cx = 0, cy = 0;
    double nearDepth = 0, farDepth = HUGE_VAL;
};

View makeView(const CameraState& c, const FogState& fog, int w, int h) {
    View v;
    v.eye = c.location;
    v.dir = c.direction;
    v.up = c.up;
    v.right = cross(c.direction, c.up);  // y down on screen, x right
    const double tanHalf = 0.5 * c.zoom / 24.0;
    v.focal = 0.5 * double(w) / tanHalf;
    v.cx = 0.5 * double(w);
    v.cy = 0.5 * double(h);
    v.nearDepth = c.distanceFromEye;
    v.farDepth = fog.on ? fog.farDepth : HUGE_VAL;
    return v;
}
}  // namespace

Engine::Engine() : store_(std::make_unique<SceneStore>()), bvh_(std::make_unique<Bvh>()) {
    walk_ = &store_->walk();
    walkNext_ = walk_->next.table();
}

Engine::~Engine() = default;

// ---- engine ---------------------------------------------------------------------

int Engine::engine_load_world(std::string_view worldFile, std::string_view, std::string_view, int) {
    if (!worldFile.empty()) return -1;
    store_->clear();
    bvh_->clear();
    lines_.clear();
    texts_.clear();
    loaded_ = true;
    return 0;
}

bool Engine::engine_is_engine_empty() const { return !loaded_; }

int Engine::engine_add_polygon(Handle polygon) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || store_->inWorld(s)) return -1;
    const std::uint32_t n = store_->pointCount(s);
    if (n < 3) return -1;
    internal::PointsOf pts(*store_, s);
    if (!geom::acceptable(pts.data(), pts.size())) return -1;
    return store_->addToWorld(s) ? 0 : -1;
}

void Engine::engine_set_background_color(Rgb c) {
    background_ = Rgb{c.r & 255, c.g & 255, c.b & 255};
    store_->touchScene();
}

Rgb Engine::engine_get_background_color() const { return background_; }

void Engine::engine_set_fog(bool on, double farDepth, double nearDepth) {
    fog_.on = on;
    if (std::isfinite(farDepth)) fog_.farDepth = farDepth;
    if (std::isfinite(nearDepth)) fog_.nearDepth = nearDepth;
    store_->touchScene();
}

FogState Engine::engine_get_fog() const { return fog_; }

void Engine::engine_close() {
    store_->clear();
    bvh_->clear();
    lines_.clear();
    texts_.clear();
    lights_.clear();
    bitmaps_.clear();
    fonts_.clear();
    loaded_ = false;
}

std::uint64_t Engine::revision() const { return store_->revision(); }
std::size_t Engine::polygon_count() const { return store_->worldCount(); }
std::size_t Engine::group_count() const { return store_->groupCount(); }

// ---- picking --------------------------------------------------------------------------

const Bvh& Engine::pickIndex() const {
    std::lock_guard<std::mutex> lock(bvh_->guard());
    const bool stale = bvh_->builtRevision() != store_->geometryRevision();
    // Deleted polygons are skipped in the leaves; rebuild once they are most of it.
    const bool bloated =
        (store_->removals() - bvh_->builtRemovals()) * 2 > bvh_->primitiveCount() + 1024;
    if (!stale && !bloated) return *bvh_;
    // Polygons only moved (none entered the world): new boxes for the same tree.
    if (!bloated && bvh_->builtAdditions() == store_->additions() && bvh_->refit(*store_))
        return *bvh_;
    bvh_->build(*store_);
    return *bvh_;
}

void Engine::prepare_picking() const { pickIndex(); }

int Engine::engine_get_number_of_collisions(Point3 from, Point3 to) const {
    if (!from.finite() || !to.finite() || from == to) return 0;
    return pickIndex().countHits(*store_, from, to - from, 0.0, 1.0, ignoreBack_);
}

void Engine::set_window_size(int width, int height) {
    if (width <= 0 || height <= 0) return;
    winW_ = width;
    winH_ = height;
}

void Engine::pixel_ray(double x, double y, Point3& origin, Point3& direction) const {
    const View v = makeView(camera_, fog_, winW_, winH_);
    origin = v.eye;
    Point3 d = v.dir + v.right * ((x - v.cx) / v.focal) - v.up * ((y - v.cy) / v.focal);
    math_normalize_vector(d);
    direction = d;
}

PickHit Engine::engine_2D_point_to_3D(double x, double y) const {
    PickHit hit;
    if (!std::isfinite(x) || !std::isfinite(y)) return hit;
    Point3 o, d;
    pixel_ray(x, y, o, d);
    const View v = makeView(camera_, fog_, winW_, winH_);
    const double along = dot(d, v.dir);  // depth per unit of distance
    if (!(along > 0)) return hit;
    const double tMin = std::max(0.0, v.nearDepth / along);
    const double tMax = v.farDepth / along;
    double t = 0;
    const std::uint32_t s = pickIndex().nearest(*store_, o, d, tMin, tMax, t);
    if (!s) return hit;
    hit.polygon = SceneStore::polygonHandle(s);
    hit.point = o + d * t;
    hit.distance = t;
    return hit;
}

int Engine::engine_2D_point_to_3D_point_on_plane(double x, double y, const Plane& plane,
                                                 Point3& out) const {
    if (!std::isfinite(x) || !std::isfinite(y) || !plane.n.finite() || !std::isfinite(plane.d))
        return -1;
    Point3 o, d;
    pixel_ray(x, y, o, d);
    const double denom = dot(plane.n, d);
    if (denom == 0) return -1;
    const double t = -(dot(plane.n, o) + plane.d) / denom;
    if (!(t >= 0) || !std::isfinite(t)) return -1;
    out = o + d * t;
    return 0;
}

int Engine::engine_2D_point_to_3D_point_on_sphere(double x, double y, Point3 centre, double radius,
                                                  Point3& out) const {
    if (!std::isfinite(x) || !std::isfinite(y) || !centre.finite() || !(radius > 0) ||
        !std::isfinite(radius))
        return -1;
    Point3 o, d;
    pixel_ray(x, y, o, d);
    const Point3 oc = o - centre;
    const double b = dot(oc, d);
    const double c = dot(oc, oc) - radius * radius;
    const double disc = b * b - c;
    if (disc < 0) return -1;
    const double root = std::sqrt(disc);
    double t = -b - root;
    if (t < 0) t = -b + root;  // the eye is inside: where the ray leaves
    if (t < 0) return -1;
    out = o + d * t;
    return 0;
}

int Engine::engine_3D_point_to_2D(Point3 p, double& x, double& y) const {
    if (!p.finite()) return 3;
    const View v = makeView(camera_, fog_, winW_, winH_);
    const Point3 rel = p - v.eye;
    const double depth = dot(rel, v.dir);
    if (!(depth > 0)) return 3;
    x = v.cx + v.focal * dot(rel, v.right) / depth;
    y = v.cy - v.focal * dot(rel, v.up) / depth;
    const bool inWindow = x >= 0 && x <= winW_ && y >= 0 && y <= winH_;
    if (!inWindow) return 2;
    const bool inBand = depth >= v.nearDepth && depth <= v.farDepth;
    return inBand ? 0 : 1;
}

// ---- camera -------------------------------------------------------------------------

Handle Engine::camera_get_default_camera() { return kCamera; }

Point3 Engine::camera_get_location(Handle camera) const {
    return camera == kCamera ? camera_.location : Point3{};
}

int Engine::camera_set_location(Handle camera, Point3 p) {
    if (camera != kCamera || !p.finite()) return -1;
    camera_.location = p;
    store_->touchScene();
    return 0;
}

Point3 Engine::camera_get_direction(Handle camera) const {
    return camera == kCamera ? camera_.direction : Point3{};
}

Point3 Engine::camera_get_up(Handle camera) const {
    return camera == kCamera ? camera_.up : Point3{};
}

int Engine::camera_set_axis_system(Handle camera, Point3 direction, Point3 up) {
    if (camera != kCamera || !direction.finite() || !up.finite()) return -1;
    if (math_normalize_vector(direction) == 0) return -1;
    // Up made square to the direction; refused when it lies along it.
    Point3 u = up - direction * dot(up, direction);
    const double upLen = length(up);
    if (upLen == 0 || length(u) <= 1e-12 * upLen) return -1;
    math_normalize_vector(u);
    camera_.direction = direction;
    camera_.up = u;
    store_->touchScene();
    return 0;
}

int Engine::camera_set_zoom(Handle camera, double zoom) {
    if (camera != kCamera || !(zoom > 0) || !std::isfinite(zoom)) return -1;
    camera_.zoom = zoom;
    store_->touchScene();
    return 0;
}

double Engine::camera_get_zoom(Handle camera) const { return camera == kCamera ? camera_.zoom : 0; }

int Engine::camera_set_distance_from_eye(Handle camera, double d) {
    if (camera != kCamera || !(d >= 0) || !std::isfinite(d)) return -1;
    camera_.distanceFromEye = d;
    store_->touchScene();
    return 0;
}

double Engine::camera_get_distance_from_eye(Handle camera) const {
    return camera == kCamera ? camera_.distanceFromEye : 0;
}

}  // namespace engine
