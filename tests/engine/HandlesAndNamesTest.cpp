// Bad handles never crash nor change anything; names are shared and kept whole.

#include <cstring>
#include <limits>
#include <string>

#include "engine/EngineTestUtil.h"
#include "engine/SceneStore.h"

using namespace enginetest;
using engine::Kind;
using engine::Plane;
using engine::Rgb;

namespace {

// Every polygon call with a handle that is not a live polygon.
void expectPolygonCallsFail(Engine& e, Handle bad) {
    SCOPED_TRACE(testing::Message() << "handle " << std::hex << bad);
    Plane pl{{1, 2, 3}, 4};
    Handle f = 9, b = 9;
    Point3 o;
    EXPECT_EQ(e.polygon_add_point(bad, Point3{0, 0, 0}), 0u);
    EXPECT_EQ(e.engine_add_polygon(bad), -1);
    EXPECT_EQ(e.polygon_delete(bad), -1);
    EXPECT_EQ(e.polygon_duplicate(bad), 0u);
    EXPECT_EQ(e.polygon_get_next(bad), 0u);
    EXPECT_EQ(e.polygon_get_group(bad), 0u);
    EXPECT_EQ(e.polygon_set_name(bad, "x"), -1);
    EXPECT_EQ(e.polygon_get_first_point(bad), 0u);
    EXPECT_EQ(e.polygon_get_closest_point(bad, o), 0u);
    EXPECT_EQ(e.polygon_get_center(bad), (Point3{0, 0, 0}));
    EXPECT_EQ(e.polygon_get_plane(bad, pl), -1);
    EXPECT_EQ(pl.d, 4);
    EXPECT_EQ(e.polygon_get_num_of_points(bad), 0);
    EXPECT_EQ(e.polygon_count_redundant_points(bad), 0);
    EXPECT_FALSE(e.polygon_is_valid(bad));
    EXPECT_FALSE(e.polygon_is_convex(bad));
    EXPECT_FALSE(e.polygon_are_all_points_on_one_plane(bad));
    EXPECT_FALSE(e.polygon_are_bitmap_x_cords_ok(bad));
    EXPECT_FALSE(e.polygon_is_point_inside_polygon(bad, o));
    EXPECT_EQ(e.polygon_split(bad, Plane{{1, 0, 0}, 0}, f, b), -1);
    EXPECT_EQ(e.polygon_move(bad, {1, 0, 0}), -1);
    EXPECT_EQ(e.polygon_set_location(bad, o), -1);
    EXPECT_EQ(e.polygon_rotate_x(bad, 10), -1);
    EXPECT_EQ(e.polygon_rotate_bitmap(bad, 10), -1);
    EXPECT_EQ(e.polygon_flip_visible_side(bad), -1);
    EXPECT_EQ(e.polygon_get_color(bad), (Rgb{0, 0, 0}));
    EXPECT_EQ(e.polygon_set_color_fill(bad, {1, 1, 1}), -1);
    EXPECT_EQ(e.polygon_set_brightness(bad, 5), -1);
    EXPECT_EQ(e.polygon_get_brightness(bad), 0);
    EXPECT_EQ(e.polygon_set_translucent(bad, 1), -1);
    EXPECT_EQ(e.polygon_disable(bad), -1);
    EXPECT_EQ(e.polygon_enable(bad), -1);
    EXPECT_FALSE(e.polygon_is_disabled(bad));
    EXPECT_FALSE(e.polygon_is_in_world(bad));
    EXPECT_EQ(e.polygon_add_patch_easy(bad, o, 1, {1, 1, 1}, 1), -1);
    EXPECT_EQ(e.polygon_set_light(bad, {1, 1, 1}), -1);
    EXPECT_FALSE(e.polygon_get_light(bad).has_value());
    EXPECT_EQ(e.polygon_set_group(bad, 0), -1);
}

void expectNoName(const Engine& e, Handle bad) {
    EXPECT_EQ(e.entity_get_name(bad), "");
    char buf[8] = "keep";
    EXPECT_EQ(e.entity_get_name(bad, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "");
}

void expectPointCallsFail(Engine& e, Handle bad) {
    SCOPED_TRACE(testing::Message() << "point " << std::hex << bad);
    Point3 p{7, 7, 7};
    double bx = 0, by = 0;
    EXPECT_EQ(e.point_get_xyz(bad, p), -1);
    EXPECT_EQ(p, (Point3{7, 7, 7}));
    EXPECT_EQ(e.point_set_xyz(bad, {1, 1, 1}), -1);
    EXPECT_EQ(e.point_get_next_point(bad), 0u);
    EXPECT_EQ(e.point_get_bitmap_xy(bad, bx, by), -1);
    EXPECT_EQ(e.point_set_rgb(bad, {1, 1, 1}), -1);
    EXPECT_FALSE(e.point_get_rgb(bad).has_value());
    EXPECT_EQ(e.point_set_alpha(bad, 3), -1);
}

void expectGroupCallsFail(Engine& e, Handle bad) {
    SCOPED_TRACE(testing::Message() << "group " << std::hex << bad);
    Point3 lo, hi;
    EXPECT_FALSE(e.group_is_group(bad));
    EXPECT_EQ(e.group_get_next(bad), 0u);
    EXPECT_EQ(e.group_get_first_polygon(bad), 0u);
    EXPECT_EQ(e.group_get_father_group(bad), 0u);
    EXPECT_EQ(e.group_set_father_group(bad, 0), -1);
    EXPECT_EQ(e.group_get_first_included_group(bad), 0u);
    EXPECT_EQ(e.group_set_name(bad, "x"), -1);
    EXPECT_EQ(e.group_get_number_of_polygons(bad), 0);
    EXPECT_EQ(e.group_rotate(bad, 10, 0), -1);
    EXPECT_EQ(e.group_move(bad, {1, 0, 0}), -1);
    EXPECT_EQ(e.group_set_location(bad, {1, 0, 0}), -1);
    EXPECT_EQ(e.group_scale(bad, {2, 2, 2}), -1);
    EXPECT_EQ(e.group_ungroup(bad), -1);
    EXPECT_EQ(e.group_delete_members(bad), -1);
    EXPECT_EQ(e.group_duplicate_tree(bad), 0u);
    EXPECT_EQ(e.group_create_reduced_copy(bad, 50), 0u);
    EXPECT_EQ(e.group_set_color(bad, {1, 1, 1}), -1);
    EXPECT_EQ(e.group_calculate_points_normals(bad), -1);
    if (bad != 0) {
        EXPECT_FALSE(e.group_bounding_box(bad, lo, hi));
        EXPECT_EQ(e.group_get_center_of_mass(bad), (Point3{0, 0, 0}));
    }
}

TEST(EngineHandles, BadHandlesEverywhere) {
    Engine e;
    const Handle g = e.group_create("G");
    const Handle live = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    ASSERT_EQ(e.polygon_set_group(live, g), 0);
    const Handle dead = addPolygon(e, {{5, 0, 0}, {5, 1, 0}, {6, 1, 0}});
    const Handle deadPoint = e.polygon_get_first_point(dead);
    ASSERT_EQ(e.polygon_delete(dead), 0);
    const Handle deadGroup = e.group_create("Gone");
    ASSERT_EQ(e.group_ungroup(deadGroup), 0);
    const Handle livePoint = e.polygon_get_first_point(live);

    const Handle garbage[] = {0u, 0xFFFFFFFFu, engine::makeHandle(Kind::Polygon, 123456),
                              engine::makeHandle(Kind::Polygon, 0x0FFFFFFE)};
    for (Handle bad : garbage) {
        expectPolygonCallsFail(e, bad);
        expectPointCallsFail(e, bad);
        expectGroupCallsFail(e, bad);
        expectNoName(e, bad);
    }
    // Right index, wrong kind; and deleted objects.
    expectPolygonCallsFail(e, g);
    expectPolygonCallsFail(e, livePoint);
    expectPolygonCallsFail(e, dead);
    expectPointCallsFail(e, live);
    expectPointCallsFail(e, deadPoint);
    expectGroupCallsFail(e, live);
    expectGroupCallsFail(e, deadGroup);
    for (Handle bad : {livePoint, dead, deadGroup}) expectNoName(e, bad);
    // A handle with the polygon kind but index bits 0.
    expectPolygonCallsFail(e, static_cast<Handle>(Kind::Polygon) << engine::kKindShift);

    // The live objects were not touched.
    EXPECT_EQ(walk(e), (std::vector<Handle>{live}));
    EXPECT_EQ(pointsOf(e, live), (std::vector<Point3>{{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}));
    EXPECT_EQ(e.polygon_get_group(live), g);
    EXPECT_EQ(e.group_get_number_of_polygons(g), 1);
    EXPECT_EQ(e.camera_get_zoom(g), 0);
    EXPECT_EQ(e.light_activate(live, 0), -1);
    EXPECT_EQ(e.bitmap_get_width(live), 0);
    EXPECT_EQ(e.font_write_text(live, "t", 1, 1, {}, 0), -1);
    EXPECT_EQ(e.line_set_edges(live, 0, 0, 1, 1), -1);
}

TEST(EngineHandles, PointWalkAndPointData) {
    Engine e;
    const Handle p = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    Handle h = e.polygon_get_first_point(p);
    ASSERT_NE(h, 0u);
    EXPECT_EQ(e.point_get_alpha(h), 255);
    EXPECT_FALSE(e.point_get_rgb(h).has_value());
    ASSERT_EQ(e.point_set_rgb(h, {255, 128, 0}), 0);
    ASSERT_EQ(e.point_set_alpha(h, 40), 0);
    ASSERT_EQ(e.point_set_bitmap_xy(h, 0.25, 0.75), 0);
    EXPECT_EQ(e.point_get_rgb(h), (Rgb{255, 128, 0}));
    EXPECT_EQ(e.point_get_alpha(h), 40);
    double bx = 0, by = 0;
    ASSERT_EQ(e.point_get_bitmap_xy(h, bx, by), 0);
    EXPECT_EQ(bx, 0.25);
    EXPECT_EQ(by, 0.75);
    const Handle second = e.point_get_next_point(h);
    EXPECT_FALSE(e.point_get_rgb(second).has_value());  // per point, not per polygon
    EXPECT_EQ(e.point_get_next_point(e.point_get_next_point(second)), 0u);
    // Flipping reverses the point data with the points.
    ASSERT_EQ(e.polygon_flip_visible_side(p), 0);
    Handle last = e.polygon_get_first_point(p);
    while (e.point_get_next_point(last)) last = e.point_get_next_point(last);
    EXPECT_EQ(e.point_get_rgb(last), (Rgb{255, 128, 0}));
    // Bitmap coordinates from the scene point record.
    const Handle q = e.polygon_create();
    e.polygon_add_point(q, engine::ScenePoint{0, 0, 0, 0.5, 1, 100});
    ASSERT_EQ(e.point_get_bitmap_xy(e.polygon_get_first_point(q), bx, by), 0);
    EXPECT_EQ(bx, 0.5);
    EXPECT_EQ(by, 1);
}

TEST(EngineHandles, InterleavedBuildingKeepsBothPolygonsRight) {
    Engine e;
    const Handle a = e.polygon_create(), b = e.polygon_create();
    e.polygon_add_point(a, Point3{0, 0, 0});
    const Handle b0 = e.polygon_add_point(b, Point3{10, 0, 0});
    e.polygon_add_point(a, Point3{0, 1, 0});                     // a moves behind b
    const Handle b1 = e.polygon_add_point(b, Point3{10, 1, 0});  // and b behind a
    e.polygon_add_point(a, Point3{1, 1, 0});
    e.polygon_add_point(b, Point3{11, 1, 0});
    EXPECT_EQ(pointsOf(e, a), (std::vector<Point3>{{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}));
    EXPECT_EQ(pointsOf(e, b), (std::vector<Point3>{{10, 0, 0}, {10, 1, 0}, {11, 1, 0}}));
    // Handles from before a move are refused rather than naming another point.
    Point3 p;
    EXPECT_EQ(e.point_get_xyz(b0, p), -1);
    EXPECT_EQ(e.point_get_xyz(b1, p), -1);
    EXPECT_EQ(e.engine_add_polygon(a), 0);
    EXPECT_EQ(e.engine_add_polygon(b), 0);
    // Building one polygon at a time keeps every handle.
    const Handle c = e.polygon_create();
    std::vector<Handle> kept;
    for (int i = 0; i < 5; ++i)
        kept.push_back(e.polygon_add_point(c, Point3{double(i), double(i * i), 0}));
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(e.point_get_xyz(kept[i], p), 0);
        EXPECT_EQ(p, (Point3{double(i), double(i * i), 0}));
    }
}

TEST(EngineNames, SharedWholeAndCut) {
    Engine e;
    const Handle g = e.group_create("Sphere");
    std::vector<Handle> polys;
    for (int i = 0; i < 224; ++i) {
        polys.push_back(addPolygon(e, {{0, 0, double(i)}, {0, 1, double(i)}, {1, 1, double(i)}}));
        ASSERT_EQ(e.polygon_set_name(polys.back(), "Sphere 12"), 0);
    }
    const engine::SceneStore& st = e.store();
    EXPECT_EQ(st.names().size(), 2u);  // "Sphere" and "Sphere 12"
    EXPECT_EQ(st.nameId(st.polygonSlot(polys[0])), st.nameId(st.polygonSlot(polys[223])));
    EXPECT_EQ(e.entity_get_name(polys[17]), "Sphere 12");
    EXPECT_EQ(e.entity_get_name(g), "Sphere");
    // A name longer than the old 258-character limit is kept whole.
    std::string longName;
    for (int i = 0; i < 40; ++i) longName += "Stope_" + std::to_string(i) + "|";
    ASSERT_GT(longName.size(), 258u);
    ASSERT_EQ(e.polygon_set_name(polys[0], longName), 0);
    ASSERT_EQ(e.group_set_name(g, longName), 0);
    EXPECT_EQ(e.entity_get_name(polys[0]), longName);
    EXPECT_EQ(e.entity_get_name(g), longName);
    EXPECT_EQ(st.names().size(), 2u);  // the group and polygon 0 share it; "Sphere" is gone
    // The buffer form copies at most bufLen - 1 characters and ends them.
    char buf[10];
    std::memset(buf, 'x', sizeof buf);
    EXPECT_EQ(e.entity_get_name(polys[0], buf, 10), 9);
    EXPECT_EQ(std::string(buf), longName.substr(0, 9));
    char big[1024];
    EXPECT_EQ(e.entity_get_name(polys[0], big, sizeof big), int(longName.size()));
    EXPECT_EQ(std::string(big), longName);
    EXPECT_EQ(e.entity_get_name(polys[1], buf, 1), 0);
    EXPECT_STREQ(buf, "");
    EXPECT_EQ(e.entity_get_name(polys[1], nullptr, 10), 0);
    // Names are released with their last user.
    for (Handle p : polys) e.polygon_delete(p);
    EXPECT_EQ(st.names().size(), 1u);
    e.group_ungroup(g);
    EXPECT_EQ(st.names().size(), 0u);
}

}  // namespace
