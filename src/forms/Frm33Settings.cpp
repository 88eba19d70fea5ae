#include "forms/Frm33Settings.h"

#include <charconv>
#include <cmath>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/Settings.h"

namespace forms {

namespace {

constexpr int kTwipsPerPixel = 15;

struct ResolutionRow {
    const char* text;
    double stacks, slices;
    short kind;
};
// "Cube Marker" keeps the stacks and slices and only changes the kind.
constexpr ResolutionRow kResolutions[] = {
    {"High Resolution", 8, 16, 0}, {"Medium Resolution", 8, 8, 0}, {"Low Resolution", 4, 8, 0},
    {"Quick Marker", 2, 4, 0},     {"Cube Marker", 0, 0, -1},
};

struct ScaleRow {
    const char* text;
    double scale;
};
constexpr ScaleRow kScales[] = {
    {"Fixed Size", 0.0},   {"Normal x 0.5", 2.0}, {"Normal (Default)", 4.0},
    {"Normal x 1.5", 6.0}, {"Normal x 2.0", 8.0},
};

struct BorderRow {
    const char* text;
    short widthStep;
};
constexpr BorderRow kBorders[] = {
    {"Windows Classic", 1220}, {"Windows XP1", 1300}, {"Windows XP2", 1350},
    {"Windows XP3", 1400},     {"Windows XP4", 1450}, {"Windows XP5", 1500},
    {"Windows Vista", 1360},
};
constexpr const char* kVista = "Windows Vista";

short heightStepFor(const std::string& border) { return border == kVista ? 580 : 480; }

// A number typed in full, blanks around it allowed; nothing else reads.
bool strictNumber(const std::string& text, double& out) {
    const char* b = text.data();
    const char* e = b + text.size();
    while (b != e && *b == ' ') ++b;
    while (e != b && e[-1] == ' ') --e;
    if (b != e && *b == '+') ++b;
    if (b == e) return false;
    auto res = std::from_chars(b, e, out);
    return res.ec == std::errc() && res.ptr == e && std::isfinite(out);
}

}  // namespace

Frm33Settings::Frm33Settings(core::AppContext* ctx) : Form(kName, "Settings"), ctx_(ctx) {
    auto combo = [this](const char* name, const char* caption, std::vector<std::string> items,
                        std::function<void()> handler) {
        Control& c = add(ControlKind::ComboBox, name, caption);
        c.items = std::move(items);
        c.onChange = std::move(handler);
    };
    combo("cboRotationDegrees", "Rotation step (degrees)",
          {"1", "2", "5", "10", "15", "20", "30", "45", "90"}, [this] { rotationChanged(); });
    combo("cboZoomAmount", "Zoom step (1 to 9)", {"1", "2", "3", "4", "5", "6", "7", "8", "9"},
          [this] {
              wholeStepChanged("cboZoomAmount", kZoomMessage, 200,
                               ctx_ ? ctx_->settings.lngZoomAmount : scratch_);
          });
    combo("cboPanAmount", "Pan step (1 to 9)", {"1", "2", "3", "4", "5", "6", "7", "8", "9"},
          [this] {
              wholeStepChanged("cboPanAmount", kPanMessage, 2,
                               ctx_ ? ctx_->settings.lngPanAmount : scratch_);
          });
    combo("cboLineThickness", "Line thickness (m)", {"0.5", "1", "2", "5", "10"},
          [this] { lineThicknessChanged(); });
    std::vector<std::string> items;
    for (const auto& r : kResolutions) items.emplace_back(r.text);
    combo("cboSphereResolution", "Point marker", items, [this] { resolutionChanged(); });
    items.clear();
    for (const auto& r : kScales) items.emplace_back(r.text);
    combo("cboSphereScale", "Sphere size", items, [this] { scaleChanged(); });
    items.clear();
    for (const auto& r : kBorders) items.emplace_back(r.text);
    combo("cboBorderSpacing", "Window borders", items, [this] { borderChanged(); });
    combo("cboPictureboxSize", "Render window size", {"Default", "640 x 480", "800 x 600"},
          [this] { pictureSizeChanged(); });
    Control& chk = add(ControlKind::CheckBox, "chkStatusbarToggle", "Show the status bar");
    chk.onChange = [this] { statusBarChanged(); };

    add(ControlKind::CommandButton, "cmdDefaultSettings", "Default settings").onChange = [this] {
        defaults();
    };
    add(ControlKind::CommandButton, "cmdSaveSettings", "Save...").onChange = [this] {
        if (ctx_ && saveSettings) saveSettings(*ctx_);
    };
    add(ControlKind::CommandButton, "cmdLoadSettings", "Load...").onChange = [this] {
        if (ctx_ && loadSettings) loadSettings(*ctx_);
    };
    add(ControlKind::CommandButton, "cmdAcceptSettings", "OK").onChange = [this] { hide(); };

    showSettings(core::Settings{});
    putText("cboPictureboxSize", "Default");
    putCheck("chkStatusbarToggle", 1);
}

// ---- texts of the settings --------------------------------------------------------

std::string Frm33Settings::numberText(double v) {
    if (v == 0 || !std::isfinite(v)) return "0";
    char buf[40];
    auto res = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, res.ptr);
}

