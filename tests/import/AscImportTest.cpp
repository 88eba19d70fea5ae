// ASC wireframes end to end: line shapes, facets, vertice values, the two routes
// and what the driver does around the reader.

#include <algorithm>
#include <cmath>

#include "ImportTestUtil.h"

namespace {

using importtest::ImportTest;
using importtest::P;
using importtest::Poly;
using importtest::ScriptResult;

// A unit square facet at height z (file metres), one line a corner.
std::string square(const std::string& tail, double z = 0, const std::string& lead = "") {
    const std::string zs = std::to_string(z);
    return lead + "0 0 " + zs + tail + "\n" + lead + "1 0 " + zs + tail + "\n" + lead + "1 1 " +
           zs + tail + "\n" + lead + "0 1 " + zs + tail + "\n";
}

void expectPoints(const Poly& p, std::initializer_list<engine::Point3> pts) {
    ASSERT_EQ(p.points.size(), pts.size());
    std::size_t i = 0;
    for (const auto& q : pts) {
        EXPECT_DOUBLE_EQ(p.points[i].x, q.x) << "point " << i;
        EXPECT_DOUBLE_EQ(p.points[i].y, q.y) << "point " << i;
        EXPECT_DOUBLE_EQ(p.points[i].z, q.z) << "point " << i;
        ++i;
    }
}

// Scene corners of the square: metres times 10.
const engine::Point3 C0 = P(0, 0, 0), C1 = P(10, 0, 0), C2 = P(10, 10, 0), C3 = P(0, 10, 0);

TEST_F(ImportTest, TwoSidedFacetMakesFourTrianglesCutAlongTheFirstDiagonal) {
    ScriptResult r = importText("mnuOpenMap3DWireASC", "a.asc", square(" 9 3"));
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 4u);
    expectPoints(polys[0], {C0, C2, C1});
    expectPoints(polys[1], {C0, C1, C2});
    expectPoints(polys[2], {C0, C3, C2});
    expectPoints(polys[3], {C0, C2, C3});
    for (const auto& p : polys) {
        EXPECT_EQ(p.groupName, "ASCModel");
        // code 3: shade 9, hue 3 gives (255 - 9, 255 - 9, 9)
        EXPECT_EQ(p.colour, (engine::Rgb{246, 246, 9}));
        EXPECT_EQ(p.name, "");
        EXPECT_TRUE(p.lit);
    }
    // The dialog of the ASC type with its filter, and the log.
    auto opens = r.of("open");
    ASSERT_EQ(opens.size(), 1u);
    EXPECT_EQ(opens[0]["filetype"], "ASC-File");
    EXPECT_EQ(opens[0]["filter"],
              "Map3D PNT-files(*.PNT)|*.PNT|Map3D ASC-files(*.ASC)|*.ASC|All file types (*.*)|*.*");
    const std::string path = dir.file("a.asc").string();
    EXPECT_EQ(ctx().state.strLoadedFiles, path + " opened");
    EXPECT_EQ(ctx().state.txtComment, path + " opened");
    EXPECT_EQ(scripted(ctx()).progress(), 100);
    EXPECT_EQ(ctx().ui.pointer(), 1);
}

TEST_F(ImportTest, OneSidedFacetAndTheFirstLineColours) {
    // The facet takes the code of its first line; the others are not read for colour.
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc",
                                "0 0 0 9 127\n1 0 0 9 3\n1 1 0 9 3\n0 1 0 9 3\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 2u);
    expectPoints(polys[0], {C0, C2, C1});
    expectPoints(polys[1], {C0, C3, C2});
    // 127 - 5 = 122: tens 2, hundreds 1, shade 19, hue 2: (19, 236, 19)
    EXPECT_EQ(polys[0].colour, (engine::Rgb{19, 236, 19}));
    EXPECT_EQ(polys[1].colour, (engine::Rgb{19, 236, 19}));
}

