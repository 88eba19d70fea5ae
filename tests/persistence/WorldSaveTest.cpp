// Saving worlds from the menus, backups, restore and the main form's undo.

#include <gtest/gtest.h>

#include "WorldAppFixture.h"
#include "persistence/Backup.h"

namespace {

using engine::Handle;
using worldapp::WorldApp;
namespace fs = std::filesystem;

TEST_F(WorldApp, SaveAsksForTheNameAndWritesTheWholeScene) {
    const std::string path = dir.file("saved.STATE").string();
    ui.answerSave(path);
    run("mnuSaveFullModel1");
    const auto saves = records("save");
    ASSERT_EQ(saves.size(), 1u);
    EXPECT_EQ(saves[0]["filetype"], "STATE-File");
    EXPECT_EQ(ctx.state.txtComment, path + " saved.");
    EXPECT_EQ(ctx.state.strLoadedFiles, path + " saved");
    EXPECT_EQ(ctx.state.strFullPath, path);
    EXPECT_EQ(ui.beeps(), 1);
    engine::Engine copy;
    ASSERT_TRUE(engine::loadWorld(copy, path).ok);
    EXPECT_EQ(worldtest::describe(copy).substr(0, 200), sceneText().substr(0, 200));
    EXPECT_EQ(copy.polygon_count(), 1u);
}

TEST_F(WorldApp, ANameWithoutExtensionGetsTheDefaultOne) {
    ui.answerSave(dir.file("plain").string());
    run("mnuSaveFullModel1");
    EXPECT_TRUE(fs::exists(dir.file("plain.STATE")));
    EXPECT_FALSE(fs::exists(dir.file("plain")));
}

TEST_F(WorldApp, ACancelledOrEmptyNameSavesNothing) {
    ui.answerSave(std::nullopt);
    run("mnuSaveFullModel1");
    EXPECT_TRUE(records("msgbox").empty());
    ui.answerSave(std::string());
    run("mnuSaveFullModel1");
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "File name is EMPTY");
    EXPECT_EQ(boxes[0]["title"], "Error message");
    EXPECT_TRUE(ctx.state.strLoadedFiles.empty());
}

TEST_F(WorldApp, SavingWithTheCurrentNameNeedsOne) {
    run("mnuSaveCurName");
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "No file saved as the filename was a Null-value");
    EXPECT_EQ(boxes[0]["title"], "Null-value for filename");

    const std::string path = writeWorld("current.STATE");
    ui.answerOpen(path);
    run("mnuSTATEFileOpenInitialize");
    const Handle p = ctx.engine.polygon_get_first_polygon();
    ctx.engine.polygon_set_name(p, "renamed");
    run("mnuSaveCurName");
    EXPECT_TRUE(records("save").empty());
    engine::Engine copy;
    ASSERT_TRUE(engine::loadWorld(copy, path).ok);
    EXPECT_EQ(copy.entity_get_name(copy.polygon_get_first_polygon()), "renamed");
}

TEST_F(WorldApp, AFailedSaveSaysWhyAndLogsNothing) {
    ui.answerSave(dir.file("no/such/folder/x.STATE").string());
    run("mnuSaveFullModel1");
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_NE(boxes[0]["text"].get<std::string>().find("cannot be written"), std::string::npos);
    EXPECT_TRUE(ctx.state.strLoadedFiles.empty());
}

TEST_F(WorldApp, SavingWithBitmapsCopiesThemBesideTheFile) {
    const fs::path bmp = dir.file("stone.bmp");
    worldtest::writeBmp(bmp, 2, 2, {1, 2, 3});
    const Handle p = ctx.engine.polygon_get_first_polygon();
    ctx.engine.polygon_set_bitmap_fill(p, ctx.engine.bitmap_load(bmp.string()));
    fs::create_directories(dir.file("out"));
    ui.answerSave((dir.file("out") / "with.STATE").string());
    run("mnuSaveFullModel2");
    EXPECT_TRUE(fs::exists(dir.file("out") / "Bitmaps" / "stone.bmp"));
}

