#pragma once
// Where new points go in the shared point array of the store.
//
// Points are taken at a cursor that moves through a region: the top of the
// array, or a hole left by deleted polygons that can hold a whole polygon of
// the largest size. A polygon built point by point grows at the cursor, so its
// points stay where they are (their handles stay valid) unless another polygon
// takes points behind it before it is finished. A new polygon only starts in a
// region with room for the largest polygon ahead, and regions change only when
// a polygon starts, which keeps that promise. Freed runs are merged with their
// free neighbours; once they form a large enough hole, building moves there, so
// a long session of loading and deleting does not use up the array.

#include <cstdint>
#include <map>
#include <set>
#include <utility>

namespace engine {

class PointSpace {
public:
    static constexpr std::uint32_t kLimit = std::uint32_t(1) << 28;  // slots [1, kLimit)

    explicit PointSpace(std::uint32_t largestRun) : largest_(largestRun) {}

    void clear();
    // Slots [1, top) have been handed out at some time (the array must hold them).
    std::uint32_t top() const { return top_; }
    // A run of n slots for points known in full; 0 when the array is full.
    std::uint32_t take(std::uint32_t n);
    // Up to `count` runs of n slots one after another from `first`, handed out
    // as that many calls of take(n) would hand them; returns how many. 0 (and no
    // change) where the next take(n) would change region: take it alone.
    std::uint32_t takeRuns(std::uint32_t n, std::uint32_t count, std::uint32_t& first);
    // The first slot of a polygon that will grow point by point; 0 when full.
    std::uint32_t startGrowing();
    // The slot right after run [first, first + n) when it can grow in place, else 0.
    std::uint32_t extend(std::uint32_t first, std::uint32_t n);
    void release(std::uint32_t first, std::uint32_t n);
    // Free slots below top (in holes, not counting the current region).
    std::uint64_t freeSlots() const { return freeTotal_; }

private:
    bool room(std::uint32_t need);
    void switchRegion();
    void addFree(std::uint32_t first, std::uint32_t n);
    void eraseFree(std::map<std::uint32_t, std::uint32_t>::iterator it);
    std::uint32_t minHole() const { return largest_ + 1; }

    std::uint32_t largest_;
    std::map<std::uint32_t, std::uint32_t> free_;              // start -> length, merged
    std::set<std::pair<std::uint32_t, std::uint32_t>> holes_;  // (length, start) of large ones
    std::uint64_t freeTotal_ = 0;
    std::uint32_t cursor_ = 1, end_ = kLimit, top_ = 1;
    bool inHole_ = false;
};

}  // namespace engine
