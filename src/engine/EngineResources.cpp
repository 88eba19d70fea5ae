// Engine: bitmaps, fonts and queued texts, lines, names and the math helpers.

#include <stb/stb_image.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "engine/EngineInternal.h"
#include "engine/Geometry.h"

namespace engine {

// ---- bitmaps -----------------------------------------------------------------------

namespace {
template <class B>
const B* bitmapOf(const std::vector<std::unique_ptr<B>>& bitmaps, Handle h) {
    const std::int64_t i = handleIndex(h, Kind::Bitmap);
    return (i >= 0 && std::size_t(i) < bitmaps.size()) ? bitmaps[std::size_t(i)].get() : nullptr;
}
}  // namespace

Handle Engine::bitmap_load(std::string_view path, int) {
    if (path.empty()) return 0;
    for (std::size_t i = 0; i < bitmaps_.size(); ++i)
        if (bitmaps_[i]->path == path) return makeHandle(Kind::Bitmap, std::uint32_t(i));
    const std::string p(path);
    int w = 0, h = 0, channels = 0;
    stbi_uc* data = stbi_load(p.c_str(), &w, &h, &channels, 4);
    if (!data) return 0;
    auto b = std::make_unique<BitmapObj>();
    b->path = p;
    b->width = w;
    b->height = h;
    b->rgba.assign(data, data + std::size_t(w) * std::size_t(h) * 4);
    stbi_image_free(data);
    bitmaps_.push_back(std::move(b));
    return makeHandle(Kind::Bitmap, std::uint32_t(bitmaps_.size() - 1));
}

int Engine::bitmap_get_width(Handle bitmap) const {
    const BitmapObj* b = bitmapOf(bitmaps_, bitmap);
    return b ? b->width : 0;
}

int Engine::bitmap_get_height(Handle bitmap) const {
    const BitmapObj* b = bitmapOf(bitmaps_, bitmap);
    return b ? b->height : 0;
}

std::string Engine::bitmap_get_path(Handle bitmap) const {
    const BitmapObj* b = bitmapOf(bitmaps_, bitmap);
    return b ? b->path : std::string();
}

bool Engine::bitmap_pixels(Handle bitmap, int& width, int& height,
                           const std::uint8_t*& rgba) const {
    const BitmapObj* b = bitmapOf(bitmaps_, bitmap);
    if (!b) return false;
    width = b->width;
    height = b->height;
    rgba = b->rgba.data();
    return true;
}

// ---- fonts and texts ------------------------------------------------------------------

Handle Engine::font_create(std::string_view name, int, int) {
    fonts_.emplace_back(name);
    return makeHandle(Kind::Font, std::uint32_t(fonts_.size() - 1));
}

int Engine::font_write_text(Handle font, std::string_view text, double xPercent, double yPercent,
                            Rgb colour, int flags) {
    const std::int64_t i = handleIndex(font, Kind::Font);
    if (i < 0 || std::size_t(i) >= fonts_.size() || !std::isfinite(xPercent) ||
        !std::isfinite(yPercent))
        return -1;
    texts_.push_back(
        TextItem{font, std::string(text), xPercent, yPercent,
                 Rgb{internal::clampChannel(colour.r), internal::clampChannel(colour.g),
                     internal::clampChannel(colour.b)},
                 flags});
    return 0;
}

std::vector<TextItem> Engine::take_queued_texts() {
    std::vector<TextItem> out;
    out.swap(texts_);
    return out;
}

// ---- names -------------------------------------------------------------------------------

std::string Engine::entity_get_name(Handle polygonOrGroup) const {
    if (const std::uint32_t s = store_->polygonSlot(polygonOrGroup)) return store_->name(s);
    if (const std::uint32_t g = store_->groupSlot(polygonOrGroup)) return store_->groupName(g);
    return {};
}

int Engine::entity_get_name(Handle polygonOrGroup, char* buf, int bufLen) const {
    if (!buf || bufLen <= 0) return 0;
    const std::string* name = nullptr;
    if (const std::uint32_t s = store_->polygonSlot(polygonOrGroup))
        name = &store_->name(s);
    else if (const std::uint32_t g = store_->groupSlot(polygonOrGroup))
        name = &store_->groupName(g);
    if (!name) {
        buf[0] = '\0';
        return 0;
    }
    const std::size_t n = std::min(name->size(), std::size_t(bufLen - 1));
    std::memcpy(buf, name->data(), n);
    buf[n] = '\0';
    return int(n);
}

// ---- lines ----------------------------------------------------------------------------------

Handle Engine::line_draw(double x1, double y1, double x2, double y2, Rgb c1, Rgb c2) {
    const Point3 a{x1, y1, 0}, b{x2, y2, 0};
    if (!a.finite() || !b.finite()) return 0;
    const Handle h = makeHandle(Kind::Line, nextLine_++);
    lines_.push_back(LineItem{h, false, a, b, c1, c2});
    store_->touchScene();
    return h;
}

Handle Engine::line_draw3D(Point3 a, Point3 b, Rgb c1, Rgb c2) {
    if (!a.finite() || !b.finite()) return 0;
    const Handle h = makeHandle(Kind::Line, nextLine_++);
    lines_.push_back(LineItem{h, true, a, b, c1, c2});
    store_->touchScene();
    return h;
}

int Engine::line_set_edges(Handle line, double x1, double y1, double x2, double y2) {
    const Point3 a{x1, y1, 0}, b{x2, y2, 0};
    if (!a.finite() || !b.finite()) return -1;
    for (LineItem& l : lines_) {
        if (l.handle != line) continue;
        if (l.is3D) return -1;
        l.a = a;
        l.b = b;
        store_->touchScene();
        return 0;
    }
    return -1;
}

int Engine::line_set_edges3D(Handle line, Point3 a, Point3 b) {
    if (!a.finite() || !b.finite()) return -1;
    for (LineItem& l : lines_) {
        if (l.handle != line) continue;
        if (!l.is3D) return -1;
        l.a = a;
        l.b = b;
        store_->touchScene();
        return 0;
    }
    return -1;
}

// ---- math -----------------------------------------------------------------------------------

double Engine::math_get_square_distance(Point3 a, Point3 b) {
    const Point3 d = a - b;
    return dot(d, d);
}

double Engine::math_get_distance(Point3 a, Point3 b) {
    return std::sqrt(math_get_square_distance(a, b));
}

double Engine::math_get_distance_between_point_and_line(Point3 p, Point3 a, Point3 b) {
    const Point3 ab = b - a;
    const double len = length(ab);
    if (len == 0) return math_get_distance(p, a);
    return length(cross(p - a, ab)) / len;
}

bool Engine::math_is_point_on_segment(Point3 p, Point3 a, Point3 b, double tolerance) {
    const Point3 ab = b - a;
    const double len2 = dot(ab, ab);
    if (len2 == 0) return math_get_distance(p, a) <= tolerance;
    const double t = std::clamp(dot(p - a, ab) / len2, 0.0, 1.0);
    return math_get_distance(p, a + ab * t) <= tolerance;
}

int Engine::math_points_to_plane(Plane& plane, Point3 p1, Point3 p2, Point3 p3) {
    const Point3 pts[3] = {p1, p2, p3};
    return geom::planeOf(pts, 3, plane) ? 0 : -1;
}

double Engine::math_product(Point3 a, Point3 b) { return dot(a, b); }

Point3 Engine::math_cross(Point3 a, Point3 b) { return cross(a, b); }

double Engine::math_normalize_vector(Point3& v) {
    const double len = length(v);
    if (len == 0 || !std::isfinite(len)) return 0;
    v = Point3{v.x / len, v.y / len, v.z / len};
    return len;
}

}  // namespace engine
