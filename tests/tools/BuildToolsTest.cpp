// The building tools driven by clicks: excavation legs chained with Shift, each
// plane mode, the markers, hand-built polygons and the point move.
#include "ToolsFixture.h"
#include "builders/TubeCentreLine.h"
#include "tools/ToolButtons.h"

namespace {

using engine::Handle;
using engine::Point3;
using toolstest::near;
using toolstest::ToolsTest;

class BuildTest : public ToolsTest {
protected:
    Handle floor = 0;
    void SetUp() override {
        ToolsTest::SetUp();
        const auto g = ctx.engine.group_create("Scene");
        floor = square(0, 0, 0, 1000, g, "Drive 12", {10, 20, 30});
        main().setText("cboSnapSelect1", "Polygon");
        main().setText("cboSnapSelect2", "Point");
        // Grid of points to snap to: small squares whose corners are known.
        for (double x : {-500.0, 0.0, 500.0})
            for (double y : {-500.0, 0.0, 500.0}) square(x, y, 1, 20, g, "Drive 12", {10, 20, 30});
    }
    // A click that snaps to the grid square's corner (x + 20, y + 20, 1).
    void clickCorner(double x, double y, int shift = 0) { click({x + 15, y + 15, 1}, shift); }
    static Point3 corner(double x, double y) { return {x + 20, y + 20, 1}; }

