// QkL and MS lists end to end: the convention form, the dialog, one marker an event
// under "Seismic data" with its name, colour, size and place, and files that must
// neither crash nor hang the reader.

#include <cmath>
#include <sstream>

#include "ImportTestUtil.h"
#include "SeismicTestUtil.h"
#include "analysis/PpvCommand.h"
#include "core/AppContext.h"
#include "import/SeismicReaders.h"

namespace {

using importtest::ScriptResult;
using namespace seismictest;

const std::string kAccept = "answer form frm21_DataChanges accept\n";
using AppSetup = std::function<void(core::AppContext&)>;

class SeismicImportTest : public importtest::ImportTest {
protected:
    std::vector<Marker> events() { return markers(ctx().engine); }
    ScriptResult qkl(const std::string& text, const std::string& form = kAccept) {
        return importText("mnuImportSeismicDataQkL", "e.qkl", text, form);
    }
    ScriptResult ms(const std::string& text, const std::string& form = kAccept,
                    const AppSetup& setup = {}) {
        return importText("mnuImportSeismicDataMS", "e.ms", text, form, "", setup);
    }
    void expectTidyEnd() {
        EXPECT_EQ(scripted(ctx()).progress(), 100);
        EXPECT_EQ(ctx().ui.pointer(), 1);
        EXPECT_FALSE(ctx().state.bolInterruptProcess);
    }
    void expectErrorBox(const ScriptResult& r) {
        auto boxes = r.of("msgbox");
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0]["title"], "Seismic information error");
        EXPECT_EQ(boxes[0]["text"],
                  "Associated seismic information could not be found OR The seismic file is "
                  "invalid");
        expectTidyEnd();
    }
};

void expectNear(const engine::Point3& a, const engine::Point3& b) {
    EXPECT_LT(std::hypot(a.x - b.x, a.y - b.y, a.z - b.z), 1e-6)
        << "(" << a.x << ", " << a.y << ", " << a.z << ")";
}