std::string Frm33Settings::resolutionText(const core::Settings& s) {
    if (s.intSphereMarkerKind == -1) return "Cube Marker";
    for (const auto& r : kResolutions)
        if (r.kind == 0 && r.stacks == s.dblSphereLatitudeBands &&
            r.slices == s.dblSphereLongitudeBands)
            return r.text;
    return {};
}

std::string Frm33Settings::scaleText(double dblSphereScale) {
    for (const auto& r : kScales)
        if (r.scale == dblSphereScale) return r.text;
    return {};
}

std::string Frm33Settings::borderText(short widthStep, short heightStep) {
    for (const auto& r : kBorders)
        if (r.widthStep == widthStep && heightStepFor(r.text) == heightStep) return r.text;
    return {};
}

void Frm33Settings::showSettings(const core::Settings& s) {
    putText("cboRotationDegrees", numberText(static_cast<double>(s.sngRotationDegrees)));
    putText("cboZoomAmount", numberText(s.lngZoomAmount / 200.0));
    putText("cboPanAmount", numberText(s.lngPanAmount / 2.0));
    putText("cboLineThickness", numberText(s.dblLineThickness / 10.0));
    putText("cboSphereResolution", resolutionText(s));
    putText("cboSphereScale", scaleText(s.dblSphereScale));
    putText("cboBorderSpacing", borderText(s.intFormWidthStep, s.intFormHeightStep));
    putCheck("chkStatusbarToggle", s.statusBarVisible ? 1 : 0);
}

void Frm33Settings::putText(const std::string& control, const std::string& text) {
    Control& c = at(control);
    c.text = text;
    accepted_[control] = text;
}

void Frm33Settings::putCheck(const std::string& control, int value) { at(control).value = value; }

void Frm33Settings::refuse(const std::string& control, const char* message) {
    if (message && ctx_) ctx_->ui.msgBox(message, ui::Buttons::OK, kInvalidTitle);
    at(control).text = accepted_[control];
}

// ---- handlers ---------------------------------------------------------------------

void Frm33Settings::rotationChanged() {
    double v = 0;
    if (!strictNumber(text("cboRotationDegrees"), v) || v <= 0 || v >= 360)
        return refuse("cboRotationDegrees", kRotationMessage);
    accepted_["cboRotationDegrees"] = text("cboRotationDegrees");
    if (ctx_) ctx_->settings.sngRotationDegrees = static_cast<float>(v);
}

void Frm33Settings::wholeStepChanged(const char* control, const char* message, int factor,
                                     int& setting) {
    double v = 0;
    if (!strictNumber(text(control), v) || v != std::floor(v) || v < 1 || v > 9)
        return refuse(control, message);
    accepted_[control] = text(control);
    setting = static_cast<int>(v) * factor;
}

