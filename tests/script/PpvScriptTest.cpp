// Seismic PPV end to end as a script drives it: the dialog answered, an event file
// read, the records, colours and boxes checked against values worked out by hand.

#include <string>
#include <vector>

#include "ScriptFixture.h"
#include "analysis/AnalysisRegistration.h"
#include "core/LenientNumber.h"

namespace {

using scripttest::ScriptResult;
using scripttest::ScriptTest;

void registerAnalysis(core::AppContext& ctx) { analysis::registerAnalysis(ctx); }

// A horizontal square of side 200 scene units centred on (x, 0, 0).
std::string square(double x, const std::string& var) {
    auto n = [](double v) { return std::to_string(v); };
    return "polygon --name \"x\" " + n(x + 100) + ",100,0 " + n(x + 100) + ",-100,0 " +
           n(x - 100) + ",-100,0 " + n(x - 100) + ",100,0 > " + var + "\n";
}

// Near (0, 0, 0), and ten kilometres away.
const std::string kModel = square(0, "NEAR") + square(100000, "FAR");

std::vector<std::string> fields(const std::string& name) {
    std::vector<std::string> out;
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = name.find('\t', start);
        out.push_back(name.substr(start, tab == std::string::npos ? tab : tab - start));
        if (tab == std::string::npos) return out;
        start = tab + 1;
    }
}

struct PpvScriptTest : ScriptTest {
    std::string events(const std::string& text) {
        const std::string path = dir.file("events.txt");
        testsupport::writeFile(path, text);
        return path;
    }
    // The names and colours of the enabled polygons, in walk order.
    std::vector<std::string> names() {
        std::vector<std::string> out;
        const engine::Engine& e = ctx().engine;
        for (auto h = e.polygon_get_first_polygon(); h != 0; h = e.polygon_get_next(h))
            if (!e.polygon_is_disabled(h)) out.push_back(e.entity_get_name(h));
        return out;
    }
};

TEST_F(PpvScriptTest, TwoEventsAtAHundredMetresFromTheMenu) {
    // ML 2 at D = 100 m gives exp(1.5473 - 4.6052) = 0.047 each time.
    const std::string file = events("20060629 132944 100 0 0 2\n20060629 132944 100 0 0 2\n");
    ScriptResult r = runScript(kModel + "answer open \"" + file +
                                   "\"\n"
                                   "answer form frm21_DataChanges accept\n"
                                   "answer form frm30_ImportPPV accept\n"
                                   "run mnuImportSeismicEvents\n"
                                   "call polygon_get_color $NEAR\n"
                                   "call polygon_get_color $FAR\n",
                               registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    const auto n = names();
    ASSERT_EQ(n.size(), 2u);
    const auto near = fields(n[0]);
    ASSERT_EQ(near.size(), 4u);
    EXPECT_EQ(near[0], "CM_PPVel");
    EXPECT_NEAR(core::valNumber(near[1]), 0.094, 2e-4);
    EXPECT_NEAR(core::valNumber(near[2]), 0.047, 1e-4);
    EXPECT_EQ(near[3], "2");
    EXPECT_EQ(n[1], "CM_PPVel\t0\t0\t0");
    // 0.094 on 0.03 to 0.12 lies in the yellow band: red (0.094 - 0.075) / 0.0225 * 255.
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 4u);  // the two polygons, then their colours
    EXPECT_EQ(calls[2]["result"], nlohmann::json::parse("[215,255,0]"));
    EXPECT_EQ(calls[3]["result"], nlohmann::json::parse("[128,128,128]"));
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "NOTICE: Function completed");
    EXPECT_EQ(boxes[0]["text"], "Seismic information from file " + file + " imported");
    EXPECT_EQ(ctx().state.txtComment, "Seismic information from file " + file + " imported");
    EXPECT_EQ(ctx().state.strLoadedFiles, file + " added");
}

TEST_F(PpvScriptTest, AnEventExactlyAtTheThresholdCountsAndIsDrawn) {
    // K1 = K2 = 0: PPV = 1 / D, and D = 1 m exactly equals the threshold 1.
    const std::string file = events("d t 1 0 0 1\nd t 1.001 0 0 1\n");
    ScriptResult r = runScript(kModel +
                                   "answer form frm30_ImportPPV accept cboK1=0 cboK2=0 "
                                   "cboPPVThreshold=1 chkLoadEvents=1\n"
                                   "call p_subEvaluatePPV \"" + file + "\"\n"
                                   "call polygon_get_color $NEAR\n",
                               registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    const auto n = names();
    ASSERT_EQ(n.size(), 2u);
    EXPECT_EQ(n[0], "CM_PPVel\t1\t1\t1");
    EXPECT_EQ(n[1], "CM_PPVel\t0\t0\t0");
    // The threshold moved the scale to 1 .. 4: the minimum is blue.
    EXPECT_EQ(r.of("call").back()["result"], nlohmann::json::parse("[0,0,255]"));
    // One marker (the second event falls short), disabled, named by the line.
    const engine::Engine& e = ctx().engine;
    long markers = 0;
    for (auto h = e.polygon_get_first_polygon(); h != 0; h = e.polygon_get_next(h)) {
        if (!e.polygon_is_disabled(h)) continue;
        EXPECT_EQ(e.entity_get_name(h), "d\tt\t1\t0\t0\t1");
        EXPECT_EQ(e.polygon_get_color(h), (engine::Rgb{248, 7, 7}));
        ++markers;
    }
    EXPECT_GT(markers, 0);
}

TEST_F(PpvScriptTest, AnEventOnAPolygonCentreEndsInTheErrorBox) {
    const std::string file = events("d t 100 0 0 2\nd t 0 0 0 1\nd t 100 0 0 2\n");
    ScriptResult r = runScript(kModel +
                                   "answer form frm30_ImportPPV accept\n"
                                   "call p_subEvaluatePPV \"" + file + "\"\n",
                               registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Seismic information error");
    EXPECT_EQ(boxes[0]["text"],
              "Associated seismic information could not be found OR The seismic file is invalid");
    // The first event's hit stays; the third was never read.
    EXPECT_EQ(fields(names()[0]).at(3), "1");
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
}

TEST_F(PpvScriptTest, EqualLimitsAndAClosedFormChangeNothing) {
    const std::string file = events("d t 100 0 0 2\n");
    ScriptResult r = runScript(kModel +
                                   "answer form frm30_ImportPPV accept cboPPVMin=0.05 "
                                   "cboPPVMax=0.05\n"
                                   "call p_subEvaluatePPV \"" + file + "\"\n"
                                   "answer form frm30_ImportPPV close\n"
                                   "call p_subEvaluatePPV \"" + file + "\"\n",
                               registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "The Maximum and Minimum values are the same");
    EXPECT_EQ(boxes[0]["title"], "ERROR: Increment Value = 0");
    EXPECT_EQ(names(), (std::vector<std::string>{"x", "x"}));
    EXPECT_EQ(ctx().state.bolColourMapCancelled, 0);
}

}  // namespace
