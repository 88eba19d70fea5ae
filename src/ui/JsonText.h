#pragma once
// The few pieces of JSON text the transcript and the scene dump are made of.
// Numbers read back to the same double; texts keep every byte (bytes that are
// not UTF-8 are taken as Latin-1, so the output is always valid JSON).

#include <string>
#include <string_view>

#include "engine/Types.h"

namespace ui {

std::string jsonNumber(double d);
std::string jsonString(std::string_view s);
std::string jsonPoint(const engine::Point3& p);
std::string jsonColour(const engine::Rgb& c);

// Builds one JSON object, fields in the order they are added.
class JsonObject {
public:
    JsonObject& raw(std::string_view key, const std::string& jsonValue);
    JsonObject& str(std::string_view key, std::string_view text);
    JsonObject& num(std::string_view key, double d);
    JsonObject& integer(std::string_view key, long long i);
    JsonObject& boolean(std::string_view key, bool b);
    JsonObject& null(std::string_view key) { return raw(key, "null"); }
    std::string text() const { return body_ + "}"; }

private:
    std::string body_ = "{";
};

}  // namespace ui
