// Any text as a text world file: refused with a message or loaded, never a
// crash; a world that loads saves again to text that loads to the same text.
// Each input is also tried with its sections' checks put right, so that the
// fuzzer reaches the line parsers behind them.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/WorldChecksum.h"
#include "engine/WorldFormat.h"

namespace {

// "section NAME COUNT CRC" lines get the check of the COUNT lines after them.
std::string withChecks(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t at = 0;
    while (at <= text.size()) {
        std::size_t e = text.find('\n', at);
        if (e == std::string::npos) e = text.size();
        lines.push_back(text.substr(at, e - at));
        at = e + 1;
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& l = lines[i];
        if (l.rfind("section ", 0) != 0) continue;
        const std::size_t a = l.find(' ', 8);
        if (a == std::string::npos) continue;
        const std::size_t b = l.find(' ', a + 1);
        if (b == std::string::npos) continue;
        unsigned long count = std::strtoul(l.substr(a + 1, b - a - 1).c_str(), nullptr, 10);
        if (count > lines.size() - i - 1) count = lines.size() - i - 1;
        std::uint32_t sum = 0;
        for (std::size_t k = 1; k <= count; ++k) {
            std::string body = lines[i + k];
            if (!body.empty() && body.back() == '\r') body.pop_back();
            sum = engine::world::crc32c(sum, body.data(), body.size());
            sum = engine::world::crc32c(sum, "\n", 1);
        }
        char hex[9];
        std::snprintf(hex, sizeof hex, "%08x", sum);
        lines[i] = l.substr(0, b) + " " + hex;
    }
    std::string out;
    for (std::size_t i = 0; i < lines.size(); ++i)
        out += lines[i] + (i + 1 < lines.size() ? "\n" : "");
    return out;
}

void check(std::string_view text) {
    engine::Engine e;
    const engine::WorldResult r = engine::loadWorldBytes(e, text);
    if (!r.ok) {
        if (r.message.empty() || !e.engine_is_engine_empty()) __builtin_trap();
        return;
    }
    std::string again, third;
    if (!engine::encodeWorld(e, engine::WorldFormat::Text, again).ok) __builtin_trap();
    engine::Engine f;
    if (!engine::loadWorldBytes(f, again).ok) __builtin_trap();
    if (!engine::encodeWorld(f, engine::WorldFormat::Text, third).ok) __builtin_trap();
    if (third != again) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    check(text);
    const std::string fixed = withChecks(text);
    if (fixed != text) check(fixed);
    return 0;
}
