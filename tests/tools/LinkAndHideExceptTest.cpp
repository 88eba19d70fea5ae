// The photo and file links and the hide-all-except tool, clicked at a fixed camera.
#include "ToolsFixture.h"
#include "core/NameRecords.h"
#include "tools/ExtraTools.h"

namespace {

using engine::Handle;
using engine::Point3;
using toolstest::near;
using toolstest::ToolsTest;

TEST(LinkTarget, ReadsTheFirstLineOfALinkRecord) {
    const ui::DateTime t{2024, 3, 5, 9, 5, 7};
    EXPECT_EQ(tools::linkTarget(core::buildInfoRecord(true, "LinkF", t, "photos/a.jpg")),
              "photos/a.jpg");
    EXPECT_EQ(tools::linkTarget(core::buildInfoRecord(false, "LinkF", t, " docs/b.pdf \r\nnote")),
              "docs/b.pdf");
    EXPECT_EQ(tools::linkTarget("PR_LinkF\r\n2024-03-05\r\n09:05:07\r\nc.png"), "c.png");
}

TEST(LinkTarget, OtherNamesAreNoLinks) {
    const ui::DateTime t{2024, 3, 5, 9, 5, 7};
    EXPECT_FALSE(tools::linkTarget(core::buildInfoRecord(true, "Infor", t, "a.jpg")));
    EXPECT_FALSE(tools::linkTarget("photos/a.jpg"));
    EXPECT_FALSE(tools::linkTarget(""));
    EXPECT_FALSE(tools::linkTarget("PR_LinkF\r\n2024-03-05\r\n09:05:07\r\n"));
    EXPECT_FALSE(tools::linkTarget("PR_LinkF"));
}

class LinkTest : public ToolsTest {
protected:
    Handle entity = 0, other = 0;
    Handle a = 0, b = 0, c = 0;
    void SetUp() override {
        ToolsTest::SetUp();
        ui.fixClock({2024, 3, 5, 9, 5, 7});
        entity = ctx.engine.group_create("Pillar");
        a = square(0, 0, 0, 50, entity);
        b = square(200, 0, 0, 50, entity);
        other = ctx.engine.group_create("Other");
        c = square(-300, 0, 0, 50, other);
    }
    void answerOpen(const std::string& path) { ui.answerOpen(path); }
};

TEST_F(LinkTest, TheButtonArmsOnEntities) {
    main().setText("cboSelection", "Polygon");
    run("cmdPhotoLink");
    EXPECT_EQ(main().text("cboSelection"), "Entity");
    EXPECT_TRUE(flag("bolPhotoLink"));
    EXPECT_FALSE(ctx.commands.find("cmdPhotoLink")->enabled);
    EXPECT_EQ(ui.pointer(), 14);
}

TEST_F(LinkTest, AnUnlinkedEntityAsksForThePhotographAndRecordsIt) {
    run("cmdPhotoLink");
    answerOpen("photos/face12.jpg");
    click({0, 0, 0});
    const auto opens = records("open");
    ASSERT_EQ(opens.size(), 1u);
    EXPECT_EQ(opens[0]["filetype"], "Photograph");
    const std::string record = "PR_LinkF\r\n2024-03-05\r\n09:05:07\r\nphotos/face12.jpg";
    EXPECT_EQ(ctx.engine.entity_get_name(a), record);
    EXPECT_EQ(ctx.engine.entity_get_name(b), record);
    EXPECT_EQ(ctx.engine.entity_get_name(c), "");
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_TRUE(ctx.commands.find("cmdPhotoLink")->enabled);
    EXPECT_TRUE(ui.externalOpened().empty());
}

TEST_F(LinkTest, ALinkedEntityOpensItsFile) {
    ctx.engine.polygon_set_name(c, "PR_LinkF\r\n2024-01-01\r\n10:00:00\r\nplans/level3.pdf");
    run("cmdFileLink");
    click({-300, 0, 0});
    const auto& ext = ui.externalOpened();
    ASSERT_EQ(ext.size(), 1u);
    EXPECT_EQ(ext[0], "plans/level3.pdf");
    EXPECT_TRUE(records("open").empty());
    EXPECT_TRUE(records("msgbox").empty());
    EXPECT_EQ(ctx.state.txtComment, "Opened plans/level3.pdf");
    EXPECT_FALSE(ctx.state.toolArmed());
}

TEST_F(LinkTest, ADoubleClickOpensALinkAndShowsOtherInformation) {
    ctx.engine.polygon_set_name(c, "PR_LinkF\r\n2024-01-01\r\n10:00:00\r\nplans/level3.pdf");
    ctx.engine.polygon_set_name(a, "Pillar A");
    double x = 0, y = 0;
    pixel({-300, 0, 0}, x, y);
    ctx.input.onDblClick(ctx, x, y);
    ASSERT_EQ(ui.externalOpened().size(), 1u);
    EXPECT_EQ(ui.externalOpened()[0], "plans/level3.pdf");
    EXPECT_TRUE(records("msgbox").empty());
    pixel({0, 0, 0}, x, y);
    ctx.input.onDblClick(ctx, x, y);
    EXPECT_EQ(ui.externalOpened().size(), 1u);
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Pillar A");
}

TEST_F(LinkTest, ALinkNoViewerTakesIsReported) {
    ctx.engine.polygon_set_name(c, "UP_LinkF\r\n2024-01-01\r\n10:00:00\r\ngone.xyz");
    ui.setExternalResult(false);
    run("cmdFileLink");
    click({-300, 0, 0});
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "The linked file could not be opened:\r\ngone.xyz");
    EXPECT_EQ(boxes[0]["title"], "File link");
}

