#pragma once
// A plain value passed to or returned from a procedure reached by scripts.

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "engine/Types.h"

namespace core {

struct Value {
    using Storage = std::variant<std::monostate, bool, std::int64_t, double, std::string,
                                 engine::Point3, engine::Rgb, std::vector<Value>>;
    Storage v;

    Value() = default;
    Value(bool b) : v(b) {}
    Value(int i) : v(static_cast<std::int64_t>(i)) {}
    Value(unsigned i) : v(static_cast<std::int64_t>(i)) {}
    Value(long i) : v(static_cast<std::int64_t>(i)) {}
    Value(long long i) : v(static_cast<std::int64_t>(i)) {}
    Value(unsigned long i) : v(static_cast<std::int64_t>(i)) {}
    Value(double d) : v(d) {}
    Value(float f) : v(static_cast<double>(f)) {}
    Value(std::string s) : v(std::move(s)) {}
    Value(const char* s) : v(std::string(s)) {}
    Value(engine::Point3 p) : v(p) {}
    Value(engine::Rgb c) : v(c) {}
    Value(std::vector<Value> a) : v(std::move(a)) {}

    bool isNone() const { return std::holds_alternative<std::monostate>(v); }
    // Lenient conversions used by the bindings (a number from any numeric form).
    double number() const;
    std::int64_t integer() const;
    bool boolean() const;
    std::string text() const;
    engine::Point3 point() const;
    engine::Rgb colour() const;
    // JSON text: numbers that read back to the same double, points and colours as arrays.
    std::string json() const;
};

}  // namespace core