    void armExcavation(const char* position) {
        auto& f = form("frm12_Excavation");
        f.setFromUser("optExcTunnel", "1");
        f.setFromUser(position, "1");
        f.setFromUser("cboExcavationWidth", "4");
        f.setFromUser("cboExcavationHeight", "3");
        f.setFromUser("chkPickUpAttributes", "1");
        tools::toolButtonDown(ctx, "cmdCreateExcavation", 2);  // last settings, no dialog
    }
};

TEST_F(BuildTest, ThreeExcavationLegsChainedWithShift) {
    armExcavation("optLineBottom");
    ASSERT_TRUE(flag("bolExcavation1"));
    const Handle info = ctx.state.F_h_lngAddedInfoGroup;
    ASSERT_NE(info, 0u);
    clickCorner(-500, -500);
    EXPECT_EQ(ctx.state.txtComment, "Select the second point of the excavation");
    clickCorner(0, -500, 1);
    clickCorner(0, 0, 1);
    const std::string tail = " m.   Select the next point";
    EXPECT_EQ(ctx.state.txtComment.substr(ctx.state.txtComment.size() - tail.size()), tail);
    clickCorner(500, 0);
    EXPECT_FALSE(ctx.state.toolArmed());

    const auto legs = groupsNamed("ExcPolyGroup");
    ASSERT_EQ(legs.size(), 3u);
    EXPECT_EQ(ctx.state.F_h_lngAddedGroups.size(), 3u);
    const Point3 ends[] = {corner(-500, -500), corner(0, -500), corner(0, 0), corner(500, 0)};
    for (std::size_t i = 0; i < legs.size(); ++i) {
        EXPECT_EQ(ctx.engine.group_get_father_group(legs[i]), info);
        for (Handle p = ctx.engine.group_get_first_polygon(legs[i]); p != 0;
             p = ctx.engine.group_get_next_polygon(legs[i], p)) {
            EXPECT_EQ(ctx.engine.entity_get_name(p), "Drive 12");
            EXPECT_EQ(ctx.engine.polygon_get_color(p), (engine::Rgb{10, 20, 30}));
        }
        // The picked line is the floor of the tunnel: its axis runs 1.5 m higher.
        Point3 a, b;
        bool isTube = false;
        ASSERT_TRUE(builders::P_fncTubeCentreLine(
            ctx.engine, ctx.engine.group_get_first_polygon(legs[i]), a, b, isTube));
        EXPECT_LT(near(a, ends[i] + Point3{0, 0, 15}), 1e-6);
        EXPECT_LT(near(b, ends[i + 1] + Point3{0, 0, 15}), 1e-6);
    }
    // Three legs of 50 m each.
    EXPECT_EQ(ctx.state.txtComment,
              "The excavation length is 50.00 m:   Dip is 0.0 degrees:   Direction is 90.0 "
              "degrees:   CUM. LENGTH = 150.00 m.");
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
}

TEST_F(BuildTest, ShiftThreeRearmsWithAFreshGroupAndShiftZeroEnds) {
    armExcavation("optLineCentre");
    const Handle info = ctx.state.F_h_lngAddedInfoGroup;
    clickCorner(-500, -500);
    clickCorner(0, -500, 3);
    EXPECT_TRUE(flag("bolExcavation1"));
    EXPECT_FALSE(flag("bolExcavation2"));
    EXPECT_NE(ctx.state.F_h_lngAddedInfoGroup, info);
    const std::string tail = " m.   Select a new starting point";
    EXPECT_EQ(ctx.state.txtComment.substr(ctx.state.txtComment.size() - tail.size()), tail);
    clickCorner(0, 0);
    clickCorner(500, 0);
    EXPECT_FALSE(ctx.state.toolArmed());
    const auto legs = groupsNamed("ExcPolyGroup");
    ASSERT_EQ(legs.size(), 2u);
    EXPECT_NE(ctx.engine.group_get_father_group(legs[0]),
              ctx.engine.group_get_father_group(legs[1]));
    // The second leg starts afresh: its length alone.
    EXPECT_NE(ctx.state.txtComment.find("CUM. LENGTH = 50.00 m."), std::string::npos);
}

TEST_F(BuildTest, EachPlaneMode) {
    auto& f = form("frm15_DiscPlane");
    f.setFromUser("optPlane1Point", "1");
    tools::toolButtonDown(ctx, "cmdCreateDiscPlane", 2);
    ASSERT_TRUE(flag("bolPlaneOne"));
    clickCorner(0, 0);
    EXPECT_EQ(groupsNamed("FinalDiscPlane").size(), 1u);
    EXPECT_FALSE(ctx.state.toolArmed());

    f.setFromUser("optPlane2Points", "1");
    tools::toolButtonDown(ctx, "cmdCreateDiscPlane", 2);
    ASSERT_TRUE(flag("bolPlaneTwo1"));
    clickCorner(-500, -500);
    EXPECT_EQ(ctx.state.txtComment, "Select the second point of the fault plane");
    clickCorner(500, -500);
    clickCorner(500, 500);  // chains a second slab from the last point
    EXPECT_EQ(groupsNamed("FinalDiscPlane").size(), 3u);
    EXPECT_TRUE(flag("bolPlaneTwo2"));
    ui.answerMsgBox(ui::Answer::Cancel);
    clickPixel(400, 300, 0, 2);
    EXPECT_FALSE(ctx.state.toolArmed());

    f.setFromUser("optPlane3Points", "1");
    tools::toolButtonDown(ctx, "cmdCreateDiscPlane", 2);
    ASSERT_TRUE(flag("bolPlaneThree1"));
    clickCorner(-500, 0);
    clickCorner(0, 500);
    EXPECT_EQ(groupsNamed("FinalDiscPlane").size(), 3u);
    EXPECT_EQ(ctx.state.F_h_lngMUSphere2 != 0, true);
    clickCorner(500, 0);
    const auto planes = groupsNamed("FinalDiscPlane");
    ASSERT_EQ(planes.size(), 4u);
    EXPECT_EQ(ctx.engine.group_get_father_group(planes.back()), ctx.state.F_h_lngAddedInfoGroup);
    EXPECT_GT(ctx.engine.group_get_number_of_polygons(planes.back()), 0);
    EXPECT_TRUE(groupsNamed("Sphere").empty());
}

TEST_F(BuildTest, EachMarkerSymbolIsPlacedAtThePick) {
    auto& f = form("frm10_SelectMarker");
    f.setFromUser("optNoDirectConnect", "1");
    f.setFromUser("optMarkerCentre", "1");
    const char* symbols[] = {"optSphere",        "optSphereCoordinates", "optCylinder",
                             "optCylSphere",     "optDirCylSphere",      "optCylDiamond",
                             "optDirCylDiamond", "optConeUpright"};
    const double spots[][2] = {{-500, -500}, {0, -500},   {500, -500}, {-500, 0},
                               {500, 0},     {-500, 500}, {0, 500},    {500, 500}};
    for (int i = 0; i < 8; ++i) {
        const char* symbol = symbols[i];
        SCOPED_TRACE(symbol);
        f.setFromUser(symbol, "1");
        const std::size_t before = ctx.state.F_h_lngAddedGroups.size();
        tools::toolButtonDown(ctx, "cmdCreateMarker", 2);
        ASSERT_TRUE(flag("bolMarker"));
        clickCorner(spots[i][0], spots[i][1]);
        EXPECT_FALSE(ctx.state.toolArmed());
        ASSERT_EQ(ctx.state.F_h_lngAddedGroups.size(), before + 1);
        const Handle g = ctx.state.F_h_lngAddedGroups.back();
        Point3 lo, hi;
        ASSERT_TRUE(ctx.engine.group_bounding_box(g, lo, hi));
        // Upright symbols stand over the point; every symbol reaches it.
        const Point3 c = corner(spots[i][0], spots[i][1]);
        if (std::string(symbol).find("Dir") == std::string::npos) {
            EXPECT_NEAR((lo.x + hi.x) / 2, c.x, 1.0) << lo.x << " " << hi.x;
            EXPECT_NEAR((lo.y + hi.y) / 2, c.y, 1.0) << lo.y << " " << hi.y;
        }
        EXPECT_LE(lo.z, c.z + 1e-6);
        EXPECT_GE(hi.z, c.z - 1e-6);
    }
    // The pointer takes two picks.
    f.setFromUser("optConePointer", "1");
    tools::toolButtonDown(ctx, "cmdCreateMarker", 2);
    clickCorner(0, 0);
    EXPECT_TRUE(flag("bolMarkerSecond"));
    click({485, -485, 1});  // the far corner of the square at (500, -500)
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_EQ(groupsNamed("8ConePolyGroup").size(), 1u);
}

TEST_F(BuildTest, PolygonsByHandAsAFan) {
    auto& f = form("frm24_Polygon");
    f.setFromUser("optPolyFan", "1");
    tools::toolButtonDown(ctx, "cmdBuildPoly", 2);
    ASSERT_TRUE(flag("bolPoly1"));
    clickCorner(0, 0);
    EXPECT_EQ(ctx.state.txtComment, "Select the second point of the polygon");
    clickCorner(500, 0);
    EXPECT_EQ(ctx.state.txtComment, "Select the second point of the fault plane");
    clickCorner(500, 500, 1);
    clickCorner(0, 500);  // fan: (0,0), (500,500), (0,500)
    EXPECT_FALSE(ctx.state.toolArmed());
    const auto polys = groupsNamed("3PointPolyGroup");
    ASSERT_EQ(polys.size(), 2u);
    const auto second = points(ctx.engine.group_get_first_polygon(polys[1]));
    ASSERT_EQ(second.size(), 3u);
    EXPECT_EQ(second[0], corner(0, 0));
    EXPECT_EQ(second[1], corner(500, 500));
    EXPECT_EQ(second[2], corner(0, 500));
    EXPECT_TRUE(groupsNamed("Sphere").empty());
}

TEST_F(BuildTest, PolygonsByHandAsAStripAndANewOne) {
    auto& f = form("frm24_Polygon");
    f.setFromUser("optPolyStrip", "1");
    tools::toolButtonDown(ctx, "cmdBuildPoly", 2);
    clickCorner(0, 0);
    clickCorner(500, 0);
    clickCorner(500, 500, 1);
    clickCorner(0, 500);  // strip: (500,0), (500,500), (0,500)
    auto polys = groupsNamed("3PointPolyGroup");
    ASSERT_EQ(polys.size(), 2u);
    EXPECT_EQ(points(ctx.engine.group_get_first_polygon(polys[1]))[0], corner(500, 0));

    f.setFromUser("optPolyNew", "1");
    tools::toolButtonDown(ctx, "cmdBuildPoly", 2);
    clickCorner(0, 0);
    clickCorner(500, 0);
    clickCorner(500, 500, 1);
    EXPECT_TRUE(flag("bolPoly1"));
    EXPECT_EQ(ctx.state.txtComment, "Select the first point of the next polygon");
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
}

TEST_F(BuildTest, PointMoveRebuildsTheTubeFromItsFixedEnd) {
    armExcavation("optLineCentre");
    clickCorner(-500, 0);
    clickCorner(0, 0);
    auto legs = groupsNamed("ExcPolyGroup");
    ASSERT_EQ(legs.size(), 1u);
    const Handle old = legs[0];

    tools::toolButtonDown(ctx, "cmdPointMove", 2);
    ASSERT_TRUE(flag("bolPointMove1"));
    EXPECT_EQ(main().text("cboSnapSelect1"), "Tube");
    EXPECT_EQ(main().text("cboSnapSelect2"), "Point");
    // Near the (0, 0) end: the (-500, 0) end stays.
    click(corner(0, 0) + Point3{-40, 0, 20});
    EXPECT_EQ(ctx.state.txtComment, "Select the second point of the excavation");
    main().setText("cboSnapSelect1", "Polygon");
    main().setText("cboSnapSelect2", "Point");
    clickCorner(0, 500);
    legs = groupsNamed("ExcPolyGroup");
    ASSERT_EQ(legs.size(), 1u);
    EXPECT_NE(legs[0], old);
    Point3 a, b;
    bool isTube = false;
    ASSERT_TRUE(builders::P_fncTubeCentreLine(
        ctx.engine, ctx.engine.group_get_first_polygon(legs[0]), a, b, isTube));
    EXPECT_LT(near(a, corner(-500, 0)), 1e-6);
    EXPECT_LT(near(b, corner(0, 500)), 1e-6);
    EXPECT_EQ(ctx.engine.entity_get_name(ctx.engine.group_get_first_polygon(legs[0])), "Drive 12");
    EXPECT_FALSE(ctx.state.toolArmed());
}

TEST_F(BuildTest, ADialogClosedByItsFrameArmsNothing) {
    ui.answerForm({"frm24_Polygon", ui::FormAction::Close, {}});
    const std::size_t groups = groupsNamed("AddedInfoGroup").size();
    run("cmdBuildPoly");
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_EQ(groupsNamed("AddedInfoGroup").size(), groups);
    EXPECT_TRUE(ctx.commands.find("cmdBuildPoly")->enabled);
}

}  // namespace

