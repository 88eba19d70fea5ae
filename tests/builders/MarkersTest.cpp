// The marker dialog's checks and the markers it places: where each symbol stands
// on the point, its parts, labels, colours and the link that follows.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "BuilderTestUtil.h"
#include "builders/Markers.h"
#include "builders/PlanesAndMarkers.h"
#include "core/AppContext.h"
#include "forms/Frm10SelectMarker.h"
#include "ui/ScriptedUi.h"

namespace {

using buildertest::polygonsOf;
using engine::Handle;
using engine::Point3;
using forms::Frm10SelectMarker;
using json = nlohmann::json;

class MarkerDialog : public ::testing::Test {
protected:
    MarkerDialog() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        ui.fixClock({2024, 3, 5, 9, 5, 7});
        builders::registerPlanesAndMarkers(ctx);
    }
    Frm10SelectMarker& form() { return builders::selectMarkerForm(ctx); }
    std::vector<json> records(const std::string& kind) const {
        std::vector<json> out;
        for (const auto& l : ui.transcript()) {
            json j = json::parse(l);
            if (j["kind"] == kind) out.push_back(j);
        }
        return out;
    }
    std::vector<Handle> children(Handle g) {
        std::vector<Handle> out;
        for (Handle c = ctx.engine.group_get_first_included_group(g); c;
             c = ctx.engine.group_get_next_included_group(g, c))
            out.push_back(c);
        return out;
    }
    std::string name(Handle h) { return ctx.engine.entity_get_name(h); }
    // Lowest and highest point of a group and its parts along z.
    std::pair<double, double> zRange(Handle g) {
        Point3 lo, hi;
        EXPECT_TRUE(ctx.engine.group_bounding_box(g, lo, hi));
        return {lo.z, hi.z};
    }
    Handle place(const char* option, Point3 p = {0, 0, 0}, Handle polygon = 0) {
        form().setFromUser(option, "1");
        return builders::placeMarker(ctx, p, polygon);
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

TEST_F(MarkerDialog, AcceptWithoutASymbolAsksForOne) {
    auto& f = form();
    f.setShown(true);
    EXPECT_FALSE(f.P_subMarkerAccept());
    EXPECT_TRUE(f.shown());
    EXPECT_EQ(ui.pointer(), 14);  // set before the checks
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Select the Marker type");
    EXPECT_EQ(boxes[0]["title"], "No Marker selected");
}

TEST_F(MarkerDialog, AcceptRefusesAZeroOrBlankDimensionOfTheSymbol) {
    auto& f = form();
    f.setShown(true);
    f.setFromUser("optSphere", "1");
    f.setFromUser("cboSphereRadius", "0");
    f.setFromUser("cboCylLength", "");  // the sphere has no cylinder: not asked
    EXPECT_FALSE(f.P_subMarkerAccept());
    f.setFromUser("cboSphereRadius", "0.7");
    f.setFromUser("optCylinder", "1");
    EXPECT_FALSE(f.P_subMarkerAccept());
    f.setFromUser("cboCylLength", "abc");  // reads as 0
    EXPECT_FALSE(f.P_subMarkerAccept());
    EXPECT_TRUE(f.shown());
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 3u);
    for (const auto& b : boxes) {
        EXPECT_EQ(b["text"], "A blank or zero value as a dimension is unacceptable");
        EXPECT_EQ(b["title"], "Selection error");
    }
    f.setFromUser("cboCylLength", "3");
    f.setFromUser("cboMarkerColour", "Light blue");
    EXPECT_TRUE(f.P_subMarkerAccept());
    EXPECT_FALSE(f.shown());
    EXPECT_EQ(ctx.state.txtComment, "Select a position for the selected marker");
    EXPECT_TRUE(ctx.state.toolFlag("bolMarker"));
    EXPECT_EQ(f.lngMarkerColour, (engine::Rgb{123, 123, 250}));
}

TEST_F(MarkerDialog, MarkerColoursDifferFromThePlaneTable) {
    engine::Rgb c;
    ASSERT_TRUE(Frm10SelectMarker::tableColour("Pink", c));
    EXPECT_EQ(c, (engine::Rgb{250, 123, 187}));
    ASSERT_TRUE(Frm10SelectMarker::tableColour("Purple", c));
    EXPECT_EQ(c, (engine::Rgb{187, 123, 250}));
    ASSERT_TRUE(Frm10SelectMarker::tableColour("Brown", c));
    EXPECT_EQ(c, (engine::Rgb{123, 5, 5}));
    EXPECT_EQ(Frm10SelectMarker::colours().size(), 13u);
}

TEST_F(MarkerDialog, SphereStandsOnThePointWithItsFoot) {
    form().setFromUser("cboSphereRadius", "1.5");  // 15 engine units
    form().setFromUser("cboMarkerColour", "Green");
    const Handle h = place("optSphere", {100, 200, 300});
    ASSERT_NE(h, 0u);
    EXPECT_EQ(name(h), "Sphere");
    EXPECT_POINT_NEAR(ctx.engine.group_get_center_of_mass(h), (Point3{100, 200, 315}), 1e-9);
    EXPECT_EQ(ctx.engine.polygon_get_color(ctx.engine.group_get_first_polygon(h)),
              (engine::Rgb{5, 250, 5}));
    ASSERT_FALSE(ctx.state.F_h_lngAddedGroups.empty());
    EXPECT_EQ(ctx.state.F_h_lngAddedGroups.back(), h);
}

TEST_F(MarkerDialog, PlacementPutsFootHeadOrMiddleOnThePoint) {
    form().setFromUser("cboCylLength", "2");     // 20
    form().setFromUser("cboSphereRadius", "1");  // 10
    form().setFromUser("optMarkerTop", "1");
    auto [lo, hi] = zRange(place("optCylinder", {0, 0, 50}));
    EXPECT_NEAR(lo, 30, 1e-9);
    EXPECT_NEAR(hi, 50, 1e-9);
    // Cylinder 20 with a sphere of radius 10 centred on its end: 30 from foot to
    // head, the middle on the point.
    form().setFromUser("optMarkerCentre", "1");
    const Handle g = place("optCylSphere", {0, 0, 50});
    ASSERT_NE(g, 0u);
    EXPECT_EQ(name(g), "MarkerGroup");
    const auto parts = children(g);
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(name(parts[0]), "CylPolyGroup");
    EXPECT_EQ(name(parts[1]), "Sphere");
    std::tie(lo, hi) = zRange(g);
    EXPECT_NEAR(lo, 35, 1e-9);
    EXPECT_NEAR(hi, 65, 1e-6);
    EXPECT_POINT_NEAR(ctx.engine.group_get_center_of_mass(parts[1]), (Point3{0, 0, 55}), 1e-9);
}

TEST_F(MarkerDialog, DirectedDiamondStandsAlongTheSurfaceNormal) {
    // A wall facing +x.
    engine::Engine& e = ctx.engine;
    Handle wall = e.polygon_create();
    for (Point3 p :
         {Point3{0, -10, -10}, Point3{0, -10, 10}, Point3{0, 10, 10}, Point3{0, 10, -10}})
        e.polygon_add_point(wall, p);
    ASSERT_EQ(e.engine_add_polygon(wall), 0);
    engine::Plane plane;
    ASSERT_EQ(e.polygon_get_plane(wall, plane), 0);
    ASSERT_NEAR(plane.n.x, 1, 1e-12);

    form().setFromUser("cboCylLength", "2.5");     // 25
    form().setFromUser("cboSphereRadius", "1.5");  // 15: diamond 30 long
    const Handle g = place("optDirCylDiamond", {0, 0, 0}, wall);
    ASSERT_NE(g, 0u);
    const auto parts = children(g);
    ASSERT_EQ(parts.size(), 3u);
    EXPECT_EQ(name(parts[1]), "4ConePolyGroup");
    EXPECT_EQ(e.group_get_number_of_polygons(parts[1]), 4);  // no bases between the halves
    Point3 lo, hi;
    ASSERT_TRUE(e.group_bounding_box(g, lo, hi));
    EXPECT_NEAR(lo.x, 0, 1e-9);
    EXPECT_NEAR(hi.x, 55, 1e-9);
    EXPECT_NEAR(hi.z, 15, 1e-6);
    // Without a polygon it stands upright.
    std::tie(lo.z, hi.z) = zRange(place("optDirCylDiamond", {0, 0, 0}, 0));
    EXPECT_NEAR(hi.z, 55, 1e-9);
}

TEST_F(MarkerDialog, UprightConeAndPointer) {
    form().setFromUser("cboCylDiameter", "1");
    form().setFromUser("cboCylLength", "3");
    const Handle cone = place("optConeUpright", {0, 0, 0});
    EXPECT_EQ(name(cone), "4ConePolyGroup");
    EXPECT_EQ(zRange(cone).second, 30);
    // The pointer needs its two picks.
    EXPECT_EQ(place("optConePointer"), 0u);
    const Handle pointer = builders::placeMarkerPointer(ctx, {0, 0, 0}, {40, 0, 0});
    EXPECT_EQ(name(pointer), "8ConePolyGroup");
    Point3 lo, hi;
    ASSERT_TRUE(ctx.engine.group_bounding_box(pointer, lo, hi));
    EXPECT_NEAR(hi.x - lo.x, 40, 1e-9);
}

TEST_F(MarkerDialog, TextSphereIsAVisibleLabel) {
    ui.answerInput(std::string("Pillar 7"));
    const Handle h = place("optSphereText", {10, 20, 30});
    ASSERT_NE(h, 0u);
    EXPECT_EQ(name(h), "Pillar 7");
    for (const auto& p : polygonsOf(ctx.engine, h))
        EXPECT_EQ(name(p.handle), "UP_VText\r\n2024-03-05\r\n9:05:07\r\nPillar 7");
    ASSERT_EQ(ctx.state.labels.size(), 1u);
    EXPECT_EQ(ctx.state.labels[0].text, "Pillar 7");
    EXPECT_EQ(ctx.state.labels[0].group, h);
    const auto inputs = records("input");
    ASSERT_EQ(inputs.size(), 1u);
    EXPECT_EQ(inputs[0]["prompt"], "Describe the entity");
    EXPECT_EQ(inputs[0]["title"], "Input for entity");

    // A cancelled prompt places nothing.
    ui.answerInput(std::nullopt);
    const auto groups = ctx.engine.group_count();
    EXPECT_EQ(builders::placeMarker(ctx, {0, 0, 0}, 0), 0u);
    EXPECT_EQ(ctx.engine.group_count(), groups);

    // A world read back has no labels: refreshing finds them in the names.
    ctx.state.labels.clear();
    const Handle info = ctx.engine.group_create("AddedInfoGroup");
    ctx.engine.group_set_father_group(h, info);
    builders::refreshTextMarkers(ctx);
    ASSERT_EQ(ctx.state.labels.size(), 1u);
    EXPECT_EQ(ctx.state.labels[0].text, "Pillar 7");
    EXPECT_EQ(form().at("lstMarkerText").items,
              std::vector<std::string>{"Pillar 7 (AddedInfoGroup)"});
}

TEST_F(MarkerDialog, CoordinateSphereIsNamedByThePointInMetres) {
    ctx.state.dblCoordOffset = {3, 5, 0};
    const Handle h = place("optSphereCoordinates", {123, -45, 60});
    EXPECT_EQ(name(h), "( 12, -5, 6 )");
}

TEST_F(MarkerDialog, CommentLinkNamesEveryPartOfTheMarker) {
    form().setFromUser("optConDirectComment", "1");
    ui::FormAnswer a;
    a.form = "frm23_ChangeInfo";
    a.controls = {{"txtChangeInfo", "Loose ground"}};
    ui.answerForm(a);
    const Handle g = place("optCylDiamond");
    ASSERT_NE(g, 0u);
    int named = 0;
    for (Handle part : children(g)) {
        for (const auto& p : polygonsOf(ctx.engine, part)) {
            EXPECT_EQ(name(p.handle), "PR_Infor\r\n2024-03-05\r\n9:05:07\r\nLoose ground");
            ++named;
        }
    }
    EXPECT_EQ(named, 10 + 4 + 4);  // cylinder and the two open pyramids
}

TEST_F(MarkerDialog, PhotoLinkRecordsTheChosenFile) {
    form().setFromUser("optConDirectPhoto", "1");
    ui.answerOpen(std::string("photos/face12.jpg"));
    const Handle h = place("optCylinder");
    EXPECT_EQ(name(ctx.engine.group_get_first_polygon(h)),
              "PR_LinkF\r\n2024-03-05\r\n09:05:07\r\nphotos/face12.jpg");
    // Cancelled: the marker stays, without a link.
    ui.answerOpen(std::nullopt);
    const Handle bare = place("optCylinder");
    EXPECT_NE(bare, 0u);
    EXPECT_EQ(name(ctx.engine.group_get_first_polygon(bare)), "");
}

}  // namespace
