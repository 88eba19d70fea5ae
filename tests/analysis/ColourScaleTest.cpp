// The band colours, the outside colours of the four scales, the byte rounding, the
// black fall-through, the percentage zones and the scale setup.
#include <cmath>
#include <limits>

#include "AnalysisTestUtil.h"
#include "analysis/ColourMapForm.h"
#include "analysis/ColourScale.h"

namespace {

using analysis::bandColour;
using analysistest::AnalysisTest;
using engine::Rgb;

constexpr bool kNormal = false, kInverse = true;

// m = 0, M = 100: increment 25.
Rgb at(bool inverse, double v, int scale = 1) { return bandColour(inverse, v, 100, 0, 25, scale); }

TEST(BandColour, NormalMapRunsBlueCyanGreenYellowRed) {
    EXPECT_EQ(at(kNormal, 0), (Rgb{0, 0, 255}));
    EXPECT_EQ(at(kNormal, 25), (Rgb{0, 255, 255}));
    EXPECT_EQ(at(kNormal, 50), (Rgb{0, 255, 0}));
    EXPECT_EQ(at(kNormal, 75), (Rgb{255, 255, 0}));
    EXPECT_EQ(at(kNormal, 100), (Rgb{255, 0, 0}));
    // Inside the bands: 10 is 0.4 of band one, 60 is 0.4 of band three, 90 is 0.6 of band four.
    EXPECT_EQ(at(kNormal, 10), (Rgb{0, 102, 255}));
    EXPECT_EQ(at(kNormal, 60), (Rgb{102, 255, 0}));
    EXPECT_EQ(at(kNormal, 90), (Rgb{255, 102, 0}));
    // 35 is 0.4 into band two: blue falls from 255 to 153.
    EXPECT_EQ(at(kNormal, 35), (Rgb{0, 255, 153}));
}

TEST(BandColour, InverseMapRunsRedYellowGreenCyanBlue) {
    EXPECT_EQ(at(kInverse, 0), (Rgb{255, 0, 0}));
    EXPECT_EQ(at(kInverse, 25), (Rgb{255, 255, 0}));
    EXPECT_EQ(at(kInverse, 50), (Rgb{0, 255, 0}));
    EXPECT_EQ(at(kInverse, 75), (Rgb{0, 255, 255}));
    EXPECT_EQ(at(kInverse, 100), (Rgb{0, 0, 255}));
    EXPECT_EQ(at(kInverse, 10), (Rgb{255, 102, 0}));
    EXPECT_EQ(at(kInverse, 35), (Rgb{153, 255, 0}));
    EXPECT_EQ(at(kInverse, 60), (Rgb{0, 255, 102}));
    EXPECT_EQ(at(kInverse, 90), (Rgb{0, 102, 255}));
}

TEST(BandColour, ExactHalvesGoToTheEvenByte) {
    // 12.5 of 25 is 127.5 of 255: to 128.
    EXPECT_EQ(at(kNormal, 12.5), (Rgb{0, 128, 255}));
    // With an increment of 255 the channel is the value itself: 0.5, 1.5, 2.5.
    auto wide = [](double v) { return bandColour(kNormal, v, 1020, 0, 255, 1); };
    EXPECT_EQ(wide(0.5).g, 0);
    EXPECT_EQ(wide(1.5).g, 2);
    EXPECT_EQ(wide(2.5).g, 2);
    EXPECT_EQ(wide(3.5).g, 4);
    EXPECT_EQ(analysis::channelByte(127.5), 128);
    EXPECT_EQ(analysis::channelByte(128.5), 128);
    EXPECT_EQ(analysis::channelByte(254.5), 254);
    EXPECT_EQ(analysis::channelByte(-0.4), 0);
    EXPECT_EQ(analysis::channelByte(std::nan("")), 0);
}

TEST(BandColour, OutsideColoursOfTheFourScales) {
    struct Row {
        int scale;
        Rgb normalLow, normalHigh, inverseLow, inverseHigh;
    };
    const Row rows[] = {
        {1, {0, 0, 255}, {255, 0, 0}, {255, 0, 0}, {0, 0, 255}},
        {2, {0, 0, 128}, {128, 0, 0}, {128, 0, 0}, {0, 0, 128}},
        {3, {64, 64, 64}, {192, 192, 192}, {192, 192, 192}, {64, 64, 64}},
        {4, {128, 128, 128}, {255, 0, 0}, {255, 0, 0}, {128, 128, 128}},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.scale);
        EXPECT_EQ(at(kNormal, -0.001, r.scale), r.normalLow);
        EXPECT_EQ(at(kNormal, 100.001, r.scale), r.normalHigh);
        EXPECT_EQ(at(kInverse, -1e9, r.scale), r.inverseLow);
        EXPECT_EQ(at(kInverse, 1e9, r.scale), r.inverseHigh);
        // The limits themselves are inside.
        EXPECT_EQ(at(kNormal, 0, r.scale), (Rgb{0, 0, 255}));
        EXPECT_EQ(at(kInverse, 100, r.scale), (Rgb{0, 0, 255}));
    }
}

