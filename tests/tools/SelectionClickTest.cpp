// Selection actions reached by real mouse clicks in the render window.

#include "tools/ToolsFixture.h"

namespace {

class SelectionClick : public toolstest::ToolsTest {
protected:
    void armOn(const char* command, const char* option) {
        ui.answerForm({"frm22_Selection", ui::FormAction::Accept, {{option, "1"}}});
        run(command);
    }
};

TEST_F(SelectionClick, DeleteEntityUnderTheMouse) {
    const engine::Handle left = ctx.engine.group_create("Left");
    const engine::Handle right = ctx.engine.group_create("Right");
    const engine::Handle a = square(-200, 0, 0, 50, left);
    const engine::Handle b = square(-200, 150, 0, 30, left);
    const engine::Handle c = square(200, 0, 0, 50, right);
    armOn("cmdDeleteGroup", "optEntity");
    click({-200, 0, 0});
    EXPECT_FALSE(ctx.engine.polygon_is_in_world(a));
    EXPECT_FALSE(ctx.engine.polygon_is_in_world(b));
    EXPECT_TRUE(ctx.engine.polygon_is_in_world(c));
    EXPECT_EQ(ctx.state.txtComment, "The number of deleted polygons is 2");
    EXPECT_FALSE(ctx.state.toolFlag("bolDeleteGroup"));
}

TEST_F(SelectionClick, HiddenPolygonsAreNotPickedSoTheClickMissesAndAsks) {
    const engine::Handle g = ctx.engine.group_create("G");
    const engine::Handle a = square(0, 0, 0, 50, g);
    armOn("cmdHideGroup", "optPolygon");
    click({0, 0, 0}, 1);
    EXPECT_TRUE(ctx.engine.polygon_is_disabled(a));
    ASSERT_TRUE(ctx.state.toolFlag("bolHideGroup"));
    ui.answerMsgBox(ui::Answer::Cancel);
    click({0, 0, 0});
    ASSERT_EQ(records("msgbox").size(), 1u);
    EXPECT_EQ(records("msgbox")[0].value("title", ""), "No polygon selected");
    EXPECT_FALSE(ctx.state.toolFlag("bolHideGroup"));
}

}  // namespace
