#pragma once
// CRC-32C (Castagnoli) for the world files: each section of a file carries the
// checksum of its bytes, so that a damaged file is refused instead of loaded wrong.
// The processor's crc32 instruction is used where there is one; the table
// version gives the same values everywhere else.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace engine::world {

// Continues a checksum over more bytes; start with crc = 0.
std::uint32_t crc32c(std::uint32_t crc, const void* data, std::size_t size);

inline std::uint32_t crc32c(std::string_view bytes) {
    return crc32c(0, bytes.data(), bytes.size());
}

// The table version alone (tests compare it with the fast one).
std::uint32_t crc32cPortable(std::uint32_t crc, const void* data, std::size_t size);

}  // namespace engine::world
