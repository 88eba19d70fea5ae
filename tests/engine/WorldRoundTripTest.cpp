// World files: what goes in comes out, in both formats, through memory and disk.

#include <gtest/gtest.h>

#include "WorldTestUtil.h"
#include "engine/WorldFormat.h"
#include "support/TestSupport.h"

namespace {

using namespace worldtest;
using engine::WorldFormat;
namespace fs = std::filesystem;

class WorldRoundTrip : public ::testing::TestWithParam<WorldFormat> {
protected:
    void SetUp() override {
        bmp = dir.file("rock.bmp");
        writeBmp(bmp, 4, 2, {200, 100, 50});
        scene = buildRichScene(original, bmp);
    }
    std::string ext() const { return GetParam() == WorldFormat::Text ? ".wld" : ".STATE"; }

    testsupport::TempDir dir;
    fs::path bmp;
    Engine original;
    RichScene scene;
};

TEST_P(WorldRoundTrip, BytesReadBackToTheSameSceneAndTheSameBytes) {
    std::string first, second;
    ASSERT_TRUE(engine::encodeWorld(original, GetParam(), first).ok);
    Engine copy;
    const auto r = engine::loadWorldBytes(copy, first, dir.path);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_TRUE(r.notes.empty());
    EXPECT_EQ(r.polygons, 6u);  // the deleted and the free polygon are not part of the world
    EXPECT_EQ(describe(copy), describe(original));
    ASSERT_TRUE(engine::encodeWorld(copy, GetParam(), second).ok);
    EXPECT_EQ(second, first);
}

TEST_P(WorldRoundTrip, FilesSavedLoadedAndSavedAgainAreIdentical) {
    const fs::path a = dir.file("a" + ext()), b = dir.file("b" + ext());
    ASSERT_TRUE(engine::saveWorld(original, a).ok);
    Engine copy;
    const auto r = engine::loadWorld(copy, a);
    ASSERT_TRUE(r.ok) << r.message;
    ASSERT_TRUE(engine::saveWorld(copy, b).ok);
    EXPECT_EQ(readAll(a), readAll(b));
    EXPECT_EQ(describe(copy), describe(original));
    // The bitmap was found again from its reference and has its pixels.
    Handle textured = 0;
    for (Handle p = copy.polygon_get_first_polygon(); p; p = copy.polygon_get_next(p))
        if (copy.entity_get_name(p) == "textured") textured = p;
    EXPECT_EQ(copy.bitmap_get_width(copy.polygon_get_bitmap(textured)), 4);
}

TEST_P(WorldRoundTrip, LightsComeBackWithTheirSettingsAndEntity) {
    std::string bytes;
    ASSERT_TRUE(engine::encodeWorld(original, GetParam(), bytes).ok);
    Engine copy;
    ASSERT_TRUE(engine::loadWorldBytes(copy, bytes, dir.path).ok);
    // Lights are found by position: the same handles in a fresh engine.
    for (Handle l : {scene.light, scene.spot}) {
        ASSERT_EQ(original.light_activate(l, 0), 0);
        ASSERT_EQ(copy.light_activate(l, 0), 0);
    }
    EXPECT_EQ(describe(copy), describe(original));
}

TEST_P(WorldRoundTrip, AnEmptySceneRoundTrips) {
    Engine empty, copy;
    empty.engine_load_world("", "", "", 4);
    std::string bytes;
    ASSERT_TRUE(engine::encodeWorld(empty, GetParam(), bytes).ok);
    ASSERT_TRUE(engine::loadWorldBytes(copy, bytes).ok);
    EXPECT_EQ(copy.polygon_count(), 0u);
    EXPECT_EQ(copy.group_count(), 0u);
    EXPECT_FALSE(copy.engine_is_engine_empty());
    EXPECT_EQ(describe(copy), describe(empty));
}

TEST_P(WorldRoundTrip, SavingAGroupKeepsItsSubtreeOnly) {
    const fs::path f = dir.file("part" + ext());
    engine::WorldSaveOptions opt;
    opt.group = scene.child;
    ASSERT_TRUE(engine::saveWorld(original, f, opt).ok);
    Engine copy;
    ASSERT_TRUE(engine::loadWorld(copy, f).ok);
    // The child group (top now) with the quad, and the grandchild with the pentagon.
    ASSERT_EQ(copy.group_count(), 2u);
    const Handle top = copy.group_get_first_group();
    EXPECT_EQ(copy.entity_get_name(top), "Stope \"A\"\r\nlevel 3");
    EXPECT_EQ(copy.group_get_father_group(top), 0u);
    const Handle low = copy.group_get_next(top);
    EXPECT_EQ(copy.group_get_father_group(low), top);
    ASSERT_EQ(copy.polygon_count(), 2u);
    const Handle first = copy.polygon_get_first_polygon();
    EXPECT_EQ(copy.polygon_get_num_of_points(first), 4);
    EXPECT_EQ(copy.polygon_get_group(first), top);
    EXPECT_EQ(copy.polygon_get_num_of_points(copy.polygon_get_next(first)), 5);
}

INSTANTIATE_TEST_SUITE_P(Formats, WorldRoundTrip,
                         ::testing::Values(WorldFormat::State, WorldFormat::Text),
                         [](const auto& info) {
                             return info.param == WorldFormat::Text ? "Text" : "Binary";
                         });

// ---- formats and extensions --------------------------------------------------------------

TEST(WorldFormatChoice, ExtensionChoosesTheFormatAndContentDecidesOnLoad) {
    EXPECT_EQ(engine::worldFormatFor("a/b.wld"), WorldFormat::Text);
    EXPECT_EQ(engine::worldFormatFor("a/b.WLD"), WorldFormat::Text);
    EXPECT_EQ(engine::worldFormatFor("a/b.STATE"), WorldFormat::State);
    EXPECT_EQ(engine::worldFormatFor("a/b"), WorldFormat::State);

    testsupport::TempDir dir;
    Engine e;
    buildRichScene(e, dir.file("none.bmp"));
    const fs::path text = dir.file("text.wld"), binary = dir.file("binary.STATE");
    ASSERT_TRUE(engine::saveWorld(e, text).ok);
    ASSERT_TRUE(engine::saveWorld(e, binary).ok);
    EXPECT_EQ(readAll(text).rfind("TARVIK WORLD TEXT 1\n", 0), 0u);
    EXPECT_EQ(readAll(binary).substr(0, 4), "\x89TVK");
    // A text world under a binary name still loads: the first bytes decide.
    fs::rename(text, dir.file("renamed.STATE"));
    Engine copy;
    EXPECT_TRUE(engine::loadWorld(copy, dir.file("renamed.STATE")).ok);
    EXPECT_TRUE(engine::isWorldFile(binary));
    EXPECT_TRUE(engine::isWorldFile(dir.file("renamed.STATE")));
}

TEST(WorldFormatChoice, TheBinaryFileIsCompactForRepeatedAttributes) {
    // 1000 triangles sharing a name, group and colour: coordinates plus a few bytes.
    Engine e;
    e.engine_load_world("", "", "", 4);
    const Handle g = e.group_create("Surface");
    for (int i = 0; i < 1000; ++i)
        polygon(e, {{double(i), 0, 0}, {double(i), 1, 0}, {double(i) + 1, 1, 0}}, g, "cell");
    std::string bytes;
    ASSERT_TRUE(engine::encodeWorld(e, WorldFormat::State, bytes).ok);
    const std::size_t raw = 1000 * 3 * 3 * sizeof(double);
    EXPECT_GE(bytes.size(), raw);
    EXPECT_LT(bytes.size(), raw + 600);
}

TEST(WorldFormatChoice, DistinctNamesCostTheirTextOnly) {
    // Distinct names in walk order are numbered as they come: one run in the file.
    Engine e;
    e.engine_load_world("", "", "", 4);
    std::size_t nameBytes = 0;
    for (int i = 0; i < 500; ++i) {
        const std::string name = "PR_Sphere " + std::to_string(i);
        nameBytes += name.size() + 1;
        polygon(e, {{double(i), 0, 0}, {double(i), 1, 0}, {double(i) + 1, 1, 0}}, 0, name);
    }
    std::string bytes;
    ASSERT_TRUE(engine::encodeWorld(e, WorldFormat::State, bytes).ok);
    EXPECT_LT(bytes.size(), 500 * 72 + nameBytes + 600);
}

}  // namespace

