// Colour maps of depth, dip, dip direction and of the values in names, with their
// questions, limits, failures and the interrupt.
#include <cmath>

#include "AnalysisTestUtil.h"
#include "analysis/GeometryColour.h"

namespace {

using analysistest::AnalysisTest;
using analysistest::walk;
using engine::Handle;
using engine::Point3;
using engine::Rgb;

constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kRed{255, 0, 0}, kYellow{255, 255, 0}, kGreen{0, 255, 0}, kCyan{0, 255, 255},
    kBlue{0, 0, 255};

TEST(NameValue, MiningStepAndEventTime) {
    using analysis::nameValue;
    EXPECT_EQ(nameValue("Mining Step", "Step 12 lower stope"), 12);
    EXPECT_EQ(nameValue("Mining Step", "Step 07"), 7);
    EXPECT_EQ(nameValue("Mining Step", "Step 3"), 3);
    EXPECT_EQ(nameValue("Mining Step", "Step"), 0);
    EXPECT_EQ(nameValue("Mining Step", "Drive north"), 0);
    const double early = nameValue("Event Date Time", "SEISM\r\n2024-03-15\r\n09:05:07\r\nM 1.2");
    EXPECT_DOUBLE_EQ(early, 20240315.090507);
    const double later = nameValue("Event Date Time", "SEISM\r\n2024-03-15\r\n14:00:00\r\nM 0.4");
    EXPECT_GT(later, early);
    EXPECT_GT(nameValue("Event Date Time", "X\r\n2024-03-16\r\n00:00:01"), later);
    EXPECT_EQ(nameValue("Event Date Time", "SEISM\r\n2024-03-15"), 0);
    EXPECT_EQ(nameValue("Depth", "Step 12"), 0);
}

TEST(GeometryTypes, SenseAndScaledLimits) {
    EXPECT_TRUE(analysis::yesMeansInverse("Depth"));
    EXPECT_TRUE(analysis::yesMeansInverse("Dip"));
    EXPECT_FALSE(analysis::yesMeansInverse("Mining Step"));
    EXPECT_FALSE(analysis::yesMeansInverse("Event Date Time"));
    EXPECT_FALSE(analysis::limitsUnscaled("Depth"));
    EXPECT_FALSE(analysis::limitsUnscaled("DipDirection180"));
    EXPECT_FALSE(analysis::limitsUnscaled("VerticeDepth"));
    EXPECT_TRUE(analysis::limitsUnscaled("Dip"));
    EXPECT_TRUE(analysis::limitsUnscaled("Event Date Time"));
}

struct GeometryColourTest : AnalysisTest {
    // Five squares at 0, -25, -50, -75 and -100 m (scene units are decimetres).
    std::vector<Handle> depthLadder() {
        std::vector<Handle> out;
        for (int k = 0; k < 5; ++k) out.push_back(flatSquare(k * 100.0, 0, -250.0 * k));
        return out;
    }
    // A plane through the origin dipping `dip` degrees toward +x.
    Handle dipping(double dip, double y) {
        const double t = std::tan(dip * M_PI / 180);
        return polygon({{10, y + 10, -10 * t},
                        {10, y - 10, -10 * t},
                        {-10, y - 10, 10 * t},
                        {-10, y + 10, 10 * t}});
    }
    Rgb colour(Handle h) const { return ctx.engine.polygon_get_color(h); }
};

TEST_F(GeometryColourTest, DepthYesPutsRedAtTheDeepEnd) {
    auto p = depthLadder();
    ui.answerMsgBox(ui::Answer::Yes);
    ui.answerInput(std::string("-100"));
    ui.answerInput(std::string("0"));
    analysis::p_subColourGeometry(ctx, "Depth");
    EXPECT_EQ(colour(p[4]), kRed);
    EXPECT_EQ(colour(p[3]), kYellow);
    EXPECT_EQ(colour(p[2]), kGreen);
    EXPECT_EQ(colour(p[1]), kCyan);
    EXPECT_EQ(colour(p[0]), kBlue);
    auto q = records("msgbox");
    ASSERT_EQ(q.size(), 1u);
    EXPECT_EQ(q[0]["text"],
              "Select 'Yes' for Normal Colourmapping and 'No' for Inverse Colourmapping");
    EXPECT_EQ(q[0]["title"], "Colourmap Selection");
    // The limits are proposed in metres.
    auto in = records("input");
    ASSERT_EQ(in.size(), 2u);
    EXPECT_EQ(in[0]["prompt"], "Change the Minimum Value");
    EXPECT_EQ(in[0]["title"], "Current minimum value");
    EXPECT_EQ(in[0]["default"], "-100");
    EXPECT_EQ(in[1]["prompt"], "Change the Maximum Value");
    EXPECT_EQ(in[1]["title"], "Current maximum value");
    EXPECT_EQ(in[1]["default"], "0");
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(GeometryColourTest, DepthNoAndNarrowerLimits) {
    auto p = depthLadder();
    ui.answerMsgBox(ui::Answer::No);
    ui.answerInput(std::string("-50"));
    ui.answerInput(std::string("-10"));
    analysis::p_subColourGeometry(ctx, "Depth");
    // Normal map over -500..-100 with scale 1: below blue, above red.
    EXPECT_EQ(colour(p[4]), kBlue);
    EXPECT_EQ(colour(p[3]), kBlue);  // -75 m is below -50 m
    EXPECT_EQ(colour(p[2]), kBlue);  // the minimum itself
    // -25 m is 0.625 of the way up: half of band three, 127.5 to 128.
    EXPECT_EQ(colour(p[1]), (Rgb{128, 255, 0}));
    EXPECT_EQ(colour(p[0]), kRed);  // above the maximum
    EXPECT_EQ(ctx.state.bolInverseColourMap, 0);
}

TEST_F(GeometryColourTest, DipOfKnownPlanes) {
    const Handle flat = dipping(0, 0), d45 = dipping(45, 100), d22 = dipping(22.5, 200),
                 steep = polygon({{0, 300, 10}, {0, 310, 10}, {0, 310, -10}, {0, 300, -10}});
    double v = -1;
    ASSERT_TRUE(analysis::geometryValue(ctx, flat, "Dip", v));
    EXPECT_EQ(v, 0);
    ASSERT_TRUE(analysis::geometryValue(ctx, d45, "Dip", v));
    EXPECT_EQ(v, 45);
    ASSERT_TRUE(analysis::geometryValue(ctx, steep, "Dip", v));
    EXPECT_EQ(v, 90);
    // A face turned over (normal down) has the same dip.
    ctx.engine.polygon_flip_visible_side(d45);
    ASSERT_TRUE(analysis::geometryValue(ctx, d45, "Dip", v));
    EXPECT_EQ(v, 45);

    ui.answerMsgBox(ui::Answer::Yes);
    ui.answerInput(std::string("0"));
    ui.answerInput(std::string("90"));
    analysis::p_subColourGeometry(ctx, "Dip");
    auto in = records("input");
    ASSERT_EQ(in.size(), 2u);
    EXPECT_EQ(in[0]["default"], "0");  // dips are shown as they are
    EXPECT_EQ(in[1]["default"], "90");
    EXPECT_EQ(colour(flat), kRed);
    EXPECT_EQ(colour(d22), kYellow);
    EXPECT_EQ(colour(d45), kGreen);
    EXPECT_EQ(colour(steep), kBlue);
}

TEST_F(GeometryColourTest, DipDirectionFoldedAndFullCircle) {
    // Dipping toward +x (east, with north along +y) and toward -x (west), both seen
    // from above: opposite directions on the full circle, one folded to 180.
    const Handle east = dipping(30, 0);
    const Handle west = polygon({{10, 110, 5}, {10, 90, 5}, {-10, 90, -5}, {-10, 110, -5}});
    double e360 = 0, w360 = 0, e180 = 0, w180 = 0;
    ASSERT_TRUE(analysis::geometryValue(ctx, east, "DipAndDipDirection360", e360));
    ASSERT_TRUE(analysis::geometryValue(ctx, west, "DipAndDipDirection360", w360));
    ASSERT_TRUE(analysis::geometryValue(ctx, east, "DipDirection180", e180));
    ASSERT_TRUE(analysis::geometryValue(ctx, west, "DipDirection180", w180));
    EXPECT_EQ(e360, 90);
    EXPECT_EQ(w360, 270);
    EXPECT_EQ(e180, 90);
    EXPECT_EQ(w180, 90);
    // No question for these two: the first box is the minimum.
    ui.answerInput(std::string("0"));
    ui.answerInput(std::string("36"));
    analysis::p_subColourGeometry(ctx, "DipAndDipDirection360");
    EXPECT_TRUE(records("msgbox").empty());
    auto in = records("input");
    ASSERT_EQ(in.size(), 2u);
    EXPECT_EQ(in[0]["prompt"], "Change the Minimum Value");
    EXPECT_NE(colour(east), kWhite);
    EXPECT_NE(colour(west), kWhite);
}

TEST_F(GeometryColourTest, MiningStepYesPutsBlueAtTheFirstStep) {
    const Handle s1 = flatSquare(0, 0, 0, 10, 0, "Step 01");
    const Handle s5 = flatSquare(50, 0, 0, 10, 0, "Step 05");
    const Handle s9 = flatSquare(100, 0, 0, 10, 0, "Step 09");
    ui.answerInput(std::string("1"));  // value type
    ui.answerMsgBox(ui::Answer::Yes);
    ui.answerInput(std::string("1"));
    ui.answerInput(std::string("9"));
    ctx.commands.find("mnuColourMapOnPolyValue")->handler(ctx);
    auto in = records("input");
    ASSERT_EQ(in.size(), 3u);
    EXPECT_EQ(in[0]["prompt"], "'1' for 'Mining Step' and '2' for 'Seismic Event Date/Time'");
    EXPECT_EQ(in[0]["title"], "Value Type Selection");
    EXPECT_EQ(in[0]["default"], "1");
    EXPECT_EQ(in[1]["default"], "1");
    EXPECT_EQ(in[2]["default"], "9");
    EXPECT_EQ(colour(s1), kBlue);
    EXPECT_EQ(colour(s5), kGreen);
    EXPECT_EQ(colour(s9), kRed);
}

TEST_F(GeometryColourTest, OneHeightGivesTheZeroIncrementBox) {
    const Handle a = flatSquare(0, 0, -40), b = flatSquare(50, 0, -40);
    ui.answerMsgBox(ui::Answer::Yes);
    ui.answerInput(std::string("-4"));
    ui.answerInput(std::string("-4"));
    analysis::p_subColourGeometry(ctx, "Depth");
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[1]["text"], "The Maximum and Minimum values are the same");
    EXPECT_EQ(boxes[1]["title"], "ERROR: Increment Value = 0");
    EXPECT_EQ(colour(a), kWhite);
    EXPECT_EQ(colour(b), kWhite);
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(GeometryColourTest, AnEmptyLimitLeavesTheSceneWhite) {
    auto p = depthLadder();
    ui.answerMsgBox(ui::Answer::Yes);
    ui.answerInput(std::string("-100"));
    ui.answerInput(std::string(""));
    analysis::p_subColourGeometry(ctx, "Depth");
    for (Handle h : p) EXPECT_EQ(colour(h), kWhite);
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(GeometryColourTest, HiddenPolygonsKeepTheirColour) {
    auto p = depthLadder();
    ctx.engine.polygon_disable(p[2]);
    ui.answerMsgBox(ui::Answer::Yes);
    ui.answerInput(std::string("-100"));
    ui.answerInput(std::string("0"));
    analysis::p_subColourGeometry(ctx, "Depth");
    EXPECT_EQ(colour(p[2]), (Rgb{10, 20, 30}));
    EXPECT_EQ(colour(p[4]), kRed);
}

TEST_F(GeometryColourTest, InterruptKeepsWhatWasColoured) {
    std::vector<Handle> p;
    for (int k = 0; k < 1000; ++k) p.push_back(flatSquare(k * 30.0, 0, -k));
    // Pressed once the colouring pass has begun (the first square is neither its
    // own colour nor white any more).
    ui.onPump = [&] {
        const Rgb c = ctx.engine.polygon_get_color(p.front());
        if (c != kWhite && c != Rgb{10, 20, 30}) ctx.state.bolInterruptProcess = true;
    };
    ui.answerMsgBox(ui::Answer::Yes);
    ui.answerInput(std::string("-99.9"));
    ui.answerInput(std::string("0"));
    analysis::p_subColourGeometry(ctx, "Depth");
    std::size_t coloured = 0;
    while (coloured < p.size() && colour(p[coloured]) != kWhite) ++coloured;
    EXPECT_GT(coloured, 0u);
    EXPECT_LT(coloured, p.size());
    // Everything after the stop is still white: the coloured ones are a prefix.
    for (std::size_t k = coloured; k < p.size(); ++k) ASSERT_EQ(colour(p[k]), kWhite) << k;
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(GeometryColourTest, VerticesByDepth) {
    const Handle tri = polygon({{0, 0, 0}, {10, 0, -500}, {10, -10, -1000}});
    ui.answerInput(std::string("-100"));
    ui.answerInput(std::string("0"));
    analysis::p_subColourVertices(ctx, "VerticeDepth");
    EXPECT_TRUE(records("msgbox").empty());
    auto in = records("input");
    ASSERT_EQ(in.size(), 2u);
    EXPECT_EQ(in[0]["default"], "-100");
    EXPECT_EQ(colour(tri), kWhite);
    std::vector<Rgb> got;
    for (auto pt = ctx.engine.polygon_get_first_point(tri); pt;
         pt = ctx.engine.point_get_next_point(pt))
        got.push_back(ctx.engine.point_get_rgb(pt).value_or(Rgb{-1, -1, -1}));
    // The inverse map: the top blue, the bottom red.
    EXPECT_EQ(got, (std::vector<Rgb>{kBlue, kGreen, kRed}));
}

TEST_F(GeometryColourTest, UnknownTypeDoesNothing) {
    const Handle a = flatSquare(0, 0, 0);
    analysis::p_subColourGeometry(ctx, "Colour");
    EXPECT_EQ(colour(a), (Rgb{10, 20, 30}));
    EXPECT_TRUE(ui.transcript().empty());
}

}  // namespace