TEST_F(WorldApp, VisibleInformationIsSavedInRunsOfGroups) {
    auto& e = ctx.engine;
    // Walk: scene triangle (Scene), a (G1), b (G1, disabled), c (G2), d (G1), f (none).
    const Handle g1 = e.group_create("G1"), g2 = e.group_create("G2");
    const Handle a = worldtest::polygon(e, {{0, 0, 1}, {0, 1, 1}, {1, 1, 1}}, g1, "a");
    const Handle b = worldtest::polygon(e, {{0, 0, 2}, {0, 1, 2}, {1, 1, 2}}, g1, "b");
    worldtest::polygon(e, {{0, 0, 3}, {0, 1, 3}, {1, 1, 3}}, g2, "c");
    worldtest::polygon(e, {{0, 0, 4}, {0, 1, 4}, {1, 1, 4}}, g1, "d");
    worldtest::polygon(e, {{0, 0, 5}, {0, 1, 5}, {1, 1, 5}}, 0, "f");
    e.polygon_disable(b);
    // a joined G1 again after b: G1's order is b, d, a and must stay so.
    e.polygon_set_group(a, 0);
    e.polygon_set_group(a, g1);
    const std::string before = sceneText();

    const std::string path = dir.file("visible.wld").string();
    ui.answerSave(path);
    run("mnuSaveVisibleInfoOnly");
    EXPECT_EQ(sceneText(), before);  // every polygon back where it was, no group left over

    engine::Engine copy;
    ASSERT_TRUE(engine::loadWorld(copy, path).ok);
    EXPECT_EQ(copy.polygon_count(), 5u);  // all but b
    std::vector<std::string> runs;
    for (Handle g = copy.group_get_first_group(); g; g = copy.group_get_next(g)) {
        std::string members;
        for (Handle p = copy.group_get_first_polygon(g); p; p = copy.group_get_next_polygon(g, p))
            members += copy.entity_get_name(p).substr(0, 1);
        runs.push_back(copy.entity_get_name(g) + "=" + members);
    }
    EXPECT_EQ(runs, (std::vector<std::string>{
                        "Save visible information group=",
                        "Save visible information group: 1=S",
                        "Save visible information group: 2=a",
                        "Save visible information group: 3=c",
                        "Save visible information group: 4=d",
                        "Save visible information group: 5=f",
                    }));
    for (Handle g = copy.group_get_next(copy.group_get_first_group()); g;
         g = copy.group_get_next(g))
        EXPECT_EQ(copy.group_get_father_group(g), copy.group_get_first_group());
}

TEST_F(WorldApp, AddedInformationIsTheToolsGroupsWithTheirInsides) {
    auto& e = ctx.engine;
    const Handle info = e.group_create("AddedInfoGroup");
    const Handle tube = e.group_create("Tube");
    const Handle leg = e.group_create("Leg");
    const Handle marker = e.group_create("Marker");
    e.group_set_father_group(tube, info);
    e.group_set_father_group(leg, tube);
    worldtest::polygon(e, {{0, 0, 1}, {0, 1, 1}, {1, 1, 1}}, leg, "leg face");
    worldtest::polygon(e, {{0, 0, 2}, {0, 1, 2}, {1, 1, 2}}, marker, "marker face");
    ctx.state.F_h_lngAddedGroups = {tube, leg, marker};
    const std::string before = sceneText();

    const std::string path = dir.file("added.STATE").string();
    ui.answerSave(path);
    run("mnuSaveAddedInfoOnly");
    EXPECT_EQ(sceneText(), before);

    engine::Engine copy;
    ASSERT_TRUE(engine::loadWorld(copy, path).ok);
    EXPECT_EQ(copy.polygon_count(), 2u);
    std::vector<std::string> names;
    for (Handle g = copy.group_get_first_group(); g; g = copy.group_get_next(g))
        names.push_back(copy.entity_get_name(g) + "<" +
                        copy.entity_get_name(copy.group_get_father_group(g)));
    EXPECT_EQ(names, (std::vector<std::string>{"Tube<Save added information group", "Leg<Tube",
                                               "Marker<Save added information group",
                                               "Save added information group<"}));
}

