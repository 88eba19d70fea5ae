// Colour maps of geometry, the colour scale procedures and the split, end to end as
// a script drives them.

#include "ScriptFixture.h"
#include "analysis/AnalysisRegistration.h"

namespace {

using scripttest::ScriptResult;
using scripttest::ScriptTest;

void registerAnalysis(core::AppContext& ctx) { analysis::registerAnalysis(ctx); }

// A horizontal square of side 200 decimetres about (x, 0) at height z, front up.
std::string square(double x, double z, const std::string& var, const std::string& name = "x") {
    auto n = [](double v) { return std::to_string(v); };
    return "polygon --name \"" + name + "\" " + n(x + 100) + ",100," + n(z) + " " + n(x + 100) +
           ",-100," + n(z) + " " + n(x - 100) + ",-100," + n(z) + " " + n(x - 100) + ",100," +
           n(z) + " > " + var + "\n";
}

TEST_F(ScriptTest, DepthColourMapFromTheMenu) {
    ScriptResult r =
        runScript(square(0, 0, "TOP") + square(300, -500, "MID") + square(600, -1000, "LOW") +
                      "answer msgbox No\n"
                      "answer input -100\n"
                      "answer input 0\n"
                      "run mnuColourMapOnPolyDepth\n"
                      "call polygon_get_color $TOP\n"
                      "call polygon_get_color $MID\n"
                      "call polygon_get_color $LOW\n",
                  registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 6u);  // three polygons, three colours
    EXPECT_EQ(calls[3]["result"], nlohmann::json::parse("[255,0,0]"));
    EXPECT_EQ(calls[4]["result"], nlohmann::json::parse("[0,255,0]"));
    EXPECT_EQ(calls[5]["result"], nlohmann::json::parse("[0,0,255]"));
    auto inputs = r.of("input");
    ASSERT_EQ(inputs.size(), 2u);
    EXPECT_EQ(inputs[0]["default"], "-100");
    EXPECT_EQ(inputs[1]["default"], "0");
}

TEST_F(ScriptTest, ColourScaleProceduresThroughCall) {
    ScriptResult r = runScript(
        "call P_subColourScaleSetup 100 0 0 0 3\n"
        "set frm29_ColourMap.optCM4 1\n"
        "call P_subColourScaleSetup 100 20 0 0 1\n"
        "call P_subVertexColour 0 100 0 100 25 1 0,0,0\n"
        "call P_subVertexColour -1 100 0 100 25 4 0,0,0\n",
        registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[0]["result"], nlohmann::json::parse("[100, 0, 100, 25, 1]"));
    EXPECT_EQ(calls[1]["result"], nlohmann::json::parse("[100, 20, 80, 20, 4]"));
    EXPECT_EQ(calls[2]["result"][6], nlohmann::json::parse("[255,0,0]"));
    EXPECT_EQ(calls[3]["result"][6], nlohmann::json::parse("[255,0,0]"));
}

TEST_F(ScriptTest, PercentageAndDirectMapsOnAPolygon) {
    ScriptResult r = runScript(square(0, 0, "P") +
                                   "call P_subPercentageColour $P 80\n"
                                   "call polygon_get_color $P\n"
                                   "call P_subColourNormal $P 100 0 12.5 100 25 1\n"
                                   "call polygon_get_color $P\n"
                                   "call P_subColourInverse $P 100 0 101 100 25 3\n"
                                   "call polygon_get_color $P\n",
                               registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 7u);
    EXPECT_EQ(calls[2]["result"], nlohmann::json::parse("[0,255,255]"));
    EXPECT_EQ(calls[4]["result"], nlohmann::json::parse("[0,128,255]"));
    EXPECT_EQ(calls[6]["result"], nlohmann::json::parse("[64,64,64]"));
}

TEST_F(ScriptTest, MiningStepAndTheNameValueOfTheLastRun) {
    ScriptResult r = runScript(square(0, 0, "A", "Step 02") + square(300, 0, "B", "Step 04") +
                                   "answer input 1\n"
                                   "answer msgbox No\n"
                                   "answer input 2\n"
                                   "answer input 4\n"
                                   "run mnuColourMapOnPolyValue\n"
                                   "call polygon_get_color $A\n"
                                   "call p_subNameValue $B 0\n",
                               registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 4u);
    // No for the mining step: red at the first step.
    EXPECT_EQ(calls[2]["result"], nlohmann::json::parse("[255,0,0]"));
    EXPECT_EQ(calls[3]["result"][1], 4);
}

TEST_F(ScriptTest, SplitByDoubleClickingTheGround) {
    // The ground square under the middle of the window is the plane z = 0; a wall
    // far to the side crosses it.
    ScriptResult r = runScript(
        "polygon 1000,1000,0 1000,-1000,0 -1000,-1000,0 -1000,1000,0 > G\n"
        "polygon --name wall 9000,0,100 9040,0,100 9040,0,-100 9000,0,-100 > W\n"
        "run mnuSplitPolyDrawLines\n"
        "mouse dblclick 400 300\n"
        "dump scene.json\n",
        registerAnalysis);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(r.of("comment")[1]["text"],
              "Double click on the plane that must be used to split all visible polygons and "
              "create section lines");
    auto scene = nlohmann::json::parse(testsupport::readFile(dir.file("scene.json")));
    std::map<std::string, int> groupOf;
    std::map<int, std::string> nameOf;
    for (const auto& g : scene["groups"]) nameOf[g["handle"]] = g["name"];
    int front = 0, back = 0, tubes = 0, walls = 0;
    for (const auto& p : scene["polygons"]) {
        const std::string group = nameOf[p["group"]];
        if (p["name"] == "wall") {
            ++walls;
            front += group == "FrontPolyGroup";
            back += group == "BackPolyGroup";
        }
        if (group == "ExcPolyGroup") {
            ++tubes;
            EXPECT_EQ(p["enabled"], true);
        }
    }
    EXPECT_EQ(walls, 2);
    EXPECT_EQ(front, 1);
    EXPECT_EQ(back, 1);
    EXPECT_EQ(tubes, 6);
}

}  // namespace
