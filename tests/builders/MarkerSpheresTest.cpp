// The main form's marker wrappers, the pick markers, the resolution rules, the
// tube tool's legs and the failure boxes the callers show.
#include <cmath>
#include <nlohmann/json.hpp>

#include "BuilderTestUtil.h"
#include "builders/BuilderMessages.h"
#include "builders/MarkerSpheres.h"
#include "builders/TubeCentreLine.h"
#include "builders/TubeLeg.h"
#include "core/AppContext.h"
#include "ui/ScriptedUi.h"

namespace {

using namespace buildertest;
using namespace builders;

const engine::Rgb kColour{200, 100, 0};

class Markers : public ::testing::Test {
protected:
    Markers() : ctx(ui) { ctx.engine.engine_load_world("", "", "", 4); }

    std::vector<nlohmann::json> boxes() const {
        std::vector<nlohmann::json> out;
        for (const std::string& line : ui.transcript()) {
            auto j = nlohmann::json::parse(line);
            if (j.value("kind", "") == "msgbox") out.push_back(j);
        }
        return out;
    }
    void expectOneBox(const std::string& title, const std::string& text) {
        const auto b = boxes();
        ASSERT_EQ(b.size(), 1u);
        EXPECT_EQ(b[0]["title"], title);
        EXPECT_EQ(b[0]["text"], text);
        EXPECT_EQ(b[0]["buttons"], "OK");
    }
    Point3 boxCentre(Handle g) {
        Point3 lo, hi;
        EXPECT_TRUE(ctx.engine.group_bounding_box(g, lo, hi));
        return (lo + hi) * 0.5;
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

TEST_F(Markers, RenderSphereIsTwoByEightCentredOnTheLocation) {
    Handle h = 0;
    ASSERT_TRUE(P_fncRenderSphere(ctx, {100, -50, 20}, 5.0, kColour, h));
    ASSERT_NE(h, 0u);
    EXPECT_EQ(ctx.engine.entity_get_name(h), "Sphere");
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(h), 16);
    EXPECT_POINT_NEAR(boxCentre(h), (Point3{100, -50, 20}), 1e-9);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Markers, ResolutionSphereFollowsTheSettingsAtEachCall) {
    Handle h = 0;
    ASSERT_TRUE(applySphereResolution(ctx.settings, "High Resolution"));
    P_fncResolutionSphere(ctx, {1, 2, 3}, 4.0, kColour, h);
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(h), 224);
    ASSERT_TRUE(applySphereResolution(ctx.settings, "Quick Marker"));
    P_fncResolutionSphere(ctx, {1, 2, 3}, 4.0, kColour, h);
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(h), 8);
    EXPECT_POINT_NEAR(boxCentre(h), (Point3{1, 2, 3}), 1e-9);
    // bands held as doubles, rounded half to even: 2.5 -> 2, 4.5 -> 4
    ctx.settings.dblSphereLatitudeBands = 2.5;
    ctx.settings.dblSphereLongitudeBands = 4.5;
    P_fncResolutionSphere(ctx, {0, 0, 0}, 4.0, kColour, h);
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(h), 8);
}

TEST_F(Markers, BandsRoundHalfToEvenIntoSixteenBits) {
    EXPECT_EQ(sphereBands(3.5), 4);
    EXPECT_EQ(sphereBands(2.5), 2);
    EXPECT_EQ(sphereBands(7.49), 7);
    EXPECT_EQ(sphereBands(-1.5), -2);
    EXPECT_EQ(sphereBands(1e9), 32767);
    EXPECT_EQ(sphereBands(-1e9), -32768);
    EXPECT_EQ(sphereBands(std::nan("")), 0);
}

