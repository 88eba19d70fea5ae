// The colour map by data and the stress points import, end to end as a script
// drives them.
#include "ScriptFixture.h"
#include "analysis/AnalysisRegistration.h"
#include "analysis/StressPoints.h"

namespace {

using scripttest::ScriptResult;
using scripttest::ScriptTest;

void registerAnalysis(core::AppContext& ctx) { analysis::registerAnalysis(ctx); }

std::string square(double x, const std::string& var, const std::string& name) {
    auto n = [](double v) { return std::to_string(v); };
    return "polygon --name \"" + name + "\" " + n(x + 10) + ",10,0 " + n(x + 10) + ",-10,0 " +
           n(x - 10) + ",-10,0 " + n(x - 10) + ",10,0 > " + var + "\n";
}

TEST_F(ScriptTest, ColourMapByDataFromTheMenu) {
    ScriptResult r = runScript(
        square(0, "A", "CM_Point\\t0") + square(30, "B", "CM_Point\\t75") +
            square(60, "C", "CM_Point") +
            "answer form frm29_ColourMap accept optGeneralDataPoints=1 cmdObtainExtremes=1 "
            "chkInverseColourMap=0 cboLoadColumn=1\n"
            "run mnuSelectColourMap1\n"
            "get frm29_ColourMap.cboMax\n"
            "call polygon_get_color $A\n"
            "call polygon_get_color $B\n"
            "call polygon_get_color $C\n"
            "call P_fncRockCodeIndex HW\n",
        registerAnalysis);
    ASSERT_NE(r.rc, -1);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto gets = r.of("get");
    ASSERT_EQ(gets.size(), 1u);
    EXPECT_EQ(gets[0]["value"], "75");
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 7u);
    // Extremes 0 and 75 on the normal map: blue at the minimum, red at the maximum.
    EXPECT_EQ(calls[3]["result"], nlohmann::json::parse("[0,0,255]"));
    EXPECT_EQ(calls[4]["result"], nlohmann::json::parse("[255,0,0]"));
    EXPECT_EQ(calls[5]["result"], nlohmann::json::parse("[128,128,128]"));
    EXPECT_EQ(calls[6]["result"], 13);
}

TEST_F(ScriptTest, StressPointsImportAndTheFaultBox) {
    testsupport::writeFile(dir.file("points.MCF"),
                           "1\t0\t0\t0\t50\t5\n2\t1\t2\t3\t50\t5\n2\t4\t5\t6\t100\t0.2\n"
                           "2\t7\t8\t9\t100\t0\n3\t0\t0\t0\t50\t5\n");
    testsupport::writeFile(dir.file("short.MCF"), "1\t0\t0\t0\t50\t5\n1\t1\n");
    ScriptResult r = runScript(
        "answer open points.MCF\n"
        "answer form frm28_ImportFOSData accept optFOS=1 cboMinStep=2 optCube=1\n"
        "run mnuSphereFailCriteria\n"
        "answer open short.MCF\n"
        "answer form frm28_ImportFOSData accept cboMinStep=1 cboSig3CO=-100\n"
        "run mnuSphereFailCriteria\n",
        registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto& eng = ctx().engine;
    std::vector<engine::Handle> groups;
    for (engine::Handle g = eng.group_get_first_group(); g != 0; g = eng.group_get_next(g))
        if (eng.entity_get_name(g) == analysis::kPointDataGroup) groups.push_back(g);
    ASSERT_EQ(groups.size(), 2u);
    // Step 2 keeps the first line only: the second has S3 0.2, the third S3 0.
    engine::Handle marker = eng.group_get_first_included_group(groups[0]);
    ASSERT_NE(marker, 0u);
    EXPECT_EQ(eng.group_get_next_included_group(groups[0], marker), 0u);
    const engine::Handle p = eng.group_get_first_polygon(marker);
    EXPECT_EQ(eng.entity_get_name(p), "CM_s_FOS\t2\t50\t5\t1.9\t80MPa\t30\xC2\xBA");
    EXPECT_EQ(eng.polygon_get_color(p), (engine::Rgb{10, 10, 245}));
    EXPECT_EQ(eng.group_get_number_of_polygons(marker), 6);  // a cube
    auto comments = r.of("comment");
    bool added = false;
    for (const auto& c : comments)
        added = added || c["text"].get<std::string>().find("points.MCF added") != std::string::npos;
    EXPECT_TRUE(added);
    // The short line ends the second import with the box; its first point stands.
    auto boxes = r.of("msgbox");
    ASSERT_FALSE(boxes.empty());
    EXPECT_EQ(boxes.back()["title"], "Information error");
    EXPECT_NE(eng.group_get_first_included_group(groups[1]), 0u);
}

}  // namespace
