// The grid plane: its line positions, the geometry it builds and the dialog's road
// from the button, including a centre picked in the window.
#include <algorithm>

#include "ToolsFixture.h"
#include "tools/ExtraTools.h"

namespace {

using engine::Handle;
using engine::Point3;
using forms::GridOrientation;
using toolstest::near;
using toolstest::ToolsTest;

TEST(GridLines, RunThroughTheCentreOutToTheBorder) {
    EXPECT_EQ(tools::gridLineOffsets(100, 20), (std::vector<double>{-40, -20, 0, 20, 40}));
    // A spacing that divides the half size puts lines on both borders.
    EXPECT_EQ(tools::gridLineOffsets(100, 25), (std::vector<double>{-50, -25, 0, 25, 50}));
    // Wider than the half size: the centre line alone.
    EXPECT_EQ(tools::gridLineOffsets(10, 30), (std::vector<double>{0}));
    // 0.3 / 0.1 is 2.9999... in doubles: the border line still counts.
    EXPECT_EQ(tools::gridLineOffsets(0.6, 0.1).size(), 7u);
}

TEST(GridLines, BadSizesGiveNoLines) {
    EXPECT_TRUE(tools::gridLineOffsets(0, 10).empty());
    EXPECT_TRUE(tools::gridLineOffsets(100, 0).empty());
    EXPECT_TRUE(tools::gridLineOffsets(100, -5).empty());
    EXPECT_TRUE(tools::gridLineOffsets(std::nan(""), 5).empty());
    EXPECT_TRUE(tools::gridLineOffsets(100, std::numeric_limits<double>::infinity()).empty());
    // Far too fine a grid is refused rather than built.
    EXPECT_TRUE(tools::gridLineOffsets(1e6, 1).empty());
}

TEST(GridLines, ContrastWithThePlane) {
    EXPECT_EQ(tools::gridLineColour({246, 246, 246}), (engine::Rgb{0, 0, 0}));
    EXPECT_EQ(tools::gridLineColour({20, 20, 20}), (engine::Rgb{255, 255, 255}));
    // Pure blue is dark, pure green light.
    EXPECT_EQ(tools::gridLineColour({0, 0, 255}), (engine::Rgb{255, 255, 255}));
    EXPECT_EQ(tools::gridLineColour({0, 255, 0}), (engine::Rgb{0, 0, 0}));
}

class GridPlaneTest : public ToolsTest {
protected:
    std::vector<Handle> polygonsOf(Handle g) {
        std::vector<Handle> out;
        for (Handle p = ctx.engine.group_get_first_polygon(g); p != 0;
             p = ctx.engine.group_get_next_polygon(g, p))
            out.push_back(p);
        return out;
    }
    Point3 normalOf(Handle p) {
        engine::Plane pl;
        EXPECT_EQ(ctx.engine.polygon_get_plane(p, pl), 0);
        return pl.n;
    }
    void answerGrid(std::vector<std::pair<std::string, std::string>> controls,
                    ui::FormAction how = ui::FormAction::Accept) {
        ui.answerForm({"frm07_GridPlane", how, std::move(controls)});
    }
};

TEST_F(GridPlaneTest, HorizontalPlaneHasTwoFacesAndLinesOnBoth) {
    tools::GridPlaneRequest q;
    q.centre = {100, -50, 30};
    q.length = 1000;
    q.width = 600;
    q.spacing = 200;
    q.colour = {246, 246, 246};
    const Handle g = tools::buildGridPlane(ctx.engine, q);
    ASSERT_NE(g, 0u);
    EXPECT_EQ(ctx.engine.entity_get_name(g), "GridPlaneGroup");
    const auto ps = polygonsOf(g);
    // 5 lines across the length, 3 across the width, each on both sides, and the pair.
    ASSERT_EQ(ps.size(), 2u + 2u * (5u + 3u));
    EXPECT_LT(near(normalOf(ps[0]), {0, 0, 1}), 1e-12);
    EXPECT_LT(near(normalOf(ps[1]), {0, 0, -1}), 1e-12);
    EXPECT_EQ(ctx.engine.polygon_get_color(ps[0]), q.colour);
    int up = 0, down = 0;
    for (std::size_t i = 2; i < ps.size(); ++i) {
        EXPECT_EQ(ctx.engine.polygon_get_color(ps[i]), (engine::Rgb{0, 0, 0}));
        const double z = ctx.engine.polygon_get_center(ps[i]).z;
        // Each line lies just off the face it is seen from.
        if (normalOf(ps[i]).z > 0.99 && z > 30) ++up;
        if (normalOf(ps[i]).z < -0.99 && z < 30) ++down;
    }
    EXPECT_EQ(up, 8);
    EXPECT_EQ(down, 8);
    Point3 lo, hi;
    ASSERT_TRUE(ctx.engine.group_bounding_box(g, lo, hi));
    EXPECT_LT(near(lo, {-400, -350, 30 - 0.6}), 1e-9);
    EXPECT_LT(near(hi, {600, 250, 30 + 0.6}), 1e-9);
}

TEST_F(GridPlaneTest, VerticalPlanesStandAcrossTheirAxis) {
    tools::GridPlaneRequest q;
    q.centre = {0, 0, 0};
    q.length = 100;
    q.width = 40;
    q.spacing = 50;
    q.orientation = GridOrientation::VerticalEastWest;
    Handle g = tools::buildGridPlane(ctx.engine, q);
    ASSERT_NE(g, 0u);
    Point3 lo, hi;
    ASSERT_TRUE(ctx.engine.group_bounding_box(g, lo, hi));
    EXPECT_NEAR(hi.x - lo.x, 100, 1e-9);
    EXPECT_NEAR(hi.z - lo.z, 40, 1e-9);
    EXPECT_NEAR(std::abs(normalOf(polygonsOf(g)[0]).y), 1.0, 1e-12);

    q.orientation = GridOrientation::VerticalNorthSouth;
    g = tools::buildGridPlane(ctx.engine, q);
    ASSERT_TRUE(ctx.engine.group_bounding_box(g, lo, hi));
    EXPECT_NEAR(hi.y - lo.y, 100, 1e-9);
    EXPECT_NEAR(hi.z - lo.z, 40, 1e-9);
    EXPECT_NEAR(std::abs(normalOf(polygonsOf(g)[0]).x), 1.0, 1e-12);
}

TEST_F(GridPlaneTest, ABadRequestLeavesNothing) {
    const std::size_t before = ctx.engine.polygon_count();
    tools::GridPlaneRequest q;
    q.centre = {0, 0, std::nan("")};
    q.length = q.width = q.spacing = 10;
    EXPECT_EQ(tools::buildGridPlane(ctx.engine, q), 0u);
    q.centre = {0, 0, 0};
    q.spacing = 0;
    EXPECT_EQ(tools::buildGridPlane(ctx.engine, q), 0u);
    EXPECT_EQ(ctx.engine.polygon_count(), before);
    EXPECT_TRUE(groupsNamed("GridPlaneGroup").empty());
}

TEST_F(GridPlaneTest, TheButtonBuildsFromTheDialogInMetres) {
    answerGrid({{"txtCentreX", "10"},
                {"txtCentreY", "20"},
                {"txtCentreZ", "5"},
                {"cboPlaneLength", "100"},
                {"cboPlaneWidth", "60"},
                {"cboGridSpacing", "20"},
                {"cboPlaneColour", "Blue"}});
    run("cmdGridPlane");
    const auto comments = records("comment");
    EXPECT_TRUE(std::any_of(comments.begin(), comments.end(), [](const nlohmann::json& j) {
        return j["text"] == "Fill in the plane centre, dimensions, grid spacing and plane colour";
    }));
    const auto grids = groupsNamed("GridPlaneGroup");
    ASSERT_EQ(grids.size(), 1u);
    const Handle g = grids[0];
    EXPECT_LT(near(ctx.engine.group_get_center_of_mass(g), {100, 200, 50}), 1e-9);
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(g), 2 + 2 * (5 + 3));
    const Handle father = ctx.engine.group_get_father_group(g);
    EXPECT_EQ(ctx.engine.entity_get_name(father), "AddedInfoGroup");
    EXPECT_EQ(ctx.state.F_h_lngAddedGroups.back(), g);
    const Handle plane = ctx.engine.group_get_first_polygon(g);
    EXPECT_EQ(ctx.engine.polygon_get_color(plane), (engine::Rgb{9, 9, 246}));
    EXPECT_EQ(ctx.engine.entity_get_name(plane),
              "Grid plane\r\nCentre (m): 10, 20, 5\r\nGrid spacing (m): 20");
    EXPECT_EQ(ctx.state.txtComment, "Grid plane built: 100 m by 60 m, grid spacing 20 m");
    EXPECT_FALSE(ctx.state.toolArmed());
}

