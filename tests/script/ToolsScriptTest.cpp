// The tools driven by scripts at the start-up camera and an 800 x 600 window:
// the pixels are worked out from the camera of a first, empty run.
#include <cmath>
#include <fstream>
#include <sstream>

#include "ScriptFixture.h"

namespace {

using engine::Point3;
using scripttest::ScriptResult;
using scripttest::ScriptTest;

std::string pt(const Point3& p) {
    std::ostringstream o;
    o.precision(17);
    o << p.x << "," << p.y << "," << p.z;
    return o.str();
}

std::string fixed(double v, int d) {
    const double s = std::pow(10.0, d);
    double r = std::round(v * s) / s;
    if (r == 0) r = 0;
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", d, r);
    return buf;
}

class ToolsScript : public ScriptTest {
protected:
    // Where the rays of two window pixels meet the level z = 0 at the start-up camera.
    void SetUp() override {
        ASSERT_EQ(runScript("echo camera\n").rc, 0);
        for (int i = 0; i < 3; ++i) spot[i] = ground(200.0 + 200 * i, 300.0 - 60 * i);
        northAlongX = ctx().state.sngNorthAxis == 0.0f;
        r = engine::length(spot[1] - spot[0]) / 10;
    }
    Point3 ground(double x, double y) {
        Point3 o, d;
        ctx().engine.pixel_ray(x, y, o, d);
        return o + d * (-o.z / d.z);
    }
    std::string pixelOf(const Point3& p) {
        double x = 0, y = 0;
        EXPECT_EQ(ctx().engine.engine_3D_point_to_2D(p, x, y), 0);
        std::ostringstream o;
        o.precision(17);
        o << x << " " << y;
        return o.str();
    }
    // A level square around spot i, facing up, and the click near its (+r, +r) corner.
    std::string square(int i) const {
        const Point3 c = spot[i];
        return "polygon --name \"Drive 7\" " + pt(c + Point3{r, r, 0}) + " " +
               pt(c + Point3{r, -r, 0}) + " " + pt(c + Point3{-r, -r, 0}) + " " +
               pt(c + Point3{-r, r, 0}) + "\n";
    }
    Point3 corner(int i) const { return spot[i] + Point3{r, r, 0}; }
    std::string clickNear(int i, int shift) {
        const std::string at = pixelOf(spot[i] + Point3{0.8 * r, 0.8 * r, 0});
        const std::string s = std::to_string(shift);
        return "mouse down 1 " + s + " " + at + "\nmouse up 1 " + s + " " + at + "\n";
    }
    nlohmann::json scene() {
        std::ifstream in(dir.file("scene.json"));
        return nlohmann::json::parse(in);
    }

    Point3 spot[3];
    bool northAlongX = false;
    double r = 0;
    ScriptResult result;
};

TEST_F(ToolsScript, MeasureAKnownDistance) {
    const std::string text = square(0) + square(1) +
                             "set frm03_MirrowMain.cboSnapSelect1 Polygon\n"
                             "set frm03_MirrowMain.cboSnapSelect2 Point\n"
                             "run cmd3DLength\n" +
                             clickNear(0, 0) + "answer msgbox No\n" + clickNear(1, 0) +
                             "dump scene.json\n";
    ScriptResult res = runScript(text);
    ASSERT_EQ(res.rc, 0) << res.err;
    const Point3 d = corner(1) - corner(0);
    const double len = engine::length(d);
    // Grid north along +x (east then along -y) or along +y.
    double dir =
        (northAlongX ? std::atan2(-d.y, d.x) : std::atan2(d.x, d.y)) * 180 / std::acos(-1.0);
    if (dir < 0) dir += 360;
    const std::string line = "Distance = " + fixed(len / 10, 2) +
                             " m    [Dip = 0.0\u00B0:  Direction = " + fixed(dir, 1) +
                             "\u00B0:  Hor.XY = " + fixed(len / 10, 2) +
                             " m:  Vert.Z = 0.00 m]    CUM. DISTANCE = " + fixed(len / 10, 2) +
                             " m";
    const auto comments = res.of("comment");
    ASSERT_GE(comments.size(), 3u);
    EXPECT_EQ(comments[comments.size() - 2]["text"], "Select the second point for the measuring");
    EXPECT_EQ(comments.back()["text"], line);
    const auto boxes = res.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Delete the yellow markerline ?");
    EXPECT_EQ(boxes[0]["buttons"], "YesNo");
    const auto s = scene();
    const std::string log = s["state"]["strCommentLog"];
    ASSERT_GE(log.size(), line.size());
    EXPECT_EQ(log.substr(log.size() - line.size()), line);
    int yellow = 0;
    for (const auto& p : s["polygons"])
        if (p["colour"] == nlohmann::json::array({255, 255, 0})) {
            ++yellow;
            EXPECT_EQ(p["name"], line);
        }
    EXPECT_GT(yellow, 0);
}

TEST_F(ToolsScript, ExcavationLegsChainedWithShiftPickUpTheNames) {
    const std::string text = square(0) + square(1) + square(2) +
                             "set frm03_MirrowMain.cboSnapSelect2 Point\n"
                             "answer form frm12_Excavation accept optExcCylinder=1 "
                             "cboExcavationWidth=2 chkPickUpAttributes=1\n"
                             "run cmdCreateExcavation\n" +
                             clickNear(0, 0) + clickNear(1, 1) + clickNear(2, 0) +
                             "dump scene.json\n";
    ScriptResult res = runScript(text);
    ASSERT_EQ(res.rc, 0) << res.err;
    const auto s = scene();
    std::vector<long long> legs;
    long long info = 0;
    for (const auto& g : s["groups"]) {
        if (g["name"] == "CylPolyGroup") legs.push_back(g["handle"]);
        if (g["name"] == "AddedInfoGroup") info = g["handle"];
    }
    ASSERT_EQ(legs.size(), 2u);
    for (const auto& g : s["groups"])
        if (g["name"] == "CylPolyGroup") EXPECT_EQ(g["father"], info);
    for (const auto& p : s["polygons"]) {
        const long long g = p["group"];
        if (g == legs[0] || g == legs[1]) EXPECT_EQ(p["name"], "Drive 7");
    }
    const std::string last = res.of("comment").back()["text"];
    const double cum =
        (engine::length(corner(1) - corner(0)) + engine::length(corner(2) - corner(1))) / 10;
    EXPECT_NE(last.find("CUM. LENGTH = " + fixed(cum, 2) + " m."), std::string::npos) << last;
}

}  // namespace