TEST_F(Markers, ResolutionEntriesSetStacksSlicesAndKind) {
    struct Row {
        const char* entry;
        double lat, lon;
    };
    for (const Row& r : {Row{"High Resolution", 8, 16}, Row{"Medium Resolution", 8, 8},
                         Row{"Low Resolution", 4, 8}, Row{"Quick Marker", 2, 4}}) {
        core::Settings s;
        s.intSphereMarkerKind = -1;
        ASSERT_TRUE(applySphereResolution(s, r.entry)) << r.entry;
        EXPECT_EQ(s.dblSphereLatitudeBands, r.lat) << r.entry;
        EXPECT_EQ(s.dblSphereLongitudeBands, r.lon) << r.entry;
        EXPECT_EQ(s.intSphereMarkerKind, 0) << r.entry;
        EXPECT_FALSE(cubeMarker(s));
        EXPECT_EQ(sphereResolutionEntry(s), r.entry);
    }
    core::Settings s;
    applySphereResolution(s, "Medium Resolution");
    ASSERT_TRUE(applySphereResolution(s, "Cube Marker"));
    EXPECT_EQ(s.intSphereMarkerKind, -1);
    EXPECT_EQ(s.dblSphereLatitudeBands, 8) << "the cube keeps the bands";
    EXPECT_EQ(s.dblSphereLongitudeBands, 8);
    EXPECT_TRUE(cubeMarker(s));
    EXPECT_EQ(sphereResolutionEntry(s), "Cube Marker");

    const core::Settings before = s;
    EXPECT_FALSE(applySphereResolution(s, "Ultra Resolution"));
    EXPECT_EQ(s.intSphereMarkerKind, before.intSphereMarkerKind);
    EXPECT_EQ(s.dblSphereLatitudeBands, before.dblSphereLatitudeBands);
}

TEST_F(Markers, PointMarkerIsACubeOfOnePointThreeTimesTheSizeWhenAsked) {
    applySphereResolution(ctx.settings, "Cube Marker");
    const Handle cube = placePointMarker(ctx, {10, 10, 10}, 10.0, kColour);
    EXPECT_EQ(ctx.engine.entity_get_name(cube), "CubeGroup");
    Point3 lo, hi;
    ASSERT_TRUE(ctx.engine.group_bounding_box(cube, lo, hi));
    EXPECT_NEAR(hi.x - lo.x, 13.0, 1e-5);
    EXPECT_NEAR(hi.z - lo.z, 13.0, 1e-5);
    EXPECT_POINT_NEAR((lo + hi) * 0.5, (Point3{10, 10, 10}), 1e-5);
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(cube), 6);

    applySphereResolution(ctx.settings, "Low Resolution");
    const Handle sphere = placePointMarker(ctx, {10, 10, 10}, 10.0, kColour);
    EXPECT_EQ(ctx.engine.entity_get_name(sphere), "Sphere");
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(sphere), 48);
    ASSERT_TRUE(ctx.engine.group_bounding_box(sphere, lo, hi));
    EXPECT_NEAR(hi.z - lo.z, 20.0, 1e-9);
}

TEST_F(Markers, PickMarkersUseTheLineThicknessAndReplaceEachOther) {
    ctx.settings.dblLineThickness = 30.0;
    const Handle first = placePickMarker(ctx, 1, {0, 0, 0});
    ASSERT_NE(first, 0u);
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, first);
    Point3 lo, hi;
    ASSERT_TRUE(ctx.engine.group_bounding_box(first, lo, hi));
    EXPECT_NEAR(hi.z - lo.z, 60.0, 1e-9);

    const Handle again = placePickMarker(ctx, 1, {100, 0, 0});
    EXPECT_FALSE(ctx.engine.group_is_group(first)) << "the replaced marker is deleted";
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, again);
    const Handle second = placePickMarker(ctx, 2, {0, 100, 0});
    EXPECT_EQ(ctx.state.F_h_lngMUSphere2, second);
    EXPECT_EQ(int(ctx.engine.polygon_count()), 32);

    removePickMarker(ctx, 1);
    removePickMarker(ctx, 2);
    EXPECT_EQ(ctx.state.F_h_lngMUSphere1, 0u);
    EXPECT_EQ(ctx.state.F_h_lngMUSphere2, 0u);
    EXPECT_EQ(ctx.engine.polygon_count(), 0u);
    EXPECT_EQ(placePickMarker(ctx, 3, {0, 0, 0}), 0u);
    EXPECT_TRUE(boxes().empty());
}

// ---- failure boxes ----------------------------------------------------------------

TEST_F(Markers, SphereWrapperFailureShowsItsBox) {
    Handle h = 99;
    EXPECT_FALSE(P_fncResolutionSphere(ctx, {std::nan(""), 0, 0}, 5, kColour, h));
    EXPECT_EQ(h, 0u);
    expectOneBox("Error in sphere creation", "h_lngSphere = 0");
    EXPECT_EQ(ctx.engine.polygon_count(), 0u);
}

