// Published event catalogues read as QkL or MS lists. None is in either layout,
// so each reads by position as the format says; the counts, magnitudes and
// records expected are worked out here from the file's own columns.

#include <cmath>
#include <fstream>
#include <sstream>

#include "ImportTestUtil.h"
#include "SeismicTestUtil.h"
#include "core/AppContext.h"

namespace {

using importtest::ImportTest;
using importtest::ScriptResult;
using seismictest::kGreen;
using seismictest::kRed;

std::vector<std::string> fileLines(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::vector<std::string> out;
    for (std::string l; std::getline(in, l);) {
        if (!l.empty() && l.back() == '\r') l.pop_back();
        out.push_back(l);
    }
    return out;
}

std::vector<std::string> commaFields(const std::string& line) {
    std::vector<std::string> out;
    std::stringstream s(line);
    for (std::string f; std::getline(s, f, ',');) out.push_back(f);
    return out;
}

engine::Rgb colourOf(double ml) {
    if (ml < 0) return seismictest::kBlue;
    if (ml < 0.5) return kGreen;
    if (ml < 1) return seismictest::kOrange;
    return kRed;
}

class SeismicCatalogueTest : public ImportTest {
protected:
    ScriptResult importShared(const char* command, const std::filesystem::path& file) {
        return run("answer form frm21_DataChanges accept\nanswer open \"" + file.string() +
                   "\"\nrun " + command + "\n");
    }
    std::vector<seismictest::Marker> events() { return seismictest::markers(ctx().engine); }
};

TEST_F(SeismicCatalogueTest, EatonCatalogueAsQkLReadsMinuteAsMagnitude) {
    TARVIK_REQUIRE_SHARED_DATA();
    const auto file = testsupport::sharedData() / "seismic/toc2me/Catalog_Eaton2018_SRL.csv";
    const auto lines = fileLines(file);
    ASSERT_GT(lines.size(), 4000u);
    // Fields: EventID, Year, Month, Day, Hour, minute: Date, Time, X, Y, Z, ML.
    std::size_t greens = 1;  // the header's "minute" reads 0
    for (std::size_t i = 1; i < lines.size(); ++i)
        greens += std::stod(commaFields(lines[i]).at(5)) < 0.5;

    ScriptResult r = importShared("mnuImportSeismicDataQkL", file);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_TRUE(r.of("msgbox").empty());
    auto ev = events();
    ASSERT_EQ(ev.size(), lines.size());
    std::size_t seen = 0;
    for (const auto& m : ev) seen += m.colour == kGreen;
    EXPECT_EQ(seen, greens);
    EXPECT_EQ(ev[0].name, "PR_SEvnt\r\nEven-tI-ID\r\n00:Ye:ar\r\n0\t0\t0\t0");
    // "1,2016,10,26,3,15,..."
    EXPECT_EQ(ev[1].name, "PR_SEvnt\r\n1--1\r\n00:20:16\r\n100\t260\t30\t15");
    const auto f = commaFields(lines.back());
    const std::string last = "\r\n" + std::to_string(std::stoi(f[2]) * 10) + "\t" +
                             std::to_string(std::stoi(f[3]) * 10) + "\t" +
                             std::to_string(std::stoi(f[4]) * 10) + "\t" + f[5];
    EXPECT_EQ(ev.back().name.substr(ev.back().name.size() - last.size()), last);
    EXPECT_EQ(ctx().state.strLoadedFiles, file.string() + " added");
}

TEST_F(SeismicCatalogueTest, HypoDDRelocationsAsMsShiftPastTheLeadingBlanks) {
    TARVIK_REQUIRE_SHARED_DATA();
    const auto file = testsupport::sharedData() / "seismic/hypodd/hypoDD.reloc";
    const auto lines = fileLines(file);
    ASSERT_FALSE(lines.empty());
    ScriptResult r = importShared("mnuImportSeismicDataMS", file);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_TRUE(r.of("msgbox").empty());
    auto ev = events();
    ASSERT_EQ(ev.size(), lines.size());
    for (std::size_t i = 0; i < ev.size(); ++i) {
        // ID LAT LON DEPTH ...: X, Y, Z, ML.
        std::istringstream s(lines[i]);
        engine::Point3 p;
        double ml = 0;
        s >> p.x >> p.y >> p.z >> ml;
        EXPECT_EQ(ev[i].colour, colourOf(ml)) << i;
        EXPECT_EQ(ev[i].name, lines[i]) << i;
        const engine::Point3 d = ev[i].centre() + p * -10;
        EXPECT_LT(std::abs(d.x) + std::abs(d.y) + std::abs(d.z), 1e-6) << i;
    }
    // 508 29.403489 104.479411 3.751: S = 4 gives 40 * e^(3.751 / 2)
    EXPECT_NEAR(ev[0].halfZ(), 260.9632138051414, 1e-6);
}

TEST_F(SeismicCatalogueTest, RodriguezCatalogueFaultsOnItsFirstMomentKeepingTheHeader) {
    TARVIK_REQUIRE_SHARED_DATA();
    const auto file =
        testsupport::sharedData() / "seismic/toc2me/Catalog_Rodriguez-Pradilla2019_PhDThesis.csv";
    auto lines = fileLines(file);
    ASSERT_GT(lines.size(), 1u);
    ASSERT_EQ(lines[0].compare(0, 3, "\xEF\xBB\xBF"), 0);
    // The fourth field of a data line is a moment of about 1e8 N m read as a
    // magnitude: its marker is beyond any number. The header's "M0" reads 0.
    ASSERT_GT(std::stod(commaFields(lines[1]).at(3)), 2000.0);
    ScriptResult r = importShared("mnuImportSeismicDataMS", file);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Seismic information error");
    auto ev = events();
    ASSERT_EQ(ev.size(), 1u);
    EXPECT_EQ(ev[0].name, lines[0].substr(3));
    EXPECT_EQ(ev[0].colour, kGreen);
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
}

TEST_F(SeismicCatalogueTest, RockburstCatalogueAsQkLKeepsItsIsoDatesAsCut) {
    TARVIK_REQUIRE_SHARED_DATA();
    const auto file =
        testsupport::sharedData() / "seismic/rockburst_ai/cluster_example_dataset.csv";
    const auto lines = fileLines(file);
    ASSERT_GT(lines.size(), 1u);
    ScriptResult r = importShared("mnuImportSeismicDataQkL", file);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_TRUE(r.of("msgbox").empty());
    auto ev = events();
    ASSERT_EQ(ev.size(), lines.size());
    // "2019-02-01 03:40:09,13,29856,40224,341,1050.0": the Z column is the magnitude.
    EXPECT_EQ(ev[1].name, "PR_SEvnt\r\n2019--0-01\r\n03:40:09\r\n130\t298560\t402240\t341");
    EXPECT_EQ(ev[0].colour, kGreen);
    for (std::size_t i = 1; i < ev.size(); ++i)
        EXPECT_EQ(ev[i].colour, colourOf(std::stod(commaFields(lines[i]).at(4)))) << i;
}

}  // namespace
