#include "render/SceneFraming.h"

#include <algorithm>
#include <cmath>

namespace render {

using engine::Point3;

std::optional<View> parseView(std::string_view name) {
    if (name == "top") return View::Top;
    if (name == "north") return View::North;
    if (name == "east") return View::East;
    if (name == "iso") return View::Iso;
    return std::nullopt;
}

const char* viewName(View v) {
    switch (v) {
        case View::Top:
            return "top";
        case View::North:
            return "north";
        case View::East:
            return "east";
        case View::Iso:
            return "iso";
    }
    return "top";
}

bool frameScene(engine::Engine& e, View view, int width, int height) {
    Point3 lo, hi;
    if (!e.group_bounding_box(0, lo, hi) || !lo.finite() || !hi.finite()) return false;
    width = std::max(width, 1);
    height = std::max(height, 1);

    Point3 dir, up{0, 0, 1};
    switch (view) {
        case View::Top:
            dir = {0, 0, -1}, up = {0, 1, 0};
            break;
        case View::North:
            dir = {0, 1, 0};
            break;
        case View::East:
            dir = {1, 0, 0};
            break;
        case View::Iso:
            dir = Point3{1, 1, -1} * (1 / std::sqrt(3.0));
            break;
    }
    const Point3 right = [&] {
        Point3 s = engine::cross(dir, up);
        return s * (1 / engine::length(s));
    }();
    const Point3 trueUp = engine::cross(right, dir);

    // Plans and sections through a long lens, close to a true projection; the
    // oblique view with the normal one, for its depth.
    const double zoom = view == View::Iso ? 24.0 : 2.0;
    const double tanX = 0.5 * zoom / 24.0;
    const double tanY = tanX * height / width;
    const Point3 centre = (lo + hi) * 0.5;
    const double size = std::max(engine::length(hi - lo), 1e-3);

    // The eye sits at distance d behind the centre; a corner at offsets (s, u, f)
    // from the centre along right, up and forward is in view when |s| <= tanX (d + f)
    // and |u| <= tanY (d + f).
    double need = 0, nearest = 1e300, farthest = -1e300;
    for (int i = 0; i < 8; ++i) {
        const Point3 corner{(i & 1) ? hi.x : lo.x, (i & 2) ? hi.y : lo.y, (i & 4) ? hi.z : lo.z};
        const Point3 o = corner - centre;
        const double s = engine::dot(o, right), u = engine::dot(o, trueUp), f = engine::dot(o, dir);
        need = std::max({need, std::fabs(s) / tanX - f, std::fabs(u) / tanY - f});
        nearest = std::min(nearest, f);
        farthest = std::max(farthest, f);
    }
    const double margin = 0.04 * size;
    const double d = std::max(need * 1.06 + margin, -nearest + margin);
    const double nearPlane = std::max((d + nearest) * 0.5, d * 1e-4);
    const double farPlane = (d + farthest) * 1.5 + margin;

    const engine::Handle cam = e.camera_get_default_camera();
    if (cam == 0) return false;
    e.camera_set_location(cam, centre - dir * d);
    e.camera_set_axis_system(cam, dir, trueUp);
    e.camera_set_zoom(cam, zoom);
    e.camera_set_distance_from_eye(cam, nearPlane);
    e.engine_set_fog(e.engine_get_fog().on, farPlane, nearPlane);
    e.set_window_size(width, height);
    return true;
}

}  // namespace render
