// Hide and unhide, partial hide and unhide, colour, name, and the dialog's offers.

#include "core/NameRecords.h"
#include "tools/SelectionTestFixture.h"

namespace selectiontest {
namespace {

class SelectionActions : public SelectionApp {};

TEST_F(SelectionActions, DialogOffersTheScopesOfEachAction) {
    auto& form = forms::Frm22Selection::of(ctx);
    using A = forms::Frm22Selection::Action;
    form.P_subPrepare(A::Hide);
    EXPECT_TRUE(form.offers("optEntity"));
    EXPECT_TRUE(form.offers("optColour"));
    for (const char* no : {"optVisible", "optInvisible", "optDataTypeSelection"})
        EXPECT_FALSE(form.offers(no)) << no;
    EXPECT_FALSE(form.at("fraTransLevel").visible);

    form.P_subPrepare(A::PartialHide);
    EXPECT_TRUE(form.offers("optVisible"));
    EXPECT_FALSE(form.offers("optInvisible"));
    EXPECT_FALSE(form.offers("optDataTypeSelection"));
    EXPECT_TRUE(form.at("fraTransLevel").visible);
    EXPECT_TRUE(form.at("sliTransLevel").visible);

    form.P_subPrepare(A::Delete);
    for (const char* yes : {"optVisible", "optInvisible", "optDataTypeSelection", "optFile"})
        EXPECT_TRUE(form.offers(yes)) << yes;
    EXPECT_FALSE(form.at("lblMore").visible);
}

TEST_F(SelectionActions, AScopeTheActionLacksGivesWayToTheFirstOffered) {
    auto& form = forms::Frm22Selection::of(ctx);
    form.P_subPrepare(forms::Frm22Selection::Action::Delete);
    form.setOption("optVisible");
    form.P_subPrepare(forms::Frm22Selection::Action::Hide);
    EXPECT_EQ(form.selectedScope(), "Entity");
    // Ticked from code behind the dialog's back, the reader still refuses it.
    form.setOption("optInvisible");
    form.P_subSelectAccept(false);
    EXPECT_EQ(forms::selectionScopeBox(ctx).text, "Entity");
}

TEST_F(SelectionActions, HideDisablesWithoutDeletingAndUnhideBringsAllBack) {
    const Handle father = group("F");
    const Handle e1 = group("E1", father), e2 = group("E2", father);
    const Handle a = tri(e1), b = tri(e1), c = tri(e2), d = tri(group("Apart"));
    arm("cmdHideGroup", "optGroup");
    click(a);
    for (Handle p : {a, b, c}) {
        EXPECT_TRUE(alive(p));
        EXPECT_TRUE(ctx.engine.polygon_is_disabled(p));
    }
    EXPECT_FALSE(ctx.engine.polygon_is_disabled(d));
    EXPECT_EQ(comment(), "The number of hidden polygons is 3");
    EXPECT_FALSE(armed("bolHideGroup"));

    run("cmdUnhide");
    for (Handle p : {a, b, c, d}) EXPECT_FALSE(ctx.engine.polygon_is_disabled(p));
    EXPECT_EQ(comment(), "The number of polygons made visible is 3");
}

TEST_F(SelectionActions, ShiftedUnhideShowsOnlyTheHiddenPartsOfTheClickedEntity) {
    const Handle e1 = group("E1"), e2 = group("E2");
    const Handle a = tri(e1), hiddenA = tri(e1), hiddenB = tri(e2);
    ctx.engine.polygon_disable(hiddenA);
    ctx.engine.polygon_disable(hiddenB);
    ui::FormAnswer entity{
        forms::Frm22Selection::kName, ui::FormAction::Accept, {{"optEntity", "1"}}};
    ui.answerForm(entity);
    const core::Procedure* press = ctx.procedures.find("cmdUnhide_MouseDown");
    ASSERT_NE(press, nullptr);
    std::vector<core::Value> args{core::Value(1), core::Value(1)};
    press->body(ctx, args);
    ASSERT_TRUE(armed("bolUnhideGroup"));
    click(a);
    EXPECT_FALSE(ctx.engine.polygon_is_disabled(hiddenA));
    EXPECT_TRUE(ctx.engine.polygon_is_disabled(hiddenB));
    EXPECT_EQ(comment(), "The number of polygons made visible is 1");
}

TEST_F(SelectionActions, UnhideByColourLooksAmongTheHiddenPolygons) {
    const Handle g = group("G");
    const Handle clicked = tri(g, {5, 6, 7}), same = tri(g, {5, 6, 7}), other = tri(g, {7, 6, 5});
    ctx.engine.polygon_disable(same);
    ctx.engine.polygon_disable(other);
    ui::FormAnswer colour{
        forms::Frm22Selection::kName, ui::FormAction::Accept, {{"optColour", "1"}}};
    ui.answerForm(colour);
    tools::cmdUnhide(ctx, 1);
    click(clicked);
    EXPECT_FALSE(ctx.engine.polygon_is_disabled(same));
    EXPECT_TRUE(ctx.engine.polygon_is_disabled(other));
    EXPECT_EQ(comment(), "The number of polygons made visible is 1");
}

TEST_F(SelectionActions, PartialHideSetsTheLevelAndKeepsTheList) {
    const Handle e = group("E");
    const Handle a = tri(e), b = tri(e), c = tri(group("Other"));
    arm("cmdPartialHideGroup", "optEntity", {{"sliTransLevel", "30"}});
    click(a);
    EXPECT_EQ(ctx.engine.polygon_get_translucent(a), 30);
    EXPECT_EQ(ctx.engine.polygon_get_translucent(b), 30);
    EXPECT_EQ(ctx.engine.polygon_get_translucent(c), 0);
    EXPECT_EQ(ctx.state.intTranslucentCount, 2);
    EXPECT_FALSE(ctx.engine.polygon_is_disabled(a));

    // Hiding them again does not count them twice.
    arm("cmdPartialHideGroup", "optEntity");
    click(b);
    EXPECT_EQ(ctx.state.intTranslucentCount, 2);

    arm("cmdPartialUnhideGroup", "optPolygon");
    click(a);
    EXPECT_EQ(ctx.engine.polygon_get_translucent(a), 0);
    EXPECT_EQ(ctx.engine.polygon_get_translucent(b), 30);
    EXPECT_EQ(ctx.state.intTranslucentCount, 1);
    EXPECT_EQ(forms::Frm22Selection::of(ctx).translucentPolygons, std::vector<Handle>{b});
}

TEST_F(SelectionActions, ShiftedPartialUnhideMakesAllOpaqueWithoutArming) {
    const Handle g = group("G");
    const Handle a = tri(g), b = tri(g);
    arm("cmdPartialHideGroup", "optVisible");
    click(a);
    ASSERT_EQ(ctx.state.intTranslucentCount, 2);
    // Translucent by other means too: every polygon comes back opaque.
    const Handle c = tri(g);
    ctx.engine.polygon_set_translucent(c, 5);
    std::vector<core::Value> args{core::Value(1), core::Value(1)};
    ctx.procedures.find("cmdPartialUnhideGroup_MouseDown")->body(ctx, args);
    for (Handle p : {a, b, c}) EXPECT_EQ(ctx.engine.polygon_get_translucent(p), 0);
    EXPECT_EQ(ctx.state.intTranslucentCount, 0);
    EXPECT_TRUE(forms::Frm22Selection::of(ctx).translucentPolygons.empty());
    EXPECT_FALSE(armed("bolPartialUnhideGroup"));
}

TEST_F(SelectionActions, ChangeColourTakesTheDialogColourAndARightPressTheLast) {
    const Handle e = group("E");
    const Handle a = tri(e), b = tri(e), c = tri(group("Other"));
    ui.answerColour(Rgb{12, 34, 56});
    arm("cmdChangeColour", "optEntity");
    click(a);
    EXPECT_EQ(ctx.engine.polygon_get_color(a), (Rgb{12, 34, 56}));
    EXPECT_EQ(ctx.engine.polygon_get_color(b), (Rgb{12, 34, 56}));
    EXPECT_EQ(ctx.engine.polygon_get_color(c), (Rgb{200, 200, 200}));

    std::vector<core::Value> args{core::Value(2), core::Value(0)};
    ctx.procedures.find("cmdChangeColour_MouseDown")->body(ctx, args);
    click(c);
    EXPECT_EQ(ctx.engine.polygon_get_color(c), (Rgb{12, 34, 56}));
}

TEST_F(SelectionActions, ChangeColourCancelledArmsNothing) {
    ui.answerColour(std::nullopt);
    arm("cmdChangeColour", "optEntity");
    EXPECT_FALSE(armed("bolChangeColour"));
    EXPECT_TRUE(ctx.commands.find("cmdChangeColour")->enabled);
}

TEST_F(SelectionActions, ChangeNameWritesTheFormsRecordOnTheScope) {
    const Handle e = group("E");
    const Handle a = tri(e, {1, 1, 1}, "old a"), b = tri(e, {1, 1, 1}, "old b");
    const Handle c = tri(group("Other"), {1, 1, 1}, "keep");
    arm("cmdChangeName", "optEntity");
    ui::FormAnswer info{
        "frm23_ChangeInfo",
        ui::FormAction::Accept,
        {{"lstPickObjectType", "Ground Support"}, {"txtChangeInfo", "Cable bolts"}}};
    ui.answerForm(info);
    click(a);
    const std::string name = ctx.engine.entity_get_name(a);
    EXPECT_EQ(ctx.engine.entity_get_name(b), name);
    EXPECT_EQ(ctx.engine.entity_get_name(c), "keep");
    auto record = core::parseInfoRecord(name);
    ASSERT_TRUE(record.has_value()) << name;
    EXPECT_EQ(record->prefix, "PR_");
    EXPECT_EQ(record->code, "GrSup");
    EXPECT_EQ(record->text, "Cable bolts");
}

TEST_F(SelectionActions, ChangeNameClosedByItsFrameLeavesTheNamesAndEndsTheTool) {
    const Handle a = tri(group("E"), {1, 1, 1}, "old");
    arm("cmdChangeName", "optPolygon");
    ui.answerForm({"frm23_ChangeInfo", ui::FormAction::Close, {}});
    click(a);
    EXPECT_EQ(ctx.engine.entity_get_name(a), "old");
    EXPECT_FALSE(armed("bolChangeName"));
    EXPECT_TRUE(ctx.commands.find("cmdChangeName")->enabled);
}

TEST_F(SelectionActions, ScriptsReachTheFormReaderAndTheClick) {
    const Handle a = tri(group("E")), b = tri(group("F"));
    auto& form = forms::Frm22Selection::of(ctx);
    form.P_subPrepare(forms::Frm22Selection::Action::Delete);
    form.setOption("optPolygon");
    std::vector<core::Value> accept{core::Value(false)};
    ctx.procedures.find("P_subSelectAccept")->body(ctx, accept);
    EXPECT_EQ(forms::selectionScopeBox(ctx).text, "Polygon");
    ctx.state.setToolFlag("bolDeleteGroup", true);
    std::vector<core::Value> clickArgs{core::Value(static_cast<std::int64_t>(a)), core::Value(0)};
    ctx.procedures.find("P_subSelectionClick")->body(ctx, clickArgs);
    EXPECT_FALSE(alive(a));
    EXPECT_TRUE(alive(b));
}

}  // namespace
}  // namespace selectiontest