namespace {

// A square facing up (clockwise seen from above), centred on the z axis.
Handle upSquare(Engine& e, double z, const std::string& name) {
    return polygon(e, {{5, 5, z}, {5, -5, z}, {-5, -5, z}, {-5, 5, z}}, 0, name);
}

void lookDown(Engine& e) {
    const Handle cam = e.camera_get_default_camera();
    e.camera_set_location(cam, {0, 0, 100});
    e.camera_set_axis_system(cam, {0, 0, -1}, {0, 1, 0});
}

TEST(WorldLoadIndex, PickingAndCountsSeeTheLoadedScene) {
    Engine source, scene;
    source.engine_load_world("", "", "", 4);
    upSquare(source, 10, "loaded");
    lookDown(source);
    std::string bytes;
    ASSERT_TRUE(engine::encodeWorld(source, WorldFormat::State, bytes).ok);

    scene.engine_load_world("", "", "", 4);
    upSquare(scene, 0, "old");
    upSquare(scene, -20, "old below");
    lookDown(scene);
    const auto before = scene.engine_2D_point_to_3D(400, 300);
    ASSERT_NE(before.polygon, 0u);
    ASSERT_EQ(scene.entity_get_name(before.polygon), "old");

    ASSERT_TRUE(engine::loadWorldBytes(scene, bytes).ok);
    const auto after = scene.engine_2D_point_to_3D(400, 300);
    ASSERT_NE(after.polygon, 0u);
    EXPECT_EQ(scene.entity_get_name(after.polygon), "loaded");
    EXPECT_DOUBLE_EQ(after.distance, 90);
    EXPECT_EQ(scene.polygon_count(), 1u);
    EXPECT_EQ(scene.engine_get_number_of_collisions({0, 0, 50}, {0, 0, -50}), 1);
}

}  // namespace