TEST_F(ImportTest, LeadingSeparatorsShiftTheColumnsAndReadTheSame) {
    // Blanks, commas, tabs and their runs, with and without a leading separator.
    const std::string text =
        " 0 0 0 9 13\n"
        ",1,0,0,9,13\n"
        "\t1\t1 , 0 9\t13\n"
        "0,  1,\t0 ,9 ,13\n";
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 2u);
    expectPoints(polys[0], {C0, C2, C1});
    expectPoints(polys[1], {C0, C3, C2});
    // 13 - 5 = 8: shade 9, hue 8: (128 - 9, 255 - 9, 9)
    EXPECT_EQ(polys[0].colour, (engine::Rgb{119, 246, 9}));
}

TEST_F(ImportTest, FourColumnLinesTakeCodeThreeAndOtherShapesReadAsZeros) {
    // Line 2 has three fields: it reads as the origin with code 0 and still counts,
    // so the facet is P0 (0,0,0 code 6), (0,0,0), (1,1,0), (0,1,0).
    const std::string text =
        "0 0 0 6\n"  // four columns: code 3 whatever the fourth says
        "1 0 0\n"
        " 1 1 0 4\n"
        "0 1 0 9\n";
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    // (P0, P2, P1) has two equal points: refused. (P0, P3, P2) stands.
    ASSERT_EQ(polys.size(), 1u);
    expectPoints(polys[0], {C0, C3, C2});
    EXPECT_EQ(polys[0].colour, (engine::Rgb{246, 246, 9}));
}

TEST_F(ImportTest, TrailingLinesOfAnUnfinishedFacetAreDropped) {
    // 4 + 3 lines: one facet; the second square's corners shift nothing before them.
    std::string text = square(" 9 3") + "5 5 5 9 3\n6 5 5 9 3\n6 6 5 9 3\n";
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(polygons().size(), 2u);
    EXPECT_EQ(r.of("msgbox").size(), 0u);
}

TEST_F(ImportTest, CodesOverFiveAndOverTenThousand) {
    // 10004 - 5 = 9999: tens 9, hundreds 99 capped at 37, shade 118, hue 9:
    // (255 - 118, 128 - 118, 118). 10005 - 5 = 10000: shade 9, hue 0: (119, 9, 246).
    std::string text = square(" 9 10004") + square(" 9 10005", 2) + square(" 9 5005", 4);
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 6u);
    EXPECT_EQ(polys[0].colour, (engine::Rgb{137, 10, 118}));
    EXPECT_EQ(polys[2].colour, (engine::Rgb{119, 9, 246}));
    // 5005 - 5 = 5000: tens 0, hundreds 50 capped at 37: shade 37, hue 0: (91, 37, 218)
    EXPECT_EQ(polys[4].colour, (engine::Rgb{91, 37, 218}));
}

