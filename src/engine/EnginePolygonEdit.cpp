// Engine: changing polygons (place, turn, colour, light, patches, bitmaps) and points.

#include <cmath>
#include <numbers>

#include "engine/EngineInternal.h"
#include "engine/Geometry.h"

namespace engine {

using internal::PointsOf;

namespace internal {
void planeBasis(Point3 n, Point3& u, Point3& v) {
    // Any vector not along n gives the first axis.
    const Point3 helper = std::abs(n.z) < 0.9 ? Point3{0, 0, 1} : Point3{1, 0, 0};
    u = cross(helper, n);
    Engine::math_normalize_vector(u);
    v = cross(n, u);
}
}  // namespace internal

namespace {
template <class Fn>
void mapPoints(SceneStore& st, std::uint32_t s, Fn fn) {
    const std::uint32_t f = st.firstPoint(s), n = st.pointCount(s);
    for (std::uint32_t i = 0; i < n; ++i) {
        Point3& p = st.pointRef(f + i);
        p = fn(p);
    }
    st.touchGeometry(s);
}

// Rotates the bitmap coordinates of the points about their mean.
void turnBitmapCoords(PolygonExtra& ex, double degrees) {
    if (ex.points.empty()) return;
    double mx = 0, my = 0;
    for (const PointExtra& p : ex.points) {
        mx += p.bx;
        my += p.by;
    }
    mx /= double(ex.points.size());
    my /= double(ex.points.size());
    const double a = degrees * std::numbers::pi / 180.0, c = std::cos(a), s = std::sin(a);
    for (PointExtra& p : ex.points) {
        const double x = p.bx - mx, y = p.by - my;
        p.bx = mx + c * x - s * y;
        p.by = my + s * x + c * y;
    }
}
}  // namespace

int Engine::polygon_move(Handle polygon, Point3 d) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || !d.finite()) return -1;
    mapPoints(*store_, s, [&](Point3 p) { return p + d; });
    return 0;
}

int Engine::polygon_set_location(Handle polygon, Point3 q) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || !q.finite()) return -1;
    PointsOf pts(*store_, s);
    if (pts.size() == 0) return -1;
    const Point3 d = q - geom::boxCentre(pts.data(), pts.size());
    mapPoints(*store_, s, [&](Point3 p) { return p + d; });
    return 0;
}

namespace {
int rotatePolygon(SceneStore& st, Handle polygon, int axis, double degrees) {
    const std::uint32_t s = st.polygonSlot(polygon);
    if (!s || !std::isfinite(degrees)) return -1;
    PointsOf pts(st, s);
    const Point3 c = geom::mean(pts.data(), pts.size());
    mapPoints(st, s, [&](Point3 p) { return geom::rotateAboutAxis(p, c, axis, degrees); });
    return 0;
}
}  // namespace

int Engine::polygon_rotate_x(Handle polygon, double degrees) {
    return rotatePolygon(*store_, polygon, 0, degrees);
}
int Engine::polygon_rotate_y(Handle polygon, double degrees) {
    return rotatePolygon(*store_, polygon, 1, degrees);
}
int Engine::polygon_rotate_z(Handle polygon, double degrees) {
    return rotatePolygon(*store_, polygon, 2, degrees);
}

int Engine::polygon_rotate_bitmap(Handle polygon, double degrees) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || !std::isfinite(degrees)) return -1;
    PolygonExtra& ex = store_->extraFor(s);
    turnBitmapCoords(ex, degrees);
    ex.bitmapRotation = std::fmod(ex.bitmapRotation + degrees, 360.0);
    return 0;
}

int Engine::polygon_set_bitmap_rotation(Handle polygon, double degrees) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || !std::isfinite(degrees)) return -1;
    PolygonExtra& ex = store_->extraFor(s);
    turnBitmapCoords(ex, degrees - ex.bitmapRotation);
    ex.bitmapRotation = std::fmod(degrees, 360.0);
    return 0;
}

