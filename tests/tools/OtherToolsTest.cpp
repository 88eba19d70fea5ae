// The smaller tools: rotation point, obtain colour, move and copy, and which
// mouse-ups the chain takes.
#include "ToolsFixture.h"
#include "tools/Dispatcher.h"
#include "tools/ToolButtons.h"

namespace {

using engine::Handle;
using engine::Point3;
using toolstest::near;
using toolstest::ToolsTest;

class OtherTest : public ToolsTest {
protected:
    Handle block = 0, blockGroup = 0;
    void SetUp() override {
        ToolsTest::SetUp();
        const auto g = ctx.engine.group_create("Scene");
        square(0, 0, 0, 1000, g);
        blockGroup = ctx.engine.group_create("Block");
        block = square(300, 200, 100, 50, blockGroup, "", {12, 34, 56});
    }
};

TEST_F(OtherTest, NewRotationPointTakesTheSnappedPoint) {
    main().setText("cboSnapSelect1", "Polygon");
    main().setText("cboSnapSelect2", "Centre");
    run("cmdNewRotationPoint");
    EXPECT_FALSE(ctx.commands.find("cmdNewRotationPoint")->enabled);
    click({310, 190, 100});
    EXPECT_LT(near(ctx.state.dblRotationCentre, {300, 200, 100}), 1e-9);
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_TRUE(ctx.commands.find("cmdNewRotationPoint")->enabled);
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(OtherTest, ObtainColourWritesTheChannelsAndOffersTheColour) {
    run("mnuObtainPolygonColour");
    ui.answerColour(std::nullopt);
    click({300, 200, 100});
    EXPECT_EQ(ctx.state.txtComment, "Red: 12  Green: 34  Blue: 56");
    EXPECT_EQ(records("colour").size(), 1u);
    EXPECT_FALSE(ctx.state.toolArmed());
}

TEST_F(OtherTest, MoveAndCopyByTheTypedOffset) {
    ui.answerForm(
        {"frm08_MoveCopyGroup",
         ui::FormAction::Accept,
         {{"cboXoffset", "10"}, {"cboYoffset", "-5"}, {"cboZoffset", "2.5"}, {"optCopy", "1"}}});
    run("cmdMoveCopyGroup");
    ASSERT_TRUE(flag("bolCopySelect"));
    click({300, 200, 100});
    EXPECT_FALSE(ctx.state.toolArmed());
    // The original stays; the copy stands 10 m east, 5 m south and 2.5 m up.
    EXPECT_LT(near(ctx.engine.polygon_get_center(block), {300, 200, 100}), 1e-9);
    const auto blocks = groupsNamed("Block");
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_LT(near(ctx.engine.group_get_center_of_mass(blocks[1]), {400, 150, 125}), 1e-9);
}

TEST_F(OtherTest, MoveCopyWithoutAChoiceIsRefused) {
    auto& f = form("frm08_MoveCopyGroup");
    f.click("cmdOK");
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Make a selection to either Move or Copy an object");
    EXPECT_FALSE(ctx.state.toolArmed());
}

TEST_F(OtherTest, CtrlClicksAndIdleClicksGoToTheNavigation) {
    EXPECT_FALSE(tools::toolTakesMouseUp(ctx, 1, 0));  // nothing armed
    EXPECT_TRUE(tools::toolTakesMouseUp(ctx, 3, 5));   // the reset always
    run("cmd3DLength");
    EXPECT_TRUE(tools::toolTakesMouseUp(ctx, 1, 0));
    EXPECT_TRUE(tools::toolTakesMouseUp(ctx, 1, 1));
    EXPECT_FALSE(tools::toolTakesMouseUp(ctx, 1, 2));
    // A Ctrl click takes no point.
    click({300, 200, 100}, 2);
    EXPECT_TRUE(flag("bolMeasure1"));
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
}

TEST_F(OtherTest, TheHourglassBlocksArmingAndClicks) {
    ctx.pointer(11);
    run("cmd3DLength");
    EXPECT_FALSE(ctx.state.toolArmed());
    ctx.pointer(1);
    run("cmd3DLength");
    ctx.pointer(11);
    click({300, 200, 100});
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
    EXPECT_TRUE(flag("bolMeasure1"));
}

TEST_F(OtherTest, TheRubberLineFollowsThePointer) {
    run("cmd3DLength");
    click({300, 200, 100});
    ASSERT_TRUE(ctx.state.bolRubberLine);
    double x = 0, y = 0;
    pixel({0, 0, 100}, x, y);
    ctx.input.onMouseMove(ctx, 0, 0, x, y);
    // On the plane square to the view through the first point: level here.
    EXPECT_NEAR(ctx.state.rubberTo.z, ctx.state.rubberFrom.z, 1.0);
    EXPECT_NE(ctx.state.F_h_lngRubberLine, 0u);
}

}  // namespace
