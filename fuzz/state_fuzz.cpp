// Any bytes as a binary world file: refused with a message or loaded, never a
// crash; a world that loads saves again to bytes that load to the same bytes.
// Mutated files rarely keep their checksums, so each input is also tried with
// its checksums put right, which lets the fuzzer reach the decoders behind them.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "engine/Engine.h"
#include "engine/WorldChecksum.h"
#include "engine/WorldFormat.h"

namespace {

std::uint64_t get(const std::string& s, std::size_t at, int bytes) {
    std::uint64_t v = 0;
    for (int i = 0; i < bytes; ++i) v |= std::uint64_t(std::uint8_t(s[at + i])) << (8 * i);
    return v;
}
void put(std::string& s, std::size_t at, std::uint64_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) s[at + i] = char((v >> (8 * i)) & 0xFF);
}
std::uint32_t crc(const std::string& s, std::size_t at, std::size_t n) {
    return engine::world::crc32c(0, s.data() + at, n);
}

// The file header (28 bytes), then sections: header (20), payload, checksum (4).
std::string withChecksums(std::string s) {
    if (s.size() < 28) return s;
    put(s, 16, s.size(), 8);
    put(s, 24, crc(s, 0, 24), 4);
    std::size_t at = 28;
    while (at + 24 <= s.size()) {
        std::uint64_t len = get(s, at + 8, 8);
        if (len > s.size() - at - 24) {
            len = s.size() - at - 24;
            put(s, at + 8, len, 8);
        }
        put(s, at + 16, crc(s, at, 16), 4);
        put(s, at + 20 + len, crc(s, at + 20, std::size_t(len)), 4);
        at += 24 + std::size_t(len);
    }
    return s;
}

void check(std::string_view bytes) {
    engine::Engine e;
    const engine::WorldResult r = engine::loadWorldBytes(e, bytes);
    if (!r.ok) {
        if (r.message.empty() || !e.engine_is_engine_empty()) __builtin_trap();
        return;
    }
    std::string again, third;
    if (!engine::encodeWorld(e, engine::WorldFormat::State, again).ok) __builtin_trap();
    engine::Engine f;
    if (!engine::loadWorldBytes(f, again).ok) __builtin_trap();
    if (!engine::encodeWorld(f, engine::WorldFormat::State, third).ok) __builtin_trap();
    if (third != again) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    check(bytes);
    const std::string fixed = withChecksums(bytes);
    if (fixed != bytes) check(fixed);
    return 0;
}
