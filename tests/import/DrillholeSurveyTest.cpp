// Collars, surveys and the desurvey step; the faults and interrupts every drillhole
// reader shares.

#include <cctype>
#include <cmath>

#include "DrillholeTestUtil.h"
#include "import/DrillholeReaders.h"

namespace {

using namespace drillholetest;
using importtest::ScriptResult;

constexpr double kDeg = 3.14159265358979 / 180;

TEST(DrillholeStep, AzimuthTurnsFromXOrFromYByTheAxisConvention) {
    // 10 m at plunge 60: 5 m across, 10 sin 60 down. Axis 0 turns from +x towards
    // -y, axis 0.5 from +y towards +x; a negative plunge climbs, a negative length
    // walks back.
    const double c30 = std::cos(30 * kDeg), s30 = std::sin(30 * kDeg), s60 = std::sin(60 * kDeg);
    struct Case {
        engine::Point3 from;
        double length, az, pl;
        float axis;
        engine::Point3 to;
    } cases[] = {{{1, 2, 3}, 10, 30, 60, 0.0f, {1 + 5 * c30, 2 - 5 * s30, 3 - 10 * s60}},
                 {{1, 2, 3}, 10, 30, 60, 0.5f, {1 + 2.5, 2 + 5 * c30, 3 - 10 * s60}},
                 {{0, 0, 0}, -4, 90, -30, 0.0f, {0, 4 * c30, -4 * s30}}};
    for (const Case& c : cases) {
        engine::Point3 end;
        double az = c.az, pl = c.pl;
        importers::P_subNextHolePoint(c.from, c.length, az, pl, end, c.axis);
        EXPECT_LT(distance(end, c.to), 1e-9) << c.az << " " << c.pl << " " << c.axis;
    }
}

TEST(DrillholeStep, NudgesReachTheCallersValuesAndExtremesDoNotCrash) {
    engine::Point3 end;
    struct Case {
        double az, pl, az2, pl2;
    } cases[] = {{0, 45, 0.0001, 44.9999},
                 {45, 90, 44.9999, 89.9999},
                 {90, 0, 90, 0},
                 {-0.0, 30, 0.0001, 30},
                 {360, 44, 360, 44}};
    for (const Case& c : cases) {
        double az = c.az, pl = c.pl;
        importers::P_subNextHolePoint({0, 0, 0}, 100, az, pl, end, 0.5f);
        EXPECT_EQ(az, c.az2) << c.az;
        EXPECT_EQ(pl, c.pl2) << c.pl;
    }
    // A nudged vertical hole leans a hair off the vertical.
    double az = 0, pl = 90;
    importers::P_subNextHolePoint({0, 0, 0}, 100, az, pl, end, 0.5f);
    EXPECT_GT(std::hypot(end.x, end.y), 0);
    EXPECT_LT(std::hypot(end.x, end.y), 1e-3);
    az = std::nan("");
    pl = 1e308;
    importers::P_subNextHolePoint({0, 0, 0}, 1e308, az, pl, end, 0.5f);
    az = pl = 10;
    importers::P_subNextHolePoint({0, 0, 0}, INFINITY, az, pl, end, 0.0f);
    EXPECT_FALSE(std::isfinite(end.x));
}

TEST_F(DrillholeTest, CollarsAreCubesNamedByTheirLine) {
    // " C ...": a leading separator puts the ID in field 2 and reads X, Y, Z one
    // field on ("C", 10, 20 -> 0, 10, 20), each plus 1 (the blank's shift).
    write("c.col", "A 10 20 30 55\nB,1.5,-2,7\n C 10 20 30\n");
    ScriptResult r = run(collarRun("c.col", "0.5"));
    ASSERT_EQ(r.rc, 0) << r.err;
    // Edge 10 times the radius, centred on the collar times 10.
    struct Expect {
        const char* name;
        engine::Point3 centre;
    } cases[] = {{"DHCollar\tA\t10\t20\t30\t55", {100, 200, 300}},
                 {"DHCollar\tB\t1.5\t-2\t7", {15, -20, 70}},
                 {"DHCollar\t\tC\t10\t20\t30", {10, 110, 210}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto ps = named(c.name);
        ASSERT_EQ(ps.size(), 6u);
        engine::Point3 lo, hi;
        bounds(ps, lo, hi);
        EXPECT_LT(distance((lo + hi) * 0.5, c.centre), 1e-9);
        EXPECT_NEAR(hi.x - lo.x, 5, 1e-9);
        EXPECT_NEAR(hi.z - lo.z, 5, 1e-9);
        EXPECT_EQ(ps[0].colour, (engine::Rgb{179, 179, 13}));
        EXPECT_EQ(groupName(ctx().engine.group_get_father_group(ps[0].group)), "DH Collar data");
    }
    EXPECT_EQ(groupsNamed("DH Collar data").size(), 1u);
    EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("c.col").string() + " added");
}

TEST_F(DrillholeTest, ReadersAskTheirQuestionsInOrder) {
    write("a.atr", "V 10 20 1\n");
    write("j.orj", "V 10 30 40\n");
    ScriptResult r = run(hole(kVerticalHole) + attributeRun("a.atr") + jointRun("j.orj"));
    ASSERT_EQ(r.rc, 0) << r.err;
    std::vector<std::string> asked;
    for (const auto& i : r.of("input"))
        asked.push_back(i["prompt"].get<std::string>() + "|" + i["title"].get<std::string>() + "|" +
                        i["default"].get<std::string>());
    EXPECT_EQ(asked,
              (std::vector<std::string>{"Collar sphere radius|Collar radius|6.0",
                                        "Select a line marker diameter|Line marker diameter|2.0",
                                        "Line diameter|Line diameter|5",
                                        "Select the required disk diameter|Disk Diameter|10"}));
    std::vector<std::string> boxes;
    for (const auto& b : r.of("msgbox")) boxes.push_back(b["title"]);
    EXPECT_EQ(boxes, (std::vector<std::string>{"Survey quality - default is low quality wedges?",
                                               "Survey Sign Convention - Positive plunge down?",
                                               "Drillholes that did not start at zero",
                                               "Attribute primitive type"}));
    auto opens = r.of("open");
    ASSERT_EQ(opens.size(), 4u);
    EXPECT_EQ(opens[0]["filetype"], "DHCollarFile");
    EXPECT_EQ(opens[2]["filetype"], "DHAttributeFile");
    EXPECT_EQ(opens[3]["filetype"], "DHOrientJointsFile");
}

TEST_F(DrillholeTest, CancelledPromptsDrawNothing) {
    write("c.col", "A 0 0 0 10\n");
    write("s.sur", "A 0 0 30\n");
    ScriptResult r = run("answer open c.col\nanswer input --cancel\nrun mnuReadDHCollarFile\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(polygons().size(), 0u);
    EXPECT_EQ(groupsNamed("DH Collar data").size(), 0u);
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
    r = run(collarRun("c.col") + "answer open s.sur\nanswer input \"\"\nrun mnuReadDHSurveyFile\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(named("DHSurvey").size(), 0u);
    EXPECT_EQ(groupsNamed("DH Survey data").size(), 0u);
    EXPECT_EQ(r.of("msgbox").size(), 0u);
}

// Three stations, a collar depth beyond the last.
TEST_F(DrillholeTest, SurveyWalksFromTheCollarWithThePreviousStationsDirection) {
    write("c.col", "A 100 200 50 30\n");
    write("s.sur", "A 0 90 30\nA 10 90 30\nA 20 180 60\n");
    ScriptResult r = run(collarRun("c.col") + surveyRun("s.sur"));
    ASSERT_EQ(r.rc, 0) << r.err;
    // Grid north along +x after start-up: azimuth 90 runs along -y, 180 along -x.
    ASSERT_EQ(ctx().state.sngNorthAxis, 0.0f);
    const double h30 = 100 * std::cos(30 * kDeg), v30 = 100 * std::sin(30 * kDeg);
    const double h60 = 100 * std::cos(60 * kDeg), v60 = 100 * std::sin(60 * kDeg);
    const engine::Point3 starts[] = {
        {1000, 2000, 500}, {1000, 2000 - h30, 500 - v30}, {1000, 2000 - 2 * h30, 500 - 2 * v30}};
    const engine::Point3 end{starts[2].x - h60, starts[2].y, starts[2].z - v60};
    const std::vector<std::string> tail[] = {
        {"0", "10", "90", "30"}, {"10", "20", "90", "30"}, {"20", "30", "180", "60"}};
    auto names = distinctNames("DHSurvey ");
    ASSERT_EQ(names.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        auto f = nameFields(names[i]);
        ASSERT_EQ(f.size(), 9u);
        EXPECT_EQ(f[0], "DHSurvey ");
        EXPECT_EQ(f[1], "A");
        EXPECT_LT(distance({std::stod(f[2]), std::stod(f[3]), std::stod(f[4])}, starts[i] * 0.1),
                  1e-9);
        EXPECT_EQ(std::vector<std::string>(f.begin() + 5, f.end()), tail[i]);
    }
    // Ten-sided closed cylinders; polygon 21 is the last one's far cap.
    auto polys = named("DHSurvey ");
    ASSERT_EQ(polys.size(), 30u);
    EXPECT_LT(distance(centre(polys[21]), end), 1e-6);
    for (const auto& p : polys) {
        EXPECT_EQ(p.groupName, "DH Survey hole");
        EXPECT_EQ(p.colour, (engine::Rgb{179, 179, 13}));
        EXPECT_EQ(groupName(ctx().engine.group_get_father_group(p.group)), "DH Survey data");
    }
    EXPECT_EQ(groupsNamed("DH Survey hole").size(), 1u);
    EXPECT_EQ(groupsNamed("CylPolyGroup").size(), 0u);  // the builder's own group is gone
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 3u);
    EXPECT_EQ(boxes[2]["text"],
              "\r\n  The  survey closest to the collar was used\r\nand extended backwards to the "
              "collar position");
    EXPECT_TRUE(hasComment(r, " - BHID A survey does start at zero"));
    EXPECT_EQ(ctx().state.strLoadedFiles,
              dir.file("c.col").string() + " added\r\n" + dir.file("s.sur").string() + " added");
}

TEST_F(DrillholeTest, LateFirstStationRepeatedDepthAndHolesWithoutCollar) {
    // B: 0-5 with the first station's direction (its depth taken as 0), 5-15,
    // nothing for the repeat at 15, 15-25 with the repeat's direction; no collar
    // depth, so it ends at its last station. C has no collar: nothing.
    write("c.col", "B 0 0 0\n");
    write("s.sur",
          "C 0 0 45\nC 10 0 45\nB 5 90 10\nB 5 180 20\nB 15 270 30\nB 15 0 40\nB 25 0 0\n");
    ScriptResult r = run(collarRun("c.col") + surveyRun("s.sur", true));
    ASSERT_EQ(r.rc, 0) << r.err;
    const std::vector<std::string> expect[] = {
        {"0", "5", "90", "10"}, {"5", "15", "180", "20"}, {"15", "25", "0.0001", "40"}};
    auto names = distinctNames("DHSurvey ");
    ASSERT_EQ(names.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        auto f = nameFields(names[i]);
        ASSERT_EQ(f.size(), 9u);
        EXPECT_EQ(f[1], "B");
        EXPECT_EQ(std::vector<std::string>(f.begin() + 5, f.end()), expect[i]) << i;
    }
    EXPECT_EQ(named("DHSurvey ").size(), 9u);  // low quality: three sides a segment
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 3u);
    EXPECT_EQ(boxes[2]["text"],
              "B\r\n\r\n  The  survey closest to the collar was used\r\nand extended backwards to "
              "the collar position");
    EXPECT_TRUE(hasComment(r, " - Searching for the next matching drillhole"));
    EXPECT_TRUE(hasComment(r, " - BHID B survey does not start at zero"));
}

TEST_F(DrillholeTest, PlungeUpConventionAndAnEmptyLineEndingTheSurvey) {
    write("c.col", "A 0 0 0 10\n");
    write("s.sur", "A 0 0 -90\n");
    ScriptResult r = run(collarRun("c.col") + surveyRun("s.sur", false, true));
    ASSERT_EQ(r.rc, 0) << r.err;
    auto names = distinctNames("DHSurvey ");
    ASSERT_EQ(names.size(), 1u);
    auto f = nameFields(names[0]);
    EXPECT_EQ(std::vector<std::string>(f.begin() + 5, f.end()),
              (std::vector<std::string>{"0", "10", "0.0001", "89.9999"}));
    EXPECT_NEAR(centre(named("DHSurvey ")[1]).z, -100, 1e-4);  // down (nearly) 10 m

    write("s.sur", "A 0 0 30\nA 10 0 30\n\nA 20 0 30\n");
    r = run(collarRun("c.col") + surveyRun("s.sur", true));
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(distinctNames("DHSurvey ").size(), 1u);
    EXPECT_EQ(r.of("msgbox").size(), 3u);
}

TEST_F(DrillholeTest, BadLinesAndOddBytesNeitherCrashNorHang) {
    // A byte-order mark is no part of the first ID.
    write("c.col",
          "\xEF\xBB\xBF"
          "A 0 0 0 1e308\nB -0 NaN 1e308\n");
    std::string wide = "A 0 0 30\n";
    for (int i = 0; i < 100000; ++i) wide += "7 ";
    write("s.sur", wide + "\nA 1e308 0 30\nA -0 NaN 30\nB 0 0 0\nB 5 0 0\n");
    ScriptResult r = run(collarRun("c.col") + surveyRun("s.sur"));
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(named("DHCollar\tA\t").size(), 6u);
    EXPECT_EQ(ctx().ui.pointer(), 1);
    std::string binary;
    for (int i = 0; i < 4096; ++i) binary.push_back(static_cast<char>((i * 131 + 7) % 256));
    write("b.sur", binary);
    r = run(collarRun("c.col") + surveyRun("b.sur", true) + collarRun("b.sur"));
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(ctx().ui.pointer(), 1);
}

// One reader's run: the collar and survey files, the reader's own file, the script,
// the name prefix of what it draws, then two counts and a comment for the test.
struct Read {
    const char* reader;
    std::string collar, survey, file, text, script, prefix;
    std::size_t n1, n2, n3;
    const char* comment;
};

const std::string kHoleRun = collarRun("c.col") + surveyRun("s.sur");
const std::string kLowHoleRun = collarRun("c.col") + surveyRun("s.sur", true);

// Every reader: a short or empty line ends the read in its box, keeps what was
// drawn and leaves the file out of the record.
TEST_F(DrillholeTest, FaultyLineShowsTheBoxAndKeepsWhatCameBefore) {
    std::string twelve;
    for (int i = 0; i < 12; ++i) twelve += "H" + std::to_string(i) + " 1 2 3\n";
    twelve += "\nZ 1 2 3\n";
    // n1: pieces kept, n2: boxes shown.
    const Read cases[] = {
        {"collar", twelve, "", "c.col", twelve, collarRun("c.col"), "DHCollar", 72, 1, 0,
         "Number of collars loaded: 10"},
        {"survey", "A 0 0 0\n", "", "s.sur", "A 0 0 30\nA 10 0 30\nA 20\nA 30 0 30\n", kLowHoleRun,
         "DHSurvey ", 3, 3, 0, nullptr},
        {"attribute", kFlatHole[0], kFlatHole[1], "a.atr", "H 1\nH 2\n",
         kHoleRun + attributeRun("a.atr"), "CM_DHAtr", 0, 5, 0, nullptr},
        {"joint", kVerticalHole[0], kVerticalHole[1], "j.orj", "V 10 30 40\nV 11 30\nV 12 30 40\n",
         kHoleRun + jointRun("j.orj"), "CM_OriJo", 2, 4, 0, nullptr}};
    for (const Read& c : cases) {
        SCOPED_TRACE(c.reader);
        write("c.col", c.collar);
        write("s.sur", c.survey);
        write(c.file, c.text);
        ScriptResult r = run(c.script);
        ASSERT_EQ(r.rc, 0) << r.err;
        auto boxes = r.of("msgbox");
        ASSERT_EQ(boxes.size(), c.n2);
        std::string title = std::string(c.reader) + " information error";
        title[0] = char(std::toupper(title[0]));
        EXPECT_EQ(boxes.back()["title"], title);
        EXPECT_EQ(boxes.back()["text"], std::string("The ") + c.reader +
                                            " file could not be found OR The " + c.reader +
                                            " file is invalid");
        EXPECT_EQ(named(c.prefix).size(), c.n1);
        EXPECT_EQ(ctx().state.strLoadedFiles.find(c.file), std::string::npos);
        EXPECT_TRUE(!c.comment || hasComment(r, c.comment));
        EXPECT_EQ(ctx().ui.pointer(), 1);
    }
}

// Every reader: the interrupt stops the read between whole pieces (survey and
// attribute triangles, joint spheres of eight), keeps them and clears itself.
TEST_F(DrillholeTest, InterruptStopsTheReadKeepingWholePieces) {
    std::string survey, attributes, joints;
    for (int i = 0; i < 5000; ++i) survey += "A " + std::to_string(i) + " 10 30\n";
    for (int i = 0; i < 3000; ++i) attributes += "H 1 2 " + std::to_string(i) + "\n";
    for (int i = 0; i < 3000; ++i) joints += "V " + std::to_string(i % 50) + " -1 -1\n";
    // n1: polygons before the press, n2: polygons a piece, n3: pieces in the file.
    const Read cases[] = {
        {"survey", "A 0 0 0\n", "", "s.sur", survey, kLowHoleRun, "DHSurvey ", 300, 3, 4999,
         nullptr},
        {"attribute", kFlatHole[0], kFlatHole[1], "a.atr", attributes,
         kHoleRun + attributeRun("a.atr", false), "CM_DHAtr", 200, 3, 3000, nullptr},
        {"joint", kVerticalHole[0], kVerticalHole[1], "j.orj", joints, kHoleRun + jointRun("j.orj"),
         "CM_OriJo", 500, 8, 3000, nullptr}};
    for (const Read& c : cases) {
        SCOPED_TRACE(c.reader);
        write("c.col", c.collar);
        write("s.sur", c.survey);
        write(c.file, c.text);
        ScriptResult r = run(c.script, interruptAbove(c.n1));
        ASSERT_EQ(r.rc, 0) << r.err;
        const auto n = named(c.prefix).size();
        EXPECT_GT(n, 0u);
        EXPECT_LT(n, c.n2 * c.n3);
        EXPECT_EQ(n % c.n2, 0u);
        EXPECT_FALSE(ctx().state.bolInterruptProcess);
        EXPECT_EQ(ctx().ui.pointer(), 1);
    }
    EXPECT_NE(ctx().state.strLoadedFiles.find("j.orj"), std::string::npos);  // still recorded
}

}  // namespace
