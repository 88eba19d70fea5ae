// The settings dialog's checks and tables, and the .SET file: its lines, a save
// and load, refused files, the file read at start.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <variant>

#include "core/AppContext.h"
#include "forms/Frm33Settings.h"
#include "persistence/SettingsFile.h"
#include "support/TestSupport.h"
#include "ui/ScriptedUi.h"

namespace {

using forms::Frm33Settings;
using json = nlohmann::json;

// Every field, so that a refused file can be shown to change nothing.
void expectSameSettings(const core::Settings& a, const core::Settings& b) {
    EXPECT_EQ(a.sngRotationDegrees, b.sngRotationDegrees);
    EXPECT_EQ(a.lngZoomAmount, b.lngZoomAmount);
    EXPECT_EQ(a.lngPanAmount, b.lngPanAmount);
    EXPECT_EQ(a.dblLineThickness, b.dblLineThickness);
    EXPECT_EQ(a.dblSphereLatitudeBands, b.dblSphereLatitudeBands);
    EXPECT_EQ(a.dblSphereLongitudeBands, b.dblSphereLongitudeBands);
    EXPECT_EQ(a.intSphereMarkerKind, b.intSphereMarkerKind);
    EXPECT_EQ(a.dblSphereScale, b.dblSphereScale);
    EXPECT_EQ(a.dblSphereRadius, b.dblSphereRadius);
    EXPECT_EQ(a.intFormWidthStep, b.intFormWidthStep);
    EXPECT_EQ(a.intFormHeightStep, b.intFormHeightStep);
    EXPECT_EQ(a.statusBarVisible, b.statusBarVisible);
}

// The file of the default settings, worked out line by line: 10 degrees, zoom
// 5 x 200, pan 5 x 2, thickness 1 x 10, 4 stacks, 8 slices, sphere, scale 4,
// radius 10, spacing 1300 and 480, a form of no size, then the dialog's texts.
const std::string kDefaultFile =
    "10\r\n1000\r\n10\r\n10\r\n4\r\n8\r\n0\r\n4\r\n10\r\n1300\r\n480\r\n0\r\n0\r\n"
    "10\r\n5\r\n5\r\n1\r\nLow Resolution\r\nNormal (Default)\r\nWindows XP1\r\nDefault\r\n1\r\n";

class SettingsTest : public ::testing::Test {
protected:
    SettingsTest() : ctx(ui) {
        persistence::registerSettings(ctx);
        ctx.windowSettingsChanged = [this](core::AppContext&) { ++windowChanges; };
    }
    Frm33Settings& form() { return ctx.forms.get<Frm33Settings>(Frm33Settings::kName); }
    std::vector<json> boxes() const {
        std::vector<json> out;
        for (const auto& l : ui.transcript()) {
            json j = json::parse(l);
            if (j["kind"] == "msgbox") out.push_back(j);
        }
        return out;
    }
    std::string file(const std::string& name, const std::string& text) {
        auto p = dir.file(name);
        testsupport::writeFile(p, text);
        return p.string();
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
    testsupport::TempDir dir;
    int windowChanges = 0;
};

TEST_F(SettingsTest, ZoomAndPanTakeWholeNumbersOneToNine) {
    auto& f = form();
    f.setFromUser("cboZoomAmount", "9");
    EXPECT_EQ(ctx.settings.lngZoomAmount, 1800);
    for (const char* bad : {"10", "0", "2.5", "abc", ""}) {
        f.setFromUser("cboZoomAmount", bad);
        EXPECT_EQ(ctx.settings.lngZoomAmount, 1800) << bad;
        EXPECT_EQ(f.text("cboZoomAmount"), "9") << bad;
    }
    auto b = boxes();
    ASSERT_EQ(b.size(), 5u);
    EXPECT_EQ(b[0]["text"], "The entered zoom-value must be greater than 0 and smaller than 10");
    EXPECT_EQ(b[0]["title"], "Invalid entry");

    f.setFromUser("cboPanAmount", "1");
    EXPECT_EQ(ctx.settings.lngPanAmount, 2);
    f.setFromUser("cboPanAmount", "10");
    EXPECT_EQ(ctx.settings.lngPanAmount, 2);
    EXPECT_EQ(boxes().back()["text"],
              "The entered pan-value must be greater than 0 and smaller than 10");
}

TEST_F(SettingsTest, RotationLiesStrictlyBetweenZeroAndThreeSixty) {
    auto& f = form();
    f.setFromUser("cboRotationDegrees", "359.5");
    EXPECT_EQ(ctx.settings.sngRotationDegrees, 359.5f);
    for (const char* bad : {"360", "0", "-5", "ten"}) f.setFromUser("cboRotationDegrees", bad);
    EXPECT_EQ(ctx.settings.sngRotationDegrees, 359.5f);
    EXPECT_EQ(boxes().size(), 4u);
    EXPECT_EQ(boxes()[0]["text"],
              "The entered rotation must be greater than 0 and smaller than 360");
    f.setFromUser("cboLineThickness", "2.5");
    EXPECT_EQ(ctx.settings.dblLineThickness, 25.0);
    f.setFromUser("cboLineThickness", "0");
    EXPECT_EQ(ctx.settings.dblLineThickness, 25.0);
}

TEST_F(SettingsTest, SphereTablesSetStacksSlicesKindAndScale) {
    auto& f = form();
    f.setFromUser("cboSphereResolution", "Quick Marker");
    EXPECT_EQ(ctx.settings.dblSphereLatitudeBands, 2.0);
    EXPECT_EQ(ctx.settings.dblSphereLongitudeBands, 4.0);
    EXPECT_EQ(ctx.settings.intSphereMarkerKind, 0);
    // The cube only changes the kind.
    f.setFromUser("cboSphereResolution", "Cube Marker");
    EXPECT_EQ(ctx.settings.dblSphereLatitudeBands, 2.0);
    EXPECT_EQ(ctx.settings.intSphereMarkerKind, -1);
    f.setFromUser("cboSphereResolution", "High Resolution");
    EXPECT_EQ(ctx.settings.dblSphereLatitudeBands, 8.0);
    EXPECT_EQ(ctx.settings.dblSphereLongitudeBands, 16.0);
    EXPECT_EQ(ctx.settings.intSphereMarkerKind, 0);
    f.setFromUser("cboSphereResolution", "Ultra");  // no row: nothing changes
    EXPECT_EQ(f.text("cboSphereResolution"), "High Resolution");

    f.setFromUser("cboSphereScale", "Fixed Size");
    EXPECT_EQ(ctx.settings.dblSphereScale, 0.0);
    f.setFromUser("cboSphereScale", "Normal x 1.5");
    EXPECT_EQ(ctx.settings.dblSphereScale, 6.0);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(SettingsTest, BorderSpacingAndPictureSizeLayTheFormOut) {
    auto& f = form();
    f.setFromUser("cboBorderSpacing", "Windows Vista");
    EXPECT_EQ(ctx.settings.intFormWidthStep, 1360);
    EXPECT_EQ(ctx.settings.intFormHeightStep, 580);
    f.setFromUser("cboBorderSpacing", "Windows XP3");
    EXPECT_EQ(ctx.settings.intFormWidthStep, 1400);
    EXPECT_EQ(ctx.settings.intFormHeightStep, 480);
    EXPECT_EQ(ctx.state.intResizeY, 1400);
    EXPECT_EQ(ctx.state.intResizeX, 480);

    f.setFromUser("cboPictureboxSize", "640 x 480");
    // 640 pixels of 15 twips plus the margins 480 + 50; 480 pixels plus 1400 + 690.
    EXPECT_EQ(ctx.state.formWidth, 640 * 15 + 530);
    EXPECT_EQ(ctx.state.formHeight, 480 * 15 + 2090);
    EXPECT_EQ(ctx.state.lngWindowWidth, 640);
    EXPECT_EQ(ctx.state.lngWindowHeight, 480);
    EXPECT_EQ(ctx.engine.window_width(), 640);
    EXPECT_GT(windowChanges, 0);

    f.setFromUser("chkStatusbarToggle", "0");
    EXPECT_FALSE(ctx.settings.statusBarVisible);
}

TEST_F(SettingsTest, DefaultButtonPutsEverythingBack) {
    auto& f = form();
    f.setFromUser("cboZoomAmount", "2");
    f.setFromUser("cboSphereResolution", "Cube Marker");
    f.setFromUser("cboBorderSpacing", "Windows Classic");
    f.setFromUser("chkStatusbarToggle", "0");
    f.click("cmdDefaultSettings");
    expectSameSettings(ctx.settings, core::Settings{});
    EXPECT_EQ(f.text("cboZoomAmount"), "5");
    EXPECT_EQ(f.text("cboSphereResolution"), "Low Resolution");
    EXPECT_EQ(f.text("cboBorderSpacing"), "Windows XP1");
    EXPECT_EQ(f.checkValue("chkStatusbarToggle"), 1);
    EXPECT_EQ(ctx.state.intResizeY, 1300);
}

TEST_F(SettingsTest, DefaultsWriteTheFileLineByLine) {
    EXPECT_EQ(persistence::settingsFileText(persistence::currentSettingsContent(ctx)),
              kDefaultFile);
}

TEST_F(SettingsTest, SaveAndLoadGiveTheSameSettings) {
    auto& f = form();
    f.setFromUser("cboSphereResolution", "Quick Marker");
    f.setFromUser("cboZoomAmount", "9");
    f.setFromUser("cboRotationDegrees", "12.3");
    f.setFromUser("cboLineThickness", "0.7");
    f.setFromUser("cboSphereScale", "Normal x 0.5");
    const core::Settings saved = ctx.settings;
    const std::string path = dir.file("mine.SET").string();
    ASSERT_TRUE(persistence::saveSettingsFile(ctx, path));

    f.click("cmdDefaultSettings");
    ASSERT_TRUE(persistence::loadSettingsFile(ctx, path));
    expectSameSettings(ctx.settings, saved);
    EXPECT_EQ(ctx.settings.dblSphereLatitudeBands, 2.0);
    EXPECT_EQ(ctx.settings.dblSphereLongitudeBands, 4.0);
    EXPECT_EQ(ctx.settings.lngZoomAmount, 1800);
    EXPECT_EQ(f.text("cboSphereResolution"), "Quick Marker");
    EXPECT_EQ(f.text("cboRotationDegrees"), "12.3");
    EXPECT_EQ(f.text("cboLineThickness"), "0.7");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(SettingsTest, FileWithABadValueIsRefusedWhole) {
    form().setFromUser("cboZoomAmount", "3");
    const core::Settings before = ctx.settings;
    // Line 8 good, line 9 not a number: nothing of the file may stick.
    std::string text = kDefaultFile;
    text.replace(text.find("\r\n4\r\n10\r\n1300"), 13, "\r\n2\r\nbig\r\n1300");
    const std::string path = file("bad.SET", text);
    EXPECT_FALSE(persistence::loadSettingsFile(ctx, path));
    expectSameSettings(ctx.settings, before);
    EXPECT_EQ(form().text("cboZoomAmount"), "3");
    auto b = boxes();
    ASSERT_EQ(b.size(), 1u);
    EXPECT_EQ(b[0]["title"], "Settings-File error");
    EXPECT_NE(b[0]["text"].get<std::string>().find("line 9"), std::string::npos);
}

TEST_F(SettingsTest, IntegerLinesNeedWholeNumbersOfTheirSize) {
    auto line = [](int n, const std::string& v) {
        std::string t = kDefaultFile;
        std::size_t at = 0;
        for (int i = 1; i < n; ++i) at = t.find("\r\n", at) + 2;
        t.replace(at, t.find("\r\n", at) - at, v);
        return t;
    };
    using persistence::SettingsFileError;
    EXPECT_TRUE(std::holds_alternative<SettingsFileError>(
        persistence::parseSettingsFile(line(2, "1000.5"))));
    EXPECT_TRUE(std::holds_alternative<SettingsFileError>(
        persistence::parseSettingsFile(line(7, "40000"))));
    EXPECT_TRUE(
        std::holds_alternative<SettingsFileError>(persistence::parseSettingsFile(line(4, "nan"))));
    EXPECT_TRUE(
        std::holds_alternative<SettingsFileError>(persistence::parseSettingsFile(line(22, "3"))));
    auto ok = persistence::parseSettingsFile(line(7, " -1 "));
    ASSERT_TRUE(std::holds_alternative<persistence::SettingsFileContent>(ok));
    EXPECT_EQ(std::get<persistence::SettingsFileContent>(ok).settings.intSphereMarkerKind, -1);
    // Thirteen lines are enough; fewer are refused.
    std::string thirteen = kDefaultFile.substr(0, kDefaultFile.find("10\r\n5\r\n5"));
    EXPECT_TRUE(std::holds_alternative<persistence::SettingsFileContent>(
        persistence::parseSettingsFile(thirteen)));
    auto shortFile = persistence::parseSettingsFile("10\n1000\n10\n");
    ASSERT_TRUE(std::holds_alternative<SettingsFileError>(shortFile));
    EXPECT_EQ(std::get<SettingsFileError>(shortFile).line, 4);
    EXPECT_TRUE(std::get<SettingsFileError>(shortFile).missing);
}

TEST_F(SettingsTest, FileWithoutTextsShowsWhatTheNumbersMean) {
    const std::string path =
        file("numbers.SET", "15\n1800\n4\n20\n8\n8\n0\n6\n10\n1360\n580\n0\n0\n");
    ASSERT_TRUE(persistence::loadSettingsFile(ctx, path));
    auto& f = form();
    EXPECT_EQ(f.text("cboRotationDegrees"), "15");
    EXPECT_EQ(f.text("cboZoomAmount"), "9");
    EXPECT_EQ(f.text("cboPanAmount"), "2");
    EXPECT_EQ(f.text("cboLineThickness"), "2");
    EXPECT_EQ(f.text("cboSphereResolution"), "Medium Resolution");
    EXPECT_EQ(f.text("cboSphereScale"), "Normal x 1.5");
    EXPECT_EQ(f.text("cboBorderSpacing"), "Windows Vista");
    EXPECT_EQ(ctx.state.intResizeY, 1360);
    EXPECT_EQ(ctx.state.intResizeX, 580);
}

TEST_F(SettingsTest, LoadedFormSizeIsApplied) {
    std::string text = kDefaultFile;
    text.replace(text.find("480\r\n0\r\n0\r\n"), 11, "480\r\n12530\r\n9190\r\n");
    ASSERT_TRUE(persistence::loadSettingsFile(ctx, file("sized.SET", text)));
    // 12530 - (480 + 50) = 12000 twips, 9190 - (1300 + 690) = 7200 twips.
    EXPECT_EQ(ctx.state.lngWindowWidth, 800);
    EXPECT_EQ(ctx.state.lngWindowHeight, 480);
}

TEST_F(SettingsTest, DialogButtonsGoThroughTheFileDialogs) {
    form().setFromUser("cboPanAmount", "7");
    ui.answerSave(dir.file("chosen").string());
    form().click("cmdSaveSettings");
    const std::string saved = dir.file("chosen.SET").string();
    EXPECT_EQ(testsupport::readFile(saved).substr(0, 12), "10\r\n1000\r\n14");

    form().click("cmdDefaultSettings");
    ui.answerOpen(saved);
    form().click("cmdLoadSettings");
    EXPECT_EQ(ctx.settings.lngPanAmount, 14);
    EXPECT_EQ(ctx.state.strLoadedFiles, saved + " opened");
    EXPECT_EQ(ctx.state.txtComment, saved + " opened");
    ui.answerOpen(std::nullopt);
    form().click("cmdLoadSettings");
    EXPECT_EQ(ctx.state.strLoadedFiles, saved + " opened");
}

TEST_F(SettingsTest, StartupFileIsReadWhenPresent) {
    ctx.strProgramFolder = dir.path.string();
    EXPECT_FALSE(persistence::loadStartupSettings(ctx));
    expectSameSettings(ctx.settings, core::Settings{});

    std::string text = kDefaultFile;
    text.replace(0, 2, "45");
    file("Tarvik Settings.SET", text);
    EXPECT_TRUE(persistence::loadStartupSettings(ctx));
    EXPECT_EQ(ctx.settings.sngRotationDegrees, 45.0f);
    EXPECT_TRUE(ctx.state.strLoadedFiles.empty());

    file("Tarvik Settings.SET", "45\r\nlots\r\n");
    EXPECT_FALSE(persistence::loadStartupSettings(ctx));
    EXPECT_EQ(ctx.settings.sngRotationDegrees, 45.0f);
    EXPECT_EQ(ctx.settings.lngZoomAmount, 1000);
    EXPECT_EQ(boxes().size(), 1u);
}

}  // namespace
