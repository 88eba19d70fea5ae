// Oriented joints along the vertical hole: the three primitives, the two angle
// conventions, the record and the edge of the hole.

#include <cmath>

#include "DrillholeTestUtil.h"

namespace {

using namespace drillholetest;
using importtest::Poly;
using importtest::ScriptResult;

class JointTest : public DrillholeTest {
protected:
    ScriptResult readJoints(const std::string& text, bool dipAndDipDirection = false) {
        write("j.orj", text);
        return run("clock 2024-01-02 03:04:05\n" + hole(kVerticalHole) +
                   jointRun("j.orj", dipAndDipDirection));
    }
    // The joints' polygons grouped by name, in scene order.
    std::vector<std::vector<Poly>> joints() {
        std::vector<std::vector<Poly>> out;
        for (auto& p : named("CM_OriJo")) {
            if (out.empty() || out.back().front().name != p.name) out.emplace_back();
            out.back().push_back(p);
        }
        return out;
    }
};

TEST_F(JointTest, PrimitivesByWhichAnglesWereRead) {
    // Alpha 90 without beta: a disc across the hole. Alpha only: a double pyramid.
    // Neither: a sphere. At the hole's end depth: outside every interval. Alpha 0,
    // beta 0: a disc along the hole.
    ScriptResult r = readJoints("V 10 90 -1\nV 20 30 -1\nV 30 -1 -1\nV 50 20 30\nV 40 0 0\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto js = joints();
    ASSERT_EQ(js.size(), 4u);

    auto f = nameFields(js[0][0].name);
    ASSERT_GE(f.size(), 15u);
    EXPECT_EQ(std::vector<std::string>(f.begin(), f.begin() + 12),
              (std::vector<std::string>{"CM_OriJo", "Plane", "2024-01-02", "03:04:05", "V",
                                        "Depth (m): ", "10", "Alpha (degrees):", "90",
                                        "Beta (degrees):", "0", "Dip (degrees):"}));
    EXPECT_LT(std::fabs(std::stod(f[12])), 0.2);  // across a vertical hole: flat
    EXPECT_EQ(f[13], "Dip Direction (degrees):");
    ASSERT_EQ(js[0].size(), 2u);  // both faces
    EXPECT_EQ(js[0][0].colour, (engine::Rgb{235, 15, 15}));
    const engine::Point3 c = centre(js[0][0]);
    EXPECT_LT(std::hypot(c.x, c.y), 1e-3);
    EXPECT_NEAR(c.z, -100, 1e-3);
    // Diameter 10 m: corners 5 m out (the disc's corner table is good to ~1 cm).
    for (const auto& q : js[0][0].points) EXPECT_NEAR(distance(q, c), 50, 0.01);

    // Pyramid: two four-sided cones tip to tip at 20 m, h = 50 sin 60 each way.
    // Sphere: radius 0.4 times the diameter, eight triangles, at 30 m.
    const double h = 50 * std::sin(60 * 3.14159265358979 / 180);
    struct Solid {
        const char* kind;
        std::size_t polys;
        engine::Rgb colour;
        double zLo, zHi;
    } solids[] = {{"Pyramid", 10, {15, 235, 15}, -200 - h, -200 + h},
                  {"Sphere", 8, {15, 15, 235}, -340, -260}};
    for (std::size_t i = 0; i < 2; ++i) {
        const Solid& s = solids[i];
        SCOPED_TRACE(s.kind);
        const auto& j = js[i + 1];
        f = nameFields(j[0].name);
        EXPECT_EQ(f[1], s.kind);
        EXPECT_EQ(f[12], "-1");
        EXPECT_EQ(f[14], "-1");
        ASSERT_EQ(j.size(), s.polys);
        EXPECT_EQ(j[0].colour, s.colour);
        engine::Point3 lo, hi;
        bounds(j, lo, hi);
        EXPECT_NEAR(lo.z, s.zLo, 1e-3);
        EXPECT_NEAR(hi.z, s.zHi, 1e-3);
    }
    EXPECT_EQ(js[1][0].groupName, "Pyramid");

    f = nameFields(js[3][0].name);  // along a vertical hole: a vertical disc
    EXPECT_EQ(f[6], "40");
    EXPECT_NEAR(std::stod(f[12]), 90, 0.2);

    for (const auto& j : js) {
        const engine::Handle holeGroup = ctx().engine.group_get_father_group(j[0].group);
        EXPECT_EQ(groupName(holeGroup), "DH Orientated Joints");
        EXPECT_EQ(groupName(ctx().engine.group_get_father_group(holeGroup)),
                  "DH Oriented Joint data");
    }
}

TEST_F(JointTest, BothAngleConventionsComeBackFromTheDisc) {
    ScriptResult r = readJoints("V 10 30 120\nV 20 60 300 a b c d e f\nV 30 45 10 x\n", true);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto js = joints();
    ASSERT_EQ(js.size(), 3u);
    const double expect[][2] = {{30, 120}, {60, 300}, {45, 10}};
    for (std::size_t i = 0; i < 3; ++i) {
        auto f = nameFields(js[i][0].name);
        ASSERT_GE(f.size(), 15u);
        EXPECT_NEAR(std::stod(f[12]), expect[i][0], 0.11) << i;
        EXPECT_NEAR(std::stod(f[14]), expect[i][1], 0.11) << i;
    }
    // Extra columns in pairs, a line each; missing ones stay empty, no third pair.
    EXPECT_NE(js[1][0].name.find("\r\na\tb\r\nc\td\r\ne\tf"), std::string::npos);
    const std::string& n3 = js[2][0].name;
    EXPECT_EQ(n3.substr(n3.size() - 7), "\r\nx\t\r\n\t");

    // Alpha and beta on a vertical hole: alpha 30 is a plane 60 degrees from the
    // axis, dip 60 whatever the beta, which turns the dip direction round the hole.
    r = readJoints("V 10 30 0\nV 20 30 90\nV 30 30 200\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    js = joints();
    ASSERT_EQ(js.size(), 3u);
    std::vector<double> directions;
    for (const auto& j : js) {
        auto f = nameFields(j[0].name);
        EXPECT_NEAR(std::stod(f[12]), 60, 0.11);
        directions.push_back(std::stod(f[14]));
    }
    EXPECT_NE(directions[0], directions[1]);
    EXPECT_NE(directions[1], directions[2]);
}

TEST_F(JointTest, UnknownHolesDepthsOffTheHoleAndOddBytes) {
    ScriptResult r = readJoints("W 10 30 40\nV 60 30 40\nV -1 30 40\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(named("CM_OriJo").size(), 0u);
    EXPECT_EQ(groupsNamed("DH Orientated Joints").size(), 2u);
    EXPECT_EQ(r.of("comment").back()["text"],
              "Start time: 03:04:05   End time: 03:04:05   Number of lines read: 3");

    std::string odd = "\xEF\xBB\xBFV 1e308 30 40\nV NaN 1e308 -0\nV 5 -0 1e308\nV 6 NaN NaN\n";
    for (int i = 0; i < 100000; ++i) odd += "9 ";
    r = readJoints(odd + "\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(ctx().ui.pointer(), 1);
    // 1e308 m is beyond the hole; NaN reads 0: depths 0, 5 and 6 are on it.
    EXPECT_EQ(joints().size(), 3u);
}

}  // namespace
