#include <gtest/gtest.h>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/MainForm.h"
#include "ui/ScriptedUi.h"

#include <nlohmann/json.hpp>

namespace {

struct Started {
    ui::ScriptedUi ui;
    core::AppContext ctx{ui};
    Started() { app::registerAll(ctx); }
    std::string transcriptText() const {
        std::string all;
        for (const auto& l : ui.transcript()) all += l + "\n";
        return all;
    }
};

engine::Handle addTriangle(engine::Engine& e, engine::Handle group, engine::Point3 o) {
    auto p = e.polygon_create();
    e.polygon_add_point(p, o);
    e.polygon_add_point(p, o + engine::Point3{0, 10, 0});
    e.polygon_add_point(p, o + engine::Point3{10, 0, 0});
    EXPECT_EQ(e.engine_add_polygon(p), 0);
    e.polygon_set_group(p, group);
    return p;
}

TEST(MainFormLoad, StartsInOrderAndLeavesTheProgramReady) {
    Started s;
    ASSERT_TRUE(app::startMainForm(s.ctx));
    auto& st = s.ctx.state;
    EXPECT_NE(st.F_h_lngCamera, 0u);
    EXPECT_NE(st.F_h_lngLight, 0u);
    EXPECT_NE(st.F_h_lngFont, 0u);
    EXPECT_FALSE(s.ctx.engine.engine_is_engine_empty());
    EXPECT_EQ(s.ctx.engine.engine_get_background_color(), (engine::Rgb{0, 0, 0}));
    EXPECT_EQ(s.ui.pointer(), 1);
    EXPECT_EQ(s.ui.progress(), 100);
    EXPECT_EQ(st.txtComment, core::kMouseHelpText);
    // the comment comes before the status panel, both once
    auto t = s.transcriptText();
    auto c = t.find("LEFT-Rotate");
    auto p = t.find("SHIFT-key for multiple selections");
    ASSERT_NE(c, std::string::npos);
    ASSERT_NE(p, std::string::npos);
    EXPECT_LT(c, p);
    bool panel1 = false;
    for (const auto& l : s.ui.transcript()) {
        auto j = nlohmann::json::parse(l);
        if (j["kind"] == "status" && j["panel"] == 1 && j["text"] == core::kStatusHelpText) panel1 = true;
    }
    EXPECT_TRUE(panel1);
    // empty scene: centre at the origin, which has x >= 0 and y <= 0 -> north along +x
    EXPECT_EQ(st.dblRotationCentre, (engine::Point3{0, 0, 0}));
    EXPECT_EQ(st.sngNorthAxis, 0.0f);
    EXPECT_EQ(s.ctx.forms.find("frm03_MirrowMain")->valueOf("chkShowInfo"), "0");
    EXPECT_EQ(s.ctx.forms.find("frm03_MirrowMain")->valueOf("cboZoomRate"), "Active");
    // camera 5 km straight above the centre, looking down
    auto loc = s.ctx.engine.camera_get_location(st.F_h_lngCamera);
    EXPECT_NEAR(loc.z, 50000.0, 1e-3);
    EXPECT_NEAR(s.ctx.engine.camera_get_zoom(st.F_h_lngCamera), 24.0, 0);
}

std::vector<nlohmann::json> boxes(const ui::ScriptedUi& ui) {
    std::vector<nlohmann::json> out;
    for (const auto& l : ui.transcript()) {
        auto j = nlohmann::json::parse(l);
        if (j["kind"] == "msgbox") out.push_back(j);
    }
    return out;
}

TEST(MainFormLoad, StartFailuresShowTheirBoxesAndEnd) {
    {
        Started s;
        s.ctx.engineStarts = [](core::AppContext&) { return false; };
        EXPECT_FALSE(app::startMainForm(s.ctx));
        auto b = boxes(s.ui);
        ASSERT_EQ(b.size(), 1u);
        EXPECT_EQ(b[0]["title"], "3D-library initiation ERROR");
        EXPECT_EQ(b[0]["text"],
                  "Error with the 3D-library initiation, either 3DSTATE.dll is not installed in the "
                  "WINDOWS\\system32-directory or DirectX 9.0 is not installed on the computer");
        EXPECT_EQ(s.ctx.state.F_h_lngCamera, 0u);
    }
    {
        Started s;
        s.ctx.cardSupport = [](core::AppContext&) { return 0; };
        EXPECT_FALSE(app::startMainForm(s.ctx));
        auto b = boxes(s.ui);
        ASSERT_EQ(b.size(), 1u);
        EXPECT_EQ(b[0]["title"], "No 3D card detected");
        EXPECT_EQ(b[0]["text"], "Failed to initialize 3D Acceleration.");
        EXPECT_EQ(s.ctx.state.F_h_lngCamera, 0u);
    }
}

TEST(MainLoop, DrawsNothingBeforeTheCameraAndLabelsAfter) {
    Started s;
    // before the start: no camera, nothing happens and nothing fails
    s.ctx.state.labels.push_back({1, {0, 0, 0}, "X"});
    core::p_subMainLoop(s.ctx, true);
    EXPECT_TRUE(s.ctx.engine.queued_texts().empty());
    EXPECT_FALSE(s.ctx.state.bolCameraMoved);

    ASSERT_TRUE(app::startMainForm(s.ctx));
    (void)s.ctx.engine.take_queued_texts();
    auto g = s.ctx.engine.group_create("G");
    addTriangle(s.ctx.engine, g, {0, 0, 0});
    s.ctx.state.labels.clear();
    // a label at the rotation centre sits at the window's middle
    s.ctx.state.labels.push_back({g, s.ctx.state.dblRotationCentre, "Stope 4"});
    s.ctx.state.labels.push_back({0, {0, 0, 0}, "no group, not drawn"});
    core::p_subMainLoop(s.ctx, false);
    const auto& texts = s.ctx.engine.queued_texts();
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].text, "Stope 4");
    EXPECT_EQ(texts[0].colour, (engine::Rgb{255, 0, 0}));
    EXPECT_NEAR(texts[0].xPercent, 50.5, 0.01);
    EXPECT_NEAR(texts[0].yPercent, 50.0, 0.01);
}

