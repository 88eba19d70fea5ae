// key, mouse and wheel: events in picRenderWindow, handed to the handlers the
// navigation and the tools put into the context.

#include <map>

#include "cli/script/ScriptArgs.h"
#include "cli/script/ScriptRunner.h"
#include "core/AppContext.h"

namespace script {

namespace {

// Key codes of the window system.
int keyCode(const std::string& key) {
    if (key.size() == 1) {
        char c = key[0];
        if (c >= 'a' && c <= 'z') return c - 'a' + 'A';
        if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return c;
        return 0;
    }
    static const std::map<std::string, int> named = {
        {"Left", 37},     {"Right", 39}, {"Up", 38},     {"Down", 40},     {"PageUp", 33},
        {"PageDown", 34}, {"Space", 32}, {"Escape", 27}, {"Backspace", 8},
    };
    if (auto it = named.find(key); it != named.end()) return it->second;
    if (key.size() >= 2 && key[0] == 'F') {
        double n = 0;
        if (readNumber(key.substr(1), n) && n >= 1 && n <= 12 && n == static_cast<int>(n))
            return 111 + static_cast<int>(n);  // F1 is 112
    }
    return 0;
}

int mask(const std::string& s, const char* what) {
    long long v = integer(s, what);
    if (v < 0 || v > 7) badArgs(std::string(what) + ": '" + s + "' is not a mask 0 to 7");
    return static_cast<int>(v);
}

}  // namespace

void ScriptRunner::cmdKey(const Args& a) {
    expectCount(a, 1, 2, "key KEY [SHIFT]");
    int code = keyCode(a[0].text);
    if (!code) badArgs("unknown key '" + a[0].text + "'");
    int shift = a.size() > 1 ? mask(a[1].text, "key SHIFT") : 0;
    if (ctx_.input.onKeyDown) ctx_.input.onKeyDown(ctx_, code, shift);
}

void ScriptRunner::cmdMouse(const Args& a) {
    const char* usage = "mouse down|move|up BUTTON SHIFT X Y | mouse dblclick X Y";
    if (a.empty()) badArgs(std::string("usage: ") + usage);
    const std::string& what = a[0].text;
    auto& in = ctx_.input;
    if (what == "dblclick") {
        expectCount(a, 3, usage);
        double x = number(a[1].text, "mouse X"), y = number(a[2].text, "mouse Y");
        if (in.onDblClick) in.onDblClick(ctx_, x, y);
        return;
    }
    if (what != "down" && what != "move" && what != "up") badArgs(std::string("usage: ") + usage);
    expectCount(a, 5, usage);
    int button = mask(a[1].text, "mouse BUTTON");
    int shift = mask(a[2].text, "mouse SHIFT");
    double x = number(a[3].text, "mouse X"), y = number(a[4].text, "mouse Y");
    auto& handler = what == "down"   ? in.onMouseDown
                    : what == "move" ? in.onMouseMove
                                     : in.onMouseUp;
    if (handler) handler(ctx_, button, shift, x, y);
}

void ScriptRunner::cmdWheel(const Args& a) {
    expectCount(a, 3, "wheel DELTA X Y");
    long long delta = integer(a[0].text, "wheel DELTA");
    double x = number(a[1].text, "wheel X"), y = number(a[2].text, "wheel Y");
    if (ctx_.input.onWheel) ctx_.input.onWheel(ctx_, static_cast<int>(delta), x, y);
}

}  // namespace script
