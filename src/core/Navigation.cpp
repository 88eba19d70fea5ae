#include "core/Navigation.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <string>

#include "core/AngleMath.h"
#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/CoordinateLimit.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "forms/Frm03MirrowMain.h"
#include "forms/Frm04CamIniPosition.h"

namespace core {

namespace {

constexpr double kPoleBand = 0.99999;
constexpr double kPoleJump = 0.009;
constexpr double kMinDistance = 238.0;
constexpr double kMaxDistance = 2000000.0;

// Key codes of the window system.
enum Key : int {
    kBackspace = 8,
    kShiftKey = 16,
    kCtrlKey = 17,
    kAltKey = 18,
    kEscape = 27,
    kSpace = 32,
    kPageUp = 33,
    kPageDown = 34,
    kLeft = 37,
    kUp = 38,
    kRight = 39,
    kDown = 40,
    kF1 = 112,
};

forms::Form& mainForm(AppContext& ctx) {
    if (!ctx.forms.find("frm03_MirrowMain"))
        ctx.forms.add(std::make_unique<forms::Frm03MirrowMain>());
    forms::Form& f = *ctx.forms.find("frm03_MirrowMain");
    f.ensureLoaded();
    return f;
}

forms::Frm04CamIniPosition& camIniForm(AppContext& ctx) {
    if (!ctx.forms.find("frm04_CamIniPosition"))
        ctx.forms.add(std::make_unique<forms::Frm04CamIniPosition>());
    return dynamic_cast<forms::Frm04CamIniPosition&>(*ctx.forms.find("frm04_CamIniPosition"));
}

// A Single as the program writes it in its texts: shortest form, no trailing zeros.
std::string singleText(float v) {
    char buf[32];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, r.ptr);
}

double factorOf(const MainState& s) {
    const double f = s.sngProjectionFactor;
    return f > 0 && std::isfinite(f) ? f : 1.0;
}

void holdDistance(MainState& s) {
    const double f = factorOf(s);
    if (!std::isfinite(s.dblCamDistance)) s.dblCamDistance = kMaxDistance * f;
    s.dblCamDistance = std::clamp(s.dblCamDistance, kMinDistance * f, kMaxDistance * f);
}

void stopAutoRotation(AppContext& ctx) {
    ctx.state.intRotateSpeedX = 0;
    ctx.state.intRotateSpeedY = 0;
    ctx.state.timAutoRotateEnabled = false;
}

// Lenient number: the leading number of the text, else 0.
double leadingNumber(const std::string& t) {
    std::size_t i = 0;
    while (i < t.size() && (t[i] == ' ' || t[i] == '\t')) ++i;
    double v = 0;
    const char* b = t.data() + i;
    if (b != t.data() + t.size() && *b == '+') ++b;
    auto r = std::from_chars(b, t.data() + t.size(), v);
    return r.ec == std::errc() && std::isfinite(v) ? v : 0;
}

// Runs a registered command by name; false when nobody has registered it yet.
bool runCommand(AppContext& ctx, const char* name) {
    const Command* c = ctx.commands.find(name);
    if (!c || !c->handler || !c->enabled) return false;
    auto handler = c->handler;
    handler(ctx);
    return true;
}

}  // namespace

double elevationAfter(double elevation, double delta) {
    double e = elevation + delta;
    const double way = delta < 0 ? -1.0 : 1.0;
    if (std::fabs(std::sin(e)) > kPoleBand) e += kPoleJump * way;
    if (std::fabs(std::cos(e)) > kPoleBand) e += kPoleJump * way;
    return e;
}

double zoomRate(const MainState& s) {
    const double f = factorOf(s);
    const double d = s.dblCamDistance;
    double rate;
    if (s.bolZoomActive) {
        rate = d * 0.0039 / f;
        if (rate >= 70.0) rate = 70.0;
        if (rate <= 1.0) rate = 1.0;
    } else {
        rate = s.dblSlowZoomRate;
    }
    rate = (roundHalfEven(std::exp(d * 1.25e-05 / f)) + 1) * rate;
    if (rate > 900.0) rate = std::pow(rate - 900.0, 0.9) + 900.0;
    if (rate > 1200.0) rate = std::pow(rate - 1200.0, 0.8) + 1200.0;
    if (rate > 1800.0) rate = std::pow(rate - 1800.0, 0.6) + 1800.0;
    return rate;
}