TEST(BandColour, AValueThatFailsEveryTestIsBlack) {
    // 0.2 + 4 * (0.7 / 4) rounds to just under 0.9: the maximum itself passes no test.
    const double m = 0.2, M = 0.9, i = (M - m) / 4.0;
    ASSERT_LT(m + 4 * i, M);
    EXPECT_EQ(bandColour(kNormal, M, M, m, i, 1), (Rgb{0, 0, 0}));
    EXPECT_EQ(bandColour(kInverse, M, M, m, i, 4), (Rgb{0, 0, 0}));
    // A hair above the maximum is outside again.
    EXPECT_EQ(bandColour(kNormal, std::nextafter(M, 2.0), M, m, i, 1), (Rgb{255, 0, 0}));
    // Not a number passes nothing either.
    EXPECT_EQ(bandColour(kNormal, std::nan(""), 100, 0, 25, 1), (Rgb{0, 0, 0}));
}

TEST(BandColour, MaximumBelowMinimumRunsTheTestsAsWritten) {
    // m = 100, M = 0, increment -25: under 100 is below the minimum, and above 100
    // passes no band and is above the maximum.
    EXPECT_EQ(bandColour(kNormal, 50, 0, 100, -25, 1), (Rgb{0, 0, 255}));
    EXPECT_EQ(bandColour(kNormal, 150, 0, 100, -25, 1), (Rgb{255, 0, 0}));
}

TEST(PercentageColour, DistinctZones) {
    using analysis::percentageColour;
    EXPECT_EQ(percentageColour(-1.0), (Rgb{0, 0, 0}));
    EXPECT_EQ(percentageColour(-0.5), (Rgb{55, 55, 55}));
    EXPECT_EQ(percentageColour(-1.5), (Rgb{55, 55, 55}));
    EXPECT_EQ(percentageColour(0), (Rgb{255, 0, 0}));
    EXPECT_EQ(percentageColour(24.99), (Rgb{255, 0, 0}));
    EXPECT_EQ(percentageColour(25), (Rgb{255, 255, 0}));
    EXPECT_EQ(percentageColour(50), (Rgb{0, 255, 0}));
    EXPECT_EQ(percentageColour(75), (Rgb{0, 255, 255}));
    EXPECT_EQ(percentageColour(89.99), (Rgb{0, 255, 255}));
    EXPECT_EQ(percentageColour(90), (Rgb{0, 0, 255}));
    EXPECT_EQ(percentageColour(100), (Rgb{0, 0, 255}));
    EXPECT_EQ(percentageColour(100.5), (Rgb{205, 205, 205}));
}

TEST_F(AnalysisTest, PolygonColourFollowsTheSharedFlag) {
    const auto h = flatSquare(0, 0, 0);
    ctx.state.bolInverseColourMap = analysis::kNormalMap;
    analysis::P_subColourPolygon(ctx, h, 100, 0, 0, 100, 25, 1);
    EXPECT_EQ(ctx.engine.polygon_get_color(h), (Rgb{0, 0, 255}));
    ctx.state.bolInverseColourMap = analysis::kInverseMap;
    analysis::P_subColourPolygon(ctx, h, 100, 0, 0, 100, 25, 1);
    EXPECT_EQ(ctx.engine.polygon_get_color(h), (Rgb{255, 0, 0}));
    // Any other value of the flag colours nothing.
    ctx.state.bolInverseColourMap = 1;
    analysis::P_subColourPolygon(ctx, h, 100, 0, 50, 100, 25, 1);
    EXPECT_EQ(ctx.engine.polygon_get_color(h), (Rgb{255, 0, 0}));
    analysis::P_subPercentageColour(ctx.engine, h, 30);
    EXPECT_EQ(ctx.engine.polygon_get_color(h), (Rgb{255, 255, 0}));
    // A bad handle is no crash.
    analysis::P_subColourNormal(ctx.engine, 0, 100, 0, 50, 100, 25, 1);
}

