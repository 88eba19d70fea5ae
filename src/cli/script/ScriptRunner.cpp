#include "cli/script/ScriptRunner.h"

#include <cctype>
#include <cstdio>
#include <fstream>
#include <ostream>

#include "cli/script/SceneDump.h"
#include "cli/script/ScriptArgs.h"
#include "core/AppContext.h"
#include "ui/JsonText.h"
#include "ui/ScriptedUi.h"

namespace script {

namespace {

std::string lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// "FORM.CONTROL" into its two names.
std::pair<std::string, std::string> splitDotted(const std::string& s, const char* usage) {
    auto dot = s.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == s.size())
        badArgs(std::string("usage: ") + usage);
    return {s.substr(0, dot), s.substr(dot + 1)};
}

}  // namespace

ScriptRunner::ScriptRunner(core::AppContext& ctx, ui::ScriptedUi& ui, std::filesystem::path baseDir)
    : ctx_(ctx), ui_(ui), baseDir_(std::move(baseDir)) {}

std::optional<std::string> ScriptRunner::variable(const std::string& name) const {
    auto it = vars_.find(name);
    if (it == vars_.end()) return std::nullopt;
    return it->second;
}

std::filesystem::path ScriptRunner::resolve(const std::string& path) const {
    std::filesystem::path p(path);
    return p.is_absolute() ? p : baseDir_ / p;
}

std::string ScriptRunner::takeRedirect(Args& args) const {
    if (args.size() >= 2 && isOption(args[args.size() - 2], ">")) {
        std::string var = args.back().text;
        if (!isVariableName(var)) badArgs("'" + var + "' is not a variable name");
        args.resize(args.size() - 2);
        return var;
    }
    return {};
}

int ScriptRunner::run(const std::string& text, const std::string& scriptName, std::ostream& err) {
    auto where = [&](int line) { return scriptName + ":" + std::to_string(line) + ": "; };
    auto lookup = [this](const std::string& name) { return variable(name); };
    std::size_t pos = 0;
    line_ = 0;
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) pos = 3;  // a byte-order mark
    while (pos <= text.size()) {
        std::size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(pos, end - pos);
        pos = end + 1;
        ++line_;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::size_t first = line.find_first_not_of(" \t");
        if (first == std::string::npos || line[first] == '#') {
            if (end == text.size()) break;
            continue;
        }
        try {
            execute(tokenize(line, lookup));
            // A procedure may have caught the error; the run still stops on it.
            if (ui_.failure()) throw ui::ScriptError(*ui_.failure());
        } catch (const SyntaxError& e) {
            err << where(line_) << e.what() << '\n';
            return 2;
        } catch (const ui::ScriptError& e) {
            err << where(line_) << (ui_.failure() ? *ui_.failure() : std::string(e.what())) << '\n';
            return 2;
        } catch (const RunError& e) {
            err << where(line_) << e.what() << '\n';
            return 1;
        } catch (const std::exception& e) {
            err << where(line_) << "failed: " << e.what() << '\n';
            return 1;
        } catch (...) {
            err << where(line_) << "failed\n";
            return 1;
        }
        if (end == text.size()) break;
    }
    auto unused = ui_.unusedAnswers();
    if (!unused.empty()) {
        for (const auto& u : unused) err << where(u.line) << u.what << " was never used\n";
        return 2;
    }
    return 0;
}

void ScriptRunner::execute(const Args& tokens) {
    if (tokens.empty()) return;
    const std::string& cmd = tokens[0].text;
    Args a(tokens.begin() + 1, tokens.end());
    if (tokens[0].quoted) badArgs("unknown command '" + cmd + "'");
    if (cmd == "run") return cmdRun(a);
    if (cmd == "answer") return cmdAnswer(a);
    if (cmd == "set") return cmdSet(a);
    if (cmd == "get") return cmdGet(a);
    if (cmd == "key") return cmdKey(a);
    if (cmd == "mouse") return cmdMouse(a);
    if (cmd == "wheel") return cmdWheel(a);
    if (cmd == "window") return cmdWindow(a);
    if (cmd == "clock") return cmdClock(a);
    if (cmd == "call") return cmdCall(a);
    if (cmd == "polygon") return cmdPolygon(a);
    if (cmd == "open") return cmdWorldFile(a, false);
    if (cmd == "save") return cmdWorldFile(a, true);
    if (cmd == "dump") return cmdDump(a);
    if (cmd == "echo") return cmdEcho(a);
    badArgs("unknown command '" + cmd + "'");
}

