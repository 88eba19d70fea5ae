#include "core/LenientNumber.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#if __has_include(<fast_float/fast_float.h>)
#include <fast_float/fast_float.h>
#define TARVIK_FAST_FLOAT 1
#else
#include <charconv>
#endif

namespace core {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Length of the number at the start of s (sign, mantissa, exponent); 0 when the
// mantissa has no digit. `dExponent` tells that the exponent letter is D.
std::size_t numberExtent(std::string_view s, bool& dExponent) {
    std::size_t i = 0;
    const std::size_t n = s.size();
    if (i < n && (s[i] == '+' || s[i] == '-')) ++i;
    std::size_t digits = 0;
    while (i < n && isDigit(s[i])) ++i, ++digits;
    if (i < n && s[i] == '.') {
        ++i;
        while (i < n && isDigit(s[i])) ++i, ++digits;
    }
    if (digits == 0) return 0;
    if (i < n && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        std::size_t j = i + 1;
        if (j < n && (s[j] == '+' || s[j] == '-')) ++j;
        if (j < n && isDigit(s[j])) {
            dExponent = s[i] == 'd' || s[i] == 'D';
            while (j < n && isDigit(s[j])) ++j;
            i = j;
        }
    }
    return i;
}

double parseSpan(const char* b, const char* e) {
    bool negative = false;
    if (b != e && (*b == '+' || *b == '-')) {
        negative = *b == '-';
        ++b;
    }
    double v = 0;
#ifdef TARVIK_FAST_FLOAT
    fast_float::from_chars(b, e, v);
#else
    auto r = std::from_chars(b, e, v);
    if (r.ec == std::errc::result_out_of_range) {
        // from_chars leaves v alone out of range: tell overflow from underflow
        // by the exponent's size.
        const char* x = b;
        while (x != e && *x != 'e' && *x != 'E') ++x;
        long ex = x == e ? 0 : std::strtol(x + 1, nullptr, 10);
        v = ex > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    }
#endif
    return negative ? -v : v;
}

double radixNumber(std::string_view s, int radix) {
    std::uint64_t v = 0;
    std::size_t digits = 0;
    for (char c : s) {
        int d = -1;
        if (isDigit(c))
            d = c - '0';
        else if (radix == 16 && c >= 'a' && c <= 'f')
            d = c - 'a' + 10;
        else if (radix == 16 && c >= 'A' && c <= 'F')
            d = c - 'A' + 10;
        if (d < 0 || d >= radix) break;
        v = (v * static_cast<std::uint64_t>(radix) + static_cast<std::uint64_t>(d)) & 0xFFFFFFFFu;
        ++digits;
    }
    const bool shortForm = radix == 16 ? digits <= 4 : digits <= 6 && v <= 0xFFFF;
    if (shortForm) return static_cast<double>(static_cast<std::int16_t>(v & 0xFFFF));
    return static_cast<double>(static_cast<std::int32_t>(v));
}

double valCompact(std::string_view s) {
    if (s.size() >= 2 && s[0] == '&') {
        if (s[1] == 'H' || s[1] == 'h') return radixNumber(s.substr(2), 16);
        if (s[1] == 'O' || s[1] == 'o') return radixNumber(s.substr(2), 8);
        return 0;
    }
    bool dExponent = false;
    const std::size_t len = numberExtent(s, dExponent);
    if (len == 0) return 0;
    if (!dExponent) return parseSpan(s.data(), s.data() + len);
    std::string copy(s.substr(0, len));
    for (char& c : copy)
        if (c == 'd' || c == 'D') c = 'e';
    return parseSpan(copy.data(), copy.data() + copy.size());
}

// The field is a plain decimal, all of it: a sign, digits and at most one point.
// Up to 2^53 for the digits and 22 places the digits and the power of ten are
// exact doubles, so one division gives the correctly rounded value, the same as
// the full reading. False for anything else.
bool plainDecimal(const char* p, const char* e, double& v) {
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;
    static constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    std::uint64_t m = 0;
    int digits = 0, places = 0;
    for (; p != e && isDigit(*p); ++p, ++digits) m = m * 10 + std::uint64_t(*p - '0');
    if (p != e && *p == '.') {
        for (++p; p != e && isDigit(*p); ++p, ++digits, ++places)
            m = m * 10 + std::uint64_t(*p - '0');
    }
    if (p != e || digits == 0 || digits > 19 || m > (std::uint64_t(1) << 53) || places > 22)
        return false;
    v = double(m) / kPow10[places];
    if (negative) v = -v;
    return true;
}

}  // namespace

double valNumber(std::string_view text) {
    if (!text.empty()) {
        double v;
        if (plainDecimal(text.data(), text.data() + text.size(), v)) return v;
    }
#ifdef TARVIK_FAST_FLOAT
    // The usual field: digits, perhaps a sign, point and exponent, and nothing
    // after the number that could still belong to it.
    if (!text.empty()) {
        const char* b = text.data();
        const char* e = b + text.size();
        const char* p = b + (*b == '-' || *b == '+');
        if (p != e && (isDigit(*p) || (*p == '.' && p + 1 != e && isDigit(p[1])))) {
            double v = 0;
            const auto r = fast_float::from_chars(p, e, v);
            const char next = r.ptr == e ? 'x' : *r.ptr;
            if (r.ec == std::errc() && !isBlank(next) && next != 'd' && next != 'D' &&
                next != 'e' && next != 'E')
                return *b == '-' ? -v : v;
        }
    }
#endif
    bool blanks = false;
    for (char c : text) {
        if (isBlank(c)) {
            blanks = true;
            break;
        }
    }
    if (!blanks) return valCompact(text);
    std::string compact;
    compact.reserve(text.size());
    for (char c : text)
        if (!isBlank(c)) compact.push_back(c);
    return valCompact(compact);
}

std::optional<std::int32_t> wholeNumber(double value) {
    if (!std::isfinite(value)) return std::nullopt;
    const double r = std::nearbyint(value);  // the default rounding: halves to even
    if (r < -2147483648.0 || r > 2147483647.0) return std::nullopt;
    return static_cast<std::int32_t>(r);
}

std::string numberText(double value) {
    if (value == 0) return "0";
    if (std::isnan(value)) return "0";
    if (std::isinf(value)) return value > 0 ? "1E+309" : "-1E+309";
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15G", value);
    return buf;
}

}  // namespace core