void p_subZoom(AppContext& ctx, double Y, bool /*bolSlow*/) {
    auto& s = ctx.state;
    if (!std::isfinite(Y)) return;
    const double step = Y * zoomRate(s);
    s.dblCamDistance -= factorOf(s) * step;
    holdDistance(s);
}

void p_subInitializeWorld(AppContext& ctx, bool bolUseForm) {
    p_subResetAndCleanup(ctx);
    ctx.progress(0);
    auto& f = camIniForm(ctx);
    f.ensureLoaded();
    if (bolUseForm) {
        f.cancelled = false;
        ctx.ui.showModal(f);
    } else {
        f.cancelled = false;
    }
    if (!f.cancelled) {
        ctx.pointer(11);
        setRotationCentre(ctx, ctx.engine.group_get_center_of_mass(0));
        p_subInitializeCamera(ctx, false);
        if (ctx.state.bolLightFollowsCamera != 0 && ctx.lightFollowCamera)
            ctx.lightFollowCamera(ctx);
        ctx.pointer(1);
        p_subMainLoop(ctx, true);
    }
    ctx.progress(100);
}

void timAutoRotate_Timer(AppContext& ctx) {
    auto& s = ctx.state;
    if (!s.timAutoRotateEnabled) return;
    s.dblCamAzimuth += s.intRotateSpeedX * 0.002;
    if (s.intRotateSpeedY != 0)
        s.dblCamElevation = elevationAfter(s.dblCamElevation, s.intRotateSpeedY * 0.002);
    p_subMainLoop(ctx, true);
}

void timSlider_Timer(AppContext& ctx) {
    auto& s = ctx.state;
    if (!s.timSliderEnabled) return;
    s.lngCutOff = mainForm(ctx).at("sliViewCutOff").value;
    applyCulling(ctx);
    s.timSliderEnabled = false;
    p_subMainLoop(ctx, true);
}

void cmdRotatePicture(AppContext& ctx, int dx, int dy) {
    auto& s = ctx.state;
    s.intRotateSpeedX += dx;
    s.intRotateSpeedY += dy;
    s.timAutoRotateEnabled = s.intRotateSpeedX != 0 || s.intRotateSpeedY != 0;
}

void cmdRotatePictureStop(AppContext& ctx) { stopAutoRotation(ctx); }

void cboZoomRate_Change(AppContext& ctx) {
    auto& s = ctx.state;
    forms::Control& c = mainForm(ctx).at("cboZoomRate");
    const double f = factorOf(s);
    const std::string& t = c.text;
    if (t == "SlowP1" || t == "SlowP2" || t == "SlowO1" || t == "SlowO2") {
        s.bolZoomActive = false;
        s.dblSlowZoomRate = (t == "SlowP1"   ? 1.2
                             : t == "SlowP2" ? 0.9
                             : t == "SlowO1" ? 0.6
                                             : 0.3) /
                            f;
        return;
    }
    // "Active", and any typed text, which becomes "Active".
    c.text = "Active";
    s.bolZoomActive = true;
}

void cboCullingDepth_Change(AppContext& ctx) {
    auto& s = ctx.state;
    forms::Control& c = mainForm(ctx).at("cboCullingDepth");
    if (c.text == "Infinite") {
        s.lngCullingDepth = 0;
    } else {
        const double v = leadingNumber(c.text);
        s.lngCullingDepth = v > 0 && v < 2.0e9 ? static_cast<long>(v) : 0;
        if (s.lngCullingDepth == 0) c.text = "Infinite";
    }
    applyCulling(ctx);
    p_subMainLoop(ctx, true);
}

void sliViewCutOff_Change(AppContext& ctx) {
    auto& s = ctx.state;
    forms::Form& f = mainForm(ctx);
    const forms::Control& slider = f.at("sliViewCutOff");
    s.lngCutOff = slider.value;
    applyCulling(ctx);
    if (slider.value >= slider.max) {
        f.setText("cboCullingDepth", "Infinite");
        f.setText("cboZoomRate", "Active");
    }
    p_subMainLoop(ctx, true);
}

