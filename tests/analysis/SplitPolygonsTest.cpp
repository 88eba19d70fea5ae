// The cut along a plane: the side rule, split, section lines, both, the picked
// group, hidden polygons, the menu entries and the interrupt.
#include <algorithm>
#include <set>

#include "AnalysisTestUtil.h"
#include "analysis/SplitPolygons.h"
#include "core/GroupPolygons.h"
#include "core/MainForm.h"

namespace {

using analysis::sideOfPlane;
using analysistest::AnalysisTest;
using analysistest::walk;
using engine::Handle;
using engine::Plane;
using engine::Point3;

TEST(SideOfPlane, HorizontalPlaneFrontIsBelow) {
    const Plane z100{{0, 0, 1}, 100};  // z = -100
    EXPECT_EQ(sideOfPlane(z100, {5, 7, -150}), 1);
    EXPECT_EQ(sideOfPlane(z100, {5, 7, -50}), -1);
    EXPECT_EQ(sideOfPlane(z100, {5, 7, -100}), 0);
    // The sense of the normal does not change the sides.
    const Plane down{{0, 0, -1}, -100};
    EXPECT_EQ(sideOfPlane(down, {0, 0, -150}), 1);
    EXPECT_EQ(sideOfPlane(down, {0, 0, -50}), -1);
}

TEST(SideOfPlane, VerticalPlanesTakeYThenX) {
    // c = 0: y = 20 tested against y.
    const Plane y20{{0, 1, 0}, -20};
    EXPECT_EQ(sideOfPlane(y20, {0, 10, 999}), 1);
    EXPECT_EQ(sideOfPlane(y20, {0, 30, -999}), -1);
    // A slanted vertical plane x + y = 0 (b not 0): p = -x compared with y.
    const double s = std::sqrt(0.5);
    const Plane diag{{s, s, 0}, 0};
    EXPECT_EQ(sideOfPlane(diag, {10, -20, 0}), 1);
    EXPECT_EQ(sideOfPlane(diag, {10, 0, 0}), -1);
    // b = c = 0: x = -5 tested against x.
    const Plane x5{{-1, 0, 0}, -5};
    EXPECT_EQ(sideOfPlane(x5, {-10, 50, 50}), 1);
    EXPECT_EQ(sideOfPlane(x5, {0, 50, 50}), -1);
    EXPECT_EQ(sideOfPlane(Plane{{0, 0, 0}, 3}, {1, 2, 3}), 0);
}

struct SplitTest : AnalysisTest {
    // The cutting plane z = -100: a square in its own group, well away from the rest.
    Handle plane() {
        planeGroup = ctx.engine.group_create("PlaneGroup");
        return flatSquare(5000, 5000, -100, 50, planeGroup);
    }
    // A vertical square in the x-z plane from z0 to z1, at x offset x0.
    Handle wall(double x0, double z0, double z1, Handle group) {
        return polygon({{x0, 0, z1}, {x0 + 40, 0, z1}, {x0 + 40, 0, z0}, {x0, 0, z0}}, group);
    }
    std::vector<Point3> points(Handle h) const {
        std::vector<Point3> out;
        for (auto pt = ctx.engine.polygon_get_first_point(h); pt;
             pt = ctx.engine.point_get_next_point(pt)) {
            Point3 p;
            ctx.engine.point_get_xyz(pt, p);
            out.push_back(p);
        }
        return out;
    }
    std::vector<Handle> inGroup(Handle g) const {
        std::vector<Handle> out;
        core::forEachGroupPolygon(ctx.engine, g, [&](Handle p) {
            out.push_back(p);
            return true;
        });
        return out;
    }
    Handle planeGroup = 0;
};

TEST_F(SplitTest, SplitSortsPiecesAndWholePolygonsToTheirSides) {
    engine::Engine& e = ctx.engine;
    const Handle model = e.group_create("Model");
    const Handle pl = plane();
    const Handle crossing = wall(0, -200, 0, model);
    const Handle below = wall(100, -180, -120, model);
    const Handle above = wall(200, -80, -20, model);
    const auto run = analysis::P_subSplitPolygons(ctx, pl, true, false);
    EXPECT_EQ(run.polygonsCut, 1);
    EXPECT_FALSE(run.interrupted);
    EXPECT_EQ(e.entity_get_name(run.frontGroup), "FrontPolyGroup");
    EXPECT_EQ(e.entity_get_name(run.backGroup), "BackPolyGroup");
    EXPECT_EQ(e.entity_get_name(run.sectionLineGroup), "SectionLineGroup");
    EXPECT_FALSE(e.polygon_is_in_world(crossing));
    EXPECT_EQ(e.polygon_get_group(below), run.frontGroup);
    EXPECT_EQ(e.polygon_get_group(above), run.backGroup);
    // The plane was not cut and is visible again.
    EXPECT_EQ(e.polygon_get_group(pl), planeGroup);
    EXPECT_FALSE(e.polygon_is_disabled(pl));
    // Two pieces of the wall: the lower one in front, the upper one at the back.
    auto front = inGroup(run.frontGroup), back = inGroup(run.backGroup);
    ASSERT_EQ(front.size(), 2u);
    ASSERT_EQ(back.size(), 2u);
    const Handle lower = front[0] == below ? front[1] : front[0];
    const Handle upper = back[0] == above ? back[1] : back[0];
    for (const Point3& p : points(lower)) {
        EXPECT_LE(p.z, -100);
        EXPECT_GE(p.z, -200);
    }
    for (const Point3& p : points(upper)) {
        EXPECT_GE(p.z, -100);
        EXPECT_LE(p.z, 0);
    }
    EXPECT_EQ(e.polygon_get_color(lower), (engine::Rgb{10, 20, 30}));
    EXPECT_TRUE(inGroup(run.sectionLineGroup).empty());
    EXPECT_EQ(walk(e).size(), 5u);
}

TEST_F(SplitTest, LinesOnlyLeavesTheModelAsItWas) {
    engine::Engine& e = ctx.engine;
    const Handle model = e.group_create("Model");
    const Handle pl = plane();
    const Handle crossing = wall(0, -200, 0, model);
    const Handle above = wall(200, -80, -20, model);
    const auto before = walk(e);
    const auto run = analysis::P_subSplitPolygons(ctx, pl, false, true);
    EXPECT_EQ(run.sectionLines, 1);
    EXPECT_EQ(e.polygon_get_group(crossing), model);
    EXPECT_EQ(e.polygon_get_group(above), model);  // no piece: stays where it is
    EXPECT_EQ(points(crossing).size(), 4u);
    EXPECT_TRUE(inGroup(run.frontGroup).empty());
    EXPECT_TRUE(inGroup(run.backGroup).empty());
    // The model's polygons are the same ones, in the same order, before the tube.
    auto after = walk(e);
    ASSERT_GT(after.size(), before.size());
    EXPECT_TRUE(std::equal(before.begin(), before.end(), after.begin()));
    // One tunnel under the section group, enabled, lying along the cut: z = -100,
    // y = 0, x from 0 to 40, as thick as the line setting.
    const Handle tube = e.group_get_first_included_group(run.sectionLineGroup);
    ASSERT_NE(tube, 0u);
    EXPECT_EQ(e.group_get_next_included_group(run.sectionLineGroup, tube), 0u);
    Point3 lo, hi;
    ASSERT_TRUE(e.group_bounding_box(tube, lo, hi));
    const double t = ctx.settings.dblLineThickness;
    EXPECT_NEAR(lo.x, 0, 1e-3);
    EXPECT_NEAR(hi.x, 40, 1e-3);
    EXPECT_NEAR(hi.z - lo.z, t, 1e-3);
    EXPECT_NEAR((hi.z + lo.z) / 2, -100, 1e-3);
    EXPECT_NEAR((hi.y + lo.y) / 2, 0, 1e-3);
    for (Handle p : inGroup(tube)) {
        EXPECT_FALSE(e.polygon_is_disabled(p));
        EXPECT_EQ(e.polygon_get_color(p), (engine::Rgb{10, 20, 30}));
    }
}

TEST_F(SplitTest, SplitAndLinesTogether) {
    engine::Engine& e = ctx.engine;
    const Handle model = e.group_create("Model");
    const Handle pl = plane();
    wall(0, -200, 0, model);
    wall(100, -300, 100, model);
    const auto run = analysis::P_subSplitPolygons(ctx, pl, true, true);
    EXPECT_EQ(run.polygonsCut, 2);
    EXPECT_EQ(run.sectionLines, 2);
    EXPECT_EQ(inGroup(run.frontGroup).size(), 2u);
    EXPECT_EQ(inGroup(run.backGroup).size(), 2u);
    EXPECT_EQ(inGroup(run.sectionLineGroup).size(), 12u);  // two tunnels of six faces
    EXPECT_TRUE(inGroup(model).empty());
}

TEST_F(SplitTest, APlaneThatTouchesNothing) {
    engine::Engine& e = ctx.engine;
    const Handle model = e.group_create("Model");
    const Handle pl = plane();
    const Handle a = wall(0, -300, -200, model), b = wall(100, -50, 0, model);
    // Lines only: nothing changes but three empty groups.
    auto run = analysis::P_subSplitPolygons(ctx, pl, false, true);
    EXPECT_EQ(e.polygon_get_group(a), model);
    EXPECT_EQ(e.polygon_get_group(b), model);
    EXPECT_EQ(walk(e).size(), 3u);
    EXPECT_EQ(e.group_get_number_of_polygons(run.sectionLineGroup), 0);
    // Split: every polygon goes to a side.
    run = analysis::P_subSplitPolygons(ctx, pl, true, false);
    EXPECT_EQ(e.polygon_get_group(a), run.frontGroup);
    EXPECT_EQ(e.polygon_get_group(b), run.backGroup);
    EXPECT_EQ(run.polygonsCut, 0);
}

TEST_F(SplitTest, OnThePlaneAndHiddenPolygonsStay) {
    engine::Engine& e = ctx.engine;
    const Handle model = e.group_create("Model");
    const Handle pl = plane();
    // In the plane but in another group: not cut, centre on the plane, stays.
    const Handle inPlane = flatSquare(0, 0, -100, 10, model);
    const Handle hidden = wall(100, -200, 0, model);
    e.polygon_disable(hidden);
    const auto run = analysis::P_subSplitPolygons(ctx, pl, true, false);
    EXPECT_EQ(e.polygon_get_group(inPlane), model);
    EXPECT_EQ(e.polygon_get_group(hidden), model);
    EXPECT_TRUE(e.polygon_is_in_world(hidden));
    EXPECT_TRUE(e.polygon_is_disabled(hidden));
    EXPECT_EQ(run.polygonsCut, 0);
}

TEST_F(SplitTest, APlaneWithoutAPlaneFailsEverySplitQuietly) {
    engine::Engine& e = ctx.engine;
    const Handle model = e.group_create("Model");
    const Handle crossing = wall(0, -200, 0, model);
    const auto run = analysis::P_subSplitPolygons(ctx, 0, true, true);
    EXPECT_EQ(e.polygon_get_group(crossing), model);
    EXPECT_EQ(run.polygonsCut, 0);
    EXPECT_NE(run.frontGroup, 0u);
}

TEST_F(SplitTest, InterruptStopsTheRunAndRestoresThePlane) {
    engine::Engine& e = ctx.engine;
    const Handle model = e.group_create("Model");
    const Handle pl = plane();
    std::vector<Handle> walls;
    for (int k = 0; k < 1000; ++k) walls.push_back(wall(k * 50.0, -200, 0, model));
    int pumps = 0;
    ui.onPump = [&] {
        if (++pumps == 3) ctx.state.bolInterruptProcess = true;
    };
    const auto run = analysis::P_subSplitPolygons(ctx, pl, true, false);
    EXPECT_TRUE(run.interrupted);
    EXPECT_GT(run.polygonsCut, 0);
    EXPECT_LT(run.polygonsCut, 1000);
    // The cut ones are gone and their pieces sorted; the rest are whole in the model.
    std::size_t whole = 0;
    for (Handle w : walls)
        if (e.polygon_is_in_world(w)) {
            ++whole;
            EXPECT_EQ(e.polygon_get_group(w), model);
        }
    EXPECT_EQ(whole, 1000u - run.polygonsCut);
    EXPECT_EQ(inGroup(run.frontGroup).size(), std::size_t(run.polygonsCut));
    EXPECT_FALSE(e.polygon_is_disabled(pl));
}

TEST_F(SplitTest, MenuEntriesArmTheToolAndADoubleClickCuts) {
    engine::Engine& e = ctx.engine;
    ctx.commands.find("mnuSplitPolyDrawLines")->handler(ctx);
    EXPECT_TRUE(ctx.state.toolFlag("bolSplitPolygons"));
    EXPECT_TRUE(ctx.state.toolFlag("bolDrawSplitLines"));
    EXPECT_EQ(ctx.state.txtComment,
              "Double click on the plane that must be used to split all visible polygons and "
              "create section lines");
    EXPECT_EQ(ui.pointer(), 14);
    ctx.commands.find("mnuDrawSplitLines")->handler(ctx);
    EXPECT_FALSE(ctx.state.toolFlag("bolSplitPolygons"));
    EXPECT_TRUE(ctx.state.toolFlag("bolDrawSplitLines"));
    EXPECT_EQ(ctx.state.txtComment,
              "Double click on the plane that must be used to split all visible polygons");
    ctx.commands.find("mnuSplitPolygons")->handler(ctx);
    EXPECT_TRUE(ctx.state.toolFlag("bolSplitPolygons"));
    EXPECT_FALSE(ctx.state.toolFlag("bolDrawSplitLines"));

    // A camera above the origin looking down; the ground square under the middle.
    const Handle ground = flatSquare(0, 0, 0, 2000, e.group_create("Ground"));
    const Handle model = e.group_create("Model");
    const Handle crossing = wall(5000, -100, 100, model);
    const Handle cam = e.camera_get_default_camera();
    e.camera_set_location(cam, {0, 0, 5000});
    e.camera_set_axis_system(cam, {0, 0, -1}, {0, 1, 0});
    ASSERT_TRUE(ctx.input.onDblClick);
    // Left over from an interrupted run: the new pick still cuts.
    ctx.state.bolInterruptProcess = true;
    ctx.input.onDblClick(ctx, e.window_width() / 2.0, e.window_height() / 2.0);
    EXPECT_FALSE(e.polygon_is_in_world(crossing));
    EXPECT_EQ(e.group_get_number_of_polygons(model), 0);
    EXPECT_TRUE(e.polygon_is_in_world(ground));
    EXPECT_EQ(ui.progress(), 80);

    // Reset disarms: a double click does nothing more.
    core::p_subResetAndCleanup(ctx);
    const Handle second = wall(6000, -100, 100, model);
    ctx.input.onDblClick(ctx, e.window_width() / 2.0, e.window_height() / 2.0);
    EXPECT_TRUE(e.polygon_is_in_world(second));
}

TEST_F(SplitTest, RegisteringTwiceChainsTheDoubleClickOnce) {
    int calls = 0;
    core::AppContext other(ui);
    other.engine.engine_load_world("", "", "", 4);
    other.input.onDblClick = [&](core::AppContext&, double, double) { ++calls; };
    analysis::registerAnalysis(other);
    analysis::registerAnalysis(other);
    other.input.onDblClick(other, 1, 1);
    EXPECT_EQ(calls, 1);
}

}  // namespace