TEST_F(Markers, CubeWrapperFailureShowsItsBox) {
    Handle h = 99;
    EXPECT_FALSE(P_fncResolutionCube(ctx, {0, HUGE_VAL, 0}, 5, kColour, h));
    EXPECT_EQ(h, 0u);
    expectOneBox("Error in cube creation", "h_lngCube = 0");
}

TEST_F(Markers, PickMarkerFailureNamesTheMarker) {
    EXPECT_EQ(placePickMarker(ctx, 2, {0, 0, std::nan("")}), 0u);
    EXPECT_EQ(ctx.state.F_h_lngMUSphere2, 0u);
    expectOneBox("Error", "Null handle for F_h_lngMUSphere2");
}

TEST_F(Markers, TubeToolSectionsShareTheirBoxes) {
    auto text = [](TubeSection s) { return std::string(failureBox(tubeLegFailure(s)).text); };
    EXPECT_EQ(text(TubeSection::CrossPolyLine), "Null handle from P_fncCreate3DExcavation");
    EXPECT_EQ(text(TubeSection::Tunnel), "Null handle from P_fncCreate3DExcavation");
    EXPECT_EQ(text(TubeSection::Cylinder), "Null handle from P_fncCreateCylinder");
    EXPECT_EQ(text(TubeSection::Wedge), "Null handle from P_fncCreateCylinder");
    EXPECT_EQ(text(TubeSection::Cone4), "Null handle from P_fncCreate4Cone");
    EXPECT_EQ(text(TubeSection::Cone8), "Null handle from fncCreateCone");
    EXPECT_EQ(text(TubeSection::Cone3), "Null handle from fncCreateCone");
}

// ---- legs of the tube tool -----------------------------------------------------------

TEST_F(Markers, LegShiftsTheLineByHalfTheVerticalSize) {
    const Point3 A{0, 0, 100}, B{200, 0, 100};
    struct Row {
        TubeSection section;
        LinePosition position;
        double dz;  // scene units: width 3 m, height 2 m
    };
    const Row rows[] = {
        {TubeSection::Tunnel, LinePosition::Bottom, +10},
        {TubeSection::Tunnel, LinePosition::Top, -10},
        {TubeSection::Tunnel, LinePosition::Centre, 0},
        {TubeSection::Cylinder, LinePosition::Top, -15},
        {TubeSection::Wedge, LinePosition::Bottom, +15},
        {TubeSection::CrossPolyLine, LinePosition::Bottom, 0},
    };
    for (const Row& r : rows) {
        TubeLegRequest q;
        q.section = r.section;
        q.position = r.position;
        q.start = A;
        q.end = B;
        q.widthMetres = 3;
        q.heightMetres = 2;
        const Handle g = buildTubeLeg(ctx, q);
        ASSERT_NE(g, 0u);
        Point3 a, b;
        bool isTube = false;
        ASSERT_TRUE(
            P_fncTubeCentreLine(ctx.engine, ctx.engine.group_get_first_polygon(g), a, b, isTube));
        EXPECT_POINT_NEAR(a, (A + Point3{0, 0, r.dz}), 1e-9);
        EXPECT_POINT_NEAR(b, (B + Point3{0, 0, r.dz}), 1e-9);
    }
}

TEST_F(Markers, LegsAreRecordedAndHungUnderTheAddedInfoGroup) {
    ctx.state.F_h_lngAddedInfoGroup = ctx.engine.group_create("AddedInfoGroup");
    TubeLegRequest q;
    q.section = TubeSection::Cone4;
    q.start = {0, 0, 0};
    q.end = {0, 0, 50};
    q.widthMetres = 2;
    q.heightMetres = 1;
    const Handle g = buildTubeLeg(ctx, q);
    EXPECT_EQ(ctx.engine.entity_get_name(g), "4ConePolyGroup");
    EXPECT_EQ(ctx.engine.group_get_number_of_polygons(g), 5) << "the tool keeps the base";
    ASSERT_EQ(ctx.state.F_h_lngAddedGroups.size(), 1u);
    EXPECT_EQ(ctx.state.F_h_lngAddedGroups[0], g);
    EXPECT_EQ(ctx.engine.group_get_father_group(g), ctx.state.F_h_lngAddedInfoGroup);
    Point3 lo, hi;
    ASSERT_TRUE(ctx.engine.group_bounding_box(g, lo, hi));
    EXPECT_NEAR(hi.x - lo.x, 20, 1e-9);  // metres typed, times 10
    EXPECT_NEAR(hi.y - lo.y, 10, 1e-9);
}

}  // namespace
