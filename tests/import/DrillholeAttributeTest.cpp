// Logged intervals along the flat hole: the column test, the ways an interval meets
// the survey intervals, and the two kinds of piece.

#include "DrillholeTestUtil.h"

namespace {

using namespace drillholetest;
using importtest::P;
using importtest::ScriptResult;

TEST_F(DrillholeTest, AttributeAcrossThreeSurveyIntervalsMakesThreeCylinders) {
    write("a.atr", "H 5 25 7 x -1\n");
    ScriptResult r = run("clock 2024-01-02 03:04:05\n" + hole(kFlatHole) + attributeRun("a.atr"));
    ASSERT_EQ(r.rc, 0) << r.err;
    // Each piece: start cap, end cap, eight sides.
    auto polys = named("CM_DHAtr");
    ASSERT_EQ(polys.size(), 30u);
    const char* dirs[] = {"90\t0", "180\t0", "270\t0"};
    const engine::Point3 from[] = {P(0, -50, 0), P(0, -100, 0), P(-100, -100, 0)};
    const engine::Point3 to[] = {P(0, -100, 0), P(-100, -100, 0), P(-100, -50, 0)};
    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const auto& cap = polys[i * 10];
        EXPECT_EQ(cap.name, std::string("CM_DHAtr\tH\r\n5\t25\r\n") + dirs[i] + "\r\n7\tx\t-1");
        EXPECT_LT(distance(centre(cap), from[i]), 1e-6);
        EXPECT_LT(distance(centre(polys[i * 10 + 1]), to[i]), 1e-6);
        EXPECT_EQ(cap.colour, (engine::Rgb{179, 13, 13}));
        const engine::Handle holeGroup = ctx().engine.group_get_father_group(cap.group);
        EXPECT_EQ(groupName(holeGroup), "DH Attribute hole");
        EXPECT_EQ(groupName(ctx().engine.group_get_father_group(holeGroup)), "DH Attribute data");
    }
    // The colour map reads attribute N from field N + 5.
    auto f = nameFields(polys[0].name);
    ASSERT_EQ(f.size(), 9u);
    EXPECT_EQ(f[6], "7");
    EXPECT_EQ(f[8], "-1");
    EXPECT_TRUE(hasComment(r, "File is tested for correctness"));
    EXPECT_TRUE(hasComment(r, "File appears to be correctly formatted"));
    EXPECT_TRUE(hasComment(r, "Start time: 03:04:05   Start reading the file"));
    EXPECT_EQ(r.of("comment").back()["text"],
              "Start time: 03:04:05   End time: 03:04:05   Number of lines read: 1");
}

TEST_F(DrillholeTest, AttributeInsideAndAlongIntervalsAsTriangles) {
    // Inside the second interval, exactly the second, exactly the first, from
    // before the collar into the first; an unknown hole.
    write("a.atr", "H 12 18 1\nH 10 20 2\nH 0 10 3\nH -5 5 4\nQ 0 5 1\n");
    ScriptResult r = run(hole(kFlatHole) + attributeRun("a.atr", false));
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(distinctNames("CM_DHAtr"),
              (std::vector<std::string>{
                  "CM_DHAtr\tH\r\n12\t18\r\n180\t0\r\n1", "CM_DHAtr\tH\r\n10\t20\r\n180\t0\r\n2",
                  "CM_DHAtr\tH\r\n0\t10\r\n90\t0\r\n3", "CM_DHAtr\tH\r\n-5\t5\r\n90\t0\r\n4"}));
    // Three sides a piece, straight in the hole's group; Q gets a group of its own.
    auto polys = named("CM_DHAtr");
    ASSERT_EQ(polys.size(), 12u);
    for (const auto& p : polys) EXPECT_EQ(p.groupName, "DH Attribute hole");
    EXPECT_EQ(groupsNamed("DH Attribute hole").size(), 2u);
    EXPECT_EQ(groupsNamed("3WedgePolyGroup").size(), 0u);
    // The second interval runs along -x from (0, -100): 12-18 is x from -20 to -80,
    // the end rings standing across the line.
    engine::Point3 lo, hi;
    bounds({polys.begin(), polys.begin() + 3}, lo, hi);
    EXPECT_NEAR(lo.x, -80, 1e-6);
    EXPECT_NEAR(hi.x, -20, 1e-6);
}

TEST_F(DrillholeTest, AttributeColumnCountThatVariesStopsBeforeAnyPrompt) {
    write("a.atr", "H 0 5 1 2\nH 5 10 1\n");
    ScriptResult r = run(hole(kFlatHole) + attributeRun("a.atr"));
    EXPECT_NE(r.rc, 0);  // the attribute prompts' answers stay queued
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 4u);
    EXPECT_EQ(boxes[3]["title"], "Error in attributes file, first correct");
    EXPECT_EQ(boxes[3]["text"],
              "The number of columns in the file is not constant, fill all spaces with -1 and "
              "ensure the number of columns are the same for all rows");
    EXPECT_EQ(named("CM_DHAtr").size(), 0u);
    EXPECT_EQ(groupsNamed("DH Attribute data").size(), 0u);
}

TEST_F(DrillholeTest, AttributeLeadingSeparatorsOddNumbersAndBytes) {
    write("a.atr", ",H,12,18,1\n H 2 4 1\n");
    ScriptResult r = run(hole(kFlatHole) + attributeRun("a.atr"));
    ASSERT_EQ(r.rc, 0) << r.err;
    ASSERT_EQ(distinctNames("CM_DHAtr").size(), 2u);
    EXPECT_EQ(distinctNames("CM_DHAtr")[0], "CM_DHAtr\tH\r\n12\t18\r\n180\t0\r\n1");
    // 1e308 to 0 is no interval; -0 to 1e308 covers the whole hole (three pieces);
    // NaN reads 0, so 0 to 0 is an empty piece at the collar.
    write("a.atr", "\xEF\xBB\xBFH 1e308 -0 NaN\nH -0 1e308 1\nH NaN NaN 1\n");
    r = run(hole(kFlatHole) + attributeRun("a.atr"));
    ASSERT_EQ(r.rc, 0) << r.err;
    auto names = distinctNames("CM_DHAtr");
    ASSERT_EQ(names.size(), 4u);
    EXPECT_EQ(names[3], "CM_DHAtr\tH\r\nNaN\tNaN\r\n90\t0\r\n1");
    std::string wide;
    for (int i = 0; i < 100000; ++i) wide += "1 ";
    write("a.atr", "H 1 2 " + wide + "\n");
    r = run(hole(kFlatHole) + attributeRun("a.atr"));
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(distinctNames("CM_DHAtr").size(), 1u);
}

}  // namespace
