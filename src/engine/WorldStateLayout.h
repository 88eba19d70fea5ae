#pragma once
// The ".STATE" binary world format: its layout and the columns of runs that
// both the writer and the reader use. Not for use outside src/engine.
//
//   file header  magic (8) | version u32 | flags u32 (0) | file size u64 | crc u32
//   sections     tag u32 | flags u32 (0) | length u64 | header crc u32 | payload | payload crc u32
//
// Sections come in a fixed order: SCEN NAME GRUP BITM LITE POLY PNTS XTRA ORDR END_.
// All numbers are little-endian; counts and indexes are LEB128 varints. Per-polygon
// fields are columns of runs (a value repeated, or counting up by one), so a
// scene of millions of polygons that share a few names, groups and colours costs
// a few bytes beyond its coordinates, which are stored as they are (PNTS).

#include <cstdint>
#include <string>
#include <vector>

#include "engine/WorldStream.h"

namespace engine::world::state {

constexpr std::uint32_t tag(const char (&s)[5]) {
    return std::uint32_t(std::uint8_t(s[0])) | (std::uint32_t(std::uint8_t(s[1])) << 8) |
           (std::uint32_t(std::uint8_t(s[2])) << 16) | (std::uint32_t(std::uint8_t(s[3])) << 24);
}

constexpr std::uint32_t kScene = tag("SCEN"), kNames = tag("NAME"), kGroups = tag("GRUP"),
                        kBitmaps = tag("BITM"), kLights = tag("LITE"), kPolygons = tag("POLY"),
                        kPoints = tag("PNTS"), kExtras = tag("XTRA"), kOrders = tag("ORDR"),
                        kEnd = tag("END_");

inline std::string tagName(std::uint32_t t) {
    std::string s(4, ' ');
    for (int i = 0; i < 4; ++i) s[i] = char((t >> (8 * i)) & 0xFF);
    return s;
}

constexpr std::size_t kFileHeader = 28;
constexpr std::size_t kSectionHeader = 20;
constexpr std::size_t kSectionOverhead = kSectionHeader + 4;
constexpr std::size_t kChunkBytes = std::size_t(1) << 20;
constexpr std::size_t kChunkPoints = std::size_t(1) << 17;  // more than a polygon can have

// ---- columns of runs ----------------------------------------------------------------

class RunEncoder {
public:
    void push(std::uint32_t v) {
        if (len_ == 1 && v == last_) {
            len_ = 2;
        } else if (len_ == 1 && std::uint64_t(v) == std::uint64_t(last_) + 1) {
            len_ = 2;
            step_ = true;
            last_ = v;
        } else if (len_ >= 2 && !step_ && v == last_) {
            ++len_;
        } else if (len_ >= 2 && step_ && std::uint64_t(v) == std::uint64_t(last_) + 1) {
            ++len_;
            last_ = v;
        } else {
            flush();
            first_ = last_ = v;
            len_ = 1;
            step_ = false;
        }
    }
    std::vector<std::uint8_t> finish() {
        flush();
        return std::move(out_.bytes);
    }

private:
    void flush() {
        if (!len_) return;
        out_.varint((len_ << 1) | (step_ ? 1 : 0));
        out_.varint(first_);
        len_ = 0;
        step_ = false;
    }
    Encoder out_;
    std::uint32_t first_ = 0, last_ = 0;
    std::uint64_t len_ = 0;
    bool step_ = false;
};

class RunCursor {
public:
    RunCursor() = default;
    explicit RunCursor(Decoder d) : d_(d) {}
    // Checks that the runs cover exactly `count` values and every value fits.
    static bool valid(Decoder d, std::uint64_t count) {
        std::uint64_t total = 0;
        while (!d.atEnd()) {
            const std::uint64_t h = d.varint();
            const std::uint64_t len = h >> 1;
            const std::uint64_t v = d.varint();
            if (!d.ok() || len == 0 || len > count - total || v > 0xFFFFFFFFu) return false;
            if ((h & 1) && len - 1 > 0xFFFFFFFFu - v) return false;
            total += len;
        }
        return d.ok() && total == count;
    }
    std::uint32_t next() {
        if (!left_) {
            const std::uint64_t h = d_.varint();
            left_ = h >> 1;
            step_ = h & 1;
            value_ = d_.varint();
        }
        const std::uint32_t v = std::uint32_t(value_);
        if (step_) ++value_;
        --left_;
        return v;
    }

private:
    Decoder d_;
    std::uint64_t left_ = 0, value_ = 0;
    bool step_ = false;
};

}  // namespace engine::world::state
