// Object information, text search, protection and the settings dialog, end to
// end as a script drives them.

#include <cstdio>

#include "ScriptFixture.h"
#include "builders/ObjectInfo.h"
#include "persistence/SettingsFile.h"

namespace {

using scripttest::ScriptResult;
using scripttest::ScriptTest;

void registerBoth(core::AppContext& ctx) {
    builders::registerObjectInfo(ctx);
    persistence::registerSettings(ctx);
}

// A square of 2000 x 2000 decimetres on the ground about the origin, its front up,
// under the camera that starts looking down on the middle of the window.
std::string square(const std::string& name, double x0 = -1000) {
    const std::string x1 = std::to_string(x0 + 2000), x = std::to_string(x0);
    return "polygon --name \"" + name + "\" " + x1 + ",1000,0 " + x1 + ",-1000,0 " + x +
           ",-1000,0 " + x + ",1000,0\n";
}

TEST_F(ScriptTest, DoubleClickShowsTheNameOfThePolygonUnderTheMouse) {
    ScriptResult r = runScript(square("UP_Infor\\r\\n2024-01-01\\r\\n9:05:07\\r\\nDrive 4") +
                                   "mouse dblclick 400 300\n"
                                   "mouse dblclick 2 2\n",  // nothing there: no box
                               registerBoth);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Information associated with the selected polygon");
    EXPECT_EQ(boxes[0]["text"], "UP_Infor\r\n2024-01-01\r\n9:05:07\r\nDrive 4");
}

TEST_F(ScriptTest, DoubleClickOnABlankNameSaysThereIsNoInformation) {
    ScriptResult r = runScript(square(" ") + "mouse dblclick 400 300\n", registerBoth);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "No information is associated with the selected polygon");
}

TEST_F(ScriptTest, InfoSwitchShowsTheNameWhileTheMouseHovers) {
    ScriptResult r = runScript(square("Stope A") +
                                   "mouse move 0 0 400 300\n"  // off: nothing
                                   "set frm03_MirrowMain.chkShowInfo 1\n"
                                   "mouse move 0 0 400 300\n"
                                   "get frm03_MirrowMain.chkShowInfo\n",
                               registerBoth);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto status = r.of("status");
    ASSERT_GE(status.size(), 4u);
    const std::string last = status.back()["text"];
    // The camera looks at the middle of the square: a point at the origin, in metres.
    double x = 1, y = 1, z = 1;
    char tail[64] = {};
    ASSERT_EQ(std::sscanf(last.c_str(), "( %lf, %lf, %lf )     %63[^\n]", &x, &y, &z, tail), 4)
        << last;
    EXPECT_NEAR(x, 0, 1e-6);
    EXPECT_NEAR(y, 0, 1e-6);
    EXPECT_NEAR(z, 0, 1e-6);
    EXPECT_STREQ(tail, "Stope A");
    EXPECT_EQ(status[status.size() - 2]["text"], "ON");
    EXPECT_EQ(r.of("get")[0]["value"], "1");
}

TEST_F(ScriptTest, SearchMenuAndProtectionThroughTheScript) {
    ScriptResult r = runScript(square("Granite contact", -3000) + square("Basalt", 1000) +
                                   "answer msgbox Yes\n"
                                   "answer input granite\n"
                                   "run mnuFindFromAllText\n"
                                   "answer msgbox Yes\n"
                                   "run mnuProtectText2\n"
                                   "answer input \"\"\n"
                                   "call p_subFindText 1 true false\n"
                                   "dump scene.json\n",
                               registerBoth);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(r.of("comment").back()["text"], "Number of polygons found with search text: 1");
    auto scene = nlohmann::json::parse(testsupport::readFile(dir.file("scene.json")));
    auto polys = scene["polygons"];
    ASSERT_EQ(polys.size(), 2u);
    EXPECT_EQ(polys[0]["name"], "PR_Granite contact");
    EXPECT_EQ(polys[0]["enabled"], true);
    // Hidden by the search, so not protected.
    EXPECT_EQ(polys[1]["name"], "Basalt");
    EXPECT_EQ(polys[1]["enabled"], false);
}

TEST_F(ScriptTest, InfoFormThroughCallAndSet) {
    ScriptResult r = runScript(
        "clock 2024-03-05 09:05:07\n"
        "call P_subLoadInfoForm \"UP_Custm\\r\\n2020-01-01\\r\\n10:00:00\\r\\nline 1\\r\\nline "
        "2\"\n"
        "set frm23_ChangeInfo.dtpPickTime 08:30:00\n"
        "call P_fncInfoString\n"
        "run cmdCurrentDateTime\n"
        "call P_fncInfoString\n",
        registerBoth);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[1]["result"], "UP_Custm\r\n2020-01-01\r\n8:30:00\r\nline 1\r\nline 2");
    EXPECT_EQ(calls[2]["result"], "UP_Custm\r\n2024-03-05\r\n9:05:07\r\nline 1\r\nline 2");
}

TEST_F(ScriptTest, SettingsDialogRefusesAndKeepsThroughSaveAndLoad) {
    ScriptResult r = runScript(
        "set frm33_Settings.cboZoomAmount 10\n"
        "get frm33_Settings.cboZoomAmount\n"
        "answer form frm33_Settings accept cboZoomAmount=9 cboSphereResolution=\"Quick Marker\"\n"
        "run mnuSettings\n"
        "answer save out.SET\n"
        "run cmdSaveSettings\n"
        "run cmdDefaultSettings\n"
        "answer open out.SET\n"
        "run cmdLoadSettings\n"
        "get frm33_Settings.cboSphereResolution\n",
        registerBoth);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"],
              "The entered zoom-value must be greater than 0 and smaller than 10");
    EXPECT_EQ(r.of("get")[0]["value"], "5");
    EXPECT_EQ(r.of("get")[1]["value"], "Quick Marker");
    EXPECT_EQ(ctx().settings.lngZoomAmount, 1800);
    EXPECT_EQ(ctx().settings.dblSphereLatitudeBands, 2.0);
    EXPECT_EQ(ctx().settings.dblSphereLongitudeBands, 4.0);
    EXPECT_NE(r.of("comment").back()["text"].get<std::string>().find("out.SET opened"),
              std::string::npos);
}

}  // namespace
