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
    using Links = ChunkedArray<Handle>;

    Links next, prev;
    std::uint32_t slotEnd = 1;  // slots [1, slotEnd) exist
    Handle head = 0, tail = 0;
    std::size_t count = 0;

    WalkList() { next.readAllAs(zeros()); }

    // The polygon after h in the walk; 0 at the end and for anything that is not
    // a polygon in the world. Reads only the table, so that it can be inline.
    static Handle following(const Handle* const* nextTable, Handle h) {
        // One unsigned compare rejects 0 and every other kind; slots past the
        // end read zeros.
        const std::uint32_t s = h - kPolygonBase;
        if (s >= Links::kMaxElements) return 0;
        const Handle n = nextTable[s >> Links::kBlockBits][s & (Links::kBlock - 1)];
        // Polygons are usually added in the order they were made, so the next is
        // the next slot: branching on that guess lets the processor run ahead of
        // the load instead of waiting for it.
        Handle guess = h + 1;
        if (__builtin_expect(n == guess, 1)) {
            asm("" : "+r"(guess));  // keep the branch: the compiler would fold it
            return guess;
        }
        return n;
    }
    Handle following(Handle h) const { return following(next.table(), h); }

private:
    static const Handle* zeros() {
        static const Handle block[Links::kBlock] = {};
        return block;
    }
};

}  // namespace engine
