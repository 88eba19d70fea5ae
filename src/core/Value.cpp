#include "core/Value.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "ui/JsonText.h"

namespace core {

namespace {

// The leading number of a text, 0 when it starts with none.
double leadingNumber(const std::string& s) {
    const char* b = s.data();
    const char* e = b + s.size();
    while (b != e && (*b == ' ' || *b == '\t')) ++b;
    if (b != e && *b == '+') ++b;
    double d = 0;
    auto res = std::from_chars(b, e, d);
    return res.ec == std::errc() ? d : 0.0;
}

std::vector<double> splitNumbers(const std::string& s) {
    std::vector<double> out;
    std::size_t start = 0;
    while (true) {
        std::size_t comma = s.find(',', start);
        out.push_back(leadingNumber(s.substr(start, comma - start)));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    return out;
}

std::string shortest(double d) {
    if (std::isnan(d)) return "NaN";
    if (std::isinf(d)) return d > 0 ? "Infinity" : "-Infinity";
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, d);
    return std::string(buf, res.ptr);
}

}  // namespace

double Value::number() const {
    struct V {
        double operator()(std::monostate) const { return 0; }
        double operator()(bool b) const { return b ? 1 : 0; }
        double operator()(std::int64_t i) const { return static_cast<double>(i); }
        double operator()(double d) const { return d; }
        double operator()(const std::string& s) const {
            if (s == "true") return 1;
            return leadingNumber(s);
        }
        double operator()(const engine::Point3& p) const { return p.x; }
        double operator()(const engine::Rgb& c) const { return c.r; }
        double operator()(const std::vector<Value>& a) const {
            return a.empty() ? 0 : a.front().number();
        }
    };
    return std::visit(V{}, v);
}

std::int64_t Value::integer() const {
    if (auto* i = std::get_if<std::int64_t>(&v)) return *i;
    double d = number();
    if (!std::isfinite(d)) return 0;
    if (d >= 9.2e18) return INT64_MAX;
    if (d <= -9.2e18) return INT64_MIN;
    return std::llround(d);
}

bool Value::boolean() const {
    if (auto* b = std::get_if<bool>(&v)) return *b;
    if (auto* s = std::get_if<std::string>(&v)) {
        if (*s == "true" || *s == "True") return true;
        if (*s == "false" || *s == "False") return false;
    }
    return number() != 0;
}

std::string Value::text() const {
    struct V {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(bool b) const { return b ? "true" : "false"; }
        std::string operator()(std::int64_t i) const { return std::to_string(i); }
        std::string operator()(double d) const { return shortest(d); }
        std::string operator()(const std::string& s) const { return s; }
        std::string operator()(const engine::Point3& p) const {
            return shortest(p.x) + "," + shortest(p.y) + "," + shortest(p.z);
        }
        std::string operator()(const engine::Rgb& c) const {
            return std::to_string(c.r) + "," + std::to_string(c.g) + "," + std::to_string(c.b);
        }
        std::string operator()(const std::vector<Value>& a) const {
            std::string out;
            for (std::size_t i = 0; i < a.size(); ++i) {
                if (i) out += ',';
                out += a[i].text();
            }
            return out;
        }
    };
    return std::visit(V{}, v);
}

engine::Point3 Value::point() const {
    if (auto* p = std::get_if<engine::Point3>(&v)) return *p;
    if (auto* a = std::get_if<std::vector<Value>>(&v)) {
        engine::Point3 p;
        for (std::size_t i = 0; i < 3 && i < a->size(); ++i)
            p[static_cast<int>(i)] = (*a)[i].number();
        return p;
    }
    if (auto* s = std::get_if<std::string>(&v)) {
        auto n = splitNumbers(*s);
        engine::Point3 p;
        for (std::size_t i = 0; i < 3 && i < n.size(); ++i) p[static_cast<int>(i)] = n[i];
        return p;
    }
    if (auto* c = std::get_if<engine::Rgb>(&v)) return {double(c->r), double(c->g), double(c->b)};
    return {};
}

engine::Rgb Value::colour() const {
    if (auto* c = std::get_if<engine::Rgb>(&v)) return *c;
    engine::Point3 p = point();
    auto toInt = [](double d) { return std::isfinite(d) ? static_cast<int>(std::lround(d)) : 0; };
    return {toInt(p.x), toInt(p.y), toInt(p.z)};
}

std::string Value::json() const {
    struct V {
        std::string operator()(std::monostate) const { return "null"; }
        std::string operator()(bool b) const { return b ? "true" : "false"; }
        std::string operator()(std::int64_t i) const { return std::to_string(i); }
        std::string operator()(double d) const { return ui::jsonNumber(d); }
        std::string operator()(const std::string& s) const { return ui::jsonString(s); }
        std::string operator()(const engine::Point3& p) const { return ui::jsonPoint(p); }
        std::string operator()(const engine::Rgb& c) const { return ui::jsonColour(c); }
        std::string operator()(const std::vector<Value>& a) const {
            std::string out = "[";
            for (std::size_t i = 0; i < a.size(); ++i) {
                if (i) out += ", ";
                out += a[i].json();
            }
            return out + "]";
        }
    };
    return std::visit(V{}, v);
}

}  // namespace core