TEST(ResetAndCleanup, RemovesTemporaryObjectsAndDisarmsTools) {
    Started s;
    ASSERT_TRUE(app::startMainForm(s.ctx));
    auto& e = s.ctx.engine;
    auto& st = s.ctx.state;
    st.F_h_lngMUSphere1 = e.group_create("MU1");
    addTriangle(e, st.F_h_lngMUSphere1, {0, 0, 0});
    st.F_h_lngMUSphere2 = e.group_create("MU2");
    addTriangle(e, st.F_h_lngMUSphere2, {50, 0, 0});
    auto keep = e.group_create("keep");
    addTriangle(e, keep, {100, 0, 0});
    st.F_h_lngRubberLine = e.line_draw3D({0, 0, 0}, {1, 1, 1}, {255, 255, 0}, {255, 255, 0});
    st.setToolFlag("bolMeasure", true);
    st.bolInterruptProcess = true;
    st.bolAllowNavigate = false;
    s.ctx.pointer(14);
    core::p_subResetAndCleanup(s.ctx);
    EXPECT_EQ(st.F_h_lngMUSphere1, 0u);
    EXPECT_EQ(st.F_h_lngMUSphere2, 0u);
    EXPECT_EQ(st.F_h_lngRubberLine, 0u);
    EXPECT_TRUE(e.lines().empty());
    EXPECT_EQ(e.polygon_count(), 1u);
    EXPECT_EQ(e.group_get_number_of_polygons(keep), 1);
    EXPECT_FALSE(st.toolArmed());
    EXPECT_FALSE(st.bolInterruptProcess);
    EXPECT_TRUE(st.bolAllowNavigate);
    EXPECT_EQ(s.ui.pointer(), 1);
}

