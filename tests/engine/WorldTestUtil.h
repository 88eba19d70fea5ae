#pragma once
// Helpers of the world-file tests: a scene with every kind of object, and a
// description of a scene that names objects by position instead of handle, so
// that a scene read back into another engine compares equal to the original.

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/SceneStore.h"

namespace worldtest {

using engine::Engine;
using engine::Handle;
using engine::Point3;
using engine::Rgb;

inline std::string num(double v) {
    char buf[32];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, r.ptr);
}
inline std::string pt(Point3 p) { return "(" + num(p.x) + "," + num(p.y) + "," + num(p.z) + ")"; }
inline std::string rgb(Rgb c) {
    return "[" + std::to_string(c.r) + "," + std::to_string(c.g) + "," + std::to_string(c.b) + "]";
}

// Everything a scene shows through the engine: polygons in walk order, groups in
// creation order with their members in join order, camera, fog, background.
inline std::string describe(const Engine& e) {
    std::map<Handle, std::size_t> polyIndex, groupIndex;
    std::size_t n = 0;
    for (Handle p = e.polygon_get_first_polygon(); p; p = e.polygon_get_next(p)) polyIndex[p] = ++n;
    n = 0;
    for (Handle g = e.group_get_first_group(); g; g = e.group_get_next(g)) groupIndex[g] = ++n;
    auto gi = [&](Handle g) { return g ? std::to_string(groupIndex[g]) : std::string("-"); };
    const engine::SceneStore& st = e.store();

    std::string out;
    for (Handle p = e.polygon_get_first_polygon(); p; p = e.polygon_get_next(p)) {
        out += "polygon " + std::to_string(polyIndex[p]) + " group " + gi(e.polygon_get_group(p)) +
               " name \"" + e.entity_get_name(p) + "\" colour " + rgb(e.polygon_get_color(p)) +
               " translucent " + std::to_string(e.polygon_get_translucent(p)) + " brightness " +
               std::to_string(e.polygon_get_brightness(p));
        if (auto l = e.polygon_get_light(p)) out += " light " + rgb(*l);
        if (e.polygon_is_disabled(p)) out += " disabled";
        const std::uint32_t s = st.polygonSlot(p);
        if (st.rotated(s)) out += " rotated";
        if (const engine::PolygonExtra* ex = st.extra(s)) {
            out += " bitmap '" + e.bitmap_get_path(ex->bitmap) + "' " +
                   std::to_string(e.bitmap_get_width(ex->bitmap)) + " rotation " +
                   num(ex->bitmapRotation);
            for (const auto& patch : ex->patches) {
                out += " patch " + rgb(patch.colour) + " " + std::to_string(patch.type);
                for (const auto& q : patch.points) out += pt(q);
            }
            out += ex->points.empty() ? " nopointdata" : " pointdata";
        }
        out += "\n";
        for (Handle h = e.polygon_get_first_point(p); h; h = e.point_get_next_point(h)) {
            Point3 q;
            double bx = 0, by = 0;
            e.point_get_xyz(h, q);
            e.point_get_bitmap_xy(h, bx, by);
            out += "  " + pt(q);
            if (auto c = e.point_get_rgb(h)) out += " rgb " + rgb(*c);
            out += " alpha " + std::to_string(e.point_get_alpha(h)) + " uv " + num(bx) + "," +
                   num(by) + "\n";
        }
    }
    for (Handle g = e.group_get_first_group(); g; g = e.group_get_next(g)) {
        out += "group " + gi(g) + " \"" + e.entity_get_name(g) + "\" father " +
               gi(e.group_get_father_group(g)) + " members";
        // Polygons outside the world are not part of it (nor of its files).
        for (Handle p = e.group_get_first_polygon(g); p; p = e.group_get_next_polygon(g, p))
            if (polyIndex.count(p)) out += " " + std::to_string(polyIndex[p]);
        out += " children";
        for (Handle c = e.group_get_first_included_group(g); c;
             c = e.group_get_next_included_group(g, c))
            out += " " + gi(c);
        const engine::GroupRecord* G = st.group(st.groupSlot(g));
        if (G->hasRotateReference) out += " reference " + pt(G->rotateReference);
        out += "\n";
    }
    const auto& c = e.camera();
    out += "camera " + pt(c.location) + pt(c.direction) + pt(c.up) + " " + num(c.zoom) + " " +
           num(c.distanceFromEye) + "\n";
    const auto f = e.engine_get_fog();
    out += "fog " + std::to_string(f.on) + " " + num(f.farDepth) + " " + num(f.nearDepth) + "\n";
    out += "background " + rgb(e.engine_get_background_color()) + "\n";
    out += "normals " + num(e.vertices_normals_angle()) + "\n";
    return out;
}

