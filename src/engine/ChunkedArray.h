#pragma once
// A growable array of trivially copyable elements kept in fixed blocks.
//
// Growing never moves what is stored: a new block is allocated and the old ones
// stay, so the peak memory while a scene of millions of polygons is loaded is
// the memory of the data, not twice that as with a reallocating vector. The
// table of block pointers has room for every index a 28-bit handle can name and
// is allocated once, so an element is two loads away and references stay valid.
// Blocks come zeroed from the system (calloc), so untouched parts cost no memory.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>

namespace engine {

// The table may be larger than 28-bit indices need, with the blocks from entry
// kTableOffset on: then a raw table lookup by other numbers (a whole handle, say)
// finds the blocks where they belong and zeros elsewhere (see readAllAs).
template <class T, unsigned kBits = 16,
          std::size_t kTableBlocks = (std::size_t(1) << 28) / (std::size_t(1) << kBits),
          std::size_t kTableOffset = 0>
class ChunkedArray {
    static_assert(std::is_trivially_copyable_v<T>, "blocks are raw memory");

public:
    static constexpr unsigned kBlockBits = kBits;
    static constexpr std::size_t kBlock = std::size_t(1) << kBits;
    static constexpr std::size_t kMaxElements = std::size_t(1) << 28;
    static constexpr std::size_t kMaxBlocks = kMaxElements >> kBits;
    static_assert(kTableBlocks >= kMaxBlocks + kTableOffset);

    ChunkedArray() : blocks_(new T*[kTableBlocks]) {
        std::fill_n(blocks_.get(), kTableBlocks, nullptr);
    }
    ~ChunkedArray() { clear(); }
    ChunkedArray(const ChunkedArray&) = delete;
    ChunkedArray& operator=(const ChunkedArray&) = delete;

    T& operator[](std::size_t i) { return blocks_[kTableOffset + (i >> kBits)][i & (kBlock - 1)]; }
    const T& operator[](std::size_t i) const {
        return blocks_[kTableOffset + (i >> kBits)][i & (kBlock - 1)];
    }

    std::size_t capacity() const { return used_ * kBlock; }

    // Makes indices [0, n) addressable; false when n is beyond what handles can name
    // or memory ran out (what was there stays).
    bool ensure(std::size_t n) {
        if (n > kMaxElements) return false;
        while (capacity() < n) {
            T* block = static_cast<T*>(std::calloc(kBlock, sizeof(T)));
            if (!block) return false;
            blocks_[kTableOffset + used_++] = block;
        }
        return true;
    }

    void clear() {
        for (std::size_t b = 0; b < used_; ++b) std::free(blocks_[kTableOffset + b]);
        std::fill_n(blocks_.get() + kTableOffset, used_, spare_);
        used_ = 0;
    }

    // Makes every index the table covers readable: blocks not yet allocated
    // read as the given block of zeros (kBlock elements, never written).
    void readAllAs(const T* zeros) {
        spare_ = const_cast<T*>(zeros);
        std::fill(blocks_.get(), blocks_.get() + kTableOffset, spare_);
        std::fill(blocks_.get() + kTableOffset + used_, blocks_.get() + kTableBlocks, spare_);
    }
    // Points a table entry outside the blocks' range at a block of the caller's.
    void readEntryAs(std::size_t entry, const T* block) {
        if (entry < kTableBlocks && (entry < kTableOffset || entry >= kTableOffset + kMaxBlocks))
            blocks_[entry] = const_cast<T*>(block);
    }
    // The block table (blocks from entry kTableOffset); its address never changes.
    const T* const* table() const { return blocks_.get(); }

    // Calls fn(first, count) for the stored pieces of indices [from, to) (within
    // the capacity), block by block.
    template <class Fn>
    void forEachPiece(std::size_t from, std::size_t to, Fn&& fn) {
        to = std::min(to, capacity());
        while (from < to) {
            const std::size_t inBlock = from & (kBlock - 1);
            const std::size_t n = std::min(to - from, kBlock - inBlock);
            fn(&blocks_[kTableOffset + (from >> kBits)][inBlock], n);
            from += n;
        }
    }

    // Bytes held by the blocks (address space; untouched pages are not resident).
    std::size_t bytesReserved() const { return capacity() * sizeof(T); }

private:
    std::unique_ptr<T*[]> blocks_;
    std::size_t used_ = 0;
    T* spare_ = nullptr;
};

}  // namespace engine