TEST_F(GridPlaneTest, TheCoordinateOffsetIsAddedBack) {
    ctx.state.dblCoordOffset = {1000, 2000, 0};
    answerGrid({{"txtCentreX", "1"}, {"txtCentreY", "2"}, {"txtCentreZ", "3"}});
    run("cmdGridPlane");
    const auto grids = groupsNamed("GridPlaneGroup");
    ASSERT_EQ(grids.size(), 1u);
    EXPECT_LT(near(ctx.engine.group_get_center_of_mass(grids[0]), {1010, 2020, 30}), 1e-9);
}

TEST_F(GridPlaneTest, AZeroSpacingIsRefusedAndTheDialogStays) {
    answerGrid({{"cboGridSpacing", "0"}});
    answerGrid({}, ui::FormAction::Close);
    run("cmdGridPlane");
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "A blank or zero value as a dimension is unacceptable");
    EXPECT_EQ(records("form").size(), 2u);
    EXPECT_TRUE(groupsNamed("GridPlaneGroup").empty());
}

TEST_F(GridPlaneTest, ABlankCentreIsRefused) {
    answerGrid({{"txtCentreY", " "}});
    answerGrid({}, ui::FormAction::Close);
    run("cmdGridPlane");
    ASSERT_EQ(records("msgbox").size(), 1u);
    EXPECT_EQ(records("msgbox")[0]["text"], "Fill in all the relevant information");
    EXPECT_TRUE(groupsNamed("GridPlaneGroup").empty());
}

