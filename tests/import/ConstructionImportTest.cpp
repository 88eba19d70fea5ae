// Construction wireframes and construction strings end to end.

#include <cmath>

#include "ImportTestUtil.h"
#include "forms/Frm12Excavation.h"

namespace {

using importtest::GroupInfo;
using importtest::ImportTest;
using importtest::Poly;
using importtest::ScriptResult;

// Five lines a facet: four corners of a unit square at height z, then the closing line.
std::string wireFacet(double z, int code, const std::string& lead = "") {
    const std::string zs = std::to_string(z), c = " 2 " + std::to_string(code) + "\n";
    return lead + "0 0 " + zs + " 3 " + std::to_string(code) + "\n" + lead + "1 0 " + zs +
           " 2 7\n" + lead + "1 1 " + zs + c + lead + "0 1 " + zs + c + lead + "0 0 " + zs + c;
}

TEST_F(ImportTest, ConstructionWireframesAreTwoSidedFacetsOfFiveLines) {
    ScriptResult r =
        importText("mnuFileOpenPNTEditor", "c.pnt", wireFacet(0, 3) + wireFacet(2, 6, ","));
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(r.of("open")[0]["filter"], "Map3D PNT-files(*.PNT)|*.PNT|All file types (*.*)|*.*");
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 8u);
    // (P0, P1, P2), (P0, P2, P1), (P0, P2, P3), (P0, P3, P2)
    const engine::Point3 c0{0, 0, 0}, c1{10, 0, 0}, c2{10, 10, 0}, c3{0, 10, 0};
    const engine::Point3 expected[4][3] = {{c0, c1, c2}, {c0, c2, c1}, {c0, c2, c3}, {c0, c3, c2}};
    for (int t = 0; t < 4; ++t)
        for (int k = 0; k < 3; ++k) EXPECT_EQ(polys[t].points[k], expected[t][k]) << t << "," << k;
    // The first line's colour code: 3 gives (246, 246, 9); 6 - 5 = 1 gives (9, 9, 246).
    EXPECT_EQ(polys[0].colour, (engine::Rgb{246, 246, 9}));
    EXPECT_EQ(polys[4].colour, (engine::Rgb{9, 9, 246}));
    EXPECT_DOUBLE_EQ(polys[4].points[0].z, 20);  // the shifted facet
    for (const auto& p : polys) {
        EXPECT_EQ(p.groupName, "NextModel");
        EXPECT_EQ(p.name, "");
    }
}

TEST_F(ImportTest, ConstructionWireframeFacetNeedsOnlyFourOfItsFiveLines) {
    // Nine lines: the second facet has no closing line and is still built.
    std::string text = wireFacet(0, 3);
    std::string second = wireFacet(1, 3);
    second.erase(second.rfind("0 0 1"));
    ScriptResult r = importText("mnuFileAddPNTEditor", "c.pnt", text + second);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(polygons().size(), 8u);
    EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("c.pnt").string() + " added");
}

TEST_F(ImportTest, ConstructionWireframeLineShortOfColumnsIsAFault) {
    for (const std::string& bad :
         {std::string("0 0 0 3\n"), std::string(" 0 0 0 3\n"), std::string("\n")}) {
        ScriptResult r = importText("mnuFileAddPNTEditor", "c.pnt", wireFacet(0, 3) + bad,
                                    "polygon --name Before 0,0,-5 5,0,-5 0,5,-5\n");
        ASSERT_EQ(r.rc, 0) << r.err;
        auto boxes = r.of("msgbox");
        ASSERT_EQ(boxes.size(), 1u) << bad;
        EXPECT_EQ(boxes[0]["title"], "Error Message");
        EXPECT_EQ(boxes[0]["text"],
                  "A error occurred, most probably due to an unknown file-format");
        // The fault came while reading: the scene keeps only what was there.
        EXPECT_EQ(polygons().size(), 1u) << bad;
        EXPECT_EQ(ctx().state.strLoadedFiles, "");
    }
}

