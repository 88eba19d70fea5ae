#pragma once
// engine::Engine — the 3D scene library the whole program talks to.
//
// Conventions (the rest of the program relies on them):
//  * Handles are 32-bit, 0 is none, stable while the object lives. A bad handle
//    (0, wrong kind, deleted) never crashes: the call returns its failure value
//    (0 handle, -1 status, false, zeros) and changes nothing.
//  * A polygon made by polygon_create is outside the world until engine_add_polygon,
//    which returns -1 when it refuses it: fewer than three distinct points, zero
//    area or a non-finite coordinate. A refused polygon stays outside the world
//    (the caller deletes it).
//  * polygon_get_first_polygon / polygon_get_next walk the polygons of the world
//    in the order they were added, disabled ones included; deletion is O(1).
//  * Points run clockwise seen from the front. The plane is a unit normal out of
//    the front and d = -n.p; for a triangle n = normalise((p3 - p1) x (p2 - p1)),
//    for more points Newell's method with the same sign.
//  * Rotations are right-handed about the axis, in degrees (axis 0 x, 1 y, 2 z).
//  * polygon_get_center is the mean of the points; polygon_set_location and
//    group_set_location put the centre of the bounding box on the point;
//    group_get_center_of_mass is the mean of the points of the group and its
//    descendants (group 0: the whole scene).
//  * Light: polygon_set_light stores one byte per channel (the low byte of each
//    integer); the polygon is drawn as fill x light / 255. Brightness 0 is unlit.
//    Fill colours are clamped to 0..255; point colours keep the low byte;
//    brightness is kept clamped to 0..255 (100 for a new polygon).
//  * Light objects: type 58 is a parallel light shining from its location toward
//    the point it is pointed at; 59 (and any other type) a point light at its
//    location. light_activate gives each polygon it lights (in the world, enabled,
//    brightness not 0, in the entity group or its descendants when one is set;
//    the entity stays until set again) the grey
//      round(255/4 * (ambient + diffuse * max(0, n.L) + specular * max(0, r.v)^shining))
//    clamped to 0..255, with n the front normal, L the unit vector from the
//    polygon's centre toward the light, v toward the camera and r = 2(n.L)n - L.
//    A unit of light is a quarter of white, so that the usual settings (ambient
//    about 1.5, diffuse 1, specular 1.5) go from mid grey to white.
//    Flag 0 replaces the polygon's light, 1 adds to it (each channel clamped).
//  * Camera zoom is a field-of-view factor: 24 normal perspective, 1 a long lens.
//    The tangent of half the horizontal field of view is 0.5 * zoom / 24.
//    The cut-off (distance_from_eye) is the near plane, the fog depth the far one.
//  * Window pixels: origin top left, x right, y down; the window size is given
//    with set_window_size and projection and picking use it.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Types.h"
#include "engine/WalkList.h"

