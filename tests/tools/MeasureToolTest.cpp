// The measuring tool driven by clicks: the final line, the log, the chain with
// Shift, the question about the yellow line and the right button.
#include <cmath>

#include "ToolsFixture.h"
#include "forms/Frm08MoveCopyGroup.h"
#include "tools/ToolSession.h"

namespace {

using engine::Point3;
using toolstest::fixed;
using toolstest::ToolsTest;

class MeasureTest : public ToolsTest {
protected:
    void SetUp() override {
        ToolsTest::SetUp();
        const auto g = ctx.engine.group_create("Scene");
        square(0, 0, 0, 1000, g);         // the floor, corners at +-100 m
        square(-500, -500, 300, 100, g);  // a block top 30 m up, corners at -60 and -40 m
        main().setText("cboSnapSelect1", "Polygon");
        main().setText("cboSnapSelect2", "Point");
    }

    // The final line worked out from the two points alone (north along +y).
    static std::string expectedLine(Point3 a, Point3 b, double cumulative) {
        const Point3 d = b - a;
        const double len = engine::length(d), hor = std::hypot(d.x, d.y);
        const double dip = std::atan2(d.z, hor) * 180 / std::acos(-1.0);
        double dir = std::atan2(d.x, d.y) * 180 / std::acos(-1.0);
        if (dir < 0) dir += 360;
        return "Distance = " + fixed(len / 10, 2) + " m    [Dip = " + fixed(dip, 1) +
               "\u00B0:  Direction = " + fixed(dir, 1) + "\u00B0:  Hor.XY = " + fixed(hor / 10, 2) +
               " m:  Vert.Z = " + fixed(d.z / 10, 2) +
               " m]    CUM. DISTANCE = " + fixed(cumulative / 10, 2) + " m";
    }
};

TEST_F(MeasureTest, AKnownDistanceGivesTheLineTheLogAndANamedYellowLine) {
    run("cmd3DLength");
    EXPECT_EQ(ctx.state.txtComment, "Select the first point for the measuring");
    click({990, 990, 0});  // snaps to the floor's corner (1000, 1000, 0)
    EXPECT_EQ(ctx.state.txtComment, "Select the second point for the measuring");
    EXPECT_NE(ctx.state.F_h_lngMUSphere1, 0u);
    EXPECT_TRUE(ctx.state.bolRubberLine);
    ui.answerMsgBox(ui::Answer::No);
    click({-590, -590, 300});  // the block's corner (-600, -600, 300)

    const Point3 a{1000, 1000, 0}, b{-600, -600, 300};
    const std::string line = expectedLine(a, b, engine::length(b - a));
    EXPECT_EQ(ctx.state.txtComment, line);
    const std::string log = ctx.state.strCommentLog;
    ASSERT_GE(log.size(), line.size());
    EXPECT_EQ(log.substr(log.size() - line.size()), line);
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Delete the yellow markerline ?");
    EXPECT_EQ(boxes[0]["title"], line);
    // The tool has ended and left no temporary spheres.
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
    EXPECT_FALSE(ctx.state.bolRubberLine);
    // "No" keeps the yellow line, named with the line, under the added-information group.
    const auto cyl = groupsNamed("CylPolyGroup");
    ASSERT_EQ(cyl.size(), 1u);
    EXPECT_EQ(ctx.engine.group_get_father_group(cyl[0]), ctx.state.F_h_lngAddedInfoGroup);
    const auto first = ctx.engine.group_get_first_polygon(cyl[0]);
    EXPECT_EQ(ctx.engine.entity_get_name(first), line);
    EXPECT_EQ(ctx.engine.polygon_get_color(first), (engine::Rgb{255, 255, 0}));
}

TEST_F(MeasureTest, YesDeletesTheYellowLine) {
    run("cmd3DLength");
    click({990, 990, 0});
    ui.answerMsgBox(ui::Answer::Yes);
    click({990, -990, 0});
    EXPECT_TRUE(groupsNamed("CylPolyGroup").empty());
    EXPECT_NE(ctx.state.strCommentLog.find("CUM. DISTANCE = 200.00 m"), std::string::npos);
}

TEST_F(MeasureTest, ShiftChainsTheLegsAndAddsUpTheLength) {
    run("cmd3DLength");
    click({990, 990, 0});
    click({990, -990, 0}, 1);  // 200 m south
    const std::string& mid = ctx.state.txtComment;
    const std::string tail = " m.   Select the next point";
    ASSERT_GT(mid.size(), tail.size());
    EXPECT_EQ(mid.substr(mid.size() - tail.size()), tail);
    EXPECT_TRUE(flag("bolMeasure2"));
    EXPECT_NE(ctx.state.F_h_lngMUSphere2, 0u);
    ui.answerMsgBox(ui::Answer::No);
    click({-990, -990, 0});  // 200 m west
    EXPECT_EQ(ctx.state.txtComment, expectedLine({1000, -1000, 0}, {-1000, -1000, 0}, 4000));
    EXPECT_EQ(groupsNamed("CylPolyGroup").size(), 2u);
}

TEST_F(MeasureTest, AZeroLengthMeasureStillHasADirectionAndAsksNothing) {
    run("cmd3DLength");
    click({990, 990, 0});
    click({995, 985, 0});  // the same corner again
    const std::string& line = ctx.state.txtComment;
    EXPECT_EQ(line.rfind("Distance = 0.00 m    [Dip = ", 0), 0u) << line;
    EXPECT_NE(line.find("Direction = "), std::string::npos);
    EXPECT_EQ(line.find("nan"), std::string::npos);
    EXPECT_NE(line.find("CUM. DISTANCE = 0.00 m"), std::string::npos);
    EXPECT_TRUE(records("msgbox").empty());
}

TEST_F(MeasureTest, ARightClickOnTheSecondPointAsksBeforeAnythingIsLost) {
    run("cmd3DLength");
    click({990, 990, 0});
    ui.answerMsgBox(ui::Answer::OK);
    clickPixel(400, 300, 0, 2);
    EXPECT_TRUE(flag("bolMeasure2"));
    EXPECT_NE(ctx.state.F_h_lngMUSphere1, 0u);
    EXPECT_EQ(records("msgbox").back()["title"], "Right mouse button pressed");
    ui.answerMsgBox(ui::Answer::Cancel);
    clickPixel(400, 300, 0, 2);
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
    EXPECT_TRUE(groupsNamed("Sphere").empty());
    EXPECT_TRUE(groupsNamed("CylPolyGroup").empty());
}

TEST_F(MeasureTest, BothButtonsWithShiftFiveReset) {
    run("cmd3DLength");
    click({990, 990, 0});
    clickPixel(400, 300, 5, 3);
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
}

TEST_F(MeasureTest, TheOffsetVariantFillsTheMoveCopyDialog) {
    ui.answerForm({"frm08_MoveCopyGroup", ui::FormAction::Close, {}});
    auto& f = form("frm08_MoveCopyGroup");
    f.click("cmdPickOffset");
    ASSERT_TRUE(flag("bolPickOffset"));
    click({990, 990, 0});
    click({-590, -590, 300});
    EXPECT_EQ(f.text("cboXoffset"), "-160.00");
    EXPECT_EQ(f.text("cboYoffset"), "-160.00");
    EXPECT_EQ(f.text("cboZoffset"), "30.00");
    EXPECT_EQ(f.text("cboLength"), fixed(std::sqrt(1600.0 * 1600 * 2 + 300 * 300) / 10, 2));
    EXPECT_EQ(records("form").size(), 1u);
    EXPECT_TRUE(groupsNamed("CylPolyGroup").empty());
}

}  // namespace