void lstPersOrtho_Click(AppContext& ctx) {
    auto& s = ctx.state;
    forms::Form& f = mainForm(ctx);
    forms::Control& slider = f.at("sliViewCutOff");
    const std::string& choice = f.at("lstPersOrtho").text;
    const auto cam = s.F_h_lngCamera;
    if (choice == "Perspective" && s.sngProjectionFactor == 24.0f) {
        ctx.engine.camera_set_zoom(cam, 24.0);
        s.sngProjectionFactor = 1.0f;
        s.dblCamDistance /= 24.0;
        slider.max = 80000;
        slider.smallChange = 200;
        slider.value = std::clamp(slider.value / 24, slider.min, slider.max);
    } else if (choice == "Orthographic" && s.sngProjectionFactor == 1.0f) {
        ctx.engine.camera_set_zoom(cam, 1.0);
        s.dblCamDistance *= 24.0;
        s.sngProjectionFactor = 24.0f;
        slider.max = 1920000;
        slider.smallChange = 4800;
        slider.value = std::clamp(slider.value * 24, slider.min, slider.max);
    }
    s.lngCutOff = slider.value;
    applyCulling(ctx);
    cboZoomRate_Change(ctx);
    p_subMainLoop(ctx, true);
}

// ---- the render window ---------------------------------------------------------------

bool Navigator::onPlane(AppContext& ctx, double x, double y, engine::Point3& out) const {
    return ctx.engine.engine_2D_point_to_3D_point_on_plane(x, y, plane_, out) == 0;
}

void Navigator::panBy(AppContext& ctx, engine::Point3 from, engine::Point3 to) {
    const engine::Point3 c = ctx.state.dblRotationCentre + (from - to);
    if (c.finite()) setRotationCentre(ctx, c);
}

void Navigator::mouseDown(AppContext& ctx, int button, int shift, double x, double y) {
    auto& s = ctx.state;
    lastX_ = x;
    lastY_ = y;
    const engine::Point3 dir = ctx.engine.camera_get_direction(s.F_h_lngCamera);
    plane_.n = dir;
    plane_.d = -engine::dot(s.dblRotationCentre, dir);
    pressOnPlane_ = onPlane(ctx, x, y, press3D_);
    // With a tool armed, only Ctrl lets the view move, so the tool's clicks stay put.
    if (s.toolArmed()) s.bolAllowNavigate = shift == 2;
    pointerBefore_ = ctx.ui.pointer();
    navigated_ = false;
}

void Navigator::mouseMove(AppContext& ctx, int button, int shift, double x, double y) {
    auto& s = ctx.state;
    if (!s.bolAllowNavigate || shift == 4 || shift == 5) return;
    const double dx = x - lastX_, dy = y - lastY_;
    if (button == 1) {
        if (shift != 1) ctx.pointer(5);
        s.dblCamAzimuth -= dx * kMouseRotate;
        if (dy != 0) s.dblCamElevation = elevationAfter(s.dblCamElevation, -dy * kMouseRotate);
    } else if (button == 2) {
        if (shift != 1) ctx.pointer(2);
        engine::Point3 now;
        if (pressOnPlane_ && onPlane(ctx, x, y, now)) panBy(ctx, press3D_, now);
    } else if (button == 4 || button == 3) {
        ctx.pointer(7);
        p_subZoom(ctx, dy, false);
    } else {
        return;
    }
    lastX_ = x;
    lastY_ = y;
    navigated_ = true;
    p_subMainLoop(ctx, true);
}

void Navigator::mouseUp(AppContext& ctx, int, int, double, double) {
    if (navigated_) ctx.pointer(pointerBefore_);
    navigated_ = false;
}

void Navigator::wheel(AppContext& ctx, int delta, double, double) {
    if (delta == 0 || ctx.ui.pointer() == 11) return;
    const int notches = std::max(1, std::abs(delta) / 120);
    for (int i = 0; i < notches; ++i)
        p_subZoom(ctx, delta > 0 ? -10.0 * kWheelLines : 10.0 * kWheelLines, false);
    p_subMainLoop(ctx, true);
}