namespace engine {

class SceneStore;  // the storage, see SceneStore.h
class Bvh;         // the picking index, see Bvh.h

// One queued label of font_write_text, drawn by the next frame.
struct TextItem {
    Handle font = 0;
    std::string text;
    double xPercent = 0, yPercent = 0;
    Rgb colour;
    int flags = 0;
};

// A drawn line (line_draw / line_draw3D): not a polygon of the world, removed
// by polygon_delete with its handle.
struct LineItem {
    Handle handle = 0;
    bool is3D = true;
    Point3 a, b;  // 3D ends, or window pixels in x, y for 2D lines
    Rgb colourA, colourB;
};

struct CameraState {
    Point3 location{0, 0, 0};
    Point3 direction{1, 0, 0};  // unit
    Point3 up{0, 0, 1};         // unit, orthogonal to direction
    double zoom = 24.0;
    double distanceFromEye = 1.0;  // near plane
};

struct FogState {
    bool on = false;
    double farDepth = 4.0e6;
    double nearDepth = 0;
};

// Result of engine_2D_point_to_3D.
struct PickHit {
    Handle polygon = 0;
    Point3 point;
    double distance = 0;
};

class Engine {
public:
    Engine();
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // ---- engine -------------------------------------------------------------
    // Starts an empty world (world file "" or an empty name); 0 success, -1 failure.
    // Loading real world files is done by the persistence layer through the store.
    int engine_load_world(std::string_view worldFile, std::string_view worldDir,
                          std::string_view bitmapDir, int flags);
    bool engine_is_engine_empty() const;  // true until a world is loaded
    // Moves a free polygon into the world: 0 (its index in the walk is the end), -1 refused.
    int engine_add_polygon(Handle polygon);
    void engine_set_background_color(Rgb c);
    Rgb engine_get_background_color() const;
    void engine_set_fog(bool on, double farDepth, double nearDepth);
    FogState engine_get_fog() const;
    void engine_set_error_reporting_mode(int) {}
    void engine_set_speaker_mode(int) {}
    void engine_write_error_messages_to_the_screen(int) {}
    void engine_hide_log_window() {}
    void engine_set_log_window_visible(int) {}
    void engine_clear_STATE_log_files() {}
    void engine_show_frames_per_second_rate(bool on) { showFps_ = on; }
    bool frames_per_second_shown() const { return showFps_; }
    bool engine_is_editor_mode() const { return true; }
    void engine_close();
    // Counts the front-facing (or, unless ignored, all) enabled polygons a segment crosses.
    int engine_get_number_of_collisions(Point3 from, Point3 to) const;
    void engine_ignore_back_faced_polygons_for_collision_detection(bool yes) { ignoreBack_ = yes; }

    // Window and projection. Picking needs no screen: only this size.
    void set_window_size(int width, int height);
    int window_width() const { return winW_; }
    int window_height() const { return winH_; }
    // Nearest enabled, front-facing polygon under pixel (x, y) between the cut-off and
    // (with fog on) the fog depth; polygon 0 when none. distance is from the eye.
    PickHit engine_2D_point_to_3D(double x, double y) const;
    // Ray through pixel (x, y) meets the plane / sphere: 0 success, -1 none.
    int engine_2D_point_to_3D_point_on_plane(double x, double y, const Plane& plane,
                                             Point3& out) const;
    int engine_2D_point_to_3D_point_on_sphere(double x, double y, Point3 centre, double radius,
                                              Point3& out) const;
    // 0 in the window (0 <= x <= width, 0 <= y <= height) and between near and far;
    // 1 in the window but outside the depth band; 2 in front of the camera but off
    // the window; 3 behind the camera (x, y then left as they were).
    int engine_3D_point_to_2D(Point3 p, double& x, double& y) const;
    // The ray through a pixel (origin at the eye, unit direction).
    void pixel_ray(double x, double y, Point3& origin, Point3& direction) const;

    // Card (always usable: rendering is ours).
    int card_check_hardware_support() const { return 1; }
    void card_use() {}

    // ---- camera ---------------------------------------------------------------
    Handle camera_get_default_camera();
    Point3 camera_get_location(Handle camera) const;
    int camera_set_location(Handle camera, Point3 p);
    Point3 camera_get_direction(Handle camera) const;
    int camera_set_axis_system(Handle camera, Point3 direction, Point3 up);
    Point3 camera_get_up(Handle camera) const;
    int camera_set_zoom(Handle camera, double zoom);
    double camera_get_zoom(Handle camera) const;
    int camera_set_distance_from_eye(Handle camera, double d);
    double camera_get_distance_from_eye(Handle camera) const;
    const CameraState& camera() const { return camera_; }

