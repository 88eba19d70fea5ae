// Planes, markers and the stress tensor driven by a script: the dialogs set by
// name, their buttons run, and the placing procedures called with picked points.
#include <fstream>

#include "ScriptFixture.h"
#include "builders/PlanesAndMarkers.h"

namespace {

using scripttest::ScriptResult;
using scripttest::ScriptTest;

void planesAndMarkers(core::AppContext& ctx) { builders::registerPlanesAndMarkers(ctx); }

TEST_F(ScriptTest, BulkheadFromTheCatalogueIsPlacedBetweenTwoPicks) {
    ScriptResult r = runScript(
        "clock 2024-03-05 14:30:00\n"
        "answer form frm16_SelectDiscPlaneStandard accept optDiscBulkhead2=1\n"
        "run cmdStandardPlanes\n"
        "call placeDiscPlaneTwoPoints 0,0,0 100,0,0 > G\n"
        "call STATE_group_get_number_of_polygons $G\n"
        "get frm15_DiscPlane.txtLabelPlaneVertOffset\n"
        "dump scene.json\n",
        planesAndMarkers);
    ASSERT_EQ(r.rc, 0) << r.err;
    const auto comments = r.of("comment");
    ASSERT_FALSE(comments.empty());
    EXPECT_EQ(comments.back()["text"], "Select a position for the plane");
    const auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1]["result"], 6);  // thickness 2 m: a closed slab
    EXPECT_EQ(r.of("get")[0]["value"], "Vertical offset from the selected points:");

    std::ifstream in(dir.file("scene.json"));
    const nlohmann::json scene = nlohmann::json::parse(in);
    int slabFaces = 0;
    for (const auto& p : scene["polygons"]) {
        if (p["group"] != calls[0]["result"]) continue;
        ++slabFaces;
        EXPECT_EQ(p["colour"], nlohmann::json::array({9, 9, 246}));  // "Bulkhead2 (blue)"
        const std::string name = p["name"];
        const std::string head = "PR_UGmap\r\n2024-03-05\r\n14:30:00\r\nDip (degrees):\r\n90\r\n";
        EXPECT_EQ(name.substr(0, head.size()), head);
    }
    EXPECT_EQ(slabFaces, 6);
}

TEST_F(ScriptTest, StandardMarkerAndTheStressTensorThroughTheDialogs) {
    ScriptResult r = runScript(
        "answer form frm11_SelectMarkerStandard accept optMarkerComment3=1\n"
        "run cmdStandardMarkers\n"
        "get frm10_SelectMarker.cboCylLength\n"
        "get frm10_SelectMarker.cboMarkerColour\n"
        "set frm25_StressTensor.cboSig1Trend 0\n"
        "set frm25_StressTensor.cboSig1Plunge 30\n"
        "set frm25_StressTensor.cboSig2Trend 300\n"
        "run cmdCalculateTensor1\n"
        "get frm25_StressTensor.cboSig3Trend\n"
        "get frm25_StressTensor.cboSig3Plunge\n"
        "set frm25_StressTensor.cboSig1Magnitude 0\n"
        "run cmdAcceptStressTensor\n"
        "set frm25_StressTensor.cboSig1Magnitude 50\n"
        "answer form frm10_SelectMarker accept optVirginStress=1\n"
        "run cmdAcceptStressTensor\n"
        "call placeMarker 0,0,0 0 > M\n"
        "call STATE_group_get_number_of_polygons $M\n",
        planesAndMarkers);
    ASSERT_EQ(r.rc, 0) << r.err;
    const auto gets = r.of("get");
    ASSERT_EQ(gets.size(), 4u);
    EXPECT_EQ(gets[0]["value"], "2.50");
    EXPECT_EQ(gets[1]["value"], "Blue");
    EXPECT_EQ(gets[2]["value"], "246.6");
    EXPECT_EQ(gets[3]["value"], "34.5");
    const auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0]["title"], "Minor Principal Stress Trend changed 180 degrees");
    EXPECT_EQ(boxes[1]["text"], "The major principal stress cannot be zero");
    // The catalogue accepts the marker dialog itself; the accepted tensor shows the
    // marker dialog again, whose marker is three cylinders of ten faces.
    const auto forms = r.of("form");
    ASSERT_EQ(forms.size(), 2u);
    EXPECT_EQ(forms[1]["name"], "frm10_SelectMarker");
    EXPECT_EQ(r.of("call")[1]["result"], 30);
}

TEST_F(ScriptTest, MarkerAcceptWithoutASymbolAsksForOne) {
    ScriptResult r = runScript("run cmdMarkerAccept\n", planesAndMarkers);
    ASSERT_EQ(r.rc, 0) << r.err;
    const auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "Select the Marker type");
    EXPECT_EQ(boxes[0]["title"], "No Marker selected");
}

}  // namespace

namespace {

TEST_F(ScriptTest, ExcavationDialogOpensItsCatalogueWhichFillsIt) {
    ScriptResult r = runScript(
        "answer form frm13_SelectExcStandard accept optExcOrepass=1\n"
        "run frm12_Excavation.cmdStandardExcavations\n"
        "get frm12_Excavation.optExcCylinder\n"
        "get frm12_Excavation.cboExcavationWidth\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    const auto forms = r.of("form");
    ASSERT_EQ(forms.size(), 1u);
    EXPECT_EQ(forms[0]["name"], "frm13_SelectExcStandard");
    const auto gets = r.of("get");
    ASSERT_EQ(gets.size(), 2u);
    EXPECT_EQ(gets[0]["value"], "1");  // the orepass row is a cylinder
    EXPECT_EQ(gets[1]["value"], "2.5");
}

}  // namespace
