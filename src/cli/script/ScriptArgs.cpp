#include "cli/script/ScriptArgs.h"

#include <charconv>
#include <cmath>

#include "ui/ScriptedUi.h"

namespace script {

void badArgs(const std::string& message) { throw ui::ScriptError(message); }

void expectCount(const std::vector<Token>& a, std::size_t n, const char* usage) {
    expectCount(a, n, n, usage);
}

void expectCount(const std::vector<Token>& a, std::size_t lo, std::size_t hi, const char* usage) {
    if (a.size() < lo || a.size() > hi) badArgs(std::string("usage: ") + usage);
}

bool readNumber(const std::string& s, double& out) {
    const char* b = s.data();
    const char* e = b + s.size();
    if (b != e && *b == '+') ++b;
    auto res = std::from_chars(b, e, out);
    return res.ec == std::errc() && res.ptr == e && b != e;
}

double number(const std::string& s, const char* what) {
    double d = 0;
    if (!readNumber(s, d)) badArgs(std::string(what) + ": '" + s + "' is not a number");
    return d;
}

long long integer(const std::string& s, const char* what) {
    double d = number(s, what);
    if (!std::isfinite(d) || d != std::floor(d) || std::fabs(d) > 9.0e15)
        badArgs(std::string(what) + ": '" + s + "' is not a whole number");
    return static_cast<long long>(d);
}

namespace {

std::vector<std::string> splitCommas(const std::string& s) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (true) {
        auto comma = s.find(',', start);
        parts.push_back(s.substr(start, comma == std::string::npos ? comma : comma - start));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    return parts;
}

}  // namespace

engine::Point3 point(const std::string& s, const char* what) {
    auto parts = splitCommas(s);
    engine::Point3 p;
    bool ok = parts.size() == 3;
    for (int i = 0; ok && i < 3; ++i) ok = readNumber(parts[static_cast<std::size_t>(i)], p[i]);
    if (!ok) badArgs(std::string(what) + ": '" + s + "' is not a point x,y,z");
    return p;
}

engine::Rgb colour(const std::string& s, const char* what) {
    auto parts = splitCommas(s);
    int v[3] = {0, 0, 0};
    bool ok = parts.size() == 3;
    for (int i = 0; ok && i < 3; ++i) {
        double d = 0;
        ok = readNumber(parts[static_cast<std::size_t>(i)], d) && d == std::floor(d) &&
             std::fabs(d) < 1e9;
        v[i] = ok ? static_cast<int>(d) : 0;
    }
    if (!ok) badArgs(std::string(what) + ": '" + s + "' is not a colour r,g,b");
    return {v[0], v[1], v[2]};
}

bool boolean(const std::string& s, const char* what) {
    if (s == "true" || s == "True" || s == "TRUE") return true;
    if (s == "false" || s == "False" || s == "FALSE") return false;
    double d = 0;
    if (!readNumber(s, d))
        badArgs(std::string(what) + ": '" + s + "' is not true, false or a number");
    return d != 0;
}

core::Value argument(core::ParamKind k, const std::string& token, bool outOnly,
                     const std::string& what) {
    using core::ParamKind;
    const char* w = what.c_str();
    if (outOnly) {
        // Any value will do for an argument the procedure only writes.
        try {
            return argument(k, token, false, what);
        } catch (const ui::ScriptError&) {
            switch (k) {
                case ParamKind::Number:
                    return core::Value(0.0);
                case ParamKind::Integer:
                case ParamKind::Handle:
                    return core::Value(0);
                case ParamKind::Bool:
                    return core::Value(false);
                case ParamKind::Text:
                    return core::Value(std::string());
                case ParamKind::Point:
                    return core::Value(engine::Point3{});
                case ParamKind::Colour:
                    return core::Value(engine::Rgb{});
            }
        }
    }
    switch (k) {
        case ParamKind::Number:
            return core::Value(number(token, w));
        case ParamKind::Integer:
            return core::Value(integer(token, w));
        case ParamKind::Handle:
            return core::Value(integer(token, w));
        case ParamKind::Bool:
            return core::Value(boolean(token, w));
        case ParamKind::Text:
            return core::Value(token);
        case ParamKind::Point:
            return core::Value(point(token, w));
        case ParamKind::Colour:
            return core::Value(colour(token, w));
    }
    return {};
}

bool isOption(const Token& t, const char* name) { return !t.quoted && t.text == name; }

}  // namespace script
