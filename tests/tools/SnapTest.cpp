// Snapping: the refill of the second box, each pair of boxes at known polygons,
// the culling band and the miss question.
#include "ToolsFixture.h"
#include "builders/Meshes.h"
#include "tools/Snap.h"
#include "tools/ToolSession.h"

namespace {

using engine::Point3;
using tools::snapByBoxes;
using toolstest::near;
using toolstest::ToolsTest;

TEST(SnapBoxes, SecondBoxFollowsTheFirst) {
    EXPECT_EQ(tools::snapTargets("Polygon"),
              (std::vector<std::string>{"Surface", "Point", "Edge", "1/2 Edge", "Centre"}));
    EXPECT_EQ(tools::snapTargets("Line"), (std::vector<std::string>{"Edge", "Point", "Centre"}));
    EXPECT_EQ(tools::snapTargets("Group"), std::vector<std::string>{"Centre"});
    // Tube and line turn a surface into the edge and a half edge into the centre.
    EXPECT_EQ(tools::snapTargetAfter("Tube", "Surface"), "Edge");
    EXPECT_EQ(tools::snapTargetAfter("Line", "1/2 Edge"), "Centre");
    EXPECT_EQ(tools::snapTargetAfter("Tube", "Point"), "Point");
    // Back to polygon always selects the surface; entity and group only have a centre.
    EXPECT_EQ(tools::snapTargetAfter("Polygon", "Point"), "Surface");
    EXPECT_EQ(tools::snapTargetAfter("Entity", "Edge"), "Centre");
}

TEST_F(ToolsTest, ChangingTheFirstBoxRefillsTheSecond) {
    auto& f = main();
    ASSERT_TRUE(f.setFromUser("cboSnapSelect2", "1/2 Edge"));
    ASSERT_TRUE(f.setFromUser("cboSnapSelect1", "Tube"));
    EXPECT_EQ(f.text("cboSnapSelect2"), "Centre");
    EXPECT_EQ(f.at("cboSnapSelect2").items.size(), 3u);
    ASSERT_TRUE(f.setFromUser("cboSnapSelect1", "Group"));
    EXPECT_EQ(f.at("cboSnapSelect2").items, std::vector<std::string>{"Centre"});
    ASSERT_TRUE(f.setFromUser("cboSnapSelect1", "Polygon"));
    EXPECT_EQ(f.text("cboSnapSelect2"), "Surface");
    EXPECT_EQ(f.at("cboSnapSelect2").items.size(), 5u);
}

TEST_F(ToolsTest, PolygonPairsAtAKnownTriangle) {
    const auto g = ctx.engine.group_create("Tri");
    // Right triangle: legs along x and y, 0.6 m and 0.8 m from the origin.
    const auto h = polygon({{0, 0, 0}, {0, 80, 0}, {60, 0, 0}}, g);
    const Point3 pick{10, 20, 0};
    Point3 out;
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Polygon", "Surface", h, pick, out));
    EXPECT_EQ(out, pick);
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Polygon", "Point", h, pick, out));
    EXPECT_EQ(out, (Point3{0, 0, 0}));
    // Nearest edge to (10, 20) is the y leg (distance 10); its foot is (0, 20).
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Polygon", "Edge", h, pick, out));
    EXPECT_LT(near(out, {0, 20, 0}), 1e-9);
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Polygon", "1/2 Edge", h, pick, out));
    EXPECT_LT(near(out, {0, 40, 0}), 1e-9);
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Polygon", "Centre", h, pick, out));
    EXPECT_LT(near(out, {20, 80.0 / 3, 0}), 1e-9);
}

TEST_F(ToolsTest, TheClosingEdgeCountsInTheEdgeSearch) {
    const auto g = ctx.engine.group_create("Tri");
    // Points run (0,0) -> (0,80) -> (60,0): the x leg is the closing edge back to the start.
    const auto h = polygon({{0, 0, 0}, {0, 80, 0}, {60, 0, 0}}, g);
    Point3 a, b;
    ASSERT_TRUE(tools::nearestEdge(ctx.engine, h, {30, 3, 0}, a, b));
    EXPECT_EQ(a, (Point3{60, 0, 0}));
    EXPECT_EQ(b, (Point3{0, 0, 0}));
    Point3 out;
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Polygon", "1/2 Edge", h, {30, 3, 0}, out));
    EXPECT_LT(near(out, {30, 0, 0}), 1e-9);
}

TEST_F(ToolsTest, EntityAndGroupCentres) {
    const auto father = ctx.engine.group_create("Father");
    const auto a = ctx.engine.group_create("A");
    const auto b = ctx.engine.group_create("B");
    ctx.engine.group_set_father_group(a, father);
    ctx.engine.group_set_father_group(b, father);
    const auto ha = square(0, 0, 0, 10, a);
    square(100, 0, 0, 10, b);
    const auto loose = ctx.engine.group_create("Loose");
    const auto hl = square(0, 300, 50, 10, loose);
    Point3 out;
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Entity", "Centre", ha, {3, 3, 0}, out));
    EXPECT_LT(near(out, {0, 0, 0}), 1e-9);
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Group", "Centre", ha, {3, 3, 0}, out));
    EXPECT_LT(near(out, {50, 0, 0}), 1e-9);
    // No father: the entity's own centre.
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Group", "Centre", hl, {3, 303, 50}, out));
    EXPECT_LT(near(out, {0, 300, 50}), 1e-9);
}

TEST_F(ToolsTest, TubePairsUseTheAxis) {
    const auto tube =
        builders::P_fncCreateCylinder(ctx.engine, {0, 0, 0}, {1000, 0, 0}, 40, {200, 200, 200});
    const auto side = ctx.engine.group_get_first_polygon(tube);
    ASSERT_NE(side, 0u);
    Point3 out;
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Tube", "Edge", side, {300, 15, 12}, out));
    EXPECT_LT(near(out, {300, 0, 0}), 1e-6);
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Tube", "Point", side, {300, 15, 12}, out));
    EXPECT_LT(near(out, {0, 0, 0}), 1e-6);
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Tube", "Point", side, {800, 15, 12}, out));
    EXPECT_LT(near(out, {1000, 0, 0}), 1e-6);
    // Halfway: a tie goes to the second end.
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Tube", "Point", side, {500, 15, 12}, out));
    EXPECT_LT(near(out, {1000, 0, 0}), 1e-6);
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Tube", "Centre", side, {100, 15, 12}, out));
    EXPECT_LT(near(out, {500, 0, 0}), 1e-6);
    // Not a tube: the pick stays as it is.
    const auto g = ctx.engine.group_create("Flat");
    const auto flat = square(0, 0, 0, 10, g);
    ASSERT_TRUE(snapByBoxes(ctx.engine, "Tube", "Point", flat, {3, 4, 0}, out));
    EXPECT_EQ(out, (Point3{3, 4, 0}));
}

TEST_F(ToolsTest, AClickSnapsAndShowsThePointInMetres) {
    const auto g = ctx.engine.group_create("Ground");
    square(0, 0, 0, 1000, g);
    main().setText("cboSnapSelect1", "Polygon");
    main().setText("cboSnapSelect2", "Point");
    double x = 0, y = 0;
    pixel({950, -960, 0}, x, y);
    Point3 p;
    ASSERT_EQ(tools::P_subSnapPoint(ctx, x, y, p), tools::SnapResult::Hit);
    EXPECT_EQ(p, (Point3{1000, -1000, 0}));
    const auto status = records("status");
    ASSERT_FALSE(status.empty());
    EXPECT_EQ(status.back()["panel"], 3);
    EXPECT_EQ(status.back()["text"], "100.0, -100.0, 0.0");
}

TEST_F(ToolsTest, TheCullingBandRejectsANearPolygon) {
    const auto g = ctx.engine.group_create("Levels");
    const auto low = square(0, 0, 0, 500, g);
    const auto high = square(0, 0, 2000, 500, g);  // 200 m nearer the camera
    double x = 0, y = 0;
    pixel({100, 100, 0}, x, y);
    // Without a band the upper level takes the click.
    EXPECT_EQ(tools::pickInBand(ctx, x, y).polygon, high);
    // A band from 590 m to 640 m from the eye holds only the lower level.
    main().at("sliViewCutOff").max = 80000;
    main().setFromUser("sliViewCutOff", "5900");
    ctx.state.lngCutOff = 5900;
    main().setFromUser("cboCullingDepth", "500");
    ASSERT_EQ(ctx.state.lngCullingDepth, 500);
    const engine::PickHit hit = tools::pickInBand(ctx, x, y);
    EXPECT_EQ(hit.polygon, low);
    EXPECT_NEAR(hit.point.z, 0, 1e-6);
    // The rejected polygon is pickable again afterwards.
    EXPECT_FALSE(ctx.engine.polygon_is_disabled(high));
    // A band that holds neither: a miss, and both stay enabled.
    main().setFromUser("sliViewCutOff", "100");
    ctx.state.lngCutOff = 100;
    main().setFromUser("cboCullingDepth", "1000");
    EXPECT_EQ(tools::pickInBand(ctx, x, y).polygon, 0u);
    EXPECT_FALSE(ctx.engine.polygon_is_disabled(high));
    EXPECT_FALSE(ctx.engine.polygon_is_disabled(low));
}

TEST_F(ToolsTest, AMissAsksAndOkKeepsTheTool) {
    run("cmd3DLength");
    ASSERT_TRUE(flag("bolMeasure1"));
    ui.answerMsgBox(ui::Answer::OK);
    clickPixel(400, 300);  // an empty world
    EXPECT_TRUE(tools::toolSession(ctx).bolSnapFailed);
    EXPECT_TRUE(flag("bolMeasure1"));
    EXPECT_EQ(ui.pointer(), 14);
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "No polygon selected");
    ui.answerMsgBox(ui::Answer::Cancel);
    clickPixel(400, 300);
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_EQ(ui.pointer(), 1);
}

}  // namespace
