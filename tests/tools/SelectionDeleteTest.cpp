// Delete by each scope, the added-groups list, the backup and the miss question.

#include <filesystem>

#include "core/MainForm.h"
#include "persistence/Backup.h"
#include "tools/SelectionTestFixture.h"

namespace selectiontest {
namespace {

class SelectionDelete : public SelectionApp {};

TEST_F(SelectionDelete, PolygonScopeTakesOnlyTheClickedPolygonAndEndsTheTool) {
    const Handle e = group("E");
    const Handle a = tri(e), b = tri(e);
    arm("cmdDeleteGroup", "optPolygon");
    ASSERT_TRUE(armed("bolDeleteGroup"));
    EXPECT_FALSE(ctx.commands.find("cmdDeleteGroup")->enabled);

    click(a);
    EXPECT_FALSE(alive(a));
    EXPECT_TRUE(alive(b));
    EXPECT_EQ(comment(), "The number of deleted polygons is 1");
    EXPECT_FALSE(armed("bolDeleteGroup"));
    EXPECT_TRUE(ctx.commands.find("cmdDeleteGroup")->enabled);
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(SelectionDelete, ShiftOneKeepsTheToolForTheNextClick) {
    const Handle e = group("E");
    const Handle a = tri(e), b = tri(e), c = tri(e);
    arm("cmdDeleteGroup", "optPolygon");
    click(a, 1);
    EXPECT_TRUE(armed("bolDeleteGroup"));
    EXPECT_EQ(ui.pointer(), 14);
    click(b, 0);
    EXPECT_FALSE(armed("bolDeleteGroup"));
    EXPECT_FALSE(alive(a));
    EXPECT_FALSE(alive(b));
    EXPECT_TRUE(alive(c));
}

TEST_F(SelectionDelete, EntityScopeTakesTheWholeEntityAndItsGroup) {
    const Handle father = group("F");
    const Handle e1 = group("E1", father), e2 = group("E2", father);
    const Handle a = tri(e1), b = tri(e1), c = tri(e2);
    arm("cmdDeleteGroup", "optEntity");
    click(b);
    EXPECT_FALSE(alive(a));
    EXPECT_FALSE(alive(b));
    EXPECT_TRUE(alive(c));
    EXPECT_FALSE(ctx.engine.group_is_group(e1));
    EXPECT_TRUE(ctx.engine.group_is_group(father));
    EXPECT_EQ(comment(), "The number of deleted polygons is 2");
}

TEST_F(SelectionDelete, GroupScopeTakesTheFatherWithAllItsEntities) {
    const Handle father = group("F");
    const Handle e1 = group("E1", father), e2 = group("E2", father);
    const Handle other = group("Other");
    const Handle a = tri(e1), b = tri(e2), c = tri(e2), d = tri(other);
    arm("cmdDeleteGroup", "optGroup");
    click(a);
    for (Handle p : {a, b, c}) EXPECT_FALSE(alive(p));
    EXPECT_TRUE(alive(d));
    EXPECT_FALSE(ctx.engine.group_is_group(father));
    EXPECT_EQ(comment(), "The number of deleted polygons is 3");
}

TEST_F(SelectionDelete, GroupScopeOnAnEntityWithoutFatherDoesNothingAndStaysArmed) {
    const Handle lone = group("Lone");
    const Handle a = tri(lone), b = tri(lone);
    arm("cmdDeleteGroup", "optGroup");
    const std::string before = comment();
    click(a);
    EXPECT_TRUE(alive(a));
    EXPECT_TRUE(alive(b));
    EXPECT_TRUE(armed("bolDeleteGroup"));
    EXPECT_EQ(ui.pointer(), 14);
    EXPECT_EQ(comment(), before);
}

TEST_F(SelectionDelete, FileScopeTakesTheTopmostGroupOfTheChain) {
    const Handle level = group("Level");
    const Handle stope = group("Stope", level);
    const Handle drive = group("Drive", stope);
    const Handle side = group("Side", level);
    const Handle apart = group("Apart");
    const Handle a = tri(drive), b = tri(stope), c = tri(level), d = tri(side), keep = tri(apart);
    arm("cmdDeleteGroup", "optFile");
    click(a);
    for (Handle p : {a, b, c, d}) EXPECT_FALSE(alive(p));
    EXPECT_TRUE(alive(keep));
    EXPECT_FALSE(ctx.engine.group_is_group(level));
    EXPECT_EQ(comment(), "The number of deleted polygons is 4");
}

TEST_F(SelectionDelete, ColourScopeLeavesDisabledPolygonsOfThatColour) {
    const Rgb red{250, 10, 10}, nearRed{250, 10, 11};
    const Handle g1 = group("G1"), g2 = group("G2");
    const Handle r1 = tri(g1, red), r2 = tri(g2, red), r3 = tri(g2, red);
    const Handle hidden = tri(g1, red), other = tri(g1, nearRed);
    ctx.engine.polygon_disable(hidden);
    arm("cmdDeleteGroup", "optColour");
    click(r2);
    for (Handle p : {r1, r2, r3}) EXPECT_FALSE(alive(p));
    EXPECT_TRUE(alive(hidden));
    EXPECT_TRUE(alive(other));
    EXPECT_EQ(comment(), "The number of deleted polygons is 3");
}

TEST_F(SelectionDelete, VisibleTakesEveryEnabledPolygonWithNoFurtherQuestion) {
    const Handle g = group("G");
    const Handle a = tri(g), b = tri(g), hidden = tri(g);
    ctx.engine.polygon_disable(hidden);
    arm("cmdDeleteGroup", "optVisible");
    const std::size_t boxes = ui.transcript().size();
    click(a);
    EXPECT_FALSE(alive(a));
    EXPECT_FALSE(alive(b));
    EXPECT_TRUE(alive(hidden));
    EXPECT_EQ(polygons(), 1u);
    for (std::size_t i = boxes; i < ui.transcript().size(); ++i)
        EXPECT_NE(nlohmann::json::parse(ui.transcript()[i]).value("kind", ""), "msgbox");
}

TEST_F(SelectionDelete, InvisibleActsOnAClickThatMetNothing) {
    const Handle g = group("G");
    const Handle shown = tri(g), h1 = tri(g), h2 = tri(g);
    ctx.engine.polygon_disable(h1);
    ctx.engine.polygon_disable(h2);
    arm("cmdDeleteGroup", "optInvisible");
    click(0);
    EXPECT_TRUE(alive(shown));
    EXPECT_FALSE(alive(h1));
    EXPECT_FALSE(alive(h2));
    EXPECT_EQ(comment(), "The number of deleted polygons is 2");
}

TEST_F(SelectionDelete, DataTypeTakesNamesOfTheSameRecordCode) {
    const Handle g = group("G");
    const Handle a = tri(g, {1, 1, 1}, "CM_DHAtr\t1\t2"), b = tri(g, {2, 2, 2}, "CM_DHAtr\t7");
    const Handle c = tri(g, {3, 3, 3}, "CM_PPVel\t1"), d = tri(g, {4, 4, 4}, "UP_SEvnt\r\nx");
    arm("cmdDeleteGroup", "optDataTypeSelection");
    click(b);
    EXPECT_FALSE(alive(a));
    EXPECT_FALSE(alive(b));
    EXPECT_TRUE(alive(c));
    EXPECT_TRUE(alive(d));
}

TEST_F(SelectionDelete, DeletedEntitiesLeaveTheAddedListInOrder) {
    const Handle father = group("AddedInfoGroup");
    const Handle e1 = group("E1", father), e2 = group("E2", father);
    const Handle e3 = group("E3"), e4 = group("E4");
    tri(e1);
    tri(e2);
    const Handle p3 = tri(e3);
    tri(e4);
    ctx.state.F_h_lngAddedGroups = {e1, e3, e2, e4};
    arm("cmdDeleteGroup", "optEntity");
    click(p3, 1);
    EXPECT_EQ(ctx.state.F_h_lngAddedGroups, (std::vector<Handle>{e1, e2, e4}));

    // The father's tree goes at once: both of its entities leave the list.
    ui::FormAnswer groupScope{
        forms::Frm22Selection::kName, ui::FormAction::Accept, {{"optGroup", "1"}}};
    ui.answerForm(groupScope);
    run("cmdDeleteGroup");
    click(ctx.engine.group_get_first_polygon(e2));
    EXPECT_EQ(ctx.state.F_h_lngAddedGroups, (std::vector<Handle>{e4}));
}

TEST_F(SelectionDelete, BackupAskedHoldsTheSceneBeforeTheDelete) {
    const Handle g = group("G");
    const Handle a = tri(g);
    tri(g);
    tri(g);
    const auto file = std::filesystem::path(persistence::backupPath(ctx, "TarvikBackup.STATE"));
    ASSERT_FALSE(std::filesystem::exists(file));
    arm("cmdDeleteGroup", "optEntity", {{"chkBackup", "1"}});
    click(a);
    EXPECT_EQ(polygons(), 0u);
    ASSERT_TRUE(std::filesystem::exists(file));
    ASSERT_TRUE(persistence::p_subRestore(ctx, "TarvikBackup.STATE"));
    EXPECT_EQ(polygons(), 3u);
}

TEST_F(SelectionDelete, NoBackupUnlessAsked) {
    const Handle a = tri(group("G"));
    arm("cmdDeleteGroup", "optPolygon");
    click(a);
    EXPECT_FALSE(std::filesystem::exists(persistence::backupPath(ctx, "TarvikBackup.STATE")));
}

TEST_F(SelectionDelete, AMissAsksAndOkKeepsTheToolCancelEndsIt) {
    const Handle a = tri(group("G"));
    arm("cmdDeleteGroup", "optEntity");
    ui.answerMsgBox(ui::Answer::OK);
    click(0);
    EXPECT_TRUE(armed("bolDeleteGroup"));
    EXPECT_TRUE(alive(a));
    ui.answerMsgBox(ui::Answer::Cancel);
    click(0);
    EXPECT_FALSE(armed("bolDeleteGroup"));
    EXPECT_TRUE(ctx.commands.find("cmdDeleteGroup")->enabled);
    std::vector<std::string> texts;
    for (const auto& line : ui.transcript()) {
        auto j = nlohmann::json::parse(line);
        if (j.value("kind", "") == "msgbox")
            texts.push_back(j.value("title", "") + "|" + j.value("text", ""));
    }
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0], std::string(tools::kNoPolygonTitle) + "|" + tools::kNoPolygonText);
}

TEST_F(SelectionDelete, ClosingTheDialogByItsFrameArmsNothing) {
    ui::FormAnswer close{forms::Frm22Selection::kName, ui::FormAction::Close, {}};
    ui.answerForm(close);
    run("cmdDeleteGroup");
    EXPECT_FALSE(armed("bolDeleteGroup"));
    EXPECT_FALSE(ctx.state.bolDialogCancelled);
    EXPECT_TRUE(ctx.commands.find("cmdDeleteGroup")->enabled);
}

TEST_F(SelectionDelete, RightPressTakesTheLastScopeWithoutTheDialog) {
    const Handle father = group("F");
    const Handle a = tri(group("E1", father)), b = tri(group("E2", father));
    arm("cmdDeleteGroup", "optGroup");
    core::p_subResetAndCleanup(ctx);
    ASSERT_FALSE(armed("bolDeleteGroup"));
    const core::Procedure* press = ctx.procedures.find("cmdDeleteGroup_MouseDown");
    ASSERT_NE(press, nullptr);
    std::vector<core::Value> args{core::Value(2), core::Value(0)};
    press->body(ctx, args);  // no form answer queued: a dialog would fail the test
    EXPECT_TRUE(armed("bolDeleteGroup"));
    click(a);
    EXPECT_FALSE(alive(b));
}

}  // namespace
}  // namespace selectiontest
