#include "persistence/SettingsFile.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>

#include "core/AppContext.h"
#include "forms/Frm33Settings.h"

namespace persistence {

namespace {

constexpr int kNumberLines = 13;
constexpr int kTextLines = 8;
constexpr int kStatusBarLine = kNumberLines + kTextLines + 1;  // 22

std::string floatText(float v) {
    if (v == 0 || !std::isfinite(v)) return "0";
    char buf[32];
    auto res = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, res.ptr);
}

// A text of the dialog on one line of the file.
std::string oneLine(std::string s) {
    for (char& c : s)
        if (c == '\r' || c == '\n') c = ' ';
    return s;
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') continue;
        lines.push_back(text.substr(start, i - start));
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < text.size()) lines.push_back(text.substr(start));
    return lines;
}

// The strict reading: the whole line is one number, blanks around it allowed.
bool strictNumber(std::string_view s, double& out) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    if (!s.empty() && s.front() == '+') s.remove_prefix(1);
    if (s.empty()) return false;
    auto res = std::from_chars(s.data(), s.data() + s.size(), out);
    return res.ec == std::errc() && res.ptr == s.data() + s.size() && std::isfinite(out);
}

bool strictWhole(std::string_view s, std::int64_t lo, std::int64_t hi, std::int64_t& out) {
    double d = 0;
    if (!strictNumber(s, d) || d != std::floor(d) || d < static_cast<double>(lo) ||
        d > static_cast<double>(hi))
        return false;
    out = static_cast<std::int64_t>(d);
    return true;
}

forms::Frm33Settings& settingsForm(core::AppContext& ctx) {
    auto* f = dynamic_cast<forms::Frm33Settings*>(ctx.forms.find(forms::Frm33Settings::kName));
    if (!f) {
        ctx.forms.add(std::make_unique<forms::Frm33Settings>(&ctx));
        f = dynamic_cast<forms::Frm33Settings*>(ctx.forms.find(forms::Frm33Settings::kName));
    }
    return *f;
}

ui::FileRequest settingsRequest(core::AppContext& ctx, const char* title) {
    ui::FileRequest req;
    req.title = title;
    req.filetype = kSettingsFileType;
    req.filter = kSettingsFilter;
    req.initialDir = ctx.strProgramFolder;
    req.fileName = kStartupSettingsFile;
    return req;
}

}  // namespace

std::string settingsFileText(const SettingsFileContent& c) {
    const core::Settings& s = c.settings;
    const auto num = forms::Frm33Settings::numberText;
    std::vector<std::string> lines = {
        floatText(s.sngRotationDegrees),
        std::to_string(s.lngZoomAmount),
        std::to_string(s.lngPanAmount),
        num(s.dblLineThickness),
        num(s.dblSphereLatitudeBands),
        num(s.dblSphereLongitudeBands),
        std::to_string(s.intSphereMarkerKind),
        num(s.dblSphereScale),
        num(s.dblSphereRadius),
        std::to_string(s.intFormWidthStep),
        std::to_string(s.intFormHeightStep),
        std::to_string(c.formWidth),
        std::to_string(c.formHeight),
    };
    for (std::size_t i = 0; i < c.controlTexts.size() && i < kTextLines; ++i)
        lines.push_back(oneLine(c.controlTexts[i]));
    if (c.controlTexts.size() >= kTextLines && c.statusBarToggle)
        lines.push_back(std::to_string(*c.statusBarToggle));
    std::string out;
    for (const auto& l : lines) out.append(l).append("\r\n");
    return out;
}

std::variant<SettingsFileContent, SettingsFileError> parseSettingsFile(std::string_view text) {
    const auto lines = splitLines(text);
    SettingsFileContent c;
    core::Settings& s = c.settings;
    for (int n = 1; n <= kNumberLines; ++n) {
        if (static_cast<int>(lines.size()) < n) return SettingsFileError{n, "", true};
        std::string_view line = lines[n - 1];
        double d = 0;
        std::int64_t i = 0;
        bool ok = true;
        constexpr std::int64_t kShortLo = std::numeric_limits<short>::min();
        constexpr std::int64_t kShortHi = std::numeric_limits<short>::max();
        constexpr std::int64_t kLongLo = std::numeric_limits<std::int32_t>::min();
        constexpr std::int64_t kLongHi = std::numeric_limits<std::int32_t>::max();
        switch (n) {
            case 1:
                ok = strictNumber(line, d) && std::fabs(d) <= FLT_MAX;
                s.sngRotationDegrees = static_cast<float>(d);
                break;
            case 2:
                ok = strictWhole(line, kLongLo, kLongHi, i);
                s.lngZoomAmount = static_cast<int>(i);
                break;
            case 3:
                ok = strictWhole(line, kLongLo, kLongHi, i);
                s.lngPanAmount = static_cast<int>(i);
                break;
            case 4:
                ok = strictNumber(line, s.dblLineThickness);
                break;
            case 5:
                ok = strictNumber(line, s.dblSphereLatitudeBands);
                break;
            case 6:
                ok = strictNumber(line, s.dblSphereLongitudeBands);
                break;
            case 7:
                ok = strictWhole(line, kShortLo, kShortHi, i);
                s.intSphereMarkerKind = static_cast<short>(i);
                break;
            case 8:
                ok = strictNumber(line, s.dblSphereScale);
                break;
            case 9:
                ok = strictNumber(line, s.dblSphereRadius);
                break;
            case 10:
                ok = strictWhole(line, kShortLo, kShortHi, i);
                s.intFormWidthStep = static_cast<short>(i);
                break;
            case 11:
                ok = strictWhole(line, kShortLo, kShortHi, i);
                s.intFormHeightStep = static_cast<short>(i);
                break;
            case 12:
                ok = strictWhole(line, kLongLo, kLongHi, i);
                c.formWidth = static_cast<int>(i);
                break;
            case 13:
                ok = strictWhole(line, kLongLo, kLongHi, i);
                c.formHeight = static_cast<int>(i);
                break;
        }
        if (!ok) return SettingsFileError{n, std::string(line), false};
    }
    for (int n = kNumberLines + 1; n < kStatusBarLine && n <= static_cast<int>(lines.size()); ++n)
        c.controlTexts.emplace_back(lines[n - 1]);
    if (static_cast<int>(lines.size()) >= kStatusBarLine) {
        std::int64_t v = 0;
        std::string_view line = lines[kStatusBarLine - 1];
        if (!strictWhole(line, 0, 2, v))
            return SettingsFileError{kStatusBarLine, std::string(line), false};
        c.statusBarToggle = static_cast<int>(v);
    }
    return c;
}

