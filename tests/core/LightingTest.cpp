// Light modes: the greys of the flat modes and the dynamic light, which polygons
// each mode reaches, the dialog and the keys.
#include <gtest/gtest.h>

#include "core/AppContext.h"
#include "core/Lighting.h"
#include "engine/Engine.h"
#include "forms/Frm06Lighting.h"
#include "ui/ScriptedUi.h"

namespace {

using engine::Point3;
using engine::Rgb;

TEST(FlatShadingGrey, ModeOneFavoursUpAndNorth) {
    // round(n.y * 45) + round(n.z * 105) + 105
    EXPECT_EQ(core::flatShadingGrey(1, {0, 0, 1}), 210);
    EXPECT_EQ(core::flatShadingGrey(1, {0, 1, 0}), 150);
    EXPECT_EQ(core::flatShadingGrey(1, {0, -1, 0}), 60);
    EXPECT_EQ(core::flatShadingGrey(1, {1, 0, 0}), 105);
    EXPECT_EQ(core::flatShadingGrey(1, {0, 0, -1}), 0);
    EXPECT_EQ(core::flatShadingGrey(1, {0, 0.6, 0.8}), 27 + 84 + 105);
    // 4.5 and 10.5 are ties: to even, 4 and 10
    EXPECT_EQ(core::flatShadingGrey(1, {0, 0.1, 0.1}), 4 + 10 + 105);
    // turned down and south: -18 - 96 + 105 = -9, handed on as it is
    EXPECT_EQ(core::flatShadingGrey(1, {0, -0.4, -0.916515139}), -9);
}

TEST(FlatShadingGrey, ModeTwoByTheAngleFromStraightDown) {
    EXPECT_EQ(core::flatShadingGrey(2, {0, 0, -1}), 0);
    // facing up: pi * 255 = 801.1 -> 801, low byte 801 - 768 = 33
    EXPECT_EQ(core::flatShadingGrey(2, {0, 0, 1}), 33);
    // vertical: pi/2 * 255 = 400.55 -> 401, low byte 145
    EXPECT_EQ(core::flatShadingGrey(2, {1, 0, 0}), 145);
    // 60 degrees from down: pi/3 * 255 = 267.04 -> 267, low byte 11
    EXPECT_EQ(core::flatShadingGrey(2, {0, std::sqrt(0.75), -0.5}), 11);
}

TEST(FollowCameraGrey, ByTheAngleBetweenViewAndNormal) {
    EXPECT_EQ(core::followCameraGrey({0, 0, -1}, {0, 0, -1}), 0);
    EXPECT_EQ(core::followCameraGrey({0, 0, -1}, {0, 0, 1}), 33);
    EXPECT_EQ(core::followCameraGrey({1, 0, 0}, {0, 1, 0}), 145);
}

class LightingScene : public ::testing::Test {
protected:
    LightingScene() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        ctx.state.F_h_lngCamera = ctx.engine.camera_get_default_camera();
        ctx.state.F_h_lngLight = ctx.engine.light_create("Light", {0, 0, 0});
    }

    // A triangle whose front faces the given way: clockwise seen from the front.
    engine::Handle face(Point3 normal, engine::Handle group, Point3 at = {0, 0, 0}) {
        Point3 p1{0, 0, 0}, p2, p3;
        if (normal.z > 0) {
            p2 = {0, 10, 0}, p3 = {10, 0, 0};  // (10,0,0) x (0,10,0) = +z
        } else if (normal.z < 0) {
            p2 = {10, 0, 0}, p3 = {0, 10, 0};
        } else if (normal.y > 0) {
            p2 = {10, 0, 0}, p3 = {0, 0, 10};  // (0,0,10) x (10,0,0) = +y
        } else {
            p2 = {0, 0, 10}, p3 = {10, 0, 0};
        }
        engine::Handle p = ctx.engine.polygon_create();
        for (Point3 q : {p1, p2, p3}) ctx.engine.polygon_add_point(p, q + at);
        EXPECT_EQ(ctx.engine.engine_add_polygon(p), 0);
        if (group != 0) ctx.engine.polygon_set_group(p, group);
        engine::Plane plane;
        EXPECT_EQ(ctx.engine.polygon_get_plane(p, plane), 0);
        EXPECT_NEAR(engine::dot(plane.n, normal), 1.0, 1e-12);
        return p;
    }