int Engine::polygon_flip_visible_side(Handle polygon) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->reversePoints(s);
    return 0;
}

Rgb Engine::polygon_get_color(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s ? store_->fill(s) : Rgb{};
}

int Engine::polygon_set_color_fill(Handle polygon, Rgb c) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    using internal::clampChannel;
    store_->setFill(s, Rgb{clampChannel(c.r), clampChannel(c.g), clampChannel(c.b)});
    return 0;
}

int Engine::polygon_set_bitmap_fill(Handle polygon, Handle bitmap) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || (bitmap != 0 && bitmap_get_width(bitmap) <= 0)) return -1;
    store_->extraFor(s).bitmap = bitmap;
    return 0;
}

Handle Engine::polygon_get_bitmap(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return 0;
    const PolygonExtra* ex = store_->extra(s);
    return ex ? ex->bitmap : 0;
}

int Engine::polygon_get_brightness(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s ? store_->brightness(s) : 0;
}

int Engine::polygon_set_brightness(Handle polygon, int brightness) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->setBrightness(s, brightness);
    return 0;
}

int Engine::polygon_set_rotated(Handle polygon, bool yes) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->setFlag(s, polyflag::kRotated, yes);
    return 0;
}

int Engine::polygon_set_translucent(Handle polygon, int mode) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->setTranslucent(s, mode);
    return 0;
}

int Engine::polygon_get_translucent(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    return s ? store_->translucent(s) : 0;
}

int Engine::polygon_add_patch(Handle polygon, const std::vector<Point3>& points, Rgb c, int type) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || points.size() < 3 || !geom::allFinite(points.data(), points.size())) return -1;
    using internal::clampChannel;
    store_->extraFor(s).patches.push_back(
        Patch{points, Rgb{clampChannel(c.r), clampChannel(c.g), clampChannel(c.b)}, type});
    return 0;
}

int Engine::polygon_add_patch_easy(Handle polygon, Point3 centre, double size, Rgb c, int type) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || !centre.finite() || !(size > 0) || !std::isfinite(size)) return -1;
    PointsOf pts(*store_, s);
    Plane pl;
    if (!geom::planeOf(pts.data(), pts.size(), pl)) return -1;
    // A square of side size on the polygon's plane, clockwise seen from its front.
    Point3 u, v;
    internal::planeBasis(pl.n, u, v);
    const Point3 m = centre - pl.n * (dot(pl.n, centre) + pl.d);
    const double h = 0.5 * size;
    const std::vector<Point3> sq{m + u * h + v * h, m + u * h - v * h, m - u * h - v * h,
                                 m - u * h + v * h};
    return polygon_add_patch(polygon, sq, c, type);
}

int Engine::polygon_delete_patches(Handle polygon) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    if (store_->extra(s)) store_->extraFor(s).patches.clear();
    return 0;
}

int Engine::polygon_get_patch_type(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return 0;
    const PolygonExtra* ex = store_->extra(s);
    return (ex && !ex->patches.empty()) ? ex->patches.back().type : 0;
}

int Engine::polygon_set_light(Handle polygon, Rgb light) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->setLight(s, Rgb{light.r & 255, light.g & 255, light.b & 255});
    return 0;
}

int Engine::polygon_remove_light(Handle polygon) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return -1;
    store_->setLight(s, std::nullopt);
    return 0;
}

std::optional<Rgb> Engine::polygon_get_light(Handle polygon) const {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s) return std::nullopt;
    return store_->light(s);
}