namespace {

TEST_F(BuildTest, ACancelledPointMoveLeavesTheTubeAsItWas) {
    armExcavation("optLineCentre");
    clickCorner(-500, 0);
    clickCorner(0, 0);
    const Handle tube = groupsNamed("ExcPolyGroup").at(0);
    const Handle side = ctx.engine.group_get_first_polygon(tube);
    const auto litBefore = ctx.engine.polygon_get_light(side);
    const int polygons = ctx.engine.group_get_number_of_polygons(tube);

    tools::toolButtonDown(ctx, "cmdPointMove", 2);
    click(corner(0, 0) + Point3{-40, 0, 20});
    ASSERT_TRUE(flag("bolPointMove2"));
    EXPECT_NE(ctx.state.F_h_lngMUSphere1, 0u);
    ui.answerMsgBox(ui::Answer::Cancel);
    clickPixel(400, 300, 0, 2);
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
    EXPECT_TRUE(groupsNamed("Sphere").empty());
    ASSERT_EQ(groupsNamed("ExcPolyGroup"), std::vector<Handle>{tube});
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(tube), polygons);
    EXPECT_EQ(ctx.engine.polygon_get_light(side).has_value(), litBefore.has_value());
    EXPECT_EQ(ctx.engine.polygon_get_translucent(side), 0);
}

}  // namespace
