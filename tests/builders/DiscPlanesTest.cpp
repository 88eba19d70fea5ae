// Plane slabs: their corners for a vertical and an inclined dip, thickness, the
// three-point plane, the two points from a pole, the plane dialog's pole pairs and
// checks, and the mapping record of a placed slab.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "BuilderTestUtil.h"
#include "builders/DiscPlanes.h"
#include "builders/PlanesAndMarkers.h"
#include "core/AppContext.h"
#include "core/NameRecords.h"
#include "forms/Frm15DiscPlane.h"
#include "ui/ScriptedUi.h"

namespace {

using buildertest::BuilderTest;
using buildertest::frontNormal;
using buildertest::mean;
using buildertest::polygonsOf;
using engine::Point3;
using forms::Frm15DiscPlane;
using json = nlohmann::json;

constexpr engine::Rgb kPurple{252, 3, 252};

// Every face is seen from outside: its front normal points away from the slab's middle.
void expectClosedOutward(const std::vector<buildertest::Poly>& polys, Point3 middle) {
    for (const auto& p : polys) {
        const Point3 out = mean(p.pts) - middle;
        EXPECT_GT(engine::dot(frontNormal(p.pts), out), 0) << "face " << p.handle;
    }
}

TEST_F(BuilderTest, VerticalSlabStandsOnTheLineWithItsFullHeightUpAndDown) {
    // Line along +x, extended 10 each way; dip 90: s = 50 (the vertical offset),
    // h = 50 / tan(90) = 0, so the corners are x = -10 and 110, z = -50 and 50.
    const auto g =
        builders::P_fncCreate2PointDiscPlane(e, {0, 0, 0}, {100, 0, 0}, 90, 10, 50, 0, kPurple);
    EXPECT_EQ(groupName(g), "FinalDiscPlane");
    const auto polys = polygonsOf(e, g);
    ASSERT_EQ(polys.size(), 2u);  // thickness 0: top and bottom only
    ASSERT_EQ(polys[0].pts.size(), 4u);
    EXPECT_POINT_NEAR(polys[0].pts[0], (Point3{-10, 0, -50}), 1e-9);
    EXPECT_POINT_NEAR(polys[0].pts[1], (Point3{110, 0, -50}), 1e-9);
    EXPECT_POINT_NEAR(polys[0].pts[2], (Point3{110, 0, 50}), 1e-9);
    EXPECT_POINT_NEAR(polys[0].pts[3], (Point3{-10, 0, 50}), 1e-9);
    // The bottom face runs the other way round: B1, B4, B3, B2.
    EXPECT_POINT_NEAR(polys[1].pts[1], (Point3{-10, 0, 50}), 1e-9);
    EXPECT_POINT_NEAR(polys[1].pts[3], (Point3{110, 0, -50}), 1e-9);
    // (C3 - C1) x (C2 - C1) = (120, 0, 100) x (120, 0, 0) = (0, 12000, 0): the top faces +y.
    EXPECT_POINT_NEAR(frontNormal(polys[0].pts), (Point3{0, 1, 0}), 1e-9);
    EXPECT_POINT_NEAR(frontNormal(polys[1].pts), (Point3{0, -1, 0}), 1e-9);
    EXPECT_EQ(e.polygon_get_color(polys[0].handle), kPurple);
}

TEST_F(BuilderTest, InclinedSlabDipsToTheRightOfTheLine) {
    // Dip 45, vertical offset 50: s = 50 sin 45 = 35.3553, h = s / tan 45 = 35.3553,
    // w = (d.y, -d.x) = (0, -1): the low edge lies towards -y.
    const double s = 50 * std::sqrt(0.5);
    const auto g =
        builders::P_fncCreate2PointDiscPlane(e, {0, 0, 0}, {100, 0, 0}, 45, 10, 50, 0, kPurple);
    const auto polys = polygonsOf(e, g);
    ASSERT_EQ(polys.size(), 2u);
    EXPECT_POINT_NEAR(polys[0].pts[0], (Point3{-10, -s, -s}), 1e-9);
    EXPECT_POINT_NEAR(polys[0].pts[1], (Point3{110, -s, -s}), 1e-9);
    EXPECT_POINT_NEAR(polys[0].pts[2], (Point3{110, s, s}), 1e-9);
    EXPECT_POINT_NEAR(polys[0].pts[3], (Point3{-10, s, s}), 1e-9);
    // The top side's normal is square to both the line and the down-dip direction.
    const double r = std::sqrt(0.5);
    EXPECT_POINT_NEAR(frontNormal(polys[0].pts), (Point3{0, r, -r}), 1e-9);
}

TEST_F(BuilderTest, ThickSlabIsClosedWithEveryFaceOutward) {
    const auto g =
        builders::P_fncCreate2PointDiscPlane(e, {0, 0, 0}, {100, 0, 0}, 90, 10, 50, 4, kPurple);
    const auto polys = polygonsOf(e, g);
    ASSERT_EQ(polys.size(), 6u);
    // Top and bottom lie half the thickness either side of the mid-surface.
    for (const Point3& p : polys[0].pts) EXPECT_NEAR(p.y, 2, 1e-9);
    for (const Point3& p : polys[1].pts) EXPECT_NEAR(p.y, -2, 1e-9);
    expectClosedOutward(polys, {50, 0, 0});
}

TEST_F(BuilderTest, DegenerateSlabsGiveAnEmptyGroupNotAFailure) {
    // Equal points, no height, and a coordinate that is not a number.
    for (auto g :
         {builders::P_fncCreate2PointDiscPlane(e, {5, 5, 5}, {5, 5, 5}, 60, 0, 10, 2, kPurple),
          builders::P_fncCreate2PointDiscPlane(e, {100, 200, 300}, {110, 200, 300}, 60, 0, 1E-100,
                                               0, kPurple),
          builders::P_fncCreate2PointDiscPlane(e, {NAN, 0, 0}, {10, 0, 0}, 60, 0, 10, 0,
                                               kPurple)}) {
        ASSERT_NE(g, 0u);
        EXPECT_EQ(e.group_get_number_of_polygons(g), 0);
    }
    EXPECT_EQ(buildertest::freePolygons(e), 0);
}

TEST_F(BuilderTest, LevelTwoPointPlaneIsFlatAtTheLineHeight) {
    // Dip 0 is built as a tiny dip: s ~ 0 and h = the vertical offset along the plane.
    const auto polys = polygonsOf(
        e, builders::P_fncCreate2PointDiscPlane(e, {0, 0, 7}, {100, 0, 7}, 0, 0, 30, 0, kPurple));
    ASSERT_EQ(polys.size(), 2u);
    for (const Point3& p : polys[0].pts) EXPECT_NEAR(p.z, 7, 1e-9);
    EXPECT_NEAR(std::fabs(polys[0].pts[0].y), 30, 1e-9);
}

TEST_F(BuilderTest, ThreePointSlabPassesThroughThePointsAndIsCentredOnThem) {
    // The points span a plane of dip 45 falling towards +y; the slab is centred on
    // their mean (100/3, 100/3, -100/3), 40 to either side along the strike (x) and
    // 30 along the dip.
    const Point3 a{0, 0, 0}, b{100, 0, 0}, c{0, 100, -100};
    const auto polys =
        polygonsOf(e, builders::P_fncCreate3PointDiscPlane(e, a, b, c, 40, 30, 0, kPurple));
    ASSERT_EQ(polys.size(), 2u);
    const auto& top = polys[0].pts;
    EXPECT_POINT_NEAR(mean(top), (Point3{100.0 / 3, 100.0 / 3, -100.0 / 3}), 1e-9);
    const Point3 n = frontNormal(top);
    for (const Point3& p : {a, b, c}) EXPECT_NEAR(engine::dot(n, p - top[0]), 0, 1e-9);
    EXPECT_NEAR(engine::Engine::math_get_distance(top[0], top[1]), 80, 1e-9);
    EXPECT_NEAR(engine::Engine::math_get_distance(top[0], top[3]), 60, 1e-9);
}

TEST_F(BuilderTest, LevelThreePointSlabUsesTheNorthSouthStrike) {
    const auto polys = polygonsOf(e, builders::P_fncCreate3PointDiscPlane(
                                         e, {0, 0, 3}, {10, 0, 3}, {0, 10, 3}, 20, 15, 0, kPurple));
    ASSERT_EQ(polys.size(), 2u);
    for (const Point3& p : polys[0].pts) EXPECT_NEAR(p.z, 3, 1e-9);
    // Strike (0, 1, 0): 20 either side along y, 15 either side along x.
    EXPECT_NEAR(engine::Engine::math_get_distance(polys[0].pts[0], polys[0].pts[1]), 40, 1e-9);
    EXPECT_NEAR(std::fabs(polys[0].pts[0].x - 10.0 / 3), 15, 1e-9);
}

TEST_F(BuilderTest, PoleGivesTwoPointsOnTheStrike) {
    engine::Handle hPole = 99;
    Point3 A, B;
    // North along +x, trend 90 points to -y: the pole tip lies at (0, -86.6, -50) and
    // the strike runs along x.
    builders::P_subPlanePointsFromPole(e, 0.0f, {10, 20, 30}, 90, 30, false, hPole, A, B);
    EXPECT_EQ(hPole, 0u);
    EXPECT_POINT_NEAR(A, (Point3{11, 20, 30}), 1e-9);
    EXPECT_POINT_NEAR(B, (Point3{9, 20, 30}), 1e-9);
    // North along +y, trend 90 points to +x: the strike runs along y.
    builders::P_subPlanePointsFromPole(e, 0.5f, {0, 0, 0}, 90, 30, false, hPole, A, B);
    EXPECT_POINT_NEAR(A, (Point3{0, 1, 0}), 1e-9);
    EXPECT_POINT_NEAR(B, (Point3{0, -1, 0}), 1e-9);
}

TEST_F(BuilderTest, ShownPoleIsAGreyCylinderAlongThePole) {
    engine::Handle hPole = 0;
    Point3 A, B;
    builders::P_subPlanePointsFromPole(e, 0.5f, {0, 0, 0}, 90, 30, true, hPole, A, B);
    ASSERT_NE(hPole, 0u);
    EXPECT_EQ(groupName(hPole), "CylPolyGroup");
    // Length 100 along trend 90 (east, +x) plunging 30: its middle is (43.3, 0, -25).
    EXPECT_POINT_NEAR(e.group_get_center_of_mass(hPole), (Point3{50 * std::cos(M_PI / 6), 0, -25}),
                      1e-6);
    EXPECT_EQ(e.polygon_get_color(e.group_get_first_polygon(hPole)), (engine::Rgb{150, 150, 150}));
}

TEST(DiscPlaneColours, TableHoldsEveryNamedColour) {
    const auto& t = Frm15DiscPlane::colours();
    EXPECT_EQ(t.size(), 18u);
    engine::Rgb c;
    ASSERT_TRUE(Frm15DiscPlane::tableColour("Joint plane 1 (light orange)", c));
    EXPECT_EQ(c, (engine::Rgb{252, 226, 96}));
    ASSERT_TRUE(Frm15DiscPlane::tableColour("Ventilation seal (yellow)", c));
    EXPECT_EQ(c, (engine::Rgb{246, 246, 0}));
    ASSERT_TRUE(Frm15DiscPlane::tableColour("Bulkhead3 (orange)", c));
    EXPECT_EQ(c, (engine::Rgb{246, 119, 9}));
    EXPECT_FALSE(Frm15DiscPlane::tableColour("Colour Box", c));
}

// ---- the dialog and the placed slabs ------------------------------------------------

class PlaneDialog : public ::testing::Test {
protected:
    PlaneDialog() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        ui.fixClock({2024, 3, 5, 9, 5, 7});
        builders::registerPlanesAndMarkers(ctx);
    }
    Frm15DiscPlane& form() { return builders::discPlaneForm(ctx); }
    std::vector<json> boxes() const {
        std::vector<json> out;
        for (const auto& l : ui.transcript()) {
            json j = json::parse(l);
            if (j["kind"] == "msgbox") out.push_back(j);
        }
        return out;
    }
    std::string nameOfFirstPolygon(engine::Handle g) {
        return ctx.engine.entity_get_name(ctx.engine.group_get_first_polygon(g));
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

TEST_F(PlaneDialog, PolePairsFollowThePlanePairs) {
    auto& f = form();
    f.setFromUser("cboPlaneDip1Point", "70");
    EXPECT_EQ(f.text("cboPolePlunge"), "20");
    f.setFromUser("cboPlaneDipDirection1Point", "45");
    EXPECT_EQ(f.text("cboPoleTrend"), "225");
    // The trend turns the direction by 180, wrapped: 300 -> 120, 10 -> 190.
    f.setFromUser("cboPoleTrend", "300");
    EXPECT_EQ(f.text("cboPlaneDipDirection1Point"), "120");
    f.setFromUser("cboPoleTrend", "10");
    EXPECT_EQ(f.text("cboPlaneDipDirection1Point"), "190");
    f.setFromUser("cboPolePlunge", "0");
    EXPECT_EQ(f.text("cboPlaneDip1Point"), "90");
    // Out of range: the conversion clamps its copy, the typed box keeps its text.
    f.setFromUser("cboPlaneDip1Point", "120");
    EXPECT_EQ(f.text("cboPlaneDip1Point"), "120");
    EXPECT_EQ(f.text("cboPolePlunge"), "0");
    // Emptying a box to retype it leaves the partner alone.
    f.setFromUser("cboPoleTrend", "");
    EXPECT_EQ(f.text("cboPlaneDipDirection1Point"), "190");
}

TEST_F(PlaneDialog, OffsetLabelsFollowTheNumberOfPoints) {
    auto& f = form();
    f.setFromUser("optPlane2Points", "1");
    EXPECT_EQ(f.valueOf("txtLabelPlaneHorOffset"), "Horizontal offset from the selected points:");
    EXPECT_EQ(f.valueOf("txtLabelPlaneVertOffset"), "Vertical offset from the selected points:");
    f.setFromUser("optPlane3Points", "1");
    EXPECT_EQ(f.valueOf("txtLabelPlaneHorOffset"), "Horizontal offset from the centre point:");
    EXPECT_EQ(f.valueOf("txtLabelPlaneVertOffset"), "Vertical offset from the centre point:");
}

TEST_F(PlaneDialog, AcceptArmsTheToolOfTheChosenMode) {
    auto& f = form();
    f.setShown(true);
    f.setFromUser("optPlane3Points", "1");
    f.setFromUser("cboDiscPlaneColour", "Dyke plane 3 (dark green)");
    ASSERT_TRUE(f.P_subAcceptPlaneType());
    EXPECT_FALSE(f.shown());
    EXPECT_TRUE(ctx.state.toolFlag("bolPlaneThree1"));
    EXPECT_FALSE(ctx.state.toolFlag("bolPlaneOne"));
    EXPECT_EQ(ui.pointer(), 14);
    EXPECT_EQ(ctx.state.txtComment, "Select a position for the plane");
    EXPECT_EQ(f.lngDiscPlaneColour, (engine::Rgb{3, 189, 3}));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(PlaneDialog, AcceptRefusesMissingAndZeroValues) {
    auto& f = form();
    f.setShown(true);
    f.setFromUser("optPlane2Points", "1");
    f.setFromUser("cboPlaneDip", "");
    EXPECT_FALSE(f.P_subAcceptPlaneType());
    f.setFromUser("cboPlaneDip", "80");
    f.setFromUser("optPlane1Point", "1");
    f.setFromUser("cboPlaneHorOffsetAlongPlane", "0");
    EXPECT_FALSE(f.P_subAcceptPlaneType());
    // Two points: a zero extension is the picked points themselves.
    f.setFromUser("optPlane2Points", "1");
    EXPECT_TRUE(f.P_subAcceptPlaneType());
    const auto b = boxes();
    ASSERT_EQ(b.size(), 2u);
    EXPECT_EQ(b[0]["text"], "Fill in all the relevant information");
    EXPECT_EQ(b[0]["title"], "Invalid entry");
    EXPECT_EQ(b[1]["text"], "A blank or zero value as a dimension is unacceptable");
    EXPECT_EQ(b[1]["title"], "Selection error");
    EXPECT_TRUE(ctx.state.toolFlag("bolPlaneTwo1"));
}

TEST_F(PlaneDialog, ColourSelectAsksTheDialogAndKeepsItForTheColourBox) {
    auto& f = form();
    f.setFromUser("cboDiscPlaneColour", "Colour Select");
    ui.answerColour(engine::Rgb{10, 20, 30});
    ASSERT_TRUE(f.P_subAcceptPlaneType());
    EXPECT_EQ(f.lngDiscPlaneColour, (engine::Rgb{10, 20, 30}));
    f.setFromUser("cboDiscPlaneColour", "Colour Box");
    ASSERT_TRUE(f.P_subAcceptPlaneType());  // no dialog this time
    EXPECT_EQ(f.lngDiscPlaneColour, (engine::Rgb{10, 20, 30}));
}

TEST_F(PlaneDialog, TwoPointSlabCarriesItsMappingRecord) {
    auto& f = form();
    f.setFromUser("cboPlaneDip", "45");
    f.setFromUser("cboPlaneHorOffsetAlongPlane", "1");
    f.setFromUser("cboPlaneVertOffsetAlongPlane", "5");
    ctx.state.sngNorthAxis = 0.5f;
    const auto info = ctx.engine.group_create("AddedInfoGroup");
    ctx.state.F_h_lngAddedInfoGroup = info;
    // Line to the east: the slab dips to its right, south, azimuth 180.
    const auto g = builders::placeDiscPlaneTwoPoints(ctx, {0, 0, 0}, {100, 0, 0});
    ASSERT_NE(g, 0u);
    EXPECT_EQ(nameOfFirstPolygon(g),
              "PR_UGmap\r\n2024-03-05\r\n09:05:07\r\nDip (degrees):\r\n45\r\n"
              "Direction (degrees):\r\n180");
    EXPECT_EQ(ctx.engine.group_get_father_group(g), info);
    ASSERT_FALSE(ctx.state.F_h_lngAddedGroups.empty());
    EXPECT_EQ(ctx.state.F_h_lngAddedGroups.back(), g);
    // Horizontal offset 1 m and vertical 5 m are 10 and 50 engine units.
    const auto top = polygonsOf(ctx.engine, g)[0].pts;
    EXPECT_NEAR(engine::Engine::math_get_distance(top[0], top[1]), 120, 1e-9);
    EXPECT_NEAR(engine::Engine::math_get_distance(top[0], top[3]), 100, 1e-9);
}

TEST_F(PlaneDialog, OnePointSlabHasTheTypedOrientation) {
    auto& f = form();
    ctx.state.sngNorthAxis = 0.5f;
    f.setFromUser("cboPlaneDip1Point", "60");
    f.setFromUser("cboPlaneDipDirection1Point", "120");
    const auto g = builders::placeDiscPlaneOnePoint(ctx, {500, 500, 100});
    ASSERT_NE(g, 0u);
    const auto record = core::parseInfoRecord(nameOfFirstPolygon(g));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->code, "UGmap");
    EXPECT_EQ(record->text, "Dip (degrees):\r\n60\r\nDirection (degrees):\r\n120");
    // The slab is centred on the picked point.
    EXPECT_POINT_NEAR(mean(polygonsOf(ctx.engine, g)[0].pts), (Point3{500, 500, 100}), 1e-9);
}

TEST_F(PlaneDialog, OnePointSlabWithThePoleShown) {
    auto& f = form();
    ctx.state.sngNorthAxis = 0.0f;
    f.setFromUser("optDefinePole", "1");
    f.setFromUser("cboPoleTrend", "0");
    f.setFromUser("cboPolePlunge", "90");  // a level plane
    f.setFromUser("chkShowPole", "1");
    const auto before = ctx.state.F_h_lngAddedGroups.size();
    const auto g = builders::placeDiscPlaneOnePoint(ctx, {0, 0, 0});
    ASSERT_NE(g, 0u);
    ASSERT_EQ(ctx.state.F_h_lngAddedGroups.size(), before + 2);  // pole, then slab
    EXPECT_EQ(ctx.engine.entity_get_name(ctx.state.F_h_lngAddedGroups[before]), "CylPolyGroup");
    const auto polys = polygonsOf(ctx.engine, g);
    ASSERT_EQ(polys.size(), 2u);
    for (const Point3& p : polys[0].pts) EXPECT_NEAR(p.z, 0, 1e-3);
    const auto record = core::parseInfoRecord(nameOfFirstPolygon(g));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->text.substr(0, 19), "Dip (degrees):\r\n0\r\n");
}

TEST_F(PlaneDialog, ThreePointSlabRecordsItsDipAndDirection) {
    ctx.state.sngNorthAxis = 0.5f;
    // Falls towards +y, north with this grid: dip 45, direction 0.
    const auto g = builders::placeDiscPlaneThreePoints(ctx, {0, 0, 0}, {100, 0, 0}, {0, 100, -100});
    ASSERT_NE(g, 0u);
    const auto record = core::parseInfoRecord(nameOfFirstPolygon(g));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->text, "Dip (degrees):\r\n45\r\nDirection (degrees):\r\n0");
}

}  // namespace
