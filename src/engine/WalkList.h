#pragma once
// The walk order of the polygons in the world, the one part of the store that
// Engine.h needs inline: polygon_get_next runs once per polygon in every loop
// over the scene.

#include "engine/ChunkedArray.h"
#include "engine/Types.h"

namespace engine {

struct WalkList {
    // next / prev hold polygon handles; 0 at the ends of the walk and for slots
    // outside the world. Slot s is the polygon whose handle has index bits s.
    static constexpr Handle kPolygonBase = static_cast<Handle>(Kind::Polygon) << kKindShift;
    // The table of next covers every 32-bit number in 2^16 blocks of 2^16 with
    // the blocks where polygon handles fall, so following() looks a handle up
    // as it is, with no range or kind check; prev is an ordinary array.
    using Links = ChunkedArray<Handle, 16, std::size_t(1) << 16, (kPolygonBase >> 16)>;

    Links next;
    ChunkedArray<Handle> prev;
    std::uint32_t slotEnd = 1;  // slots [1, slotEnd) exist
    Handle head = 0, tail = 0;
    std::size_t count = 0;

    WalkList() {
        next.readAllAs(zeros());
        next.readEntryAs(Links::kBlock - 1, lastBlock());
    }

    // The polygon after h in the walk; 0 at the end and for anything that is not
    // a polygon in the world. Reads only the table, so that it can be inline.
    static Handle following(const Handle* const* nextTable, Handle h) {
        // 0, every other kind and slots past the end read zeros, except that
        // 0xFFFFFFFF reads 1 (see below).
        const Handle n = nextTable[h >> Links::kBlockBits][h & (Links::kBlock - 1)];
        // Polygons are usually added in the order they were made, so the next is
        // the next slot: branching on that guess lets the processor run ahead of
        // the load instead of waiting for it.
        Handle guess = h + 1;
        if (__builtin_expect(n == guess, 1)) {
            asm("" : "+r"(guess));  // keep the branch: the compiler would fold it
            // Only h = 0xFFFFFFFF would guess 0, and it reads 1: so a loop on
            // h != 0 needs no test on this path.
            if (guess == 0) __builtin_unreachable();
            return guess;
        }
        return n == 1 ? 0 : n;
    }
    Handle following(Handle h) const { return following(next.table(), h); }

private:
    static const Handle* zeros() {
        static const Handle block[Links::kBlock] = {};
        return block;
    }
    static const Handle* lastBlock() {
        static const Handle* block = [] {
            static Handle b[Links::kBlock] = {};
            b[Links::kBlock - 1] = 1;
            return b;
        }();
        return block;
    }
};

}  // namespace engine
