#include "ui/JsonText.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace ui {

std::string jsonNumber(double d) {
    if (!std::isfinite(d)) return "null";               // JSON has no NaN or infinity
    if (d == 0) return std::signbit(d) ? "-0.0" : "0";  // "-0" would read back as 0
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, d);
    return std::string(buf, res.ptr);
}

namespace {

// Length of a valid UTF-8 sequence at s[i], 0 when the byte starts none.
std::size_t utf8Length(std::string_view s, std::size_t i) {
    auto b = [&](std::size_t k) { return static_cast<unsigned char>(s[k]); };
    unsigned char c = b(i);
    std::size_t n;
    unsigned lowLimit;
    if (c < 0x80) return 1;
    if ((c & 0xE0) == 0xC0) {
        n = 2;
        lowLimit = 0x80;
    } else if ((c & 0xF0) == 0xE0) {
        n = 3;
        lowLimit = 0x800;
    } else if ((c & 0xF8) == 0xF0) {
        n = 4;
        lowLimit = 0x10000;
    } else {
        return 0;
    }
    if (i + n > s.size()) return 0;
    unsigned cp = c & (0x7F >> n);
    for (std::size_t k = 1; k < n; ++k) {
        if ((b(i + k) & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (b(i + k) & 0x3F);
    }
    if (cp < lowLimit || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return n;
}

}  // namespace

std::string jsonString(std::string_view s) {
    std::string out;
    out.reserve(s.size() + 2);
    out += '"';
    for (std::size_t i = 0; i < s.size();) {
        unsigned char c = static_cast<unsigned char>(s[i]);
        switch (c) {
            case '"':
                out += "\\\"";
                ++i;
                continue;
            case '\\':
                out += "\\\\";
                ++i;
                continue;
            case '\n':
                out += "\\n";
                ++i;
                continue;
            case '\r':
                out += "\\r";
                ++i;
                continue;
            case '\t':
                out += "\\t";
                ++i;
                continue;
            default:
                break;
        }
        char esc[8];
        if (c < 0x20 || c == 0x7F) {
            std::snprintf(esc, sizeof esc, "\\u%04x", c);
            out += esc;
            ++i;
            continue;
        }
        std::size_t n = utf8Length(s, i);
        if (n == 0) {
            std::snprintf(esc, sizeof esc, "\\u%04x", c);
            out += esc;
            ++i;
        } else {
            out.append(s.substr(i, n));
            i += n;
        }
    }
    out += '"';
    return out;
}

std::string jsonPoint(const engine::Point3& p) {
    return "[" + jsonNumber(p.x) + ", " + jsonNumber(p.y) + ", " + jsonNumber(p.z) + "]";
}

std::string jsonColour(const engine::Rgb& c) {
    return "[" + std::to_string(c.r) + ", " + std::to_string(c.g) + ", " + std::to_string(c.b) +
           "]";
}

JsonObject& JsonObject::raw(std::string_view key, const std::string& jsonValue) {
    if (body_.size() > 1) body_ += ", ";
    body_ += jsonString(key);
    body_ += ": ";
    body_ += jsonValue;
    return *this;
}

JsonObject& JsonObject::str(std::string_view key, std::string_view text) {
    return raw(key, jsonString(text));
}

JsonObject& JsonObject::num(std::string_view key, double d) { return raw(key, jsonNumber(d)); }

JsonObject& JsonObject::integer(std::string_view key, long long i) {
    return raw(key, std::to_string(i));
}

JsonObject& JsonObject::boolean(std::string_view key, bool b) {
    return raw(key, b ? "true" : "false");
}

}  // namespace ui
