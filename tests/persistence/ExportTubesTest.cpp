// The tube exports and the seismic list: ends of the tubes of the visible set,
// the lines of each format, and the scene left as it was.

#include "ExportFixture.h"
#include "persistence/ExportVisibleSet.h"

namespace {

using engine::Handle;
using engine::Point3;
using exporttest::crlfLines;
using exporttest::ExportTest;

class TubeExport : public ExportTest {
protected:
    // A square tube of side 10 from (x, y, z0) to (x, y, z1), its four sides built
    // start ring, end ring, end ring, start ring, as the tube builders do.
    Handle tube(double x, double y, double z0, double z1, const std::string& name,
                const char* groupName = "StringPolyGroup") {
        const Handle g = ctx.engine.group_create(groupName);
        const double dx[4] = {-5, 5, 5, -5}, dy[4] = {-5, -5, 5, 5};
        for (int s = 0; s < 4; ++s) {
            const int t = (s + 1) % 4;
            poly(g,
                 {{x + dx[s], y + dy[s], z0},
                  {x + dx[s], y + dy[s], z1},
                  {x + dx[t], y + dy[t], z1},
                  {x + dx[t], y + dy[t], z0}},
                 s == 0 ? name : "");
        }
        return g;
    }
};

TEST_F(TubeExport, VentSimWritesTheSecondEndsHeightInSceneUnits) {
    tube(100, 200, 0, 1000, "Drive 1");  // 100 m high
    const auto lines = crlfLines(exportTo("v.txt", [&] { run("mnuExportVentSimStrings"); }));
    EXPECT_EQ(lines, (std::vector<std::string>{"10\t20\t0\t10\t20\t1000\t#\tDrive 1"}));
    EXPECT_EQ(records("save").at(0)["filetype"], "TXT-File");
}

TEST_F(TubeExport, Map3DWritesBothEndsCommaSeparatedAndSkipsWhatIsNoTube) {
    tube(100, 200, 0, 1000, "A");
    triangleAt(ctx.engine.group_create("Not a tube"), 0, 0, 0);
    const Handle hidden = tube(0, 0, 0, 50, "hidden");
    ctx.engine.polygon_disable(ctx.engine.group_get_first_polygon(hidden));
    tube(-50, 0, 20, 30, "B", "CylPolyGroup");
    const auto lines = crlfLines(exportTo("m.pnt", [&] { run("mnuExportMap3DStrings"); }));
    EXPECT_EQ(lines,
              (std::vector<std::string>{"10,20,0,3", "10,20,100,2", "-5,0,2,3", "-5,0,3,2"}));
    EXPECT_EQ(records("save").at(0)["filetype"], "PNT-File");
}

TEST_F(TubeExport, DatamineStringsNumberThePointsAndTheTubes) {
    tube(100, 200, 0, 1000, "first");
    tube(0, 0, 10, 20, "second");
    const auto lines = crlfLines(exportTo("d.dat", [&] { run("mnuExportDatamineStrings"); }));
    EXPECT_EQ(lines, (std::vector<std::string>{
                         "1\t10\t20\t0\t1\t1\t#\tfirst", "2\t10\t20\t100\t1\t2\t#\tfirst",
                         "3\t0\t0\t1\t2\t1\t#\tsecond", "4\t0\t0\t2\t2\t2\t#\tsecond"}));
    EXPECT_EQ(records("save").at(0)["filetype"], "Datamine Strings");
}

TEST_F(TubeExport, TheVisibleSetGivesEveryGroupItsFatherBack) {
    const Handle level = ctx.engine.group_create("Level");
    const Handle a = tube(0, 0, 0, 10, "a");
    const Handle b = tube(0, 0, 10, 20, "b");
    ctx.engine.group_set_father_group(a, level);
    ctx.engine.group_set_father_group(b, a);
    ctx.state.dblCoordOffset = {0, 0, 10};
    int groupsBefore = 0;
    for (Handle g = ctx.engine.group_get_first_group(); g; g = ctx.engine.group_get_next(g))
        ++groupsBefore;
    const auto lines = crlfLines(exportTo("m.pnt", [&] { run("mnuExportMap3DStrings"); }));
    // Both tubes, with the offset taken into the file.
    EXPECT_EQ(lines, (std::vector<std::string>{"0,0,-1,3", "0,0,0,2", "0,0,0,3", "0,0,1,2"}));
    EXPECT_EQ(ctx.engine.group_get_father_group(a), level);
    EXPECT_EQ(ctx.engine.group_get_father_group(b), a);
    int groupsAfter = 0;
    for (Handle g = ctx.engine.group_get_first_group(); g; g = ctx.engine.group_get_next(g))
        ++groupsAfter;
    EXPECT_EQ(groupsAfter, groupsBefore);
    Point3 p;
    ctx.engine.point_get_xyz(
        ctx.engine.polygon_get_first_point(ctx.engine.group_get_first_polygon(b)), p);
    EXPECT_EQ(p, (Point3{-5, -5, 10}));
}

TEST_F(TubeExport, GroupAllVisibleTakesOnlyGroupsWithAnEnabledFirstPolygon) {
    const Handle shown = ctx.engine.group_create("shown");
    triangleAt(shown, 0, 0, 0);
    const Handle hidden = ctx.engine.group_create("hidden");
    ctx.engine.polygon_disable(triangleAt(hidden, 0, 0, 0));
    triangleAt(hidden, 0, 0, 10);  // enabled, but not the first
    ctx.engine.group_create("empty");
    const Handle all = persistence::P_fncGroupAllVisible(ctx.engine);
    ASSERT_NE(all, 0u);
    EXPECT_EQ(ctx.engine.group_get_father_group(shown), all);
    EXPECT_EQ(ctx.engine.group_get_father_group(hidden), 0u);
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(all), 1);
}

TEST_F(ExportTest, SeismicListWritesEachVisibleGroupsFirstNameAsItStands) {
    const std::string event = "PR_SEvnt\tEvent 1\r\nMagnitude\t1.5\r\nDate\t2026-11-22";
    triangleAt(ctx.engine.group_create("E1"), 0, 0, 0, event);
    const Handle off = ctx.engine.group_create("E2");
    ctx.engine.polygon_disable(triangleAt(off, 0, 0, 0, "PR_SEvnt\thidden"));
    triangleAt(ctx.engine.group_create("E3"), 0, 0, 0, "PR_SEvnt\tEvent 3");
    const std::string text = exportTo("s.txt", [&] { run("mnuExportSeisInfo"); });
    EXPECT_EQ(text, event + "\r\n" + "PR_SEvnt\tEvent 3\r\n");
    EXPECT_EQ(records("save").at(0)["filetype"], "Seismic Data");
}

}  // namespace