TEST_F(AnalysisTest, VertexColourIsAlwaysTheInverseMap) {
    ctx.state.bolInverseColourMap = analysis::kNormalMap;
    Rgb c;
    analysis::P_subVertexColour(0, 100, 0, 100, 25, 1, c);
    EXPECT_EQ(c, (Rgb{255, 0, 0}));
    analysis::P_subVertexColour(-5, 100, 0, 100, 25, 4, c);
    EXPECT_EQ(c, (Rgb{255, 0, 0}));
    analysis::P_subVertexColour(105, 100, 0, 100, 25, 4, c);
    EXPECT_EQ(c, (Rgb{128, 128, 128}));
}

TEST_F(AnalysisTest, VerticesByDepthAndByTheValuesInTheName) {
    engine::Engine& e = ctx.engine;
    const auto tri = polygon({{0, 0, 0}, {10, 0, 50}, {10, -10, 100}});
    analysis::P_subColourVertices(e, tri, 100, 0, 100, 25, 1, "VerticeDepth");
    std::vector<Rgb> got;
    for (auto pt = e.polygon_get_first_point(tri); pt; pt = e.point_get_next_point(pt))
        got.push_back(e.point_get_rgb(pt).value_or(Rgb{-1, -1, -1}));
    EXPECT_EQ(got, (std::vector<Rgb>{{255, 0, 0}, {0, 255, 0}, {0, 0, 255}}));

    // Four points: the fourth keeps no colour, the name holds three values. CR LF
    // counts as a separator too.
    const auto quad = flatSquare(50, 50, 0, 10, 0, "100\t50\r\n0");
    analysis::P_subColourVertices(e, quad, 100, 0, 100, 25, 1, "VerticeValue");
    got.clear();
    for (auto pt = e.polygon_get_first_point(quad); pt; pt = e.point_get_next_point(pt))
        got.push_back(e.point_get_rgb(pt).value_or(Rgb{-1, -1, -1}));
    EXPECT_EQ(got, (std::vector<Rgb>{{0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {-1, -1, -1}}));
}

TEST_F(AnalysisTest, ScaleSetupLoadsTheFormAndReadsTheFirstOptionOn) {
    ctx.state.bolInverseColourMap = analysis::kNormalMap;
    double max = 10, min = 2, range = 0, inc = 0;
    int scale = 3;
    analysis::P_subColourScaleSetup(ctx, max, min, range, inc, scale);
    EXPECT_EQ(range, 8);
    EXPECT_EQ(inc, 2);
    EXPECT_EQ(scale, 1);  // a form never shown has optCM1
    // Loading the form set the shared flag to the inverse map.
    EXPECT_EQ(ctx.state.bolInverseColourMap, analysis::kInverseMap);

    forms::Form& f = analysis::colourMapForm(ctx);
    f.setFromUser("optCM3", "1");
    EXPECT_EQ(f.valueOf("optCM1"), "0");
    analysis::P_subColourScaleSetup(ctx, max, min, range, inc, scale);
    EXPECT_EQ(scale, 3);
    // With none on, the scale keeps its value.
    f.at("optCM3").value = 0;
    scale = 4;
    analysis::P_subColourScaleSetup(ctx, max, min, range, inc, scale);
    EXPECT_EQ(scale, 4);
}

TEST_F(AnalysisTest, ZeroIncrementShowsTheBoxAndTheArrow) {
    ui.setPointer(11);
    EXPECT_FALSE(analysis::zeroIncrementStops(ctx, 0.5));
    EXPECT_TRUE(records("msgbox").empty());
    EXPECT_TRUE(analysis::zeroIncrementStops(ctx, 0));
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "The Maximum and Minimum values are the same");
    EXPECT_EQ(boxes[0]["title"], "ERROR: Increment Value = 0");
    EXPECT_EQ(ui.pointer(), 1);
}

}  // namespace