void ScriptRunner::cmdRun(const Args& a) {
    expectCount(a, 1, "run NAME");
    const std::string& name = a[0].text;
    bool ambiguous = false;
    const core::Command* c = ctx_.commands.find(name, &ambiguous);
    if (ambiguous) badArgs("'" + name + "' is a button of several forms: write FORM." + name);
    if (c) {
        if (!c->enabled) badArgs("'" + name + "' is disabled");
        auto handler = c->handler;  // the registry may change while it runs
        if (handler) handler(ctx_);
        return;
    }
    // A button that a form declares without a registered command.
    std::string formName, bare = name;
    if (auto dot = name.find('.'); dot != std::string::npos) {
        formName = name.substr(0, dot);
        bare = name.substr(dot + 1);
    }
    forms::Form* form = nullptr;
    int found = 0;
    for (forms::Form* f : ctx_.forms.all()) {
        if (!formName.empty() && f->name() != formName) continue;
        const forms::Control* ctl = f->find(bare);
        if (ctl && ctl->kind == forms::ControlKind::CommandButton) {
            form = f;
            ++found;
        }
    }
    if (found > 1) badArgs("'" + name + "' is a button of several forms: write FORM." + name);
    if (!form) badArgs("unknown command or button '" + name + "'");
    form->ensureLoaded();
    if (!form->at(bare).enabled) badArgs("'" + name + "' is disabled");
    form->click(bare);
}

void ScriptRunner::cmdAnswer(const Args& a) {
    if (a.empty()) badArgs("usage: answer msgbox|input|open|save|colour|form ...");
    std::string kind = a[0].text;
    Args rest(a.begin() + 1, a.end());
    bool cancel = rest.size() == 1 && isOption(rest[0], "--cancel");
    if (kind == "msgbox") {
        expectCount(rest, 1, "answer msgbox Yes|No|OK|Cancel");
        std::string v = lower(rest[0].text);
        ui::Answer ans;
        if (v == "yes")
            ans = ui::Answer::Yes;
        else if (v == "no")
            ans = ui::Answer::No;
        else if (v == "ok")
            ans = ui::Answer::OK;
        else if (v == "cancel")
            ans = ui::Answer::Cancel;
        else
            badArgs("'" + rest[0].text + "' is not Yes, No, OK or Cancel");
        ui_.answerMsgBox(ans, line_);
    } else if (kind == "input") {
        expectCount(rest, 1, "answer input TEXT | answer input --cancel");
        ui_.answerInput(cancel ? std::nullopt : std::optional<std::string>(rest[0].text), line_);
    } else if (kind == "open" || kind == "save") {
        expectCount(rest, 1, "answer open|save PATH | answer open|save --cancel");
        std::optional<std::string> path, shown;
        if (!cancel) {
            path = resolve(rest[0].text).string();
            shown = rest[0].text;
        }
        if (kind == "open")
            ui_.answerOpen(path, line_, shown);
        else
            ui_.answerSave(path, line_, shown);
    } else if (kind == "colour" || kind == "color") {
        expectCount(rest, 1, "answer colour R,G,B | answer colour --cancel");
        if (cancel) {
            ui_.answerColour(std::nullopt, line_);
        } else {
            engine::Rgb c = colour(rest[0].text, "answer colour");
            if (c.r < 0 || c.r > 255 || c.g < 0 || c.g > 255 || c.b < 0 || c.b > 255)
                badArgs("answer colour: each of r,g,b is 0 to 255");
            ui_.answerColour(c, line_);
        }
    } else if (kind == "form") {
        if (rest.size() < 2) badArgs("usage: answer form FORM accept|close [CONTROL=VALUE ...]");
        ui::FormAnswer fa;
        fa.form = rest[0].text;
        fa.line = line_;
        if (!ctx_.forms.find(fa.form)) badArgs("unknown form '" + fa.form + "'");
        if (rest[1].text == "accept")
            fa.action = ui::FormAction::Accept;
        else if (rest[1].text == "close")
            fa.action = ui::FormAction::Close;
        else
            badArgs("'" + rest[1].text + "' is not accept or close");
        for (std::size_t i = 2; i < rest.size(); ++i) {
            const std::string& t = rest[i].text;
            auto eq = t.find('=');
            if (eq == std::string::npos || eq == 0) badArgs("'" + t + "' is not CONTROL=VALUE");
            fa.controls.emplace_back(t.substr(0, eq), t.substr(eq + 1));
        }
        ui_.answerForm(std::move(fa));
    } else {
        badArgs("unknown answer kind '" + kind + "'");
    }
}

