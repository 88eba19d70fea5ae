// The wireframe DXF and the Map3D point lists, line by line, and the frame
// every export through the temporary file shares.

#include <filesystem>

#include "ExportFixture.h"
#include "persistence/ExportDxf.h"

namespace {

using engine::Point3;
using exporttest::crlfLines;
using exporttest::ExportTest;

const char* kEmptyDxf = "  0\r\nSECTION\r\n  2\r\nENTITIES\r\n  0\r\nENDSEC\r\n  0\r\nEOF\r\n";

TEST_F(ExportTest, EmptySceneGivesOnlyTheSectionStartAndTail) {
    const std::string text = exportTo("empty.dxf", [&] { run("mnuExportDXFWireframes"); });
    EXPECT_EQ(text, kEmptyDxf);
    auto saves = records("save");
    ASSERT_EQ(saves.size(), 1u);
    EXPECT_EQ(saves[0]["filetype"], "DXF-File");
}

TEST_F(ExportTest, DxfFaceOfATriangleRepeatsItsThirdCornerWithPackedColour) {
    const auto g = ctx.engine.group_create("G");
    poly(g, {{10, 20, 30}, {0, 0, 0}, {25, -5, 3}}, "tri", {10, 20, 30});
    const std::string text = exportTo("tri.dxf", [&] { run("mnuExportDXFWireframes"); });
    // 10 + 256 * 20 + 65536 * 30; scene tenths to metres, shortest text (3 * 0.1 is
    // not 0.3 in doubles).
    const std::vector<std::string> expected = {"  0",  "SECTION",
                                               "  2",  "ENTITIES",
                                               "  0",  "3DFACE",
                                               "  8",  "0",
                                               "  62", "1971210",
                                               " 10",  "1",
                                               " 20",  "2",
                                               " 30",  "3",
                                               " 11",  "0",
                                               " 21",  "0",
                                               " 31",  "0",
                                               " 12",  "2.5",
                                               " 22",  "-0.5",
                                               " 32",  "0.30000000000000004",
                                               " 13",  "2.5",
                                               " 23",  "-0.5",
                                               " 33",  "0.30000000000000004",
                                               "  0",  "ENDSEC",
                                               "  0",  "EOF"};
    EXPECT_EQ(crlfLines(text), expected);
}

TEST_F(ExportTest, DxfWritesFourCornersOfLargerPolygonsAndSkipsHiddenOnes) {
    const auto g = ctx.engine.group_create("G");
    poly(g, {{0, 0, 0}, {0, 10, 0}, {10, 10, 0}, {10, 0, 0}}, "quad", {0, 0, 1});
    const auto hidden = poly(g, {{0, 0, 5}, {0, 10, 5}, {10, 10, 5}}, "hidden", {1, 0, 0});
    ctx.engine.polygon_disable(hidden);
    poly(g, {{0, 0, 0}, {0, 20, 0}, {10, 30, 0}, {20, 20, 0}, {20, 0, 0}}, "penta", {0, 1, 0});
    const auto lines = crlfLines(exportTo("q.dxf", [&] { run("mnuExportDXFWireframes"); }));
    // Head 5, each face 5 + 4 * 6 + 1 = 30, tail 3.
    ASSERT_EQ(lines.size(), 5u + 30u + 30u + 3u);
    EXPECT_EQ(lines[9], "65536");  // blue 1
    EXPECT_EQ(lines[28], " 13");
    EXPECT_EQ(lines[29], "1");  // the quadrilateral's fourth corner (10, 0, 0)
    EXPECT_EQ(lines[32], " 33");
    EXPECT_EQ(lines[34], "  0");
    EXPECT_EQ(lines[39], "256");  // green 1: the hidden face is not there
    // The pentagon's fourth corner is the last one written.
    EXPECT_EQ(lines[58], " 13");
    EXPECT_EQ(lines[59], "2");
    EXPECT_EQ(lines[61], "2");
    EXPECT_EQ(lines[64], "  0");
}

TEST_F(ExportTest, DxfOfAnotherTypeHasNoFaces) {
    triangleAt(ctx.engine.group_create("G"), 0, 0, 0);
    std::string text;
    text = exportTo("other.dxf", [&] { persistence::P_subExportDXF(ctx, "OtherDXF"); });
    EXPECT_EQ(text, kEmptyDxf);
}

TEST_F(ExportTest, FileCoordinatesCarryTheOffsetAndTheWorldIsMovedBack) {
    const auto g = ctx.engine.group_create("G");
    const auto p = poly(g, {{1010, 20, -30}, {1000, 0, 0}, {1025, -5, 3}}, "tri");
    ctx.state.dblCoordOffset = {1000, 0, 10};
    const auto lines = crlfLines(exportTo("off.pnt", [&] { run("mnuExportMap3DWireframes3"); }));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "1\t2\t-4\t3\t10");
    EXPECT_EQ(lines[1], "0\t0\t-1\t2\t10");
    Point3 first;
    ctx.engine.point_get_xyz(ctx.engine.polygon_get_first_point(p), first);
    EXPECT_EQ(first, (Point3{1010, 20, -30}));
}