// A 24-bit BMP of w x h pixels of one colour.
inline void writeBmp(const std::filesystem::path& path, int w, int h, Rgb c) {
    const int row = (w * 3 + 3) / 4 * 4;
    const std::uint32_t size = 54 + std::uint32_t(row * h);
    std::string b(size, '\0');
    auto put32 = [&](std::size_t at, std::uint32_t v) {
        for (int i = 0; i < 4; ++i) b[at + i] = char((v >> (8 * i)) & 0xFF);
    };
    b[0] = 'B';
    b[1] = 'M';
    put32(2, size);
    put32(10, 54);
    put32(14, 40);
    put32(18, std::uint32_t(w));
    put32(22, std::uint32_t(h));
    b[26] = 1;
    b[28] = 24;
    put32(34, std::uint32_t(row * h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const std::size_t at = 54 + std::size_t(y * row + x * 3);
            b[at] = char(c.b);
            b[at + 1] = char(c.g);
            b[at + 2] = char(c.r);
        }
    std::ofstream(path, std::ios::binary) << b;
}

inline Handle polygon(Engine& e, std::initializer_list<Point3> pts, Handle group,
                      const std::string& name) {
    const Handle p = e.polygon_create();
    for (const Point3& q : pts) e.polygon_add_point(p, q);
    e.engine_add_polygon(p);
    if (group) e.polygon_set_group(p, group);
    e.polygon_set_name(p, name);
    return p;
}

// Handles of the interesting parts of the scene below.
struct RichScene {
    Handle top = 0, child = 0, grandchild = 0, lateFather = 0, early = 0;
    Handle triangle = 0, quad = 0, pentagon = 0, ungrouped = 0, textured = 0;
    Handle light = 0, spot = 0;
};

// Every kind of thing a scene can hold, with the awkward cases: names with line
// ends, quotes and bytes beyond ASCII; a group made before its father; members
// that joined a group out of walk order; a deleted polygon and group; a polygon
// outside the world; lights, a bitmap, patches and point data.
inline RichScene buildRichScene(Engine& e, const std::filesystem::path& bitmapFile) {
    RichScene r;
    e.engine_load_world("", "", "", 4);
    r.early = e.group_create("Early child");
    r.top = e.group_create("FirstModel");
    r.child = e.group_create("Stope \"A\"\r\nlevel 3");
    r.grandchild = e.group_create("");
    r.lateFather = e.group_create("Father made late");
    e.group_set_father_group(r.child, r.top);
    e.group_set_father_group(r.grandchild, r.child);
    e.group_set_father_group(r.early, r.lateFather);
    e.group_set_rotate_reference_point(r.child, {1.5, -2.25, 1e6});
    const Handle doomed = e.group_create("deleted");

    r.triangle = polygon(e, {{0, 0, 0}, {0, 10, 0}, {10, 10, 0}}, r.top, "PR_Tri\tdata");
    r.quad = polygon(e, {{0, 0, 5}, {0, 10, 5}, {10, 10, 5}, {10, 0, 5}}, r.child,
                     "Gr\xC3\xB6\xC3\x9F"
                     "e \xE2\x80\x94 \x01\x7F end");
    const Handle gone = polygon(e, {{1, 1, 1}, {1, 2, 1}, {2, 2, 1}}, r.child, "gone");
    r.pentagon = polygon(e, {{0, 0, -1}, {0, 4, -1}, {3, 6, -1}, {6, 4, -1}, {6, 0, -1}},
                         r.grandchild, "PR_Tri\tdata");
    r.ungrouped = polygon(e, {{-5, -5, 0.1}, {-5, 5, 0.2}, {5, 5, 0.3}}, 0, "");
    r.textured = polygon(e, {{0, 0, 9}, {0, 1, 9}, {1, 1, 9}, {1, 0, 9}}, r.early, "textured");
    const Handle second = polygon(e, {{2, 0, 9}, {2, 1, 9}, {3, 1, 9}}, r.early, "second");
    // Join order differs from walk order in group "Early child".
    e.polygon_set_group(r.textured, 0);
    e.polygon_set_group(r.textured, r.early);
    (void)second;
    e.polygon_delete(gone);
    e.group_delete_members(doomed);
    // A polygon made but never added is not part of the world.
    const Handle loose = e.polygon_create();
    e.polygon_add_point(loose, Point3{0, 0, 0});
    e.polygon_set_group(loose, r.top);

    e.polygon_set_color_fill(r.triangle, {255, 0, 16});
    e.polygon_set_translucent(r.quad, 3);
    e.polygon_set_brightness(r.quad, 0);
    e.polygon_set_brightness(r.pentagon, 255);
    e.polygon_set_light(r.triangle, {10, 200, 255});
    e.polygon_set_light(r.pentagon, {0, 0, 0});
    e.polygon_disable(r.ungrouped);
    e.polygon_set_rotated(r.pentagon, true);
    Handle pt0 = e.polygon_get_first_point(r.quad);
    e.point_set_rgb(pt0, {1, 2, 3});
    e.point_set_alpha(e.point_get_next_point(pt0), 7);
    e.point_set_bitmap_xy(e.point_get_next_point(e.point_get_next_point(pt0)), -0.5, 1e-300);
    e.polygon_add_patch(r.pentagon, {{1, 1, -1}, {1, 2, -1}, {2, 2, -1}}, {9, 8, 7}, -4);
    e.polygon_add_patch_easy(r.pentagon, {3, 3, -1}, 0.5, {0, 255, 0}, 2);

    const Handle bmp = e.bitmap_load(bitmapFile.string());
    e.polygon_set_bitmap_fill(r.textured, bmp);
    e.polygon_wrap_a_bitmap_fixed(r.textured, bmp, 2, 3);
    e.polygon_set_bitmap_rotation(r.textured, 30);

    r.light = e.light_create("Light", {0, 0, 100});
    e.light_set_ambient(r.light, 1.5);
    e.light_set_diffuse(r.light, 1);
    e.light_set_specular(r.light, 1.5);
    e.light_set_specular_shining(r.light, 10);
    r.spot = e.light_create("Spot", {50, 50, 50});
    e.light_set_type_of_light(r.spot, 58);
    e.light_point_at(r.spot, {0, 0, 0});
    e.light_set_entity_to_light(r.spot, r.child);

    const Handle cam = e.camera_get_default_camera();
    e.camera_set_location(cam, {100, -200.125, 300});
    e.camera_set_axis_system(cam, {-1, 2, -3}, {0, 0, 1});
    e.camera_set_zoom(cam, 1);
    e.camera_set_distance_from_eye(cam, 12.5);
    e.engine_set_fog(true, 123456.75, 2);
    e.engine_set_background_color({12, 34, 56});
    e.light_calcualte_vertices_normals_automatically(33.5);
    return r;
}

inline std::string readAll(const std::filesystem::path& p) {
    std::ifstream f(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(f), {});
}

inline void writeAll(const std::filesystem::path& p, const std::string& s) {
    std::ofstream(p, std::ios::binary | std::ios::trunc) << s;
}

}  // namespace worldtest
