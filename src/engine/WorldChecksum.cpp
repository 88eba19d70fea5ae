#include "engine/WorldChecksum.h"

#include <array>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#include <nmmintrin.h>
#endif

namespace engine::world {

namespace {

constexpr std::uint32_t kPolynomial = 0x82F63B78u;  // reflected Castagnoli

// Eight tables: the portable version takes eight bytes a step.
struct Tables {
    std::uint32_t t[8][256];
    constexpr Tables() : t{} {
        for (std::uint32_t i = 0; i < 256; ++i) {
            std::uint32_t c = i;
            for (int k = 0; k < 8; ++k) c = (c >> 1) ^ ((c & 1) ? kPolynomial : 0);
            t[0][i] = c;
        }
        for (std::uint32_t i = 0; i < 256; ++i)
            for (int k = 1; k < 8; ++k) t[k][i] = (t[k - 1][i] >> 8) ^ t[0][t[k - 1][i] & 0xFF];
    }
};
constexpr Tables kTables;

std::uint32_t portable(std::uint32_t crc, const unsigned char* p, std::size_t n) {
    const auto& t = kTables.t;
    while (n >= 8) {
        std::uint32_t lo, hi;
        std::memcpy(&lo, p, 4);
        std::memcpy(&hi, p + 4, 4);
        if constexpr (std::endian::native == std::endian::big) {
            lo = __builtin_bswap32(lo);
            hi = __builtin_bswap32(hi);
        }
        lo ^= crc;
        crc = t[7][lo & 0xFF] ^ t[6][(lo >> 8) & 0xFF] ^ t[5][(lo >> 16) & 0xFF] ^ t[4][lo >> 24] ^
              t[3][hi & 0xFF] ^ t[2][(hi >> 8) & 0xFF] ^ t[1][(hi >> 16) & 0xFF] ^ t[0][hi >> 24];
        p += 8;
        n -= 8;
    }
    while (n--) crc = (crc >> 8) ^ t[0][(crc ^ *p++) & 0xFF];
    return crc;
}

#if defined(__x86_64__)
__attribute__((target("sse4.2"))) std::uint32_t hardware(std::uint32_t crc, const unsigned char* p,
                                                         std::size_t n) {
    std::uint64_t c = crc;
    while (n >= 8) {
        std::uint64_t v;
        std::memcpy(&v, p, 8);
        c = _mm_crc32_u64(c, v);
        p += 8;
        n -= 8;
    }
    std::uint32_t c32 = static_cast<std::uint32_t>(c);
    while (n--) c32 = _mm_crc32_u8(c32, *p++);
    return c32;
}

bool haveHardware() {
    static const bool yes = __builtin_cpu_supports("sse4.2");
    return yes;
}
#endif

}  // namespace

std::uint32_t crc32cPortable(std::uint32_t crc, const void* data, std::size_t size) {
    return ~portable(~crc, static_cast<const unsigned char*>(data), size);
}

std::uint32_t crc32c(std::uint32_t crc, const void* data, std::size_t size) {
    const auto* p = static_cast<const unsigned char*>(data);
#if defined(__x86_64__)
    if (haveHardware()) return ~hardware(~crc, p, size);
#endif
    return ~portable(~crc, p, size);
}

}  // namespace engine::world