void Frm33Settings::lineThicknessChanged() {
    double v = 0;
    if (!strictNumber(text("cboLineThickness"), v) || v <= 0)
        return refuse("cboLineThickness", kLineThicknessMessage);
    accepted_["cboLineThickness"] = text("cboLineThickness");
    if (ctx_) ctx_->settings.dblLineThickness = v * 10.0;
}

void Frm33Settings::resolutionChanged() {
    const std::string& t = text("cboSphereResolution");
    for (const auto& r : kResolutions) {
        if (t != r.text) continue;
        accepted_["cboSphereResolution"] = t;
        if (!ctx_) return;
        auto& s = ctx_->settings;
        if (r.kind == 0) {
            s.dblSphereLatitudeBands = r.stacks;
            s.dblSphereLongitudeBands = r.slices;
        }
        s.intSphereMarkerKind = r.kind;
        return;
    }
    refuse("cboSphereResolution", nullptr);
}

void Frm33Settings::scaleChanged() {
    const std::string& t = text("cboSphereScale");
    for (const auto& r : kScales) {
        if (t != r.text) continue;
        accepted_["cboSphereScale"] = t;
        if (ctx_) ctx_->settings.dblSphereScale = r.scale;
        return;
    }
    refuse("cboSphereScale", nullptr);
}

void Frm33Settings::borderChanged() {
    const std::string& t = text("cboBorderSpacing");
    for (const auto& r : kBorders) {
        if (t != r.text) continue;
        accepted_["cboBorderSpacing"] = t;
        if (!ctx_) return;
        ctx_->settings.intFormWidthStep = r.widthStep;
        ctx_->settings.intFormHeightStep = heightStepFor(t);
        applySpacing(*ctx_);
        return;
    }
    refuse("cboBorderSpacing", nullptr);
}

void Frm33Settings::pictureSizeChanged() {
    const std::string& t = text("cboPictureboxSize");
    if (t != "Default" && t != "640 x 480" && t != "800 x 600")
        return refuse("cboPictureboxSize", nullptr);
    accepted_["cboPictureboxSize"] = t;
    if (!ctx_) return;
    // "Default" leaves the window as the user sized it.
    if (t == "640 x 480") applyRenderWindowSize(*ctx_, 640, 480);
    if (t == "800 x 600") applyRenderWindowSize(*ctx_, 800, 600);
}

void Frm33Settings::statusBarChanged() {
    if (!ctx_) return;
    ctx_->settings.statusBarVisible = checkValue("chkStatusbarToggle") == 1;
    if (ctx_->windowSettingsChanged) ctx_->windowSettingsChanged(*ctx_);
}

void Frm33Settings::defaults() {
    const core::Settings fresh;
    showSettings(fresh);
    putText("cboPictureboxSize", "Default");
    if (!ctx_) return;
    ctx_->settings = fresh;
    applySpacing(*ctx_);
}

// ---- the main form ----------------------------------------------------------------

void applySpacing(core::AppContext& ctx) {
    // The first constant is the vertical margin of the layout, the second the
    // horizontal one (1300 and 480 by default).
    ctx.state.intResizeY = ctx.settings.intFormWidthStep;
    ctx.state.intResizeX = ctx.settings.intFormHeightStep;
    if (ctx.state.formWidth > 0 && ctx.state.formHeight > 0) core::Form_Resize(ctx);
    if (ctx.windowSettingsChanged) ctx.windowSettingsChanged(ctx);
}

void applyMainFormSize(core::AppContext& ctx, int formWidth, int formHeight) {
    if (formWidth <= 0 || formHeight <= 0) return;
    ctx.state.formWidth = formWidth;
    ctx.state.formHeight = formHeight;
    core::Form_Resize(ctx);
    if (ctx.windowSettingsChanged) ctx.windowSettingsChanged(ctx);
}

void applyRenderWindowSize(core::AppContext& ctx, int widthPixels, int heightPixels) {
    const auto& s = ctx.state;
    applyMainFormSize(ctx, widthPixels * kTwipsPerPixel + s.intResizeX + 50,
                      heightPixels * kTwipsPerPixel + s.intResizeY + 690);
}

}  // namespace forms