TEST_F(ImportTest, InterruptWhileReadingConstructionWireframesBuildsWhatWasRead) {
    std::string text;
    for (int i = 0; i < 4000; ++i) text += wireFacet(i, 3);  // 20 000 lines
    ScriptResult r =
        importText("mnuFileAddPNTEditor", "c.pnt", text, "", "", [](core::AppContext& c) {
            scripted(c).onPump = [&c] {
                if (c.state.strFullPath.size() > 0 && c.engine.polygon_count() == 0)
                    c.state.bolInterruptProcess = true;
            };
        });
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(r.of("msgbox").size(), 0u);
    const auto n = polygons().size();
    EXPECT_GT(n, 0u);
    EXPECT_LT(n, 16000u);
    EXPECT_EQ(n % 4, 0u);
    EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("c.pnt").string() + " added");
}

// Strings: x along a line; pen 3 lifts, 2 draws from the line before.
const std::string kStrings =
    "0 0 0 3 3\n"
    "10 0 0 2 8\n"
    "20 0 0 2 3\n"
    "0 5 0 3 13\n"
    " 10 5 0 2\n";

const GroupInfo* groupByHandle(const std::vector<GroupInfo>& gs, engine::Handle h) {
    for (const auto& g : gs)
        if (g.handle == h) return &g;
    return nullptr;
}

TEST_F(ImportTest, ConstructionStringsBuildTheChosenShapeOneGroupAString) {
    ScriptResult r =
        importText("mnuStringFileOpenPNTLocal", "s.pnt", kStrings,
                   "answer form frm12_Excavation accept optExcCylinder=1 cboExcavationWidth=2 "
                   "cboExcavationHeight=4 optLineBottom=1\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    ASSERT_EQ(r.of("form").size(), 1u);
    auto polys = polygons();
    auto gs = groups();
    // Three segments: 0-1 and 1-2 in the first string, 3-4 in the second. A cylinder
    // is 10 polygons (two ends, eight sides).
    ASSERT_EQ(polys.size(), 30u);
    std::vector<engine::Handle> legs;
    for (const auto& p : polys)
        if (legs.empty() || legs.back() != p.group) legs.push_back(p.group);
    ASSERT_EQ(legs.size(), 3u);
    const GroupInfo* leg0 = groupByHandle(gs, legs[0]);
    const GroupInfo* leg1 = groupByHandle(gs, legs[1]);
    const GroupInfo* leg2 = groupByHandle(gs, legs[2]);
    ASSERT_TRUE(leg0 && leg1 && leg2);
    EXPECT_EQ(leg0->name, "CylPolyGroup");
    const GroupInfo* string1 = groupByHandle(gs, leg0->father);
    const GroupInfo* string2 = groupByHandle(gs, leg2->father);
    ASSERT_TRUE(string1 && string2);
    EXPECT_EQ(leg1->father, leg0->father);
    EXPECT_NE(string1->handle, string2->handle);
    EXPECT_EQ(string1->name, "NextModel");
    EXPECT_EQ(string2->name, "NextModel");
    const GroupInfo* top = groupByHandle(gs, string1->father);
    ASSERT_TRUE(top);
    EXPECT_EQ(top->name, "AllMap3DLineGroups");
    EXPECT_EQ(string2->father, top->handle);
    EXPECT_EQ(top->father, 0u);
    // Colours from the first line of each segment: 3, 8 - 5 = 3, 13 - 5 = 8.
    EXPECT_EQ(polys[0].colour, (engine::Rgb{246, 246, 9}));
    EXPECT_EQ(polys[10].colour, (engine::Rgb{246, 246, 9}));
    EXPECT_EQ(polys[20].colour, (engine::Rgb{119, 246, 9}));
    // The line at the bottom: both ends up by half the height box (4 m: 20 units),
    // so the octagonal cylinder's points centre at z = 20.
    double z = 0;
    int n = 0;
    for (int i = 0; i < 10; ++i)
        for (const auto& p : polys[i].points) z += p.z, ++n;
    EXPECT_NEAR(z / n, 20, 1e-9);
    // The colour choice is back on after the reader's use.
    auto& form = forms::Frm12Excavation::of(ctx());
    EXPECT_TRUE(form.at("cboExcavationColour").enabled);
    EXPECT_TRUE(form.at("cmdColourSelect").enabled);
}

TEST_F(ImportTest, ConstructionStringsOffersNoColourChoice) {
    ScriptResult r = importText("mnuStringFileAddPNTLocal", "s.pnt", kStrings,
                                "answer form frm12_Excavation accept "
                                "cboExcavationColour=\"Dark grey (raises)\"\n");
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("disabled"), std::string::npos) << r.err;
}

