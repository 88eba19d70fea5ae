#include "core/MainForm.h"

#include "core/AppContext.h"
#include "core/Camera.h"
#include "forms/Frm03MirrowMain.h"
#include "forms/Frm04CamIniPosition.h"

namespace core {

namespace {

forms::Form& mainForm(AppContext& ctx) {
    if (!ctx.forms.find("frm03_MirrowMain")) ctx.forms.add(std::make_unique<forms::Frm03MirrowMain>());
    return *ctx.forms.find("frm03_MirrowMain");
}

void ensureCamForm(AppContext& ctx) {
    if (!ctx.forms.find("frm04_CamIniPosition"))
        ctx.forms.add(std::make_unique<forms::Frm04CamIniPosition>());
}

constexpr int kTwipsPerPixel = 15;

}  // namespace

bool Form_Load(AppContext& ctx) {
    auto& s = ctx.state;
    auto& f = mainForm(ctx);
    ensureCamForm(ctx);
    f.ensureLoaded();
    // 1
    f.setCaption("Tarvik");
    f.at("chkShowInfo").caption = "Info OFF";
    // 2
    s.F_h_lngAddedGroups.clear();
    s.intTranslucentCount = 0;
    s.dblCoordOffset = {0, 0, 0};
    // 3
    s.F_h_lngLight = ctx.engine.light_create("Light", {0, 0, 0});
    s.F_h_lngFont = ctx.engine.font_create("Ariel", 10, 1);
    // 4
    ctx.comment(kMouseHelpText);
    ctx.status(1, kStatusHelpText);
    // 5
    ctx.progress(0);
    ctx.forms.find("frm04_CamIniPosition")->setOption("optNorthTop");
    ctx.engine.engine_set_background_color({0, 0, 0});
    f.setText("cboZoomRate", "Active");
    s.bolZoomActive = true;
    ctx.engine.light_calcualte_vertices_normals_automatically(50);
    f.setCheck("chkShowInfo", 0);
    // 6
    if (!ctx.engineStarts(ctx)) {
        ctx.ui.msgBox(
            "Error with the 3D-library initiation, either 3DSTATE.dll is not installed in the "
            "WINDOWS\\system32-directory or DirectX 9.0 is not installed on the computer",
            ui::Buttons::OK, "3D-library initiation ERROR");
        ctx.engine.engine_close();
        s.bolProgramEnding = true;
        return false;
    }
    // 7
    int card = ctx.cardSupport(ctx);
    if (card == 0) {
        ctx.ui.msgBox("Failed to initialize 3D Acceleration.", ui::Buttons::OK, "No 3D card detected");
        s.bolProgramEnding = true;
        return false;
    }
    if (card == 1) ctx.engine.card_use();
    // 8
    ctx.engine.engine_set_error_reporting_mode(0);
    ctx.engine.engine_set_speaker_mode(0);
    ctx.engine.engine_write_error_messages_to_the_screen(0);
    ctx.engine.engine_hide_log_window();
    ctx.progress(25);
    ctx.pointer(11);
    // 9
    if (ctx.engine.engine_load_world("", "", "", 4) != 0) {
        ctx.ui.msgBox("Error loading world", ui::Buttons::OK, "Error");
        p_subMainLoop(ctx);
    }
    ctx.progress(50);
    setRotationCentre(ctx, ctx.engine.group_get_center_of_mass(0));
    ctx.engine.engine_set_background_color({0, 0, 0});
    // 10
    if (!p_subInitializeCamera(ctx, true)) {
        s.bolProgramEnding = true;
        return false;
    }
    ctx.progress(75);
    p_subActivateCommandButtons(ctx);
    p_subMainLoop(ctx);
    ctx.pointer(1);
    ctx.progress(100);
    return true;
}

void p_subMainLoop(AppContext& ctx, bool bolCamUpdate) {
    auto& s = ctx.state;
    auto& e = ctx.engine;
    if (s.F_h_lngCamera == 0 || e.engine_is_engine_empty()) return;
    ctx.ui.pumpEvents();
    if (bolCamUpdate) {
        s.bolCameraMoved = true;
        p_subCameraUpdate(ctx);
    }
    if (!s.labels.empty()) {
        const double w = e.window_width() > 0 ? e.window_width() : 1;
        const double h = e.window_height() > 0 ? e.window_height() : 1;
        for (const auto& label : s.labels) {
            if (label.group == 0) continue;
            double x = 0, y = 0;
            int r = e.engine_3D_point_to_2D(label.position, x, y);
            if ((r & 0xFF) == 0)
                e.font_write_text(s.F_h_lngFont, label.text, x / w * 100 + 0.5, y / h * 100,
                                  {255, 0, 0}, 0);
        }
    }
    if (s.bolRubberLine) {
        if (s.F_h_lngRubberLine != 0) {
            e.polygon_delete(s.F_h_lngRubberLine);
            s.F_h_lngRubberLine = 0;
        }
        if (s.mouseOffsetX != 0 || s.mouseOffsetY != 0)
            s.F_h_lngRubberLine = e.line_draw3D(s.rubberFrom, s.rubberTo, {255, 255, 0}, {255, 255, 0});
    }
    ctx.ui.requestFrame();
}

void p_subResetAndCleanup(AppContext& ctx) {
    auto& s = ctx.state;
    auto& e = ctx.engine;
    if (s.F_h_lngMUSphere1 != 0) {
        e.group_delete_members(s.F_h_lngMUSphere1);
        s.F_h_lngMUSphere1 = 0;
    }
    if (s.F_h_lngMUSphere2 != 0) {
        e.group_delete_members(s.F_h_lngMUSphere2);
        s.F_h_lngMUSphere2 = 0;
    }
    if (s.F_h_lngRubberLine != 0) {
        e.polygon_delete(s.F_h_lngRubberLine);
        s.F_h_lngRubberLine = 0;
    }
    s.bolRubberLine = false;
    s.clearToolFlags();
    for (const auto& c : ctx.commands.all()) {
        if (!c.toolButton) continue;
        if (auto* m = ctx.commands.findMutable(c.name)) {
            m->enabled = true;
            m->highlighted = false;
        }
    }
    if (auto* m = ctx.commands.findMutable("mnuObtainPolygonColour")) m->enabled = true;
    for (auto& hook : ctx.onResetAndCleanup) hook(ctx);
    s.bolAllowNavigate = true;
    ctx.pointer(1);
    s.bolInterruptProcess = false;
    p_subMainLoop(ctx);
    ctx.ui.pumpEvents();
}

void p_subActivateCommandButtons(AppContext& ctx) {
    for (const auto& c : ctx.commands.all()) {
        if (!c.toolButton) continue;
        if (auto* m = ctx.commands.findMutable(c.name)) m->enabled = true;
    }
    mainForm(ctx).at("chkShowInfo").visible = true;
    for (const char* name : {"mnuObtainPolygonColour", "mnuOpen", "mnuAdd", "mnuSeismic"})
        if (auto* m = ctx.commands.findMutable(name)) m->enabled = true;
    if (ctx.showWatermarks) ctx.showWatermarks(ctx);
}

void cmdInterruptProcess(AppContext& ctx) {
    auto a = ctx.ui.msgBox("Must the process be terminated?", ui::Buttons::YesNo, "Process suspended");
    ctx.state.bolInterruptProcess = (a == ui::Answer::Yes);
    p_subMainLoop(ctx);
    ctx.ui.pumpEvents();
}

bool Form_QueryUnload(AppContext& ctx) {
    p_subResetAndCleanup(ctx);
    auto a = ctx.ui.msgBox("Do you want to exit the program?", ui::Buttons::YesNo, "Confirmation Dialog");
    if (a == ui::Answer::Yes) {
        ctx.pointer(11);
        ctx.engine.engine_clear_STATE_log_files();
        ctx.engine.engine_close();
        ctx.state.F_h_lngCamera = 0;
        ctx.pointer(1);
        ctx.state.bolProgramEnding = true;
        return true;
    }
    p_subMainLoop(ctx);
    return false;
}

void Form_Resize(AppContext& ctx) {
    auto& s = ctx.state;
    if (s.windowState == 1) {
        s.timSliderEnabled = false;
        s.intRotateSpeedX = 0;
        s.intRotateSpeedY = 0;
        s.timAutoRotateEnabled = false;
        return;
    }
    const int X = s.intResizeX, Y = s.intResizeY;
    auto& L = s.layout;
    L.renderTop = 360;
    L.renderHeight = s.formHeight - (Y + 690);
    L.renderWidth = s.formWidth - (X + 50);
    if (L.renderHeight < kTwipsPerPixel) L.renderHeight = kTwipsPerPixel;
    if (L.renderWidth < kTwipsPerPixel) L.renderWidth = kTwipsPerPixel;
    L.framesTop = s.formHeight - (Y + 320);
    const int steps[4] = {X + 380, X + 760, X + 1140, X + 1960};
    for (int i = 0; i < 4; ++i) L.buttonLeft[i] = s.formWidth - steps[i];
    s.lngWindowWidth = L.renderWidth / kTwipsPerPixel;
    s.lngWindowHeight = L.renderHeight / kTwipsPerPixel;
    ctx.engine.set_window_size(s.lngWindowWidth, s.lngWindowHeight);
    p_subMainLoop(ctx);
    ctx.ui.setFocus();
}

bool interrupted(AppContext& ctx) {
    ctx.ui.pumpEvents();
    return ctx.state.bolInterruptProcess;
}

void registerMainFormCommands(AppContext& ctx) {
    ctx.commands.add({"cmdInterruptProcess", "Stop", "", "", "", [](AppContext& c) { cmdInterruptProcess(c); }});
    ctx.commands.add({"mnuExit", "Exit", "File", "Q", "", [](AppContext& c) { Form_QueryUnload(c); }});
    ctx.commands.add({"cmdReset", "Reset", "", "Esc", "", [](AppContext& c) { p_subResetAndCleanup(c); }});
}

}  // namespace core