void Navigator::keyDown(AppContext& ctx, int key, int shift) {
    auto& s = ctx.state;
    // A modifier pressed on its own is the start of a combination, not a key of the table.
    if (key == kShiftKey || key == kCtrlKey || key == kAltKey) return;
    const bool arrow = key >= kLeft && key <= kDown;
    const int ax = key == kLeft ? 1 : key == kRight ? -1 : 0;
    const int ay = key == kUp ? 1 : key == kDown ? -1 : 0;

    if (arrow && shift == 1) {
        const float step = ctx.settings.sngRotationDegrees;
        stopAutoRotation(ctx);
        s.dblCamAzimuth += ax * step * kKeyDegree;
        if (ay != 0) s.dblCamElevation = elevationAfter(s.dblCamElevation, ay * step * kKeyDegree);
        ctx.comment("Rotate scene in " + singleText(step) + "m steps");
        p_subMainLoop(ctx, true);
        return;
    }
    if (arrow && shift == 2) {
        const int step = ctx.settings.lngPanAmount;
        const double cx = ctx.engine.window_width() / 2.0, cy = ctx.engine.window_height() / 2.0;
        const engine::Point3 dir = ctx.engine.camera_get_direction(s.F_h_lngCamera);
        plane_.n = dir;
        plane_.d = -engine::dot(s.dblRotationCentre, dir);
        // As a drag from the window centre by the step towards the arrow.
        engine::Point3 from, to;
        if (onPlane(ctx, cx, cy, from) && onPlane(ctx, cx - ax * step, cy - ay * step, to))
            panBy(ctx, from, to);
        ctx.comment("Pan scene in " + std::to_string(step) + "m steps");
        p_subMainLoop(ctx, true);
        return;
    }
    if (arrow && shift == 0) {
        cmdRotatePicture(ctx, ax, ay);
        ctx.comment("Rotate the scene continuously");
        return;
    }
    if ((key == kPageUp || key == kPageDown) && shift == 0) {
        const int step = ctx.settings.lngZoomAmount;
        s.dblCamDistance += key == kPageUp ? step : -step;
        holdDistance(s);
        ctx.comment("Zoom scene with " + std::to_string(step) + " factor");
        p_subMainLoop(ctx, true);
        return;
    }
    if (shift == 0) {
        if (key >= kF1 && key < kF1 + 5) {
            static const char* kSnap1[] = {"Polygon", "Tube", "Line", "Entity", "Group"};
            mainForm(ctx).setText("cboSnapSelect1", kSnap1[key - kF1]);
            return;
        }
        if (key >= '1' && key <= '5') {
            static const char* kSnap2[] = {"Surface", "Point", "Edge", "1/2 Edge", "Centre"};
            mainForm(ctx).setText("cboSnapSelect2", kSnap2[key - '1']);
            return;
        }
        switch (key) {
            case 'M':
                ctx.comment("Open Menu to open or add files");
                runCommand(ctx, kFileMenuCommand);
                return;
            case 'C':
                ctx.comment("Copy to memory clipboard");
                if (const Procedure* p = ctx.procedures.find("p_subCopyToClipboard")) {
                    std::vector<Value> none;
                    if (p->params.empty()) p->body(ctx, none);
                }
                ctx.ui.beep();
                return;
            case 'I':
                ctx.comment("Initialize the scene");
                p_subInitializeWorld(ctx, false);
                return;
            case 'S':
            case 'F':
            case 'J':
            case 'G':
            case 'H':
                ctx.comment(std::string(lightKeyComment(static_cast<char>(key))));
                applyLightMode(ctx, static_cast<char>(key));
                p_subMainLoop(ctx, false);
                return;
            case kSpace:
            case kEscape:
            case kBackspace:
                stopAutoRotation(ctx);
                ctx.comment("Reset the scene");
                p_subResetAndCleanup(ctx);
                p_subMainLoop(ctx, true);
                return;
            case 'B':
            case 'W':
                ctx.comment(key == 'B' ? "Change background colour to black"
                                       : "Change background colour to white");
                ctx.engine.engine_set_background_color(key == 'B' ? engine::Rgb{0, 0, 0}
                                                                  : engine::Rgb{255, 255, 255});
                p_subMainLoop(ctx, false);
                return;
            case 'R':
                ctx.comment("Select a new rotation point");
                runCommand(ctx, "cmdNewRotationPoint");
                return;
            case 'L':
                // The key's line stands over the tool's own prompt.
                runCommand(ctx, "cmd3DLength");
                ctx.comment("Measure tool");
                return;
            case 'U':
                ctx.comment("Make polygons visible");
                runCommand(ctx, "cmdUnhide");
                return;
            case 'Y':
                ctx.comment("Make polygons opaque");
                runCommand(ctx, "cmdPartialUnhideGroup");
                return;
            case 'T':
                runCommand(ctx, "cmdPartialHideGroup");
                return;
            case 'Z':
                runCommand(ctx, "cmdPointMove");
                return;
            case 'P':
                ctx.comment("Screenshot opened in Scalix");
                runCommand(ctx, kScreenshotCommand);
                return;
            case 'Q':
                Form_QueryUnload(ctx);
                return;
            default:
                break;
        }
    }
    if (shift == 2) {
        const char* command = nullptr;
        switch (key) {
            case 'B':
                command = "mnuBackup";
                break;
            case 'F':
                command = "mnuFindFromAllText";
                break;
            case 'G':
                command = "mnuFindFromVisibleText";
                break;
            case 'H':
                command = "mnuFindFromHiddenText";
                break;
            case 'I':
                command = "mnuImportDXF";
                break;
            default:
                break;
        }
        if (command) {
            runCommand(ctx, command);
            return;
        }
    }
    stopAutoRotation(ctx);
    s.timSliderEnabled = false;
    ctx.comment("Stop the continuous rotation of the scene");
}