    // ---- groups ---------------------------------------------------------------
    Handle group_create(std::string_view name);
    bool group_is_group(Handle h) const;
    Handle group_get_first_group() const;  // creation order
    Handle group_get_next(Handle group) const;
    Handle group_get_first_polygon(Handle group) const;  // in the order they joined the group
    Handle group_get_next_polygon(Handle group, Handle polygon) const;
    Handle group_get_father_group(Handle group) const;
    // Refuses (returns -1) a father that is the group itself or one of its descendants.
    int group_set_father_group(Handle group, Handle father);
    Handle group_get_first_included_group(Handle group) const;  // children, creation order
    Handle group_get_next_included_group(Handle group, Handle child) const;
    int group_set_rotate_reference_point(Handle group, Point3 p);
    Point3 group_get_center_of_mass(Handle group) const;  // 0: the whole scene
    int group_set_name(Handle group, std::string_view name);
    // Polygons of the group and its descendants.
    int group_get_number_of_polygons(Handle group) const;
    // About the rotate reference point when set, else the centre of mass.
    int group_rotate(Handle group, double degrees, int axis);
    int group_set_location(Handle group, Point3 p);
    int group_move(Handle group, Point3 d);
    // Scale about the rotate reference point when set, else the centre of mass.
    int group_scale(Handle group, Point3 factors);
    // Children and polygons go to the father; the group is deleted.
    int group_ungroup(Handle group);
    // Deletes the polygons of the group and its descendants and the groups.
    int group_delete_members(Handle group);
    // Copy of the group, its polygons and descendants, with the same father; the new top.
    Handle group_duplicate_tree(Handle group);
    // A copy holding every n-th polygon (n = max(1, round(100 / percent))).
    Handle group_create_reduced_copy(Handle group, double percent);
    int group_set_patches_color(Handle group, Rgb c);
    int group_set_color(Handle group, Rgb c);  // fill colour of every polygon
    int group_calculate_points_normals(Handle group);
    bool group_bounding_box(Handle group, Point3& lo, Point3& hi) const;

    // ---- polygons -------------------------------------------------------------
    Handle polygon_create();
    // Appends a point; returns its handle (0 on a bad polygon, a non-finite point or
    // past 65535 points).
    Handle polygon_add_point(Handle polygon, const ScenePoint& p);
    Handle polygon_add_point(Handle polygon, Point3 p) {
        return polygon_add_point(polygon, ScenePoint{p.x, p.y, p.z, 0, 0, 100});
    }
    int polygon_delete(Handle polygonOrLine);
    Handle polygon_duplicate(Handle polygon);  // a free copy, outside the world, in the same group
    Handle polygon_get_first_polygon() const;
    Handle polygon_get_next(Handle polygon) const;
    Handle polygon_get_group(Handle polygon) const;
    int polygon_set_group(Handle polygon, Handle group);
    int polygon_set_name(Handle polygon, std::string_view name);
    Handle polygon_get_first_point(Handle polygon) const;
    Handle point_get_next_point(Handle point) const;  // 0 after the last point of its polygon
    Handle polygon_get_closest_point(Handle polygon, Point3 p) const;
    Point3 polygon_get_center(Handle polygon) const;
    // 0 success, -1 for a bad or degenerate polygon (plane left as it was).
    int polygon_get_plane(Handle polygon, Plane& plane) const;
    int polygon_get_num_of_points(Handle polygon) const;
    int polygon_count_redundant_points(Handle polygon) const;
    bool polygon_is_valid(Handle polygon) const;
    bool polygon_is_convex(Handle polygon) const;
    bool polygon_are_all_points_on_one_plane(Handle polygon) const;
    bool polygon_are_bitmap_x_cords_ok(Handle polygon) const;
    bool polygon_are_bitmap_y_cords_ok(Handle polygon) const;
    // p taken straight onto the polygon's plane lies inside it.
    bool polygon_is_point_inside_polygon(Handle polygon, Point3 p) const;
    // Cuts by the plane into free polygons front (positive side) and back, with the
    // original's colours, name and group; points on the plane go to both. When the
    // plane does not cut the polygon both are 0 (no copy is made). 0 handled,
    // -1 failed (bad polygon or plane). The original stays.
    int polygon_split(Handle polygon, const Plane& plane, Handle& front, Handle& back);
    int polygon_move(Handle polygon, Point3 d);
    int polygon_set_location(Handle polygon, Point3 p);
    // Rotations of a polygon turn about its centre (the mean of its points).
    int polygon_rotate_x(Handle polygon, double degrees);
    int polygon_rotate_y(Handle polygon, double degrees);
    int polygon_rotate_z(Handle polygon, double degrees);
    int polygon_rotate_bitmap(Handle polygon, double degrees);
    int polygon_set_bitmap_rotation(Handle polygon, double degrees);
    int polygon_flip_visible_side(Handle polygon);
    Rgb polygon_get_color(Handle polygon) const;
    int polygon_set_color_fill(Handle polygon, Rgb c);
    int polygon_set_bitmap_fill(Handle polygon, Handle bitmap);
    Handle polygon_get_bitmap(Handle polygon) const;
    int polygon_get_brightness(Handle polygon) const;
    int polygon_set_brightness(Handle polygon, int brightness);
    int polygon_set_rotated(Handle polygon, bool yes);
    int polygon_set_translucent(Handle polygon, int mode);
    int polygon_get_translucent(Handle polygon) const;
    int polygon_disable(Handle polygon);
    int polygon_enable(Handle polygon);
    bool polygon_is_disabled(Handle polygon) const;
    bool polygon_is_in_world(Handle polygon) const;
    // A patch is a smaller polygon laid on this one, drawn over it in its own colour.
    int polygon_add_patch(Handle polygon, const std::vector<Point3>& points, Rgb c, int type);
    int polygon_add_patch_easy(Handle polygon, Point3 centre, double size, Rgb c, int type);
    int polygon_delete_patches(Handle polygon);
    int polygon_get_patch_type(Handle polygon) const;  // 0 when it has none
    int polygon_set_light(Handle polygon, Rgb light);
    int polygon_remove_light(Handle polygon);
    std::optional<Rgb> polygon_get_light(Handle polygon) const;
    int polygon_wrap_a_bitmap_fixed(Handle polygon, Handle bitmap, int repeatX, int repeatY);

