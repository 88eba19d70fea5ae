#include "core/EngineProcedures.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "core/AppContext.h"
#include "core/Procedures.h"

namespace core {

namespace {

using engine::Engine;
using engine::Handle;
using engine::Plane;
using engine::Point3;
using engine::Rgb;

// How one C++ parameter of an operation is read from (and, when it is written,
// put back into) the argument list. `width` arguments stand for it.
template <class T>
struct Arg;

template <class T, ParamKind K>
struct PlainArg {
    static constexpr std::size_t width = 1;
    static constexpr bool out = false;
    static constexpr std::array<ParamKind, 1> kinds{K};
    T v;
    void back(std::vector<Value>&, std::size_t) const {}
    T arg() const { return v; }
};

template <>
struct Arg<Handle> : PlainArg<Handle, ParamKind::Handle> {
    Arg(std::vector<Value>& a, std::size_t i) { v = static_cast<Handle>(a[i].integer()); }
};
template <>
struct Arg<int> : PlainArg<int, ParamKind::Integer> {
    Arg(std::vector<Value>& a, std::size_t i) { v = static_cast<int>(a[i].integer()); }
};
template <>
struct Arg<double> : PlainArg<double, ParamKind::Number> {
    Arg(std::vector<Value>& a, std::size_t i) { v = a[i].number(); }
};
template <>
struct Arg<bool> : PlainArg<bool, ParamKind::Bool> {
    Arg(std::vector<Value>& a, std::size_t i) { v = a[i].boolean(); }
};
template <>
struct Arg<Point3> : PlainArg<Point3, ParamKind::Point> {
    Arg(std::vector<Value>& a, std::size_t i) { v = a[i].point(); }
};
template <>
struct Arg<Rgb> : PlainArg<Rgb, ParamKind::Colour> {
    Arg(std::vector<Value>& a, std::size_t i) { v = a[i].colour(); }
};
template <>
struct Arg<std::string_view> {
    static constexpr std::size_t width = 1;
    static constexpr bool out = false;
    static constexpr std::array<ParamKind, 1> kinds{ParamKind::Text};
    std::string s;
    Arg(std::vector<Value>& a, std::size_t i) : s(a[i].text()) {}
    void back(std::vector<Value>&, std::size_t) const {}
    std::string_view arg() const { return s; }
};
template <>
struct Arg<const Plane&> {
    static constexpr std::size_t width = 2;
    static constexpr bool out = false;
    static constexpr std::array<ParamKind, 2> kinds{ParamKind::Point, ParamKind::Number};
    Plane p;
    Arg(std::vector<Value>& a, std::size_t i) {
        p.n = a[i].point();
        p.d = a[i + 1].number();
    }
    void back(std::vector<Value>&, std::size_t) const {}
    const Plane& arg() const { return p; }
};

// Written arguments.
template <class T, ParamKind K>
struct RefArg {
    static constexpr std::size_t width = 1;
    static constexpr bool out = true;
    static constexpr std::array<ParamKind, 1> kinds{K};
    T v{};
    void back(std::vector<Value>& a, std::size_t i) const { a[i] = Value(v); }
    T& arg() { return v; }
};
template <>
struct Arg<Point3&> : RefArg<Point3, ParamKind::Point> {
    Arg(std::vector<Value>& a, std::size_t i) { v = a[i].point(); }
};
template <>
struct Arg<double&> : RefArg<double, ParamKind::Number> {
    Arg(std::vector<Value>& a, std::size_t i) { v = a[i].number(); }
};
template <>
struct Arg<Handle&> : RefArg<Handle, ParamKind::Handle> {
    Arg(std::vector<Value>& a, std::size_t i) { v = static_cast<Handle>(a[i].integer()); }
};
template <>
struct Arg<Plane&> {
    static constexpr std::size_t width = 2;
    static constexpr bool out = true;
    static constexpr std::array<ParamKind, 2> kinds{ParamKind::Point, ParamKind::Number};
    Plane p;
    Arg(std::vector<Value>& a, std::size_t i) {
        p.n = a[i].point();
        p.d = a[i + 1].number();
    }
    void back(std::vector<Value>& a, std::size_t i) const {
        a[i] = Value(p.n);
        a[i + 1] = Value(p.d);
    }
    Plane& arg() { return p; }
};

template <class R>
Value toValue(R&& r) {
    using T = std::decay_t<R>;
    if constexpr (std::is_same_v<T, std::optional<Rgb>>) {
        return r ? Value(*r) : Value();
    } else {
        return Value(std::forward<R>(r));
    }
}

template <class... A>
constexpr std::array<std::size_t, sizeof...(A) + 1> offsets() {
    std::array<std::size_t, sizeof...(A) + 1> off{};
    std::size_t w[] = {Arg<A>::width..., 0};
    for (std::size_t i = 0; i < sizeof...(A); ++i) off[i + 1] = off[i] + w[i];
    return off;
}

template <class R, class... A, class F, std::size_t... I>
Value invoke(F& f, Engine& e, std::vector<Value>& args, std::index_sequence<I...>) {
    [[maybe_unused]] constexpr auto off = offsets<A...>();
    std::tuple<Arg<A>...> held{Arg<A>(args, off[I])...};
    Value result;
    if constexpr (std::is_void_v<R>) {
        f(e, std::get<I>(held).arg()...);
    } else {
        result = toValue(f(e, std::get<I>(held).arg()...));
    }
    (std::get<I>(held).back(args, off[I]), ...);
    return result;
}

// A procedure for an operation with parameters A... returning R; `f(engine, a...)`.
template <class R, class... A, class F>
Procedure make(std::string name, F f) {
    Procedure p;
    p.name = std::move(name);
    (
        [&] {
            std::size_t at = p.params.size();
            for (ParamKind k : Arg<A>::kinds) p.params.push_back(k);
            if (Arg<A>::out) {
                p.changesArgs = true;
                for (std::size_t k = 0; k < Arg<A>::width; ++k) p.outArgs.push_back(at + k);
            }
        }(),
        ...);
    p.body = [f](AppContext& ctx, std::vector<Value>& args) mutable {
        return invoke<R, A...>(f, ctx.engine, args, std::index_sequence_for<A...>{});
    };
    return p;
}

template <class R, class... A>
Procedure op(std::string name, R (Engine::*fn)(A...)) {
    return make<R, A...>(std::move(name), [fn](Engine& e, auto&&... a) { return (e.*fn)(a...); });
}
template <class R, class... A>
Procedure op(std::string name, R (Engine::*fn)(A...) const) {
    return make<R, A...>(std::move(name), [fn](Engine& e, auto&&... a) { return (e.*fn)(a...); });
}
template <class R, class... A>
Procedure op(std::string name, R (*fn)(A...)) {
    return make<R, A...>(std::move(name), [fn](Engine&, auto&&... a) { return fn(a...); });
}
// An operation written here, taking the engine first.
template <class R, class... A>
Procedure own(std::string name, R (*fn)(Engine&, A...)) {
    return make<R, A...>(std::move(name), fn);
}

// ---- operations whose engine form differs from the plain-value form ------------

// The polygon under the pixel, and the point hit written into the third argument.
Handle pick(Engine& e, double x, double y, Point3& point) {
    engine::PickHit hit = e.engine_2D_point_to_3D(x, y);
    point = hit.point;
    return hit.polygon;
}

int polygonAddPatch(Engine& e, Handle polygon, std::string_view points, Rgb c, int type) {
    // Points as "x,y,z;x,y,z;..." (or separated by blanks).
    std::vector<Point3> pts;
    std::string s(points);
    for (char& ch : s)
        if (ch == ';') ch = ' ';
    std::istringstream in(s);
    std::string one;
    while (in >> one) pts.push_back(Value(one).point());
    return e.polygon_add_patch(polygon, pts, c, type);
}

int engineRender(Engine&, Handle /*window*/, Handle /*camera*/) { return 0; }

}  // namespace

void registerEngineProcedures(ProcedureRegistry& r) {
    // engine
    r.add(op("engine_load_world", &Engine::engine_load_world));
    r.add(op("engine_is_engine_empty", &Engine::engine_is_engine_empty));
    r.add(op("engine_add_polygon", &Engine::engine_add_polygon));
    r.add(op("engine_set_background_color", &Engine::engine_set_background_color));
    r.add(op("engine_get_background_color", &Engine::engine_get_background_color));
    r.add(op("engine_set_fog", &Engine::engine_set_fog));
    r.add(op("engine_set_error_reporting_mode", &Engine::engine_set_error_reporting_mode));
    r.add(op("engine_set_speaker_mode", &Engine::engine_set_speaker_mode));
    r.add(op("engine_write_error_messages_to_the_screen",
             &Engine::engine_write_error_messages_to_the_screen));
    r.add(op("engine_hide_log_window", &Engine::engine_hide_log_window));
    r.add(op("engine_set_log_window_visible", &Engine::engine_set_log_window_visible));
    r.add(op("engine_clear_STATE_log_files", &Engine::engine_clear_STATE_log_files));
    r.add(op("engine_show_frames_per_second_rate", &Engine::engine_show_frames_per_second_rate));
    r.add(op("engine_is_editor_mode", &Engine::engine_is_editor_mode));
    r.add(op("engine_close", &Engine::engine_close));
    r.add(op("engine_get_number_of_collisions", &Engine::engine_get_number_of_collisions));
    r.add(op("engine_ignore_back_faced_polygons_for_collision_detection",
             &Engine::engine_ignore_back_faced_polygons_for_collision_detection));
    r.add(op("set_window_size", &Engine::set_window_size));
    r.add(own("engine_2D_point_to_3D", &pick));
    r.add(
        op("engine_2D_point_to_3D_point_on_plane", &Engine::engine_2D_point_to_3D_point_on_plane));
    r.add(op("engine_2D_point_to_3D_point_on_sphere",
             &Engine::engine_2D_point_to_3D_point_on_sphere));
    r.add(op("engine_3D_point_to_2D", &Engine::engine_3D_point_to_2D));
    r.add(own("engine_render", &engineRender));
    r.add(op("3D_card_check_hardware_support", &Engine::card_check_hardware_support));
    r.add(op("3D_card_use", &Engine::card_use));

    // camera
    r.add(op("camera_get_default_camera", &Engine::camera_get_default_camera));
    r.add(op("camera_get_location", &Engine::camera_get_location));
    r.add(op("camera_get_location1", &Engine::camera_get_location));
    r.add(op("camera_set_location", &Engine::camera_set_location));
    r.add(op("camera_get_direction", &Engine::camera_get_direction));
    r.add(op("camera_get_direction1", &Engine::camera_get_direction));
    r.add(op("camera_set_axis_system", &Engine::camera_set_axis_system));
    r.add(op("camera_get_up", &Engine::camera_get_up));
    r.add(op("camera_set_zoom", &Engine::camera_set_zoom));
    r.add(op("camera_get_zoom", &Engine::camera_get_zoom));
    r.add(op("camera_set_distance_from_eye", &Engine::camera_set_distance_from_eye));
    r.add(op("camera_get_distance_from_eye", &Engine::camera_get_distance_from_eye));

    // groups
    r.add(op("group_create", &Engine::group_create));
    r.add(op("group_is_group", &Engine::group_is_group));
    r.add(op("group_get_first_group", &Engine::group_get_first_group));
    r.add(op("group_get_next", &Engine::group_get_next));
    r.add(op("group_get_first_polygon", &Engine::group_get_first_polygon));
    r.add(op("group_get_next_polygon", &Engine::group_get_next_polygon));
    r.add(op("group_get_father_group", &Engine::group_get_father_group));
    r.add(op("group_set_father_group", &Engine::group_set_father_group));
    r.add(op("group_get_first_included_group", &Engine::group_get_first_included_group));
    r.add(op("group_get_next_included_group", &Engine::group_get_next_included_group));
    r.add(op("group_set_rotate_reference_point", &Engine::group_set_rotate_reference_point));
    r.add(op("group_get_center_of_mass", &Engine::group_get_center_of_mass));
    r.add(op("group_set_name", &Engine::group_set_name));
    r.add(op("group_get_number_of_polygons", &Engine::group_get_number_of_polygons));
    r.add(op("group_rotate", &Engine::group_rotate));
    r.add(op("group_set_location", &Engine::group_set_location));
    r.add(op("group_move", &Engine::group_move));
    r.add(op("group_scale", &Engine::group_scale));
    r.add(op("group_ungroup", &Engine::group_ungroup));
    r.add(op("group_delete_members", &Engine::group_delete_members));
    r.add(op("group_duplicate_tree", &Engine::group_duplicate_tree));
    r.add(op("group_create_reduced_copy", &Engine::group_create_reduced_copy));
    r.add(op("group_set_patches_color", &Engine::group_set_patches_color));
    r.add(op("group_set_color", &Engine::group_set_color));
    r.add(op("group_calculate_points_normals", &Engine::group_calculate_points_normals));
    r.add(op("group_bounding_box", &Engine::group_bounding_box));

    // polygons
    r.add(op("polygon_create", &Engine::polygon_create));
    r.add(op("polygon_add_point",
             static_cast<Handle (Engine::*)(Handle, Point3)>(&Engine::polygon_add_point)));
    r.add(op("polygon_delete", &Engine::polygon_delete));
    r.add(op("polygon_duplicate", &Engine::polygon_duplicate));
    r.add(op("polygon_get_first_polygon", &Engine::polygon_get_first_polygon));
    r.add(op("polygon_get_next", &Engine::polygon_get_next));
    r.add(op("polygon_get_group", &Engine::polygon_get_group));
    r.add(op("polygon_set_group", &Engine::polygon_set_group));
    r.add(op("polygon_set_name", &Engine::polygon_set_name));
    r.add(op("polygon_get_first_point", &Engine::polygon_get_first_point));
    r.add(op("polygon_get_closest_point", &Engine::polygon_get_closest_point));
    r.add(op("polygon_get_center", &Engine::polygon_get_center));
    r.add(op("polygon_get_plane", &Engine::polygon_get_plane));
    r.add(op("polygon_get_num_of_points", &Engine::polygon_get_num_of_points));
    r.add(op("polygon_count_redundant_points", &Engine::polygon_count_redundant_points));
    r.add(op("polygon_is_valid", &Engine::polygon_is_valid));
    r.add(op("polygon_is_convex", &Engine::polygon_is_convex));
    r.add(op("polygon_are_all_points_on_one_plane", &Engine::polygon_are_all_points_on_one_plane));
    r.add(op("polygon_are_bitmap_x_cords_ok", &Engine::polygon_are_bitmap_x_cords_ok));
    r.add(op("polygon_are_bitmap_y_cords_ok", &Engine::polygon_are_bitmap_y_cords_ok));
    r.add(op("polygon_is_point_inside_polygon", &Engine::polygon_is_point_inside_polygon));
    r.add(op("polygon_split", &Engine::polygon_split));
    r.add(op("polygon_move", &Engine::polygon_move));
    r.add(op("polygon_set_location", &Engine::polygon_set_location));
    r.add(op("polygon_rotate_x", &Engine::polygon_rotate_x));
    r.add(op("polygon_rotate_y", &Engine::polygon_rotate_y));
    r.add(op("polygon_rotate_z", &Engine::polygon_rotate_z));
    r.add(op("polygon_rotate_bitmap", &Engine::polygon_rotate_bitmap));
    r.add(op("polygon_set_bitmap_rotation", &Engine::polygon_set_bitmap_rotation));
    r.add(op("polygon_flip_visible_side", &Engine::polygon_flip_visible_side));
    r.add(op("polygon_get_color", &Engine::polygon_get_color));
    r.add(op("polygon_set_color_fill", &Engine::polygon_set_color_fill));
    r.add(op("polygon_set_bitmap_fill", &Engine::polygon_set_bitmap_fill));
    r.add(op("polygon_get_bitmap", &Engine::polygon_get_bitmap));
    r.add(op("polygon_get_brightness", &Engine::polygon_get_brightness));
    r.add(op("polygon_set_brightness", &Engine::polygon_set_brightness));
    r.add(op("polygon_set_rotated", &Engine::polygon_set_rotated));
    r.add(op("polygon_set_translucent", &Engine::polygon_set_translucent));
    r.add(op("polygon_get_translucent", &Engine::polygon_get_translucent));
    r.add(op("polygon_disable", &Engine::polygon_disable));
    r.add(op("polygon_enable", &Engine::polygon_enable));
    r.add(op("polygon_is_disabled", &Engine::polygon_is_disabled));
    r.add(op("polygon_is_in_world", &Engine::polygon_is_in_world));
    r.add(own("polygon_add_patch", &polygonAddPatch));
    r.add(op("polygon_add_patch_easy", &Engine::polygon_add_patch_easy));
    r.add(op("polygon_delete_patches", &Engine::polygon_delete_patches));
    r.add(op("polygon_get_patch_type", &Engine::polygon_get_patch_type));
    r.add(op("polygon_set_light", &Engine::polygon_set_light));
    r.add(op("polygon_remove_light", &Engine::polygon_remove_light));
    r.add(op("polygon_get_light", &Engine::polygon_get_light));
    r.add(op("polygon_wrap_a_bitmap_fixed", &Engine::polygon_wrap_a_bitmap_fixed));

    // points
    r.add(op("point_get_next_point", &Engine::point_get_next_point));
    r.add(op("point_get_xyz", &Engine::point_get_xyz));
    r.add(op("point_set_xyz", &Engine::point_set_xyz));
    r.add(op("point_get_bitmap_xy", &Engine::point_get_bitmap_xy));
    r.add(op("point_set_bitmap_xy", &Engine::point_set_bitmap_xy));
    r.add(op("point_set_rgb", &Engine::point_set_rgb));
    r.add(op("point_get_rgb", &Engine::point_get_rgb));
    r.add(op("point_set_alpha", &Engine::point_set_alpha));
    r.add(op("point_get_alpha", &Engine::point_get_alpha));

    // lights
    r.add(op("light_create", &Engine::light_create));
    r.add(op("light_activate", &Engine::light_activate));
    r.add(op("light_set_location", &Engine::light_set_location));
    r.add(op("light_point_at", &Engine::light_point_at));
    r.add(op("light_remove_light", &Engine::light_remove_light));
    r.add(op("light_set_type_of_light", &Engine::light_set_type_of_light));
    r.add(op("light_set_entity_to_light", &Engine::light_set_entity_to_light));
    r.add(op("light_set_ambient", &Engine::light_set_ambient));
    r.add(op("light_set_diffuse", &Engine::light_set_diffuse));
    r.add(op("light_set_specular", &Engine::light_set_specular));
    r.add(op("light_set_specular_shining", &Engine::light_set_specular_shining));
    r.add(op("light_calcualte_vertices_normals_automatically",
             &Engine::light_calcualte_vertices_normals_automatically));

    // bitmaps, fonts, names, lines
    r.add(op("bitmap_load", &Engine::bitmap_load));
    r.add(op("bitmap_get_width", &Engine::bitmap_get_width));
    r.add(op("bitmap_get_height", &Engine::bitmap_get_height));
    r.add(op("bitmap_get_path", &Engine::bitmap_get_path));
    r.add(op("font_create", &Engine::font_create));
    r.add(op("font_write_text", &Engine::font_write_text));
    {
        // entity_get_name HANDLE BUFFER LENGTH: the buffer gets the name cut to
        // LENGTH - 1 characters; the result is the copied length.
        Procedure p;
        p.name = "entity_get_name";
        p.params = {ParamKind::Handle, ParamKind::Text, ParamKind::Integer};
        p.changesArgs = true;
        p.outArgs = {1};
        p.body = [](AppContext& ctx, std::vector<Value>& a) -> Value {
            int bufLen = static_cast<int>(std::clamp<std::int64_t>(a[2].integer(), 0, 1 << 30));
            std::string buf(static_cast<std::size_t>(bufLen) + 1, '\0');
            int n =
                ctx.engine.entity_get_name(static_cast<Handle>(a[0].integer()), buf.data(), bufLen);
            buf.resize(static_cast<std::size_t>(std::clamp(n, 0, bufLen)));
            a[1] = Value(buf);
            return Value(n);
        };
        r.add(std::move(p));
    }
    r.add(op("line_draw", &Engine::line_draw));
    r.add(op("line_draw3D", &Engine::line_draw3D));
    r.add(op("line_set_edges", &Engine::line_set_edges));
    r.add(op("line_set_edges3D", &Engine::line_set_edges3D));

    // math
    r.add(op("math_get_square_distance", &Engine::math_get_square_distance));
    r.add(op("math_get_distance", &Engine::math_get_distance));
    r.add(op("math_get_distance_between_point_and_line",
             &Engine::math_get_distance_between_point_and_line));
    r.add(op("math_is_point_on_segment", &Engine::math_is_point_on_segment));
    r.add(op("math_points_to_plane", &Engine::math_points_to_plane));
    r.add(op("math_product", &Engine::math_product));
    r.add(op("math_cross", &Engine::math_cross));
    {
        // The vector is read and written.
        Procedure p = op("math_normalize_vector", &Engine::math_normalize_vector);
        p.outArgs.clear();
        r.add(std::move(p));
    }
}

}  // namespace core