TEST_F(ImportTest, VerticeValuesNameTheTrianglesAndCodesAreIgnored) {
    // Values as written when the line is not shifted; through a number when it is.
    const std::string text =
        "0 0 0 9 1.50\n"
        " 1 0 0 9 2.50\n"
        "1 1 0 9 007\n"
        "0 1 0 9\n";  // four columns: no value
    ScriptResult r = importText("mnuOpenVerticeDataWireframePNT", "a.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 2u);
    expectPoints(polys[0], {C0, C2, C1});
    EXPECT_EQ(polys[0].name, "1.50\t007\t2.5");  // v0, v2, v1
    expectPoints(polys[1], {C0, C3, C2});
    EXPECT_EQ(polys[1].name, "1.50\t\t007");  // v0, v3, v2
    // The fifth column is a value, not a code: every facet has code 3.
    EXPECT_EQ(polys[0].colour, (engine::Rgb{246, 246, 9}));
}

TEST_F(ImportTest, AddKeepsTheSceneAndOpenReplacesIt) {
    testsupport::writeFile(dir.file("b.asc"), square(" 9 3", 1));
    ScriptResult r = importText("mnuAddMap3DWireASC", "a.asc", square(" 9 3"),
                                "polygon --name Before 0,0,-5 5,0,-5 0,5,-5\n",
                                "answer open b.asc\nrun mnuAddMap3DWireASC\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 9u);
    EXPECT_EQ(polys[0].name, "Before");
    EXPECT_EQ(ctx().state.strLoadedFiles,
              dir.file("a.asc").string() + " added\r\n" + dir.file("b.asc").string() + " added");
    // Two imports, two top groups of their own without a father.
    int asc = 0;
    for (const auto& g : groups())
        if (g.name == "ASCModel") {
            ++asc;
            EXPECT_EQ(g.father, 0u);
        }
    EXPECT_EQ(asc, 2);

    ScriptResult o = importText("mnuOpenMap3DWireASC", "a.asc", square(" 9 3"),
                                "polygon --name Before 0,0,-5 5,0,-5 0,5,-5\n");
    ASSERT_EQ(o.rc, 0) << o.err;
    polys = polygons();
    ASSERT_EQ(polys.size(), 4u);
    for (const auto& p : polys) EXPECT_EQ(p.groupName, "ASCModel");
}

TEST_F(ImportTest, OpenCentresTheCameraOnTheImportedModel) {
    // A square of 10 m on the side at height 3 m, far from the origin.
    std::string text = "1000 2000 3 9 3\n1010 2000 3 9 3\n1010 2010 3 9 3\n1000 2010 3 9 3\n";
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    // The centre of mass is the mean of the six corners of the two triangles,
    // (P0, P2, P1) and (P0, P3, P2): in the square x is (0 + 10 + 10 + 0 + 0 + 10) / 6
    // = 5 m and y (0 + 10 + 0 + 0 + 10 + 10) / 6 = 5 m; in the scene times 10.
    const engine::Point3 c = ctx().state.dblRotationCentre;
    EXPECT_NEAR(c.x, 10050, 1e-6);
    EXPECT_NEAR(c.y, 20050, 1e-6);
    EXPECT_NEAR(c.z, 30, 1e-6);
    // The camera looks at it from above.
    const auto& cam = ctx().engine.camera();
    EXPECT_NEAR(cam.location.x, 10050, 1);
    EXPECT_NEAR(cam.location.y, 20050, 1);
    EXPECT_GT(cam.location.z, 30);
}

TEST_F(ImportTest, CancelledDialogLeavesTheSceneForAdd) {
    ScriptResult r =
        run("polygon --name Before 0,0,0 5,0,0 0,5,0\n"
            "answer open --cancel\n"
            "run mnuAddMap3DWireASC\n"
            "answer open missing.asc\n"  // a file that is not there counts as cancelled
            "run mnuAddMap3DWireASC\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    ASSERT_EQ(polygons().size(), 1u);
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
    EXPECT_EQ(ctx().state.bolFileCancelled, 0);
    EXPECT_EQ(r.of("msgbox").size(), 0u);
}

TEST_F(ImportTest, EmptyFileMakesAnEmptyGroupAndIsLogged) {
    ScriptResult r = importText("mnuAddMap3DWireASC", "empty.asc", "");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(polygons().size(), 0u);
    int asc = 0;
    for (const auto& g : groups()) asc += g.name == "ASCModel";
    EXPECT_EQ(asc, 1);
    EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("empty.asc").string() + " added");
}

TEST_F(ImportTest, ByteOrderMarkIsNotText) {
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc", "\xEF\xBB\xBF" + square(" 9 3"));
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 2u);
    expectPoints(polys[0], {C0, C2, C1});
    // Only at the start: the same bytes later are part of a field (no number: 0).
    ScriptResult s = importText("mnuOpenMap3DPNTSingle", "b.asc",
                                "0 0 0 9 3\n\xEF\xBB\xBF"
                                "1 0 0 9 3\n1 1 0 9 3\n0 1 0 9 3\n");
    ASSERT_EQ(s.rc, 0) << s.err;
    polys = polygons();
    ASSERT_EQ(polys.size(), 1u);  // P1 read as the origin: (P0, P2, P1) is refused
    expectPoints(polys[0], {C0, C3, C2});
}

TEST_F(ImportTest, ExtremeNumbersAreRefusedOrReadAsTheyStand) {
    // 1e308 m is beyond the scene's range once times 10: that facet's triangles are
    // refused. -0 is 0, "NaN" is no number (0), 1e-300 is a tiny number.
    std::string text = square(" 9 3") +  // stands
                       "1e308 0 0 9 3\n1 0 0 9 3\n1 1 0 9 3\n0 1 0 9 3\n" +
                       "-0 -0 -0 9 3\nNaN 0 0 9 3\n1 1 -0 9 3\n0 1 1e-300 9 3\n";
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    // First facet: 2. Second: (P0, P2, P1) and (P0, P3, P2) both hold the infinite P0.
    // Third: P0 and P1 both the origin, so only (P0, P3, P2).
    ASSERT_EQ(polys.size(), 3u);
    expectPoints(polys[2], {P(0, 0, 0), P(0, 10, 1e-299), P(10, 10, 0)});
    EXPECT_EQ(r.of("msgbox").size(), 0u);
}

TEST_F(ImportTest, CodeBeyondAWholeNumberIsAFaultWithTheWarningBox) {
    std::string text = square(" 9 3") + "0 0 0 9 1e10\n";
    ScriptResult r = importText("mnuAddMap3DWireASC", "a.asc", text,
                                "polygon --name Before 0,0,0 5,0,0 0,5,0\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Warning Message");
    EXPECT_EQ(boxes[0]["text"], "A error occurred or the process was manually interrupted");
    // The fault came while reading: nothing built, nothing logged, the scene as it was.
    ASSERT_EQ(polygons().size(), 1u);
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
    EXPECT_EQ(scripted(ctx()).progress(), 100);
    EXPECT_EQ(ctx().ui.pointer(), 1);
}

TEST_F(ImportTest, BinaryAndVeryWideLinesDoNotBreakTheReader) {
    std::string binary;
    for (int i = 0; i < 4096; ++i) binary.push_back(static_cast<char>((i * 131 + 7) % 256));
    ScriptResult r = importText("mnuAddMap3DWireASC", "bin.asc", binary);
    ASSERT_EQ(r.rc, 0) << r.err;
    // Either the reader's box (a code too large) or an import of what it made of it.
    const bool boxed = r.of("msgbox").size() == 1;
    EXPECT_TRUE(boxed || ctx().state.strLoadedFiles == dir.file("bin.asc").string() + " added");

    // A line of 100 000 fields fits no shape: the origin with code 0, which is
    // where the square's first corner is anyway.
    std::string wide;
    for (int i = 0; i < 100000; ++i) wide += "1 ";
    wide += "\n1 0 0 9 3\n1 1 0 9 3\n0 1 0 9 3\n";
    ScriptResult w = importText("mnuOpenMap3DPNTSingle", "wide.asc", wide);
    ASSERT_EQ(w.rc, 0) << w.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 2u);
    // code 0: shade 9, hue 0: (119, 9, 246)
    EXPECT_EQ(polys[0].colour, (engine::Rgb{119, 9, 246}));
}