    // ---- points ---------------------------------------------------------------
    int point_get_xyz(Handle point, Point3& out) const;
    int point_set_xyz(Handle point, Point3 p);
    int point_get_bitmap_xy(Handle point, double& bx, double& by) const;
    int point_set_bitmap_xy(Handle point, double bx, double by);
    int point_set_rgb(Handle point, Rgb c);
    std::optional<Rgb> point_get_rgb(Handle point) const;
    int point_set_alpha(Handle point, int alpha);
    int point_get_alpha(Handle point) const;  // 255 unless set

    // ---- lights ---------------------------------------------------------------
    Handle light_create(std::string_view name, Point3 location);
    // Bakes the light into the polygons it lights (the entity set, else every
    // enabled polygon): flag 0 replaces their light, 1 adds to it.
    int light_activate(Handle light, int flag);
    int light_set_location(Handle light, Point3 p);
    int light_point_at(Handle light, Point3 p);
    // Removes the light of the polygons it lights.
    int light_remove_light(Handle light);
    int light_set_type_of_light(Handle light, int type);
    int light_set_entity_to_light(Handle light, Handle group);  // 0: everything
    int light_set_ambient(Handle light, double v);
    int light_set_diffuse(Handle light, double v);
    int light_set_specular(Handle light, double v);
    int light_set_specular_shining(Handle light, double v);
    void light_calcualte_vertices_normals_automatically(double maxAngleDegrees);
    double vertices_normals_angle() const { return normalsAngle_; }

    // ---- bitmaps, fonts, names -----------------------------------------------------
    Handle bitmap_load(std::string_view path, int flags = 0);
    int bitmap_get_width(Handle bitmap) const;
    int bitmap_get_height(Handle bitmap) const;
    std::string bitmap_get_path(Handle bitmap) const;
    Handle font_create(std::string_view name, int size, int style);
    int font_write_text(Handle font, std::string_view text, double xPercent, double yPercent,
                        Rgb colour, int flags);
    // Texts queued since the last frame; the renderer takes them.
    std::vector<TextItem> take_queued_texts();
    const std::vector<TextItem>& queued_texts() const { return texts_; }
    // Copies the name into buf (at most bufLen - 1 characters) and returns the copied
    // length; 0 for a bad handle. The stored name is never cut.
    int entity_get_name(Handle polygonOrGroup, char* buf, int bufLen) const;
    std::string entity_get_name(Handle polygonOrGroup) const;  // the whole name