TEST_F(GridPlaneTest, ThePickedCentreComesBackIntoTheDialog) {
    const Handle floor = ctx.engine.group_create("Floor");
    square(0, 0, 100, 1000, floor);
    main().setText("cboSnapSelect1", "Polygon");
    main().setText("cboSnapSelect2", "Surface");
    answerGrid({{"cmdPickCentre", "1"}}, ui::FormAction::Close);
    run("cmdGridPlane");
    ASSERT_TRUE(flag("bolGridCentre"));
    EXPECT_EQ(ctx.state.txtComment, "Select the centre of the grid plane");
    EXPECT_EQ(ui.pointer(), 14);
    EXPECT_TRUE(groupsNamed("GridPlaneGroup").empty());

    answerGrid({{"cboPlaneLength", "50"}, {"cboPlaneWidth", "50"}, {"cboGridSpacing", "10"}});
    click({300, 200, 100});
    EXPECT_FALSE(ctx.state.toolArmed());
    auto& f = form("frm07_GridPlane");
    EXPECT_NEAR(std::stod(f.text("txtCentreX")), 30, 1e-6);
    EXPECT_NEAR(std::stod(f.text("txtCentreY")), 20, 1e-6);
    EXPECT_NEAR(std::stod(f.text("txtCentreZ")), 10, 1e-6);
    const auto grids = groupsNamed("GridPlaneGroup");
    ASSERT_EQ(grids.size(), 1u);
    EXPECT_LT(near(ctx.engine.group_get_center_of_mass(grids[0]), {300, 200, 100}), 1e-4);
}

}  // namespace