TEST_F(ImportTest, ConstructionStringsAsCrossedRibbonsAtTheTopOfTheLine) {
    ScriptResult r = importText("mnuStringFileAddPNTLocal", "s.pnt", "0 0 0 3 3\n10 0 0 2 3\n",
                                "answer form frm12_Excavation accept optCrossPolyLine=1 "
                                "cboExcavationWidth=1 cboExcavationHeight=2 optLineTop=1\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 4u);
    EXPECT_EQ(polys[0].groupName, "StringPolyGroup");
    // Top: both ends down by half the height (2 m: 10 units).
    double z = 0;
    int n = 0;
    for (const auto& p : polys)
        for (const auto& q : p.points) z += q.z, ++n;
    EXPECT_NEAR(z / n, -10, 1e-9);
    EXPECT_EQ(ctx().state.strLoadedFiles, dir.file("s.pnt").string() + " added");
}

TEST_F(ImportTest, ConstructionStringsOddLinesReadAsZerosAndEndTheString) {
    // The third line fits no shape: pen 0 ends the string, and the segment to it is
    // not drawn; the last line draws from that origin.
    ScriptResult r =
        importText("mnuStringFileAddPNTLocal", "s.pnt", "0 0 0 3 3\n10 0 0 2 3\n20 0\n5 5 0 2 3\n",
                   "answer form frm12_Excavation accept optExcTunnel=1 "
                   "cboExcavationWidth=2 cboExcavationHeight=2\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto polys = polygons();
    ASSERT_EQ(polys.size(), 12u);  // two tunnels of six faces
    EXPECT_EQ(polys[0].groupName, "ExcPolyGroup");
    // The second tunnel runs from the origin to (50, 50, 0): its points' mean lies
    // half way.
    double x = 0, y = 0;
    int n = 0;
    for (int i = 6; i < 12; ++i)
        for (const auto& q : polys[i].points) x += q.x, y += q.y, ++n;
    EXPECT_NEAR(x / n, 25, 1e-6);
    EXPECT_NEAR(y / n, 25, 1e-6);
}

TEST_F(ImportTest, ClosingTheShapeDialogBuildsNothing) {
    ScriptResult r = importText("mnuStringFileAddPNTLocal", "s.pnt", kStrings,
                                "answer form frm12_Excavation close\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(polygons().size(), 0u);
    EXPECT_EQ(ctx().state.strLoadedFiles, "");
    EXPECT_EQ(scripted(ctx()).progress(), 100);
    EXPECT_EQ(ctx().ui.pointer(), 1);
    EXPECT_TRUE(forms::Frm12Excavation::of(ctx()).at("cboExcavationColour").enabled);
}

TEST_F(ImportTest, ShapeDialogRefusesABlankSizeAndTakesTheNextAnswer) {
    ScriptResult r = importText("mnuStringFileAddPNTLocal", "s.pnt", kStrings,
                                "answer form frm12_Excavation accept cboExcavationWidth=\"\"\n"
                                "answer form frm12_Excavation accept cboExcavationWidth=1.5\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Selection error");
    EXPECT_EQ(boxes[0]["text"], "A blank or zero value as a dimension is unacceptable");
    EXPECT_EQ(polygons().size(), 18u);  // three tunnels
}

}  // namespace