// ---- wiring ------------------------------------------------------------------------

void installNavigation(AppContext& ctx) {
    if (!ctx.coordinateLimitCheck) ctx.coordinateLimitCheck = p_subCoordinateLimitCheck;
    // Once a context: a second navigator would move the camera twice.
    if (ctx.commands.find("cmdRotatePictureStop")) return;
    auto nav = std::make_shared<Navigator>();
    auto& in = ctx.input;
    in.onMouseDown = [nav, old = in.onMouseDown](AppContext& c, int b, int sh, double x, double y) {
        if (old) old(c, b, sh, x, y);
        nav->mouseDown(c, b, sh, x, y);
    };
    in.onMouseMove = [nav, old = in.onMouseMove](AppContext& c, int b, int sh, double x, double y) {
        if (old) old(c, b, sh, x, y);
        nav->mouseMove(c, b, sh, x, y);
    };
    in.onMouseUp = [nav, old = in.onMouseUp](AppContext& c, int b, int sh, double x, double y) {
        if (old) old(c, b, sh, x, y);
        nav->mouseUp(c, b, sh, x, y);
    };
    in.onWheel = [nav, old = in.onWheel](AppContext& c, int delta, double x, double y) {
        if (old) old(c, delta, x, y);
        nav->wheel(c, delta, x, y);
    };
    in.onKeyDown = [nav, old = in.onKeyDown](AppContext& c, int key, int sh) {
        if (old) old(c, key, sh);
        nav->keyDown(c, key, sh);
    };

    forms::Form& f = mainForm(ctx);
    AppContext* c = &ctx;
    f.at("cboZoomRate").onChange = [c] { cboZoomRate_Change(*c); };
    f.at("cboCullingDepth").onChange = [c] { cboCullingDepth_Change(*c); };
    f.at("sliViewCutOff").onChange = [c] { sliViewCutOff_Change(*c); };
    f.at("lstPersOrtho").onChange = [c] { lstPersOrtho_Click(*c); };

    auto cmd = [&](const char* name, const char* caption, std::function<void(AppContext&)> h) {
        Command k;
        k.name = name;
        k.caption = caption;
        k.handler = std::move(h);
        ctx.commands.add(std::move(k));
    };
    cmd("cmdRotatePictureLeft", "Rotate left", [](AppContext& a) { cmdRotatePicture(a, 1, 0); });
    cmd("cmdRotatePictureRight", "Rotate right", [](AppContext& a) { cmdRotatePicture(a, -1, 0); });
    cmd("cmdRotatePictureUp", "Rotate up", [](AppContext& a) { cmdRotatePicture(a, 0, 1); });
    cmd("cmdRotatePictureDown", "Rotate down", [](AppContext& a) { cmdRotatePicture(a, 0, -1); });
    cmd("cmdRotatePictureStop", "Stop rotating", [](AppContext& a) { cmdRotatePictureStop(a); });
    cmd("cmdInitializeWorld", "Initialize", [](AppContext& a) { p_subInitializeWorld(a, true); });

    Procedure zoom;
    zoom.name = "p_subZoom";
    zoom.params = {ParamKind::Number, ParamKind::Bool};
    zoom.body = [](AppContext& a, std::vector<Value>& v) {
        p_subZoom(a, v.at(0).number(), v.at(1).boolean());
        return Value();
    };
    ctx.procedures.add(std::move(zoom));
    Procedure init;
    init.name = "p_subInitializeWorld";
    init.params = {ParamKind::Bool};
    init.body = [](AppContext& a, std::vector<Value>& v) {
        p_subInitializeWorld(a, v.at(0).boolean());
        return Value();
    };
    ctx.procedures.add(std::move(init));
}

}  // namespace core