TEST_F(SeismicImportTest, QkLEventIsANamedSphereUnderSeismicData) {
    ScriptResult r = qkl("20060629 132944 87333 56893 -1222 1.2\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    ASSERT_EQ(r.of("form").size(), 1u);
    EXPECT_EQ(r.of("form")[0]["name"], "frm21_DataChanges");
    auto opens = r.of("open");
    ASSERT_EQ(opens.size(), 1u);
    EXPECT_EQ(opens[0]["filetype"], "QkLFile");
    EXPECT_EQ(opens[0]["filter"],
              "Seismic QkL-files(*.QkL; *.TXT)|*.QkL; *.TXT|Seismic TXT-files(*.TXT)|*.TXT|"
              "All file types (*.*)|*.*");
    bool prompted = false;
    for (const auto& c : r.of("comment"))
        prompted |= c["text"] ==
                    "Data must be in the format 'Date, Time, X, Y, Z, ML', for example "
                    "'20060629 132944 87333 56893 -1222 1.2'";
    EXPECT_TRUE(prompted);

    auto ev = events();
    ASSERT_EQ(ev.size(), 1u);
    EXPECT_EQ(ev[0].name, "PR_SEvnt\r\n2006-06-29\r\n13:29:44\r\n873330\t568930\t-12220\t1.2");
    EXPECT_TRUE(ev[0].oneName);
    EXPECT_EQ(ev[0].colour, kRed);
    EXPECT_EQ(ev[0].polygons, 48);  // bands 4 by 8: 2 * 8 cap triangles, 2 * 8 * 2 in the bands
    expectNear(ev[0].centre(), {873330, 568930, -12220});
    EXPECT_NEAR(ev[0].halfZ(), 72.884752015620356, 1e-6);  // S = 4: 40 * e^(1.2 / 2)
    for (const auto& p : polygons()) EXPECT_TRUE(p.lit);
    const std::string path = dir.file("e.qkl").string();
    EXPECT_EQ(ctx().state.strLoadedFiles, path + " added");
    EXPECT_EQ(ctx().state.txtComment, path + " added");
    expectTidyEnd();
}

TEST_F(SeismicImportTest, SignsAndSwitchOfTheFormPlaceTheEvent) {
    ScriptResult r = ms("1 2 3 0.7\n",
                        "answer form frm21_DataChanges accept cboX=-1 cboZ=-1 chkSwitchXandY=1\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto ev = events();
    ASSERT_EQ(ev.size(), 1u);
    expectNear(ev[0].centre(), {20, -10, -30});  // x = 1 * -1 * 10 goes to Y, y = 2 * 10 to X
    EXPECT_EQ(ev[0].colour, kOrange);
    EXPECT_EQ(ev[0].name, "1 2 3 0.7");
    EXPECT_EQ(r.of("open")[0]["filetype"], "MSFile");
}

TEST_F(SeismicImportTest, MagnitudeBoundsAndTheMsDefault) {
    ScriptResult r = ms("0 0 0 0.5\n10 0 0 1\n20 0 0\n30 0 0 -0.2\n 40 0 0 0.49\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto ev = events();
    ASSERT_EQ(ev.size(), 5u);
    const engine::Rgb colours[] = {kOrange, kRed, kGreen, kBlue, kGreen};
    // 40 * e^(ML / 2) for ML 0.5, 1, 0.25 (missing), -0.2, 0.49
    const double radii[] = {51.361016667509656, 65.948850828005128, 45.325938122673052,
                            36.193496721438384, 51.104852528195465};
    const char* names[] = {"0 0 0 0.5", "10 0 0 1", "20 0 0", "30 0 0 -0.2", " 40 0 0 0.49"};
    for (std::size_t i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(ev[i].colour, colours[i]);
        EXPECT_NEAR(ev[i].halfZ(), radii[i], 1e-6);
        EXPECT_EQ(ev[i].name, names[i]);
        expectNear(ev[i].centre(), {100.0 * double(i), 0, 0});
    }
}

TEST_F(SeismicImportTest, MarkerKindAndTheFixedSize) {
    // Cubes are 1.3 times the magnitude size; with S = 0 every marker is the fixed
    // radius times 10, and a radius of 0 places nothing.
    struct Case {
        short kind;
        double scale, radius;
        const char* text;
        std::size_t events, polygons;
        double halfZ;
    } cases[] = {{-1, 4, 10, "0 0 0 1\n", 1, 6, 1.3 * 65.948850828005128 / 2},
                 {-1, 0, 2, "0 0 0 1\n", 1, 6, 10},
                 {0, 0, 2, "0 0 0 3\n", 1, 48, 20},
                 {0, 0, 0, "1 2 3 1\n4 5 6 2\n", 0, 0, 0}};
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        const Case& c = cases[i];
        ScriptResult r = ms(c.text, kAccept, [c](core::AppContext& ctx) {
            ctx.settings.intSphereMarkerKind = c.kind;
            ctx.settings.dblSphereScale = c.scale;
            ctx.settings.dblSphereRadius = c.radius;
        });
        ASSERT_EQ(r.rc, 0) << r.err;
        EXPECT_EQ(r.of("msgbox").size(), 0u);
        auto ev = events();
        ASSERT_EQ(ev.size(), c.events);
        EXPECT_EQ(ctx().engine.polygon_count(), c.polygons * c.events);
        if (c.events) {
            EXPECT_NEAR(ev[0].halfZ(), c.halfZ, 1e-4);
        }
        EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("e.ms").string() + " added");
    }
}

TEST_F(SeismicImportTest, AFaultShowsTheBoxAndKeepsTheEventsBeforeIt) {
    ScriptResult r =
        qkl("20060629 132944 1 1 1 0\n20060629 132945 2 2 2 0\n20060629 132946 3 3 3\n"
            "20060629 132947 4 4 4 0\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    expectErrorBox(r);
    auto ev = events();
    ASSERT_EQ(ev.size(), 2u);
    expectNear(ev[1].centre(), {20, 20, 20});
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
    // Beyond range is a fault too.
    for (const char* text : {"1e308 0 0 1\n", "0 0 0 1e308\n", "0 -1e309 0 1\n"}) {
        SCOPED_TRACE(text);
        r = ms(text);
        ASSERT_EQ(r.rc, 0) << r.err;
        expectErrorBox(r);
        EXPECT_TRUE(events().empty());
    }
}

TEST_F(SeismicImportTest, EmptyFileByteOrderMarkCrLfAndNoNumbers) {
    ScriptResult r = ms("");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(r.of("msgbox").size(), 0u);
    EXPECT_NE(topGroup(ctx().engine, "Seismic data"), 0u);
    EXPECT_TRUE(events().empty());
    EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("e.ms").string() + " added");

    r =
        ms("\xEF\xBB\xBF"
           "1 2 3 1\r\n4 5 6 0\r\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto ev = events();
    ASSERT_EQ(ev.size(), 2u);
    EXPECT_EQ(ev[0].name, "1 2 3 1");
    expectNear(ev[0].centre(), {10, 20, 30});
    EXPECT_EQ(ev[1].colour, kGreen);

    // NaN and -0 read 0; the last marker's radius underflows to 0: skipped.
    r = ms("NaN 2 3 NaN\n-0 -0 -0 -0\n0 0 0 -1e308\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(r.of("msgbox").size(), 0u);
    ev = events();
    ASSERT_EQ(ev.size(), 2u);
    expectNear(ev[0].centre(), {0, 20, 30});
    expectNear(ev[1].centre(), {0, 0, 0});
    EXPECT_EQ(ev[0].colour, kGreen);
    EXPECT_EQ(ev[1].colour, kGreen);
}

TEST_F(SeismicImportTest, HugeLinesAndBinaryBytesEndTidily) {
    std::string wide = "1 2 3 0.7";
    for (int i = 0; i < 100000; ++i) wide += " 9";
    ScriptResult r = ms(wide + "\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto ev = events();
    ASSERT_EQ(ev.size(), 1u);
    EXPECT_EQ(ev[0].name.size(), wide.size());
    EXPECT_EQ(ev[0].colour, kOrange);

    std::string bytes;
    for (int i = 0; i < 4096; ++i) bytes += static_cast<char>((i * 37) & 0xFF);
    for (const std::string& text : {bytes, std::string(3000, '\0')}) {
        r = text == bytes ? qkl(text) : ms(text);
        ASSERT_EQ(r.rc, 0) << r.err;
        EXPECT_EQ(scripted(ctx()).progress(), 100);
        EXPECT_EQ(ctx().ui.pointer(), 1);
    }
}

TEST_F(SeismicImportTest, InterruptStopsTheReadingAndKeepsWhatWasPlaced) {
    std::string text;
    for (int i = 0; i < 5000; ++i) text += std::to_string(i) + " 0 0 1\n";
    ScriptResult r = ms(text, kAccept, [](core::AppContext& c) {
        // One press, once the first markers stand.
        scripted(c).onPump = [&c, pressed = false]() mutable {
            if (pressed || c.engine.polygon_count() == 0) return;
            pressed = true;
            c.state.bolInterruptProcess = true;
        };
    });
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(r.of("msgbox").size(), 0u);
    const auto n = events().size();
    EXPECT_GT(n, 0u);
    EXPECT_LT(n, 5000u);
    EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("e.ms").string() + " added");
    expectTidyEnd();
}

TEST_F(SeismicImportTest, MixedHostileTokensNeverLeaveTheImportHalfDone) {
    ScriptResult r = run("");
    ASSERT_EQ(r.rc, 0) << r.err;
    core::AppContext& c = ctx();
    // '|' between the tokens; '~' is a NUL byte.
    std::vector<std::string> tokens;
    std::istringstream all(
        "1|-0|NaN|1e308|-1e309|,| "
        "|\t|\r|\n|\r\n|0.5|&H7FFF|\xEF\xBB\xBF|20060629|132944|~|-|e|1.2.3");
    for (std::string t; std::getline(all, t, '|');)
        tokens.push_back(t == "~" ? std::string(1, '\0') : t);
    std::uint32_t seed = 12345;
    auto next = [&seed] { return seed = seed * 1664525u + 1013904223u; };
    const std::string path = dir.file("mix.txt").string();
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        std::string text;
        for (int k = int(next() % 60); k > 0; --k) text += tokens[next() % tokens.size()];
        testsupport::writeFile(path, text);
        std::size_t lines = 1;
        for (char ch : text) lines += ch == '\n' || ch == '\r';
        const std::size_t before = events().size();
        c.state.strFullPath = path;
        importers::importSeismicList(
            c, "Add", {},
            (round & 1) ? importers::SeismicFormat::MS : importers::SeismicFormat::QkL);
        ASSERT_LE(events().size() - before, lines);
        ASSERT_EQ(scripted(c).progress(), 100);
        ASSERT_EQ(c.ui.pointer(), 1);
        ASSERT_FALSE(c.state.bolInterruptProcess);
    }
}

TEST_F(SeismicImportTest, ProgressCountsEventsEveryHundred) {
    std::string text;
    for (int i = 0; i < 250; ++i) text += "0 0 " + std::to_string(i) + " 0\n";
    ScriptResult r = ms(text);
    ASSERT_EQ(r.rc, 0) << r.err;
    std::vector<std::string> counts;
    for (const auto& c : r.of("comment"))
        if (auto t = c["text"].get<std::string>(); t.rfind("Events loaded: ", 0) == 0)
            counts.push_back(t);
    EXPECT_EQ(counts, (std::vector<std::string>{"Events loaded: 100", "Events loaded: 200"}));
    EXPECT_EQ(events().size(), 250u);
}

TEST_F(SeismicImportTest, TwoListsShareOneSeismicDataGroup) {
    testsupport::writeFile(dir.file("a.ms"), "1 1 1 1\n");
    testsupport::writeFile(dir.file("b.qkl"), "1 1 2 2 2 0\n");
    ScriptResult r = run(kAccept + "answer open a.ms\nrun mnuImportSeismicDataMS\n" + kAccept +
                         "answer open b.qkl\nrun mnuImportSeismicDataQkL\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    int tops = 0;
    for (const auto& g : groups()) tops += g.name == "Seismic data" && g.father == 0;
    EXPECT_EQ(tops, 1);
    EXPECT_EQ(events().size(), 2u);
    EXPECT_EQ(ctx().state.strLoadedFiles,
              dir.file("a.ms").string() + " added\r\n" + dir.file("b.qkl").string() + " added");
}

TEST_F(SeismicImportTest, TheFormStopsAReadWhenClosedAndServesThePpvEvaluation) {
    ScriptResult r = run("answer form frm21_DataChanges close\nrun mnuImportSeismicDataQkL\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_TRUE(r.of("open").empty());
    EXPECT_EQ(ctx().state.bolColourMapCancelled, 0);
    EXPECT_EQ(ctx().engine.polygon_count(), 0u);

    r = run("set frm21_DataChanges.cboY -1\nset frm21_DataChanges.chkSwitchXandY 1\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    forms::Form* f = ctx().forms.find("frm21_DataChanges");
    ASSERT_NE(f, nullptr);
    const analysis::CoordConvention c = analysis::conventionFromForm(*f);
    EXPECT_EQ(std::vector<int>(std::begin(c.sign), std::end(c.sign)), (std::vector<int>{1, -1, 1}));
    EXPECT_TRUE(c.swapXY);
    for (const char* name :
         {"mnuImportSeismicDataQkL", "mnuImportSeismicDataMS", "mnuAll_QkL_Info"}) {
        const core::Command* cmd = ctx().commands.find(name);
        ASSERT_NE(cmd, nullptr) << name;
        EXPECT_TRUE(cmd->enabled) << name;
    }
}

}  // namespace
