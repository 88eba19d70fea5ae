#pragma once
// Bytes in and out for the world formats: where they go (a file, a string) and
// the little-endian numbers and variable-length integers the binary format uses.
// Not for use outside src/engine.

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Types.h"

namespace engine::world {

static_assert(sizeof(Point3) == 24, "points are stored as three doubles");

class ByteSink {
public:
    virtual ~ByteSink() = default;
    // False once writing failed (the sink keeps the reason).
    virtual bool write(const void* data, std::size_t size) = 0;
};

class StringSink : public ByteSink {
public:
    explicit StringSink(std::string& out) : out_(out) {}
    bool write(const void* data, std::size_t size) override {
        out_.append(static_cast<const char*>(data), size);
        return true;
    }

private:
    std::string& out_;
};

class ByteSource {
public:
    virtual ~ByteSource() = default;
    // Up to `size` bytes; fewer only at the end of the data or when reading failed.
    virtual std::size_t read(void* data, std::size_t size) = 0;
    // All the bytes there are, from the start.
    virtual std::uint64_t size() const = 0;
    // Why reading stopped early ("" at the plain end of the data).
    virtual std::string failure() const { return {}; }
};

class MemorySource : public ByteSource {
public:
    explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
    std::size_t read(void* data, std::size_t size) override {
        const std::size_t n = std::min(size, bytes_.size() - pos_);
        if (n == 0) return 0;
        std::memcpy(data, bytes_.data() + pos_, n);
        pos_ += n;
        return n;
    }
    std::uint64_t size() const override { return bytes_.size(); }

private:
    std::string_view bytes_;
    std::size_t pos_ = 0;
};

// ---- little-endian values -----------------------------------------------------------

template <class T>
inline T fromLittle(T v) {
    if constexpr (std::endian::native == std::endian::big) {
        if constexpr (sizeof(T) == 2) return T(__builtin_bswap16(std::uint16_t(v)));
        if constexpr (sizeof(T) == 4) return T(__builtin_bswap32(std::uint32_t(v)));
        if constexpr (sizeof(T) == 8) return T(__builtin_bswap64(std::uint64_t(v)));
    }
    return v;
}

// Appends values to a byte vector.
class Encoder {
public:
    std::vector<std::uint8_t> bytes;

    void u8(std::uint8_t v) { bytes.push_back(v); }
    void u32(std::uint32_t v) { raw(fromLittle(v)); }
    void u64(std::uint64_t v) { raw(fromLittle(v)); }
    void f64(double v) { u64(std::bit_cast<std::uint64_t>(v)); }
    void point(Point3 p) {
        f64(p.x);
        f64(p.y);
        f64(p.z);
    }
    void varint(std::uint64_t v) {
        while (v >= 0x80) {
            bytes.push_back(std::uint8_t(v | 0x80));
            v >>= 7;
        }
        bytes.push_back(std::uint8_t(v));
    }
    void svarint(std::int64_t v) { varint((std::uint64_t(v) << 1) ^ std::uint64_t(v >> 63)); }
    void text(std::string_view s) {
        varint(s.size());
        bytes.insert(bytes.end(), s.begin(), s.end());
    }
    void append(const std::vector<std::uint8_t>& more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
    }

private:
    template <class T>
    void raw(T v) {
        const auto* p = reinterpret_cast<const std::uint8_t*>(&v);
        bytes.insert(bytes.end(), p, p + sizeof(T));
    }
};

// Reads values from a byte range; past the end (or a malformed integer) every
// read gives zero and ok() turns false.
class Decoder {
public:
    Decoder() = default;
    Decoder(const std::uint8_t* p, std::size_t n) : p_(p), end_(p + n) {}

    bool ok() const { return ok_; }
    bool atEnd() const { return p_ == end_; }
    std::size_t left() const { return std::size_t(end_ - p_); }
    const std::uint8_t* here() const { return p_; }
    void fail() {
        ok_ = false;
        p_ = end_;
    }

    std::uint8_t u8() {
        if (p_ == end_) return fail(), 0;
        return *p_++;
    }
    std::uint32_t u32() { return raw<std::uint32_t>(); }
    std::uint64_t u64() { return raw<std::uint64_t>(); }
    double f64() { return std::bit_cast<double>(u64()); }
    Point3 point() {
        Point3 p;
        p.x = f64();
        p.y = f64();
        p.z = f64();
        return p;
    }
    std::uint64_t varint() {
        std::uint64_t v = 0;
        for (int shift = 0; shift < 64; shift += 7) {
            if (p_ == end_) return fail(), 0;
            const std::uint8_t b = *p_++;
            if (shift == 63 && b > 1) return fail(), 0;
            v |= std::uint64_t(b & 0x7F) << shift;
            if (!(b & 0x80)) return v;
        }
        return fail(), 0;
    }
    std::int64_t svarint() {
        const std::uint64_t v = varint();
        return std::int64_t(v >> 1) ^ -std::int64_t(v & 1);
    }
    // A count of things each at least `minBytes` long: never more than could fit.
    std::uint64_t count(std::size_t minBytes) {
        const std::uint64_t n = varint();
        if (minBytes && n > left() / minBytes) return fail(), 0;
        return n;
    }
    std::string text() {
        const std::uint64_t n = varint();
        if (n > left()) return fail(), std::string();
        std::string s(reinterpret_cast<const char*>(p_), std::size_t(n));
        p_ += n;
        return s;
    }
    // n bytes as a sub-decoder.
    Decoder sub(std::uint64_t n) {
        if (n > left()) return fail(), Decoder();
        Decoder d(p_, std::size_t(n));
        p_ += n;
        return d;
    }

private:
    template <class T>
    T raw() {
        if (left() < sizeof(T)) return fail(), T(0);
        T v;
        std::memcpy(&v, p_, sizeof(T));
        p_ += sizeof(T);
        return fromLittle(v);
    }

    const std::uint8_t* p_ = nullptr;
    const std::uint8_t* end_ = nullptr;
    bool ok_ = true;
};

}  // namespace engine::world
