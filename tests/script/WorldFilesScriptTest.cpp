// World files from scripts: save, load through the engine operation and save
// again gives the same file and the same scene dump; `open` and `save`; backups.

#include <fstream>

#include "ScriptFixture.h"
#include "persistence/WorldFiles.h"

namespace {

using nlohmann::json;
using scripttest::ScriptResult;
using scripttest::ScriptTest;

void withWorldFiles(core::AppContext& ctx) { persistence::registerWorldFiles(ctx); }

json readJson(const std::filesystem::path& p) {
    std::ifstream f(p);
    return json::parse(f);
}

// The scene part of a dump (the form's state holds the comment of the moment).
json scenePart(const json& dump) {
    return json{{"polygons", dump["polygons"]},
                {"groups", dump["groups"]},
                {"background", dump["background"]},
                {"camera", dump["camera"]}};
}

const char* const kScene =
    "polygon --name \"PR_A\\r\\nfirst\" --colour 255,0,0 0,0,0 0,10,0 10,10,0 > P1\n"
    "polygon --name \"\" 0,0,5 0,10,5 10,10,5 10,0,5\n"
    "call group_create Outer > OUTER\n"
    "call group_create Inner > INNER\n"
    "call group_set_father_group $INNER $OUTER\n"
    "polygon --group $INNER --name inner --colour 1,2,3 0,0,9 0,1,9 1,1,9\n"
    "call polygon_set_light $P1 10,20,30\n"
    "call engine_set_background_color 7,8,9\n";

TEST_F(ScriptTest, AWorldSavedLoadedAndSavedAgainIsTheSameForEachFormat) {
    for (const std::string ext : {".STATE", ".wld"}) {
        const std::string a = dir.file("a" + ext).string(), b = dir.file("b" + ext).string();
        const ScriptResult r =
            runScript(std::string(kScene) + "save a" + ext +
                          "\ndump d1.json\n"
                          "call STATE_engine_load_world \"" +
                          a + "\" \"\" \"\" 4\ndump d2.json\nsave b" + ext + "\n",
                      withWorldFiles);
        ASSERT_EQ(r.rc, 0) << r.err;
        EXPECT_EQ(testsupport::readFile(a), testsupport::readFile(b)) << ext;
        const json d1 = readJson(dir.file("d1.json")), d2 = readJson(dir.file("d2.json"));
        EXPECT_EQ(scenePart(d1), scenePart(d2)) << ext;
        EXPECT_EQ(d2["polygons"].size(), 3u);
        EXPECT_EQ(d2["polygons"][0]["name"], "PR_A\r\nfirst");
        EXPECT_EQ(d2["polygons"][0]["light"], json::array({10, 20, 30}));
        EXPECT_EQ(d2["background"], json::array({7, 8, 9}));
    }
}

TEST_F(ScriptTest, OpenPutsTheWorldUnderFirstModelAndLogsIt) {
    const ScriptResult first = runScript(std::string(kScene) + "save w.STATE\n", withWorldFiles);
    ASSERT_EQ(first.rc, 0) << first.err;
    const ScriptResult r = runScript("open w.STATE\ndump d.json\n", withWorldFiles);
    ASSERT_EQ(r.rc, 0) << r.err;
    const json d = readJson(dir.file("d.json"));
    EXPECT_EQ(d["polygons"].size(), 3u);
    const json& groups = d["groups"];
    ASSERT_FALSE(groups.empty());
    EXPECT_EQ(groups.back()["name"], "FirstModel");
    const std::string path = dir.file("w.STATE").string();
    EXPECT_EQ(d["state"]["strLoadedFiles"], path + " opened");
    bool commented = false;
    for (const auto& c : r.of("comment")) commented = commented || c["text"] == path + " opened";
    EXPECT_TRUE(commented);
}

TEST_F(ScriptTest, OpeningADamagedWorldFailsTheScriptAndSaysWhy) {
    testsupport::writeFile(dir.file("bad.STATE"), "not a world at all");
    const ScriptResult r = runScript("open bad.STATE\n", withWorldFiles);
    EXPECT_EQ(r.rc, 1);
    ASSERT_FALSE(r.of("msgbox").empty());
    EXPECT_EQ(r.of("msgbox")[0]["text"], "Error loading world");
}

TEST_F(ScriptTest, BackupAndRestoreFromAScript) {
    const auto setup = [this](core::AppContext& ctx) {
        persistence::registerWorldFiles(ctx);
        ctx.strProgramFolder = dir.path.string();
    };
    const ScriptResult r = runScript(std::string(kScene) +
                                         "run mnuBackup\ndump d1.json\n"
                                         "polygon 50,50,50 50,51,50 51,51,50\n"
                                         "run mnuRestore\ndump d2.json\n"
                                         "answer msgbox No\nrun cmdUndo\n",
                                     setup);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(scenePart(readJson(dir.file("d1.json"))), scenePart(readJson(dir.file("d2.json"))));
    const auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Load a backup file?");
    EXPECT_EQ(boxes[0]["answer"], "No");
}

}  // namespace