void ScriptRunner::cmdSet(const Args& a) {
    expectCount(a, 2, "set FORM.CONTROL VALUE");
    auto [formName, control] = splitDotted(a[0].text, "set FORM.CONTROL VALUE");
    forms::Form* f = ctx_.forms.find(formName);
    if (!f) badArgs("unknown form '" + formName + "'");
    f->ensureLoaded();
    const forms::Control* c = f->find(control);
    if (!c) badArgs("form " + formName + " has no control '" + control + "'");
    if (!c->enabled) badArgs("control " + a[0].text + " is disabled");
    if (!f->setFromUser(control, a[1].text))
        badArgs("bad value '" + a[1].text + "' for " + a[0].text);
}

void ScriptRunner::cmdGet(const Args& a) {
    expectCount(a, 1, "get FORM.CONTROL");
    auto [formName, control] = splitDotted(a[0].text, "get FORM.CONTROL");
    forms::Form* f = ctx_.forms.find(formName);
    if (!f) badArgs("unknown form '" + formName + "'");
    f->ensureLoaded();
    if (!f->find(control)) badArgs("form " + formName + " has no control '" + control + "'");
    ui_.record(ui::JsonObject()
                   .str("kind", "get")
                   .str("control", a[0].text)
                   .str("value", f->valueOf(control))
                   .text());
}

void ScriptRunner::cmdWindow(const Args& a) {
    expectCount(a, 2, "window W H");
    long long w = integer(a[0].text, "window width"), h = integer(a[1].text, "window height");
    if (w < 1 || h < 1 || w > 100000 || h > 100000) badArgs("window: W and H are 1 to 100000");
    ctx_.engine.set_window_size(static_cast<int>(w), static_cast<int>(h));
    ctx_.state.lngWindowWidth = static_cast<int>(w);
    ctx_.state.lngWindowHeight = static_cast<int>(h);
}

void ScriptRunner::cmdClock(const Args& a) {
    const char* usage = "clock YYYY-MM-DD HH:MM:SS";
    expectCount(a, 2, usage);
    ui::DateTime t;
    char d1 = 0, d2 = 0, c1 = 0, c2 = 0, extra = 0;
    if (std::sscanf(a[0].text.c_str(), "%4d%c%2d%c%2d%c", &t.year, &d1, &t.month, &d2, &t.day,
                    &extra) != 5 ||
        d1 != '-' || d2 != '-' ||
        std::sscanf(a[1].text.c_str(), "%2d%c%2d%c%2d%c", &t.hour, &c1, &t.minute, &c2, &t.second,
                    &extra) != 5 ||
        c1 != ':' || c2 != ':')
        badArgs(std::string("usage: ") + usage);
    static const int days[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool leap = (t.year % 4 == 0 && t.year % 100 != 0) || t.year % 400 == 0;
    if (t.year < 1 || t.month < 1 || t.month > 12 || t.day < 1 || t.day > days[t.month - 1] ||
        (t.month == 2 && t.day == 29 && !leap) || t.hour < 0 || t.hour > 23 || t.minute < 0 ||
        t.minute > 59 || t.second < 0 || t.second > 59)
        badArgs("clock: '" + a[0].text + " " + a[1].text + "' is not a date and time");
    ui_.fixClock(t);
}

void ScriptRunner::cmdWorldFile(const Args& a, bool save) {
    expectCount(a, 1, save ? "save PATH" : "open PATH");
    auto& hook = save ? ctx_.worldFiles.save : ctx_.worldFiles.open;
    if (!hook) throw RunError("world files are not available in this build");
    std::string path = resolve(a[0].text).string();
    if (!hook(ctx_, path))
        throw RunError(std::string(save ? "could not save the world file '"
                                        : "could not open the world file '") +
                       a[0].text + "'");
}

void ScriptRunner::cmdDump(const Args& a) {
    expectCount(a, 1, "dump FILE");
    std::filesystem::path p = resolve(a[0].text);
    std::string json = sceneDumpJson(ctx_);
    std::ofstream f(p, std::ios::binary | std::ios::trunc);
    if (!f) throw RunError("cannot write '" + p.string() + "'");
    f << json;
    f.close();
    if (!f) throw RunError("cannot write '" + p.string() + "'");
}

void ScriptRunner::cmdEcho(const Args& a) {
    std::string text;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (i) text += ' ';
        text += a[i].text;
    }
    ui_.record(ui::JsonObject().str("kind", "echo").str("text", text).text());
}

}  // namespace script