TEST_F(LinkTest, OtherInformationIsReplacedOnlyWhenAgreed) {
    const std::string info = "PR_Infor\r\n2024-01-01\r\n10:00:00\r\nBolted 2023";
    ctx.engine.polygon_set_name(c, info);
    run("cmdFileLink");
    ui.answerMsgBox(ui::Answer::No);
    click({-300, 0, 0});
    EXPECT_EQ(ctx.engine.entity_get_name(c), info);
    EXPECT_TRUE(records("open").empty());
    EXPECT_TRUE(flag("bolFileLink"));  // the tool waits for another object

    ui.answerMsgBox(ui::Answer::Yes);
    answerOpen("notes/c.txt");
    click({-300, 0, 0});
    EXPECT_EQ(records("open")[0]["filetype"], "File Link");
    EXPECT_EQ(*tools::linkTarget(ctx.engine.entity_get_name(c)), "notes/c.txt");
}

TEST_F(LinkTest, ShiftKeepsTheToolAndAMissAsks) {
    run("cmdFileLink");
    answerOpen("x.doc");
    click({0, 0, 0}, 1);
    EXPECT_TRUE(flag("bolFileLink"));
    ui.answerMsgBox(ui::Answer::OK);
    click({0, 250, 0});  // nothing there
    ASSERT_EQ(records("msgbox").size(), 1u);
    EXPECT_EQ(records("msgbox")[0]["title"], "No polygon selected");
    EXPECT_TRUE(flag("bolFileLink"));
    ui.answerMsgBox(ui::Answer::Cancel);
    click({0, 250, 0});
    EXPECT_FALSE(ctx.state.toolArmed());
}

TEST_F(LinkTest, ACancelledFileDialogChangesNothing) {
    run("cmdPhotoLink");
    ui.answerOpen(std::nullopt);
    click({200, 0, 0});
    EXPECT_EQ(ctx.engine.entity_get_name(b), "");
    EXPECT_FALSE(ctx.state.toolArmed());
}

// A father "Stope" over two entities, one entity without a father, and a floor.
class HideExceptTest : public ToolsTest {
protected:
    Handle stope = 0, e1 = 0, e2 = 0, loose = 0, floorGroup = 0;
    Handle p1a = 0, p1b = 0, p2 = 0, p3 = 0, pf = 0;
    void SetUp() override {
        ToolsTest::SetUp();
        stope = ctx.engine.group_create("Stope");
        e1 = ctx.engine.group_create("E1");
        e2 = ctx.engine.group_create("E2");
        ctx.engine.group_set_father_group(e1, stope);
        ctx.engine.group_set_father_group(e2, stope);
        p1a = square(0, 0, 100, 40, e1);
        p1b = square(100, 0, 100, 40, e1);
        p2 = square(0, 200, 100, 40, e2);
        loose = ctx.engine.group_create("Loose");
        p3 = square(-300, -200, 100, 40, loose);
        floorGroup = ctx.engine.group_create("Floor");
        pf = square(0, 0, 0, 1000, floorGroup);
    }
    void arm(const char* option) {
        ui.answerForm({"frm20_HideAllExcept", ui::FormAction::Accept, {{option, "1"}}});
        run("cmdHideAllExcept");
    }
    bool shown(Handle p) { return !ctx.engine.polygon_is_disabled(p); }
};

