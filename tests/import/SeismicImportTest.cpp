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
const std::string kMark = "\xEF\xBB\xBF";  // byte-order mark
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

// MS lists: one marker an event, the line as its name, ten scene units a metre.
// Size 40 * e^(ML / 2) at S = 4 (ML 0.25 when missing); cubes 1.3 times that
// across; S = 0 gives the fixed radius times 10; colour bands at 0, 0.5 and 1.
TEST_F(SeismicImportTest, MsEventsBySizeSettingAndOddText) {
    auto s4 = [](double ml) { return 40 * std::exp(ml / 2); };
    std::string wide = "1 2 3 0.7";
    for (int i = 0; i < 100000; ++i) wide += " 9";
    struct Event {
        engine::Point3 centre;
        engine::Rgb colour;
        double halfZ;
        std::string name;
    };
    const std::vector<Event> bands = {{{0, 0, 0}, kOrange, s4(0.5), "0 0 0 0.5"},
                                      {{100, 0, 0}, kRed, s4(1), "10 0 0 1"},
                                      {{200, 0, 0}, kGreen, s4(0.25), "20 0 0"},
                                      {{300, 0, 0}, kBlue, s4(-0.2), "30 0 0 -0.2"},
                                      {{400, 0, 0}, kGreen, s4(0.49), " 40 0 0 0.49"}};
    const std::vector<Event> crlf = {{{10, 20, 30}, kRed, s4(1), "1 2 3 1"},
                                     {{40, 50, 60}, kGreen, s4(0), "4 5 6 0"}};
    const std::vector<Event> zeros = {{{0, 20, 30}, kGreen, s4(0), "NaN 2 3 NaN"},
                                      {{0, 0, 0}, kGreen, s4(0), "-0 -0 -0 -0"}};
    struct Case {
        const char* what;
        std::string text;
        short kind;
        double scale, radius;
        std::size_t polygons;
        std::vector<Event> events;
    } cases[] = {
        {"bands", "0 0 0 0.5\n10 0 0 1\n20 0 0\n30 0 0 -0.2\n 40 0 0 0.49\n", 0, 4, 10, 48, bands},
        {"cube", "0 0 0 1\n", -1, 4, 10, 6, {{{0, 0, 0}, kRed, 1.3 * s4(1) / 2, "0 0 0 1"}}},
        {"fixed cube", "0 0 0 1\n", -1, 0, 2, 6, {{{0, 0, 0}, kRed, 10, "0 0 0 1"}}},
        {"fixed sphere", "0 0 0 3\n", 0, 0, 2, 48, {{{0, 0, 0}, kRed, 20, "0 0 0 3"}}},
        {"radius zero", "1 2 3 1\n4 5 6 2\n", 0, 0, 0, 0, {}},
        {"empty", "", 0, 4, 10, 0, {}},
        {"mark and CR LF", kMark + "1 2 3 1\r\n4 5 6 0\r\n", 0, 4, 10, 48, crlf},
        // NaN and -0 read 0; a radius that underflows to 0 places nothing.
        {"no numbers", "NaN 2 3 NaN\n-0 -0 -0 -0\n0 0 0 -1e308\n", 0, 4, 10, 48, zeros},
        {"wide", wide + "\n", 0, 4, 10, 48, {{{10, 20, 30}, kOrange, s4(0.7), wide}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ScriptResult r = ms(c.text, kAccept, [&c](core::AppContext& app) {
            app.settings.intSphereMarkerKind = c.kind;
            app.settings.dblSphereScale = c.scale;
            app.settings.dblSphereRadius = c.radius;
        });
        ASSERT_EQ(r.rc, 0) << r.err;
        EXPECT_EQ(r.of("msgbox").size(), 0u);
        EXPECT_NE(topGroup(ctx().engine, "Seismic data"), 0u);
        auto ev = events();
        ASSERT_EQ(ev.size(), c.events.size());
        EXPECT_EQ(ctx().engine.polygon_count(), c.polygons * ev.size());
        for (std::size_t i = 0; i < ev.size(); ++i) {
            SCOPED_TRACE(i);
            expectNear(ev[i].centre(), c.events[i].centre);
            EXPECT_EQ(ev[i].colour, c.events[i].colour);
            EXPECT_NEAR(ev[i].halfZ(), c.events[i].halfZ, 1e-4);
            EXPECT_EQ(ev[i].name, c.events[i].name);
        }
        EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("e.ms").string() + " added");
        expectTidyEnd();
    }
}

TEST_F(SeismicImportTest, BinaryBytesEndTidily) {
    std::string bytes;
    for (int i = 0; i < 4096; ++i) bytes += static_cast<char>((i * 37) & 0xFF);
    for (const std::string& text : {bytes, std::string(3000, '\0')}) {
        ScriptResult r = text == bytes ? qkl(text) : ms(text);
        ASSERT_EQ(r.rc, 0) << r.err;
        EXPECT_EQ(scripted(ctx()).progress(), 100);
        EXPECT_EQ(ctx().ui.pointer(), 1);
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