    // ---- lines ------------------------------------------------------------------
    Handle line_draw(double x1, double y1, double x2, double y2, Rgb c1, Rgb c2);
    Handle line_draw3D(Point3 a, Point3 b, Rgb c1, Rgb c2);
    int line_set_edges(Handle line, double x1, double y1, double x2, double y2);
    int line_set_edges3D(Handle line, Point3 a, Point3 b);
    const std::vector<LineItem>& lines() const { return lines_; }

    // ---- math -------------------------------------------------------------------
    static double math_get_square_distance(Point3 a, Point3 b);
    static double math_get_distance(Point3 a, Point3 b);
    static double math_get_distance_between_point_and_line(Point3 p, Point3 a, Point3 b);
    static bool math_is_point_on_segment(Point3 p, Point3 a, Point3 b, double tolerance = 1e-9);
    // Plane through three points by the polygon rule; 0 success, -1 collinear.
    static int math_points_to_plane(Plane& plane, Point3 p1, Point3 p2, Point3 p3);
    static double math_product(Point3 a, Point3 b);
    static Point3 math_cross(Point3 a, Point3 b);
    // Normalises in place; returns the old length (0 leaves the vector as it was).
    static double math_normalize_vector(Point3& v);

    // ---- for the renderer and the world files -------------------------------------
    SceneStore& store() { return *store_; }
    const SceneStore& store() const { return *store_; }
    // Bumped on every change; the renderer compares per-chunk versions in the store.
    std::uint64_t revision() const;
    std::size_t polygon_count() const;  // polygons in the world
    std::size_t group_count() const;
    // Builds the picking index now if the scene changed since it was built
    // (picking does this itself; for timing and for warming up after a load).
    void prepare_picking() const;
    // Pixels of a loaded bitmap, RGBA rows from the top; false for a bad handle.
    bool bitmap_pixels(Handle bitmap, int& width, int& height, const std::uint8_t*& rgba) const;

private:
    friend class WorldIO;  // the world files build a scene aside and swap it in (WorldIO.h)
    const Bvh& pickIndex() const;
    // Polygon slots of a group and its descendants (0: every polygon in the world).
    void collectPolygons(Handle group, std::vector<std::uint32_t>& out) const;

    std::unique_ptr<SceneStore> store_;
    const WalkList* walk_ = nullptr;           // inside store_, for the inline walk
    const Handle* const* walkNext_ = nullptr;  // its link table (never moves)
    mutable std::unique_ptr<Bvh> bvh_;
    // The scene's centre of mass, kept while no point of the world moves and no
    // polygon enters or leaves it (an import asks twice around a null move).
    struct WorldCentre {
        std::uint64_t geometry = 0, additions = 0, removals = 0;
        Point3 centre;
    };
    mutable WorldCentre worldCentre_;
    CameraState camera_;
    FogState fog_;
    Rgb background_{0, 0, 0};
    int winW_ = 800, winH_ = 600;
    bool loaded_ = false;
    bool showFps_ = false;
    bool ignoreBack_ = false;
    double normalsAngle_ = 50;
    std::vector<TextItem> texts_;
    std::vector<LineItem> lines_;
    std::uint32_t nextLine_ = 0;
    std::vector<std::string> fonts_;
    struct LightObj;
    std::vector<std::unique_ptr<LightObj>> lights_;
    struct BitmapObj;
    std::vector<std::unique_ptr<BitmapObj>> bitmaps_;
};

// The walk is inline: every loop over the scene runs it once per polygon.
inline Handle Engine::polygon_get_first_polygon() const { return walk_->head; }
inline Handle Engine::polygon_get_next(Handle polygon) const {
    return WalkList::following(walkNext_, polygon);
}

}  // namespace engine
