// Camera navigation: the zoom arithmetic, the pole jump, the mouse, the wheel,
// the keys and the main form's view controls, driven without a window.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/Navigation.h"
#include "ui/ScriptedUi.h"

namespace {

using core::elevationAfter;

bool inPoleBand(double e) {
    return std::fabs(std::sin(e)) > 0.99999 || std::fabs(std::cos(e)) > 0.99999;
}

TEST(PoleJump, AwayFromThePolesTheDeltaIsAddedAsIs) {
    EXPECT_DOUBLE_EQ(elevationAfter(0.5, 0.1), 0.6);
    EXPECT_DOUBLE_EQ(elevationAfter(1.2, -0.3), 0.9);
}

TEST(PoleJump, ReachingStraightDownJumpsPastItTheWayItWasGoing) {
    const double halfPi = std::acos(-1.0) / 2;
    // landing on the pole going up: pushed on by 0.009
    EXPECT_NEAR(elevationAfter(halfPi - 0.05, 0.05), halfPi + 0.009, 1e-12);
    // and coming back down over it
    EXPECT_NEAR(elevationAfter(halfPi + 0.05, -0.05), halfPi - 0.009, 1e-12);
}

TEST(PoleJump, LevelViewsJumpToo) {
    // cos(-0.001) is within 1e-5 of 1: the camera would look level, where the
    // up vector's formula divides by tan(elevation) = 0
    EXPECT_NEAR(elevationAfter(0.001, -0.002), -0.001 - 0.009, 1e-12);
}

TEST(PoleJump, NoStepEverEndsInsideABand) {
    for (double start = -7; start < 7; start += 0.0137)
        for (double d : {-0.05, -0.007, -0.0021, 0.0009, 0.0021, 0.007, 0.05}) {
            const double e = elevationAfter(start, d);
            EXPECT_FALSE(inPoleBand(e)) << "start " << start << " delta " << d << " gave " << e;
        }
}

core::MainState withDistance(double d, bool active, float factor = 1.0f, double slow = 1.2) {
    core::MainState s;
    s.dblCamDistance = d;
    s.bolZoomActive = active;
    s.sngProjectionFactor = factor;
    s.dblSlowZoomRate = slow;
    return s;
}

TEST(ZoomRate, ActiveRateIsCappedAndScaledByTheDistanceTerm) {
    // 50000 * 0.0039 = 195, capped at 70; exp(0.625) = 1.87 rounds to 2; (2 + 1) * 70
    EXPECT_DOUBLE_EQ(core::zoomRate(withDistance(50000, true)), 210);
    // 100 * 0.0039 = 0.39, raised to 1; exp(0.00125) rounds to 1; (1 + 1) * 1
    EXPECT_DOUBLE_EQ(core::zoomRate(withDistance(100, true)), 2);
    // 5000 * 0.0039 = 19.5; exp(0.0625) rounds to 1
    EXPECT_DOUBLE_EQ(core::zoomRate(withDistance(5000, true)), 39);
}

TEST(ZoomRate, SlowRatesTakeTheSetRate) {
    EXPECT_DOUBLE_EQ(core::zoomRate(withDistance(50000, false, 1.0f, 1.2)), 3 * 1.2);
}

TEST(ZoomRate, TheFactorDividesTheDistance) {
    // orthographic: 24 times as far reads as the same rate
    EXPECT_DOUBLE_EQ(core::zoomRate(withDistance(50000 * 24.0, true, 24.0f)), 210);
}

TEST(ZoomRate, LargeRatesAreCompressedInThreeStages) {
    // 400000: rate 70, exp(5) = 148.4 -> 148, so 149 * 70 = 10430, then
    // 900 + 9530^0.9 = 4712.27, 1200 + 3512.27^0.8 = 1886.23, 1800 + 86.23^0.6 = 1814.50
    EXPECT_NEAR(core::zoomRate(withDistance(400000, true)), 1814.5009948748, 1e-6);
}

// A context started as the program starts, with the navigation installed.
struct Session {
    ui::ScriptedUi ui;
    core::AppContext ctx{ui};
    Session() {
        app::registerAll(ctx);
        core::installNavigation(ctx);
        EXPECT_TRUE(app::startMainForm(ctx));
        ctx.engine.set_window_size(800, 600);
    }
    forms::Form& main() { return *ctx.forms.find("frm03_MirrowMain"); }
    core::MainState& s() { return ctx.state; }
};

TEST(Zoom, TheDistanceIsHeldWithinItsLimits) {
    Session t;
    t.s().dblCamDistance = 300;
    core::p_subZoom(t.ctx, 1000, false);
    EXPECT_EQ(t.s().dblCamDistance, 238.0);
    t.s().dblCamDistance = 1.9e6;
    core::p_subZoom(t.ctx, -1e9, false);
    EXPECT_EQ(t.s().dblCamDistance, 2.0e6);
    t.s().sngProjectionFactor = 24.0f;
    t.s().dblCamDistance = 10000;
    core::p_subZoom(t.ctx, 1000, false);
    EXPECT_EQ(t.s().dblCamDistance, 238.0 * 24);
}

TEST(Mouse, LeftDragRotatesWithThePointerOfRotation) {
    Session t;
    const double az = t.s().dblCamAzimuth;
    t.ctx.input.onMouseDown(t.ctx, 1, 0, 100, 100);
    t.ctx.input.onMouseMove(t.ctx, 1, 0, 110, 100);
    EXPECT_NEAR(t.s().dblCamAzimuth, az - 10 * 0.007, 1e-12);
    EXPECT_EQ(t.ui.pointer(), 5);
    // an upward drag of 20 pixels raises the elevation by 0.14, jumping the pole
    const double el = t.s().dblCamElevation;
    t.ctx.input.onMouseMove(t.ctx, 1, 0, 110, 80);
    EXPECT_NEAR(t.s().dblCamElevation, elevationAfter(el, 20 * 0.007), 1e-12);
    EXPECT_FALSE(inPoleBand(t.s().dblCamElevation));
    t.ctx.input.onMouseUp(t.ctx, 1, 0, 110, 80);
    EXPECT_EQ(t.ui.pointer(), 1);
}

TEST(Mouse, AltHeldOrAToolArmedKeepsTheViewStill) {
    Session t;
    const double az = t.s().dblCamAzimuth;
    t.ctx.input.onMouseDown(t.ctx, 1, 4, 100, 100);
    t.ctx.input.onMouseMove(t.ctx, 1, 4, 150, 100);
    EXPECT_EQ(t.s().dblCamAzimuth, az);

    t.s().setToolFlag("bolMeasure", true);
    t.ctx.input.onMouseDown(t.ctx, 1, 0, 100, 100);
    t.ctx.input.onMouseMove(t.ctx, 1, 0, 150, 100);
    EXPECT_EQ(t.s().dblCamAzimuth, az) << "a tool's click does not move the view";
    t.ctx.input.onMouseDown(t.ctx, 1, 2, 100, 100);
    t.ctx.input.onMouseMove(t.ctx, 1, 2, 150, 100);
    EXPECT_NE(t.s().dblCamAzimuth, az) << "Ctrl lets it move";
}

TEST(Mouse, RightDragKeepsTheGrabbedPointUnderThePointer) {
    Session t;
    t.s().dblCamElevation = 0.9;
    t.s().dblCamAzimuth = 0.4;
    core::p_subCameraUpdate(t.ctx);
    const auto c0 = t.s().dblRotationCentre;
    t.ctx.input.onMouseDown(t.ctx, 2, 0, 400, 300);
    // the point of the centre plane under the press
    engine::Plane pl;
    pl.n = t.ctx.engine.camera().direction;
    pl.d = -engine::dot(c0, pl.n);
    engine::Point3 grabbed;
    ASSERT_EQ(t.ctx.engine.engine_2D_point_to_3D_point_on_plane(400, 300, pl, grabbed), 0);
    t.ctx.input.onMouseMove(t.ctx, 2, 0, 440, 330);
    EXPECT_EQ(t.ui.pointer(), 2);
    double x = 0, y = 0;
    t.ctx.engine.engine_3D_point_to_2D(grabbed, x, y);
    EXPECT_NEAR(x, 440, 1e-6);
    EXPECT_NEAR(y, 330, 1e-6);
    EXPECT_NE(t.s().dblRotationCentre, c0);
    EXPECT_EQ(t.s().sngNorthAxis, core::northAxisFor(t.s().dblRotationCentre));
}

TEST(Mouse, MiddleDragAndWheelZoom) {
    Session t;
    t.s().dblCamDistance = 50000;
    t.ctx.input.onMouseDown(t.ctx, 4, 0, 100, 100);
    t.ctx.input.onMouseMove(t.ctx, 4, 0, 100, 110);
    // 10 pixels down at rate 210: 2100 nearer
    EXPECT_DOUBLE_EQ(t.s().dblCamDistance, 50000 - 2100);
    EXPECT_EQ(t.ui.pointer(), 7);
    t.s().dblCamDistance = 50000;
    t.ctx.input.onWheel(t.ctx, 120, 10, 10);
    // a notch away: step -10 * 3 lines, at rate 210: 6300 farther
    EXPECT_DOUBLE_EQ(t.s().dblCamDistance, 56300);
    t.ui.setPointer(11);
    t.ctx.input.onWheel(t.ctx, -120, 10, 10);
    EXPECT_DOUBLE_EQ(t.s().dblCamDistance, 56300) << "not while the hourglass shows";
}

std::string lastComment(Session& t) { return t.s().txtComment; }

// The texts written to the comment box since transcript line `from`, in order
// (a key's own line comes first; a command it starts may write its prompt after).
std::vector<std::string> commentsSince(Session& t, std::size_t from) {
    std::vector<std::string> out;
    const auto& lines = t.ui.transcript();
    for (std::size_t i = from; i < lines.size(); ++i) {
        const std::string& l = lines[i];
        const std::string key = "\"text\": \"";
        if (l.find("\"kind\": \"comment\"") == std::string::npos) continue;
        const auto b = l.find(key);
        if (b == std::string::npos) continue;
        const auto e = l.rfind('"');
        out.push_back(l.substr(b + key.size(), e - b - key.size()));
    }
    return out;
}

TEST(Keys, ShiftArrowsRotateByTheSettingsStep) {
    Session t;
    const double az = t.s().dblCamAzimuth;
    t.s().intRotateSpeedX = 3;
    t.s().timAutoRotateEnabled = true;
    t.ctx.input.onKeyDown(t.ctx, 37, 1);  // Shift + Left
    EXPECT_NEAR(t.s().dblCamAzimuth, az + 10 * (0.017453292519943278 + 0.0001), 1e-12);
    EXPECT_EQ(lastComment(t), "Rotate scene in 10m steps");
    EXPECT_FALSE(t.s().timAutoRotateEnabled);
    EXPECT_EQ(t.s().intRotateSpeedX, 0);
}

TEST(Keys, PageKeysAndTheirLines) {
    Session t;
    t.s().dblCamDistance = 50000;
    t.ctx.input.onKeyDown(t.ctx, 33, 0);  // PageUp
    EXPECT_EQ(t.s().dblCamDistance, 51000);
    EXPECT_EQ(lastComment(t), "Zoom scene with 1000 factor");
    t.ctx.input.onKeyDown(t.ctx, 34, 0);
    t.ctx.input.onKeyDown(t.ctx, 34, 0);
    EXPECT_EQ(t.s().dblCamDistance, 49000);
}

TEST(Keys, ArrowsSpinAndSpaceStops) {
    Session t;
    t.ctx.input.onKeyDown(t.ctx, 37, 0);
    t.ctx.input.onKeyDown(t.ctx, 38, 0);
    t.ctx.input.onKeyDown(t.ctx, 38, 0);
    EXPECT_EQ(t.s().intRotateSpeedX, 1);
    EXPECT_EQ(t.s().intRotateSpeedY, 2);
    EXPECT_TRUE(t.s().timAutoRotateEnabled);
    EXPECT_EQ(lastComment(t), "Rotate the scene continuously");
    const double az = t.s().dblCamAzimuth;
    core::timAutoRotate_Timer(t.ctx);
    EXPECT_NEAR(t.s().dblCamAzimuth, az + 0.002, 1e-12);
    t.ctx.input.onKeyDown(t.ctx, 32, 0);
    EXPECT_FALSE(t.s().timAutoRotateEnabled);
    EXPECT_EQ(t.s().intRotateSpeedY, 0);
    EXPECT_EQ(lastComment(t), "Reset the scene");
}

TEST(Keys, BackgroundSnapBoxesAndTheRest) {
    Session t;
    t.ctx.input.onKeyDown(t.ctx, 'W', 0);
    EXPECT_EQ(t.ctx.engine.engine_get_background_color(), (engine::Rgb{255, 255, 255}));
    EXPECT_EQ(lastComment(t), "Change background colour to white");
    t.ctx.input.onKeyDown(t.ctx, 'B', 0);
    EXPECT_EQ(t.ctx.engine.engine_get_background_color(), (engine::Rgb{0, 0, 0}));
    t.ctx.input.onKeyDown(t.ctx, 113, 0);  // F2
    EXPECT_EQ(t.main().text("cboSnapSelect1"), "Tube");
    t.ctx.input.onKeyDown(t.ctx, '4', 0);
    EXPECT_EQ(t.main().text("cboSnapSelect2"), "1/2 Edge");
    const std::size_t before = t.ui.transcript().size();
    t.ctx.input.onKeyDown(t.ctx, 'L', 0);
    const auto written = commentsSince(t, before);
    EXPECT_NE(std::find(written.begin(), written.end(), "Measure tool"), written.end());
    t.ctx.input.onKeyDown(t.ctx, 27, 0);  // the measuring waits: Esc resets it
    t.s().intRotateSpeedX = 2;
    t.ctx.input.onKeyDown(t.ctx, 'K', 4);
    EXPECT_EQ(lastComment(t), "Stop the continuous rotation of the scene");
    EXPECT_EQ(t.s().intRotateSpeedX, 0);
}

TEST(Keys, CtrlArrowsPanByTheStepInPixels) {
    Session t;
    t.s().dblCamElevation = 1.0;
    core::p_subCameraUpdate(t.ctx);
    engine::Plane pl;
    pl.n = t.ctx.engine.camera().direction;
    pl.d = -engine::dot(t.s().dblRotationCentre, pl.n);
    engine::Point3 atCentre;
    ASSERT_EQ(t.ctx.engine.engine_2D_point_to_3D_point_on_plane(400, 300, pl, atCentre), 0);
    t.ctx.input.onKeyDown(t.ctx, 39, 2);  // Ctrl + Right
    EXPECT_EQ(lastComment(t), "Pan scene in 10m steps");
    // what was at the window centre moved 10 pixels right
    double x = 0, y = 0;
    t.ctx.engine.engine_3D_point_to_2D(atCentre, x, y);
    EXPECT_NEAR(x, 410, 1e-6);
    EXPECT_NEAR(y, 300, 1e-6);
}

TEST(ViewControls, OrthographicAndBack) {
    Session t;
    t.s().dblCamDistance = 40000;
    auto& f = t.main();
    ASSERT_TRUE(f.setFromUser("sliViewCutOff", "100"));
    ASSERT_TRUE(f.setFromUser("lstPersOrtho", "Orthographic"));
    EXPECT_EQ(t.s().sngProjectionFactor, 24.0f);
    EXPECT_EQ(t.s().dblCamDistance, 40000 * 24.0);
    EXPECT_EQ(t.ctx.engine.camera().zoom, 1.0);
    EXPECT_EQ(f.at("sliViewCutOff").max, 1920000);
    EXPECT_EQ(f.at("sliViewCutOff").value, 2400);
    EXPECT_EQ(t.s().lngCutOff, 2400);
    EXPECT_EQ(t.ctx.engine.camera().distanceFromEye, 2400);
    ASSERT_TRUE(f.setFromUser("lstPersOrtho", "Perspective"));
    EXPECT_EQ(t.s().sngProjectionFactor, 1.0f);
    EXPECT_EQ(t.s().dblCamDistance, 40000);
    EXPECT_EQ(t.ctx.engine.camera().zoom, 24.0);
    EXPECT_EQ(f.at("sliViewCutOff").max, 80000);
    EXPECT_EQ(f.at("sliViewCutOff").value, 100);
}

TEST(ViewControls, ZoomRateBox) {
    Session t;
    auto& f = t.main();
    ASSERT_TRUE(f.setFromUser("cboZoomRate", "SlowO1"));
    EXPECT_FALSE(t.s().bolZoomActive);
    EXPECT_DOUBLE_EQ(t.s().dblSlowZoomRate, 0.6);
    ASSERT_TRUE(f.setFromUser("cboZoomRate", "quick please"));
    EXPECT_EQ(f.text("cboZoomRate"), "Active");
    EXPECT_TRUE(t.s().bolZoomActive);
}

TEST(ViewControls, CullingDepthAndCutOff) {
    Session t;
    auto& f = t.main();
    ASSERT_TRUE(f.setFromUser("sliViewCutOff", "50"));
    ASSERT_TRUE(f.setFromUser("cboCullingDepth", "5000"));
    EXPECT_EQ(t.s().lngCullingDepth, 5000);
    EXPECT_EQ(t.ctx.engine.engine_get_fog().farDepth, 5050);
    ASSERT_TRUE(f.setFromUser("cboCullingDepth", "0"));
    EXPECT_EQ(f.text("cboCullingDepth"), "Infinite");
    EXPECT_EQ(t.ctx.engine.engine_get_fog().farDepth, 4000000.0 + 50);
    // the slider at its end puts the boxes back to their widest
    ASSERT_TRUE(f.setFromUser("cboZoomRate", "SlowP2"));
    ASSERT_TRUE(f.setFromUser("cboCullingDepth", "700"));
    ASSERT_TRUE(f.setFromUser("sliViewCutOff", std::to_string(f.at("sliViewCutOff").max)));
    EXPECT_EQ(f.text("cboCullingDepth"), "Infinite");
    EXPECT_EQ(f.text("cboZoomRate"), "Active");
    EXPECT_EQ(t.ctx.engine.camera().distanceFromEye, f.at("sliViewCutOff").max);
}

TEST(RotateButtons, SpeedsAndStop) {
    Session t;
    t.ctx.commands.find("cmdRotatePictureRight")->handler(t.ctx);
    t.ctx.commands.find("cmdRotatePictureRight")->handler(t.ctx);
    EXPECT_EQ(t.s().intRotateSpeedX, -2);
    EXPECT_TRUE(t.s().timAutoRotateEnabled);
    t.ctx.commands.find("cmdRotatePictureLeft")->handler(t.ctx);
    t.ctx.commands.find("cmdRotatePictureLeft")->handler(t.ctx);
    EXPECT_FALSE(t.s().timAutoRotateEnabled) << "both speeds zero stops it";
    t.ctx.commands.find("cmdRotatePictureUp")->handler(t.ctx);
    t.ctx.commands.find("cmdRotatePictureStop")->handler(t.ctx);
    EXPECT_EQ(t.s().intRotateSpeedY, 0);
    EXPECT_FALSE(t.s().timAutoRotateEnabled);
}

TEST(InitializeWorld, CancelKeepsTheCamera) {
    Session t;
    t.s().dblCamDistance = 1234;
    ui::FormAnswer a;
    a.form = "frm04_CamIniPosition";
    a.action = ui::FormAction::Close;
    t.ui.answerForm(a);
    core::p_subInitializeWorld(t.ctx, true);
    EXPECT_EQ(t.s().dblCamDistance, 1234);
    ui::FormAnswer ok;
    ok.form = "frm04_CamIniPosition";
    ok.action = ui::FormAction::Accept;
    ok.controls = {{"optNorthRight", "1"}};
    t.ui.answerForm(ok);
    core::p_subInitializeWorld(t.ctx, true);
    EXPECT_EQ(t.s().dblCamDistance, 50000.0);
    EXPECT_NEAR(t.s().dblCamAzimuth, (t.s().sngQuadrant + 0.5) * 3.1416, 1e-6);
}

TEST(Installation, TwiceInstallsOnce) {
    Session t;
    core::installNavigation(t.ctx);
    const double az = t.s().dblCamAzimuth;
    t.ctx.input.onKeyDown(t.ctx, 37, 1);
    EXPECT_NEAR(t.s().dblCamAzimuth, az + 10 * (0.017453292519943278 + 0.0001), 1e-12);
}

// Every key of the table with the line it writes in the comment box; the keys
// whose line is "none" leave the box as it was.
TEST(KeyTable, EveryKeyWritesItsLine) {
    struct Row {
        int key, shift;
        const char* line;  // nullptr: no line
    };
    const Row rows[] = {
        {37, 1, "Rotate scene in 10m steps"},
        {40, 1, "Rotate scene in 10m steps"},
        {38, 2, "Pan scene in 10m steps"},
        {39, 2, "Pan scene in 10m steps"},
        {33, 0, "Zoom scene with 1000 factor"},
        {34, 0, "Zoom scene with 1000 factor"},
        {'M', 0, "Open Menu to open or add files"},
        {'C', 0, "Copy to memory clipboard"},
        {'I', 0, "Initialize the scene"},
        {'S', 0, "Refresh lighting with spotlight shading"},
        {'F', 0, "Refresh lighting with flat shading"},
        {'J', 0, "Refresh lighting with high contrast flat shading"},
        {'G', 0, "Refresh lighting with Gouraud shading"},
        {'H', 0, "Refresh lighting by highlighting polygons"},
        {32, 0, "Reset the scene"},
        {27, 0, "Reset the scene"},
        {8, 0, "Reset the scene"},
        {'B', 0, "Change background colour to black"},
        {'W', 0, "Change background colour to white"},
        {'R', 0, "Select a new rotation point"},
        {'L', 0, "Measure tool"},
        {'U', 0, "Make polygons visible"},
        {'Y', 0, "Make polygons opaque"},
        {'P', 0, "Screenshot opened in Scalix"},
        {37, 0, "Rotate the scene continuously"},
        {40, 0, "Rotate the scene continuously"},
        {'T', 0, nullptr},
        {'Z', 0, nullptr},
        {112, 0, nullptr},
        {116, 0, nullptr},
        {'1', 0, nullptr},
        {'5', 0, nullptr},
        {'K', 0, "Stop the continuous rotation of the scene"},
        {'W', 1, "Stop the continuous rotation of the scene"},
        {'P', 4, "Stop the continuous rotation of the scene"},
        {117, 0, "Stop the continuous rotation of the scene"},  // F6 is not in the table
        {'6', 0, "Stop the continuous rotation of the scene"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE("key " + std::to_string(r.key) + " shift " + std::to_string(r.shift));
        Session t;
        // keys that start a selection tool bring up its scope form: closed at once
        if (r.key == 'Y' || r.key == 'T' || r.key == 'Z') {
            ui::FormAnswer close;
            close.form = r.key == 'Z' ? "frm12_Excavation" : "frm22_Selection";
            close.action = ui::FormAction::Close;
            t.ui.answerForm(close);
        }
        const std::size_t before = t.ui.transcript().size();
        try {
            t.ctx.input.onKeyDown(t.ctx, r.key, r.shift);
        } catch (const std::exception& ex) {
            ADD_FAILURE() << ex.what();
        }
        const auto written = commentsSince(t, before);
        if (r.line) {
            // a tool the key starts may prompt around it, but the line is there
            EXPECT_NE(std::find(written.begin(), written.end(), r.line), written.end())
                << "wrote: " << (written.empty() ? "nothing" : written.front());
        } else {
            // the tool a key starts may prompt, but the key writes no line of the table
            for (const std::string& w : written)
                for (const Row& other : rows)
                    if (other.line) EXPECT_NE(w, other.line) << "key " << r.key;
        }
    }
}

TEST(KeyTable, QAsksToExitAndNoKeepsTheProgram) {
    Session t;
    t.ctx.comment("before");
    t.ui.answerMsgBox(ui::Answer::No);
    t.ctx.input.onKeyDown(t.ctx, 'Q', 0);
    EXPECT_EQ(lastComment(t), "before");
    EXPECT_FALSE(t.s().bolProgramEnding);
    EXPECT_NE(t.s().F_h_lngCamera, 0u);
    bool asked = false;
    for (const auto& l : t.ui.transcript())
        if (l.find("Do you want to exit the program?") != std::string::npos) asked = true;
    EXPECT_TRUE(asked);
}

TEST(KeyTable, MAndPRunTheWindowsCommandsWhenThereIsAWindow) {
    Session t;
    // without a window neither command exists: the line alone, nothing fails
    t.ctx.input.onKeyDown(t.ctx, 'M', 0);
    t.ctx.input.onKeyDown(t.ctx, 'P', 0);
    EXPECT_EQ(lastComment(t), "Screenshot opened in Scalix");

    int menus = 0, shots = 0;
    t.ctx.commands.add({core::kFileMenuCommand, "File menu", "", "", "", [&](core::AppContext& c) {
                            // the line is already there when the menu opens
                            EXPECT_EQ(c.state.txtComment, "Open Menu to open or add files");
                            ++menus;
                        }});
    t.ctx.commands.add(
        {core::kScreenshotCommand, "Screenshot", "", "", "", [&](core::AppContext&) { ++shots; }});
    t.ctx.input.onKeyDown(t.ctx, 'M', 0);
    EXPECT_EQ(menus, 1);
    EXPECT_EQ(shots, 0);
    t.ctx.input.onKeyDown(t.ctx, 'P', 0);
    EXPECT_EQ(shots, 1);
    // with another shift state they are other keys
    t.ctx.input.onKeyDown(t.ctx, 'M', 1);
    t.ctx.input.onKeyDown(t.ctx, 'P', 2);
    EXPECT_EQ(menus, 1);
    EXPECT_EQ(shots, 1);
    // a disabled command stays shut
    t.ctx.commands.findMutable(core::kScreenshotCommand)->enabled = false;
    t.ctx.input.onKeyDown(t.ctx, 'P', 0);
    EXPECT_EQ(shots, 1);
}

TEST(KeyTable, TheStepsOfTheLinesFollowTheSettings) {
    Session t;
    t.ctx.settings.sngRotationDegrees = 2.5f;
    t.ctx.settings.lngPanAmount = 25;
    t.ctx.settings.lngZoomAmount = 250;
    t.ctx.input.onKeyDown(t.ctx, 39, 1);
    EXPECT_EQ(lastComment(t), "Rotate scene in 2.5m steps");
    t.ctx.input.onKeyDown(t.ctx, 37, 2);
    EXPECT_EQ(lastComment(t), "Pan scene in 25m steps");
    const double d = t.s().dblCamDistance;
    t.ctx.input.onKeyDown(t.ctx, 34, 0);
    EXPECT_EQ(lastComment(t), "Zoom scene with 250 factor");
    EXPECT_EQ(t.s().dblCamDistance, d - 250);
}

}  // namespace
