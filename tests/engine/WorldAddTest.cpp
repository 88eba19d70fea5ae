// Adding a world to a scene: the scene stays, the new world hangs under one new group.

#include <gtest/gtest.h>

#include "WorldTestUtil.h"
#include "engine/WorldFormat.h"
#include "support/TestSupport.h"

namespace {

using namespace worldtest;
using engine::WorldFormat;

class WorldAdd : public ::testing::Test {
protected:
    void SetUp() override {
        buildRichScene(source, dir.file("none.bmp"));
        ASSERT_TRUE(engine::encodeWorld(source, WorldFormat::State, bytes).ok);
        scene.engine_load_world("", "", "", 4);
        kept = scene.group_create("Kept");
        keptPolygon = polygon(scene, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}, kept, "keep me");
        light = scene.light_create("Light", {7, 7, 7});
        scene.engine_set_background_color({1, 1, 1});
        scene.camera_set_location(scene.camera_get_default_camera(), {5, 5, 5});
    }
    std::vector<Handle> groupsNamed(const std::string& name) const {
        std::vector<Handle> out;
        for (Handle g = scene.group_get_first_group(); g; g = scene.group_get_next(g))
            if (scene.entity_get_name(g) == name) out.push_back(g);
        return out;
    }

    testsupport::TempDir dir;
    Engine source, scene;
    std::string bytes;
    Handle kept = 0, keptPolygon = 0, light = 0;
};

TEST_F(WorldAdd, TheSceneStaysAndTheWorldHangsUnderTheNewGroup) {
    const std::string cameraBefore = describe(scene).substr(describe(scene).find("camera"));
    const auto r = engine::addWorldBytes(scene, bytes, dir.path, {}, "NextModel");
    ASSERT_TRUE(r.ok) << r.message;
    ASSERT_NE(r.group, 0u);
    EXPECT_EQ(scene.entity_get_name(r.group), "NextModel");
    EXPECT_EQ(scene.group_get_father_group(r.group), 0u);
    EXPECT_EQ(scene.polygon_count(), 7u);
    // The old polygon is first in the walk, untouched; the added follow in file order.
    EXPECT_EQ(scene.polygon_get_first_polygon(), keptPolygon);
    EXPECT_EQ(scene.entity_get_name(scene.polygon_get_next(keptPolygon)), "PR_Tri\tdata");
    // Camera, background and fog are the scene's.
    EXPECT_EQ(describe(scene).substr(describe(scene).find("camera")), cameraBefore);
    // The file's top groups hang under the new group; deeper ones keep their fathers.
    const Handle first = groupsNamed("FirstModel").at(0);
    const Handle late = groupsNamed("Father made late").at(0);
    const Handle early = groupsNamed("Early child").at(0);
    EXPECT_EQ(scene.group_get_father_group(first), r.group);
    EXPECT_EQ(scene.group_get_father_group(late), r.group);
    EXPECT_EQ(scene.group_get_father_group(early), late);
    // The file's ungrouped polygon joins the new group; the group holds all six.
    EXPECT_EQ(scene.group_get_number_of_polygons(r.group), 6);
    EXPECT_EQ(scene.group_get_number_of_polygons(kept), 1);
    // Members keep the order they joined in.
    const Handle a = scene.group_get_first_polygon(early);
    EXPECT_EQ(scene.entity_get_name(a), "second");
    EXPECT_EQ(scene.entity_get_name(scene.group_get_next_polygon(early, a)), "textured");
}

TEST_F(WorldAdd, AddingTheSameWorldTwiceGivesTwoModelGroups) {
    ASSERT_TRUE(engine::addWorldBytes(scene, bytes, dir.path, {}, "NextModel").ok);
    ASSERT_TRUE(engine::addWorldBytes(scene, bytes, dir.path, {}, "NextModel").ok);
    EXPECT_EQ(groupsNamed("NextModel").size(), 2u);
    EXPECT_EQ(groupsNamed("FirstModel").size(), 2u);
    EXPECT_EQ(scene.polygon_count(), 13u);
}

TEST_F(WorldAdd, LightsWithANameTheSceneHasAreLeftOut) {
    ASSERT_TRUE(engine::addWorldBytes(scene, bytes, dir.path, {}, "NextModel").ok);
    // "Light" is the scene's own (handle kept, place unchanged); "Spot" came with
    // the world and lights the copy of its group only.
    const Handle spot = engine::makeHandle(engine::Kind::Light, 1);
    ASSERT_EQ(scene.light_activate(spot, 0), 0);
    for (Handle p = scene.polygon_get_first_polygon(); p; p = scene.polygon_get_next(p)) {
        const auto l = scene.polygon_get_light(p);
        if (p == keptPolygon) {
            EXPECT_FALSE(l.has_value());
        } else if (scene.polygon_get_num_of_points(p) == 5) {
            // In a descendant of the spot's group, facing the light at 54.7 degrees:
            // round(255 / 4 * cos) = 37.
            ASSERT_TRUE(l.has_value());
            EXPECT_EQ(*l, (Rgb{37, 37, 37}));
        } else if (scene.entity_get_name(p) == "PR_Tri\tdata") {
            ASSERT_TRUE(l.has_value());
            EXPECT_EQ(*l, (Rgb{10, 200, 255}));  // outside the group: as it was
        }
    }
    EXPECT_EQ(scene.light_activate(engine::makeHandle(engine::Kind::Light, 2), 0), -1);
}

TEST_F(WorldAdd, AnOffsetMovesPointsPatchesAndReferences) {
    const engine::Point3 d{1000, -20, 0.5};
    const auto r = engine::addWorldBytes(scene, bytes, dir.path, d, "NextModel");
    ASSERT_TRUE(r.ok);
    Handle added = scene.polygon_get_next(keptPolygon);
    Point3 p0;
    scene.point_get_xyz(scene.polygon_get_first_point(added), p0);
    EXPECT_EQ(p0, (Point3{1000, -20, 0.5}));
    const auto& st = scene.store();
    const Handle stope = groupsNamed("Stope \"A\"\r\nlevel 3").at(0);
    EXPECT_EQ(st.group(st.groupSlot(stope))->rotateReference, (Point3{1001.5, -22.25, 1e6 + 0.5}));
    Handle pentagon = scene.polygon_get_next(scene.polygon_get_next(added));
    const auto* ex = st.extra(st.polygonSlot(pentagon));
    ASSERT_NE(ex, nullptr);
    ASSERT_EQ(ex->patches.size(), 2u);
    EXPECT_EQ(ex->patches[0].points[0], (Point3{1001, -19, -0.5}));
}

TEST_F(WorldAdd, ADamagedWorldAddsNothing) {
    const std::string before = describe(scene);
    std::string bad = bytes;
    bad[bad.size() / 2] ^= 0x10;
    const auto r = engine::addWorldBytes(scene, bad, dir.path, {}, "NextModel");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.group, 0u);
    EXPECT_EQ(describe(scene), before);
}

TEST_F(WorldAdd, ALoadKeepsTheHandlesOfLightsMadeBefore) {
    // The main form's light is made at start; a world that has one takes its place.
    ASSERT_TRUE(engine::loadWorldBytes(scene, bytes, dir.path).ok);
    EXPECT_EQ(scene.light_set_ambient(light, 2), 0);
    EXPECT_EQ(scene.light_activate(light, 0), 0);
    EXPECT_EQ(scene.polygon_count(), 6u);
}

}  // namespace
