// The centre exports and the polygon data list.

#include "ExportFixture.h"
#include "persistence/ExportCentres.h"

namespace {

using engine::Handle;
using exporttest::crlfLines;
using exporttest::ExportTest;

class CentreExport : public ExportTest {
protected:
    // A triangle whose points average to (10, 20, z), facing up.
    Handle centred(Handle group, double z, const std::string& name = "") {
        return poly(group, {{0, 0, z}, {0, 30, z}, {30, 30, z}}, name);
    }
    Handle groupOf(int polygons, double z, const std::string& name) {
        const Handle g = ctx.engine.group_create("G");
        for (int i = 0; i < polygons; ++i) centred(g, z, i == 0 ? name : "");
        return g;
    }
};

TEST_F(CentreExport, GroupExportKeepsOutGroupsOfTwentyEightPolygons) {
    groupOf(28, 0, "marker");
    groupOf(29, 50, "Stope A\r\nRock\tgood");
    const auto lines = crlfLines(exportTo("g.txt", [&] { run("mnuExportGroupCentreAndData"); }));
    EXPECT_EQ(lines, (std::vector<std::string>{"1\t2\t5\tStope A\tRock\tgood"}));
    EXPECT_EQ(records("save").at(0)["filetype"], "TXT-File");
}

TEST_F(CentreExport, EntityCentresWithDataLeaveOutTheGroupHoldingEverything) {
    groupOf(1, 0, "one\r\nline two");
    groupOf(2, 100, "two");
    const auto lines = crlfLines(exportTo("e.txt", [&] { run("mnuExportEntityCentreAndData"); }));
    EXPECT_EQ(lines, (std::vector<std::string>{"1\t2\t0\tone\tline two", "1\t2\t10\ttwo"}));

    // With one entity alone, it holds as many polygons as the visible set: left out.
    ctx.engine.polygon_disable(ctx.engine.polygon_get_first_polygon());
    const auto alone = crlfLines(exportTo("e1.txt", [&] { run("mnuExportCentreAndData"); }));
    EXPECT_TRUE(alone.empty()) << alone.size();
}

TEST_F(CentreExport, EntityOffsetPointsLieTheDepthAlongTheNormal) {
    groupOf(1, 0, "a");
    groupOf(2, 100, "b");
    ui.answerInput("0.75");
    const auto lines = crlfLines(exportTo("o.txt", [&] { run("mnuExportEntityDoubleCentres"); }));
    EXPECT_EQ(lines,
              (std::vector<std::string>{"1\t2\t0.75", "1\t2\t0", "1\t2\t10.75", "1\t2\t10"}));
    auto inputs = records("input");
    ASSERT_EQ(inputs.size(), 1u);
    EXPECT_EQ(inputs[0]["title"], "Sample Point Depth");
    EXPECT_EQ(inputs[0]["prompt"], "Fill depth for the sample point into the rockmass");
    EXPECT_EQ(inputs[0]["default"], "0.75");
}

TEST_F(CentreExport, EmptyDepthEndsTheExportBeforeTheDialog) {
    groupOf(1, 0, "a");
    groupOf(1, 10, "b");
    ui.answerInput(std::string());
    run("mnuExportEntityDoubleCentres");
    ui.answerInput(std::nullopt);
    run("mnuExportEntityDoubleCentres");
    EXPECT_TRUE(records("save").empty());
}

TEST_F(CentreExport, PolygonCentresAndOffsetPoints) {
    const Handle g = ctx.engine.group_create("G");
    centred(g, 0);
    ctx.engine.polygon_disable(centred(g, 40));
    poly(g, {{0, 0, 0}, {0, 0, 60}, {0, 60, 60}, {0, 60, 0}});  // a wall, centre (0, 30, 30)
    auto text = exportTo("p.txt", [&] { persistence::P_subExportCentres(ctx, "Poly", 0, 0); });
    EXPECT_EQ(crlfLines(text), (std::vector<std::string>{"1\t2\t0", "0\t3\t3"}));
    // 2 m: 20 scene units along each front normal, (0, 0, 1) and (1, 0, 0).
    ui.answerInput("2");
    text = exportTo("q.txt", [&] { persistence::P_subExportCentres(ctx, "Poly", -1, 0); });
    EXPECT_EQ(crlfLines(text), (std::vector<std::string>{"1\t2\t2", "2\t3\t3"}));
}

TEST_F(ExportTest, PolygonDataLinesStartWithATab) {
    const Handle g = ctx.engine.group_create("G");
    triangleAt(g, 0, 0, 0, "PR_Note\r\nfirst\r\nsecond");
    ctx.engine.polygon_disable(triangleAt(g, 0, 0, 0, "hidden"));
    triangleAt(g, 0, 0, 0, "");
    const auto lines = crlfLines(exportTo("d.txt", [&] { run("mnuExportPolyData"); }));
    EXPECT_EQ(lines, (std::vector<std::string>{"\tPR_Note\tfirst\tsecond", "\t"}));
    std::string last;
    for (const auto& c : records("comment")) last = c["text"];
    EXPECT_EQ(last, "Number of lines: 2");
}

}  // namespace