TEST(Shutdown, NoKeepsTheProgramWithToolsResetYesClosesTheEngine) {
    Started s;
    ASSERT_TRUE(app::startMainForm(s.ctx));
    s.ctx.state.setToolFlag("bolMeasure", true);
    s.ui.answerMsgBox(ui::Answer::No);
    EXPECT_FALSE(core::Form_QueryUnload(s.ctx));
    EXPECT_FALSE(s.ctx.state.toolArmed());
    EXPECT_NE(s.ctx.state.F_h_lngCamera, 0u);
    auto b = boxes(s.ui);
    ASSERT_EQ(b.size(), 1u);
    EXPECT_EQ(b[0]["text"], "Do you want to exit the program?");
    EXPECT_EQ(b[0]["title"], "Confirmation Dialog");
    EXPECT_EQ(b[0]["buttons"], "YesNo");

    s.ui.answerMsgBox(ui::Answer::Yes);
    EXPECT_TRUE(core::Form_QueryUnload(s.ctx));
    EXPECT_EQ(s.ctx.state.F_h_lngCamera, 0u);
    EXPECT_TRUE(s.ctx.engine.engine_is_engine_empty());
    EXPECT_EQ(s.ui.pointer(), 1);
}

TEST(Interrupt, TheAnswerSetsTheFlag) {
    Started s;
    ASSERT_TRUE(app::startMainForm(s.ctx));
    s.ui.answerMsgBox(ui::Answer::Yes);
    core::cmdInterruptProcess(s.ctx);
    EXPECT_TRUE(s.ctx.state.bolInterruptProcess);
    EXPECT_TRUE(core::interrupted(s.ctx));
    s.ui.answerMsgBox(ui::Answer::No);
    core::cmdInterruptProcess(s.ctx);
    EXPECT_FALSE(s.ctx.state.bolInterruptProcess);
    auto b = boxes(s.ui);
    ASSERT_EQ(b.size(), 2u);
    EXPECT_EQ(b[0]["text"], "Must the process be terminated?");
    EXPECT_EQ(b[0]["title"], "Process suspended");
}

TEST(Resize, LaysOutAroundTheMarginsAndNotWhileMinimised) {
    Started s;
    ASSERT_TRUE(app::startMainForm(s.ctx));
    auto& st = s.ctx.state;
    st.formWidth = 15000;   // 1000 px
    st.formHeight = 12000;  // 800 px
    core::Form_Resize(s.ctx);
    // width 15000 - (480 + 50) = 14470 twips, height 12000 - (1300 + 690) = 10010 twips
    EXPECT_EQ(st.layout.renderWidth, 14470);
    EXPECT_EQ(st.layout.renderHeight, 10010);
    EXPECT_EQ(st.layout.framesTop, 12000 - 1620);
    EXPECT_EQ(st.layout.buttonLeft[0], 15000 - 860);
    EXPECT_EQ(st.layout.buttonLeft[3], 15000 - 2440);
    EXPECT_EQ(st.lngWindowWidth, 14470 / 15);
    EXPECT_EQ(s.ctx.engine.window_height(), 10010 / 15);

    auto before = st.layout.renderWidth;
    st.windowState = 1;
    st.intRotateSpeedX = 3;
    st.timAutoRotateEnabled = true;
    st.formWidth = 3000;
    core::Form_Resize(s.ctx);
    EXPECT_EQ(st.layout.renderWidth, before);
    EXPECT_EQ(st.intRotateSpeedX, 0);
    EXPECT_FALSE(st.timAutoRotateEnabled);
}

TEST(Camera, NorthAxisFollowsTheRotationCentre) {
    Started s;
    core::setRotationCentre(s.ctx, {10, -10, 0});
    EXPECT_EQ(s.ctx.state.sngNorthAxis, 0.0f);
    core::setRotationCentre(s.ctx, {10, 10, 0});
    EXPECT_EQ(s.ctx.state.sngNorthAxis, 0.5f);
    core::setRotationCentre(s.ctx, {-10, -10, 0});
    EXPECT_EQ(s.ctx.state.sngNorthAxis, 0.5f);
    core::setRotationCentre(s.ctx, {0, 0, 0});
    EXPECT_EQ(s.ctx.state.sngNorthAxis, 0.0f);
}

}  // namespace
