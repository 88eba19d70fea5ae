// The drillhole and joint readers on real files written by other programs: no
// crash, and the holes, intervals and groups they make counted from the files.

#include <gmock/gmock.h>

#include <map>
#include <set>
#include <sstream>

#include "DrillholeTestUtil.h"
#include "core/LenientNumber.h"
#include "support/TestSupport.h"

namespace {

using namespace drillholetest;
using importtest::ScriptResult;

// The lines of a file (CR LF or LF), a byte-order mark dropped, each split on `sep`.
std::vector<std::vector<std::string>> rows(const std::filesystem::path& p, char sep) {
    std::string text = testsupport::readFile(p);
    if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
    std::vector<std::vector<std::string>> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::vector<std::string> f;
        std::istringstream ls(line);
        for (std::string cell; std::getline(ls, cell, sep);) f.push_back(cell);
        if (f.empty()) f.emplace_back();
        out.push_back(f);
    }
    return out;
}

double num(const std::vector<std::string>& f, std::size_t i) {
    return i < f.size() ? core::valNumber(f[i]) : 0.0;
}

// A survey walk over comma files keyed by their first column; a collar's fifth
// column, when there is one, is the hole's depth.
struct SurveyModel {
    long holes = 0, intervals = 0;
    std::map<std::string, double> holeEnd;  // deepest point drawn
};

SurveyModel modelSurvey(const std::filesystem::path& collarFile,
                        const std::filesystem::path& surveyFile) {
    std::map<std::string, double> collars;  // no fifth column: depth 0
    for (const auto& f : rows(collarFile, ',')) collars.emplace(f[0], num(f, 4));
    SurveyModel m;
    std::string current;
    bool have = false;
    double prev = 0, holeDepth = 0;
    auto draw = [&](double to) {
        ++m.intervals;
        double& end = m.holeEnd[current];
        end = std::max(end, to);
    };
    for (const auto& f : rows(surveyFile, ',')) {
        double depth = num(f, 1);
        if (have && f[0] == current) {
            if (depth != prev) draw(depth);
        } else {
            if (prev < holeDepth) draw(holeDepth);
            holeDepth = 0;
            auto it = collars.find(f[0]);
            if (it != collars.end()) {
                current = f[0];
                have = true;
                holeDepth = it->second;
                ++m.holes;
                depth = 0;  // a late first station is drawn from the collar
            }
        }
        prev = depth;
    }
    if (prev < holeDepth) draw(holeDepth);
    return m;
}

// How often the first column changes from line to line (the first line counts).
std::size_t changes(const std::vector<std::vector<std::string>>& lines) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) n += i == 0 || lines[i][0] != lines[i - 1][0];
    return n;
}

class SharedHoleTest : public DrillholeTest {
protected:
    // Reads collars (the header line is one too), surveys in low quality, then
    // attributes; checks the holes and intervals against the model.
    SurveyModel read(const std::filesystem::path& d, const std::string& collar,
                     const std::string& survey, const std::string& assay, bool cylinders,
                     ScriptResult& r) {
        const SurveyModel m = modelSurvey(d / collar, d / survey);
        r = run(collarRun((d / collar).string()) + surveyRun((d / survey).string(), true) +
                attributeRun((d / assay).string(), cylinders));
        EXPECT_EQ(named("DHCollar").size(), 6u * rows(d / collar, ',').size());
        EXPECT_EQ(groupsNamed("DH Survey hole").size(), std::size_t(m.holes));
        EXPECT_EQ(named("DHSurvey ").size(), 3u * std::size_t(m.intervals));
        return m;
    }
};

TEST_F(SharedHoleTest, SyntheticGridHolesWithAssays) {
    TARVIK_REQUIRE_SHARED_DATA();
    const auto d = testsupport::sharedData() / "drillholes" / "gslib_demo1";
    ScriptResult r;
    const SurveyModel m = read(d, "collar.csv", "survey.csv", "assay.csv", false, r);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_GT(m.intervals, 300);
    // Every assay interval of a surveyed hole that starts above its end is drawn.
    const auto assays = rows(d / "assay.csv", ',');
    std::set<std::string> expected, drawn;
    for (const auto& f : assays) {
        auto it = m.holeEnd.find(f[0]);
        if (it != m.holeEnd.end() && num(f, 1) < it->second)
            expected.insert(f[0] + "|" + f[1] + "|" + f[2]);
    }
    for (const auto& p : named("CM_DHAtr")) {
        auto f = nameFields(p.name);
        drawn.insert(f[1] + "|" + f[2] + "|" + f[3]);
    }
    EXPECT_GT(expected.size(), 1000u);
    EXPECT_EQ(drawn, expected);
    EXPECT_EQ(groupsNamed("DH Attribute hole").size(), changes(assays));
    EXPECT_THAT(r.of("comment").back()["text"].get<std::string>(),
                ::testing::HasSubstr("Number of lines read: " + std::to_string(assays.size())));
}