TEST_F(ImportTest, LineEndsOfEveryKind) {
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc",
                                "0 0 0 9 3\r\n1 0 0 9 3\r1 1 0 9 3\n0 1 0 9 3");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 2u);
    expectPoints(polys[1], {C0, C3, C2});
}

TEST_F(ImportTest, ProgressMessagesCountTheLinesRead) {
    std::string text;
    for (int i = 0; i < 10; ++i) text += square(" 9 3", i);  // 40 lines
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "a.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    std::vector<std::string> counts;
    for (const auto& c : r.of("comment")) {
        const std::string t = c["text"];
        if (t.rfind("Number of data lines loaded: ", 0) == 0) counts.push_back(t.substr(29));
    }
    EXPECT_EQ(counts, (std::vector<std::string>{"10", "20", "30", "40"}));
}

// A file of many facets along x, one metre apart.
std::string manyFacets(int facets) {
    std::string text;
    text.reserve(static_cast<std::size_t>(facets) * 60);
    for (int i = 0; i < facets; ++i) {
        const std::string x0 = std::to_string(i), x1 = std::to_string(i) + ".5";
        text += x0 + " 0 0 9 3\n" + x1 + " 0 0 9 3\n" + x1 + " 1 0 9 3\n" + x0 + " 1 0 9 3\n";
    }
    return text;
}