std::string settingsErrorMessage(const std::string& path, const SettingsFileError& e) {
    std::string head =
        "The settings file \"" + path + "\" could not be read: line " + std::to_string(e.line);
    std::string why =
        e.missing ? " is missing" : " holds \"" + e.text + "\", which is not a valid value";
    return head + why + ". The settings stay as they were.";
}

SettingsFileContent currentSettingsContent(core::AppContext& ctx) {
    SettingsFileContent c;
    c.settings = ctx.settings;
    c.formWidth = ctx.state.formWidth;
    c.formHeight = ctx.state.formHeight;
    auto& form = settingsForm(ctx);
    form.ensureLoaded();
    for (const char* name : forms::Frm33Settings::kFileControls)
        c.controlTexts.push_back(form.text(name));
    c.statusBarToggle = form.checkValue("chkStatusbarToggle");
    return c;
}

void applySettingsContent(core::AppContext& ctx, const SettingsFileContent& c) {
    core::Settings next = c.settings;
    next.statusBarVisible =
        c.statusBarToggle ? *c.statusBarToggle == 1 : ctx.settings.statusBarVisible;
    ctx.settings = next;

    auto& form = settingsForm(ctx);
    form.ensureLoaded();
    // The numbers rule; the texts only say what they mean.
    form.showSettings(next);
    for (std::size_t i = 0; i < c.controlTexts.size() && i < kTextLines; ++i)
        form.putText(forms::Frm33Settings::kFileControls[i], c.controlTexts[i]);
    if (c.statusBarToggle) form.putCheck("chkStatusbarToggle", *c.statusBarToggle);

    forms::applySpacing(ctx);
    forms::applyMainFormSize(ctx, c.formWidth, c.formHeight);
}

bool saveSettingsFile(core::AppContext& ctx, const std::string& path) {
    const std::string text = settingsFileText(currentSettingsContent(ctx));
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (out) out << text;
    if (out) out.flush();
    if (!out) {
        ctx.ui.msgBox("The settings file \"" + path + "\" could not be written.", ui::Buttons::OK,
                      kSettingsErrorTitle);
        return false;
    }
    return true;
}

bool loadSettingsFile(core::AppContext& ctx, const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream ss;
    if (in) ss << in.rdbuf();
    if (!in) {
        ctx.ui.msgBox("The settings file \"" + path + "\" could not be opened.", ui::Buttons::OK,
                      kSettingsErrorTitle);
        return false;
    }
    auto parsed = parseSettingsFile(ss.str());
    if (auto* e = std::get_if<SettingsFileError>(&parsed)) {
        ctx.ui.msgBox(settingsErrorMessage(path, *e), ui::Buttons::OK, kSettingsErrorTitle);
        return false;
    }
    applySettingsContent(ctx, std::get<SettingsFileContent>(parsed));
    return true;
}

void cmdSaveSettings(core::AppContext& ctx) {
    auto path = ctx.ui.saveFile(settingsRequest(ctx, "Save settings"));
    if (!path || path->empty()) return;
    std::string p = *path;
    if (std::filesystem::path(p).extension().empty()) p += ".SET";
    saveSettingsFile(ctx, p);
}

void cmdLoadSettings(core::AppContext& ctx) {
    auto path = ctx.ui.openFile(settingsRequest(ctx, "Load settings"));
    if (!path || path->empty()) return;
    if (!loadSettingsFile(ctx, *path)) return;
    auto& loaded = ctx.state.strLoadedFiles;
    if (!loaded.empty()) loaded += "\r\n";
    loaded += *path + " opened";
    ctx.comment(*path + " opened");
}

bool loadStartupSettings(core::AppContext& ctx) {
    if (ctx.strProgramFolder.empty()) return false;
    std::filesystem::path p = std::filesystem::path(ctx.strProgramFolder) / kStartupSettingsFile;
    std::error_code ec;
    if (!std::filesystem::is_regular_file(p, ec)) return false;
    return loadSettingsFile(ctx, p.string());
}

void registerSettings(core::AppContext& ctx) {
    if (ctx.forms.find(forms::Frm33Settings::kName)) return;
    auto& form = settingsForm(ctx);
    form.saveSettings = [](core::AppContext& c) { cmdSaveSettings(c); };
    form.loadSettings = [](core::AppContext& c) { cmdLoadSettings(c); };

    core::Command show;
    show.name = "mnuSettings";
    show.caption = "Settings...";
    show.menuPath = "Tools";
    show.handler = [](core::AppContext& c) {
        auto& f = settingsForm(c);
        f.ensureLoaded();
        c.ui.showModal(f);
    };
    ctx.commands.add(std::move(show));
}

}  // namespace persistence