    std::optional<Rgb> light(engine::Handle p) { return ctx.engine.polygon_get_light(p); }
    static Rgb grey(int g) { return Rgb{g, g, g}; }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

TEST_F(LightingScene, FlatShadingModeOneGivesEachFaceItsGrey) {
    engine::Handle g = ctx.engine.group_create("G");
    engine::Handle up = face({0, 0, 1}, g), north = face({0, 1, 0}, g), south = face({0, -1, 0}, g),
                   down = face({0, 0, -1}, g);
    core::P_subFlatShading(ctx, 1, 0);
    EXPECT_EQ(light(up), grey(210));
    EXPECT_EQ(light(north), grey(150));
    EXPECT_EQ(light(south), grey(60));
    EXPECT_EQ(light(down), grey(0));
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(LightingScene, FlatShadingModeTwoLightsADownwardFaceWithGreyZero) {
    engine::Handle down = face({0, 0, -1}, 0), up = face({0, 0, 1}, 0);
    core::P_subFlatShading(ctx, 2, 0);
    ASSERT_TRUE(light(down).has_value());
    EXPECT_EQ(*light(down), grey(0));
    EXPECT_EQ(light(up), grey(33));
}

TEST_F(LightingScene, BrightnessZeroKeepsNoLightAndDisabledIsSkipped) {
    engine::Handle dark = face({0, 0, 1}, 0), off = face({0, 0, 1}, 0);
    ctx.engine.polygon_set_light(dark, grey(77));
    ctx.engine.polygon_set_brightness(dark, 0);
    ctx.engine.polygon_disable(off);
    for (int mode : {1, 2}) {
        core::P_subFlatShading(ctx, mode, 0);
        EXPECT_FALSE(light(dark).has_value()) << mode;
        EXPECT_FALSE(light(off).has_value()) << mode;
    }
}

TEST_F(LightingScene, AGroupMeansItsPolygonsAndItsDescendants) {
    engine::Handle top = ctx.engine.group_create("top");
    engine::Handle child = ctx.engine.group_create("child");
    engine::Handle other = ctx.engine.group_create("other");
    ASSERT_EQ(ctx.engine.group_set_father_group(child, top), 0);
    engine::Handle a = face({0, 0, 1}, top), b = face({0, 1, 0}, child), c = face({0, 0, 1}, other),
                   loose = face({0, 0, 1}, 0);
    core::P_subFlatShading(ctx, 1, top);
    EXPECT_EQ(light(a), grey(210));
    EXPECT_EQ(light(b), grey(150));
    EXPECT_FALSE(light(c).has_value());
    EXPECT_FALSE(light(loose).has_value());
}

TEST_F(LightingScene, DynamicLightFollowsTheViewDirection) {
    ASSERT_EQ(ctx.engine.camera_set_axis_system(ctx.state.F_h_lngCamera, {0, 0, -1}, {0, 1, 0}), 0);
    engine::Handle up = face({0, 0, 1}, 0), down = face({0, 0, -1}, 0), wall = face({0, 1, 0}, 0);
    core::P_subLightFollowCamera(ctx, 0);
    EXPECT_EQ(light(up), grey(33));
    EXPECT_EQ(light(down), grey(0));
    EXPECT_EQ(light(wall), grey(145));
}

TEST_F(LightingScene, DialogStartsOnFlatShadingAndApplyFollowsIt) {
    forms::Frm06Lighting& form = core::lightingForm(ctx);
    EXPECT_EQ(form.selectedOption(), "optFlatShading1");
    EXPECT_EQ(&core::lightingForm(ctx), &form);  // one dialog per window

    engine::Handle up = face({0, 0, 1}, 0);
    core::P_subApplyLight(ctx, 0);
    EXPECT_EQ(light(up), grey(210));
    EXPECT_EQ(ctx.state.bolLightFollowsCamera, 0);

    form.setOption("optDynamicLight");
    EXPECT_FALSE(form.optionValue("optFlatShading1"));
    core::P_subApplyLight(ctx, 0);
    EXPECT_EQ(ctx.state.bolLightFollowsCamera, -1);
    ASSERT_TRUE(static_cast<bool>(ctx.lightFollowCamera));  // the camera update calls it

    form.setOption("optFlatShading2");
    form.click("cmdOK");
    EXPECT_FALSE(form.shown());
    EXPECT_EQ(ctx.state.bolLightFollowsCamera, 0);
    EXPECT_EQ(light(up), grey(33));
}

TEST_F(LightingScene, KeysSetTheOptionAndRelight) {
    engine::Handle up = face({0, 0, 1}, 0);
    EXPECT_TRUE(core::applyLightMode(ctx, 'J'));
    EXPECT_EQ(core::lightingForm(ctx).selectedOption(), "optFlatShading2");
    EXPECT_EQ(light(up), grey(33));
    EXPECT_TRUE(core::applyLightMode(ctx, 'F'));
    EXPECT_EQ(core::lightingForm(ctx).selectedOption(), "optFlatShading1");
    EXPECT_EQ(light(up), grey(210));
    EXPECT_TRUE(core::applyLightMode(ctx, 'S'));
    EXPECT_EQ(core::lightingForm(ctx).selectedOption(), "optLightOnce1SideCamera");
    EXPECT_TRUE(core::applyLightMode(ctx, 'G'));
    EXPECT_EQ(core::lightingForm(ctx).selectedOption(), "optLightOnceTopBottom");
    EXPECT_FALSE(core::applyLightMode(ctx, 'X'));
    EXPECT_EQ(core::lightKeyComment('J'), "Refresh lighting with high contrast flat shading");
    EXPECT_EQ(core::lightKeyComment('X'), "");
}

TEST_F(LightingScene, TopBottomLightsOnlyTheGroupWithSmoothedNormals) {
    engine::Handle g = ctx.engine.group_create("G");
    engine::Handle in = face({0, 0, 1}, g), out = face({0, 0, 1}, 0, {100, 0, 0});
    ctx.engine.light_calcualte_vertices_normals_automatically(10);
    core::P_subLightTopBottom(ctx, g);
    EXPECT_EQ(ctx.engine.vertices_normals_angle(), 50.0);
    EXPECT_TRUE(light(in).has_value());
    EXPECT_FALSE(light(out).has_value());
}

TEST_F(LightingScene, DifferentiationColoursTheFirstThreePoints) {
    engine::Handle quad = ctx.engine.polygon_create();
    for (Point3 q : {Point3{0, 0, 0}, Point3{0, 10, 0}, Point3{10, 10, 0}, Point3{10, 0, 0}})
        ctx.engine.polygon_add_point(quad, q);
    ASSERT_EQ(ctx.engine.engine_add_polygon(quad), 0);
    engine::Handle off = face({0, 0, 1}, 0);
    ctx.engine.polygon_disable(off);
    core::P_subPolygonDifferentiation(ctx);

    std::vector<std::optional<Rgb>> colours;
    for (engine::Handle pt = ctx.engine.polygon_get_first_point(quad); pt != 0;
         pt = ctx.engine.point_get_next_point(pt))
        colours.push_back(ctx.engine.point_get_rgb(pt));
    ASSERT_EQ(colours.size(), 4u);
    EXPECT_EQ(colours[0], grey(255));
    EXPECT_EQ(colours[1], grey(128));
    EXPECT_EQ(colours[2], grey(0));
    EXPECT_FALSE(colours[3].has_value());
    EXPECT_FALSE(ctx.engine.point_get_rgb(ctx.engine.polygon_get_first_point(off)).has_value());
    EXPECT_EQ(ui.pointer(), 1);
}

}  // namespace
