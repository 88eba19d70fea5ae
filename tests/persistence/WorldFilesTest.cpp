// The world-file commands as a person uses them: open, add, the empty scene,
// several files at once, a path handed over, and the script hooks.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "WorldAppFixture.h"
#include "engine/WorldFormat.h"
#include "forms/Frm26FileAdd.h"
#include "persistence/OpenFile.h"
#include "persistence/WorldFiles.h"

namespace {

using json = nlohmann::json;
using engine::Handle;
using worldapp::WorldApp;

const char* const kWorldFilter =
    "Binary-files(*.STATE)|*.STATE|ASCII-files(*.WLD)|*.wld|All file types (*.*)|*.*";

TEST_F(WorldApp, OpenReplacesTheSceneUnderFirstModel) {
    const std::string path = writeWorld("mine.STATE");
    ui.answerOpen(path);
    run("mnuSTATEFileOpenInitialize");

    auto& e = ctx.engine;
    EXPECT_EQ(e.polygon_count(), 4u);  // the scene's own triangle is gone
    const auto names = groupNames();
    ASSERT_EQ(names.size(), 4u);
    EXPECT_EQ(names.back(), "FirstModel");  // made after the world's groups
    const Handle first = groupNamed("FirstModel");
    // Top groups hang under FirstModel; the deeper ones keep their fathers.
    EXPECT_EQ(e.group_get_father_group(groupNamed("Level 1")), first);
    EXPECT_EQ(e.group_get_father_group(groupNamed("Stope")), groupNamed("Level 1"));
    EXPECT_EQ(e.group_get_father_group(groupNamed("Drive")), groupNamed("Stope"));
    EXPECT_EQ(ctx.state.lngModelGroups, std::vector<Handle>{first});
    EXPECT_EQ(ctx.state.intModelCount, 0);
    EXPECT_EQ(ctx.state.strLoadedFiles, path + " opened");
    EXPECT_EQ(ctx.state.txtComment, path + " opened");
    EXPECT_EQ(ctx.state.strFullPath, path);
    EXPECT_EQ(ctx.state.strFileTitle, "mine.STATE");
    EXPECT_EQ(ctx.state.strFolder, dir.path.string() + "/");
    EXPECT_EQ(ui.progress(), 100);
    EXPECT_EQ(ui.pointer(), 1);

    const auto opens = records("open");
    ASSERT_EQ(opens.size(), 1u);
    EXPECT_EQ(opens[0]["filetype"], "STATE-File");
    EXPECT_EQ(opens[0]["filter"], kWorldFilter);
    // The rotation centre is the centre of the world's points.
    EXPECT_EQ(ctx.state.dblRotationCentre, e.group_get_center_of_mass(0));
}

TEST_F(WorldApp, ACancelledOpenChangesNothing) {
    const std::string before = sceneText();
    ui.answerOpen(std::nullopt);
    run("mnuSTATEFileOpenInitialize");
    EXPECT_EQ(sceneText(), before);
    EXPECT_EQ(ctx.state.bolFileCancelled, 0);
    EXPECT_TRUE(ctx.state.strLoadedFiles.empty());
}

TEST_F(WorldApp, ADamagedWorldIsRefusedAndTheSceneStays) {
    const std::string path = writeWorld("mine.STATE");
    std::string bytes = readFile(path);
    bytes[bytes.size() / 2] ^= 0x40;
    testsupport::writeFile(path, bytes);
    const std::string before = sceneText();
    ui.answerOpen(path);
    run("mnuSTATEFileOpenInitialize");
    EXPECT_EQ(sceneText(), before);
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Error loading world");
    EXPECT_NE(ctx.state.txtComment.find("damaged"), std::string::npos) << ctx.state.txtComment;
    EXPECT_TRUE(ctx.state.strLoadedFiles.empty());
}

TEST_F(WorldApp, AddingTwiceGivesTwoNextModelsAndKeepsTheScene) {
    const std::string path = writeWorld("mine.wld");
    ui.answerOpen(path);
    run("mnuSTATEFileAdd");
    ui.answerOpen(path);
    run("mnuSTATEFileAdd");
    auto& e = ctx.engine;
    EXPECT_EQ(e.polygon_count(), 1u + 4u + 4u);
    ASSERT_EQ(ctx.state.lngModelGroups.size(), 2u);
    EXPECT_EQ(ctx.state.intModelCount, 1);
    for (Handle g : ctx.state.lngModelGroups) {
        EXPECT_EQ(e.entity_get_name(g), "NextModel");
        EXPECT_EQ(e.group_get_father_group(g), 0u);
        EXPECT_EQ(e.group_get_number_of_polygons(g), 4);
    }
    EXPECT_EQ(ctx.state.strLoadedFiles, path + " added\r\n" + path + " added");
    EXPECT_EQ(ctx.state.txtComment, path + " added");
    EXPECT_EQ(ui.beeps(), 2);
    // The scene's own triangle is still first.
    EXPECT_EQ(e.entity_get_name(e.polygon_get_first_polygon()), "Scene triangle");
}

TEST_F(WorldApp, AFailedAddShowsItsBoxAndCountsNothing) {
    const std::string path = dir.file("not a world.STATE").string();
    testsupport::writeFile(path, "just some text\n");
    const std::string before = sceneText();
    ui.answerOpen(path);
    run("mnuSTATEFileAdd");
    EXPECT_EQ(sceneText(), before);
    EXPECT_EQ(ctx.state.intModelCount, -1);
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Failed to load the selected model");
    EXPECT_NE(ctx.state.txtComment.find("not a Tarvik world file"), std::string::npos);
}

TEST_F(WorldApp, TheLinkMarkerAddAsksWithItsOwnDialog) {
    const std::string path = writeWorld("links.STATE");
    ui.answerOpen(path);
    run("mnuImportFileLinkMarkers");
    const auto opens = records("open");
    ASSERT_EQ(opens.size(), 1u);
    EXPECT_EQ(opens[0]["filetype"], "LinkSTATE-File");
    EXPECT_EQ(opens[0]["filter"], kWorldFilter);
    EXPECT_EQ(ctx.state.lngModelGroups.size(), 1u);
}

TEST_F(WorldApp, TheEmptyFileEmptiesTheScene) {
    ctx.state.lngModelGroups = {1, 2};
    ctx.state.intModelCount = 1;
    run("mnuOpenEmptyFileEditor");
    EXPECT_EQ(ctx.engine.polygon_count(), 0u);
    EXPECT_EQ(ctx.engine.group_count(), 0u);
    EXPECT_TRUE(ctx.state.lngModelGroups.empty());
    EXPECT_EQ(ctx.state.intModelCount, -1);
    EXPECT_EQ(ctx.state.txtComment,
              "MOUSE BUTTON ACTIONS:     LEFT-Rotate     RIGHT-Pan/Move     MIDDLE / "
              "LEFT+RIGHT-Zoom");
}

TEST_F(WorldApp, AHandedOverPathOpensWithoutADialog) {
    const std::string path = writeWorld("double clicked.STATE");
    mainForm().setText("cboZoomRate", "SlowP1");
    EXPECT_TRUE(persistence::p_subAssFileOpen(ctx, path));
    EXPECT_TRUE(records("open").empty());
    EXPECT_EQ(ctx.engine.polygon_count(), 4u);
    EXPECT_EQ(mainForm().text("cboZoomRate"), "Active");
    EXPECT_EQ(ctx.state.comLoadStateFile, path);
    EXPECT_FALSE(ctx.state.bolOpenByAssociation);
    // The next open asks again.
    ui.answerOpen(std::nullopt);
    run("mnuSTATEFileOpenInitialize");
    EXPECT_EQ(records("open").size(), 1u);
}

TEST_F(WorldApp, TheFirstPlainArgumentIsTheWorldToOpen) {
    const std::string path = writeWorld("argument.wld");
    EXPECT_FALSE(persistence::openWorldFromCommandLine(ctx, {"--verbose", "-x"}));
    EXPECT_EQ(ctx.engine.polygon_count(), 1u);
    EXPECT_TRUE(persistence::openWorldFromCommandLine(ctx, {"--verbose", path, "other"}));
    EXPECT_EQ(ctx.state.strLoadedFiles, path + " opened");
}

TEST_F(WorldApp, AMissingHandedOverFileIsRefused) {
    EXPECT_FALSE(persistence::p_subAssFileOpen(ctx, dir.file("gone.STATE").string()));
    EXPECT_EQ(records("msgbox").at(0)["text"], "Error loading world");
    EXPECT_EQ(ctx.engine.polygon_count(), 1u);
}

TEST_F(WorldApp, SeveralFilesOpenTheFirstAndAddTheRest) {
    writeWorld("a.STATE");
    writeWorld("b.wld");
    testsupport::writeFile(dir.file("readme.txt"), "not listed");
    ui::FormAnswer a;
    a.form = "frm26_FileAdd";
    a.controls = {{"txtFolder", dir.path.string()}, {"lstFiles", "b.wld"}, {"cmdAddFile", "1"},
                  {"lstFiles", "a.STATE"},          {"cmdAddFile", "1"},   {"optOpen", "1"}};
    ui.answerForm(a);
    run("mnuSTATEFileOpenMulti");
    auto& f = ctx.forms.get<forms::Frm26FileAdd>("frm26_FileAdd");
    EXPECT_EQ(f.at("lstFiles").items, (std::vector<std::string>{"a.STATE", "b.wld"}));
    // The scene's triangle went with the open; b then a, each under a NextModel.
    EXPECT_EQ(ctx.engine.polygon_count(), 8u);
    ASSERT_EQ(ctx.state.lngModelGroups.size(), 2u);
    EXPECT_EQ(ctx.state.strLoadedFiles, (dir.path / "b.wld").string() + " added\r\n" +
                                            (dir.path / "a.STATE").string() + " added");
}

TEST_F(WorldApp, SeveralFilesCanAllBeAdded) {
    writeWorld("a.STATE");
    ui::FormAnswer a;
    a.form = "frm26_FileAdd";
    a.controls = {{"txtFolder", dir.path.string()}, {"cmdAddAll", "1"}, {"optAdd", "1"}};
    ui.answerForm(a);
    run("mnuSTATEFileOpenMulti");
    EXPECT_EQ(ctx.engine.polygon_count(), 5u);
}

TEST_F(WorldApp, ClosingTheMultiFileFormLoadsNothing) {
    writeWorld("a.STATE");
    ui::FormAnswer a;
    a.form = "frm26_FileAdd";
    a.action = ui::FormAction::Close;
    a.controls = {{"txtFolder", dir.path.string()}, {"cmdAddAll", "1"}};
    ui.answerForm(a);
    const std::string before = sceneText();
    run("mnuSTATEFileOpenMulti");
    EXPECT_EQ(sceneText(), before);
}

TEST_F(WorldApp, TheScriptHooksOpenAndSaveWithoutDialogs) {
    const std::string path = writeWorld("hook.STATE");
    ASSERT_TRUE(ctx.worldFiles.open);
    ASSERT_TRUE(ctx.worldFiles.save);
    EXPECT_TRUE(ctx.worldFiles.open(ctx, path));
    EXPECT_EQ(ctx.engine.polygon_count(), 4u);
    const std::string out = dir.file("out.wld").string();
    EXPECT_TRUE(ctx.worldFiles.save(ctx, out));
    EXPECT_TRUE(records("open").empty());
    EXPECT_TRUE(records("save").empty());
    engine::Engine copy;
    ASSERT_TRUE(engine::loadWorld(copy, out).ok);
    EXPECT_EQ(copy.polygon_count(), 4u);
    EXPECT_FALSE(ctx.worldFiles.open(ctx, dir.file("nothing.STATE").string()));
}

TEST_F(WorldApp, TheEngineProceduresReadAndWriteWorlds) {
    const auto* save = ctx.procedures.find("STATE_engine_save");
    const auto* load = ctx.procedures.find("STATE_engine_load_world");
    const auto* add = ctx.procedures.find("STATE_engine_add_world");
    ASSERT_TRUE(save && load && add);
    std::vector<core::Value> args{std::string(dir.file("p.STATE").string()), 0, 4160};
    EXPECT_EQ(save->body(ctx, args).integer(), 0);
    args = {std::string("p.STATE"), dir.path.string(), std::string(""), 4};
    EXPECT_EQ(load->body(ctx, args).integer(), 0);
    EXPECT_EQ(ctx.engine.polygon_count(), 1u);
    args = {std::string("p.STATE"), dir.path.string(), std::string(""), engine::Point3{0, 0, 100}};
    const Handle g = Handle(add->body(ctx, args).integer());
    ASSERT_NE(g, 0u);
    EXPECT_EQ(ctx.engine.entity_get_name(g), "p.STATE");
    EXPECT_EQ(ctx.engine.polygon_count(), 2u);
    args = {std::string("nothing.STATE"), dir.path.string(), std::string(""), 4};
    EXPECT_EQ(load->body(ctx, args).integer(), -1);
    args = {std::string(""), std::string(""), std::string(""), 4};
    EXPECT_EQ(load->body(ctx, args).integer(), 0);
    EXPECT_EQ(ctx.engine.polygon_count(), 0u);
}

TEST(OpenFileTable, FiltersFollowTheFileTypes) {
    EXPECT_EQ(persistence::fileFilterFor("STATE-File"), kWorldFilter);
    EXPECT_EQ(persistence::fileFilterFor("DXF-File"),
              "All DXF-files(*.DXF)|*.DXF|All file types (*.*)|*.*");
    // The metafile pattern stands as it always has.
    EXPECT_NE(persistence::fileFilterFor("BMP-File").find("|*.wmf;*.emp|"), std::string::npos);
    EXPECT_EQ(persistence::fileFilterFor("no such type"), "All file types (*.*)|*.*");
}

}  // namespace