TEST_F(ImportTest, InterruptWhileReadingEndsInTheWarningBoxWithNothingBuilt) {
    ScriptResult r = importText("mnuOpenMap3DPNTSingle", "big.asc", manyFacets(5000), "", "",
                                [](core::AppContext& c) {
                                    scripted(c).onPump = [&c] {
                                        if (c.state.lngProgressLines >= 3000)
                                            c.state.bolInterruptProcess = true;
                                    };
                                });
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Warning Message");
    // Events run every 1024 lines; the one after line 3072 sees 3071 counted and
    // sets the flag, which stops the reading before line 3073.
    EXPECT_EQ(ctx().state.lngProgressLines, 3072);
    EXPECT_EQ(polygons().size(), 0u);
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
}

TEST_F(ImportTest, InterruptWhileBuildingKeepsWhatWasBuilt) {
    ScriptResult r = importText("mnuAddMap3DWireASC", "big.asc", manyFacets(5000), "", "",
                                [](core::AppContext& c) {
                                    scripted(c).onPump = [&c] {
                                        if (c.engine.polygon_count() >= 400)
                                            c.state.bolInterruptProcess = true;
                                    };
                                });
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "A error occurred or the process was manually interrupted");
    // Events run every 64 facets: after the 128th (512 triangles) the flag is set,
    // and the building stops before the 129th.
    EXPECT_EQ(polygons().size(), 512u);
    // The scene stays usable: the light of the error handler reached the polygons.
    EXPECT_TRUE(polygons()[0].lit);
}

TEST_F(ImportTest, FaultDeepInALargeFileComesAfterTheLinesBeforeIt) {
    // 40 000 lines read in several pieces; line 30 001 has a code no whole number holds.
    std::string text = manyFacets(7500);
    text += "0 0 0 9 1e12\n" + manyFacets(2500);
    ScriptResult r = importText("mnuAddMap3DWireASC", "big.asc", text);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Warning Message");
    std::string last;
    for (const auto& c : r.of("comment")) {
        const std::string t = c["text"];
        if (t.rfind("Number of data lines loaded: ", 0) == 0) last = t;
    }
    EXPECT_EQ(last, "Number of data lines loaded: 30000");
    EXPECT_EQ(ctx().state.lngProgressLines, 30000);
    EXPECT_EQ(polygons().size(), 0u);
}

TEST_F(ImportTest, FileMenuIsHeldWhileAnImportRuns) {
    int heldPumps = 0, openPumps = 0;
    ScriptResult r = importText(
        "mnuAddMap3DWireASC", "big.asc", manyFacets(2000), "", "", [&](core::AppContext& c) {
            scripted(c).onPump = [&c, &heldPumps, &openPumps] {
                // importing: after the file was chosen, with the hourglass up
                const auto& lines = scripted(c).transcript();
                const bool chosen =
                    !lines.empty() &&
                    std::any_of(lines.begin(), lines.end(), [](const std::string& l) {
                        return l.find("\"kind\": \"open\"") != std::string::npos;
                    });
                if (!chosen || c.ui.pointer() != 11) return;
                (c.commands.find("mnuOpenMap3DWireASC")->enabled ? openPumps : heldPumps) += 1;
            };
        });
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_GT(heldPumps, 0);
    EXPECT_EQ(openPumps, 0);
    EXPECT_TRUE(ctx().commands.find("mnuOpenMap3DWireASC")->enabled);
    EXPECT_FALSE(ctx().commands.find("mnuOpenDatamineStringText")->enabled);  // no reader
}

TEST_F(ImportTest, LargeGeneratedFileImportsWhole) {
    ScriptResult r = importText("mnuAddMap3DWireASC", "big.asc", manyFacets(20000));
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(polygons().size(), 80000u);
    EXPECT_EQ(r.of("msgbox").size(), 0u);
}

}  // namespace