TEST_F(WorldApp, NoAddedInformationSavesNothing) {
    run("mnuSaveAddedInfoOnly");
    EXPECT_EQ(records("msgbox").at(0)["text"], "There is no added information to save");
    EXPECT_TRUE(records("save").empty());
}

// ---- backups ------------------------------------------------------------------------------

TEST_F(WorldApp, ABackupRestoresTheSceneExactly) {
    const std::string original = sceneText();
    run("mnuBackup");
    const fs::path backup = fs::path(ctx.strProgramFolder) / "TarvikBackup1.STATE";
    ASSERT_TRUE(fs::exists(backup));
    EXPECT_EQ(ctx.state.txtComment, "Backup file saved");
    worldtest::polygon(ctx.engine, {{5, 5, 5}, {5, 6, 5}, {6, 6, 5}}, 0, "after the backup");
    run("mnuRestore");
    EXPECT_EQ(ctx.state.txtComment, "Backup file opened");
    EXPECT_EQ(sceneText().substr(0, original.find("camera")),
              original.substr(0, original.find("camera")));
    // Saved again, the restored scene gives the same file.
    run("mnuBackup");
    const std::string first = testsupport::readFile(backup);
    run("mnuRestore");
    run("mnuBackup");
    EXPECT_EQ(testsupport::readFile(backup), first);
}

TEST_F(WorldApp, RestoringWithoutABackupSaysSo) {
    const std::string before = sceneText();
    run("mnuRestore");
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "A backup-file cannot be found");
    EXPECT_EQ(boxes[0]["title"], "File does not exist");
    EXPECT_EQ(sceneText(), before);
}

TEST_F(WorldApp, UndoAsksThenLoadsTheOperationsBackup) {
    ASSERT_TRUE(persistence::p_subBackup(ctx, persistence::kUndoBackupFile));
    EXPECT_TRUE(fs::exists(fs::path(ctx.strProgramFolder) / "TarvikBackup.STATE"));
    const std::string kept = sceneText();
    worldtest::polygon(ctx.engine, {{5, 5, 5}, {5, 6, 5}, {6, 6, 5}}, 0, "spoilt");
    const std::string spoilt = sceneText();

    ui.answerMsgBox(ui::Answer::No);
    run("cmdUndo");
    EXPECT_EQ(sceneText(), spoilt);
    ui.answerMsgBox(ui::Answer::Yes);
    run("cmdUndo");
    EXPECT_EQ(ctx.engine.polygon_count(), 1u);
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0]["text"], "Load a backup file?");
    EXPECT_EQ(boxes[0]["title"], "Confirmation");
    EXPECT_EQ(boxes[0]["buttons"], "YesNo");
    (void)kept;
}

TEST_F(WorldApp, UndoWithoutTheBackupSaysItCannotBeFound) {
    ui.answerMsgBox(ui::Answer::Yes);
    run("cmdUndo");
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[1]["text"], "A backup-file cannot be found");
    EXPECT_EQ(boxes[1]["title"], "File does not exist");
}

TEST_F(WorldApp, RestoreFindsTheModelGroupsAgain) {
    const std::string path = writeWorld("m.STATE");
    ui.answerOpen(path);
    run("mnuSTATEFileOpenInitialize");
    ui.answerOpen(path);
    run("mnuSTATEFileAdd");
    run("mnuBackup");
    run("mnuOpenEmptyFileEditor");
    EXPECT_TRUE(ctx.state.lngModelGroups.empty());
    run("mnuRestore");
    ASSERT_EQ(ctx.state.lngModelGroups.size(), 2u);
    EXPECT_EQ(ctx.engine.entity_get_name(ctx.state.lngModelGroups[0]), "FirstModel");
    EXPECT_EQ(ctx.engine.entity_get_name(ctx.state.lngModelGroups[1]), "NextModel");
    EXPECT_EQ(ctx.state.intModelCount, 1);
}

}  // namespace