TEST_F(HideExceptTest, KeepsTheEntityAlone) {
    arm("optHideEntity");
    EXPECT_TRUE(flag("bolHideExcept"));
    EXPECT_TRUE(flag("bolHideEntityOnly"));
    EXPECT_FALSE(flag("bolHideGroupExcept"));
    click({0, 0, 100});
    EXPECT_TRUE(shown(p1a));
    EXPECT_TRUE(shown(p1b));
    EXPECT_FALSE(shown(p2));
    EXPECT_FALSE(shown(p3));
    EXPECT_FALSE(shown(pf));
    EXPECT_EQ(ctx.state.txtComment, "The number of hidden polygons is 3");
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_TRUE(ctx.commands.find("cmdHideAllExcept")->enabled);
    // Nothing is deleted and the unhide brings everything back.
    run("cmdUnhide");
    for (Handle p : {p1a, p1b, p2, p3, pf}) EXPECT_TRUE(shown(p));
}

TEST_F(HideExceptTest, KeepsTheGroupOfTheEntity) {
    arm("optHideGroup");
    EXPECT_TRUE(flag("bolHideGroupExcept"));
    click({0, 200, 100});
    EXPECT_TRUE(shown(p1a));
    EXPECT_TRUE(shown(p1b));
    EXPECT_TRUE(shown(p2));
    EXPECT_FALSE(shown(p3));
    EXPECT_FALSE(shown(pf));
    EXPECT_EQ(ctx.state.txtComment, "The number of hidden polygons is 2");
}

TEST_F(HideExceptTest, AnEntityWithoutAFatherIsItsOwnGroup) {
    arm("optHideGroup");
    click({-300, -200, 100});
    EXPECT_TRUE(shown(p3));
    for (Handle p : {p1a, p1b, p2, pf}) EXPECT_FALSE(shown(p));
}

TEST_F(HideExceptTest, HiddenPolygonsAreNotCountedAgain) {
    ctx.engine.polygon_disable(p3);
    arm("optHideEntity");
    click({0, 200, 100}, 1);
    EXPECT_EQ(ctx.state.txtComment, "The number of hidden polygons is 3");
    EXPECT_TRUE(flag("bolHideExcept"));  // Shift keeps the tool
}

TEST_F(HideExceptTest, AClosedDialogArmsNothing) {
    ui.answerForm({"frm20_HideAllExcept", ui::FormAction::Close, {}});
    run("cmdHideAllExcept");
    EXPECT_FALSE(ctx.state.toolArmed());
    EXPECT_TRUE(ctx.commands.find("cmdHideAllExcept")->enabled);
}

TEST_F(HideExceptTest, TheNewRotationPointReturnsToTheDialog) {
    main().setText("cboSnapSelect1", "Polygon");
    main().setText("cboSnapSelect2", "Centre");
    ui.answerForm({"frm20_HideAllExcept", ui::FormAction::Close, {{"cmdHideRotationPoint", "1"}}});
    run("cmdHideAllExcept");
    EXPECT_TRUE(flag("bolNewRotation"));
    EXPECT_TRUE(flag("bolRotationForHide"));
    EXPECT_FALSE(flag("bolHideExcept"));

    ui.answerForm({"frm20_HideAllExcept", ui::FormAction::Accept, {{"optHideGroup", "1"}}});
    click({100, 0, 100});
    EXPECT_LT(near(ctx.state.dblRotationCentre, {100, 0, 100}), 1e-9);
    EXPECT_FALSE(flag("bolRotationForHide"));
    EXPECT_FALSE(flag("bolNewRotation"));
    EXPECT_TRUE(flag("bolHideExcept"));
    EXPECT_TRUE(flag("bolHideGroupExcept"));
    click({0, 0, 100});
    EXPECT_FALSE(shown(p3));
    EXPECT_TRUE(shown(p2));
}

TEST_F(HideExceptTest, ComesAfterHideInTheChain) {
    // Both armed by hand: the plain hide takes the click first.
    ui.answerForm({"frm22_Selection", ui::FormAction::Accept, {{"optPolygon", "1"}}});
    run("cmdHideGroup");
    ctx.state.setToolFlag("bolHideExcept", true);
    ctx.state.setToolFlag("bolHideEntityOnly", true);
    click({0, 0, 100});
    EXPECT_FALSE(shown(p1a));
    EXPECT_TRUE(shown(p1b));
    EXPECT_TRUE(shown(pf));
}

}  // namespace