TEST_F(ExportTest, PointsOfATriangleAndAPentagon) {
    const auto g = ctx.engine.group_create("G");
    poly(g, {{10, 0, 0}, {20, 0, 0}, {20, 10, 0}}, "tri");
    std::vector<std::string> three = {"1\t0\t0\t3\t10", "2\t0\t0\t2\t10", "2\t1\t0\t2\t10"};
    EXPECT_EQ(crlfLines(exportTo("t3.pnt", [&] { run("mnuExportMap3DWireframes3"); })), three);
    auto four = three;
    four.push_back("1\t0\t0\t2\t10");
    EXPECT_EQ(crlfLines(exportTo("t4.pnt", [&] { run("mnuExportMap3DWireframes4"); })), four);

    ctx.engine.polygon_disable(ctx.engine.polygon_get_first_polygon());
    poly(g, {{0, 0, 0}, {0, 20, 0}, {10, 30, 0}, {20, 20, 0}, {20, 0, 0}}, "penta");
    const std::vector<std::string> penta3 = {"0\t0\t0\t3\t10", "0\t2\t0\t2\t10", "1\t3\t0\t2\t10"};
    EXPECT_EQ(crlfLines(exportTo("p3.pnt", [&] { run("mnuExportMap3DWireframes3"); })), penta3);
    const std::vector<std::string> penta4 = {"0\t0\t0\t3\t10", "0\t2\t0\t2\t10", "1\t3\t0\t2\t10",
                                             "2\t2\t0\t2\t10", "2\t0\t0\t2\t10", "0\t0\t0\t2\t10"};
    EXPECT_EQ(crlfLines(exportTo("p4.pnt", [&] { run("mnuExportMap3DWireframes4"); })), penta4);
}

TEST_F(ExportTest, Points4HoldsTheClosingLineUntilTheNextPolygonStarts) {
    const auto g = ctx.engine.group_create("G");
    poly(g, {{0, 0, 0}, {0, 10, 0}, {10, 10, 0}});
    poly(g, {{0, 0, 10}, {0, 10, 10}, {10, 10, 10}});
    const std::vector<std::string> expected = {"0\t0\t0\t3\t10", "0\t1\t0\t2\t10", "1\t1\t0\t2\t10",
                                               "0\t0\t0\t2\t10", "0\t0\t1\t3\t10", "0\t1\t1\t2\t10",
                                               "1\t1\t1\t2\t10", "0\t0\t1\t2\t10"};
    EXPECT_EQ(crlfLines(exportTo("two.pnt", [&] { run("mnuExportMap3DWireframes4"); })), expected);
}

TEST_F(ExportTest, BufferIsFlushedEachTimeTheBarComesRound) {
    const auto g = ctx.engine.group_create("G");
    for (int i = 0; i < 150; ++i) triangleAt(g, 0, 0, i);
    const auto lines = crlfLines(exportTo("many.pnt", [&] { run("mnuExportMap3DWireframes3"); }));
    ASSERT_EQ(lines.size(), 450u);
    EXPECT_EQ(lines[447], "0\t0\t14.9\t3\t10");
    // The count shows when the bar passes 99 (the hundredth polygon) and at the end.
    std::vector<std::string> counts;
    for (const auto& c : records("comment")) {
        const std::string t = c["text"];
        if (t.rfind("Number of polygons: ", 0) == 0) counts.push_back(t);
    }
    EXPECT_EQ(counts,
              (std::vector<std::string>{"Number of polygons: 100", "Number of polygons: 150"}));
    // The temporary file stays behind, the same as the saved one.
    EXPECT_EQ(testsupport::readFile(tempFile()), testsupport::readFile(dir.file("many.pnt")));
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(ExportTest, InterruptEndsTheWalkButWhatStandsIsOffered) {
    // How often events run in an export with nothing to walk.
    int pumps = 0;
    ui.onPump = [&] { ++pumps; };
    exportTo("none.pnt", [&] { run("mnuExportMap3DWireframes3"); });
    const int idle = pumps;

    const auto g = ctx.engine.group_create("G");
    triangleAt(g, 0, 0, 0);
    triangleAt(g, 0, 0, 10);
    // The interrupt button, pressed while the first polygon's events run.
    pumps = 0;
    ui.onPump = [&] {
        if (++pumps == idle + 1) ctx.state.bolInterruptProcess = true;
    };
    const auto lines = crlfLines(exportTo("stop.pnt", [&] { run("mnuExportMap3DWireframes3"); }));
    ui.onPump = nullptr;
    EXPECT_EQ(lines,
              (std::vector<std::string>{"0\t0\t0\t3\t10", "0\t1\t0\t2\t10", "1\t1\t0\t2\t10"}));
}

}  // namespace