TEST_F(SharedHoleTest, DepositHolesInFeetWithSentinelStations) {
    TARVIK_REQUIRE_SHARED_DATA();
    ScriptResult r;
    const SurveyModel m =
        read(testsupport::sharedData() / "drillholes" / "babbitt", "collar_BABBITT.csv",
             "survey_BABBITT.csv", "assay_BABBITT.csv", true, r);
    EXPECT_GT(m.intervals, 2000);
    // Seven names in the assay header, empty trailing values in the rows: the column
    // test stops the read, the attribute prompts stay unasked.
    EXPECT_NE(r.rc, 0);
    ASSERT_FALSE(r.of("msgbox").empty());
    EXPECT_EQ(r.of("msgbox").back()["title"], "Error in attributes file, first correct");
    EXPECT_EQ(named("CM_DHAtr").size(), 0u);
}

TEST_F(DrillholeTest, FilesTheReadersCannotTake) {
    TARVIK_REQUIRE_SHARED_DATA();
    const auto base = testsupport::sharedData() / "drillholes";
    // Semicolons are no separator: the first line has no position.
    ScriptResult v = run(collarRun((base / "vulcan_sample" / "collar.csv").string()));
    ASSERT_EQ(v.rc, 0) << v.err;
    ASSERT_EQ(v.of("msgbox").size(), 1u);
    EXPECT_EQ(v.of("msgbox")[0]["title"], "Collar information error");
    EXPECT_EQ(named("DHCollar").size(), 0u);

    // Quoted survey IDs never meet the collars' plain ones; a byte-order mark and
    // free text in the samples.
    const auto mp = base / "macmillan_pass";
    ScriptResult q = run(collarRun((mp / "collar.csv").string()) +
                         surveyRun((mp / "survey.csv").string(), true, true));
    ASSERT_EQ(q.rc, 0) << q.err;
    EXPECT_EQ(named("DHCollar").size(), 6u * rows(mp / "collar.csv", ',').size());
    EXPECT_EQ(named("DHSurvey").size(), 0u);
    EXPECT_EQ(q.of("msgbox").back()["title"], "Drillholes that did not start at zero");

    // The survey is keyed by a column the collar file holds second: nothing meets.
    const auto wy = base / "wamex_yalgoo";
    ScriptResult w = run(collarRun((wy / "DB_Collar_Export.csv").string()) +
                         surveyRun((wy / "DB_Survey_Export.csv").string(), true, true));
    ASSERT_EQ(w.rc, 0) << w.err;
    EXPECT_EQ(named("DHSurvey").size(), 0u);
    EXPECT_EQ(ctx().ui.pointer(), 1);
}

TEST_F(DrillholeTest, LoggedStructuresWithoutSurveyedHoles) {
    TARVIK_REQUIRE_SHARED_DATA();
    const auto d = testsupport::sharedData() / "joints" / "grimsel_isc";
    for (const char* file : {"FBS1_structures.txt", "GEO3_structures.txt", "SBH4_structures.txt"}) {
        const auto lines = rows(d / file, '\t');
        ScriptResult r = run(jointRun((d / file).string(), true));
        ASSERT_EQ(r.rc, 0) << r.err;
        EXPECT_EQ(r.of("msgbox").size(), 0u) << file;
        // The first column is a depth here: no hole of that name, nothing drawn,
        // one joints group each time it changes.
        EXPECT_EQ(named("CM_OriJo").size(), 0u);
        EXPECT_EQ(groupsNamed("DH Orientated Joints").size(), changes(lines)) << file;
        EXPECT_THAT(r.of("comment").back()["text"].get<std::string>(),
                    ::testing::HasSubstr("Number of lines read: " + std::to_string(lines.size())));
    }
}

}  // namespace
