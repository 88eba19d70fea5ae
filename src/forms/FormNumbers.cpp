#include "forms/FormNumbers.h"

#include <charconv>
#include <cmath>
#include <string>

namespace forms {

double valText(std::string_view text) {
    std::size_t i = 0;
    const std::size_t n = text.size();
    while (i < n && (text[i] == ' ' || text[i] == '\t')) ++i;
    std::string s;
    if (i < n && (text[i] == '+' || text[i] == '-')) {
        if (text[i] == '-') s += '-';
        ++i;
    }
    bool digits = false, point = false;
    for (; i < n; ++i) {
        const char c = text[i];
        if (c >= '0' && c <= '9') {
            s += c;
            digits = true;
        } else if (c == '.' && !point) {
            s += c;
            point = true;
        } else {
            break;
        }
    }
    if (!digits) return 0;
    // An exponent counts only with at least one digit after it.
    if (i < n && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        std::size_t j = i + 1;
        std::string e = "e";
        if (j < n && (text[j] == '+' || text[j] == '-')) e += text[j++];
        const std::size_t first = j;
        while (j < n && text[j] >= '0' && text[j] <= '9') e += text[j++];
        if (j > first) s += e;
    }
    double v = 0;
    const auto res = std::from_chars(s.data(), s.data() + s.size(), v);
    if (res.ec != std::errc() || !std::isfinite(v)) return 0;
    return v == 0 ? 0.0 : v;
}

bool blankText(std::string_view text) {
    for (char c : text)
        if (c != ' ' && c != '\t') return false;
    return true;
}

std::string numberText(double v) {
    if (v == 0 || !std::isfinite(v)) return "0";
    char buf[40];
    const auto res = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, res.ptr);
}

}  // namespace forms
