// The driver around the readers: the menu entries, the routes, the progress
// helper and the procedures scripts reach.

#include "ImportTestUtil.h"
#include "core/MainForm.h"

namespace {

using importtest::ImportTest;
using importtest::ScriptResult;

struct Entry {
    const char* name;
    const char* caption;
    bool available;
};

TEST_F(ImportTest, MenuEntriesCarryTheirCaptionsAndOnlyReadersAreAvailable) {
    ScriptResult r = run("echo ready\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    const Entry entries[] = {
        {"mnuStringFileOpenPNTLocal", "Open Construction Lines as STRINGS", true},
        {"mnuStringFileAddPNTLocal", "Add Construction Lines as STRINGS", true},
        {"mnuFileOpenPNTEditor", "Open Construction Lines as WIREFRAMES", true},
        {"mnuFileAddPNTEditor", "Add Construction Lines as WIREFRAMES", true},
        {"mnuOpenMap3DWireASC", "Open PNT-file as WIREFRAMES", true},
        {"mnuAddMap3DWireASC", "Add PNT-file as WIREFRAMES", true},
        {"mnuOpenMap3DPNTSingle", "Open PNT-file as One-sided Polygons", true},
        {"mnuOpenVerticeDataWireframePNT", "Open PNT-file as One-sided with Vertice-data", true},
        {"mnuOpenDatamineStringText", "Open DAT-file as STRINGS", false},
        {"mnuAddDatamineStringText", "Add DAT-file as STRINGS", false},
        {"mnuOpenDatamineWireText", "Open DAT-file as WIREFRAMES", false},
        {"mnuAddDatamineWireText", "Add DAT-file as WIREFRAMES", false},
        {"mnuOpenSurpacStringText", "Open STR-file as STRING", false},
        {"mnuAddSurpacStringText", "Add STR-file as STRING", false},
        {"mnuImportStopeCADLynx2", "Import Lynx2 delimited file as STRINGS", false},
        {"mnuCorwinPitShell", "Pitshell from Corwin program", false},
    };
    for (const Entry& e : entries) {
        const core::Command* c = ctx().commands.find(e.name);
        ASSERT_NE(c, nullptr) << e.name;
        EXPECT_EQ(c->caption, e.caption);
        EXPECT_EQ(c->enabled, e.available) << e.name;
        EXPECT_EQ(c->menuPath.rfind("File/Import Other", 0), 0u) << e.name;
    }
    // Registering again keeps one entry each and the readers in place.
    importers::registerImport(ctx());
    int count = 0;
    for (const auto& c : ctx().commands.all()) count += c.name == "mnuOpenMap3DWireASC";
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(ctx().commands.find("mnuOpenMap3DWireASC")->enabled);

    ScriptResult d = run("run mnuOpenDatamineStringText\n");
    EXPECT_EQ(d.rc, 2);
}

TEST_F(ImportTest, FileOpenRouteEmptiesTheWorldAndAddKeepsIt) {
    testsupport::writeFile(dir.file("x.txt"), "anything\n");
    ScriptResult r =
        run("polygon --name Before 0,0,0 5,0,0 0,5,0\n"
            "answer open x.txt\n"
            "call p_subFileAdd Stress-File\n"
            "call polygon_get_first_polygon\n"
            "answer open x.txt\n"
            "call p_subFileOpen TXT-File\n"
            "call polygon_get_first_polygon\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto opens = r.of("open");
    ASSERT_EQ(opens.size(), 2u);
    EXPECT_EQ(opens[0]["filetype"], "Stress-File");
    EXPECT_EQ(opens[0]["filter"], "Stress output from Map3D(*.TXT)|*.TXT|All file types (*.*)|*.*");
    EXPECT_EQ(opens[1]["filter"], "Text file(*.TXT)|*.TXT|All file types (*.*)|*.*");
    auto calls = r.of("call");
    EXPECT_NE(calls[1]["result"], 0);             // Add kept the polygon
    EXPECT_EQ(ctx().engine.polygon_count(), 0u);  // Open emptied the world
    EXPECT_EQ(ctx().state.strFullPath, dir.file("x.txt").string());
    auto status = r.of("status");
    ASSERT_FALSE(status.empty());
    EXPECT_EQ(status.back()["text"], core::kStatusHelpText);
    // Neither route logs: only a reader does.
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
}

TEST_F(ImportTest, ProgressMessageWritesEveryNthCallAndComesRound) {
    // Ten calls at one message every five lines: two messages, the bar up by 40
    // each time; then three more messages take it over 100, back to 0.
    std::string script;
    for (int i = 1; i <= 10; ++i)
        script += "call P_subProgressMessage 40 5 \"line " + std::to_string(i) + "\"\n";
    ScriptResult r = run(script);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto comments = r.of("comment");
    ASSERT_GE(comments.size(), 2u);
    EXPECT_EQ(comments[comments.size() - 2]["text"], "line 5");
    EXPECT_EQ(comments.back()["text"], "line 10");
    EXPECT_EQ(ctx().state.lngProgressLines, 10);
    EXPECT_FLOAT_EQ(ctx().state.sngProgressBusy, 80);
    EXPECT_EQ(scripted(ctx()).progress(), 80);
    ScriptResult more = run(script +
                            "call P_subProgressMessage 40 5 x\n"
                            "call P_subProgressMessage 40 5 x\n"
                            "call P_subProgressMessage 40 5 x\n"
                            "call P_subProgressMessage 40 5 x\n"
                            "call P_subProgressMessage 40 5 y\n");
    ASSERT_EQ(more.rc, 0) << more.err;
    // 80 + 40 would pass 100: back to 0, with the hourglass on.
    EXPECT_FLOAT_EQ(ctx().state.sngProgressBusy, 0);
    EXPECT_EQ(scripted(ctx()).progress(), 0);
    EXPECT_EQ(ctx().ui.pointer(), 11);
}

TEST_F(ImportTest, ColourAndTriangleProceduresFromAScript) {
    ScriptResult r =
        run("call P_subMap3DColour 57 0,0,0\n"
            "call P_fncTriangle 0,0,0 0,10,0 10,0,0 1,2,3 > T\n"
            "call P_fncTriangle 0,0,0 0,0,0 10,0,0 1,2,3\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 3u);
    // 57 - 5 = 52: tens 5, shade 45, hue 2: (45, 210, 45)
    EXPECT_EQ(calls[0]["result"], nlohmann::json::parse("[57, [45, 210, 45]]"));
    EXPECT_NE(calls[1]["result"], 0);
    EXPECT_EQ(calls[2]["result"], 0);  // two equal points: refused, nothing left
    EXPECT_EQ(ctx().engine.polygon_count(), 1u);
    const engine::Handle h = ctx().engine.polygon_get_first_polygon();
    EXPECT_EQ(ctx().engine.polygon_get_color(h), (engine::Rgb{1, 2, 3}));
}

}  // namespace