int Engine::polygon_wrap_a_bitmap_fixed(Handle polygon, Handle bitmap, int repeatX, int repeatY) {
    const std::uint32_t s = store_->polygonSlot(polygon);
    if (!s || bitmap_get_width(bitmap) <= 0 || repeatX <= 0 || repeatY <= 0) return -1;
    PointsOf pts(*store_, s);
    Plane pl;
    if (!geom::planeOf(pts.data(), pts.size(), pl)) return -1;
    // The bitmap spans the polygon's extent on its plane, repeated as asked.
    Point3 u, v;
    internal::planeBasis(pl.n, u, v);
    double ulo = HUGE_VAL, uhi = -HUGE_VAL, vlo = HUGE_VAL, vhi = -HUGE_VAL;
    for (std::size_t i = 0; i < pts.size(); ++i) {
        const double a = dot(pts[i], u), b = dot(pts[i], v);
        ulo = std::min(ulo, a);
        uhi = std::max(uhi, a);
        vlo = std::min(vlo, b);
        vhi = std::max(vhi, b);
    }
    PolygonExtra& ex = store_->extraFor(s);
    ex.bitmap = bitmap;
    ex.bitmapRotation = 0;
    ex.points.resize(pts.size());
    for (std::size_t i = 0; i < pts.size(); ++i) {
        ex.points[i].bx = repeatX * (dot(pts[i], u) - ulo) / (uhi - ulo);
        ex.points[i].by = repeatY * (vhi - dot(pts[i], v)) / (vhi - vlo);
    }
    return 0;
}

// ---- points -------------------------------------------------------------------------------

namespace {
const PointExtra* findPointExtra(const SceneStore& st, std::uint32_t p) {
    const std::uint32_t o = st.owner(p);
    const std::uint32_t i = p - st.firstPoint(o);
    const PolygonExtra* ex = st.extra(o);
    return (ex && ex->points.size() > i) ? &ex->points[i] : nullptr;
}

// The side-table entry of a live point, made on demand.
PointExtra& makePointExtra(SceneStore& st, std::uint32_t p) {
    const std::uint32_t o = st.owner(p);
    PolygonExtra& ex = st.extraFor(o);
    if (ex.points.size() < st.pointCount(o)) ex.points.resize(st.pointCount(o));
    return ex.points[p - st.firstPoint(o)];
}
}  // namespace

int Engine::point_get_xyz(Handle point, Point3& out) const {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p) return -1;
    out = store_->point(p);
    return 0;
}

int Engine::point_set_xyz(Handle point, Point3 v) {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p || !v.finite()) return -1;
    store_->setPoint(p, v);
    return 0;
}

int Engine::point_get_bitmap_xy(Handle point, double& bx, double& by) const {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p) return -1;
    const PointExtra* pe = findPointExtra(*store_, p);
    bx = pe ? pe->bx : 0;
    by = pe ? pe->by : 0;
    return 0;
}

int Engine::point_set_bitmap_xy(Handle point, double bx, double by) {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p || !std::isfinite(bx) || !std::isfinite(by)) return -1;
    PointExtra& pe = makePointExtra(*store_, p);
    pe.bx = bx;
    pe.by = by;
    return 0;
}

int Engine::point_set_rgb(Handle point, Rgb c) {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p) return -1;
    PointExtra& pe = makePointExtra(*store_, p);
    pe.hasRgb = true;
    pe.rgb = Rgb{c.r & 255, c.g & 255, c.b & 255};
    return 0;
}

std::optional<Rgb> Engine::point_get_rgb(Handle point) const {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p) return std::nullopt;
    const PointExtra* pe = findPointExtra(*store_, p);
    if (!pe || !pe->hasRgb) return std::nullopt;
    return pe->rgb;
}

int Engine::point_set_alpha(Handle point, int alpha) {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p) return -1;
    makePointExtra(*store_, p).alpha = internal::clampChannel(alpha);
    return 0;
}

int Engine::point_get_alpha(Handle point) const {
    const std::uint32_t p = store_->pointSlot(point);
    if (!p) return -1;
    const PointExtra* pe = findPointExtra(*store_, p);
    return pe ? pe->alpha : 255;
}

}  // namespace engine
