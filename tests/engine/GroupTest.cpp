// The group tree and the operations on all polygons of a group.

#include "engine/EngineTestUtil.h"
#include "engine/SceneStore.h"

using namespace enginetest;

namespace {

Handle triAt(Engine& e, Handle group, Point3 o) {
    const Handle p = addPolygon(e, {o, {o.x, o.y + 1, o.z}, {o.x + 1, o.y + 1, o.z}});
    EXPECT_EQ(e.polygon_set_group(p, group), 0);
    return p;
}

std::vector<Handle> children(const Engine& e, Handle g) {
    std::vector<Handle> out;
    for (Handle c = e.group_get_first_included_group(g); c;
         c = e.group_get_next_included_group(g, c))
        out.push_back(c);
    return out;
}

std::vector<Handle> members(const Engine& e, Handle g) {
    std::vector<Handle> out;
    for (Handle p = e.group_get_first_polygon(g); p; p = e.group_get_next_polygon(g, p))
        out.push_back(p);
    return out;
}

TEST(EngineGroups, FatherRefusesLoops) {
    Engine e;
    const Handle a = e.group_create("A"), b = e.group_create("B"), c = e.group_create("C");
    ASSERT_EQ(e.group_set_father_group(b, a), 0);
    ASSERT_EQ(e.group_set_father_group(c, b), 0);
    EXPECT_EQ(e.group_set_father_group(a, a), -1);
    EXPECT_EQ(e.group_set_father_group(a, b), -1);
    EXPECT_EQ(e.group_set_father_group(a, c), -1);  // a grandchild
    EXPECT_EQ(e.group_get_father_group(a), 0u);
    EXPECT_EQ(e.group_get_father_group(c), b);
    // Moving c up is fine, and 0 detaches.
    EXPECT_EQ(e.group_set_father_group(c, a), 0);
    EXPECT_EQ(children(e, a), (std::vector<Handle>{b, c}));
    EXPECT_EQ(e.group_set_father_group(c, 0), 0);
    EXPECT_EQ(children(e, a), (std::vector<Handle>{b}));
    EXPECT_EQ(e.group_set_father_group(c, 12345), -1);
}

TEST(EngineGroups, ChildrenAndGroupsListInCreationOrder) {
    Engine e;
    const Handle father = e.group_create("F");
    const Handle x = e.group_create("X"), y = e.group_create("Y"), z = e.group_create("Z");
    ASSERT_EQ(e.group_set_father_group(z, father), 0);
    ASSERT_EQ(e.group_set_father_group(x, father), 0);
    ASSERT_EQ(e.group_set_father_group(y, father), 0);
    EXPECT_EQ(children(e, father), (std::vector<Handle>{x, y, z}));
    std::vector<Handle> all;
    for (Handle g = e.group_get_first_group(); g; g = e.group_get_next(g)) all.push_back(g);
    EXPECT_EQ(all, (std::vector<Handle>{father, x, y, z}));
    EXPECT_EQ(e.group_count(), 4u);
}

TEST(EngineGroups, MembershipInJoinOrderAndMoves) {
    Engine e;
    const Handle g = e.group_create("G"), h = e.group_create("H");
    const Handle p1 = triAt(e, g, {0, 0, 0}), p2 = triAt(e, g, {2, 0, 0}),
                 p3 = triAt(e, g, {4, 0, 0});
    EXPECT_EQ(members(e, g), (std::vector<Handle>{p1, p2, p3}));
    ASSERT_EQ(e.polygon_set_group(p2, h), 0);
    EXPECT_EQ(members(e, g), (std::vector<Handle>{p1, p3}));
    EXPECT_EQ(members(e, h), (std::vector<Handle>{p2}));
    EXPECT_EQ(e.polygon_get_group(p2), h);
    EXPECT_EQ(e.group_get_next_polygon(g, p2), 0u);  // not a member of g
    ASSERT_EQ(e.polygon_set_group(p1, 0), 0);
    EXPECT_EQ(e.polygon_get_group(p1), 0u);
    EXPECT_EQ(members(e, g), (std::vector<Handle>{p3}));
    ASSERT_EQ(e.polygon_delete(p3), 0);
    EXPECT_TRUE(members(e, g).empty());
}

TEST(EngineGroups, CountsCentreAndBoxCoverDescendants) {
    Engine e;
    const Handle top = e.group_create("Top"), sub = e.group_create("Sub");
    ASSERT_EQ(e.group_set_father_group(sub, top), 0);
    triAt(e, top, {0, 0, 0});  // points (0,0,0) (0,1,0) (1,1,0)
    triAt(e, sub, {3, 0, 6});  // points (3,0,6) (3,1,6) (4,1,6)
    EXPECT_EQ(e.group_get_number_of_polygons(top), 2);
    EXPECT_EQ(e.group_get_number_of_polygons(sub), 1);
    // Mean of the six points.
    expectNear(e.group_get_center_of_mass(top), {11.0 / 6, 4.0 / 6, 3});
    expectNear(e.group_get_center_of_mass(sub), {10.0 / 3, 2.0 / 3, 6});
    // Group 0 is the whole scene, here the same six points.
    expectNear(e.group_get_center_of_mass(0), {11.0 / 6, 4.0 / 6, 3});
    Point3 lo, hi;
    ASSERT_TRUE(e.group_bounding_box(top, lo, hi));
    EXPECT_EQ(lo, (Point3{0, 0, 0}));
    EXPECT_EQ(hi, (Point3{4, 1, 6}));
    const Handle empty = e.group_create("Empty");
    EXPECT_FALSE(e.group_bounding_box(empty, lo, hi));
    EXPECT_EQ(e.group_get_number_of_polygons(empty), 0);
    expectNear(e.group_get_center_of_mass(empty), {0, 0, 0});
}

// The scene's centre is kept between calls: it must follow every change of the
// points in the world and of what is in it.
TEST(EngineGroups, SceneCentreFollowsEveryChange) {
    Engine e;
    const Handle g = e.group_create("G");
    const Handle p = triAt(e, g, {0, 0, 0});  // (0,0,0) (0,1,0) (1,1,0)
    expectNear(e.group_get_center_of_mass(0), {1.0 / 3, 2.0 / 3, 0});
    ASSERT_EQ(e.group_move(g, {0, 0, 0}), 0);  // a move by nothing
    expectNear(e.group_get_center_of_mass(0), {1.0 / 3, 2.0 / 3, 0});
    ASSERT_EQ(e.group_move(g, {3, 0, 0}), 0);
    expectNear(e.group_get_center_of_mass(0), {10.0 / 3, 2.0 / 3, 0});
    ASSERT_EQ(e.point_set_xyz(e.polygon_get_first_point(p), {3, 0, 9}), 0);
    expectNear(e.group_get_center_of_mass(0), {10.0 / 3, 2.0 / 3, 3});
    const Handle q = triAt(e, g, {0, 0, 3});
    expectNear(e.group_get_center_of_mass(0), {11.0 / 6, 4.0 / 6, 3});
    ASSERT_EQ(e.polygon_delete(q), 0);
    expectNear(e.group_get_center_of_mass(0), {10.0 / 3, 2.0 / 3, 3});
    ASSERT_EQ(e.polygon_delete(p), 0);
    expectNear(e.group_get_center_of_mass(0), {0, 0, 0});
}

TEST(EngineGroups, MoveLocateRotateScale) {
    Engine e;
    const Handle g = e.group_create("G");
    const Handle p = addPolygon(e, {{1, 0, 0}, {1, 1, 0}, {2, 1, 0}});
    ASSERT_EQ(e.polygon_set_group(p, g), 0);
    ASSERT_EQ(e.group_move(g, {1, 2, 3}), 0);
    EXPECT_EQ(pointsOf(e, p), (std::vector<Point3>{{2, 2, 3}, {2, 3, 3}, {3, 3, 3}}));
    ASSERT_EQ(e.group_set_location(g, {0, 0, 0}), 0);  // box centre (2.5, 2.5, 3) to the origin
    EXPECT_EQ(pointsOf(e, p),
              (std::vector<Point3>{{-0.5, -0.5, 0}, {-0.5, 0.5, 0}, {0.5, 0.5, 0}}));
    // About a reference point: +90 about z takes (r + (1, 0, 0)) to (r + (0, 1, 0)).
    ASSERT_EQ(e.group_set_rotate_reference_point(g, {-0.5, -0.5, 0}), 0);
    ASSERT_EQ(e.group_rotate(g, 90, 2), 0);
    const auto r = pointsOf(e, p);
    expectNear(r[0], {-0.5, -0.5, 0});
    expectNear(r[1], {-1.5, -0.5, 0});
    expectNear(r[2], {-1.5, 0.5, 0});
    EXPECT_EQ(e.group_rotate(g, 90, 3), -1);
    // Scale about the reference point.
    ASSERT_EQ(e.group_scale(g, {2, 1, 1}), 0);
    expectNear(pointsOf(e, p)[1], {-2.5, -0.5, 0});
}

TEST(EngineGroups, RotateWithoutReferenceTurnsAboutTheCentreOfMass) {
    Engine e;
    const Handle g = e.group_create("G");
    const Handle p = addPolygon(e, {{0, 0, 0}, {0, 0, 3}, {0, 3, 3}});  // centre (0, 1, 2)
    ASSERT_EQ(e.polygon_set_group(p, g), 0);
    ASSERT_EQ(e.group_rotate(g, 180, 0), 0);  // about x through (0, 1, 2)
    const auto r = pointsOf(e, p);
    expectNear(r[0], {0, 2, 4});
    expectNear(r[1], {0, 2, 1});
    expectNear(r[2], {0, -1, 1});
    expectNear(e.group_get_center_of_mass(g), {0, 1, 2});
}

TEST(EngineGroups, UngroupHandsEverythingToTheFather) {
    Engine e;
    const Handle father = e.group_create("F"), g = e.group_create("G"), child = e.group_create("C");
    ASSERT_EQ(e.group_set_father_group(g, father), 0);
    ASSERT_EQ(e.group_set_father_group(child, g), 0);
    const Handle a = triAt(e, g, {0, 0, 0}), b = triAt(e, g, {2, 0, 0});
    ASSERT_EQ(e.group_ungroup(g), 0);
    EXPECT_FALSE(e.group_is_group(g));
    EXPECT_EQ(e.group_get_father_group(child), father);
    EXPECT_EQ(members(e, father), (std::vector<Handle>{a, b}));
    EXPECT_TRUE(e.polygon_is_in_world(a));
    // A top group's polygons end in no group.
    const Handle top = e.group_create("T");
    const Handle c = triAt(e, top, {5, 0, 0});
    ASSERT_EQ(e.group_ungroup(top), 0);
    EXPECT_EQ(e.polygon_get_group(c), 0u);
    EXPECT_EQ(e.group_ungroup(top), -1);
}

TEST(EngineGroups, DeleteMembersRemovesTheSubtree) {
    Engine e;
    const Handle keep = e.group_create("Keep"), g = e.group_create("G"),
                 child = e.group_create("C");
    ASSERT_EQ(e.group_set_father_group(child, g), 0);
    ASSERT_EQ(e.group_set_father_group(g, keep), 0);
    const Handle a = triAt(e, g, {0, 0, 0}), b = triAt(e, child, {2, 0, 0}),
                 other = triAt(e, keep, {4, 0, 0});
    ASSERT_EQ(e.group_delete_members(g), 0);
    EXPECT_FALSE(e.group_is_group(g));
    EXPECT_FALSE(e.group_is_group(child));
    EXPECT_FALSE(e.polygon_is_in_world(a));
    EXPECT_FALSE(e.polygon_is_in_world(b));
    EXPECT_EQ(walk(e), (std::vector<Handle>{other}));
    EXPECT_TRUE(children(e, keep).empty());
    EXPECT_EQ(e.group_count(), 1u);
}

TEST(EngineGroups, DuplicateTreeCopiesEverythingUnderTheSameFather) {
    Engine e;
    const Handle father = e.group_create("F"), g = e.group_create("G"), child = e.group_create("C");
    ASSERT_EQ(e.group_set_father_group(g, father), 0);
    ASSERT_EQ(e.group_set_father_group(child, g), 0);
    const Handle a = triAt(e, g, {0, 0, 0});
    triAt(e, child, {2, 0, 0});
    triAt(e, child, {4, 0, 0});
    ASSERT_EQ(e.polygon_set_color_fill(a, {1, 2, 3}), 0);
    const Handle copy = e.group_duplicate_tree(g);
    ASSERT_NE(copy, 0u);
    ASSERT_NE(copy, g);
    EXPECT_EQ(e.entity_get_name(copy), "G");
    EXPECT_EQ(e.group_get_father_group(copy), father);
    EXPECT_EQ(children(e, father), (std::vector<Handle>{g, copy}));
    EXPECT_EQ(e.group_get_number_of_polygons(copy), 3);
    const auto sub = children(e, copy);
    ASSERT_EQ(sub.size(), 1u);
    EXPECT_NE(sub[0], child);
    EXPECT_EQ(e.entity_get_name(sub[0]), "C");
    const Handle ca = e.group_get_first_polygon(copy);
    EXPECT_NE(ca, a);
    EXPECT_EQ(pointsOf(e, ca), pointsOf(e, a));
    EXPECT_EQ(e.polygon_get_color(ca), (engine::Rgb{1, 2, 3}));
    EXPECT_TRUE(e.polygon_is_in_world(ca));
    EXPECT_EQ(e.polygon_count(), 6u);
    EXPECT_EQ(e.group_get_number_of_polygons(g), 3);  // the original is untouched
}

TEST(EngineGroups, ReducedCopyKeepsEveryNth) {
    Engine e;
    const Handle g = e.group_create("G");
    for (int i = 0; i < 10; ++i) triAt(e, g, {2.0 * i, 0, 0});
    const Handle half = e.group_create_reduced_copy(g, 50);
    EXPECT_EQ(e.group_get_number_of_polygons(half), 5);
    const Handle third = e.group_create_reduced_copy(g, 30);  // every round(3.33) = 3rd
    EXPECT_EQ(e.group_get_number_of_polygons(third), 4);
    EXPECT_EQ(pointsOf(e, e.group_get_first_polygon(third))[0], (Point3{0, 0, 0}));
    const Handle all = e.group_create_reduced_copy(g, 100);
    EXPECT_EQ(e.group_get_number_of_polygons(all), 10);
    EXPECT_EQ(e.group_create_reduced_copy(g, 0), 0u);
}

TEST(EngineGroups, ColourAndPatchColourReachDescendants) {
    Engine e;
    const Handle g = e.group_create("G"), c = e.group_create("C");
    ASSERT_EQ(e.group_set_father_group(c, g), 0);
    const Handle p = triAt(e, c, {0, 0, 0});
    ASSERT_EQ(e.polygon_add_patch_easy(p, {0.3, 0.7, 0}, 0.2, {1, 1, 1}, 4), 0);
    ASSERT_EQ(e.group_set_color(g, {300, -4, 128}), 0);
    EXPECT_EQ(e.polygon_get_color(p), (engine::Rgb{255, 0, 128}));
    ASSERT_EQ(e.group_set_patches_color(g, {9, 8, 7}), 0);
    const engine::PolygonExtra* ex = e.store().extra(e.store().polygonSlot(p));
    ASSERT_NE(ex, nullptr);
    ASSERT_EQ(ex->patches.size(), 1u);
    EXPECT_EQ(ex->patches[0].colour, (engine::Rgb{9, 8, 7}));
    EXPECT_EQ(e.polygon_get_patch_type(p), 4);
    ASSERT_EQ(e.polygon_delete_patches(p), 0);
    EXPECT_EQ(e.polygon_get_patch_type(p), 0);
}

}  // namespace
